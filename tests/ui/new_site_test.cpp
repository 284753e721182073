// The first state of a new site, and the names and codes that it may have.
#include "tests/support/cases.h"
#include "tests/support/editor_window.h"
#include "tests/support/modal_visit.h"
#include "tests/support/registered_test.h"
#include "tests/support/sample_site.h"
#include "tests/support/text_entry.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <functional>

namespace corvrec
{

namespace
{

constexpr auto kCatalogue = "Alfa=A1\r\nBeta=B1\r\n";

// A site that differs from a new one in every value.
std::string FullSite()
{
    return "[Siti]\r\nPIENO=Pieno\r\n[General]\r\nCom=COM2\r\nLog=Corvrec.log\r\n[PIENO]\r\n" +
           SavedSite({{"SitoAbilitato", "0"},
                      {"Dispositivo", "STX40"},
                      {"Xon", " 2"},
                      {"Xoff", " 1"},
                      {"Baud", "57600"},
                      {"BitDati", "7"},
                      {"Stop", "2"},
                      {"Ricorrenza", " 62"},
                      {"Ogni", " 1209600"},
                      {"AggOra", "1"},
                      {"Ora", "08:30 21/11/2026"},
                      {"EliminaNull", "0"},
                      {"CorreggiCR", "1"},
                      {"Modello", "Beta"},
                      {"StringaReset", "ATZ"},
                      {"FileTimeout", "45"},
                      {"SpazioTimeout", "46"},
                      {"NumeroTel", "ATDP0123"}});
}

// What the editor shows when "Aggiungi..." opens it. Afterwards act runs in the editor, which is left with
// Escape.
QStringList ShownInANewSite(EditorWindow& window, const std::function<void()>& act = {})
{
    QStringList shown;
    const ModalVisit<frmDettaglio> visit([&](frmDettaglio& editor) {
        shown = AllShown(editor);
        if (act)
            act();
        editor.reject();
    });
    QTest::mouseClick(&SiteWindow::Part<QPushButton>(window.List(), "cmdAggiungi"), Qt::LeftButton);
    return shown;
}

// Picks the command in the list's context menu by its letter.
void PressInMenu(SiteWindow& window, Qt::Key letter)
{
    auto& grid = SiteWindow::Part<QTableView>(window.List(), "dgrdGrigliaSiti");
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
    QCoreApplication::sendEvent(&grid, &event);
    QVERIFY(QApplication::activePopupWidget() != nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), letter);
}

// A text entered as a code, and the code that the field shows after it was left.
struct Code {
    const char* name;
    const char* entered;
    const char* code;
};

constexpr std::array<Code, 8> kCodes{{{"equals sign", "A=B", "AB"},
                                      {"brackets", "[A]B]", "AB"},
                                      {"semicolons in front", ";;A;B", "A;B"},
                                      {"semicolon after blanks", "  ;A", "A"},
                                      {"semicolon after a dropped character", "[;A", "A"},
                                      {"control characters", "\tA\u001F\u0081B\t", "AB"},
                                      {"nothing is left", "=[];", ""},
                                      {"all others", "a.-_'#;€ù", "A.-_'#;€Ù"}}};

} // namespace

class new_site_test : public QObject
{
    Q_OBJECT

private slots:
    // Neither changes discarded with Escape nor the values of a site opened meanwhile reappear.
    static void startsFromTheProgramsFirstState()
    {
        EditorWindow window(FullSite(), kCatalogue);
        const QStringList first = ShownInANewSite(window, [&window] {
            window.Set({"cboHandS: Software", "txtXon: A", "chkXoff: off", "chkData: on", "chkSpazio: on",
                        "txtSpazio: 99", "txtTelefono: 055", "optImpulsi: on", "cboModem: Beta"});
        });

        QCOMPARE(ShownInANewSite(window), first);
        window.Editor().EnableIdentity(false);
        window.Open();
        window.ExpectShown({"lstGiorni: 0 1 2 3 4", "txtTelefono: 0123"});
        window.Click("Annulla");
        window.Editor().EnableIdentity(true); // as the list does after using the editor

        QCOMPARE(ShownInANewSite(window), first);
        window.ExpectShown({"cboModem: Alfa", "txtXon: Q", "txtFile: 600"});
    }

    static void duplicateHasTheValuesOfTheMarkedSite()
    {
        EditorWindow window(FullSite(), kCatalogue);
        const QByteArray before = window.File();
        window.Open();
        QStringList expected = AllShown(window.Editor());
        expected.replaceInStrings("txtNomeSito: Pieno", "txtNomeSito: ");
        expected.replaceInStrings("txtCodice: PIENO", "txtCodice: ");
        window.Click("Annulla");
        window.Editor().EnableIdentity(true);
        const ModalVisit<frmDettaglio> visit([&](frmDettaglio& editor) {
            QCOMPARE(AllShown(editor), expected);
            QCOMPARE(window.Focus(), "txtNomeSito");
            QVERIFY(editor.Nuovo());
            window.Set({"txtNomeSito: Copia", "txtCodice: COPIA", R"(txtDati: C:\1)", R"(txtDati2: C:\2)",
                        R"(txtStorico: C:\3)"});
            window.Click("OK");
        });

        PressInMenu(window, Qt::Key_D);

        QByteArray copy = before.mid(before.indexOf("[PIENO]"));
        copy.replace("PIENO", "COPIA").replace(R"(C:\Dati\Ufficio.txt)", R"(C:\1)");
        copy.replace(R"(C:\Dati\Scambio.txt)", R"(C:\2)").replace(R"(C:\Dati\Storico.txt)", R"(C:\3)");
        QCOMPARE(window.File(),
                 QByteArray(before).replace("PIENO=Pieno\r\n", "PIENO=Pieno\r\nCOPIA=Copia\r\n") + copy);
        QCOMPARE(window.Rows(),
                 QStringList({"Pieno | PIENO | No | Settimanale", "Copia | COPIA | No | Settimanale"}));
        QCOMPARE(QString::fromStdString(window.List().SelectedSite()), "COPIA");
    }

    static void codeTakesNoCharacterThatNamesCannotHold_data() { AddCases(kCodes); }
    static void codeTakesNoCharacterThatNamesCannotHold()
    {
        QFETCH(const Code, given);
        EditorWindow window(SettingsWith({}));
        window.Add();
        for (const Entry way : kEntries) {
            if (way == Entry::keys && Typeable(given.entered) != given.entered)
                continue;
            Enter(window.Field("txtCodice"), given.entered, way);
            window.Press(Qt::Key_Tab);
            QCOMPARE(window.Shows("txtCodice"), given.code);
        }
    }

    static void deletingCannotBringASemicolonToTheFront()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Retype("txtCodice", "A;;B");

        window.Press(Qt::Key_Home);
        window.Press(Qt::Key_Delete);

        QCOMPARE(window.Shows("txtCodice"), "B");
        QCOMPARE(window.Field("txtCodice").cursorPosition(), 0);
    }

    // A changed code would make it a different site.
    static void codeOfAnExistingSiteIsNeverChanged()
    {
        EditorWindow window(
            "[Siti]\r\nA[1;=Alfa\r\n[General]\r\nCom=COM2\r\n[A[1;]\r\nDispositivo=STX30\r\n");
        window.Open();
        window.ExpectShown({"txtCodice: A[1;", "cboTipoConn: Stratobox 3.0"});

        window.Click("OK");

        QCOMPARE(window.File().count("[A[1;]"), 1);
        QVERIFY(window.File().startsWith("[Siti]\r\nA[1;=Alfa\r\n[General]"));
    }

    static void existingSiteShowsTheBeginningOfItsName()
    {
        EditorWindow window("[Siti]\r\nA=" + std::string(200, 'x') + "\r\n[General]\r\nCom=COM2\r\n");

        window.Open();

        QCOMPARE(window.Field("txtNomeSito").cursorPosition(), 0);
        QCOMPARE(window.Field("txtCodice").cursorPosition(), 0);
    }

    // With nested quotes, OK stores the name that the field shows, and the next start removes its quotes.
    static void listShowsAnEditedNameAsTheNextStartDoes()
    {
        SiteWindow window("[Siti]\r\nA=''Alfa''\r\n[General]\r\nCom=COM2\r\n[A]\r\nSitoAbilitato=1\r\n");
        QCOMPARE(window.Rows(), QStringList({"'Alfa' | A | Sì | "}));
        const ModalVisit<frmDettaglio> visit([](frmDettaglio& editor) {
            QTest::mouseClick(&SiteWindow::Part<QPushButton>(editor, "OK"), Qt::LeftButton);
        });

        QTest::mouseClick(&SiteWindow::Part<QPushButton>(window.List(), "cmdProperties"), Qt::LeftButton);

        SiteWindow next(window.Settings().Bytes());
        QCOMPARE(window.Rows(), next.Rows());
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::new_site_test> registered;
#include "new_site_test.moc"
