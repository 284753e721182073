#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/heap.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/registered_test.h"
#include "tests/support/unanswered_boxes.h"
#include "tests/support/vectors.h"
#include "ui/editor/frmModem.h"
#include "ui/widgets/texts.h"

#include <QFile>
#include <QGroupBox>
#include <QPushButton>
#include <QTest>

#include <fstream>
#include <map>

namespace corvrec
{

namespace
{

constexpr auto kApplication = "Configurazione Corvane Recorder";
constexpr auto kGenericString = "X3S0=0&M5&K0&C1&D2&R1";
constexpr auto kThreeModels = "Alfa=A1\r\nBeta=B2\r\nGamma=G3\r\n";

// The dialog in front of its parent window, with this catalogue; nullopt for no file.
class Fixture
{
public:
    explicit Fixture(std::optional<std::string_view> catalogue = kThreeModels)
    {
        if (catalogue)
            std::ofstream(directory_.Directory() / "modem.dat", std::ios::binary) << *catalogue;
        dialog_ = std::make_unique<frmModem>(directory_.Directory(), &behind_);
    }

    void Open()
    {
        dialog_->RegisterUndo();
        ShowInFrontOf(behind_, *dialog_);
    }
    void Fill()
    {
        Field("txtTelefono").setText("0123");
        Field("txtTentImpor").setText("3");
    }
    void Click(const char* button)
    {
        QTest::mouseClick(&SiteWindow::Part<QAbstractButton>(*dialog_, button), Qt::LeftButton);
    }
    void Press(Qt::Key key) { QTest::keyClick(dialog_->focusWidget(), key); }
    QLineEdit& Field(const char* name) { return SiteWindow::Part<QLineEdit>(*dialog_, name); }
    QComboBox& Models() { return SiteWindow::Part<QComboBox>(*dialog_, "cboModem"); }
    QString Focus() { return dialog_->focusWidget()->objectName(); }
    QString Shows(const char* name) { return Shown(SiteWindow::Part<QWidget>(*dialog_, name)); }
    QString State()
    {
        QStringList state;
        for (const char* const name : {"cboModem", "txtTelefono", "txtTentImpor", "txtStringaInit",
                                       "txtStringaReset", "optToni", "optImpulsi"})
            state.append(Shows(name));
        return state.join('|');
    }
    frmModem& Dialog() { return *dialog_; }

private:
    UnansweredBoxes unansweredBoxes_;
    SettingsFile directory_;
    QWidget behind_;
    std::unique_ptr<frmModem> dialog_;
};

void ExpectRefusal(Fixture& window, const QString& message, const QString& focus)
{
    MessageProbe box(Qt::Key_Return);
    window.Click("OK");
    QCOMPARE(box.text(), message);
    QCOMPARE(box.title(), kApplication);
    QCOMPARE(box.icon(), QMessageBox::Warning);
    QCOMPARE(box.buttons(), QStringList({"OK"}));
    QVERIFY(window.Dialog().isVisible());
    QCOMPARE(window.Focus(), focus);
}

std::string Catalogue(int lines)
{
    std::string bytes;
    for (int i = 0; i < lines; ++i)
        bytes += "Modello " + std::to_string(i) + "=S" + std::to_string(i) + "\r\n";
    return bytes;
}

} // namespace

class frmModem_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void captionsComeFromTheStringTable()
    {
        Fixture window;
        const std::map<const char*, const char*> captions{
            {"lblMarca", "&Marca e modello del modem:"},
            {"lblNumero", "&Numero da chiamare:"},
            {"lblTentImpor", "&Tentativi di importazione:"},
            {"lblStringa", "Stringa di &inizializzazione:"},
            {"lblStringaInit", "Stringa di &reset:"},
            {"optToni", "A t&oni"},
            {"optImpulsi", "A im&pulsi"},
            {"OK", "OK"},
            {"Annulla", "Annulla"},
        };

        for (const auto& [name, caption] : captions)
            QCOMPARE(SiteWindow::Part<QWidget>(window.Dialog(), name).property("text").toString(),
                     QString(caption));
        QCOMPARE(SiteWindow::Part<QGroupBox>(window.Dialog(), "Frame1").title(), "Collegamento remoto");
        QCOMPARE(SiteWindow::Part<QGroupBox>(window.Dialog(), "Frame2").title(), "Configurazione modem");
        QCOMPARE(SiteWindow::Part<QGroupBox>(window.Dialog(), "Frame3").title(), "Tipo di selezione");
    }

    static void firstStates()
    {
        Fixture window;

        QCOMPARE(window.State(), "Alfa|||A1|&F|on|off");
    }

    static void catalogueFiles_data()
    {
        QTest::addColumn<std::optional<std::string>>("bytes");
        QTest::addColumn<QStringList>("models");
        QTest::addColumn<QString>("firstString");
        using Bytes = std::optional<std::string>;
        QTest::newRow("missing") << Bytes() << QStringList{"Generico"} << kGenericString;
        QTest::newRow("empty") << Bytes("") << QStringList{"Generico"} << kGenericString;
        QTest::newRow("equals sign in the string")
            << Bytes("Modello X=ATZ=1\r\n") << QStringList{"Modello X"} << "ATZ=1";
        QTest::newRow("no equals sign") << Bytes("ATZ\r\nBeta=B\r\n") << QStringList{"", "Beta"} << "ATZ";
        QTest::newRow("only an equals sign") << Bytes("=\r\n") << QStringList{""} << "";
        QTest::newRow("blanks stay") << Bytes(" Alfa = A 1 \r\n") << QStringList{" Alfa "} << " A 1 ";
        QTest::newRow("line ends of LF")
            << Bytes("Alfa=A1\nBeta=B2\n") << QStringList{"Alfa", "Beta"} << "A1";
        QTest::newRow("last line without an end")
            << Bytes("Alfa=A1\r\nBeta=B2") << QStringList{"Alfa", "Beta"} << "A1";
        QTest::newRow("empty line") << Bytes("Alfa=A1\r\n\r\nBeta=B2\r\n") << QStringList{"Alfa", "", "Beta"}
                                    << "A1";
        QTest::newRow("letters of the code page")
            << Bytes("Citt\xE0=\x80\r\n") << QStringList{QString::fromUtf8("Città")}
            << QString::fromUtf8("€");
        QTest::newRow("ampersand in the name") << Bytes("A & B=x\r\n") << QStringList{"A & B"} << "x";
    }

    static void catalogueFiles()
    {
        QFETCH(std::optional<std::string>, bytes);
        Fixture window(bytes);
        QStringList models;
        for (int row = 0; row < window.Models().count(); ++row)
            models.append(window.Models().itemText(row));

        QTEST(models, "models");
        QCOMPARE(window.Models().currentIndex(), 0);
        QTEST(window.Shows("txtStringaInit"), "firstString");
    }

    static void fifteenModelsInFileOrder()
    {
        Fixture window(Catalogue(15));
        window.Open();
        QCOMPARE(window.Models().count(), 15);

        PickRow(window.Models(), 12);

        QCOMPARE(window.Shows("cboModem"), "Modello 12");
        QCOMPARE(window.Shows("txtStringaInit"), "S12");
    }

    static void tenThousandModels()
    {
        Fixture window(Catalogue(10000));
        window.Open();
        QCOMPARE(window.Models().count(), 10000);

        // Starts from the second last entry instead of pressing the key 10 000 times.
        window.Models().setCurrentIndex(9998);
        QTest::keyClick(&window.Models(), Qt::Key_Down);

        QCOMPARE(window.Shows("cboModem"), "Modello 9999");
        QCOMPARE(window.Shows("txtStringaInit"), "S9999");
    }

    // Each is a model without name and string.
    static void aMillionEmptyLinesTakeLittleMemory()
    {
        constexpr int lines = 1024 * 1024;
        SettingsFile place;
        {
            QFile file(QString::fromStdString((place.Directory() / "modem.dat").string()));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(lines, '\n'));
        }
        const std::size_t before = AllocatedBytes();

        const frmModem dialog(place.Directory());

        QVERIFY2(AllocatedBytes() < before + 16 * std::size_t{lines},
                 qPrintable(QString::number(AllocatedBytes() - before)));
        auto& models = *dialog.findChild<QComboBox*>("cboModem");
        QCOMPARE(models.count(), lines);
        QCOMPARE(models.itemText(lines - 1), QString());
        QCOMPARE(dialog.Settings().initString, "");
    }

    static void directoryInTheCataloguesPlace()
    {
        SettingsFile place;
        std::filesystem::create_directory(place.Directory() / "modem.dat");

        frmModem dialog(place.Directory());

        QCOMPARE(Shown(SiteWindow::Part<QComboBox>(dialog, "cboModem")), "Generico");
        QCOMPARE(Shown(SiteWindow::Part<QLineEdit>(dialog, "txtStringaInit")), kGenericString);
    }

    static void lineWithoutAnEqualsSignIsAllString()
    {
        Fixture window("Alfa=A1\r\nATX3S0\r\nBeta=B2\r\n");
        window.Open();

        PickRow(window.Models(), 1);
        QCOMPARE(window.Shows("cboModem"), "");
        QCOMPARE(window.Shows("txtStringaInit"), "ATX3S0");
        PickRow(window.Models(), 2);

        QCOMPARE(window.Shows("txtStringaInit"), "B2");
    }

    static void modelsAreNotSorted()
    {
        Fixture window("Zeta=Z\r\nAlfa=A\r\nMu=M\r\n");
        window.Open();

        PickRow(window.Models(), 1);

        QCOMPARE(window.Shows("cboModem"), "Alfa");
        QCOMPARE(window.Shows("txtStringaInit"), "A");
    }

    static void pickingAModelReplacesTheString()
    {
        Fixture window;
        window.Open();
        window.Field("txtStringaInit").setText("mia");

        PickRow(window.Models(), 2);

        QCOMPARE(window.Shows("txtStringaInit"), "G3");
    }

    static void pickingTheSameModelBringsItsStringBack()
    {
        Fixture window;
        window.Open();
        window.Field("txtStringaInit").setText("mia");

        PickRow(window.Models(), 0);

        QCOMPARE(window.Shows("txtStringaInit"), "A1");
    }

    static void attemptsTakeDigitsOnly()
    {
        Fixture window;
        window.Open();
        window.Field("txtTentImpor").setFocus();

        QTest::keyClicks(&window.Field("txtTentImpor"), "-1a2");
        QCOMPARE(window.Shows("txtTentImpor"), "12");
        window.Press(Qt::Key_Backspace);

        QCOMPARE(window.Shows("txtTentImpor"), "1");
    }

    static void attemptsCheck_data()
    {
        QTest::addColumn<QString>("entered");
        QTest::addColumn<int>("message");
        for (const QJsonValue vector : Vectors("attempts_check")) {
            const QString entered = vector["in"].toString();
            QTest::newRow(qPrintable("'" + entered + "'")) << entered << vector["message"].toInt();
        }
    }

    static void attemptsCheck()
    {
        QFETCH(QString, entered);
        QFETCH(int, message);
        const std::map<int, const char*> messages{
            {10503, "È necessario inserire il numero di tentativi di importazione"},
            {10504, "Il numero di tentativi di importazione non può essere minore di 1"},
        };
        Fixture window;
        window.Fill();
        window.Open();
        window.Field("txtTentImpor").setText(entered);

        if (message == 0) {
            window.Click("OK");
            QVERIFY(!window.Dialog().isVisible());
        } else {
            ExpectRefusal(window, messages.at(message), "txtTentImpor");
        }
        QCOMPARE(window.Shows("txtTentImpor"), entered);
    }

    static void missingTexts_data()
    {
        QTest::addColumn<QString>("message");
        QTest::newRow("txtTelefono") << "È necessario inserire il numero di telefono";
        QTest::newRow("txtTentImpor") << "È necessario inserire il numero di tentativi di importazione";
        QTest::newRow("txtStringaInit") << "È necessario inserire la stringa di inizializzazione del modem";
        QTest::newRow("txtStringaReset") << "È necessario inserire la stringa di reset del modem";
    }

    static void missingTexts()
    {
        QFETCH(QString, message);
        Fixture window;
        window.Fill();
        window.Open();
        window.Field(QTest::currentDataTag()).clear();

        ExpectRefusal(window, message, QTest::currentDataTag());
    }

    static void withEverythingEmptyOnlyTheNumberIsReported()
    {
        Fixture window;
        window.Open();
        for (const char* const name : {"txtTelefono", "txtTentImpor", "txtStringaInit", "txtStringaReset"})
            window.Field(name).clear();

        ExpectRefusal(window, "È necessario inserire il numero di telefono", "txtTelefono");
    }

    static void checksFollowTheirOrder()
    {
        Fixture window;
        window.Open();
        window.Field("txtStringaInit").clear();
        window.Field("txtStringaReset").clear();
        window.Field("txtTentImpor").setText("0");

        ExpectRefusal(window, "È necessario inserire il numero di telefono", "txtTelefono");
        window.Field("txtTelefono").setText("1");
        ExpectRefusal(window, "Il numero di tentativi di importazione non può essere minore di 1",
                      "txtTentImpor");
        window.Field("txtTentImpor").setText("1");
        ExpectRefusal(window, "È necessario inserire la stringa di inizializzazione del modem",
                      "txtStringaInit");
        window.Field("txtStringaInit").setText("X");
        ExpectRefusal(window, "È necessario inserire la stringa di reset del modem", "txtStringaReset");
        window.Field("txtStringaReset").setText("&F");
        window.Click("OK");

        QVERIFY(!window.Dialog().isVisible());
    }

    static void anyCharactersMakeANumberToCall()
    {
        Fixture window;
        window.Fill();
        window.Open();
        window.Field("txtTelefono").setFocus();
        window.Field("txtTelefono").selectAll();
        QTest::keyClicks(&window.Field("txtTelefono"), "0,w 06-abc");

        window.Click("OK");

        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.Shows("txtTelefono"), "0,w 06-abc");
    }

    static void okKeepsTheChange()
    {
        Fixture window;
        window.Open();
        PickRow(window.Models(), 1);
        window.Fill();
        window.Click("optImpulsi");

        window.Click("OK");

        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.State(), "Beta|0123|3|B2|&F|off|on");
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
        PickRow(window.Models(), 1);
        window.Fill();
        window.Field("txtStringaReset").setText("Z");
        window.Click("optImpulsi");

        if (way == "Annulla")
            window.Click("Annulla");
        else if (way == "Escape")
            window.Press(Qt::Key_Escape);
        else
            window.Dialog().close();

        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.State(), "Alfa|||A1|&F|on|off");
    }

    static void undoBringsTheHandMadeStringBack()
    {
        Fixture window;
        window.Open();
        window.Field("txtStringaInit").setText("mia");
        window.Fill();
        window.Click("OK");
        window.Open();
        PickRow(window.Models(), 1);
        QCOMPARE(window.Shows("txtStringaInit"), "B2");

        window.Click("Annulla");

        QCOMPARE(window.State(), "Alfa|0123|3|mia|&F|on|off");
    }

    static void undoIsThatOfTheLastOpening()
    {
        Fixture window;
        window.Open();
        window.Fill();
        PickRow(window.Models(), 1);
        window.Click("OK");
        window.Open();
        PickRow(window.Models(), 2);
        window.Field("txtTelefono").setText("9");

        window.Click("Annulla");

        QCOMPARE(window.State(), "Beta|0123|3|B2|&F|on|off");
    }

    static void undoBringsPulseDiallingBack()
    {
        Fixture window;
        window.Click("optImpulsi");
        window.Open();
        window.Click("optToni");

        window.Click("Annulla");

        QCOMPARE(window.Shows("optImpulsi"), "on");
        QCOMPARE(window.Shows("optToni"), "off");
    }

    static void enterPressesOkAndOnAnnullaAnnulla()
    {
        Fixture window;
        window.Fill();
        window.Open();
        window.Field("txtTelefono").setText("7");
        window.Field("txtTelefono").setFocus();
        window.Press(Qt::Key_Return);
        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.Shows("txtTelefono"), "7");
        window.Open();
        window.Field("txtTelefono").setText("8");
        SiteWindow::Part<QWidget>(window.Dialog(), "Annulla").setFocus();

        window.Press(Qt::Key_Return);

        QVERIFY(!window.Dialog().isVisible());
        QCOMPARE(window.Shows("txtTelefono"), "7");
    }

    static void everyOpeningFocusesTheModels()
    {
        Fixture window;
        window.Fill();
        for (int opening = 0; opening < 2; ++opening) {
            window.Open();
            QCOMPARE(window.Focus(), "cboModem");
            window.Field("txtStringaReset").setFocus();
            window.Click("OK");
        }
    }

    static void tabFollowsTheReadingOrder()
    {
        Fixture window;
        window.Open();

        // Tab enters the group of option buttons at the checked one.
        QCOMPARE(TabRound(window.Dialog()),
                 QStringList({"cboModem", "txtTelefono", "txtTentImpor", "txtStringaInit", "txtStringaReset",
                              "optToni", "OK", "Annulla"}));
    }

    static void everyMnemonicLeadsToAField()
    {
        Fixture window;

        QCOMPARE(LabelsWithoutBuddy(window.Dialog()), QStringList());
    }

    static void labelsNameTheirFields()
    {
        Fixture window;

        QCOMPARE(AccessibleName(window.Models()), "Marca e modello del modem:");
        QCOMPARE(AccessibleName(window.Field("txtTelefono")), "Numero da chiamare:");
        QCOMPARE(AccessibleName(window.Field("txtTentImpor")), "Tentativi di importazione:");
        QCOMPARE(AccessibleName(window.Field("txtStringaInit")), "Stringa di inizializzazione:");
        QCOMPARE(AccessibleName(window.Field("txtStringaReset")), "Stringa di reset:");
    }

    static void wheelNeedsTheFocus()
    {
        Fixture window;
        window.Open();
        window.Field("txtTelefono").setFocus();

        QVERIFY(!TurnWheelOver(window.Models()));
        QCOMPARE(window.Shows("cboModem"), "Alfa");
        window.Models().setFocus();
        QVERIFY(TurnWheelOver(window.Models()));

        QCOMPARE(window.Shows("cboModem"), "Beta");
        QCOMPARE(window.Shows("txtStringaInit"), "B2");
    }

    static void editorRecordsTheUndoBeforeEachShowing()
    {
        EditorWindow window(SettingsWith({}), kThreeModels);
        window.Add();
        window.Pick("cboTipoConn", 3);
        window.Click("optRemoto");
        const auto enterAndPress = [&window](const QString& number, const char* button) {
            const ModalVisit<frmModem> visit([&](frmModem& dialog) {
                QVERIFY(dialog.parentWidget() == &window.Editor());
                SiteWindow::Part<QLineEdit>(dialog, "txtTelefono").setText(number);
                SiteWindow::Part<QLineEdit>(dialog, "txtTentImpor").setText("1");
                QTest::mouseClick(&SiteWindow::Part<QPushButton>(dialog, button), Qt::LeftButton);
            });
            window.Click("btnModem");
        };

        enterAndPress("1", "Annulla");
        QCOMPARE(window.Shows("txtTelefono"), "");
        enterAndPress("2", "OK");
        QCOMPARE(window.Shows("txtTelefono"), "2");
        enterAndPress("3", "Annulla");

        QCOMPARE(window.Shows("txtTelefono"), "2");
        QVERIFY(window.Editor().isVisible());
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmModem_test> registered;
#include "frmModem_test.moc"
