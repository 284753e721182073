// The three option dialogs, opened from the editor.
#include "core/site/code_tables.h"
#include "tests/support/cases.h"
#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/heap.h"
#include "tests/support/message_probe.h"
#include "tests/support/registered_test.h"

#include <QClipboard>
#include <QPushButton>
#include <QTest>

#include <functional>

namespace corvrec
{

namespace
{

constexpr auto kModem = "btnModem";
constexpr auto kTransformations = "cmdTAvanzate";
constexpr auto kAlerts = "cmdFileAvanzate";

constexpr auto kThreeModels = "Zeta=Z1\r\nAlfa=A2\r\nMu=M3\r\n";
constexpr auto kGenericString = "X3S0=0&M5&K0&C1&D2&R1";

// What all dialogs do, and the values with which to see it. start: the values at the program's start. first
// and second: two other sets of values that OK accepts.
struct Dialog {
    const char* name;
    const char* button;
    QString title;
    QStringList tabOrder;
    QStringList start;
    QStringList first;
    QStringList second;
};

// Tab enters the group of option buttons at the checked one.
const std::array<Dialog, 3> kDialogs{{
    {"modem",
     kModem,
     "Impostazioni del modem",
     {"cboModem", "txtTelefono", "txtTentImpor", "txtStringaInit", "txtStringaReset", "optImpulsi", "OK",
      "Annulla"},
     {"cboModem: Zeta", "txtTelefono: ", "txtTentImpor: ", "txtStringaInit: Z1", "txtStringaReset: &F",
      "optToni: on", "optImpulsi: off"},
     {"cboModem: Alfa", "txtTelefono: 0,w 06-abc", "txtTentImpor: 3", "txtStringaInit: mia",
      "txtStringaReset: Z", "optToni: off", "optImpulsi: on"},
     {"cboModem: Mu", "txtTelefono: 9", "txtTentImpor: 4", "txtStringaInit: M3", "txtStringaReset: Y",
      "optToni: on", "optImpulsi: off"}},
    {"transformations",
     kTransformations,
     "Avanzate",
     {"chkData", "chkOra", "chkNull", "chkCrLf", "OK", "Annulla"},
     {"chkData: off", "chkOra: off", "chkNull: off", "chkCrLf: off"},
     {"chkData: on", "chkOra: off", "chkNull: on", "chkCrLf: off"},
     {"chkData: off", "chkOra: on", "chkNull: off", "chkCrLf: on"}},
    {"alerts",
     kAlerts,
     "Avanzate",
     {"chkFile", "txtFile", "chkSpazio", "txtSpazio", "OK", "Annulla"},
     {"chkFile: off", "txtFile: 600", "chkSpazio: off", "txtSpazio: 20"},
     {"chkFile: on", "txtFile: 45", "chkSpazio: on", "txtSpazio: 35"},
     {"chkFile: off", "txtFile: ", "chkSpazio: off", "txtSpazio: 50"}},
}};

QString Focus(const QWidget& dialog)
{
    return dialog.focusWidget()->objectName();
}

void Press(QWidget& dialog, Qt::Key key)
{
    QTest::keyClick(dialog.focusWidget(), key);
}

void Click(QWidget& dialog, const char* button)
{
    QTest::mouseClick(&SiteWindow::Part<QAbstractButton>(dialog, button), Qt::LeftButton);
}

QLineEdit& Field(QWidget& dialog, const char* name)
{
    return SiteWindow::Part<QLineEdit>(dialog, name);
}

void Leave(QDialog& dialog, const QString& way)
{
    if (way == "Annulla")
        Click(dialog, "Annulla");
    else if (way == "Escape")
        Press(dialog, Qt::Key_Escape);
    else
        dialog.close();
}

// The editor with a new site that has all options.
class OptionsEditor : public EditorWindow
{
public:
    explicit OptionsEditor(std::optional<std::string_view> catalogue = kThreeModels)
        : EditorWindow(SettingsWith({}), catalogue)
    {
        Add();
        Pick("cboTipoConn", DeviceRowOf("STX30"));
        Click("optRemoto");
    }
};

// A press of OK with these values: refused with the message at this control, or accepted.
struct Check {
    const char* name;
    const char* button;
    QStringList values;
    QString message;
    QString focus;
};

const QString kNumberMissing = "È necessario inserire il numero di telefono";
const QString kAttemptsMissing = "È necessario inserire il numero di tentativi di importazione";
const QString kAttemptsBelowOne = "Il numero di tentativi di importazione non può essere minore di 1";
const QString kInitMissing = "È necessario inserire la stringa di inizializzazione del modem";
const QString kResetMissing = "È necessario inserire la stringa di reset del modem";
const QString kSecondsMissing = "Manca il timeout di file non disponibile.";
const QString kThresholdMissing = "Manca il parametro di soglia per mancanza spazio su hard disk.";

QStringList ModemValues(const char* number, const char* attempts, const char* init, const char* reset)
{
    return {QString("txtTelefono: ") + number, QString("txtTentImpor: ") + attempts,
            QString("txtStringaInit: ") + init, QString("txtStringaReset: ") + reset};
}

QStringList AlertValues(const char* file, const char* seconds, const char* disk, const char* megabytes)
{
    return {QString("chkFile: ") + file, QString("txtFile: ") + seconds, QString("chkSpazio: ") + disk,
            QString("txtSpazio: ") + megabytes};
}

const std::array<Check, 14> kChecks{{
    {"modem, complete", kModem, ModemValues("0,w 06-abc", "1", "X", "&F"), "", ""},
    {"modem, all wrong", kModem, ModemValues("", "", "", ""), kNumberMissing, "txtTelefono"},
    {"modem, all wrong but the number", kModem, ModemValues("1", "", "", ""), kAttemptsMissing,
     "txtTentImpor"},
    {"modem, no attempt", kModem, ModemValues("1", "0", "", ""), kAttemptsBelowOne, "txtTentImpor"},
    {"modem, no strings", kModem, ModemValues("1", "1", "", ""), kInitMissing, "txtStringaInit"},
    {"modem, no reset string", kModem, ModemValues("1", "1", "X", ""), kResetMissing, "txtStringaReset"},
    {"alerts, off and empty", kAlerts, AlertValues("off", "", "off", ""), "", ""},
    {"alerts, threshold empty", kAlerts, AlertValues("on", "600", "on", ""), "", ""},
    {"alerts, file at zero", kAlerts, AlertValues("on", "0", "off", ""), "", ""},
    {"alerts, disk at zero", kAlerts, AlertValues("off", "", "on", "0"), "", ""},
    {"alerts, file empty", kAlerts, AlertValues("on", "", "off", "20"), kSecondsMissing, "txtFile"},
    {"alerts, both empty", kAlerts, AlertValues("on", "", "on", ""), kSecondsMissing, "txtFile"},
    {"alerts, file empty, disk filled", kAlerts, AlertValues("on", "", "on", "20"), kSecondsMissing,
     "txtFile"},
    {"alerts, disk empty", kAlerts, AlertValues("off", "600", "on", ""), kThresholdMissing, "txtSpazio"},
}};

// Presses OK with these values, and expects that the dialog keeps them, open or closed.
void ExpectCheck(const Check& check)
{
    OptionsEditor window;
    window.Visit<QDialog>(check.button, [&check](QDialog& dialog) {
        Set(dialog, check.values);
        if (check.message.isEmpty()) {
            Click(dialog, "OK");
            QVERIFY(!dialog.isVisible());
        } else {
            MessageProbe box(Qt::Key_Return);
            Click(dialog, "OK");
            QCOMPARE(box.text(), check.message);
            QCOMPARE(box.title(), "Configurazione Corvane Recorder");
            QCOMPARE(box.icon(), QMessageBox::Warning);
            QCOMPARE(box.buttons(), QStringList({"OK"}));
            QVERIFY(dialog.isVisible());
            QCOMPARE(Focus(dialog), check.focus);
        }
        ExpectShown(dialog, check.values);
    });
}

struct Catalogue {
    const char* name;
    std::optional<std::string_view> bytes;
    QStringList models;
    QString firstString;
};

const std::array<Catalogue, 5> kCatalogues{{
    {"missing", std::nullopt, {"Generico"}, kGenericString},
    {"empty", "", {"Generico"}, kGenericString},
    {"not sorted", kThreeModels, {"Zeta", "Alfa", "Mu"}, "Z1"},
    {"string without a name", "ATZ=1\r\nX\r\nBeta=B=2\r\n", {"ATZ", "", "Beta"}, "1"},
    {"special characters", "Citt\xE0 & B= \x80 \r\n", {"Città & B"}, " € "},
}};

} // namespace

class option_dialogs_test : public QObject
{
    Q_OBJECT

private slots:
    static void tabFollowsTheReadingOrder_data() { AddCases(kDialogs); }
    static void tabFollowsTheReadingOrder()
    {
        QFETCH(const Dialog, given);
        OptionsEditor window;

        window.Visit<QDialog>(given.button, [&given](QDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), given.title);
            Set(dialog, given.first);
            QCOMPARE(TabRound(dialog), given.tabOrder);
            QCOMPARE(LabelsWithoutBuddy(dialog), QStringList());
        });
    }

    static void okKeepsTheChangesAndLeavingRestores_data() { AddCases(kDialogs); }
    static void okKeepsTheChangesAndLeavingRestores()
    {
        QFETCH(const Dialog, given);
        for (const char* const way : {"Annulla", "Escape", "close box"}) {
            OptionsEditor window;
            window.ExpectShown(given.start);
            const auto open = [&](const QStringList& change, const std::function<void(QDialog&)>& leave) {
                window.Visit<QDialog>(given.button, [&](QDialog& dialog) {
                    QCOMPARE(Focus(dialog), given.tabOrder.front());
                    Set(dialog, change);
                    SiteWindow::Part<QWidget>(dialog, "OK").setFocus();
                    leave(dialog);
                    QVERIFY(!dialog.isVisible());
                });
            };

            open(given.first, [way](QDialog& dialog) { Leave(dialog, way); });
            window.ExpectShown(given.start);
            open(given.first, [](QDialog& dialog) { Click(dialog, "OK"); });
            window.ExpectShown(given.first);
            open(given.second, [way](QDialog& dialog) { Leave(dialog, way); });
            window.ExpectShown(given.first);
            QVERIFY(window.Editor().isVisible());
        }
    }

    static void enterPressesOkOrTheFocusedAnnulla_data() { AddCases(kDialogs); }
    static void enterPressesOkOrTheFocusedAnnulla()
    {
        QFETCH(const Dialog, given);
        OptionsEditor window;

        window.Visit<QDialog>(given.button, [&given](QDialog& dialog) {
            Set(dialog, given.first);
            SiteWindow::Part<QWidget>(dialog, qPrintable(given.tabOrder.at(1))).setFocus();
            Press(dialog, Qt::Key_Return);
            QVERIFY(!dialog.isVisible());
        });
        window.ExpectShown(given.first);
        window.Visit<QDialog>(given.button, [&given](QDialog& dialog) {
            Set(dialog, given.second);
            SiteWindow::Part<QWidget>(dialog, "Annulla").setFocus();
            Press(dialog, Qt::Key_Return);
            QVERIFY(!dialog.isVisible());
        });

        window.ExpectShown(given.first);
    }

    static void okIsRefusedAtTheFirstValueThatIsMissing_data() { AddCases(kChecks); }
    static void okIsRefusedAtTheFirstValueThatIsMissing()
    {
        QFETCH(const Check, given);

        ExpectCheck(given);
    }

    static void attempts_data() { AddVectors("attempts_check"); }
    static void attempts()
    {
        QFETCH(const QJsonObject, given);
        const std::map<int, QString> messages{{0, ""}, {10503, kAttemptsMissing}, {10504, kAttemptsBelowOne}};
        const QByteArray typed = given["in"].toString().toUtf8();

        ExpectCheck({"", kModem, ModemValues("1", typed.constData(), "X", "&F"),
                     messages.at(given["message"].toInt()), "txtTentImpor"});
    }

    static void numbersTakeDigitsOnly()
    {
        OptionsEditor window;
        const auto typeInto = [](QDialog& dialog, const char* name) {
            QLineEdit& field = Field(dialog, name);
            field.setFocus();
            field.clear();
            QTest::keyClicks(&field, "-1a2 .,");
            QCOMPARE(field.text(), "12");
        };

        window.Visit<QDialog>(kModem, [&](QDialog& dialog) { typeInto(dialog, "txtTentImpor"); });
        window.Visit<QDialog>(kAlerts, [&](QDialog& dialog) {
            Set(dialog, {"chkFile: on", "chkSpazio: on"});
            typeInto(dialog, "txtFile");
            typeInto(dialog, "txtSpazio");
        });
    }

    static void alertEnablesItsFieldAndLabel()
    {
        OptionsEditor window;
        const auto enabled = [&window] {
            QStringList names;
            for (const char* const name : {"txtFile", "lblFile", "txtSpazio", "lblSpazio"}) {
                if (IsEnabled(window.At<QWidget>(name)))
                    names.append(name);
            }
            return names;
        };
        QCOMPARE(enabled(), QStringList());

        window.Visit<QDialog>(kAlerts, [&enabled](QDialog& dialog) {
            Click(dialog, "chkFile");
            QCOMPARE(enabled(), QStringList({"txtFile", "lblFile"}));
            Field(dialog, "txtFile").setText("45");
            Click(dialog, "chkSpazio");
            QCOMPARE(enabled(), QStringList({"txtFile", "lblFile", "txtSpazio", "lblSpazio"}));
            Click(dialog, "chkFile");
            QCOMPARE(enabled(), QStringList({"txtSpazio", "lblSpazio"}));
            ExpectShown(dialog, {"txtFile: 45"});
            Click(dialog, "OK");
        });
        window.Visit<QDialog>(kAlerts, [](QDialog& dialog) {
            Click(dialog, "chkFile");
            Click(dialog, "chkSpazio");
        });

        QCOMPARE(enabled(), QStringList({"txtSpazio", "lblSpazio"}));
    }

    static void mnemonicsTickTheBoxesAtOnce()
    {
        OptionsEditor window;

        window.Visit<QDialog>(kTransformations, [](QDialog& dialog) {
            for (const Qt::Key key : {Qt::Key_D, Qt::Key_O, Qt::Key_E, Qt::Key_C})
                QTest::keyClick(dialog.focusWidget(), key, Qt::AltModifier);
            ExpectShown(dialog, {"chkData: on", "chkOra: on", "chkNull: on", "chkCrLf: on"});
        });
    }

    static void helpFollowsTheFocus()
    {
        OptionsEditor window;
        const QString start = "Selezionando quest'opzione ";
        const QString added = start + "verrà aggiunta in testa ad ogni riga inviata dal centralino ";
        const QString date =
            added + "la data del momento di acquisizione. Il formato del dato aggiunto è aaaammgg";
        const QString time =
            added + "l'ora del momento di acquisizione. Il formato del dato aggiunto è hhmmss";
        const QString nulls = start +
                              "Corvane Recorder eliminerà dai dati ricevuti eventuali caratteri di Null "
                              "generati dai disturbi sulla linea.";
        const QString lineEnds = start +
                                 "Corvane Recorder controllerà che ogni riga ricevuta termini con la "
                                 "sequenza \"Carriage Return - Line Feed.\", correggendo quei casi che "
                                 "non soddisfano questa condizione";
        const auto help = [&window] { return window.Shows("lblHelpTrasformazioni"); };
        QCOMPARE(help(), "");

        window.Visit<QDialog>(kTransformations, [&](QDialog& dialog) {
            for (const QString& each : {date, time, nulls, lineEnds}) {
                QCOMPARE(help(), each);
                Press(dialog, Qt::Key_Tab);
            }
            QCOMPARE(Focus(dialog), "OK");
            QCOMPARE(help(), lineEnds);
            Click(dialog, "chkOra");
            QCOMPARE(help(), time);
        });
        window.Visit<QDialog>(kTransformations, [&](QDialog&) { QCOMPARE(help(), date); });
    }

    static void catalogue_data() { AddCases(kCatalogues); }
    static void catalogue()
    {
        QFETCH(const Catalogue, given);
        OptionsEditor window(given.bytes);
        const QComboBox& list = window.Choice("cboModem");
        QStringList models;
        for (int row = 0; row < list.count(); ++row)
            models.append(list.itemText(row));

        QCOMPARE(models, given.models);
        window.ExpectShown({"cboModem: " + models.front(), "txtStringaInit: " + given.firstString});
    }

    static void pickingAModelReplacesTheString()
    {
        OptionsEditor window;

        window.Visit<QDialog>(kModem, [](QDialog& dialog) {
            auto& models = SiteWindow::Part<QComboBox>(dialog, "cboModem");
            for (const auto& [row, string] : {std::pair(2, "M3"), {2, "M3"}, {0, "Z1"}}) {
                Field(dialog, "txtStringaInit").setText("mia");
                PickRow(models, row);
                ExpectShown(dialog, {QString("txtStringaInit: ") + string});
            }
        });
    }

    static void wheelNeedsTheFocus()
    {
        OptionsEditor window;

        window.Visit<QDialog>(kModem, [](QDialog& dialog) {
            auto& models = SiteWindow::Part<QComboBox>(dialog, "cboModem");
            Field(dialog, "txtTelefono").setFocus();
            QVERIFY(!TurnWheelOver(models));
            ExpectShown(dialog, {"cboModem: Zeta"});
            models.setFocus();
            QVERIFY(TurnWheelOver(models));
            ExpectShown(dialog, {"cboModem: Alfa", "txtStringaInit: A2"});
        });
    }

    // All but the last are models without name and string.
    static void aMillionLinesTakeLittleMemory()
    {
        constexpr int lines = 1024 * 1024;
        const std::string catalogue = std::string(lines - 16, '\n') + "Ultimo=U\n";
        const std::size_t before = AllocatedBytes();

        OptionsEditor window(catalogue);

        QVERIFY2(AllocatedBytes() < before + 16 * std::size_t{lines},
                 qPrintable(QString::number(AllocatedBytes() - before)));
        QComboBox& models = window.Choice("cboModem");
        QCOMPARE(models.count(), lines - 15);
        window.ExpectShown({"cboModem: ", "txtStringaInit: "});
        models.setCurrentIndex(lines - 17);
        QTest::keyClick(&models, Qt::Key_Down);
        window.ExpectShown({"cboModem: Ultimo", "txtStringaInit: U"});
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::option_dialogs_test> registered;
#include "option_dialogs_test.moc"
