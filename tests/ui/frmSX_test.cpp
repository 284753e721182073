// The buffer window before any request: its texts, its fields, its port.
#include "tests/support/buffer_window.h"
#include "tests/support/controls.h"
#include "tests/support/registered_test.h"
#include "ui/widgets/texts.h"

#include <QGroupBox>
#include <QLabel>
#include <QTest>

#include <map>

namespace corvrec
{

class frmSX_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void captionsComeFromTheStringTable_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("caption");
        struct Caption {
            const char* control;
            const char* tag;
            const char* text;
        };
        for (const Caption& each : {
                 Caption{"capMemoria", "902;", "Memoria totale:"},
                 Caption{"capCondizione", "903;", "Memoria occupata:"},
                 Caption{"capRiempimento", "904;", "% Occupazione memoria:"},
                 Caption{"capRipetizioni", "905;", "Ripetizioni:"},
                 Caption{"capUltimoscarico", "906;", "Ore da ultimo scarico:"},
                 Caption{"capUltimiDati", "907;", "Ore da ultimo arrivo dati:"},
                 Caption{"capGuasto", "908;", "Guasti:"},
                 Caption{"capModello", "909;", "Versione Stratobox:"},
                 Caption{"capFirmware", "910;", "Versione firmware:"},
                 Caption{"capData", "911;", "Data:"},
                 Caption{"capOra", "912;", "Ora:"},
                 Caption{"capSelezione", "913;", "Selezionatore:"},
                 Caption{"capStampante", "914;", "Stampante:"},
                 Caption{"capModem", "20007;", "Modem:"},
                 Caption{"lblDataNuova", "916;", "&Data:"},
                 Caption{"lblOraNuova", "917;", "&Ora:"},
                 Caption{"cmdStato", "918;", "&Stato"},
                 Caption{"cmdImpostaDataOra", "919;", "&Imposta Data/Ora"},
                 Caption{"cmdChiudi", "44;", "&Chiudi"},
             })
            QTest::newRow(each.control) << each.tag << each.text;
    }

    static void captionsComeFromTheStringTable()
    {
        QFETCH(const QString, tag);
        QFETCH(const QString, caption);
        BufferWindow window;

        auto& control = SiteWindow::Part<QWidget>(window.Window(), QTest::currentDataTag());

        QCOMPARE(control.property("tag").toString(), tag);
        QCOMPARE(control.property("text").toString(), caption);
    }

    static void titlesComeFromTheStringTable()
    {
        BufferWindow window;
        auto& frame = SiteWindow::Part<QGroupBox>(window.Window(), "fraStato");

        QCOMPARE(window.Window().windowTitle(), "Stato Buffer");
        QCOMPARE(window.Window().property("tag").toString(), "920;");
        QCOMPARE(frame.title(), "Stato");
        QCOMPARE(frame.property("tag").toString(), "901;");
    }

    static void everyValueIsEmptyAtFirst()
    {
        BufferWindow window;

        window.Open();

        QCOMPARE(window.Values(), QStringList(14, ""));
    }

    // Markup in a device's reply is shown as text.
    static void everyValueIsPlainText()
    {
        BufferWindow window;
        int values = 0;

        for (const QLabel* const label : window.Window().findChildren<QLabel*>()) {
            if (label->property("tag").isValid())
                continue;
            ++values;
            QVERIFY2(label->textFormat() == Qt::PlainText, qPrintable(label->objectName()));
        }

        QCOMPARE(values, 14 + 1); // plus the state in the modem dialog
    }

    static void fieldsHoldTheDateAndTimeOfDay()
    {
        BufferWindow window; // on 3 March 2026, 10:20:30

        QCOMPARE(window.Field("mskData").text(), "03/03/26");
        QCOMPARE(window.Field("mskOra").text(), "10:20");
    }

    static void fieldsHaveTheirMasks()
    {
        BufferWindow window;

        QCOMPARE(window.Field("mskData").mask(), "##/##/##");
        QCOMPARE(window.Field("mskData").format(), "dd/mm/yy");
        QCOMPARE(window.Field("mskOra").mask(), "##:##");
        QCOMPARE(window.Field("mskOra").format(), "hh:mm");
    }

    static void dateIsSelectedWheneverItGetsTheFocus()
    {
        BufferWindow window;
        window.Open();

        for (int time = 0; time < 2; ++time) {
            window.Field("mskOra").setFocus();
            QCOMPARE(window.Field("mskData").selectedText(), "");

            window.Field("mskData").setFocus();

            QCOMPARE(window.Field("mskData").selectionStart(), 0);
            QCOMPARE(window.Field("mskData").selectedText(), "03/03/26");
        }
    }

    static void timeIsNotSelected()
    {
        BufferWindow window;
        window.Open();
        window.Field("mskData").setFocus();

        window.Press(Qt::Key_Tab);

        QCOMPARE(window.Focus(), "mskOra");
        QCOMPARE(window.Field("mskOra").selectedText(), "");
    }

    static void clickIntoTheDateSelectsIt()
    {
        BufferWindow window;
        window.Open();
        MaskEdit& date = window.Field("mskData");

        QTest::mouseClick(&date, Qt::LeftButton, {}, CaretPlace(date, 3));
        QCOMPARE(date.selectedText(), "03/03/26");
        QTest::keyClicks(&date, "280227");

        QCOMPARE(date.text(), "28/02/27");
    }

    static void secondClickIntoTheDatePlacesTheCaret()
    {
        BufferWindow window;
        window.Open();
        MaskEdit& date = window.Field("mskData");
        QTest::mouseClick(&date, Qt::LeftButton, {}, CaretPlace(date, 3));

        QTest::mouseClick(&date, Qt::LeftButton, {}, CaretPlace(date, 3));

        QVERIFY(!date.hasSelectedText());
        QCOMPARE(date.cursorPosition(), 3);
    }

    static void draggedMouseSelectsAPartOfTheDate()
    {
        BufferWindow window;
        window.Open();
        MaskEdit& date = window.Field("mskData");

        Drag(date, CaretPlace(date, 6), {date.width() - 1, date.height() / 2});

        QCOMPARE(date.selectedText(), "26");
    }

    static void clickIntoTheTimePlacesTheCaret()
    {
        BufferWindow window;
        window.Open();
        MaskEdit& time = window.Field("mskOra");

        QTest::mouseClick(&time, Qt::LeftButton, {}, CaretPlace(time, 3));

        QVERIFY(!time.hasSelectedText());
        QCOMPARE(time.cursorPosition(), 3);
    }

    static void returningFromAnotherProgramSelectsNothing()
    {
        BufferWindow window;
        window.Open();
        window.Field("mskData").setFocus();
        QTest::keyClicks(&window.Field("mskData"), "28");
        QWidget other;
        other.show();
        BringToFront(other);

        BringToFront(window.Window());
        QTest::keyClicks(&window.Field("mskData"), "0227");

        QCOMPARE(window.Field("mskData").text(), "28/02/27");
    }

    static void enterInAFieldDoesNothing_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("date") << "mskData" << Qt::Key_Return;
        QTest::newRow("date, numeric pad") << "mskData" << Qt::Key_Enter;
        QTest::newRow("time") << "mskOra" << Qt::Key_Return;
        QTest::newRow("time, numeric pad") << "mskOra" << Qt::Key_Enter;
    }

    // Enter must not send a date and time that are only half changed.
    static void enterInAFieldDoesNothing()
    {
        QFETCH(const QString, field);
        QFETCH(const Qt::Key, key);
        BufferWindow window;
        window.Open();
        window.Field("mskOra").setFocus();
        window.Field(qPrintable(field)).setFocus();

        window.Press(key);

        QCOMPARE(window.Journal(), QStringList());
        QVERIFY(window.Window().isVisible());
        QCOMPARE(window.Focus(), field);
    }

    static void enterOnAButtonPressesIt()
    {
        BufferWindow window;
        window.Open();
        window.Field("mskOra").setFocus();

        window.Press(Qt::Key_Tab);
        QCOMPARE(window.Focus(), "cmdImpostaDataOra");
        window.Press(Qt::Key_Return);
        QCOMPARE(window.Port().Sent(), "\x0F"
                                       "1020030326");
        window.Press(Qt::Key_Tab);
        QCOMPARE(window.Focus(), "cmdChiudi");
        window.Press(Qt::Key_Enter);

        QVERIFY(!window.Window().isVisible());
    }

    static void escapeInAFieldCloses()
    {
        BufferWindow window;
        window.Open();
        window.Field("mskData").setFocus();

        window.Press(Qt::Key_Escape);

        QVERIFY(!window.Window().isVisible());
    }

    static void mnemonicsLeadToTheFields()
    {
        BufferWindow window;
        window.Open();

        QTest::keyClick(&window.Window(), Qt::Key_O, Qt::AltModifier);
        QCOMPARE(window.Focus(), "mskOra");

        QTest::keyClick(&window.Window(), Qt::Key_D, Qt::AltModifier);
        QCOMPARE(window.Focus(), "mskData");
    }

    static void portIsConfiguredAndStaysClosed()
    {
        BufferWindow window;
        QCOMPARE(window.Journal(), QStringList({"0 Configure"}));
        QVERIFY(window.Port().Line() ==
                (LineSettings{.commPort = 2, .settings = "9600,N,8,1", .handshaking = 0}));

        window.Open();

        QCOMPARE(window.Journal(), QStringList());
        QVERIFY(!window.Port().IsOpen());
        QCOMPARE(window.Enabled(), QStringList({"cmdStato", "cmdImpostaDataOra", "cmdChiudi"}));
        QCOMPARE(window.Busy(), QStringList());
    }

    static void clockButtonIsEnabledFromOutside()
    {
        BufferWindow window;

        window.Window().EnableClock(false);
        QCOMPARE(window.Enabled(), QStringList({"cmdStato", "cmdChiudi"}));

        window.Window().EnableClock(true);
        QCOMPARE(window.Enabled(), QStringList({"cmdStato", "cmdImpostaDataOra", "cmdChiudi"}));
    }

    static void statusHasTheFocus()
    {
        BufferWindow window;

        window.Open();

        QCOMPARE(window.Focus(), "cmdStato");
    }

    static void tabFollowsTheReadingOrder()
    {
        BufferWindow window;
        window.Open();

        QCOMPARE(TabRound(window.Window()),
                 QStringList({"cmdStato", "mskData", "mskOra", "cmdImpostaDataOra", "cmdChiudi"}));
    }

    static void everyMnemonicLeadsToAField()
    {
        BufferWindow window;

        QCOMPARE(LabelsWithoutBuddy(window.Window()), QStringList());
    }

    static void labelsNameTheirFields()
    {
        BufferWindow window;

        QCOMPARE(NamelessFields(window.Window()), QStringList());
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_test> registered;
#include "frmSX_test.moc"
