// A technician's session from the site list to the file: compares the resulting bytes with what was typed and
// clicked.
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/registered_test.h"
#include "tests/support/sample_site.h"
#include "tests/support/site_window.h"
#include "ui/editor/frmFileAvanzate.h"
#include "ui/editor/frmModem.h"
#include "ui/editor/frmTrasfAvanzate.h"
#include "ui/widgets/check_list.h"
#include "ui/widgets/mask_edit.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

namespace corvrec
{

namespace
{

constexpr auto kBefore =
    "; Registratore di Bologna\r\n[General]\r\nCom=COM2\r\nLog=Vecchio.log\r\n\r\n"
    "[Siti]\r\n; codice=nome\r\nUNO=Sede di Forl\xEC\r\nDUE=Magazzino\r\n\r\n"
    "[UNO]\r\nSitoAbilitato=1\r\nSTimeRead=5\r\n; nota da conservare\r\nDispositivo=STX30\r\nMODEM=0\r\n"
    "Baud=4800\r\nRicorrenza=-2\r\nOgni= 172800\r\nOra=08.30 01/02/2020p\r\nDati=c:\\dati\\uno.txt\r\n"
    "Dati2=c:\\scambio\\uno.txt\r\nStorico=c:\\storico\\uno.txt\r\n"
    "Estranea=resta finche' il sito non viene salvato\r\n"
    "[DUE]\r\nSitoAbilitato=0\r\nRicorrenza=0\r\n[Altro programma]\r\nChiave = valore \r\n";

// What is left of it without the section UNO.
const QByteArray kRest = "; nota da conservare\r\n[DUE]\r\nSitoAbilitato=0\r\nRicorrenza=0\r\n"
                         "[Altro programma]\r\nChiave = valore \r\n";

// The site that FillWeeklyRemoteSite types in.
const QByteArray kRavenna =
    "[RA1]\r\n" + QByteArray::fromStdString(SavedNewSite({{"SitoAbilitato", "1"},
                                                          {"Dispositivo", "STX40"},
                                                          {"MODEM", "1"},
                                                          {"Baud", "115200"},
                                                          {"Ricorrenza", " 65"},
                                                          {"Ogni", " 1209600"},
                                                          {"Ora", "21:45 21/11/2026"},
                                                          {"AggData", "1"},
                                                          {"Dati", R"(d:\ra\dati.txt)"},
                                                          {"Dati2", R"(d:\ra\scambio.txt)"},
                                                          {"Storico", R"(d:\ra\storico.txt)"},
                                                          {"Modello", "Modello B"},
                                                          {"StringaModem", "ATX4&K3=1"},
                                                          {"NumeroTel", "ATDP0544123456"},
                                                          {"Importazione", "3"},
                                                          {"FileTimeout", "900"}}));

constexpr std::string_view kCatalogue = "Modello A=X3S0=0\r\nModello B=X4&K3=1\r\n";

// Line by line, so that a failure shows the line; line ends are part of the lines.
QList<QByteArray> Lines(const QByteArray& bytes)
{
    return bytes.split('\n');
}

template <class Control>
Control& Part(QWidget& window, const char* name)
{
    return SiteWindow::Part<Control>(window, name);
}

void Click(QWidget& window, const char* button)
{
    QTest::mouseClick(&Part<QPushButton>(window, button), Qt::LeftButton);
}

void Type(QWidget& window, const char* field, const QString& text)
{
    auto& edit = Part<QLineEdit>(window, field);
    QTest::mouseClick(&edit, Qt::LeftButton);
    QTest::keyClick(&edit, Qt::Key_Home);
    QTest::keyClick(&edit, Qt::Key_End, Qt::ShiftModifier);
    for (const QChar letter : text) {
        // One key stands in for all letters beyond ASCII.
        if (letter.unicode() < 0x80)
            QTest::keyClick(&edit, letter.toLatin1());
        else
            QTest::sendKeyEvent(QTest::Click, &edit, Qt::Key_Agrave, QString(letter), Qt::NoModifier);
    }
}

// Chooses an entry with the arrow keys.
void Choose(QWidget& window, const char* list, const QString& entry)
{
    auto& combo = Part<QComboBox>(window, list);
    combo.setFocus();
    QTest::keyClick(&combo, Qt::Key_Home);
    for (int i = 0; i < combo.count() && combo.currentText() != entry; ++i)
        QTest::keyClick(&combo, Qt::Key_Down);
    QCOMPARE(combo.currentText(), entry);
}

void FillModem(frmModem& form)
{
    Choose(form, "cboModem", "Modello B");
    Type(form, "txtTelefono", "0544123456");
    Type(form, "txtTentImpor", "3");
    QTest::mouseClick(&Part<QRadioButton>(form, "optImpulsi"), Qt::LeftButton, {},
                      QPoint(8, Part<QRadioButton>(form, "optImpulsi").height() / 2));
    Click(form, "OK");
}

void FillWeeklyRemoteSite(frmDettaglio& form)
{
    Type(form, "txtNomeSito", "Ravenna, sede à ");
    Type(form, "txtCodice", " ra1");
    Choose(form, "cboTipoConn", "Stratobox Buffer");
    QTest::mouseClick(&Part<QRadioButton>(form, "optRemoto"), Qt::LeftButton, {},
                      QPoint(8, Part<QRadioButton>(form, "optRemoto").height() / 2));
    Choose(form, "cboVelocita", "115200");
    {
        const ModalVisit<frmModem> modem(FillModem);
        Click(form, "btnModem");
    }
    QTest::keyClick(&form, Qt::Key_Tab, Qt::ControlModifier);
    Choose(form, "cboRicorrenza", "Settimanale");
    Type(form, "mskValore", "2");
    Type(form, "mskOrario", "2145");
    auto& days = Part<CheckList>(form, "lstGiorni");
    for (const int row : {5, 6})
        QTest::mouseClick(days.viewport(), Qt::LeftButton, {}, days.visualItemRect(days.item(row)).center());
    {
        const ModalVisit<frmTrasfAvanzate> transformations([](frmTrasfAvanzate& dialog) {
            for (const char* const box : {"chkData", "chkNull"})
                QTest::keyClick(&Part<QCheckBox>(dialog, box), Qt::Key_Space);
            Click(dialog, "OK");
        });
        Click(form, "cmdTAvanzate");
    }
    QTest::keyClick(&form, Qt::Key_Tab, Qt::ControlModifier);
    Type(form, "txtDati", "d:\\ra\\dati.txt");
    Type(form, "txtDati2", "d:\\ra\\scambio.txt");
    Type(form, "txtStorico", "d:\\ra\\storico.txt");
    Type(form, "txtLog", "Comune.log");
    {
        const ModalVisit<frmFileAvanzate> alerts([](frmFileAvanzate& dialog) {
            QTest::keyClick(&Part<QCheckBox>(dialog, "chkFile"), Qt::Key_Space);
            Type(dialog, "txtFile", "900");
            Click(dialog, "OK");
        });
        Click(form, "cmdFileAvanzate");
    }
    QTest::keyClick(&Part<QLineEdit>(form, "txtLog"), Qt::Key_Return);
}

} // namespace

class edit_cycle_test : public QObject
{
    Q_OBJECT

private slots:
    static void editedSiteIsWrittenAgain()
    {
        SiteWindow window(kBefore, kCatalogue);
        const ModalVisit<frmDettaglio> editor([](frmDettaglio& form) {
            Choose(form, "cboVelocita", "9600");
            Type(form, "mskValore", "3");
            QTest::keyClick(&Part<QLineEdit>(form, "txtDati"), Qt::Key_Return);
        });

        Click(window.List(), "cmdProperties");

        QCOMPARE(Lines(window.File()),
                 Lines("; Registratore di Bologna\r\n[General]\r\nCom=COM2\r\nLog=Vecchio.log\r\n\r\n"
                       "[Siti]\r\n; codice=nome\r\nUNO=Sede di Forl\xEC\r\nDUE=Magazzino\r\n\r\n" +
                       kRest + "[UNO]\r\n" +
                       QByteArray::fromStdString(SavedNewSite({{"SitoAbilitato", "1"},
                                                               {"Dispositivo", "STX30"},
                                                               {"Ricorrenza", "-2"},
                                                               {"Ogni", " 259200"},
                                                               {"Ora", "08:30 21/11/2026p"},
                                                               {"Dati", R"(c:\Dati\Uno.txt)"},
                                                               {"Dati2", R"(c:\Scambio\Uno.txt)"},
                                                               {"Storico", R"(c:\Storico\Uno.txt)"},
                                                               {"Modello", "Modello A"},
                                                               {"StringaModem", "ATX3S0=0"}}))));
    }

    static void leavingTheEditorWritesNothing()
    {
        SiteWindow window(kBefore, kCatalogue);
        const QByteArray before = window.File();
        const std::array<void (*)(frmDettaglio&), 3> ways{
            [](frmDettaglio& form) { Click(form, "Annulla"); },
            [](frmDettaglio& form) { QTest::keyClick(form.focusWidget(), Qt::Key_Escape); },
            [](frmDettaglio& form) { form.close(); }};
        for (const auto leave : ways) {
            const ModalVisit<frmDettaglio> editor([leave](frmDettaglio& form) {
                Choose(form, "cboTipoConn", "Stratobox Buffer");
                Type(form, "txtDati", "x");
                leave(form);
                QVERIFY(!form.isVisible());
                QVERIFY(form.Cancel());
            });
            Click(window.List(), "cmdProperties");
        }

        window.List().close();

        QCOMPARE(window.File(), before);
    }

    static void addingEditingAndRemovingLeaveTheRestOfTheFile()
    {
        SiteWindow window(kBefore, kCatalogue);
        {
            const ModalVisit<frmDettaglio> editor(FillWeeklyRemoteSite);
            Click(window.List(), "cmdAggiungi");
        }
        QByteArray added(kBefore);
        added.replace("Vecchio.log", "Comune.log")
            .replace("Magazzino\r\n", "Magazzino\r\nRA1=Ravenna, sede \xE0\r\n");
        QCOMPARE(Lines(window.File()), Lines(added + kRavenna));
        {
            // The first site is removed.
            Part<QTableView>(window.List(), "dgrdGrigliaSiti").selectRow(0);
            MessageProbe question(QString("Sì"));
            Click(window.List(), "cmdRimuovi");
        }
        {
            // Opening the new site and pressing OK writes it again.
            const ModalVisit<frmDettaglio> editor([](frmDettaglio& form) { Click(form, "OK"); });
            Click(window.List(), "cmdProperties");
        }
        Click(window.List(), "cmdChiudi");

        QVERIFY(!window.List().isVisible());
        // The editor capitalises the letter after each separator of a path, and reads the stored "0" as an
        // alert at 0 MByte.
        QByteArray again = kRavenna;
        again.replace("\\ra\\d", "\\Ra\\D").replace("\\ra\\s", "\\Ra\\S");
        QCOMPARE(Lines(window.File()),
                 Lines("; Registratore di Bologna\r\n[General]\r\nCom=COM2\r\nLog=Comune.log\r\n\r\n"
                       "[Siti]\r\n; codice=nome\r\nDUE=Magazzino\r\nRA1=Ravenna, sede \xE0\r\n\r\n" +
                       kRest + again));
    }

    static void changeByAnotherProgramMeanwhileIsKept()
    {
        SiteWindow window(SettingsWith({"A", "B"}));
        const ModalVisit<frmDettaglio> editor([&window](frmDettaglio& form) {
            // Another site and a foreign section change while the editor is open.
            std::string bytes = window.Settings().Bytes();
            bytes.replace(bytes.find("[B]\r\nSitoAbilitato=1"), 20, "[B]\r\nSitoAbilitato=0");
            window.Settings().Rewrite(bytes + "[Servizio]\r\nAvviato=1\r\n");
            Click(form, "OK");
        });

        Click(window.List(), "cmdProperties");

        QCOMPARE(window.Settings().Line("B", "SitoAbilitato"), "SitoAbilitato=0");
        QCOMPARE(window.Settings().Line("Servizio", "Avviato"), "Avviato=1");
        QCOMPARE(window.Settings().Line("A", "CharToDel"), "CharToDel=00");
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::edit_cycle_test> registered;
#include "edit_cycle_test.moc"
