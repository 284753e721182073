// The time from the click on Proprietà to the painted editor, with the number of sites given as argument.
#include "app/frmSiti.h"
#include "core/clock.h"
#include "core/file/profile_file.h"
#include "tests/bench/sites_file.h"
#include "ui/buffer/qt_event_pump.h"
#include "ui/buffer/qt_serial_port.h"
#include "ui/editor/environment.h"
#include "ui/editor/frmDettaglio.h"
#include "ui/widgets/texts.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace corvrec
{

namespace
{

using Moment = std::chrono::steady_clock::time_point;

// Records when the editor's window has been painted and shown, and then closes it.
class Watch final : public QObject
{
public:
    explicit Watch(frmDettaglio& editor)
        : editor_(editor)
    {
        editor.installEventFilter(this);
    }

    [[nodiscard]] Moment Painted() const { return painted_; }

private:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            // The whole window is painted at once, so this runs afterwards.
            QTimer::singleShot(0, this, [this] {
                painted_ = std::chrono::steady_clock::now();
                editor_.reject();
            });
        }
        return QObject::eventFilter(watched, event);
    }

    frmDettaglio& editor_;
    Moment painted_;
};

void Click(QWidget& button)
{
    const QPointF centre = button.rect().center();
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, centre, button.mapToGlobal(centre), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(&button, &event);
    }
}

int Run(int sites, int rounds)
{
    const SitesFile file(sites);
    const std::filesystem::path path = file.Path();
    const auto settings = OpenProfileFile(path);
    SystemClock clock;
    QtEventPump events(clock);
    const std::function<std::unique_ptr<SerialPort>()> makePort = [] {
        return std::make_unique<QtSerialPort>();
    };
    frmSiti list(Environment{path.parent_path(), *settings, clock, events, makePort});
    if (!list.Load())
        return 1;
    list.LoadEditor();
    list.RefreshGrid();
    list.show();
    QApplication::processEvents();

    auto& editor = *list.findChild<frmDettaglio*>();
    auto& button = *list.findChild<QPushButton*>("cmdProperties");
    std::vector<double> ms;
    for (int round = 0; round < rounds; ++round) {
        const Watch watch(editor);
        const Moment clicked = std::chrono::steady_clock::now();
        Click(button);
        ms.push_back(std::chrono::duration<double, std::milli>(watch.Painted() - clicked).count());
    }
    const double first = ms.front();
    std::ranges::sort(ms);
    std::printf("first %.1f ms, median %.1f ms, 95 %% below %.1f ms\n", first, ms[ms.size() / 2],
                ms[ms.size() * 95 / 100]);
    return 0;
}

} // namespace

} // namespace corvrec

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    corvrec::InstallTexts(*QCoreApplication::instance());
    const int sites = argc > 1 ? std::atoi(argv[1]) : 40;
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 101;
    return corvrec::Run(sites, std::max(1, rounds));
}
