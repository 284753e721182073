// Keys, focus, and the rules of fields that are left.
#include "tests/support/cases.h"
#include "tests/support/editor_window.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "ui/editor/frmTrasfAvanzate.h"

#include <QContextMenuEvent>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

namespace corvrec
{

namespace
{

// The controls that Tab visits first and last on a page, after these choices.
struct Round {
    const char* name;
    QStringList choices;
    int page;
    const char* first;
    const char* last;
};

// Tab enters a group of option buttons at the checked one.
const std::array<Round, 4> kRounds{{
    {"Connessione", {"cboHandS: Software"}, 0, "cboTipoConn|cboHandS", "cboBitStop"},
    {"Connessione of a remote site",
     {"cboTipoConn: Stratobox Buffer", "optRemoto"},
     0,
     "cboTipoConn|cmdSX|optRemoto|btnModem",
     "cboBitStop"},
    {"Acquisizione", {"cboRicorrenza: Settimanale"}, 1, "cboRicorrenza|mskValore", "cmdTAvanzate"},
    {"File", {}, 2, "txtDati|cmdSfoglia1", "cmdFileAvanzate"},
}};

// What a field shows after this was typed into it and it was left.
struct Leaving {
    const char* name; // of the field
    const char* typed;
    const char* shown;
};

constexpr std::array<Leaving, 5> kLeavings{{{"txtCodice", "  ab cß ", "AB Cß"},
                                            {"txtNomeSito", "  Roma nord ", "Roma nord"},
                                            {"txtXon", "", "Q"},
                                            {"txtXon", "W", "W"},
                                            {"txtXoff", "", "S"}}};

// The controls of the editor that Tab can focus, on any page.
QList<QWidget*> FocusableControls(EditorWindow& window)
{
    QList<QWidget*> controls;
    for (QWidget* const control : window.Editor().findChildren<QWidget*>()) {
        if (control->window() == &window.Editor() && control->isEnabled() && !control->isHidden() &&
            (control->focusPolicy() & Qt::TabFocus) != 0 && control->focusProxy() == nullptr)
            controls.append(control);
    }
    return controls;
}

} // namespace

class frmDettaglio_keys_test : public QObject
{
    Q_OBJECT

private slots:
    static void controlTabTurnsThePageFromEverywhere_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<int>("step");
        QTest::newRow("Ctrl+Tab") << Qt::Key_Tab << Qt::KeyboardModifiers(Qt::ControlModifier) << 1;
        QTest::newRow("Ctrl+Shift+Tab") << Qt::Key_Tab << (Qt::ControlModifier | Qt::ShiftModifier) << 2;
        QTest::newRow("Ctrl+Shift+Backtab")
            << Qt::Key_Backtab << (Qt::ControlModifier | Qt::ShiftModifier) << 2;
    }

    static void controlTabTurnsThePageFromEverywhere()
    {
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(int, step);
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Choose({"cboRicorrenza: Settimanale", "cboHandS: Software"});
        const QList<QWidget*> controls = FocusableControls(window);
        QVERIFY(controls.size() > 25);

        for (QWidget* const control : controls) {
            for (int page = 0; page < 3; ++page) {
                window.Editor().SelectTab(page);
                if (!control->isVisible())
                    continue;
                control->setFocus();

                QTest::keyClick(control, key, modifiers);

                QVERIFY2(window.Tab() == (page + step) % 3,
                         qPrintable(QString("page %1, %2").arg(page).arg(control->objectName())));
            }
        }
    }

    static void tabFollowsTheReadingOrder_data() { AddCases(kRounds); }
    static void tabFollowsTheReadingOrder()
    {
        QFETCH(const Round, given);
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Choose(given.choices);
        window.Editor().SelectTab(given.page);
        window.Field("txtNomeSito").setFocus();

        const QStringList round = TabRound(window.Editor());
        const QStringList start =
            Parts("txtNomeSito|txtCodice|chkAbilitato|qt_tabwidget_tabbar") + Parts(given.first);
        const QStringList end{given.last, "OK", "Annulla"};
        QCOMPARE(round.first(start.size()), start);
        QCOMPARE(round.last(end.size()), end);
        QCOMPARE(OutOfReadingOrder(window.Editor(), round), QStringList());
        QCOMPARE(LabelsWithoutBuddy(window.Editor()), QStringList());
    }

    static void focusStartsOnTheFirstFieldAtEachOpening()
    {
        EditorWindow window(SettingsWith({"A"}));
        for (int opening = 0; opening < 2; ++opening) {
            window.Add();
            QCOMPARE(window.Focus(), "txtNomeSito");
            QCOMPARE(window.Tab(), 0);
            window.Editor().SelectTab(2);
            window.Field("txtLog").setFocus();
            window.Press(Qt::Key_Escape);
            QVERIFY(!window.Editor().isVisible());
        }

        window.Open(); // with name and code locked

        QCOMPARE(window.Focus(), "chkAbilitato");
    }

    static void leavingAFieldRunsItsRule_data() { AddCases(kLeavings); }
    static void leavingAFieldRunsItsRule()
    {
        QFETCH(const Leaving, given);
        for (const Qt::KeyboardModifier back : {Qt::NoModifier, Qt::ShiftModifier}) {
            EditorWindow window(SettingsWith({}));
            window.Add();
            window.Choose({"cboHandS: Software"});
            window.Retype(given.name, given.typed);
            QCOMPARE(window.Shows(given.name), given.typed);

            window.Press(back == Qt::NoModifier ? Qt::Key_Tab : Qt::Key_Backtab, back);

            QCOMPARE(window.Shows(given.name), given.shown);
        }
    }

    static void mouseAndMnemonicsLeaveAField()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        QTabBar& tabs = *window.At<QTabWidget>("tabSetup").tabBar();

        window.Retype("txtCodice", " ab ");
        QTest::mouseClick(&window.Field("txtNomeSito"), Qt::LeftButton);
        window.ExpectShown({"txtCodice: AB"});
        window.Retype("txtCodice", " cd ");
        QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
        window.ExpectShown({"txtCodice: CD"});
        QCOMPARE(window.Tab(), 1);
        QCOMPARE(window.Focus(), "qt_tabwidget_tabbar");
        window.Retype("txtCodice", " ef ");
        const ModalVisit<frmTrasfAvanzate> visit([&](frmTrasfAvanzate& dialog) {
            window.ExpectShown({"txtCodice: EF"});
            dialog.reject();
        });
        window.Press(Qt::Key_V, Qt::AltModifier);

        QCOMPARE(window.Focus(), "cmdTAvanzate");
    }

    static void menusAndOtherWindowsDoNotLeaveAField()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Choose({"cboHandS: Software"});
        window.Retype("txtXon", "");
        QLineEdit& field = window.Field("txtXon");

        QHideEvent minimised;
        QSpontaneKeyEvent::setSpontaneous(&minimised);
        qApp->notify(&window.Editor(), &minimised);
        QCOMPARE(field.text(), "");

        QContextMenuEvent request(QContextMenuEvent::Keyboard, {}, field.mapToGlobal(QPoint()));
        QCoreApplication::sendEvent(&field, &request);
        QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget() != nullptr, kPatienceMs);
        QCOMPARE(field.text(), "");
        QApplication::activePopupWidget()->close();
        QCOMPARE(field.text(), "");

        QWidget other;
        other.show();
        BringToFront(other);
        QVERIFY(!field.hasFocus());
        QCOMPARE(field.text(), "");
    }

    // Otherwise the next site would have empty, disabled fields, and could not be saved.
    static void leavingTheWindowRestoresTheLetters()
    {
        for (const bool byFrame : {false, true}) {
            EditorWindow window(SettingsWith({}));
            window.Add();
            window.Choose({"cboHandS: Software"});
            window.Set({"txtXon: "});
            window.Retype("txtXoff", "");
            if (byFrame)
                window.Editor().close();
            else
                window.Press(Qt::Key_Escape);
            QVERIFY(!window.Editor().isVisible());

            window.Add();

            window.ExpectShown({"txtXon: Q", "txtXoff: S"});
            QVERIFY(!window.Field("txtXoff").isEnabled());
        }
    }

    // The check only trims the text; leaving the field also converts it to upper case.
    static void enterIsNotLeaving()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Retype("txtCodice", " ab ");
        MessageProbe nameMissing(Qt::Key_Return, [&] { window.ExpectShown({"txtCodice: ab"}); });

        window.Press(Qt::Key_Return);

        QCOMPARE(nameMissing.text(), "È necessario inserire il nome del sito");
    }

    static void enterThatFailsACheckIsLeaving_data()
    {
        static constexpr std::array kFields{Leaving{"txtCodice", "ab", "AB"}, Leaving{"txtXon", "", "Q"}};
        AddCases(kFields);
    }

    // To a field of the same page or of another one.
    static void enterThatFailsACheckIsLeaving()
    {
        QFETCH(const Leaving, given);
        for (const char* const empty : {"txtNomeSito", "txtDati"}) {
            EditorWindow window(SettingsWith({}));
            window.Add();
            window.Choose({"cboHandS: Software"});
            window.Set({"txtNomeSito: Roma", QString(empty) + ": "});
            window.Retype(given.name, given.typed);
            MessageProbe missing(Qt::Key_Return);

            window.Press(Qt::Key_Return);

            QVERIFY(missing.text().startsWith("È necessario inserire il nome del "));
            QCOMPARE(window.Focus(), empty);
            QCOMPARE(window.Shows(given.name), given.shown);
        }
    }

    static void boxTickedByItsMnemonicIsSavedByTheNextKey()
    {
        EditorWindow window(SettingsWith({"A"}));
        window.Open();

        window.Press(Qt::Key_A, Qt::AltModifier);
        window.Press(Qt::Key_Return);

        QCOMPARE(window.Settings().Line("A", "SitoAbilitato"), "SitoAbilitato=0");
    }

    static void enterOnAnnullaPressesAnnulla()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Editor().SetCancel(false);
        window.At<QPushButton>("Annulla").setFocus();

        window.Press(Qt::Key_Return);

        QVERIFY(!window.Editor().isVisible());
        QVERIFY(window.Editor().Cancel());
    }

    static void wheelNeedsTheFocus()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        for (const char* const name : {"cboTipoConn", "cboHandS", "cboVelocita", "cboBitDati", "cboParita",
                                       "cboBitStop", "cboRicorrenza"}) {
            QComboBox& list = window.Choice(name);
            window.Turn(list);
            window.Field("txtNomeSito").setFocus();
            list.setCurrentIndex(0);

            QVERIFY2(!TurnWheelOver(list), name);
            QCOMPARE(list.currentIndex(), 0);
            QCOMPARE(window.Focus(), "txtNomeSito");
            list.setFocus();
            QVERIFY2(TurnWheelOver(list), name);
            QCOMPARE(list.currentIndex(), 1);
        }
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmDettaglio_keys_test> registered;
#include "frmDettaglio_keys_test.moc"
