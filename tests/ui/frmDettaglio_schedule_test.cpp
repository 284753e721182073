#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "ui/widgets/check_list.h"
#include "ui/widgets/mask_edit.h"
#include "ui/widgets/texts.h"

#include <QSignalSpy>
#include <QTest>

namespace corvrec
{

namespace
{

enum Kind { continuous, hourly, daily, weekly };

constexpr auto kContinuousHelp = "Corvane recorder acquisisce i dati di questa sede senza mai interrompersi. "
                                 "Attenzione, perchè in questo caso ci "
                                 "può essere una sola sede abilitata.";
constexpr auto kHourlyHelp =
    "Corvane recorder acquisisce i dati di questa sede con l'intervallo orario indicato dall'utente nel "
    "campo \"\"ad "
    "ogni\"\", iniziando l'acquisizione dall' ora inserita nel campo \"\"a partire dalle\"\".";
constexpr auto kDailyHelp = "Corvane recorder acquisisce i dati di questa sede con l'intervallo giornaliero "
                            "indicato dall'utente nel campo "
                            "\"\"ogni\"\" all' ora inserita nel campo \"\"alle ore\"\".";
constexpr auto kWeeklyHelp = "L'aquisizione avverrà con l'intervallo settimanale indicato dall'utente nel "
                             "campo \"\"ogni\"\" all'ora inserita "
                             "nel campo \"\"alle ore. \"\"Nella lista è possibile scegliere i giorni in cui "
                             "deve avvenire la lettura marcandoli "
                             "con un segno di visto.";

// Those of the controls switched by the kind that are visible.
QStringList ShownControls(EditorWindow& window)
{
    QStringList shown;
    for (const char* const name :
         {"lblNessuno", "lblOgni", "mskValore", "txtTempo", "mskOrario", "lstGiorni"}) {
        if (!window.At<QWidget>(name).isHidden())
            shown.append(name);
    }
    return shown;
}

MaskEdit& Interval(EditorWindow& window)
{
    return window.At<MaskEdit>("mskValore");
}

MaskEdit& Start(EditorWindow& window)
{
    return window.At<MaskEdit>("mskOrario");
}

CheckList& Days(EditorWindow& window)
{
    return window.At<CheckList>("lstGiorni");
}

void ClickDay(EditorWindow& window, int row)
{
    QTest::mouseClick(Days(window).viewport(), Qt::LeftButton, {},
                      Days(window).visualItemRect(Days(window).item(row)).center());
}

void AddWith(EditorWindow& window, Kind kind)
{
    window.Add();
    window.Pick("cboRicorrenza", kind);
}

} // namespace

class frmDettaglio_schedule_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void kindRule_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("help");
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<QString>("unit");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QString>("mask");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("interval");
        const QStringList sentence{"lblOgni", "mskValore", "txtTempo", "mskOrario"};
        QTest::newRow("Continua") << int(continuous) << kContinuousHelp
                                  << QStringList({"lblNessuno", "mskValore", "mskOrario"}) << "" << false
                                  << ""
                                  << ""
                                  << "1";
        QTest::newRow("Oraria") << int(hourly) << kHourlyHelp << sentence << "ora/e a partire dalle" << true
                                << "##:##"
                                << "hh:mm"
                                << "__:__";
        QTest::newRow("Giornaliera") << int(daily) << kDailyHelp << sentence << "giorno/i alle ore" << true
                                     << ""
                                     << ""
                                     << "1";
        QTest::newRow("Settimanale") << int(weekly) << kWeeklyHelp << sentence + QStringList{"lstGiorni"}
                                     << "settimana/e alle ore" << true << ""
                                     << ""
                                     << "1";
    }

    static void kindRule()
    {
        QFETCH(int, kind);
        QFETCH(QString, help);
        QFETCH(QStringList, shown);
        QFETCH(QString, unit);
        QFETCH(bool, enabled);
        EditorWindow window(SettingsWith({}));
        for (const Kind before : {continuous, hourly, daily, weekly}) {
            AddWith(window, before);

            window.Pick("cboRicorrenza", kind);

            QCOMPARE(window.Shows("lblHelpParametri"), help);
            QCOMPARE(ShownControls(window), shown);
            if (!unit.isEmpty())
                QCOMPARE(window.Shows("txtTempo"), unit);
            QCOMPARE(IsEnabled(Interval(window)), enabled);
            QCOMPARE(IsEnabled(Start(window)), enabled);
            QTEST(Interval(window).mask(), "mask");
            QTEST(Interval(window).format(), "format");
            QTEST(Interval(window).text(), "interval");
            QCOMPARE(Start(window).mask(), "##:##");
            QCOMPARE(Start(window).format(), "hh:mm");
            QCOMPARE(Start(window).text(), "18:03");
        }
    }

    static void maskIsSetBeforeTheText()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, weekly);
        window.Retype("mskValore", "settimane");

        window.Pick("cboRicorrenza", hourly);

        QCOMPARE(Interval(window).text(), "__:__");
    }

    static void everyChangeOfKindDiscardsTheInterval()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, daily);
        window.Retype("mskValore", "3");
        QCOMPARE(Interval(window).text(), "3");

        window.Pick("cboRicorrenza", hourly);
        QCOMPARE(Interval(window).text(), "__:__");
        window.Pick("cboRicorrenza", daily);
        QCOMPARE(Interval(window).text(), "1");
        window.Retype("mskValore", "3");
        window.Pick("cboRicorrenza", weekly);

        QCOMPARE(Interval(window).text(), "1");
    }

    static void pickingTheSameKindKeepsTheInterval()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, daily);
        window.Retype("mskValore", "3");

        window.Pick("cboRicorrenza", daily);

        QCOMPARE(Interval(window).text(), "3");
    }

    static void startTimeOutlivesTheKind()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, hourly);
        window.Retype("mskOrario", "0715");

        for (const Kind kind : {continuous, daily, weekly, hourly}) {
            window.Pick("cboRicorrenza", kind);
            QCOMPARE(Start(window).text(), "07:15");
        }
    }

    static void weekdayMarksOutliveTheKind()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, weekly);
        ClickDay(window, 0);
        ClickDay(window, 6);

        window.Pick("cboRicorrenza", continuous);
        QCOMPARE(window.Shows("lstGiorni"), "0 6");
        window.Pick("cboRicorrenza", weekly);

        QCOMPARE(window.Shows("lstGiorni"), "0 6");
    }

    static void weekdaysAreMarkedByMouseAndSpace()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, weekly);

        ClickDay(window, 2);
        QTest::keyClick(&Days(window), Qt::Key_Down);
        QTest::keyClick(&Days(window), Qt::Key_Space);
        QCOMPARE(window.Shows("lstGiorni"), "2 3");
        ClickDay(window, 2);

        QCOMPARE(window.Shows("lstGiorni"), "3");
    }

    static void fieldsStayInPlaceWhateverTheKind()
    {
        EditorWindow window(SettingsWith({}));
        const auto places = [&window] {
            QList<QRect> found;
            for (QWidget* const each : std::initializer_list<QWidget*>{&window.Choice("cboRicorrenza"),
                                                                       &Interval(window), &Start(window)})
                found.append({each->mapTo(&window.Editor(), QPoint()), each->size()});
            return found;
        };
        AddWith(window, continuous);
        QCoreApplication::sendPostedEvents(); // completes the layout
        const QList<QRect> before = places();

        for (const Kind kind : {hourly, daily, weekly, continuous}) {
            window.Pick("cboRicorrenza", kind);
            QCoreApplication::sendPostedEvents();
            QCOMPARE(places(), before);
        }
    }

    static void arrowKeysRunTheRuleAtEachStep()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, hourly);

        QTest::keyClick(&window.Choice("cboRicorrenza"), Qt::Key_Down);
        QCOMPARE(window.Shows("txtTempo"), "giorno/i alle ore");
        QTest::keyClick(&window.Choice("cboRicorrenza"), Qt::Key_Down);

        QCOMPARE(window.Shows("txtTempo"), "settimana/e alle ore");
    }

    static void startTimeSelectsItselfOnFocus()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, hourly);
        Interval(window).setFocus();
        Start(window).setSelection(1, 1);

        window.Press(Qt::Key_Tab);

        QCOMPARE(window.Focus(), "mskOrario");
        QCOMPARE(Start(window).selectionStart(), 0);
        QCOMPARE(Start(window).selectedText(), "18:03");
    }

    static void typingReplacesTheSelectedStartTime()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, hourly);
        Interval(window).setFocus();
        window.Press(Qt::Key_Tab);

        QTest::keyClicks(&Start(window), "9");
        QCOMPARE(Start(window).text(), "9_:__");
        QTest::keyClicks(&Start(window), "930");

        QCOMPARE(Start(window).text(), "99:30");
    }

    static void intervalSelectsTheStartTimeOnFocus_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("Oraria") << int(hourly);
        QTest::newRow("Giornaliera") << int(daily);
        QTest::newRow("Settimanale") << int(weekly);
    }

    static void intervalSelectsTheStartTimeOnFocus()
    {
        QFETCH(int, kind);
        EditorWindow window(SettingsWith({}));
        AddWith(window, static_cast<Kind>(kind));
        window.Choice("cboRicorrenza").setFocus();

        window.Press(Qt::Key_Tab);

        QCOMPARE(window.Focus(), "mskValore");
        QCOMPARE(Start(window).selectedText(), "18:03");
        QVERIFY(!Interval(window).hasSelectedText());
    }

    static void intervalByMnemonicSelectsTheStartTime()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, daily);
        window.Choice("cboRicorrenza").setFocus();

        window.Press(Qt::Key_O, Qt::AltModifier);

        QTRY_COMPARE_WITH_TIMEOUT(window.Focus(), "mskValore", kPatienceMs);
        QCOMPARE(Start(window).selectedText(), "18:03");
        QVERIFY(!Interval(window).hasSelectedText());
    }

    static void clickIntoTheStartTimeSelectsIt()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, hourly);
        Interval(window).setFocus();

        QTest::mouseClick(&Start(window), Qt::LeftButton, {}, CaretPlace(Start(window), 3));
        QCOMPARE(Start(window).selectedText(), "18:03");
        QTest::keyClicks(&Start(window), "0915");

        QCOMPARE(Start(window).text(), "09:15");
    }

    static void secondClickIntoTheStartTimePlacesTheCaret()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, hourly);
        Interval(window).setFocus();
        QTest::mouseClick(&Start(window), Qt::LeftButton, {}, CaretPlace(Start(window), 3));

        QTest::mouseClick(&Start(window), Qt::LeftButton, {}, CaretPlace(Start(window), 3));

        QVERIFY(!Start(window).hasSelectedText());
        QCOMPARE(Start(window).cursorPosition(), 3);
    }

    static void draggedMouseSelectsAPartOfTheStartTime()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, hourly);
        Interval(window).setFocus();

        Drag(Start(window), CaretPlace(Start(window), 3),
             {Start(window).width() - 1, Start(window).height() / 2});

        QCOMPARE(Start(window).selectedText(), "03");
    }

    static void clickIntoTheIntervalSelectsTheStartTime()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, daily);
        Start(window).setFocus();

        QTest::mouseClick(&Interval(window), Qt::LeftButton);

        QCOMPARE(window.Focus(), "mskValore");
        QVERIFY(!Interval(window).hasSelectedText());
        QCOMPARE(Start(window).selectedText(), "18:03");
    }

    static void returningFromAnotherProgramSelectsNothing()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, hourly);
        Start(window).setFocus();
        Start(window).setSelection(3, 2);
        QWidget other;
        other.show();
        BringToFront(other);

        BringToFront(window.Editor());

        QVERIFY(Start(window).hasFocus());
        QCOMPARE(Start(window).selectedText(), "03");
    }

    static void intervalIsTypedIntoItsMask()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, hourly);
        Interval(window).setFocus();

        QTest::keyClicks(&Interval(window), "01x30");
        QCOMPARE(Interval(window).text(), "01:30");
        window.Pick("cboRicorrenza", weekly);
        window.Retype("mskValore", "12");

        QCOMPARE(Interval(window).text(), "12");
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmDettaglio_schedule_test> registered;
#include "frmDettaglio_schedule_test.moc"
