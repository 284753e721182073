#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "ui/editor/frmTrasfAvanzate.h"
#include "ui/widgets/texts.h"

#include <QContextMenuEvent>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

namespace corvrec
{

namespace
{

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
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

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
        window.Pick("cboRicorrenza", 3);
        window.Pick("cboHandS", 1);
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

    static void otherKeysPassThrough()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();

        window.Press(Qt::Key_Tab);
        QCOMPARE(window.Focus(), "txtCodice");
        window.Press(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(window.Focus(), "txtNomeSito");
        window.Press(Qt::Key_A);

        QCOMPARE(window.Shows("txtNomeSito"), "a");
        QCOMPARE(window.Tab(), 0);
    }

    static void tabFollowsTheReadingOrder_data()
    {
        const QStringList head{"txtNomeSito", "txtCodice", "chkAbilitato", "qt_tabwidget_tabbar"};
        const QStringList foot{"OK", "Annulla"};
        QTest::addColumn<int>("page");
        QTest::addColumn<QStringList>("order");
        QTest::newRow("Connessione") << 0
                                     << head + QStringList{"cboTipoConn", "cboHandS",   "chkXon",
                                                           "txtXon",      "chkXoff",    "txtXoff",
                                                           "cboVelocita", "cboBitDati", "cboParita",
                                                           "cboBitStop"} +
                                            foot;
        QTest::newRow("Acquisizione")
            << 1
            << head + QStringList{"cboRicorrenza", "mskValore", "mskOrario", "lstGiorni", "cmdTAvanzate"} +
                   foot;
        QTest::newRow("File") << 2
                              << head +
                                     QStringList{"txtDati",    "cmdSfoglia1", "txtDati2", "cmdSfoglia2",
                                                 "txtStorico", "cmdSfoglia3", "txtLog",   "cmdFileAvanzate"} +
                                     foot;
    }

    static void tabFollowsTheReadingOrder()
    {
        QFETCH(int, page);
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboRicorrenza", 3);
        window.Pick("cboHandS", 1);
        window.Editor().SelectTab(page);
        window.Field("txtNomeSito").setFocus();

        QTEST(TabRound(window.Editor()), "order");
    }

    static void tabFollowsTheReadingOrderOfARemoteSite()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboTipoConn", 5);
        window.Click("optRemoto");
        window.Field("txtNomeSito").setFocus();

        // Tab enters a group of option buttons at the checked one.
        QCOMPARE(TabRound(window.Editor()),
                 QStringList({"txtNomeSito", "txtCodice", "chkAbilitato", "qt_tabwidget_tabbar",
                              "cboTipoConn", "cmdSX", "optRemoto", "btnModem", "cboVelocita", "cboBitDati",
                              "cboParita", "cboBitStop", "OK", "Annulla"}));
    }

    static void focusStartsOnTheName()
    {
        EditorWindow window(SettingsWith({}));

        window.Add();

        QCOMPARE(window.Focus(), "txtNomeSito");
    }

    static void focusStartsAfterALockedIdentity()
    {
        EditorWindow window(SettingsWith({"A"}));

        window.Open();

        QCOMPARE(window.Focus(), "chkAbilitato");
    }

    static void focusStartsOnTheFirstFieldAtEachOpening()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Editor().SelectTab(2);
        window.Field("txtLog").setFocus();
        window.Press(Qt::Key_Escape);
        QVERIFY(!window.Editor().isVisible());

        window.Add();

        QCOMPARE(window.Focus(), "txtNomeSito");
        QCOMPARE(window.Tab(), 0);
    }

    static void everyMnemonicLeadsToAField()
    {
        EditorWindow window(SettingsWith({}));

        QCOMPARE(LabelsWithoutBuddy(window.Editor()), QStringList());
    }

    static void everyFieldHasAnAccessibleName()
    {
        EditorWindow window(SettingsWith({}));

        QCOMPARE(NamelessFields(window.Editor()), QStringList());
    }

    static void labelsNameTheirFields_data()
    {
        QTest::addColumn<QString>("name");
        const QList<std::pair<const char*, const char*>> names{
            {"txtNomeSito", "Nome del sito"}, {"txtCodice", "Codice"},
            {"cboTipoConn", "Dispositivo:"},  {"cboVelocita", "Velocità:"},
            {"cboBitDati", "Bit di dati:"},   {"cboParita", "Parità:"},
            {"cboBitStop", "Bit di stop:"},   {"cboHandS", "Tipo:"},
            {"txtXon", "Carattere Xon"},      {"txtXoff", "Carattere Xoff"},
            {"cboRicorrenza", "Ricorrenza:"}, {"mskValore", "Acquisisci ogni"},
            {"mskOrario", "Ora di inizio"},   {"lstGiorni", "Giorni della settimana"},
            {"txtDati", "File dati:"},        {"txtDati2", "File di scambio:"},
            {"txtStorico", "File storico:"},  {"txtLog", "File di log:"},
        };
        for (const auto& [field, name] : names)
            QTest::newRow(field) << QString(name);
    }

    static void labelsNameTheirFields()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();

        QTEST(AccessibleName(window.At<QWidget>(QTest::currentDataTag())), "name");
    }

    static void leavingTheCodeTrimsAndRaisesIt()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Field("txtCodice").setFocus();
        QTest::keyClicks(&window.Field("txtCodice"), "  ab cß ");

        window.Press(Qt::Key_Tab);

        QCOMPARE(window.Shows("txtCodice"), "AB Cß");
    }

    static void leavingTheNameTrimsIt()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        QTest::keyClicks(&window.Field("txtNomeSito"), "  Roma nord ");

        window.Press(Qt::Key_Tab);

        QCOMPARE(window.Shows("txtNomeSito"), "Roma nord");
    }

    static void leavingAnEmptyXonOrXoffRestoresItsLetter()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboHandS", 1);

        window.Retype("txtXon", "");
        QCOMPARE(window.Shows("txtXon"), "");
        window.Press(Qt::Key_Tab);
        QCOMPARE(window.Shows("txtXon"), "Q");
        window.Retype("txtXoff", "");
        window.Press(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(window.Shows("txtXoff"), "S");
        window.Retype("txtXon", "W");
        window.Press(Qt::Key_Tab);

        QCOMPARE(window.Shows("txtXon"), "W");
    }

    static void leavingTheWindowRestoresTheLetters_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("letter");
        QTest::addColumn<bool>("byFrame");
        for (const bool byFrame : {false, true}) {
            QTest::addRow("txtXon %d", byFrame) << "txtXon"
                                                << "Q" << byFrame;
            QTest::addRow("txtXoff %d", byFrame) << "txtXoff"
                                                 << "S" << byFrame;
        }
    }

    // Otherwise the next site would have empty, disabled fields, and could not be saved.
    static void leavingTheWindowRestoresTheLetters()
    {
        QFETCH(QString, field);
        QFETCH(QString, letter);
        QFETCH(bool, byFrame);
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboHandS", 1);
        window.Retype(qPrintable(field), "");
        if (byFrame)
            window.Editor().close();
        else
            window.Press(Qt::Key_Escape);
        QVERIFY(!window.Editor().isVisible());

        window.Add();

        QCOMPARE(window.Shows(qPrintable(field)), letter);
        QVERIFY(!window.Field(qPrintable(field)).isEnabled());
    }

    static void minimisingIsNotLeaving()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboHandS", 1);
        window.Retype("txtXon", "");
        QHideEvent event;
        QSpontaneKeyEvent::setSpontaneous(&event);

        qApp->notify(&window.Editor(), &event);

        QCOMPARE(window.Shows("txtXon"), "");
    }

    static void clickOnAnotherControlIsLeaving()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Retype("txtCodice", " ab ");

        QTest::mouseClick(&window.Field("txtNomeSito"), Qt::LeftButton);

        QCOMPARE(window.Shows("txtCodice"), "AB");
    }

    static void anotherProgramInFrontIsNotLeaving()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Retype("txtCodice", " ab ");
        QWidget other;
        other.show();
        BringToFront(other);

        QVERIFY(!window.Field("txtCodice").hasFocus());
        QCOMPARE(window.Shows("txtCodice"), " ab ");
    }

    static void contextMenuIsNotLeaving()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboHandS", 1);
        window.Retype("txtXon", "");
        QLineEdit& field = window.Field("txtXon");
        QContextMenuEvent request(QContextMenuEvent::Keyboard, {}, field.mapToGlobal(QPoint()));

        QCoreApplication::sendEvent(&field, &request);

        QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget() != nullptr, kPatienceMs);
        QCOMPARE(window.Shows("txtXon"), "");
        QApplication::activePopupWidget()->close();
        QCOMPARE(window.Shows("txtXon"), "");
    }

    static void enterIsNotLeaving()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Retype("txtCodice", " ab ");
        QString codeBehindTheBox;
        MessageProbe nameMissing(Qt::Key_Return, [&] { codeBehindTheBox = window.Shows("txtCodice"); });

        window.Press(Qt::Key_Return);

        // The check only trims the text; leaving the field also converts it to upper case.
        QCOMPARE(nameMissing.text(), "È necessario inserire il nome del sito");
        QCOMPARE(codeBehindTheBox, "ab");
    }

    static void enterThatFailsACheckIsLeaving_data()
    {
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("empty"); // the field whose check fails
        QTest::addColumn<QString>("shown");
        QTest::newRow("code, same page") << "txtCodice"
                                         << "ab"
                                         << "txtNomeSito"
                                         << "AB";
        QTest::newRow("code, other page") << "txtCodice"
                                          << "ab"
                                          << "txtDati"
                                          << "AB";
        QTest::newRow("Xon") << "txtXon"
                             << ""
                             << "txtDati"
                             << "Q";
    }

    static void enterThatFailsACheckIsLeaving()
    {
        QFETCH(const QString, left);
        QFETCH(const QString, typed);
        QFETCH(const QString, empty);
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboHandS", 1);
        window.Retype("txtNomeSito", "Roma");
        window.Retype(qPrintable(empty), "");
        window.Retype(qPrintable(left), typed);
        MessageProbe missing(Qt::Key_Return);

        window.Press(Qt::Key_Return);

        QVERIFY(missing.text().startsWith("È necessario inserire il nome del "));
        QCOMPARE(window.Focus(), empty);
        QTEST(window.Shows(qPrintable(left)), "shown");
    }

    static void clickOnATabIsLeaving()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Retype("txtCodice", " ab ");
        const QTabBar& tabs = *window.At<QTabWidget>("tabSetup").tabBar();

        QTest::mouseClick(window.At<QTabWidget>("tabSetup").tabBar(), Qt::LeftButton, {},
                          tabs.tabRect(2).center());

        QCOMPARE(window.Tab(), 2);
        QCOMPARE(window.Focus(), "qt_tabwidget_tabbar");
        QCOMPARE(window.Shows("txtCodice"), "AB");
    }

    static void mnemonicOfAButtonIsLeaving()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Editor().SelectTab(1);
        window.Retype("txtCodice", " ab ");
        QString codeBehindTheDialog;
        const ModalVisit<frmTrasfAvanzate> visit([&](frmTrasfAvanzate& dialog) {
            codeBehindTheDialog = window.Shows("txtCodice");
            dialog.reject();
        });

        window.Press(Qt::Key_V, Qt::AltModifier);

        QCOMPARE(codeBehindTheDialog, "AB");
        QCOMPARE(window.Focus(), "cmdTAvanzate");
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

    static void enterElsewherePressesOk()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboRicorrenza", 3);
        window.Editor().SelectTab(0);
        for (const char* const name : {"txtNomeSito", "chkAbilitato", "cboTipoConn", "cboVelocita", "OK"}) {
            window.At<QWidget>(name).setFocus();
            MessageProbe weekdayMissing(Qt::Key_Return);

            window.Press(Qt::Key_Return);

            QCOMPARE(weekdayMissing.text(),
                     "È necessario selezionare almeno un giorno per l'importazione settimanale");
            window.Editor().SelectTab(0);
        }
    }

    static void wheelNeedsTheFocus_data()
    {
        QTest::addColumn<int>("page");
        for (const char* const name :
             {"cboTipoConn", "cboHandS", "cboVelocita", "cboBitDati", "cboParita", "cboBitStop"})
            QTest::newRow(name) << 0;
        QTest::newRow("cboRicorrenza") << 1;
    }

    static void wheelNeedsTheFocus()
    {
        QFETCH(int, page);
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Editor().SelectTab(page);
        QComboBox& list = window.Choice(QTest::currentDataTag());
        list.setCurrentIndex(0);

        QVERIFY(!TurnWheelOver(list));
        QCOMPARE(list.currentIndex(), 0);
        QCOMPARE(window.Focus(), "txtNomeSito");
        list.setFocus();
        QVERIFY(TurnWheelOver(list));

        QCOMPARE(list.currentIndex(), 1);
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmDettaglio_keys_test> registered;
#include "frmDettaglio_keys_test.moc"
