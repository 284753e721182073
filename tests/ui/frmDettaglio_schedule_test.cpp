// The schedule page: what each kind shows, and the fields for the interval and the start time.
#include "tests/support/cases.h"
#include "tests/support/editor_window.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "ui/widgets/check_list.h"
#include "ui/widgets/mask_edit.h"

#include <QTest>

namespace corvrec
{

namespace
{

constexpr std::array kKinds{"Continua", "Oraria", "Giornaliera", "Settimanale"};

constexpr auto kContinuousHelp =
    "Corvane recorder acquisisce i dati di questa sede senza mai interrompersi. Attenzione, perchè in questo "
    "caso ci può essere una sola sede abilitata.";
constexpr auto kHourlyHelp =
    "Corvane recorder acquisisce i dati di questa sede con l'intervallo orario indicato dall'utente nel "
    "campo \"\"ad ogni\"\", iniziando l'acquisizione dall' ora inserita nel campo \"\"a partire dalle\"\".";
constexpr auto kDailyHelp =
    "Corvane recorder acquisisce i dati di questa sede con l'intervallo giornaliero indicato dall'utente nel "
    "campo \"\"ogni\"\" all' ora inserita nel campo \"\"alle ore\"\".";
constexpr auto kWeeklyHelp =
    "L'aquisizione avverrà con l'intervallo settimanale indicato dall'utente nel campo \"\"ogni\"\" all'ora "
    "inserita nel campo \"\"alle ore. \"\"Nella lista è possibile scegliere i giorni in cui deve avvenire la "
    "lettura marcandoli con un segno di visto.";

// What a kind shows, and the interval that it starts with.
struct Kind {
    const char* name;
    const char* help;
    const char* shown; // of the controls that the kind switches
    const char* unit;
    bool enabled;
    const char* mask;
    const char* format;
    const char* interval;
};

constexpr std::array<Kind, 4> kRules{{
    {"Continua", kContinuousHelp, "lblNessuno|mskValore|mskOrario", nullptr, false, "", "", "1"},
    {"Oraria", kHourlyHelp, "lblOgni|mskValore|txtTempo|mskOrario", "ora/e a partire dalle", true, "##:##",
     "hh:mm", "__:__"},
    {"Giornaliera", kDailyHelp, "lblOgni|mskValore|txtTempo|mskOrario", "giorno/i alle ore", true, "", "",
     "1"},
    {"Settimanale", kWeeklyHelp, "lblOgni|mskValore|txtTempo|mskOrario|lstGiorni", "settimana/e alle ore",
     true, "", "", "1"},
}};

MaskEdit& Interval(EditorWindow& window)
{
    return window.At<MaskEdit>("mskValore");
}

MaskEdit& Start(EditorWindow& window)
{
    return window.At<MaskEdit>("mskOrario");
}

void Choose(EditorWindow& window, const QString& kind)
{
    window.Choose({"cboRicorrenza: " + kind});
}

void AddWith(EditorWindow& window, const QString& kind)
{
    window.Add();
    Choose(window, kind);
}

} // namespace

class frmDettaglio_schedule_test : public QObject
{
    Q_OBJECT

private slots:
    static void kindRule_data() { AddCases(kRules); }
    static void kindRule()
    {
        QFETCH(const Kind, given);
        EditorWindow window(SettingsWith({}));
        for (const char* const before : kKinds) {
            AddWith(window, before);

            Choose(window, given.name);

            QStringList shown;
            for (const char* const name :
                 {"lblNessuno", "lblOgni", "mskValore", "txtTempo", "mskOrario", "lstGiorni"}) {
                if (!window.At<QWidget>(name).isHidden())
                    shown.append(name);
            }
            QCOMPARE(shown, Parts(given.shown));
            QCOMPARE(window.Shows("lblHelpParametri"), given.help);
            if (given.unit != nullptr)
                QCOMPARE(window.Shows("txtTempo"), given.unit);
            QCOMPARE(IsEnabled(Interval(window)), given.enabled);
            QCOMPARE(IsEnabled(Start(window)), given.enabled);
            QCOMPARE(Interval(window).mask(), given.mask);
            QCOMPARE(Interval(window).format(), given.format);
            QCOMPARE(Interval(window).text(), given.interval);
            QCOMPARE(Start(window).mask(), "##:##");
            QCOMPARE(Start(window).format(), "hh:mm");
            QCOMPARE(Start(window).text(), "18:03");
        }
    }

    static void everyChangeOfKindDiscardsTheIntervalOnly()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, "Oraria");
        window.Retype("mskOrario", "0715");
        window.Retype("mskValore", "01x30");
        window.Set({"lstGiorni: 0 6"});
        window.ExpectShown({"mskValore: 01:30"});

        Choose(window, "Settimanale");
        window.ExpectShown({"mskValore: 1", "mskOrario: 07:15", "lstGiorni: 0 6"});
        window.Retype("mskValore", "settimane");
        Choose(window, "Settimanale"); // the same
        window.ExpectShown({"mskValore: settimane"});
        Choose(window, "Oraria");
        window.ExpectShown({"mskValore: __:__", "mskOrario: 07:15", "lstGiorni: 0 6"});
        Choose(window, "Giornaliera");
        window.Retype("mskValore", "3");
        Choose(window, "Settimanale");
        window.ExpectShown({"mskValore: 1"});
        Choose(window, "Continua");
        window.ExpectShown({"mskOrario: 07:15", "lstGiorni: 0 6"});
    }

    static void fieldsStayInPlaceWhateverTheKind()
    {
        EditorWindow window(SettingsWith({}));
        const auto places = [&window] {
            QCoreApplication::sendPostedEvents(); // completes the layout
            QList<QRect> found;
            for (QWidget* const each : std::initializer_list<QWidget*>{&window.Choice("cboRicorrenza"),
                                                                       &Interval(window), &Start(window)})
                found.append({each->mapTo(&window.Editor(), QPoint()), each->size()});
            return found;
        };
        AddWith(window, "Continua");
        const QList<QRect> before = places();

        for (const char* const kind : kKinds) {
            Choose(window, kind);
            QCOMPARE(places(), before);
        }
    }

    static void focusSelectsTheStartTime()
    {
        for (const char* const kind : {"Oraria", "Giornaliera", "Settimanale"}) {
            EditorWindow window(SettingsWith({}));
            AddWith(window, kind);
            window.Choice("cboRicorrenza").setFocus();

            window.Press(Qt::Key_Tab); // the interval selects the start time too, and not itself
            QCOMPARE(window.Focus(), "mskValore");
            QCOMPARE(Start(window).selectedText(), "18:03");
            QVERIFY(!Interval(window).hasSelectedText());
            Start(window).setSelection(1, 1);
            window.Press(Qt::Key_Tab);
            QCOMPARE(window.Focus(), "mskOrario");
            QCOMPARE(Start(window).selectedText(), "18:03");

            QTest::keyClicks(&Start(window), "9");
            window.ExpectShown({"mskOrario: 9_:__"});
            QTest::keyClicks(&Start(window), "930");
            window.ExpectShown({"mskOrario: 99:30"});
        }
    }

    static void intervalByMnemonicSelectsTheStartTime()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, "Giornaliera");
        window.Choice("cboRicorrenza").setFocus();

        window.Press(Qt::Key_O, Qt::AltModifier);

        QTRY_COMPARE_WITH_TIMEOUT(window.Focus(), "mskValore", kPatienceMs);
        QCOMPARE(Start(window).selectedText(), "18:03");
        QVERIFY(!Interval(window).hasSelectedText());
    }

    static void firstClickSelectsTheStartTimeAndTheSecondPlacesTheCaret()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, "Oraria");
        Start(window).setFocus();
        const QPoint minutes = CaretPlace(Start(window), 3);

        QTest::mouseClick(&Interval(window), Qt::LeftButton);
        QCOMPARE(window.Focus(), "mskValore");
        QVERIFY(!Interval(window).hasSelectedText());
        QCOMPARE(Start(window).selectedText(), "18:03");
        Start(window).deselect();
        QTest::mouseClick(&Start(window), Qt::LeftButton, {}, minutes);
        QCOMPARE(Start(window).selectedText(), "18:03");
        QTest::mouseClick(&Start(window), Qt::LeftButton, {}, minutes);

        QVERIFY(!Start(window).hasSelectedText());
        QCOMPARE(Start(window).cursorPosition(), 3);
    }

    static void draggedMouseSelectsAPartOfTheStartTime()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, "Oraria");
        Interval(window).setFocus();

        Drag(Start(window), CaretPlace(Start(window), 3),
             {Start(window).width() - 1, Start(window).height() / 2});

        QCOMPARE(Start(window).selectedText(), "03");
    }

    static void returningFromAnotherProgramSelectsNothing()
    {
        EditorWindow window(SettingsWith({}));
        AddWith(window, "Oraria");
        Start(window).setFocus();
        Start(window).setSelection(3, 2);
        QWidget other;
        other.show();
        BringToFront(other);

        BringToFront(window.Editor());

        QVERIFY(Start(window).hasFocus());
        QCOMPARE(Start(window).selectedText(), "03");
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmDettaglio_schedule_test> registered;
#include "frmDettaglio_schedule_test.moc"
