#include "tests/support/editor_window.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/registered_test.h"
#include "ui/editor/frmFileAvanzate.h"
#include "ui/editor/frmTrasfAvanzate.h"
#include "ui/widgets/check_list.h"
#include "ui/widgets/mask_edit.h"
#include "ui/widgets/texts.h"

#include <QPushButton>
#include <QTest>

namespace corvrec
{

namespace
{

constexpr auto kEmptySettings = "[Siti]\r\n[General]\r\nCom=COM2\r\n";

void AddRoma(EditorWindow& window)
{
    window.Add();
    window.Retype("txtNomeSito", "Roma");
    window.Retype("txtCodice", "RM");
    window.Retype("txtDati", "C:\\Roma\\Dati.txt");
    window.Retype("txtDati2", "C:\\Roma\\Scambio.txt");
    window.Retype("txtStorico", "C:\\Roma\\Storico.txt");
}

// The file after saving the new site RM up to, but not including, this key.
QByteArray SavedUpTo(const char* key)
{
    const QByteArray site =
        "SitoAbilitato=0\r\nSTimeRead=20\r\nSTimeWrite=20\r\nMTimeRead=60\r\nMTimeWrite=60\r\n"
        "FlagCRLF=0\r\nDispositivo=COM\r\nMODEM=0\r\nHandshake=XON\r\nXon= 17\r\nXoff= 19\r\n"
        "Baud=9600\r\nBitDati=8\r\nParita=N\r\n";
    return "[Siti]\r\nRM=Roma\r\n[General]\r\nCom=COM2\r\n[RM]\r\n" + site.left(site.indexOf(key));
}

QString Stored(EditorWindow& window, const char* key, const char* code = "RM")
{
    return QString::fromStdString(window.Settings().Line(code, key));
}

} // namespace

class frmDettaglio_save_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void newContinuousSiteWhole()
    {
        EditorWindow window(kEmptySettings);
        AddRoma(window);

        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
        QVERIFY(!window.Editor().Cancel());
        QCOMPARE(
            window.File(),
            "[Siti]\r\nRM=Roma\r\n[General]\r\nCom=COM2\r\nLog=Corvrec.log\r\n[RM]\r\nSitoAbilitato=0\r\n"
            "STimeRead=20\r\nSTimeWrite=20\r\nMTimeRead=60\r\nMTimeWrite=60\r\nFlagCRLF=0\r\nDispositivo="
            "COM\r\n"
            "MODEM=0\r\nHandshake=HDW\r\nXon= 17\r\nXoff= "
            "19\r\nBaud=9600\r\nBitDati=8\r\nParita=N\r\nStop=1\r\n"
            "Ricorrenza=0\r\nOra=12.00 21/11/2026\r\nOgni=1\r\nAggData=0\r\nAggOra=0\r\nEliminaNull=0\r\n"
            "CorreggiCR=0\r\nDati=C:\\Roma\\Dati.txt\r\nDati2=C:\\Roma\\Scambio.txt\r\n"
            "Storico=C:\\Roma\\Storico.txt\r\nModello=Generico\r\nStringaModem=ATX3S0=0&M5&K0&C1&D2&R1\r\n"
            "StringaReset=AT&F\r\nNumeroTel=ATDT\r\nImportazione=\r\nFileTimeout=0\r\nSpazioTimeout=0\r\n"
            "TimeoutFineImp=15\r\nCharToDel=00\r\n");
    }

    static void existingSiteIsDeletedAndWrittenAgain()
    {
        EditorWindow window(
            "; in testa\r\n[Siti]\r\nA=Alfa\r\nB=Beta\r\n[A]\r\nVecchia=1\r\n; nota\r\nDati=a\r\nDati2=b\r\n"
            "Storico=c\r\n[General]\r\nLog=x.log\r\nCom=COM2\r\n[B]\r\nDati=d\r\n");
        window.Open(0);

        window.Click("OK");

        QCOMPARE(
            window.File(),
            "; in testa\r\n[Siti]\r\nA=Alfa\r\nB=Beta\r\n; "
            "nota\r\n[General]\r\nLog=x.log\r\nCom=COM2\r\n[B]\r\nDati=d\r\n"
            "[A]\r\nSitoAbilitato=0\r\n"
            "STimeRead=20\r\nSTimeWrite=20\r\nMTimeRead=60\r\nMTimeWrite=60\r\nFlagCRLF=0\r\nDispositivo="
            "COM\r\n"
            "MODEM=0\r\nHandshake=HDW\r\nXon= 17\r\nXoff= "
            "19\r\nBaud=9600\r\nBitDati=8\r\nParita=N\r\nStop=1\r\n"
            "Ricorrenza=0\r\nOra=12.00 21/11/2026\r\nOgni=1\r\nAggData=0\r\nAggOra=0\r\nEliminaNull=0\r\n"
            "CorreggiCR=0\r\nDati=a\r\nDati2=b\r\nStorico=c\r\nModello=Generico\r\n"
            "StringaModem=ATX3S0=0&M5&K0&C1&D2&R1\r\nStringaReset=AT&F\r\nNumeroTel=ATDT\r\nImportazione=\r\n"
            "FileTimeout=0\r\nSpazioTimeout=0\r\nTimeoutFineImp=15\r\nCharToDel=00\r\n");
    }

    static void handEditedTimeOutsAreReset()
    {
        EditorWindow window(
            "[Siti]\r\nA=Alfa\r\n[General]\r\nCom=COM2\r\n[A]\r\nSTimeRead=5\r\nTimeoutFineImp=99\r\n"
            "CharToDel=0A\r\n");
        window.Open();

        window.Click("OK");

        QCOMPARE(Stored(window, "STimeRead", "A"), "STimeRead=20");
        QCOMPARE(Stored(window, "TimeoutFineImp", "A"), "TimeoutFineImp=15");
        QCOMPARE(Stored(window, "CharToDel", "A"), "CharToDel=00");
    }

    static void codeIsSavedAsTypedWhenEnterIsPressed()
    {
        EditorWindow window(kEmptySettings);
        const ModalVisit<frmDettaglio> visit([&](frmDettaglio& /*editor*/) {
            window.Retype("txtNomeSito", "Roma");
            window.Retype("txtCodice", "rm");
            window.Press(Qt::Key_Return);
        });

        QTest::mouseClick(&SiteWindow::Part<QPushButton>(window.List(), "cmdAggiungi"), Qt::LeftButton);

        QCOMPARE(Stored(window, "rm", "Siti"), "rm=Roma");
        QCOMPARE(Stored(window, "MODEM", "rm"), "MODEM=0");
        QCOMPARE(QString::fromStdString(window.List().SelectedSite()), "rm");
    }

    static void listShowsTheSavedSite()
    {
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        window.Box("chkAbilitato").click();
        window.Pick("cboRicorrenza", 2);

        const SiteRow row = window.Editor().Row();

        QCOMPARE(row.name, "Roma");
        QCOMPARE(row.code, "RM");
        QCOMPARE(row.enabled, 1.0);
        QCOMPARE(row.schedule, "Giornaliera");
    }

    static void namesOfOtherAlphabetsBecomeQuestionMarks()
    {
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        window.Field("txtNomeSito").setText("Città Ω");

        window.Click("OK");

        QCOMPARE(window.Settings().Line("Siti", "RM"), "RM=Citt\xE0 ?");
    }

    static void hourlyInterval()
    {
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        window.Pick("cboRicorrenza", 1);
        window.Retype("mskValore", "0130");
        window.Retype("mskOrario", "0715");

        window.Click("OK");

        QCOMPARE(Stored(window, "Ricorrenza"), "Ricorrenza=-1");
        QCOMPARE(Stored(window, "Ogni"), "Ogni= 5400");
        QCOMPARE(Stored(window, "Ora"), "Ora=07:15 21/11/2026");
    }

    static void weekdayMask()
    {
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        window.Pick("cboRicorrenza", 3);
        auto& days = window.At<CheckList>("lstGiorni");
        for (const int row : {5, 6})
            QTest::mouseClick(days.viewport(), Qt::LeftButton, {},
                              days.visualItemRect(days.item(row)).center());
        window.Retype("mskValore", "2");

        window.Click("OK");

        QCOMPARE(Stored(window, "Ricorrenza"), "Ricorrenza= 65");
        QCOMPARE(Stored(window, "Ogni"), "Ogni= 1209600");
    }

    static void startMarkIsKeptAndCarriedToTheNextSite()
    {
        EditorWindow window(
            "[Siti]\r\nA=Alfa\r\n[General]\r\nCom=COM2\r\n[A]\r\nRicorrenza=-2\r\nOgni= 86400\r\n"
            "Ora=08:30 01/01/2020p\r\n");
        window.Open();
        window.Click("OK");
        QCOMPARE(Stored(window, "Ora", "A"), "Ora=08:30 21/11/2026p");
        AddRoma(window);
        window.Retype("txtLog", "x.log");

        window.Click("OK");

        QCOMPARE(Stored(window, "Ora"), "Ora=12.00 21/11/2026p");
    }

    static void startMarkFollowsTheSiteLoadedLast_data()
    {
        QTest::addColumn<QByteArray>("start");
        QTest::addColumn<QString>("stored");
        QTest::newRow("without the mark") << QByteArray("Ora=08:30\r\n") << "Ora=12.00 21/11/2026";
        QTest::newRow("without the key") << QByteArray() << "Ora=12.00 21/11/2026p";
    }

    static void startMarkFollowsTheSiteLoadedLast()
    {
        QFETCH(QByteArray, start);
        EditorWindow window(
            "[Siti]\r\nA=Alfa\r\nB=Beta\r\n[General]\r\nCom=COM2\r\n[A]\r\nOra=08:30p\r\n[B]\r\n" +
            start.toStdString() + "Dati=b\r\n");
        window.Open(0);
        window.Click("Annulla");
        window.Open(1);

        window.Click("OK");

        QTEST(Stored(window, "Ora", "B"), "stored");
    }

    static void stratoboxBufferNeverDropsNulls_data()
    {
        QTest::addColumn<int>("device");
        QTest::addColumn<QString>("stored");
        QTest::newRow("Stratobox 3.0") << 4 << "EliminaNull=1";
        QTest::newRow("Stratobox Buffer") << 5 << "EliminaNull=0";
    }

    static void stratoboxBufferNeverDropsNulls()
    {
        QFETCH(int, device);
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        window.Pick("cboTipoConn", device);
        const ModalVisit<frmTrasfAvanzate> visit([](frmTrasfAvanzate& dialog) {
            QTest::mouseClick(&SiteWindow::Part<QCheckBox>(dialog, "chkNull"), Qt::LeftButton);
            QTest::mouseClick(&SiteWindow::Part<QPushButton>(dialog, "OK"), Qt::LeftButton);
        });
        window.Click("cmdTAvanzate");
        QCOMPARE(window.Shows("chkNull"), "on");

        window.Click("OK");

        QTEST(Stored(window, "EliminaNull"), "stored");
    }

    static void lostSpeedIsSavedEmpty()
    {
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        window.Pick("cboTipoConn", 5);
        window.Pick("cboVelocita", 0);
        window.Pick("cboTipoConn", 0);

        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
        QCOMPARE(Stored(window, "Baud"), "Baud=");
    }

    static void flowCharactersOfATickedAndAClearBox()
    {
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        window.Pick("cboHandS", 1);
        window.Retype("txtXon", "q");
        window.Box("chkXoff").click();
        window.Retype("txtXoff", "S!");

        window.Click("OK");

        QCOMPARE(Stored(window, "Xon"), "Xon= 49");
        QCOMPARE(Stored(window, "Xoff"), "Xoff=S!");
    }

    static void modemStringsGetTheirPrefix_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");
        QTest::newRow("without") << "X3S0=0"
                                 << "ATX3S0=0";
        QTest::newRow("with, in small letters") << "at&f"
                                                << "at&f";
        QTest::newRow("empty") << ""
                               << "AT";
    }

    static void modemStringsGetTheirPrefix()
    {
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        window.Field("txtStringaInit").setText(typed);
        window.Field("txtStringaReset").setText(typed);

        window.Click("OK");

        QCOMPARE(Stored(window, "StringaModem"), "StringaModem=" + stored);
        QCOMPARE(Stored(window, "StringaReset"), "StringaReset=" + stored);
    }

    static void pulseDialling()
    {
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        window.At<QAbstractButton>("optImpulsi").click();
        window.Field("txtTelefono").setText("0,06 123");

        window.Click("OK");

        QCOMPARE(Stored(window, "NumeroTel"), "NumeroTel=ATDP0,06 123");
    }

    static void alertsThatAreOnAndOff()
    {
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        const ModalVisit<frmFileAvanzate> visit([](frmFileAvanzate& dialog) {
            SiteWindow::Part<QCheckBox>(dialog, "chkFile").click();
            SiteWindow::Part<QLineEdit>(dialog, "txtFile").setText("45");
            SiteWindow::Part<QPushButton>(dialog, "OK").click();
        });
        window.Click("cmdFileAvanzate");

        window.Click("OK");

        QCOMPARE(Stored(window, "FileTimeout"), "FileTimeout=45");
        QCOMPARE(Stored(window, "SpazioTimeout"), "SpazioTimeout=0");
    }

    static void leavingWithoutOkWritesNothing_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("Annulla") << "Annulla";
        QTest::newRow("Escape") << "Escape";
        QTest::newRow("close box") << "close box";
    }

    static void leavingWithoutOkWritesNothing()
    {
        QFETCH(QString, way);
        EditorWindow window(SettingsWith({"A"}));
        const QByteArray before = window.File();
        window.Open();
        window.Editor().SetCancel(false);
        window.Pick("cboTipoConn", 4);
        window.Retype("txtDati", "altro.txt");

        if (way == "Annulla")
            window.Click("Annulla");
        else if (way == "Escape")
            window.Press(Qt::Key_Escape);
        else
            window.Editor().close();

        QVERIFY(!window.Editor().isVisible());
        QVERIFY(window.Editor().Cancel());
        QCOMPARE(window.File(), before);
    }

    static void listWithoutAChoiceStopsTheSave_data()
    {
        QTest::addColumn<QByteArray>("firstMissingKey");
        QTest::newRow("cboTipoConn") << QByteArray("Dispositivo");
        QTest::newRow("cboHandS") << QByteArray("Handshake");
        QTest::newRow("cboParita") << QByteArray("Parita");
    }

    static void listWithoutAChoiceStopsTheSave()
    {
        QFETCH(QByteArray, firstMissingKey);
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        window.Pick("cboHandS", 1);
        window.Choice(QTest::currentDataTag()).setCurrentIndex(-1);
        window.Editor().SelectTab(2);
        MessageProbe box(Qt::Key_Return);

        window.Click("OK");

        QCOMPARE(
            box.text(),
            "Il sito non è stato salvato per intero: manca la scelta in un elenco, oppure un carattere Xon "
            "o Xoff è vuoto. Completare il campo e premere di nuovo OK.");
        QCOMPARE(box.title(), "Errore");
        QCOMPARE(box.icon(), QMessageBox::Critical);
        QCOMPARE(box.buttons(), QStringList({"OK"}));
        QVERIFY(window.Editor().isVisible());
        QCOMPARE(window.Tab(), 0);
        QCOMPARE(window.Focus(), QTest::currentDataTag());
        QCOMPARE(window.File(), SavedUpTo(firstMissingKey));
    }

    static void everyWayToOkSavesTheWholeSite_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<Qt::Key>("key");
        for (const char* const field :
             {"txtXon", "txtXoff", "chkXon", "chkXoff", "chkAbilitato", "cboTipoConn", "cboHandS",
              "cboVelocita", "cboBitDati", "cboParita", "cboBitStop", "cboRicorrenza", "mskValore",
              "mskOrario", "lstGiorni", "txtDati", "txtDati2", "txtStorico", "txtLog"})
            QTest::addRow("Enter in %s", field) << field << Qt::Key_Return;
        QTest::newRow("Enter on the keypad") << "txtXon" << Qt::Key_Enter;
        QTest::newRow("Enter on OK") << "OK" << Qt::Key_Return;
        QTest::newRow("Space on OK") << "OK" << Qt::Key_Space;
        QTest::newRow("click on OK") << "OK" << Qt::Key_unknown;
    }

    // Both empty flow characters are replaced although no field was left, and the save reaches its last key.
    static void everyWayToOkSavesTheWholeSite()
    {
        QFETCH(QString, control);
        QFETCH(Qt::Key, key);
        EditorWindow window("[Siti]\r\nA=Alfa\r\n[General]\r\nCom=COM2\r\n[A]\r\nHandshake=XON\r\nXon= 1\r\n"
                            "Xoff= 2\r\nRicorrenza= 62\r\nOgni= 604800\r\nOra=08:30\r\n");
        window.Open();
        auto& part = window.At<QWidget>(qPrintable(control));
        window.Turn(part);
        part.setFocus();
        window.Field("txtXon").clear();
        window.Field("txtXoff").clear();

        if (key == Qt::Key_unknown)
            QTest::mouseClick(&part, Qt::LeftButton);
        else
            window.Press(key);

        QVERIFY(!window.Editor().isVisible());
        QVERIFY(!window.Editor().Cancel());
        QCOMPARE(Stored(window, "Xon", "A"), "Xon= 17");
        QCOMPARE(Stored(window, "Xoff", "A"), "Xoff= 19");
        QVERIFY(window.File().endsWith("\r\nCharToDel=00\r\n"));
        const int keysOfASite = 34;
        QCOMPARE(window.File().count("\r\n"), keysOfASite + 6); // plus 3 headers, the name, Com and Log
    }

    static void stoppedSaveCanBeCompleted()
    {
        EditorWindow window(SettingsWith({"A"}));
        window.Open();
        window.Choice("cboParita").setCurrentIndex(-1);
        {
            MessageProbe box(Qt::Key_Return);
            window.Click("OK");
        }
        QCOMPARE(Stored(window, "Parita", "A"), "");

        window.Pick("cboParita", 2);
        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
        QCOMPARE(Stored(window, "Parita", "A"), "Parita=O");
        QCOMPARE(Stored(window, "CharToDel", "A"), "CharToDel=00");
    }

    static void stoppedSaveCanBeLeft()
    {
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        window.Choice("cboTipoConn").setCurrentIndex(-1);
        {
            MessageProbe box(Qt::Key_Return);
            window.Click("OK");
        }

        window.Click("Annulla");

        QVERIFY(!window.Editor().isVisible());
        QVERIFY(window.Editor().Cancel());
        QCOMPARE(window.File(), SavedUpTo("Dispositivo"));
    }

    // The site stays in the list with the keys that were written before the save stopped.
    static void stoppedSaveOfAnExistingSiteCanBeLeft()
    {
        EditorWindow window(SettingsWith({"A", "B"}));
        const std::string other = window.Settings().Line("B", "Dati");
        window.Open();
        window.Choice("cboParita").setCurrentIndex(-1);
        {
            MessageProbe box(Qt::Key_Return);
            window.Click("OK");
        }

        window.Click("Annulla");

        QVERIFY(window.Editor().Cancel());
        QCOMPARE(Stored(window, "A", "Siti"), "A=Sito A");
        QCOMPARE(Stored(window, "Dispositivo", "A"), "Dispositivo=COM");
        QCOMPARE(Stored(window, "Parita", "A"), "");
        QCOMPARE(Stored(window, "Dati", "A"), "");
        QCOMPARE(window.Settings().Line("B", "Dati"), other);
    }

    static void noScheduleChosenWritesNoSchedule()
    {
        EditorWindow window(kEmptySettings);
        AddRoma(window);
        window.Choice("cboRicorrenza").setCurrentIndex(-1);

        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
        QCOMPARE(Stored(window, "Stop"), "Stop=1");
        QCOMPARE(Stored(window, "Ricorrenza"), "");
        QCOMPARE(Stored(window, "Ora"), "");
        QCOMPARE(Stored(window, "CharToDel"), "CharToDel=00");
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmDettaglio_save_test> registered;
#include "frmDettaglio_save_test.moc"
