#include "app/start_up.h"

#include "app/frmSiti.h"
#include "help/guide.h"
#include "resources/texts.h"

#include <QApplication>
#include <QIcon>

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

} // namespace

int RunEditor(QApplication& application, const Environment& environment)
{
    InstallTexts(application);
    QApplication::setWindowIcon(ProgramIcon());
    // Under Wayland the desktop takes the icon from the desktop entry of this name.
    QApplication::setDesktopFileName(QStringLiteral("org.corvanerecorder.CorvrecConfig"));
    const Guide guide(application);
    frmSiti list(environment);
    if (!list.Load())
        return 1;
    list.LoadEditor();
    list.RefreshGrid();
    list.show();
    return QApplication::exec();
}

} // namespace corvrec
