#pragma once

#include "tests/support/fake_clock.h"
#include "tests/support/fake_port.h"
#include "tests/support/scripted_pump.h"
#include "tests/support/site_window.h"
#include "tests/support/unanswered_boxes.h"
#include "ui/buffer/frmConnessione.h"
#include "ui/buffer/frmSX.h"
#include "ui/widgets/mask_edit.h"

#include <QPushButton>
#include <QString>
#include <QStringList>

#include <functional>
#include <string_view>

namespace corvrec
{

enum class Reached { direct, byModem };

// What a buffer window shows: all value labels in the order of the form, the names of the enabled buttons,
// and the names of the windows (this one or the modem dialog) with the busy pointer.
QStringList ShownValues(frmSX& window);
QStringList EnabledButtons(frmSX& window);
QStringList BusyWindows(frmSX& window);

// The buffer window over a fake port on Com2 and a scripted event pump, which plays what happens during a
// wait. The times of the script and of the port's journal start when the window is created.
class BufferWindow
{
public:
    explicit BufferWindow(Reached reached = Reached::direct,
                          BufferModel modelloSX = BufferModel::stratobox30);

    // Shows the window and starts the journal.
    void Open();

    // Shows it as the editor does, and returns after it has closed. The visit runs inside and must close it.
    void Exec(const std::function<void()>& visit);

    frmSX& Window() { return window_; }
    frmConnessione& Dialog();
    FakePort& Port() { return *port_; }
    FakeClock& Time() { return clock_; }
    ScriptedPump& Script() { return script_; }

    MaskEdit& Field(const char* name) { return SiteWindow::Part<MaskEdit>(window_, name); }
    QPushButton& Button(const char* name) { return SiteWindow::Part<QPushButton>(window_, name); }
    void Click(const char* button);
    // Clicks and answers the message that it must show with OK. Returns "title: text".
    QString ClickAndRead(const char* button);
    void Press(Qt::Key key); // on the focused control

    // What the line does from now on: see line_script.h. "cancelled" is the modem dialog's button.
    void Play(std::string_view script);

    // The modem confirms reset, initialisation and call, and holds the carrier from then on.
    void ModemConnects();
    void ModemHangsUp();

    // The device answers the next line clear and status request, and also the line clear that ends the
    // exchange.
    void DeviceReplies(std::string_view status);

    QStringList Journal();
    QString Log(); // the journal in one text, as Joined
    QString Shows(const char* label);
    QStringList Values() { return ShownValues(window_); }
    QStringList Enabled() { return EnabledButtons(window_); }
    QStringList Busy() { return BusyWindows(window_); }
    QString Focus(); // name of the focused control

    // Ends the session the way the desktop does.
    static void LogOff();

private:
    UnansweredBoxes unansweredBoxes_;
    FakeClock clock_;
    ScriptedPump script_{clock_};
    FakePort* port_; // the window owns it
    frmSX window_;
};

} // namespace corvrec
