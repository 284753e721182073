#include "core/site/site_record.h"
#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/modal_visit.h"
#include "tests/support/registered_test.h"
#include "ui/editor/frmTrasfAvanzate.h"
#include "ui/widgets/texts.h"

#include <QPushButton>
#include <QTest>

#include <map>

namespace corvrec
{

namespace
{

const QStringList kBoxes{"chkData", "chkOra", "chkNull", "chkCrLf"};

constexpr auto kDateHelp = "Selezionando quest'opzione verrà aggiunta in testa ad ogni riga inviata dal "
                           "centralino la data del momento di "
                           "acquisizione. Il formato del dato aggiunto è aaaammgg";
constexpr auto kTimeHelp = "Selezionando quest'opzione verrà aggiunta in testa ad ogni riga inviata dal "
                           "centralino l'ora del momento di "
                           "acquisizione. Il formato del dato aggiunto è hhmmss";
constexpr auto kNullHelp =
    "Selezionando quest'opzione Corvane Recorder eliminerà dai dati ricevuti eventuali caratteri "
    "di Null generati dai disturbi sulla linea.";
constexpr auto kCrLfHelp =
    "Selezionando quest'opzione Corvane Recorder controllerà che ogni riga ricevuta termini con la sequenza "
    "\"Carriage "
    "Return - Line Feed.\", correggendo quei casi che non soddisfano questa condizione";

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
    QString Focus() { return dialog_.focusWidget()->objectName(); }
    QString Shows(const char* name) { return Shown(SiteWindow::Part<QWidget>(dialog_, name)); }
    QString Help() { return Shows("lblHelpTrasformazioni"); }
    QStringList Ticked()
    {
        QStringList ticked;
        for (const QString& box : kBoxes) {
            if (Shows(qPrintable(box)) == "on")
                ticked.append(box);
        }
        return ticked;
    }
    frmTrasfAvanzate& Dialog() { return dialog_; }

private:
    QWidget behind_;
    frmTrasfAvanzate dialog_{&behind_};
};

} // namespace

class frmTrasfAvanzate_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void captionsComeFromTheStringTable()
    {
        Fixture window;
        const std::map<const char*, const char*> captions{
            {"chkData", "Aggiungere &data alle righe"},
            {"chkOra", "Aggiungere &ora alle righe"},
            {"chkNull", "&Eliminare caratteri Null"},
            {"chkCrLf", "&Correggere CR/LF"},
            {"Label1", "Può essere necessario aggiungere ai dati provenienti dal centralino alcuni campi per "
                       "completare o "
                       "rimpiazzare le informazioni trasmesse."},
            {"Label2", "Marcare tra le opzioni sottostanti quelle desiderate."},
            {"OK", "OK"},
            {"Annulla", "Annulla"},
        };

        for (const auto& [name, caption] : captions)
            QCOMPARE(SiteWindow::Part<QWidget>(window.Dialog(), name).property("text").toString(),
                     QString(caption));
        QCOMPARE(window.Dialog().windowTitle(), "Avanzate");
    }

    static void startsWithoutATransformation()
    {
        Fixture window;

        QCOMPARE(window.Ticked(), QStringList());
    }

    static void helpIsEmptyBeforeTheFirstOpening()
    {
        Fixture window;

        QCOMPARE(window.Help(), "");
    }

    static void helpFollowsTheFocus()
    {
        Fixture window;
        window.Open();

        QCOMPARE(window.Help(), kDateHelp);
        window.Press(Qt::Key_Tab);
        QCOMPARE(window.Help(), kTimeHelp);
        window.Press(Qt::Key_Tab);
        QCOMPARE(window.Help(), kNullHelp);
        window.Press(Qt::Key_Tab);
        QCOMPARE(window.Help(), kCrLfHelp);
        window.Click("chkOra");

        QCOMPARE(window.Help(), kTimeHelp);
    }

    static void helpStaysOnTheButtons()
    {
        Fixture window;
        window.Open();
        SiteWindow::Part<QWidget>(window.Dialog(), "chkCrLf").setFocus();

        window.Press(Qt::Key_Tab);

        QCOMPARE(window.Focus(), "OK");
        QCOMPARE(window.Help(), kCrLfHelp);
    }

    static void everyOpeningFocusesTheDate()
    {
        Fixture window;
        window.Open();
        window.Click("chkCrLf");
        window.Click("OK");

        window.Open();

        QCOMPARE(window.Focus(), "chkData");
        QCOMPARE(window.Help(), kDateHelp);
    }

    static void okKeepsTheChange()
    {
        Fixture window;
        window.Open();
        window.Click("chkNull");

        window.Click("OK");

        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.Ticked(), QStringList({"chkNull"}));
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
        window.Click("chkNull");

        if (way == "Annulla")
            window.Click("Annulla");
        else if (way == "Escape")
            window.Press(Qt::Key_Escape);
        else
            window.Dialog().close();

        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.Ticked(), QStringList());
    }

    static void undoIsThatOfTheLastOpening()
    {
        Fixture window;
        window.Open();
        window.Click("chkNull");
        window.Click("OK");
        window.Open();
        window.Click("chkNull");
        window.Click("chkOra");

        window.Click("Annulla");

        QCOMPARE(window.Ticked(), QStringList({"chkNull"}));
    }

    static void undoBringsEveryBoxBack()
    {
        for (const QString& ticked : kBoxes) {
            Fixture window;
            SiteWindow::Part<QCheckBox>(window.Dialog(), qPrintable(ticked)).setChecked(true);
            window.Open();
            for (const QString& box : kBoxes)
                window.Click(qPrintable(box));

            window.Click("Annulla");

            QCOMPARE(window.Ticked(), QStringList({ticked}));
        }
    }

    static void enterPressesOkAndOnAnnullaAnnulla()
    {
        Fixture window;
        window.Open();
        window.Press(Qt::Key_Space);
        window.Press(Qt::Key_Return);
        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.Ticked(), QStringList({"chkData"}));
        window.Open();
        window.Press(Qt::Key_Space);
        SiteWindow::Part<QWidget>(window.Dialog(), "Annulla").setFocus();

        window.Press(Qt::Key_Return);

        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.Ticked(), QStringList({"chkData"}));
    }

    static void tabFollowsTheReadingOrder()
    {
        Fixture window;
        window.Open();

        QCOMPARE(TabRound(window.Dialog()), kBoxes + QStringList({"OK", "Annulla"}));
    }

    static void mnemonicsTickTheBoxes()
    {
        Fixture window;
        window.Open();

        for (const Qt::Key key : {Qt::Key_D, Qt::Key_O, Qt::Key_E, Qt::Key_C})
            QTest::keyClick(window.Dialog().focusWidget(), key, Qt::AltModifier);

        QCOMPARE(window.Ticked(), kBoxes); // at once, before the next key
    }

    static void recordFillsTheBoxes()
    {
        Fixture window;
        SiteRecord site;
        site.addDate = true;
        site.addTime = false;
        site.dropNulls = true;
        site.fixCrLf = false;

        window.Dialog().ShowRecord(site);
        SiteRecord taken;
        window.Dialog().FillRecord(taken);

        QCOMPARE(window.Ticked(), QStringList({"chkData", "chkNull"}));
        QCOMPARE(taken.addDate, true);
        QCOMPARE(taken.addTime, false);
        QCOMPARE(taken.dropNulls, true);
        QCOMPARE(taken.fixCrLf, false);
    }

    static void missingValuesLeaveTheBoxes()
    {
        Fixture window;
        SiteWindow::Part<QCheckBox>(window.Dialog(), "chkOra").setChecked(true);

        window.Dialog().ShowRecord(SiteRecord());

        QCOMPARE(window.Ticked(), QStringList({"chkOra"}));
    }

    static void editorRecordsTheUndoBeforeEachShowing()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        const auto tickNullAndPress = [&window](const char* button) {
            const ModalVisit<frmTrasfAvanzate> visit([button](frmTrasfAvanzate& dialog) {
                QTest::mouseClick(&SiteWindow::Part<QCheckBox>(dialog, "chkNull"), Qt::LeftButton);
                QTest::mouseClick(&SiteWindow::Part<QPushButton>(dialog, button), Qt::LeftButton);
            });
            window.Click("cmdTAvanzate");
        };

        tickNullAndPress("Annulla");
        QCOMPARE(window.Shows("chkNull"), "off");
        tickNullAndPress("OK");
        QCOMPARE(window.Shows("chkNull"), "on");
        tickNullAndPress("Annulla");

        QCOMPARE(window.Shows("chkNull"), "on");
        QVERIFY(window.Editor().isVisible());
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmTrasfAvanzate_test> registered;
#include "frmTrasfAvanzate_test.moc"
