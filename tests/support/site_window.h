#pragma once

#include "app/frmSiti.h"
#include "core/device/serial_port.h"
#include "core/file/posix_calls.h"
#include "tests/support/fake_clock.h"
#include "tests/support/settings_file.h"
#include "ui/buffer/qt_event_pump.h"
#include "ui/editor/frmDettaglio.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace corvrec
{

// The site list as the program shows it, over a real settings file in a directory of its own, at a fixed date
// and time.
class SiteWindow
{
public:
    // 21 November 2026, 18:03.
    static constexpr DateTime kNow{
        .year = 2026, .month = 11, .day = 21, .hour = 18, .minute = 3, .second = 0};

    // settings: bytes of Corvrec.ini; catalogue: bytes of modem.dat, nothing for no such file. The calls that
    // the windows' settings file is read and written by must live longer.
    explicit SiteWindow(std::string_view settings, std::optional<std::string_view> catalogue = std::nullopt,
                        PosixCalls& calls = SystemCalls());
    ~SiteWindow();

    frmSiti& List() { return *list_; }
    frmDettaglio& Editor();

    QByteArray File() const;
    SettingsFile& Settings() { return settings_; }
    FakeClock& Time() { return clock_; }

    // The port that the next buffer window gets.
    void NextPort(std::unique_ptr<SerialPort> port) { nextPort_ = std::move(port); }

    // A control below the window, by its name; the test ends when there is none.
    template <class Control>
    static Control& Part(QWidget& window, const char* name)
    {
        auto* const control = window.findChild<Control*>(name);
        if (control == nullptr)
            qFatal("no control %s", name);
        return *control;
    }

private:
    SettingsFile settings_;
    std::unique_ptr<ProfileFile> profile_; // the same file, as the windows have it
    FakeClock clock_;
    QtEventPump events_{clock_};
    std::unique_ptr<SerialPort> nextPort_;
    std::function<std::unique_ptr<SerialPort>()> makePort_ = [this] { return std::move(nextPort_); };
    std::unique_ptr<frmSiti> list_;
};

// A settings file with these sites (code = name = the text), all of them hourly, enabled and local, on COM2.
std::string SettingsWith(std::initializer_list<std::string_view> codes);

} // namespace corvrec
