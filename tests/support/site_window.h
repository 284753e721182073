#pragma once

#include "app/frmSiti.h"
#include "core/device/serial_port.h"
#include "tests/support/fake_clock.h"
#include "tests/support/settings_file.h"
#include "ui/buffer/qt_event_pump.h"
#include "ui/editor/frmDettaglio.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace corvrec
{

// The site list as the program shows it, over a real settings file in its own directory, at a fixed date and
// time.
class SiteWindow
{
public:
    // 21 November 2026, 18:03.
    static constexpr DateTime kNow{
        .year = 2026, .month = 11, .day = 21, .hour = 18, .minute = 3, .second = 0};

    using OpenFile = std::function<std::unique_ptr<ProfileFile>(const std::filesystem::path&)>;

    // settings: bytes of Corvrec.ini. catalogue: bytes of modem.dat, nullopt for no such file. open: opens
    // the settings file for the windows.
    explicit SiteWindow(std::string_view settings, std::optional<std::string_view> catalogue = std::nullopt,
                        const OpenFile& open = OpenSettings);
    ~SiteWindow();

    frmSiti& List() { return *list_; }
    frmDettaglio& Editor();

    QStringList Rows(); // of the list, each with its cells: "Sito A | A | Sì | Oraria"
    QByteArray File() const;
    SettingsFile& Settings() { return settings_; }
    FakeClock& Time() { return clock_; }

    // Sets the port of the next buffer window.
    void NextPort(std::unique_ptr<SerialPort> port) { nextPort_ = std::move(port); }

    // The child of the window with this name. Ends the test when there is none.
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
    std::unique_ptr<ProfileFile> profile_; // the same file, as the windows use it
    FakeClock clock_;
    QtEventPump events_{clock_};
    std::unique_ptr<SerialPort> nextPort_;
    std::function<std::unique_ptr<SerialPort>()> makePort_ = [this] { return std::move(nextPort_); };
    std::unique_ptr<frmSiti> list_;
};

// The path as the windows show it, with the system's separators.
QString ToText(const std::filesystem::path& path);

// A settings file with these sites (the text is both code and name), all hourly, enabled and local, on COM2.
std::string SettingsWith(std::initializer_list<std::string_view> codes);

} // namespace corvrec
