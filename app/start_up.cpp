#include "app/start_up.h"

#include "app/frmSiti.h"
#include "help/guide.h"
#include "resources/texts.h"

#include <QApplication>

namespace corvrec
{

int RunEditor(QApplication& application, const Environment& environment)
{
    InstallTexts(application);
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
