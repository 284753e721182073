#include "app/start_up.h"

#include "app/frmSiti.h"
#include "ui/help/guide.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/texts.h"

#include <QApplication>
#include <QIcon>
#include <QKeyEvent>

namespace corvrec
{

namespace
{

// The program's own icon, so that it does not depend on an installed theme.
QIcon ProgramIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64})
        icon.addFile(QStringLiteral(":/icons/corvrec-config-%1.png").arg(size), {size, size});
    return icon;
}

// Makes Enter and Escape act once, however long they are held. Otherwise the key's repeats would answer the
// window that the first press brings up, saving a site that nobody has looked at, or discarding changes.
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
                event->accept(); // keeps it from being a shortcut too
                return true;
            }
            break;
        default:
            break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    // On X11 a repeat is a release and a press with the same time stamp, and Qt does not always recognise it.
    bool IsRepeat(const QKeyEvent& press) const
    {
        const int key = press.key();
        const bool isSameTime =
            key == released_ && press.timestamp() != 0 && press.timestamp() == releasedAt_;
        return (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape) &&
               (press.isAutoRepeat() || isSameTime);
    }

    int released_ = 0; // the key released last
    quint64 releasedAt_ = 0;
};

} // namespace

int RunEditor(QApplication& application, const Environment& environment)
{
    InstallTexts(application);
    QApplication::setWindowIcon(ProgramIcon());
    // On Wayland the desktop takes the icon from the desktop entry with this name.
    QApplication::setDesktopFileName(QStringLiteral("org.corvanerecorder.CorvrecConfig"));
    const Guide guide(application);
    const HeldKeys heldKeys(application);
    const FocusReturn focusReturn(application);
    frmSiti list(environment);
    if (!list.Load())
        return 1;
    list.LoadEditor();
    list.RefreshGrid();
    list.show();
    return QApplication::exec();
}

} // namespace corvrec
