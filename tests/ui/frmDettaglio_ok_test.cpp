#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/registered_test.h"
#include "tests/support/vectors.h"
#include "ui/editor/site_list_view.h"
#include "ui/widgets/check_list.h"
#include "ui/widgets/mask_edit.h"
#include "ui/widgets/texts.h"

#include <QPushButton>
#include <QTest>

namespace corvrec
{

namespace
{

enum Kind { continuous, hourly, daily, weekly };

constexpr auto kSetup = "Setup";
constexpr auto kApplication = "Configurazione Corvane Recorder";

// The state of the editor while the message box is open and after it has closed.
struct Refusal {
    QString message;
    QString title;
    int pageBehindTheBox;
    int page;
    QString focus;
};

// Presses OK and expects a refusal that leaves the file unchanged and the editor open.
void ExpectRefusal(EditorWindow& window, const Refusal& expected)
{
    const QByteArray before = window.File();
    int pageBehindTheBox = -1;
    MessageProbe box(Qt::Key_Return, [&] { pageBehindTheBox = window.Tab(); });

    window.Click("OK");

    QCOMPARE(box.text(), expected.message);
    QCOMPARE(box.title(), expected.title);
    QCOMPARE(box.icon(), QMessageBox::Warning);
    QCOMPARE(box.buttons(), QStringList({"OK"}));
    QCOMPARE(pageBehindTheBox, expected.pageBehindTheBox);
    QCOMPARE(window.Tab(), expected.page);
    QCOMPARE(window.Focus(), expected.focus);
    QVERIFY(window.Editor().isVisible());
    QCOMPARE(window.File(), before);
    BringToFront(window.Editor());
}

// Fills in a new site so that OK would accept it, and shows its first page.
void AddComplete(EditorWindow& window)
{
    window.Add();
    window.Retype("txtNomeSito", "Roma");
    window.Retype("txtCodice", "RM");
    window.Retype("txtDati", "C:\\Roma\\Dati.txt");
    window.Retype("txtDati2", "C:\\Roma\\Scambio.txt");
    window.Retype("txtStorico", "C:\\Roma\\Storico.txt");
    window.Editor().SelectTab(0);
}

QString CollisionWith(const QString& name)
{
    return "I nomi dei file per il salvataggio dei dati corrispondono a quelli inseriti per il sito " + name +
           ".\nPer evitare possibili perdite di dati, si consiglia di modificare il nome dei file.\nSi "
           "desidera "
           "salvare ugualmente?";
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

} // namespace

class frmDettaglio_ok_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void trimsNameAndCodeFirst()
    {
        EditorWindow window(SettingsWith({}));
        AddComplete(window);
        window.Retype("txtDati", "");
        window.Field("txtNomeSito").setText("  Roma\t ");
        window.Field("txtCodice").setText(" rm ");
        MessageProbe dataMissing(Qt::Key_Return);

        QTest::keyClick(&window.Field("txtDati"), Qt::Key_Return);

        QCOMPARE(dataMissing.text(), "È necessario inserire il nome del file dati");
        // Only blanks are trimmed, and the letters keep their case.
        QCOMPARE(window.Shows("txtNomeSito"), "Roma\t");
        QCOMPARE(window.Shows("txtCodice"), "rm");
    }

    static void takenNameOrCodeIsRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("code");
        QTest::newRow("name") << "Sito A"
                              << "RM";
        QTest::newRow("name in other letters") << "sITO a"
                                               << "RM";
        QTest::newRow("name with blanks around it") << " Sito A "
                                                    << "RM";
        QTest::newRow("code") << "Roma"
                              << "A";
        QTest::newRow("code in other letters") << "Roma"
                                               << "a";
        QTest::newRow("code of the last site") << "Roma"
                                               << "b";
    }

    static void takenNameOrCodeIsRefused()
    {
        QFETCH(QString, name);
        QFETCH(QString, code);
        EditorWindow window(SettingsWith({"A", "B"}));
        AddComplete(window);
        window.Retype("txtNomeSito", name);
        window.Retype("txtCodice", code);
        window.Editor().SelectTab(2);

        ExpectRefusal(window, {"Esiste già un sito con lo stesso nome o codice", kSetup, 0, 0, "OK"});
    }

    static void takenNameKeepsTheFocus()
    {
        EditorWindow window(SettingsWith({"A"}));
        AddComplete(window);
        window.Retype("txtCodice", "A");
        MessageProbe taken(Qt::Key_Return);

        window.Press(Qt::Key_Return);

        QCOMPARE(taken.text(), "Esiste già un sito con lo stesso nome o codice");
        QCOMPARE(window.Focus(), "txtCodice");
    }

    // The focus does not move, so no leaving or entering rule runs.
    static void takenNameKeepsTheCaretAndTheCode()
    {
        EditorWindow window(SettingsWith({"AB"}));
        AddComplete(window);
        window.Retype("txtCodice", "ab");
        window.Field("txtCodice").setCursorPosition(1);
        MessageProbe taken(Qt::Key_Return);
        window.Press(Qt::Key_Return);
        QCOMPARE(taken.text(), "Esiste già un sito con lo stesso nome o codice");
        BringToFront(window.Editor());

        QTest::keyClicks(&window.Field("txtCodice"), "x");

        QCOMPARE(window.Shows("txtCodice"), "axb");
    }

    static void existingSiteIsNeverCompared()
    {
        EditorWindow window(
            "[Siti]\r\nA=Roma\r\nB=Roma\r\n[General]\r\nCom=COM2\r\nLog=x\r\n[A]\r\nDati=a\r\nDati2=b\r\n"
            "Storico=c\r\n[B]\r\nDati=d\r\nDati2=e\r\nStorico=f\r\n");
        window.Open(1);

        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
        QVERIFY(!window.Editor().Cancel());
    }

    static void uniqueness_data()
    {
        QTest::addColumn<QJsonObject>("vector");
        for (const QJsonValue vector : Vectors("site_unique"))
            QTest::addRow("'%s' '%s', %s, %d rows", qPrintable(vector["name"].toString()),
                          qPrintable(vector["code"].toString()),
                          vector["new_site"].toBool() ? "new" : "existing",
                          static_cast<int>(vector["rows"].toArray().size()))
                << vector.toObject();
    }

    static void uniqueness()
    {
        QFETCH(QJsonObject, vector);
        std::vector<SiteRow> rows;
        for (const QJsonValue row : vector["rows"].toArray())
            rows.push_back({.name = row[0].toString().toStdString(),
                            .code = row[1].toString().toStdString(),
                            .enabled = 1,
                            .schedule = ""});
        const FixedList list(rows);
        SettingsFile settings;
        FakeClock clock;
        QtEventPump events(clock);
        frmDettaglio editor({settings.Directory(), *settings, clock, events, {}}, list);
        editor.SetNuovo(vector["new_site"].toBool());

        const bool unique = editor.SitoUnivoco(vector["name"].toString(), vector["code"].toString());

        QCOMPARE(unique, vector["out"].toBool());
    }

    static void textsThatAreEqualInTheFileAreTaken_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("code");
        QTest::addColumn<bool>("unique");
        QTest::newRow("the same name in the file") << "Sede Ж"
                                                   << "C2" << false;
        QTest::newRow("the same code in the file") << "Nord"
                                                   << "Ć1" << false;
        QTest::newRow("what the file holds of the code") << "Nord"
                                                         << "?1" << false;
        QTest::newRow("what the file holds of the name") << "sede ?"
                                                         << "C2" << false;
        QTest::newRow("characters of the page") << "Sede à"
                                                << "Ð1" << true;
    }

    // Characters outside the code page become question marks, so a second such site would overwrite the
    // first.
    static void textsThatAreEqualInTheFileAreTaken()
    {
        QFETCH(QString, name);
        QFETCH(QString, code);
        QFETCH(bool, unique);
        const FixedList list({{.name = "Sede Č", .code = "Č1", .enabled = 1, .schedule = ""}});
        SettingsFile settings;
        FakeClock clock;
        QtEventPump events(clock);
        frmDettaglio editor({settings.Directory(), *settings, clock, events, {}}, list);
        editor.SetNuovo(true);

        QCOMPARE(editor.SitoUnivoco(name, code), unique);
    }

    static void startTime_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("valid");
        QTest::newRow("empty") << "" << false;
        QTest::newRow("one digit short") << "083" << false;
        QTest::newRow("hour 24") << "2400" << false;
        QTest::newRow("minute 60") << "2360" << false;
        QTest::newRow("midnight") << "0000" << true;
        QTest::newRow("last minute") << "2359" << true;
    }

    static void startTime()
    {
        QFETCH(QString, typed);
        QFETCH(bool, valid);
        for (const Kind kind : {hourly, daily, weekly}) {
            EditorWindow window(SettingsWith({"A"}));
            AddComplete(window);
            window.Pick("cboRicorrenza", kind);
            window.At<CheckList>("lstGiorni").SetMarked(0, true);
            if (kind == hourly)
                window.Retype("mskValore", "0100");
            window.Retype("mskOrario", typed);
            window.Editor().SelectTab(2);

            if (valid) {
                window.Click("OK");
                QVERIFY(!window.Editor().isVisible());
            } else {
                // The page turns only after the box has closed.
                ExpectRefusal(window,
                              {"Inserire correttamente l'ora di inizio.", kApplication, 2, 1, "mskOrario"});
            }
        }
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
        AddComplete(window);
        window.Pick("cboRicorrenza", daily);
        window.Retype("mskOrario", "108");
        auto& focused = window.At<QWidget>(qPrintable(before));
        window.Turn(focused);
        focused.setFocus();
        window.At<MaskEdit>("mskOrario").setSelection(4, 0);
        MessageProbe refused(Qt::Key_Return);
        window.Press(Qt::Key_Return);
        QCOMPARE(refused.text(), "Inserire correttamente l'ora di inizio.");
        BringToFront(window.Editor());
        QCOMPARE(window.Focus(), "mskOrario");
        QCOMPARE(window.Field("mskOrario").selectedText(), "10:8_");

        QTest::keyClicks(&window.Field("mskOrario"), "0915");

        QCOMPARE(window.Shows("mskOrario"), "09:15");
    }

    static void startTimeOfAContinuousSiteIsCheckedToo()
    {
        EditorWindow window(SettingsWith({}));
        AddComplete(window);
        window.At<MaskEdit>("mskOrario").setText("__:__");

        // The field itself is disabled, so the first control of its page takes the focus.
        ExpectRefusal(window,
                      {"Inserire correttamente l'ora di inizio.", kApplication, 0, 1, "cboRicorrenza"});
    }

    static void hourlyInterval_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("valid");
        QTest::newRow("empty") << "" << false;
        QTest::newRow("incomplete") << "01" << false;
        QTest::newRow("minute 60") << "0060" << false;
        QTest::newRow("hour 25") << "2500" << false;
        QTest::newRow("nothing at all") << "0000" << true;
        QTest::newRow("an hour and a half") << "0130" << true;
    }

    static void hourlyInterval()
    {
        QFETCH(QString, typed);
        QFETCH(bool, valid);
        EditorWindow window(SettingsWith({"A"}));
        AddComplete(window);
        window.Pick("cboRicorrenza", hourly);
        window.Retype("mskValore", typed);
        window.Editor().SelectTab(0);

        if (valid) {
            window.Click("OK");
            QVERIFY(!window.Editor().isVisible());
        } else {
            ExpectRefusal(window,
                          {"Inserire correttamente l'intervallo di importazione", kSetup, 0, 1, "mskValore"});
        }
    }

    static void otherIntervalsAreNotChecked_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");
        QTest::newRow("daily, empty") << int(daily) << ""
                                      << "Ogni= 0";
        QTest::newRow("daily, letters") << int(daily) << "due"
                                        << "Ogni= 0";
        QTest::newRow("daily, half a day") << int(daily) << "0.5"
                                           << "Ogni= 43200";
        QTest::newRow("weekly, empty") << int(weekly) << ""
                                       << "Ogni= 0";
        QTest::newRow("weekly, with letters") << int(weekly) << "2 settimane"
                                              << "Ogni= 1209600";
    }

    static void otherIntervalsAreNotChecked()
    {
        QFETCH(int, kind);
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        EditorWindow window(SettingsWith({}));
        AddComplete(window);
        window.Pick("cboRicorrenza", kind);
        window.At<CheckList>("lstGiorni").SetMarked(0, true);
        window.Retype("mskValore", typed);

        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
        QCOMPARE(QString::fromStdString(window.Settings().Line("RM", "Ogni")), stored);
    }

    static void weeklySiteNeedsADay()
    {
        EditorWindow window(SettingsWith({}));
        AddComplete(window);
        window.Pick("cboRicorrenza", weekly);
        window.Editor().SelectTab(2);

        ExpectRefusal(window, {"È necessario selezionare almeno un giorno per l'importazione settimanale",
                               kSetup, 1, 1, "lstGiorni"});
        QTest::keyClick(&window.At<CheckList>("lstGiorni"), Qt::Key_Space);
        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
    }

    static void hiddenWeekdaysAreNotChecked()
    {
        EditorWindow window(SettingsWith({}));
        AddComplete(window);
        window.Pick("cboRicorrenza", weekly);
        window.Pick("cboRicorrenza", daily);

        window.Click("OK");

        QVERIFY(!window.Editor().isVisible());
    }

    static void missingTexts_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("startPage");
        QTest::addColumn<int>("pageBehindTheBox");
        QTest::addColumn<int>("page");
        // The checks of the file names select a page that does not exist, so the page turns only when the
        // focus moves to the field.
        QTest::newRow("txtDati") << "È necessario inserire il nome del file dati" << 0 << 0 << 2;
        QTest::newRow("txtDati2") << "È necessario inserire il nome del file di scambio dati" << 1 << 1 << 2;
        QTest::newRow("txtStorico") << "È necessario inserire il nome del file storico" << 0 << 0 << 2;
        QTest::newRow("txtLog") << "È necessario inserire il nome del file di log" << 2 << 2 << 2;
        QTest::newRow("txtNomeSito") << "È necessario inserire il nome del sito" << 1 << 0 << 0;
        QTest::newRow("txtCodice") << "È necessario inserire il codice del sito" << 2 << 0 << 0;
    }

    static void missingTexts()
    {
        QFETCH(QString, message);
        QFETCH(int, startPage);
        QFETCH(int, pageBehindTheBox);
        QFETCH(int, page);
        EditorWindow window(SettingsWith({"A"}));
        AddComplete(window);
        window.Retype(QTest::currentDataTag(), "");
        window.Editor().SelectTab(startPage);

        ExpectRefusal(window, {message, kSetup, pageBehindTheBox, page, QTest::currentDataTag()});
    }

    static void missingNameOfAnExistingSite()
    {
        EditorWindow window("[Siti]\r\nA=\r\n[General]\r\nCom=COM2\r\n");
        window.Open();
        window.Editor().SelectTab(2);

        // The name cannot be changed, so the focus moves to the first control that can.
        ExpectRefusal(window, {"È necessario inserire il nome del sito", kSetup, 0, 0, "chkAbilitato"});
    }

    static void blanksAreNotAName()
    {
        EditorWindow window(SettingsWith({}));
        AddComplete(window);
        window.Retype("txtNomeSito", "   ");

        ExpectRefusal(window, {"È necessario inserire il nome del sito", kSetup, 0, 0, "txtNomeSito"});
    }

    static void firstFailureIsTheOneReported()
    {
        EditorWindow window(SettingsWith({"A"}));
        window.Add();
        window.Retype("txtNomeSito", "Sito A");
        window.Pick("cboRicorrenza", weekly);
        window.Retype("mskOrario", "");
        for (const char* const file : {"txtDati", "txtDati2", "txtStorico", "txtLog"})
            window.Retype(file, "");

        window.Editor().SelectTab(0);
        ExpectRefusal(window, {"Esiste già un sito con lo stesso nome o codice", kSetup, 0, 0, "OK"});
        window.Retype("txtNomeSito", "");
        ExpectRefusal(window, {"Inserire correttamente l'ora di inizio.", kApplication, 0, 1, "mskOrario"});
        window.Retype("mskOrario", "0830");
        ExpectRefusal(window, {"È necessario selezionare almeno un giorno per l'importazione settimanale",
                               kSetup, 1, 1, "lstGiorni"});
        window.At<CheckList>("lstGiorni").SetMarked(0, true);
        ExpectRefusal(window, {"È necessario inserire il nome del file dati", kSetup, 1, 2, "txtDati"});
        window.Retype("txtDati", "C:\\Dati\\A.txt");
        ExpectRefusal(window,
                      {"È necessario inserire il nome del file di scambio dati", kSetup, 2, 2, "txtDati2"});
        window.Retype("txtDati2", "s");
        ExpectRefusal(window, {"È necessario inserire il nome del file storico", kSetup, 2, 2, "txtStorico"});
        window.Retype("txtStorico", "h");
        ExpectRefusal(window, {"È necessario inserire il nome del file di log", kSetup, 2, 2, "txtLog"});
        window.Retype("txtLog", "l");
        ExpectRefusal(window, {"È necessario inserire il nome del sito", kSetup, 0, 0, "txtNomeSito"});
        window.Retype("txtNomeSito", "Roma");
        ExpectRefusal(window, {"È necessario inserire il codice del sito", kSetup, 0, 0, "txtCodice"});
        window.Retype("txtCodice", "RM");
        MessageProbe collision(Qt::Key_Return);
        window.Click("OK");

        QCOMPARE(collision.text(), CollisionWith("Sito A"));
        QVERIFY(!window.Editor().isVisible());
    }

    static void startTimeComesBeforeTheInterval()
    {
        EditorWindow window(SettingsWith({}));
        AddComplete(window);
        window.Pick("cboRicorrenza", hourly);
        window.Retype("mskOrario", "1");
        window.Retype("txtDati", "");

        ExpectRefusal(window, {"Inserire correttamente l'ora di inizio.", kApplication, 2, 1, "mskOrario"});
        window.Retype("mskOrario", "1000");

        ExpectRefusal(window,
                      {"Inserire correttamente l'intervallo di importazione", kSetup, 1, 1, "mskValore"});
    }

    static void collisionQuestion()
    {
        EditorWindow window(SettingsWith({"A", "B"}));
        AddComplete(window);
        window.Retype("txtStorico", "C:\\Storico\\B.txt");
        window.Editor().SelectTab(0);
        int pageBehindTheBox = -1;
        MessageProbe question(QString("No"), [&] { pageBehindTheBox = window.Tab(); });

        window.Click("OK");

        QCOMPARE(question.text(), CollisionWith("Sito B"));
        QCOMPARE(question.title(), kSetup);
        QCOMPARE(question.icon(), QMessageBox::Information);
        QCOMPARE(question.buttons(), QStringList({"Sì", "No"}));
        QCOMPARE(pageBehindTheBox, 2);
    }

    static void collisionMessageNamesTheSite_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message");
        for (const QJsonValue vector : Vectors("collision_message")) {
            const QString name = vector["name"].toString();
            // The message box breaks lines where the text has carriage returns.
            QTest::newRow(qPrintable("'" + name + "'"))
                << name << vector["out"].toString().replace('\r', '\n');
        }
    }

    static void collisionMessageNamesTheSite()
    {
        QFETCH(QString, name);
        QFETCH(QString, message);
        EditorWindow window("[Siti]\r\nA=" + name.toStdString() +
                            "\r\n[General]\r\nCom=COM2\r\n[A]\r\nDati=C:\\Roma\\Dati.txt\r\n");
        AddComplete(window);
        MessageProbe question(Qt::Key_Escape);

        window.Click("OK");

        QCOMPARE(question.text(), message);
    }

    static void collisionRefusedLeavesTheFile_data()
    {
        QTest::addColumn<Qt::Key>("answer");
        QTest::newRow("Escape") << Qt::Key_Escape;
        QTest::newRow("No") << Qt::Key_N;
    }

    static void collisionRefusedLeavesTheFile()
    {
        QFETCH(Qt::Key, answer);
        EditorWindow window(SettingsWith({"A"}));
        AddComplete(window);
        window.Retype("txtDati", "C:\\Dati\\A.txt");
        const QByteArray before = window.File();
        std::unique_ptr<MessageProbe> question;
        if (answer == Qt::Key_Escape)
            question = std::make_unique<MessageProbe>(answer);
        else
            question = std::make_unique<MessageProbe>(QString("No"));

        window.Click("OK");

        QCOMPARE(question->text(), CollisionWith("Sito A"));
        QCOMPARE(window.File(), before);
        QVERIFY(window.Editor().isVisible());
        QCOMPARE(window.Tab(), 2);
        QCOMPARE(window.Focus(), "txtDati");
        QCOMPARE(window.Shows("txtNomeSito"), "Roma");
    }

    static void collisionAcceptedSaves()
    {
        EditorWindow window(SettingsWith({"A"}));
        AddComplete(window);
        window.Retype("txtDati", "C:\\Dati\\A.txt");
        MessageProbe question(QString("Sì"));

        window.Click("OK");

        QCOMPARE(question.text(), CollisionWith("Sito A"));
        QVERIFY(!window.Editor().isVisible());
        QVERIFY(!window.Editor().Cancel());
        QCOMPARE(QString::fromStdString(window.Settings().Line("RM", "Dati")), "Dati=C:\\Dati\\A.txt");
    }

    static void filesCollideAsTheFileHoldsThem()
    {
        EditorWindow window("[Siti]\r\nA=Sito A\r\n[General]\r\nCom=COM2\r\n[A]\r\nStorico=C:\\?.txt\r\n");
        AddComplete(window);
        window.Field("txtStorico").setText("C:\\Ж.txt");
        MessageProbe question(Qt::Key_Escape);

        window.Click("OK");

        QCOMPARE(question.text(), CollisionWith("Sito A"));
    }

    static void collisions_data()
    {
        QTest::addColumn<QJsonObject>("vector");
        for (const QJsonValue vector : Vectors("file_collision"))
            QTest::addRow("%s: %s, %s, %s", qPrintable(vector["own_code"].toString()),
                          qPrintable(vector["data"].toString()), qPrintable(vector["exchange"].toString()),
                          qPrintable(vector["history"].toString()))
                << vector.toObject();
    }

    static void collisions()
    {
        QFETCH(QJsonObject, vector);
        QString siti = "[Siti]\r\n";
        QString sections;
        for (const QJsonValue site : vector["sites"].toArray()) {
            siti += site["code"].toString() + "=" + site["name"].toString() + "\r\n";
            sections += "[" + site["code"].toString() + "]\r\n";
            for (const char* const key : {"Dati", "Dati2", "Storico"})
                sections += QString(key) + "=" + site[key].toString() + "\r\n";
        }
        EditorWindow window((siti + "[General]\r\nCom=COM2\r\n" + sections).toStdString());
        AddComplete(window);
        window.Editor().SetNuovo(false); // so that the code may be a listed one
        window.Field("txtCodice").setText(vector["own_code"].toString());
        window.Retype("txtDati", vector["data"].toString());
        window.Retype("txtDati2", vector["exchange"].toString());
        window.Retype("txtStorico", vector["history"].toString());
        window.Field("txtCodice").setText(vector["own_code"].toString());
        const int row = vector["row"].toInt();

        if (row < 0) {
            window.Click("OK");
            QVERIFY(!window.Editor().isVisible());
            return;
        }
        MessageProbe question(Qt::Key_Escape);
        window.Click("OK");
        QCOMPARE(question.text(), CollisionWith(vector["sites"][row]["name"].toString()));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmDettaglio_ok_test> registered;
#include "frmDettaglio_ok_test.moc"
