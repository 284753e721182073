// The first state of a new site, and the names and codes that it may have.
#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/registered_test.h"
#include "tests/support/text_entry.h"
#include "ui/editor/frmFileAvanzate.h"
#include "ui/editor/frmModem.h"
#include "ui/editor/frmTrasfAvanzate.h"
#include "ui/widgets/texts.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <array>
#include <functional>

namespace corvrec
{

namespace
{

// # stands for a double quote.
constexpr std::array kOddNames{
    "Sede di Forlì", "#Alfa#",    "'Alfa'",  "##Alfa##",     "#",  "''",          "Città Ω", "\tAlfa\t",
    "Al\tfa",        "-CaVacca-", "=Alfa",   ";Alfa",        "[A", "#Alfa# ",     "0",       "Ẁ",
    "“Alfa”",        "A\u00A0B",  "\u00A0A", "A\U0001F600B", "ß",  "Alfa\u0081B",
};

// A site that differs from a new one in every value.
constexpr auto kFullSite =
    "[Siti]\r\nPIENO=Pieno\r\n[General]\r\nCom=COM2\r\nLog=Corvrec.log\r\n[PIENO]\r\nSitoAbilitato=0\r\n"
    "STimeRead=20\r\nSTimeWrite=20\r\nMTimeRead=60\r\nMTimeWrite=60\r\nFlagCRLF=0\r\nDispositivo=STX40\r\n"
    "MODEM=1\r\nHandshake=XON\r\nXon= 2\r\nXoff= 1\r\nBaud=57600\r\nBitDati=7\r\nParita=E\r\nStop=2\r\n"
    "Ricorrenza= 62\r\nOgni= 1209600\r\nOra=08:30 21/11/2026\r\nAggData=1\r\nAggOra=1\r\nEliminaNull=0\r\n"
    "CorreggiCR=1\r\nDati=C:\\Pieno\\D.txt\r\nDati2=C:\\Pieno\\S.txt\r\nStorico=C:\\Pieno\\H.txt\r\n"
    "Modello=Beta\r\nStringaModem=ATB2\r\nStringaReset=ATZ\r\nNumeroTel=ATDP0123\r\nImportazione=7\r\n"
    "FileTimeout=45\r\nSpazioTimeout=46\r\nTimeoutFineImp=15\r\nCharToDel=00\r\n";
constexpr auto kCatalogue = "Alfa=A1\r\nBeta=B1\r\n";

constexpr std::array kControls{
    "txtNomeSito", "txtCodice", "chkAbilitato",  "cboTipoConn", "optLocale",       "cboVelocita",
    "cboBitDati",  "cboParita", "cboBitStop",    "cboHandS",    "chkXon",          "txtXon",
    "chkXoff",     "txtXoff",   "cboRicorrenza", "mskValore",   "mskOrario",       "lstGiorni",
    "chkData",     "chkOra",    "chkNull",       "chkCrLf",     "chkFile",         "txtFile",
    "chkSpazio",   "txtSpazio", "cboModem",      "txtTelefono", "txtTentImpor",    "txtStringaInit",
    "optToni",     "txtDati",   "txtDati2",      "txtStorico",  "txtStringaReset", "txtLog",
};

QString Quoted(QString text)
{
    return text.replace('#', '"');
}

QStringList AllShown(EditorWindow& window)
{
    QStringList values;
    for (const char* const control : kControls)
        values.append(QString(control) + ": " + window.Shows(control));
    return values;
}

QStringList Rows(SiteWindow& window)
{
    const auto& model = *SiteWindow::Part<QTableView>(window.List(), "dgrdGrigliaSiti").model();
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells.append(model.index(row, column).data().toString());
        rows.append(cells.join(" | "));
    }
    return rows;
}

void ClickAdd(SiteWindow& window)
{
    QTest::mouseClick(&SiteWindow::Part<QPushButton>(window.List(), "cmdAggiungi"), Qt::LeftButton);
}

// What the editor shows when "Aggiungi..." opens it. Afterwards act runs in the editor, which is left with
// Escape.
QStringList ShownInANewSite(EditorWindow& window, const std::function<void()>& act = {})
{
    QStringList shown;
    const ModalVisit<frmDettaglio> visit([&](frmDettaglio& editor) {
        shown = AllShown(window);
        if (act)
            act();
        editor.reject();
    });
    ClickAdd(window);
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

// If the editor stays open with a message, it is closed so that the test fails instead of hanging.
void AcceptWith(frmDettaglio& editor, const QString& name, const QString& code)
{
    Enter(SiteWindow::Part<QLineEdit>(editor, "txtNomeSito"), name, Entry::paste);
    Enter(SiteWindow::Part<QLineEdit>(editor, "txtCodice"), code, Entry::paste);
    for (const char* const file : {"txtDati", "txtDati2", "txtStorico"})
        SiteWindow::Part<QLineEdit>(editor, file).setText(QString("C:\\nuovo\\") + file);
    QTest::mouseClick(&SiteWindow::Part<QPushButton>(editor, "OK"), Qt::LeftButton);
    if (editor.isVisible())
        editor.reject();
}

} // namespace

class new_site_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void startsFromTheProgramsFirstState()
    {
        EditorWindow window(kFullSite, kCatalogue);
        const QStringList first = ShownInANewSite(window);
        window.Editor().EnableIdentity(false);
        window.Open();
        QCOMPARE(window.Shows("lstGiorni"), "0 1 2 3 4");
        QCOMPARE(window.Shows("txtTelefono"), "0123");
        window.Click("Annulla");
        window.Editor().EnableIdentity(true); // as the list does after using the editor

        QCOMPARE(ShownInANewSite(window), first);
        QVERIFY(first.contains("cboModem: Alfa"));
        QVERIFY(first.contains("txtXon: Q"));
        QVERIFY(first.contains("txtFile: 600"));
    }

    // Changes discarded with Annulla do not reappear in the next new site.
    static void startsFromItAgainAfterTheUsersChanges()
    {
        EditorWindow window(SettingsWith({"A"}), kCatalogue);
        const QStringList first = ShownInANewSite(window, [&window] {
            window.Pick("cboHandS", 1);
            window.Retype("txtXon", "A");
            window.Box("chkXoff").click();
            SiteWindow::Part<QCheckBox>(window.Editor(), "chkData").click();
            SiteWindow::Part<QCheckBox>(window.Editor(), "chkSpazio").click();
            window.Field("txtSpazio").setText("99");
            window.Field("txtTelefono").setText("055");
            window.At<QAbstractButton>("optImpulsi").click();
            window.Choice("cboModem").setCurrentIndex(1);
        });

        QCOMPARE(ShownInANewSite(window), first);
    }

    static void duplicateHasTheValuesOfTheMarkedSite()
    {
        EditorWindow window(kFullSite, kCatalogue);
        window.Open();
        QStringList expected = AllShown(window);
        expected[0] = "txtNomeSito: ";
        expected[1] = "txtCodice: ";
        window.Click("Annulla");
        window.Editor().EnableIdentity(true);
        QStringList shown;
        {
            const ModalVisit<frmDettaglio> visit([&](frmDettaglio& editor) {
                shown = AllShown(window);
                shown.append(window.Focus());
                shown.append(editor.Nuovo() ? "new" : "existing");
                editor.reject();
            });
            PressInMenu(window, Qt::Key_D);
        }

        QCOMPARE(shown, expected + QStringList({"txtNomeSito", "new"}));
    }

    static void duplicateIsAddedAfterTheOriginal()
    {
        SiteWindow window(kFullSite, kCatalogue);
        const QByteArray before = window.File();
        const ModalVisit<frmDettaglio> visit(
            [](frmDettaglio& editor) { AcceptWith(editor, "Copia", "COPIA"); });

        PressInMenu(window, Qt::Key_D);

        QByteArray copy = before.mid(before.indexOf("[PIENO]"));
        copy.replace("PIENO", "COPIA").replace("C:\\Pieno\\D.txt", "C:\\nuovo\\txtDati");
        copy.replace("C:\\Pieno\\S.txt", "C:\\nuovo\\txtDati2")
            .replace("C:\\Pieno\\H.txt", "C:\\nuovo\\txtStorico");
        QByteArray expected = before + copy;
        expected.replace("PIENO=Pieno\r\n", "PIENO=Pieno\r\nCOPIA=Copia\r\n");
        QCOMPARE(window.File(), expected);
        QCOMPARE(Rows(window),
                 QStringList({"Pieno | PIENO | No | Settimanale", "Copia | COPIA | No | Settimanale"}));
        QCOMPARE(QString::fromStdString(window.List().SelectedSite()), "COPIA");
    }

    static void reservedCodesAreTaken_data()
    {
        QTest::addColumn<QString>("code");
        for (const char* const code : {"General", "general", "GENERAL", "Siti", "SITI", " siti "})
            QTest::newRow(code) << code;
    }

    // Editing or removing a site with such a code would delete the program's own settings.
    static void reservedCodesAreTaken()
    {
        QFETCH(QString, code);
        EditorWindow window(SettingsWith({"A"}));
        const QByteArray before = window.File();
        window.Add();
        window.Retype("txtNomeSito", "Roma");
        window.Retype("txtCodice", code);
        MessageProbe box(Qt::Key_Return);

        window.Press(Qt::Key_Return);

        QCOMPARE(box.text(), "Esiste già un sito con lo stesso nome o codice");
        QVERIFY(window.Editor().isVisible());
        QCOMPARE(window.File(), before);
    }

    static void codeTakesNoCharacterThatNamesCannotHold_data()
    {
        QTest::addColumn<QString>("entered");
        QTest::addColumn<QString>("code");
        QTest::newRow("equals sign") << "A=B"
                                     << "AB";
        QTest::newRow("brackets") << "[A]B]"
                                  << "AB";
        QTest::newRow("semicolons in front") << ";;A;B"
                                             << "A;B";
        QTest::newRow("semicolon after blanks") << "  ;A"
                                                << "A";
        QTest::newRow("semicolon after a dropped character") << "[;A"
                                                             << "A";
        QTest::newRow("control characters") << "\tA\u001F\u0081B\t"
                                            << "AB";
        QTest::newRow("nothing is left") << "=[];"
                                         << "";
        QTest::newRow("all others") << "a.-_'#;€ù"
                                    << "A.-_'#;€Ù";
    }

    static void codeTakesNoCharacterThatNamesCannotHold()
    {
        QFETCH(QString, entered);
        QFETCH(QString, code);
        EditorWindow window(SettingsWith({}));
        window.Add();
        for (const Entry way : kEntries) {
            if (way == Entry::keys && Typeable(entered) != entered)
                continue;
            window.Field("txtCodice").setFocus();
            Enter(window.Field("txtCodice"), entered, way);
            window.Press(Qt::Key_Tab);
            QCOMPARE(window.Shows("txtCodice"), code);
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
        QCOMPARE(window.Shows("txtCodice"), "A[1;");
        QCOMPARE(window.Shows("cboTipoConn"), "Stratobox 3.0");

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

    static void listShowsNamesAsTheNextStartDoes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("code");
        int number = 0;
        for (const char* const name : kOddNames)
            QTest::addRow("%s", name) << Quoted(name) << QString("N%1").arg(++number);
        QTest::addRow("long name") << QString(600, u'x') << "LUNGO";
        QTest::addRow("code outside the code page") << "Alfa"
                                                    << "Č1";
        QTest::addRow("quoted code") << "Beta" << Quoted("#A#");
    }

    static void listShowsNamesAsTheNextStartDoes()
    {
        QFETCH(QString, name);
        QFETCH(QString, code);
        SiteWindow window(SettingsWith({"UNO"}));
        {
            const ModalVisit<frmDettaglio> visit(
                [&](frmDettaglio& editor) { AcceptWith(editor, name, code); });
            ClickAdd(window);
        }
        QCOMPARE(Rows(window).size(), 2);

        SiteWindow next(window.Settings().Bytes());

        QCOMPARE(Rows(window), Rows(next));
    }

    // With nested quotes, OK stores the name that the field shows, and the next start removes its quotes.
    static void listShowsAnEditedNameAsTheNextStartDoes()
    {
        SiteWindow window("[Siti]\r\nA=''Alfa''\r\n[General]\r\nCom=COM2\r\n[A]\r\nSitoAbilitato=1\r\n");
        QCOMPARE(Rows(window), QStringList({"'Alfa' | A | Sì | "}));
        const ModalVisit<frmDettaglio> visit([](frmDettaglio& editor) {
            QTest::mouseClick(&SiteWindow::Part<QPushButton>(editor, "OK"), Qt::LeftButton);
        });

        QTest::mouseClick(&SiteWindow::Part<QPushButton>(window.List(), "cmdProperties"), Qt::LeftButton);

        SiteWindow next(window.Settings().Bytes());
        QCOMPARE(Rows(window), Rows(next));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::new_site_test> registered;
#include "new_site_test.moc"
