#include "app/start_up.h"
#include "core/clock.h"
#include "core/file/profile_file.h"
#include "ui/buffer/qt_event_pump.h"
#include "ui/buffer/system_serial_port.h"
#include "ui/editor/environment.h"

#include <QApplication>

#include <csignal>
#include <filesystem>
#include <memory>

int main(int argc, char* argv[])
{
#ifdef SIGXFSZ
    // A limit on file sizes must be a failed write, which leaves the file as it was. By default the signal
    // would end the program.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    QApplication application(argc, argv);

    // With the system's separators: a new site's file names begin with this directory.
    const std::filesystem::path directory =
        std::filesystem::path(QCoreApplication::applicationDirPath().toStdU16String()).make_preferred();
    const std::unique_ptr<corvrec::ProfileFile> settings =
        corvrec::OpenProfileFile(directory / "Corvrec.ini");
    corvrec::SystemClock clock;
    corvrec::QtEventPump events(clock);
    return corvrec::RunEditor(application, {directory, *settings, clock, events, corvrec::MakeSerialPort});
}
