#pragma once

#include "app/frmSiti.h"
#include "tests/support/settings_file.h"
#include "tests/support/unanswered_boxes.h"
#include "ui/buffer/frmConnessione.h"
#include "ui/buffer/frmSX.h"
#include "ui/buffer/system_serial_port.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <string_view>

namespace corvrec
{

class Clock;
class EventPump;

// The whole editor with the real port, over a settings file with one site, whose device is on COM2. The lines
// are added to the site's section and contain at least its device ("Dispositivo=STX30"). The site is on a
// cable; with "MODEM=1" it is reached by modem.
class BufferSession
{
public:
    BufferSession(Clock& clock, EventPump& events, std::string_view lines);

    // Opens the buffer window through the list and the editor, runs the visit, and closes all three.
    void Visit(const std::function<void(frmSX&)>& visit);

private:
    SettingsFile settings_;
    std::function<std::unique_ptr<SerialPort>()> makePort_ = MakeSerialPort;
    UnansweredBoxes unansweredBoxes_;
    frmSiti list_;
};

// Clicks with the mouse.
void Click(QWidget& window, const char* button);

// Types over the text of a masked field, starting at this place.
void Type(frmSX& window, const char* field, int place, const char* digits);

// Sets the device's clock to 09:05 on 31 December 2026.
void SetClock(frmSX& window);

// Requests the status and sets the clock, as far as the window is open, which must be usable afterwards.
void UseAndLeave(frmSX& window);

// The visible buffer window; null when there is none.
frmSX* OpenWindow();

frmConnessione& ModemDialog(frmSX& window);

} // namespace corvrec
