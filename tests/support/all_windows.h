#pragma once

#include "tests/support/buffer_window.h"
#include "tests/support/editor_window.h"
#include "ui/help/guide.h"

namespace corvrec
{

// Sites that together need every control of the editor.
enum class Site { added, byModemEachHour, eachDay, bySoftwareEachWeek };

// A window of the program, or a page of the site editor, as it is for one kind of site.
struct WindowCase {
    const char* window = nullptr;  // object name
    const char* chapter = nullptr; // its heading in the guide
    int page = 0;
    Site site = Site::added;
};

// Adds each window of the program as a test row with the column "tested", except the guide.
void AddWindows();

inline constexpr WindowCase kGuideCase{.window = "frmGuida", .chapter = "Elenco dei siti"};

// All windows of the program, with one of them in front.
class AllWindows
{
public:
    explicit AllWindows(const WindowCase& tested);

    QWidget& Tested() { return *tested_; }
    BufferWindow& Buffer() { return buffer_; }
    EditorWindow& Program() { return program_; }

    // Fills in the editor, so that the controls that this site needs can be used.
    void Prepare(Site site);

    // The controls of the tested window, without those of the dialogs that it owns.
    template <class Control = QWidget>
    QList<Control*> Controls()
    {
        auto controls = tested_->findChildren<Control*>();
        controls.removeIf([this](const Control* control) { return control->window() != tested_; });
        return controls;
    }

private:
    Guide guide_{*qApp};
    EditorWindow program_{SettingsWith({"A", "B"})};
    BufferWindow buffer_;
    QWidget* tested_ = nullptr;
};

// The top-level window with this name. Ends the test when there is none.
QWidget& WindowNamed(const QString& name);

} // namespace corvrec
