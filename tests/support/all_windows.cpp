#include "tests/support/all_windows.h"

#include "core/site/code_tables.h"
#include "tests/support/activation.h"
#include "ui/widgets/check_list.h"

#include <QApplication>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

namespace corvrec
{

void AddWindows()
{
    QTest::addColumn<WindowCase>("tested");
    const auto add = [](const char* title, const WindowCase& tested) { QTest::newRow(title) << tested; };
    add("site list", {"frmSiti", "Elenco dei siti"});
    add("connection", {"frmDettaglio", "Scheda Connessione"});
    add("connection, Xon and Xoff", {"frmDettaglio", "Scheda Connessione", 0, Site::bySoftwareEachWeek});
    add("connection, by modem", {"frmDettaglio", "Scheda Connessione", 0, Site::byModemEachHour});
    add("schedule, continuous", {"frmDettaglio", "Scheda Acquisizione", 1});
    add("schedule, hourly", {"frmDettaglio", "Scheda Acquisizione", 1, Site::byModemEachHour});
    add("schedule, daily", {"frmDettaglio", "Scheda Acquisizione", 1, Site::eachDay});
    add("schedule, weekly", {"frmDettaglio", "Scheda Acquisizione", 1, Site::bySoftwareEachWeek});
    add("files", {"frmDettaglio", "Scheda File", 2});
    add("transformations", {"frmTrasfAvanzate", "Trasformazioni delle righe"});
    add("alerts", {"frmFileAvanzate", "Avvisi su file e disco"});
    add("alerts, on", {"frmFileAvanzate", "Avvisi su file e disco", 0, Site::byModemEachHour});
    add("modem", {"frmModem", "Impostazioni del modem"});
    add("buffer status", {"frmSX", "Stato Buffer"});
    add("modem connection", {"frmConnessione", "Connessione modem"});
}

AllWindows::AllWindows(const WindowCase& tested)
{
    buffer_.Dialog().SetAzione(-1); // neither connects nor hangs up
    Prepare(tested.site);
    program_.At<QTabWidget>("tabSetup").setCurrentIndex(tested.page);
    if (qstrcmp(tested.window, kGuideCase.window) == 0)
        QTest::keyClick(&program_.List(), Qt::Key_F1);
    tested_ = &WindowNamed(tested.window);
    tested_->show();
    BringToFront(*tested_);
    QCoreApplication::sendPostedEvents(); // completes the layouts
}

void AllWindows::Prepare(Site site)
{
    if (site == Site::added)
        return;
    const bool isByModem = site == Site::byModemEachHour;
    program_.Choice("cboTipoConn").setCurrentIndex(isByModem ? DeviceRowOf("STX40") : DeviceRowOf("COM"));
    program_.Choice("cboHandS").setCurrentIndex(1); // Software
    program_.Choice("cboRicorrenza").setCurrentIndex(static_cast<int>(site));
    if (isByModem)
        program_.At<QRadioButton>("optRemoto").click();
    for (const char* const alert : {"chkFile", "chkSpazio"})
        program_.Box(alert).setChecked(true);
    program_.At<CheckList>("lstGiorni").SetMarked(2, true);
}

QWidget& WindowNamed(const QString& name)
{
    const auto windows = QApplication::topLevelWidgets();
    const auto window =
        std::ranges::find_if(windows, [&](const QWidget* each) { return each->objectName() == name; });
    if (window == windows.end())
        qFatal("no window %s", qPrintable(name));
    return **window;
}

} // namespace corvrec
