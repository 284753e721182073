#pragma once

class QApplication;

namespace corvrec
{

struct Environment;

// Runs the editor until the site list is closed and returns the program's exit status: 1, after a message and
// without a window, when the settings file names no serial port.
int RunEditor(QApplication& application, const Environment& environment);

} // namespace corvrec
