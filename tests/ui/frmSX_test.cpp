// The buffer window before any request: its texts, its fields, its port.
#include "tests/support/buffer_window.h"
#include "tests/support/controls.h"
#include "tests/support/registered_test.h"

#include <QLabel>
#include <QTest>

namespace corvrec
{

class frmSX_test : public QObject
{
    Q_OBJECT

private slots:
    static void captionsComeFromTheStringTable()
    {
        BufferWindow window;
        struct Caption {
            const char* control;
            const char* tag;
            const char* text;
        };
        for (const auto& [name, tag, text] : {
                 Caption{"fraStato", "901;", "Stato"},
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
             }) {
            auto& control = SiteWindow::Part<QWidget>(window.Window(), name);
            QCOMPARE(control.property("tag").toString(), tag);
            QCOMPARE(control.property(control.inherits("QGroupBox") ? "title" : "text").toString(), text);
        }
        QCOMPARE(window.Window().windowTitle(), "Stato Buffer");
        QCOMPARE(window.Window().property("tag").toString(), "920;");
    }

    // Markup in a device's reply is shown as text.
    static void everyValueIsPlainTextWithItsCaption()
    {
        BufferWindow window;
        QStringList captions;

        for (const QLabel* const label : window.Window().findChildren<QLabel*>()) {
            const auto* const value = qobject_cast<QLabel*>(label->buddy());
            if (value == nullptr)
                continue;
            captions.append(label->objectName());
            QCOMPARE(value->objectName(), label->objectName().replace("cap", "lbl"));
            QCOMPARE(value->textFormat(), Qt::PlainText);
            QVERIFY(value->textInteractionFlags() == Qt::TextSelectableByMouse);
            QVERIFY(!value->toolTip().isEmpty());
        }

        QCOMPARE(captions.size(), 14);
        QCOMPARE(window.Values(), QStringList(14, ""));
        QCOMPARE(LabelsWithoutBuddy(window.Window()), QStringList());
        QCOMPARE(NamelessFields(window.Window()), QStringList());
    }

    static void fieldsHoldTheDateAndTimeOfDay()
    {
        BufferWindow window; // on 3 March 2026, 10:20:30

        QCOMPARE(window.Field("mskData").text(), "03/03/26");
        QCOMPARE(window.Field("mskOra").text(), "10:20");
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
            QTest::keyClick(&window.Window(), Qt::Key_O, Qt::AltModifier);
            QCOMPARE(window.Focus(), "mskOra");
            QCOMPARE(window.Field("mskOra").selectedText(), "");
            QCOMPARE(window.Field("mskData").selectedText(), "");

            QTest::keyClick(&window.Window(), Qt::Key_D, Qt::AltModifier);

            QCOMPARE(window.Focus(), "mskData");
            QCOMPARE(window.Field("mskData").selectionStart(), 0);
            QCOMPARE(window.Field("mskData").selectedText(), "03/03/26");
        }
    }

    static void clickIntoTheDateSelectsIt()
    {
        BufferWindow window;
        window.Open();
        MaskEdit& date = window.Field("mskData");
        MaskEdit& time = window.Field("mskOra");

        Drag(date, CaretPlace(date, 6), {date.width() - 1, date.height() / 2});
        QCOMPARE(date.selectedText(), "26");
        QTest::mouseClick(&time, Qt::LeftButton, {}, CaretPlace(time, 3));
        QVERIFY(!time.hasSelectedText());
        QCOMPARE(time.cursorPosition(), 3);

        QTest::mouseClick(&date, Qt::LeftButton, {}, CaretPlace(date, 3));
        QCOMPARE(date.selectedText(), "03/03/26");
        QTest::keyClicks(&date, "280227");
        QCOMPARE(date.text(), "28/02/27");

        QTest::mouseClick(&date, Qt::LeftButton, {}, CaretPlace(date, 3));
        QVERIFY(!date.hasSelectedText());
        QCOMPARE(date.cursorPosition(), 3);
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

    // Enter must not send a date and time that are only half changed.
    static void enterInAFieldDoesNothing()
    {
        BufferWindow window;
        window.Open();
        for (const char* const field : {"mskData", "mskOra"}) {
            for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
                window.Field(field).setFocus();
                window.Press(key);
                QCOMPARE(window.Journal(), QStringList());
                QVERIFY(window.Window().isVisible());
                QCOMPARE(window.Focus(), field);
            }
        }

        window.Press(Qt::Key_Escape);

        QVERIFY(!window.Window().isVisible());
    }

    static void enterOnAButtonPressesIt()
    {
        BufferWindow window;
        window.Open();
        QCOMPARE(window.Focus(), "cmdStato");
        QCOMPARE(TabRound(window.Window()),
                 QStringList({"cmdStato", "mskData", "mskOra", "cmdImpostaDataOra", "cmdChiudi"}));

        window.Button("cmdImpostaDataOra").setFocus();
        window.Press(Qt::Key_Return);
        QCOMPARE(window.Port().Sent(), "\x0F"
                                       "1020030326");
        window.Press(Qt::Key_Tab);
        window.Press(Qt::Key_Enter);

        QVERIFY(!window.Window().isVisible());
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
        QCOMPARE(window.Busy(), QStringList());
    }

    static void clockButtonIsEnabledFromOutside()
    {
        BufferWindow window;
        QCOMPARE(window.Enabled(), QStringList({"cmdStato", "cmdImpostaDataOra", "cmdChiudi"}));

        window.Window().EnableClock(false);
        QCOMPARE(window.Enabled(), QStringList({"cmdStato", "cmdChiudi"}));

        window.Window().EnableClock(true);
        QCOMPARE(window.Enabled(), QStringList({"cmdStato", "cmdImpostaDataOra", "cmdChiudi"}));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSX_test> registered;
#include "frmSX_test.moc"
