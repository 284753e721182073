#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/registered_test.h"
#include "tests/support/unanswered_boxes.h"
#include "ui/editor/frmFileAvanzate.h"
#include "ui/widgets/texts.h"

#include <QClipboard>
#include <QPushButton>
#include <QTest>

#include <map>

namespace corvrec
{

namespace
{

constexpr auto kApplication = "Configurazione Corvane Recorder";

// The dialog in front of its parent window.
class Fixture
{
public:
    void Open()
    {
        dialog_.RegisterUndo();
        ShowInFrontOf(behind_, dialog_);
    }
    void Click(const char* button)
    {
        QTest::mouseClick(&SiteWindow::Part<QAbstractButton>(dialog_, button), Qt::LeftButton);
    }
    void Press(Qt::Key key) { QTest::keyClick(dialog_.focusWidget(), key); }
    QLineEdit& Field(const char* name) { return SiteWindow::Part<QLineEdit>(dialog_, name); }
    QCheckBox& Box(const char* name) { return SiteWindow::Part<QCheckBox>(dialog_, name); }
    QString Focus() { return dialog_.focusWidget()->objectName(); }
    QString Shows(const char* name) { return Shown(SiteWindow::Part<QWidget>(dialog_, name)); }
    QString State()
    {
        return QStringList({Shows("chkFile"), Shows("txtFile"), Shows("chkSpazio"), Shows("txtSpazio")})
            .join(' ');
    }
    QStringList Enabled()
    {
        QStringList enabled;
        for (const char* const name : {"txtFile", "lblFile", "txtSpazio", "lblSpazio"}) {
            if (IsEnabled(SiteWindow::Part<QWidget>(dialog_, name)))
                enabled.append(name);
        }
        return enabled;
    }
    frmFileAvanzate& Dialog() { return dialog_; }

private:
    UnansweredBoxes unansweredBoxes_;
    QWidget behind_;
    frmFileAvanzate dialog_{&behind_};
};

} // namespace

class frmFileAvanzate_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void captionsComeFromTheStringTable()
    {
        Fixture window;
        const std::map<const char*, const char*> captions{
            {"chkFile", "Avvisare quando il &file dati non è disponibile"},
            {"lblFile", "&Avvisare dopo:"},
            {"lblSecondi", "Secondi"},
            {"chkSpazio", "Avvisare per &mancanza di spazio sul disco C:"},
            {"lblSpazio", "&Spazio minimo:"},
            {"lblMBye", "MByte"},
            {"OK", "OK"},
            {"Annulla", "Annulla"},
        };

        for (const auto& [name, caption] : captions)
            QCOMPARE(SiteWindow::Part<QWidget>(window.Dialog(), name).property("text").toString(),
                     QString(caption));
        QCOMPARE(window.Dialog().windowTitle(), "Avanzate");
    }

    static void startsOffWithTheGivenLimits()
    {
        Fixture window;

        QCOMPARE(window.State(), "off 600 off 20");
        QCOMPARE(window.Enabled(), QStringList());
    }

    static void boxEnablesItsFieldAndLabel()
    {
        Fixture window;
        window.Open();

        window.Click("chkFile");
        QCOMPARE(window.Enabled(), QStringList({"txtFile", "lblFile"}));
        window.Click("chkSpazio");
        QCOMPARE(window.Enabled(), QStringList({"txtFile", "lblFile", "txtSpazio", "lblSpazio"}));
        window.Click("chkFile");

        QCOMPARE(window.Enabled(), QStringList({"txtSpazio", "lblSpazio"}));
    }

    static void untickedBoxKeepsTheText()
    {
        Fixture window;
        window.Open();
        window.Click("chkFile");
        window.Field("txtFile").setFocus();
        window.Field("txtFile").selectAll();
        QTest::keyClicks(&window.Field("txtFile"), "45");

        window.Click("chkFile");
        QCOMPARE(window.Shows("txtFile"), "45");
        window.Click("chkFile");

        QCOMPARE(window.Shows("txtFile"), "45");
    }

    static void fieldsTakeDigitsOnly_data()
    {
        QTest::addColumn<QString>("box");
        QTest::newRow("txtFile") << "chkFile";
        QTest::newRow("txtSpazio") << "chkSpazio";
    }

    static void fieldsTakeDigitsOnly()
    {
        QFETCH(QString, box);
        Fixture window;
        window.Open();
        window.Click(qPrintable(box));
        QLineEdit& field = window.Field(QTest::currentDataTag());
        field.setFocus();
        field.clear();
        QGuiApplication::clipboard()->setText("77");

        QTest::keyClicks(&field, "1a2 -.,");
        QCOMPARE(field.text(), "12");
        QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(field.text(), "12");
        QTest::keyClick(&field, Qt::Key_Backspace);
        QCOMPARE(field.text(), "1");
        field.selectAll();
        QTest::keyClick(&field, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), "77");
        QTest::keyClick(&field, Qt::Key_X, Qt::ControlModifier);

        QCOMPARE(field.text(), "");
        QCOMPARE(QGuiApplication::clipboard()->text(), "1");
    }

    static void okRule_data()
    {
        QTest::addColumn<bool>("file");
        QTest::addColumn<QString>("seconds");
        QTest::addColumn<bool>("disk");
        QTest::addColumn<QString>("megabytes");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("focus");
        const QString fileMissing = "Manca il timeout di file non disponibile.";
        const QString diskMissing = "Manca il parametro di soglia per mancanza spazio su hard disk.";
        QTest::newRow("both off, both empty") << false << "" << false << ""
                                              << ""
                                              << "";
        QTest::newRow("file on and filled, threshold empty") << true << "600" << true << ""
                                                             << ""
                                                             << "";
        QTest::newRow("file on with zero") << true << "0" << false << ""
                                           << ""
                                           << "";
        QTest::newRow("disk on with zero") << false << "" << true << "0"
                                           << ""
                                           << "";
        QTest::newRow("both on and filled") << true << "1" << true << "999999999"
                                            << ""
                                            << "";
        QTest::newRow("file on and empty") << true << "" << false << "20" << fileMissing << "txtFile";
        QTest::newRow("both on and empty") << true << "" << true << "" << fileMissing << "txtFile";
        QTest::newRow("file on and empty, disk filled")
            << true << "" << true << "20" << fileMissing << "txtFile";
        QTest::newRow("disk on and empty") << false << "600" << true << "" << diskMissing << "txtSpazio";
    }

    static void okRule()
    {
        QFETCH(bool, file);
        QFETCH(QString, seconds);
        QFETCH(bool, disk);
        QFETCH(QString, megabytes);
        QFETCH(QString, message);
        Fixture window;
        window.Open();
        window.Box("chkFile").setChecked(file);
        window.Field("txtFile").setText(seconds);
        window.Box("chkSpazio").setChecked(disk);
        window.Field("txtSpazio").setText(megabytes);
        const QString entered = window.State();

        if (message.isEmpty()) {
            window.Click("OK");
            QVERIFY(!window.Dialog().isVisible());
        } else {
            MessageProbe box(Qt::Key_Return);
            window.Click("OK");
            QCOMPARE(box.text(), message);
            QCOMPARE(box.title(), kApplication);
            QCOMPARE(box.icon(), QMessageBox::Warning);
            QCOMPARE(box.buttons(), QStringList({"OK"}));
            QVERIFY(window.Dialog().isVisible());
            QTEST(window.Focus(), "focus");
        }
        QCOMPARE(window.State(), entered);
    }

    static void leavingUndoesTheChange_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("Annulla") << "Annulla";
        QTest::newRow("Escape") << "Escape";
        QTest::newRow("close box") << "close box";
    }

    static void leavingUndoesTheChange()
    {
        QFETCH(QString, way);
        Fixture window;
        window.Open();
        window.Click("chkFile");
        window.Click("chkSpazio");
        window.Field("txtFile").setText("");
        window.Field("txtSpazio").setText("35");

        if (way == "Annulla")
            window.Click("Annulla");
        else if (way == "Escape")
            window.Press(Qt::Key_Escape);
        else
            window.Dialog().close();

        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.State(), "off 600 off 20");
    }

    static void undoBringsTheEnabledStatesBack()
    {
        Fixture window;
        window.Box("chkFile").setChecked(true);
        window.Open();
        window.Click("chkFile");
        window.Click("chkSpazio");
        QCOMPARE(window.Enabled(), QStringList({"txtSpazio", "lblSpazio"}));

        window.Click("Annulla");

        QCOMPARE(window.Enabled(), QStringList({"txtFile", "lblFile"}));
    }

    static void undoIsThatOfTheLastOpening()
    {
        Fixture window;
        window.Open();
        window.Click("chkSpazio");
        window.Field("txtSpazio").setText("35");
        window.Click("OK");
        window.Open();
        window.Click("chkFile");
        window.Field("txtSpazio").setText("50");

        window.Click("Annulla");

        QCOMPARE(window.State(), "off 600 on 35");
    }

    static void enterPressesOkAndOnAnnullaAnnulla()
    {
        Fixture window;
        window.Open();
        window.Click("chkFile");
        window.Field("txtFile").setFocus();
        window.Press(Qt::Key_Return);
        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.Shows("chkFile"), "on");
        window.Open();
        window.Click("chkFile");
        SiteWindow::Part<QWidget>(window.Dialog(), "Annulla").setFocus();

        window.Press(Qt::Key_Return);

        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.Shows("chkFile"), "on");
    }

    static void everyOpeningFocusesTheFirstBox()
    {
        Fixture window;
        for (int opening = 0; opening < 2; ++opening) {
            window.Open();
            QCOMPARE(window.Focus(), "chkFile");
            window.Click("chkSpazio");
            window.Click("OK");
        }
    }

    static void tabFollowsTheReadingOrder()
    {
        Fixture window;
        window.Box("chkFile").setChecked(true);
        window.Box("chkSpazio").setChecked(true);
        window.Open();

        QCOMPARE(TabRound(window.Dialog()),
                 QStringList({"chkFile", "txtFile", "chkSpazio", "txtSpazio", "OK", "Annulla"}));
    }

    static void everyMnemonicLeadsToAField()
    {
        Fixture window;

        QCOMPARE(LabelsWithoutBuddy(window.Dialog()), QStringList());
    }

    static void everyFieldHasAnAccessibleName()
    {
        Fixture window;

        QCOMPARE(AccessibleName(window.Field("txtFile")), "Avvisare dopo:");
        QCOMPARE(AccessibleName(window.Field("txtSpazio")), "Spazio minimo:");
    }

    static void editorRecordsTheUndoBeforeEachShowing()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        const auto enterAndPress = [&window](const QString& megabytes, const char* button) {
            const ModalVisit<frmFileAvanzate> visit([&](frmFileAvanzate& dialog) {
                SiteWindow::Part<QLineEdit>(dialog, "txtSpazio").setText(megabytes);
                QTest::mouseClick(&SiteWindow::Part<QPushButton>(dialog, button), Qt::LeftButton);
            });
            window.Click("cmdFileAvanzate");
        };

        enterAndPress("35", "Annulla");
        QCOMPARE(window.Shows("txtSpazio"), "20");
        enterAndPress("36", "OK");
        QCOMPARE(window.Shows("txtSpazio"), "36");
        enterAndPress("37", "Annulla");

        QCOMPARE(window.Shows("txtSpazio"), "36");
        QVERIFY(window.Editor().isVisible());
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmFileAvanzate_test> registered;
#include "frmFileAvanzate_test.moc"
