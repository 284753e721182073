#include "app/start_up.h"

#include "app/frmSiti.h"
#include "ui/help/guide.h"
#include "ui/widgets/texts.h"

#include <QApplication>
#include <QIcon>
#include <QKeyEvent>

namespace corvrec
{

namespace
{

// The program's own icon, so that it needs no installed theme.
QIcon ProgramIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64})
        icon.addFile(QStringLiteral(":/icons/corvrec-config-%1.png").arg(size), {size, size});
    return icon;
}

// Enter and Escape act once, however long they are held: what they bring to the front is not answered by the
// key's repeats. A site would be saved that nobody has looked at, or changes thrown away.
class HeldKeys : public QObject
{
public:
    explicit HeldKeys(QApplication& application) { application.installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::KeyRelease:
            released_ = static_cast<QKeyEvent*>(event)->key();
            releasedAt_ = static_cast<QKeyEvent*>(event)->timestamp();
            break;
        case QEvent::ShortcutOverride:
        case QEvent::KeyPress:
            if (IsRepeat(*static_cast<QKeyEvent*>(event))) {
                event->accept(); // nor is it a shortcut
                return true;
            }
            break;
        default:
            break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    // Under X11 a repeat is a release and a press of the same time, and Qt does not always know them as such.
    bool IsRepeat(const QKeyEvent& press) const
    {
        const int key = press.key();
        const bool isSameTime =
            key == released_ && press.timestamp() != 0 && press.timestamp() == releasedAt_;
        return (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape) &&
               (press.isAutoRepeat() || isSameTime);
    }

    int released_ = 0;
    quint64 releasedAt_ = 0;
};

} // namespace

int RunEditor(QApplication& application, const Environment& environment)
{
    InstallTexts(application);
    QApplication::setWindowIcon(ProgramIcon());
    // Under Wayland the desktop takes the icon from the desktop entry of this name.
    QApplication::setDesktopFileName(QStringLiteral("org.corvanerecorder.CorvrecConfig"));
    const Guide guide(application);
    const HeldKeys heldKeys(application);
    frmSiti list(environment);
    if (!list.Load())
        return 1;
    list.LoadEditor();
    list.RefreshGrid();
    list.show();
    return QApplication::exec();
}

} // namespace corvrec
