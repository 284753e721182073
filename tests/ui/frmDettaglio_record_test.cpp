// The way of a site's values: from the file into the controls, and back when OK is pressed.
#include "tests/support/cases.h"
#include "tests/support/editor_window.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/registered_test.h"
#include "tests/support/sample_site.h"
#include "ui/widgets/paths.h"

#include <QPushButton>
#include <QTest>

namespace corvrec
{

namespace
{

constexpr auto kEmptySettings = "[Siti]\r\n[General]\r\nCom=COM2\r\n";
constexpr auto kCatalogue = "Alfa=A1\r\nBeta=B2\r\nBeta due=B3\r\n";

// The entries with these changed, each found by what precedes the separator.
QStringList Changed(QStringList entries, const QStringList& changes, const QString& separator)
{
    for (const QString& change : changes) {
        const QString start = change.section(separator, 0, 0) + separator;
        const auto changed =
            std::ranges::find_if(entries, [&start](const QString& entry) { return entry.startsWith(start); });
        if (changed == entries.end())
            qFatal("no entry %s", qPrintable(start));
        *changed = change;
    }
    return entries;
}

// A whole file, and what the editor shows of it.
const QStringList kFile = Parts("[Siti]|A=Alfa & figli|[General]|Com=COM2|Log=Comune.log|[A]") +
                          QString::fromStdString(SavedSite({{"MODEM", "0"},
                                                            {"Handshake", "HDW"},
                                                            {"Parita", "N"},
                                                            {"Ricorrenza", " 2"},
                                                            {"Ogni", " 1209600"},
                                                            {"Ora", "08:30 21/11/2026"},
                                                            {"AggData", "0"},
                                                            {"EliminaNull", "0"},
                                                            {"Modello", "Alfa"},
                                                            {"StringaModem", "ATX3"},
                                                            {"StringaReset", "ATZ"},
                                                            {"FileTimeout", "700"},
                                                            {"SpazioTimeout", "30"}}))
                              .split("\r\n", Qt::SkipEmptyParts);
const QStringList kShown =
    Parts("txtNomeSito: Alfa & figli|txtCodice: A") +
    Changed(Parts(ShownSite()),
            Parts("optLocale: on|optRemoto: off|cboHandS: Hardware|cboParita: Nessuna|cboRicorrenza: "
                  "Settimanale|lstGiorni: 0|"
                  "mskValore:  2|chkData: off|chkNull: off|txtLog: Comune.log|cboModem: Alfa|txtStringaInit: "
                  "ATX3|txtStringaReset: ATZ|"
                  "txtFile: 700|txtSpazio: 30"),
            ": ");

// Lines of the file and what controls show. Several are separated by "|".
struct Case {
    const char* name; // the lines
    const char* shown;
};

// Each value of a site, in both directions.
constexpr std::array kBothWays{
    Case{"SitoAbilitato=0", "chkAbilitato: off"},
    Case{"Dispositivo=STX40", "cboTipoConn: Stratobox Buffer"},
    Case{"Dispositivo=STX40|Baud=115200", "cboTipoConn: Stratobox Buffer|cboVelocita: 115200"},
    Case{"MODEM=1", "optLocale: off|optRemoto: on"},
    Case{"Handshake=XON", "cboHandS: Software"},
    Case{"Xon= 1", "txtXon: A"},
    Case{"Xoff= 2", "txtXoff: B"},
    Case{"Baud=4800", "cboVelocita: 4800"},
    Case{"BitDati=7", "cboBitDati: 7"},
    Case{"Parita=E", "cboParita: Pari"},
    Case{"Stop=2", "cboBitStop: 2"},
    Case{"Ricorrenza=-1|Ogni= 5400", "cboRicorrenza: Oraria|lstGiorni: |mskValore: 01:30"},
    Case{"Ricorrenza=-2|Ogni= 259200", "cboRicorrenza: Giornaliera|lstGiorni: |mskValore: 3"},
    Case{"Ricorrenza= 65", "lstGiorni: 5 6"},
    Case{"Ogni= 1814400", "mskValore:  3"},
    Case{"Ora=07:15 21/11/2026", "mskOrario: 07:15"},
    Case{"AggData=1", "chkData: on"},
    Case{"AggOra=1", "chkOra: on"},
    Case{"EliminaNull=1", "chkNull: on"},
    Case{"CorreggiCR=1", "chkCrLf: on"},
    Case{R"(Dati=C:\D)", R"(txtDati: C:\D)"},
    Case{R"(Dati2=C:\D2)", R"(txtDati2: C:\D2)"},
    Case{R"(Storico=C:\S)", R"(txtStorico: C:\S)"},
    Case{"Log=L", "txtLog: L"},
    Case{"Modello=Beta", "cboModem: Beta"},
    Case{"StringaModem=at", "txtStringaInit: at"},
    Case{"StringaReset=AT&F", "txtStringaReset: AT&F"},
    Case{"NumeroTel=ATDT0,06", "txtTelefono: 0,06"},
    Case{"NumeroTel=ATDP0123", "optToni: off|optImpulsi: on"},
    Case{"Importazione=4", "txtTentImpor: 4"},
    Case{"FileTimeout=45", "txtFile: 45"},
    Case{"SpazioTimeout=46", "txtSpazio: 46"},
};

// What is read in one way and written in another: values that fit no entry of a list, or only as its
// beginning; paths, which are capitalised; characters, and alerts that are off.
constexpr std::array kShownOnly{
    Case{"Dispositivo=STX", "cboTipoConn: Pabx"},
    Case{"Dispositivo=COM|Baud=57600", "cboTipoConn: Pabx"},
    Case{"Handshake=XOFF|Parita=X", ""},
    Case{"Xon=65|Xoff=66", "chkXon: off|txtXon: A|chkXoff: off|txtXoff: B"},
    Case{"Xon=-51|Xoff=-54", ""}, // a line break, which the field would drop
    Case{"Baud=30", "cboVelocita: 300"},
    Case{"Baud=115200|BitDati=9|Stop=1.5", ""},
    Case{"Baud=", ""},
    Case{"Ricorrenza=0", "cboRicorrenza: Continua|lstGiorni: |mskValore: 1"},
    Case{"Ora=", "mskOrario: __:__"},
    Case{R"(Dati=c:\dati\x.txt)", R"(txtDati: c:\Dati\X.txt)"},
    Case{R"(Dati2=\\srv\b.txt)", R"(txtDati2: \\Srv\B.txt)"},
    Case{"Storico=/srv/c.txt", "txtStorico: /srv/c.txt"},
    Case{R"(Log=c:\log\)", R"(txtLog: c:\Log\)"},
    Case{"Dati=|Storico=|Log=|StringaReset=", "txtDati: |txtStorico: |txtLog: |txtStringaReset: "},
    Case{"Modello=BETA D", "cboModem: Beta due"},
    Case{"Modello=Gamma", ""},
    Case{"FileTimeout=-1|SpazioTimeout=-1",
         "chkFile: off|txtFile: 600|chkSpazio: off|txtSpazio: 20"}, // the texts of the program's start
};
constexpr std::array kSavedOnly{
    Case{"Xon=q|Xoff=S!", "chkXon: off|txtXon: q|chkXoff: off|txtXoff: S!"},
    Case{"Xon= 49", "txtXon: q"},
    Case{"Baud=", "cboVelocita: "},
    Case{"StringaModem=ATX|StringaReset=AT", "txtStringaInit: X|txtStringaReset: "},
    Case{"FileTimeout=0", "chkFile: off"},
    Case{"SpazioTimeout=0", "chkSpazio: off"},
};

QStringList FileWith(const char* lines)
{
    return Changed(kFile, Parts(lines), "=");
}

std::string Bytes(const QStringList& lines)
{
    return lines.join("\r\n").toStdString() + "\r\n";
}

QStringList Lines(const EditorWindow& window)
{
    return QString::fromLatin1(window.File()).split("\r\n", Qt::SkipEmptyParts);
}

// The file after saving the new site RM up to, but not including, this key.
QByteArray SavedUpTo(const char* key)
{
    const QByteArray site = QByteArray::fromStdString(SavedNewSite({{"Handshake", "XON"}}));
    return "[Siti]\r\nRM=Roma\r\n[General]\r\nCom=COM2\r\n[RM]\r\n" + site.left(site.indexOf(key));
}

// Presses OK, which saves only a part of the site.
void ExpectStop(EditorWindow& window, const QString& focus)
{
    MessageProbe box(Qt::Key_Return);
    window.Click("OK");
    QCOMPARE(box.text(), "Il sito non è stato salvato per intero: manca la scelta in un elenco, oppure un "
                         "carattere Xon o Xoff è vuoto. Completare il campo e premere di nuovo OK.");
    QCOMPARE(box.title(), "Errore");
    QCOMPARE(box.icon(), QMessageBox::Critical);
    QCOMPARE(box.buttons(), QStringList({"OK"}));
    QVERIFY(window.Editor().isVisible());
    QCOMPARE(window.Tab(), 0);
    QCOMPARE(window.Focus(), focus);
}

} // namespace

class frmDettaglio_record_test : public QObject
{
    Q_OBJECT

private slots:
    static void valuesAreShown_data()
    {
        AddCases(kBothWays);
        for (const Case& each : kShownOnly)
            QTest::newRow(each.name) << each;
    }

    // In their controls and in no other. The test knows every control that holds a value.
    static void valuesAreShown()
    {
        QFETCH(const Case, given);
        EditorWindow window(Bytes(FileWith(given.name)), kCatalogue);

        window.Open();

        QStringList expected = Changed(kShown, Parts(given.shown), ": ");
        expected.sort();
        QCOMPARE(AllShown(window.Editor()), expected);
        for (const char* const path : {"txtDati", "txtDati2", "txtStorico", "txtLog"}) {
            QCOMPARE(window.Field(path).cursorPosition(), 0);
            QVERIFY(!window.Field(path).hasSelectedText());
        }
        QCOMPARE(Lines(window), FileWith(given.name));
    }

    static void valuesAreSaved_data()
    {
        AddCases(kBothWays);
        for (const Case& each : kSavedOnly)
            QTest::newRow(each.name) << each;
    }

    static void valuesAreSaved()
    {
        QFETCH(const Case, given);
        EditorWindow window(Bytes(kFile), kCatalogue);
        window.Open();
        window.Set(Parts(given.shown));

        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
        QCOMPARE(Lines(window), FileWith(given.name));
    }

    // The first site's marks stay, and the last site's are added to them. A model does not bring its string.
    static void missingKeysLeaveDefaultsAndWhatTheLastSiteShowed()
    {
        const QStringList alfa = FileWith(
            "Dispositivo=STX40|MODEM=1|Xon=65|Xoff=66|Baud=57600|BitDati=7|Parita=E|Stop=2|AggData=1|"
            "AggOra=1|EliminaNull=1|CorreggiCR=1|Modello=Beta|NumeroTel=ATDP0123");
        EditorWindow window("[Siti]\r\nA=Alfa\r\nb=Beta\r\nC=Gamma\r\n[General]\r\nCom=COM2\r\n" +
                                Bytes(alfa.mid(alfa.indexOf("[A]"))) +
                                "[b]\r\nAltro=1\r\nb=no\r\n[C]\r\nRicorrenza= 64\r\nModello=Alfa\r\n",
                            kCatalogue);
        const QString folder = ToText(window.Settings().Directory() / "");
        window.Open(0);

        window.Open(1);

        window.ExpectShown({"txtNomeSito: Beta",
                            "txtCodice: b",
                            "chkAbilitato: off",
                            "cboTipoConn: Pabx",
                            "optLocale: on",
                            "cboHandS: Hardware",
                            "chkXon: off",
                            "txtXon: A",
                            "chkXoff: off",
                            "txtXoff: B",
                            "cboVelocita: 9600",
                            "cboBitDati: 8",
                            "cboParita: Nessuna",
                            "cboBitStop: 1",
                            "cboRicorrenza: Continua",
                            "lstGiorni: 0",
                            "mskValore: 1",
                            "mskOrario: 18:03",
                            "chkData: on",
                            "chkOra: on",
                            "chkNull: on",
                            "chkCrLf: on",
                            "txtDati: " + ProperCasePath(folder + "Corvrec.txt"),
                            "txtDati2: " + ProperCasePath(folder + "CRemoto.txt"),
                            "txtStorico: " + ProperCasePath(folder + "Storico.txt"),
                            "txtLog: Corvrec.log",
                            "cboModem: Beta",
                            "txtStringaInit: ATX3",
                            "txtStringaReset: ATZ",
                            "optImpulsi: on",
                            "txtTelefono: 0123",
                            "txtTentImpor: 3",
                            "chkFile: on",
                            "txtFile: 700",
                            "chkSpazio: on",
                            "txtSpazio: 30"});
        window.Open(2);
        window.ExpectShown(
            {"cboRicorrenza: Settimanale", "lstGiorni: 0 5", "cboModem: Alfa", "txtStringaInit: ATX3"});
    }

    static void newContinuousSiteWhole()
    {
        EditorWindow window(kEmptySettings);
        window.AddRoma();

        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
        QVERIFY(!window.Editor().Cancel());
        QCOMPARE(window.File(), "[Siti]\r\nRM=Roma\r\n[General]\r\nCom=COM2\r\nLog=Corvrec.log\r\n[RM]\r\n" +
                                    QByteArray::fromStdString(SavedNewSite()));
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

        QCOMPARE(window.Settings().Line("Siti", "rm"), "rm=Roma");
        QCOMPARE(window.Settings().Line("rm", "MODEM"), "MODEM=0");
        QCOMPARE(QString::fromStdString(window.List().SelectedSite()), "rm");
    }

    static void startMarkIsThatOfTheSiteLoadedLast_data()
    {
        static constexpr std::array kMarks{Case{"Ora=08:30", "Ora=12.00 21/11/2026"},
                                           Case{"Ora=08:30p", "Ora=12.00 21/11/2026p"},
                                           Case{"Dati=b", "Ora=12.00 21/11/2026p"}};
        AddCases(kMarks);
    }

    static void startMarkIsThatOfTheSiteLoadedLast()
    {
        QFETCH(const Case, given);
        EditorWindow window(
            "[Siti]\r\nA=Alfa\r\nB=Beta\r\n[General]\r\nCom=COM2\r\n[A]\r\nOra=08:30p\r\n[B]\r\n" +
            std::string(given.name) + "\r\n");
        window.Open(0);
        window.Click("Annulla");
        window.Open(1);
        window.Click("OK");
        QCOMPARE(window.Settings().Line("B", "Ora"), given.shown);
        window.AddRoma();

        window.Click("OK");

        QCOMPARE(window.Settings().Line("RM", "Ora"), given.shown);
    }

    static void listWithoutAChoiceStopsTheSave_data()
    {
        static constexpr std::array kStops{Case{"cboTipoConn", "Dispositivo"}, Case{"cboHandS", "Handshake"},
                                           Case{"cboParita", "Parita"}};
        AddCases(kStops);
    }

    static void listWithoutAChoiceStopsTheSave()
    {
        QFETCH(const Case, given);
        EditorWindow window(kEmptySettings);
        window.AddRoma();
        window.Pick("cboHandS", 1);
        window.Choice(given.name).setCurrentIndex(-1);
        window.Editor().SelectTab(2);

        ExpectStop(window, given.name);
        QCOMPARE(window.File(), SavedUpTo(given.shown));
        window.Click("Annulla");

        QVERIFY(!window.Editor().isVisible());
        QVERIFY(window.Editor().Cancel());
        QCOMPARE(window.File(), SavedUpTo(given.shown));
    }

    // The site stays in the list with the keys that were written before the save stopped.
    static void stoppedSaveOfAnExistingSiteCanBeCompleted()
    {
        EditorWindow window(Bytes(kFile), kCatalogue);
        window.Open();
        window.Choice("cboParita").setCurrentIndex(-1);

        ExpectStop(window, "cboParita");
        QCOMPARE(Lines(window), kFile.first(kFile.indexOf("Parita=N")));
        window.Pick("cboParita", 2);
        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
        QCOMPARE(Lines(window), FileWith("Parita=O"));
    }

    static void noScheduleChosenWritesNoSchedule()
    {
        EditorWindow window(Bytes(kFile), kCatalogue);
        window.Open();
        window.Choice("cboRicorrenza").setCurrentIndex(-1);

        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
        QStringList expected = kFile;
        expected.removeIf([](const QString& line) {
            return line.startsWith("Ricorrenza") || line.startsWith("Og") || line.startsWith("Ora");
        });
        QCOMPARE(Lines(window), expected);
    }

    static void everyWayToOkSavesTheWholeSite_data()
    {
        QTest::addColumn<Qt::Key>("key");
        for (const char* const control :
             {"txtXon", "txtXoff", "chkXon", "chkXoff", "chkAbilitato", "cboTipoConn", "cboHandS",
              "cboVelocita", "cboBitDati", "cboParita", "cboBitStop", "cboRicorrenza", "mskValore",
              "mskOrario", "lstGiorni", "txtDati", "txtDati2", "txtStorico", "txtLog"})
            QTest::newRow(control) << Qt::Key_Return;
        QTest::newRow("txtXon, keypad") << Qt::Key_Enter;
        QTest::newRow("OK, Enter") << Qt::Key_Return;
        QTest::newRow("OK, Space") << Qt::Key_Space;
        QTest::newRow("OK, click") << Qt::Key_unknown;
    }

    // Both empty flow characters are replaced although no field was left, and the save reaches its last key.
    static void everyWayToOkSavesTheWholeSite()
    {
        QFETCH(const Qt::Key, key);
        const QString control = QString(QTest::currentDataTag()).section(',', 0, 0);
        EditorWindow window(Bytes(FileWith("Dispositivo=COM|Handshake=XON|Xon= 1|Xoff= 2")), kCatalogue);
        window.Open();
        auto& part = window.At<QWidget>(qPrintable(control));
        window.Turn(part);
        part.setFocus();
        window.Set({"txtXon: ", "txtXoff: "});

        if (key == Qt::Key_unknown)
            QTest::mouseClick(&part, Qt::LeftButton);
        else
            window.Press(key);

        QVERIFY(!window.Editor().isVisible());
        QVERIFY(!window.Editor().Cancel());
        QCOMPARE(Lines(window), FileWith("Dispositivo=COM|Handshake=XON"));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmDettaglio_record_test> registered;
#include "frmDettaglio_record_test.moc"
