#pragma once

#include "app/frmSiti.h"
#include "tests/support/settings_file.h"
#include "tests/support/unanswered_boxes.h"
#include "ui/buffer/frmConnessione.h"
#include "ui/buffer/frmSX.h"
#include "ui/buffer/qt_serial_port.h"

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
// are added to those of the site: at least its device ("Dispositivo=STX30"); it is a site on a cable, and
// with "MODEM=1" one reached by modem.
class BufferSession
{
public:
    BufferSession(Clock& clock, EventPump& events, std::string_view lines);

    // Acts in the buffer window, reached through the list and the editor, and closes all three.
    void Visit(const std::function<void(frmSX&)>& visit);

private:
    SettingsFile settings_;
    std::function<std::unique_ptr<SerialPort>()> makePort_ = [] { return std::make_unique<QtSerialPort>(); };
    UnansweredBoxes unansweredBoxes_;
    frmSiti list_;
};

// By the mouse.
void Click(QWidget& window, const char* button);

// Types over what stands in the places of a masked field from there on.
void Type(frmSX& window, const char* field, int place, const char* digits);

frmConnessione& ModemDialog(frmSX& window);

} // namespace corvrec
