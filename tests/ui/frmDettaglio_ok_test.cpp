// What OK checks before it saves.
#include "tests/support/cases.h"
#include "tests/support/editor_window.h"
#include "tests/support/message_probe.h"
#include "tests/support/registered_test.h"
#include "ui/editor/site_list_view.h"
#include "ui/widgets/mask_edit.h"

#include <QTest>

namespace corvrec
{

namespace
{

constexpr auto kTaken = "Esiste già un sito con lo stesso nome o codice";
constexpr auto kStartInvalid = "Inserire correttamente l'ora di inizio.";
constexpr auto kIntervalInvalid = "Inserire correttamente l'intervallo di importazione";
constexpr auto kWeekdayMissing = "È necessario selezionare almeno un giorno per l'importazione settimanale";
constexpr auto kNameMissing = "È necessario inserire il nome del sito";

// Values for a complete new site, and what happens when OK is pressed with a page in front: the message, the
// page while it is open, and the page and focus afterwards.
struct Refusal {
    const char* name;
    const char* values;
    const char* message;
    int startPage;
    int pageBehindTheBox;
    int page;
    const char* focus;
};

// The checks of the file names select a page that does not exist, and those of the times select none, so the
// page turns only when the focus moves to the field. The start time of a continuous site is disabled.
constexpr std::array<Refusal, 10> kRefusals{{
    {"taken name", "txtNomeSito:  sITO a ", kTaken, 2, 0, 0, "OK"},
    {"taken code", "txtCodice: b", kTaken, 1, 0, 0, "OK"},
    {"reserved code", "txtCodice:  siti ", kTaken, 2, 0, 0, "OK"},
    {"hourly", "cboRicorrenza: Oraria|mskOrario: 24:00|txtDati: ", kStartInvalid, 2, 2, 1, "mskOrario"},
    {"daily", "cboRicorrenza: Giornaliera|mskOrario: 08:3_", kStartInvalid, 0, 0, 1, "mskOrario"},
    {"weekly", "cboRicorrenza: Settimanale|mskOrario: __:__", kStartInvalid, 2, 2, 1, "mskOrario"},
    {"continuous", "mskOrario: 23:60", kStartInvalid, 0, 0, 1, "cboRicorrenza"},
    {"interval", "cboRicorrenza: Oraria|txtDati: ", kIntervalInvalid, 0, 0, 1, "mskValore"},
    {"25 hours", "cboRicorrenza: Oraria|mskValore: 25:00", kIntervalInvalid, 2, 2, 1, "mskValore"},
    {"name of blanks", "txtNomeSito:    ", kNameMissing, 2, 0, 0, "txtNomeSito"},
}};

// A site that has everything wrong is completed step by step.
constexpr std::array<Refusal, 9> kSteps{{
    {"", "", kTaken, 2, 0, 0, "OK"},
    {"", "txtNomeSito: ", kStartInvalid, 2, 2, 1, "mskOrario"},
    {"", "mskOrario: 23:59", kWeekdayMissing, 2, 1, 1, "lstGiorni"},
    {"", "lstGiorni: 6", "È necessario inserire il nome del file dati", 0, 0, 2, "txtDati"},
    {"", R"(txtDati: C:\Dati\A.txt)", "È necessario inserire il nome del file di scambio dati", 1, 1, 2,
     "txtDati2"},
    {"", "txtDati2: s", "È necessario inserire il nome del file storico", 0, 0, 2, "txtStorico"},
    {"", "txtStorico: h", "È necessario inserire il nome del file di log", 2, 2, 2, "txtLog"},
    {"", "txtLog: l", kNameMissing, 1, 0, 0, "txtNomeSito"},
    {"", "txtNomeSito: Roma", "È necessario inserire il codice del sito", 2, 0, 0, "txtCodice"},
}};

// Values that OK accepts, and the interval that it saves.
struct Acceptance {
    const char* name;
    const char* values;
    const char* interval;
};

constexpr std::array<Acceptance, 6> kAcceptances{{
    {"midnight, no interval", "cboRicorrenza: Oraria|mskOrario: 00:00|mskValore: 00:00", "Ogni= 0"},
    {"days empty", "cboRicorrenza: Giornaliera|mskValore: ", "Ogni= 0"},
    {"days in letters", "cboRicorrenza: Giornaliera|mskValore: due", "Ogni= 0"},
    {"half a day", "cboRicorrenza: Giornaliera|mskValore: 0.5", "Ogni= 43200"},
    {"weeks", "cboRicorrenza: Settimanale|lstGiorni: 0|mskValore: 2 settimane", "Ogni= 1209600"},
    {"hidden weekdays", "cboRicorrenza: Settimanale|cboRicorrenza: Giornaliera", "Ogni= 86400"},
}};

// Presses OK and expects a refusal that leaves the file unchanged and the editor open.
void ExpectRefusal(EditorWindow& window, const Refusal& expected)
{
    window.Set(Parts(expected.values));
    window.Editor().SelectTab(expected.startPage);
    const QByteArray before = window.File();
    int pageBehindTheBox = -1;
    MessageProbe box(Qt::Key_Return, [&] { pageBehindTheBox = window.Tab(); });

    window.Click("OK");

    QCOMPARE(box.text(), expected.message);
    QCOMPARE(box.title(),
             QString(expected.message) == kStartInvalid ? "Configurazione Corvane Recorder" : "Setup");
    QCOMPARE(box.icon(), QMessageBox::Warning);
    QCOMPARE(box.buttons(), QStringList({"OK"}));
    QCOMPARE(pageBehindTheBox, expected.pageBehindTheBox);
    QCOMPARE(window.Tab(), expected.page);
    QCOMPARE(window.Focus(), expected.focus);
    QVERIFY(window.Editor().isVisible());
    QCOMPARE(window.File(), before);
    BringToFront(window.Editor());
}

QString CollisionWith(const QString& name)
{
    return "I nomi dei file per il salvataggio dei dati corrispondono a quelli inseriti per il sito " + name +
           ".\nPer evitare possibili perdite di dati, si consiglia di modificare il nome dei file.\nSi "
           "desidera salvare ugualmente?";
}

// A site list without a window that returns fixed answers to the editor.
class FixedList final : public SiteListView
{
public:
    explicit FixedList(std::vector<SiteRow> rows)
        : rows_(std::move(rows))
    {
    }

    std::string SelectedSite() const override { return {}; }
    std::string SelectedName() const override { return {}; }
    std::span<const SiteRow> Sites() const override { return rows_; }
    int ComPort() const override { return 2; }

private:
    std::vector<SiteRow> rows_;
};

// Whether the editor accepts this name and code next to these sites: names and codes.
bool IsUnique(const QJsonArray& rows, const QString& name, const QString& code, bool isNew = true)
{
    std::vector<SiteRow> sites;
    for (const QJsonValue row : rows)
        sites.push_back({.name = row[0].toString().toStdString(),
                         .code = row[1].toString().toStdString(),
                         .enabled = 1,
                         .schedule = std::nullopt});
    const FixedList list(sites);
    SettingsFile settings;
    FakeClock clock;
    QtEventPump events(clock);
    frmDettaglio editor({settings.Directory(), *settings, clock, events, {}}, list);
    editor.SetNuovo(isNew);
    return editor.SitoUnivoco(name, code);
}

} // namespace

class frmDettaglio_ok_test : public QObject
{
    Q_OBJECT

private slots:
    static void trimsNameAndCodeFirst()
    {
        EditorWindow window(SettingsWith({}));
        window.AddRoma();
        window.Set({"txtNomeSito:   Roma\t ", "txtCodice:  rm ", "txtDati: "});
        MessageProbe dataMissing(Qt::Key_Return);

        QTest::keyClick(&window.Field("txtDati"), Qt::Key_Return);

        QCOMPARE(dataMissing.text(), "È necessario inserire il nome del file dati");
        // Only blanks are trimmed, and the letters keep their case.
        window.ExpectShown({"txtNomeSito: Roma\t", "txtCodice: rm"});
    }

    static void refusals_data() { AddCases(kRefusals); }
    static void refusals()
    {
        QFETCH(const Refusal, given);
        EditorWindow window(SettingsWith({"A", "B"}));
        window.AddRoma();

        ExpectRefusal(window, given);
    }

    static void firstFailureIsTheOneReported()
    {
        EditorWindow window(SettingsWith({"A"}));
        window.Add();
        window.Set({"txtNomeSito: Sito A", "cboRicorrenza: Settimanale", "mskOrario: __:__",
                    "txtDati: ", "txtDati2: ", "txtStorico: ", "txtLog: "});
        for (const Refusal& step : kSteps)
            ExpectRefusal(window, step);
        window.Set({"txtCodice: RM"});
        MessageProbe collision(Qt::Key_Return);

        window.Click("OK");

        QCOMPARE(collision.text(), CollisionWith("Sito A"));
        QVERIFY(!window.Editor().isVisible());
    }

    // The name cannot be changed, so the focus moves to the first control that can.
    static void missingNameOfAnExistingSite()
    {
        EditorWindow window("[Siti]\r\nA=\r\n[General]\r\nCom=COM2\r\n");
        window.Open();

        ExpectRefusal(window, {"", "", kNameMissing, 2, 0, 0, "chkAbilitato"});
    }

    static void otherValuesAreNotChecked_data() { AddCases(kAcceptances); }
    static void otherValuesAreNotChecked()
    {
        QFETCH(const Acceptance, given);
        EditorWindow window(SettingsWith({}));
        window.AddRoma();
        window.Set(Parts(given.values));

        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
        QCOMPARE(window.Settings().Line("RM", "Ogni"), given.interval);
    }

    static void wrongStartTimeIsReplacedByTyping_data()
    {
        QTest::addColumn<QString>("before");
        QTest::newRow("the field itself") << "mskOrario";
        QTest::newRow("a field of its page") << "cboRicorrenza";
        QTest::newRow("a field of another page") << "txtDati";
        QTest::newRow("OK") << "OK";
    }

    static void wrongStartTimeIsReplacedByTyping()
    {
        QFETCH(const QString, before);
        EditorWindow window(SettingsWith({}));
        window.AddRoma();
        window.Choose({"cboRicorrenza: Giornaliera"});
        window.Retype("mskOrario", "108");
        auto& focused = window.At<QWidget>(qPrintable(before));
        window.Turn(focused);
        focused.setFocus();
        window.At<MaskEdit>("mskOrario").setSelection(4, 0);
        MessageProbe refused(Qt::Key_Return);
        window.Press(Qt::Key_Return);
        QCOMPARE(refused.text(), kStartInvalid);
        BringToFront(window.Editor());
        QCOMPARE(window.Focus(), "mskOrario");
        QCOMPARE(window.Field("mskOrario").selectedText(), "10:8_");

        QTest::keyClicks(&window.Field("mskOrario"), "0915");

        QCOMPARE(window.Shows("mskOrario"), "09:15");
    }

    // The focus does not move, so no leaving or entering rule runs.
    static void takenNameKeepsTheCaretAndTheCode()
    {
        EditorWindow window(SettingsWith({"AB"}));
        window.AddRoma();
        window.Retype("txtCodice", "ab");
        window.Field("txtCodice").setCursorPosition(1);
        MessageProbe taken(Qt::Key_Return);
        window.Press(Qt::Key_Return);
        QCOMPARE(taken.text(), kTaken);
        BringToFront(window.Editor());
        QCOMPARE(window.Focus(), "txtCodice");

        QTest::keyClicks(&window.Field("txtCodice"), "x");

        QCOMPARE(window.Shows("txtCodice"), "axb");
    }

    static void existingSiteIsNeverCompared()
    {
        EditorWindow window(
            "[Siti]\r\nA=Roma\r\nB=Roma\r\n[General]\r\nCom=COM2\r\nLog=x\r\n[A]\r\nDati=a\r\n"
            "Dati2=b\r\nStorico=c\r\n[B]\r\nDati=d\r\nDati2=e\r\nStorico=f\r\n");
        window.Open(1);

        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
        QVERIFY(!window.Editor().Cancel());
    }

    static void uniqueness_data() { AddVectors("site_unique"); }
    static void uniqueness()
    {
        QFETCH(const QJsonObject, given);

        QCOMPARE(IsUnique(given["rows"].toArray(), given["name"].toString(), given["code"].toString(),
                          given["new_site"].toBool()),
                 given["out"].toBool());
    }

    // Characters outside the code page become question marks, so a second such site would overwrite the
    // first. A site with a reserved code would overwrite the program's own settings.
    static void textsThatAreEqualInTheFileAreTaken()
    {
        const QJsonArray rows{QJsonArray{"Sede Č", "Č1"}};
        for (const char* const name : {"Sede Ж", "sede ?"})
            QVERIFY2(!IsUnique(rows, name, "C2"), name);
        for (const char* const code : {"Ć1", "?1", "General", "general", "GENERAL", "Siti", "SITI"})
            QVERIFY2(!IsUnique(rows, "Nord", code), code);
        QVERIFY(IsUnique(rows, "Sede à", "Ð1"));
    }

    static void collisionMessageNamesTheSite_data() { AddVectors("collision_message"); }
    static void collisionMessageNamesTheSite()
    {
        QFETCH(const QJsonObject, given);
        EditorWindow window("[Siti]\r\nA=" + given["name"].toString().toStdString() +
                            "\r\n[General]\r\nCom=COM2\r\n[A]\r\nDati=C:\\Roma\\Dati.txt\r\n");
        window.AddRoma();
        MessageProbe question(Qt::Key_Escape);

        window.Click("OK");

        // The message box breaks lines where the text has carriage returns.
        QCOMPARE(question.text(), given["out"].toString().replace('\r', '\n'));
    }

    static void collidingFilesAreRefusedOrSaved_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("data file") << R"(txtDati: C:\Dati\A.txt)";
        QTest::newRow("exchange file") << R"(txtDati2: C:\Scambio\A.txt)";
        QTest::newRow("history file, as the file will hold it") << R"(txtStorico: C:\Storico\Ж.txt)";
    }

    static void collidingFilesAreRefusedOrSaved()
    {
        QFETCH(const QString, file);
        SettingsFile settings(SettingsWith({"B", "A"}));
        settings->Write("A", "Storico", R"(C:\Storico\?.txt)");
        EditorWindow window(settings.Bytes());
        window.AddRoma();
        window.Set({file});
        window.Editor().SelectTab(0);
        const QByteArray before = window.File();
        int pageBehindTheBox = -1;
        {
            MessageProbe no(QString("No"), [&] { pageBehindTheBox = window.Tab(); });
            window.Click("OK");
            QCOMPARE(no.text(), CollisionWith("Sito A"));
            QCOMPARE(no.title(), "Setup");
            QCOMPARE(no.icon(), QMessageBox::Information);
            QCOMPARE(no.buttons(), QStringList({"Sì", "No"}));
        }
        QCOMPARE(pageBehindTheBox, 2);
        QCOMPARE(window.File(), before);
        QVERIFY(window.Editor().isVisible());
        QCOMPARE(window.Tab(), 2);
        QCOMPARE(window.Focus(), "txtDati");
        window.ExpectShown({"txtNomeSito: Roma", file});
        MessageProbe yes(QString("Sì"));

        window.Click("OK");

        QCOMPARE(yes.text(), CollisionWith("Sito A"));
        QVERIFY(!window.Editor().isVisible());
        QVERIFY(!window.Editor().Cancel());
        QCOMPARE(window.Settings().Line("RM", "CharToDel"), "CharToDel=00");
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmDettaglio_ok_test> registered;
#include "frmDettaglio_ok_test.moc"
