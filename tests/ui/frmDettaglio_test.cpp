// The editor's lists, a new site's values, and the rules of the connection page.
#include "tests/support/cases.h"
#include "tests/support/editor_window.h"
#include "tests/support/registered_test.h"
#include "ui/widgets/check_list.h"
#include "ui/widgets/mask_edit.h"
#include "ui/widgets/paths.h"

#include <QTabWidget>
#include <QTest>

namespace corvrec
{

namespace
{

const QStringList kLowSpeeds{"19200", "9600", "4800", "2400", "1200", "600", "300"};
const QStringList kAllSpeeds = QStringList{"115200", "57600", "38400"} + kLowSpeeds;

// Those of the controls switched by the rules of the connection page that are enabled.
QStringList EnabledControls(EditorWindow& window)
{
    QStringList enabled;
    for (const char* const name :
         {"fraHandS", "txtTipoHands", "cboHandS", "lblXon", "lblXoff", "chkXon", "chkXoff", "txtXon",
          "txtXoff", "cmdSX", "fraColleg", "optLocale", "optRemoto", "btnModem"}) {
        if (IsEnabled(window.At<QWidget>(name)))
            enabled.append(name);
    }
    return enabled;
}

const QStringList kHandshakeOnly{"fraHandS", "txtTipoHands", "cboHandS"};
const QStringList kWithCharacters =
    kHandshakeOnly + QStringList{"lblXon", "lblXoff", "chkXon", "chkXoff", "txtXon", "txtXoff"};
const QStringList kStatusOnly{"cmdSX"};
const QStringList kBothWays{"cmdSX", "fraColleg", "optLocale", "optRemoto"};
const QStringList kByModem = kBothWays + QStringList{"btnModem"};

// What a device enables for a local and for a remote site, and whether the remote one stays so.
struct Device {
    const char* name;
    QStringList local;
    QStringList remote;
    bool staysRemote;
    QStringList speeds;
};

const std::array<Device, 6> kDevicesInOrder{{
    {"Pabx", kHandshakeOnly, kHandshakeOnly, false, kLowSpeeds},
    {"Buffer", kHandshakeOnly, kHandshakeOnly, false, kLowSpeeds},
    {"Stratobox 1.1", kStatusOnly, kStatusOnly, true, kLowSpeeds},
    {"Stratobox 2.0", kBothWays, kByModem, true, kLowSpeeds},
    {"Stratobox 3.0", kBothWays, kByModem, true, kLowSpeeds},
    {"Stratobox Buffer", kBothWays, kByModem, true, kAllSpeeds},
}};

// A user's choices, one after the other, and what is shown in the end.
struct Choices {
    const char* name;
    const char* choices;
    QStringList enabled;
    const char* shown;
};

const std::array<Choices, 9> kChoices{{
    {"local again", "cboTipoConn: Stratobox Buffer|optRemoto|optLocale", kBothWays, "optLocale: on"},
    {"remote after the oldest Stratobox",
     "cboTipoConn: Stratobox 3.0|optRemoto|cboTipoConn: Stratobox 1.1|cboTipoConn: Stratobox 3.0", kByModem,
     "optRemoto: on"},
    {"software handshake", "cboHandS: Software", kWithCharacters, ""},
    {"hardware handshake", "cboHandS: Software|cboHandS: Hardware", kHandshakeOnly, ""},
    {"no handshake", "cboHandS: Software|cboHandS: Nessuno", kHandshakeOnly, ""},
    {"software handshake of a buffer device", "cboHandS: Software|cboTipoConn: Stratobox 3.0|optRemoto",
     kByModem, "cboHandS: Software"},
    {"software handshake after a buffer device",
     "cboHandS: Software|cboTipoConn: Stratobox 1.1|cboTipoConn: Buffer", kWithCharacters, ""},
    {"high speed is lost with its device",
     "cboTipoConn: Stratobox Buffer|cboVelocita: 115200|cboTipoConn: Pabx|cboTipoConn: Stratobox Buffer",
     kBothWays, "cboVelocita: "},
    {"low speed stays", "cboVelocita: 2400|cboTipoConn: Stratobox Buffer|cboTipoConn: Stratobox 2.0",
     kBothWays, "cboVelocita: 2400"},
}};

const QString kDevice = "cboTipoConn: ";

QStringList Entries(const QComboBox& list)
{
    QStringList entries;
    for (int row = 0; row < list.count(); ++row)
        entries.append(list.itemText(row));
    return entries;
}

constexpr std::array kFileNames{"txtDati", "txtDati2", "txtStorico", "txtLog"};

} // namespace

class frmDettaglio_test : public QObject
{
    Q_OBJECT

private slots:
    static void titleAndTabsComeFromTheStringTable()
    {
        EditorWindow window(SettingsWith({}));
        const auto& tabs = window.At<QTabWidget>("tabSetup");

        QCOMPARE(window.Editor().windowTitle(), "Corvane Recorder - Configurazione");
        QCOMPARE(tabs.count(), 3);
        QCOMPARE(tabs.tabText(0), "Connessione");
        QCOMPARE(tabs.tabText(1), "Acquisizione");
        QCOMPARE(tabs.tabText(2), "File");
    }

    static void listsHoldTheirTablesInRowOrder()
    {
        EditorWindow window(SettingsWith({}));
        auto& days = window.At<CheckList>("lstGiorni");
        QStringList shownDays;
        for (int row = 0; row < days.count(); ++row)
            shownDays.append(days.item(row)->text());
        QStringList devices;
        for (const Device& each : kDevicesInOrder)
            devices.append(each.name);

        QCOMPARE(Entries(window.Choice("cboTipoConn")), devices);
        QCOMPARE(Entries(window.Choice("cboHandS")), QStringList({"Nessuno", "Software", "Hardware"}));
        QCOMPARE(Entries(window.Choice("cboParita")), QStringList({"Nessuna", "Pari", "Dispari"}));
        QCOMPARE(Entries(window.Choice("cboBitDati")), QStringList({"7", "8"}));
        QCOMPARE(Entries(window.Choice("cboBitStop")), QStringList({"1", "2"}));
        QCOMPARE(Entries(window.Choice("cboRicorrenza")),
                 QStringList({"Continua", "Oraria", "Giornaliera", "Settimanale"}));
        QCOMPARE(Entries(window.Choice("cboVelocita")), kLowSpeeds);
        QCOMPARE(shownDays,
                 QStringList({"Lunedì", "Martedì", "Mercoledì", "Giovedì", "Venerdì", "Sabato", "Domenica"}));
    }

    static void newSiteStartsWithTheDefaults()
    {
        EditorWindow window(SettingsWith({}));
        const QString folder = ToText(window.Settings().Directory() / "");

        window.Add();

        window.ExpectShown({"txtNomeSito: ", "txtCodice: ", "chkAbilitato: off", "cboTipoConn: Pabx",
                            "optLocale: on", "optRemoto: off", "cboHandS: Hardware", "chkXon: on",
                            "txtXon: Q", "chkXoff: on", "txtXoff: S", "cboVelocita: 9600", "cboBitDati: 8",
                            "cboParita: Nessuna", "cboBitStop: 1"});
        window.ExpectShown({"cboRicorrenza: Continua", "mskValore: 1", "mskOrario: 18:03",
                            "lstGiorni: ", "chkData: off", "chkOra: off", "chkNull: off", "chkCrLf: off"});
        window.ExpectShown({"txtDati: " + ProperCasePath(folder + "Corvrec.txt"),
                            "txtDati2: " + ProperCasePath(folder + "CRemoto.txt"),
                            "txtStorico: " + ProperCasePath(folder + "Storico.txt"), "txtLog: Corvrec.log",
                            "chkFile: off", "txtFile: 600", "chkSpazio: off", "txtSpazio: 20"});
        window.ExpectShown({"cboModem: Generico", "txtTelefono: ", "txtTentImpor: ",
                            "txtStringaInit: X3S0=0&M5&K0&C1&D2&R1", "txtStringaReset: &F", "optToni: on"});
        QCOMPARE(EnabledControls(window), kHandshakeOnly);
        for (const char* const name : kFileNames)
            QCOMPARE(window.Field(name).selectedText(), window.Field(name).text());
    }

    // The next site keeps them, unless it says otherwise.
    static void defaultsLeaveControlsThatTheyDoNotName()
    {
        EditorWindow window(SettingsWith({}), "Alfa=A1\r\nBeta=B2\r\n");
        const QStringList changed{
            "chkXon: off",        "txtXon: W",      "chkXoff: off",   "txtXoff: V",      "chkData: on",
            "chkOra: on",         "chkNull: on",    "chkCrLf: on",    "chkFile: on",     "txtFile: 5",
            "chkSpazio: on",      "txtSpazio: 6",   "lstGiorni: 3",   "cboModem: Beta",  "txtStringaInit: 7",
            "txtStringaReset: 8", "optImpulsi: on", "txtTelefono: 9", "txtTentImpor: 10"};
        window.Set(changed);

        window.Add();

        window.ExpectShown(changed);
    }

    static void defaultsReplaceAnyStartTimeByTheTimeOfDay()
    {
        EditorWindow window(SettingsWith({}));
        for (const char* const before : {"__:__", "_1:_2", "23:59"}) {
            window.At<MaskEdit>("mskOrario").setText(before);
            window.Time().SetNow({.year = 2026, .month = 3, .day = 3, .hour = 7, .minute = 5, .second = 59});

            window.Editor().InitFormDettagli();

            QCOMPARE(window.Shows("mskOrario"), "07:05");
        }
    }

    static void deviceRule_data() { AddCases(kDevicesInOrder); }
    static void deviceRule()
    {
        QFETCH(const Device, given);
        for (const bool remote : {false, true}) {
            EditorWindow window(SettingsWith({}));
            window.Add();
            const bool isFirst = QString(given.name) == "Stratobox 2.0";
            window.Choose({kDevice + (isFirst ? "Stratobox 3.0" : "Stratobox 2.0"),
                           remote ? "optRemoto" : "optLocale"});

            window.Choose({kDevice + given.name});

            QCOMPARE(EnabledControls(window), remote ? given.remote : given.local);
            QCOMPARE(Entries(window.Choice("cboVelocita")), given.speeds);
            const bool isRemote = remote && given.staysRemote;
            window.ExpectShown({"cboVelocita: 9600", QString("optRemoto: ") + (isRemote ? "on" : "off"),
                                QString("optLocale: ") + (isRemote ? "off" : "on")});
        }
    }

    static void choices_data() { AddCases(kChoices); }
    static void choices()
    {
        QFETCH(const Choices, given);
        EditorWindow window(SettingsWith({}));
        window.Add();

        window.Choose(Parts(given.choices));

        QCOMPARE(EnabledControls(window), given.enabled);
        window.ExpectShown(Parts(given.shown));
    }

    // The oldest Stratobox keeps the list that it finds.
    static void speedList_data() { AddVectors("speed_list"); }
    static void speedList()
    {
        QFETCH(const QJsonObject, given);
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Choose({kDevice + "Stratobox Buffer"});
        window.Set({"cboVelocita: " + given["remembered"].toString()});
        window.Choose({kDevice + "Stratobox 1.1"});
        window.ExpectShown({"cboVelocita: " + given["remembered"].toString()});
        QCOMPARE(Entries(window.Choice("cboVelocita")), kAllSpeeds);

        window.Choose({kDevice + (given["high"].toBool() ? "Stratobox Buffer" : "Stratobox 3.0")});

        QCOMPARE(Entries(window.Choice("cboVelocita")), given["items"].toVariant().toStringList());
        QCOMPARE(window.Choice("cboVelocita").currentIndex(), given["selected"].toInt());
    }

    static void unknownDeviceRowChangesNothing()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Choose({kDevice + "Stratobox Buffer", "optRemoto"});

        window.Choice("cboTipoConn").setCurrentIndex(-1);

        QCOMPARE(EnabledControls(window), kByModem);
        QCOMPARE(Entries(window.Choice("cboVelocita")), kAllSpeeds);
    }

    static void rulesRunOnLoading()
    {
        EditorWindow window("[Siti]\r\nA=a\r\nB=b\r\n[General]\r\nCom=COM2\r\n[A]\r\nDispositivo=COM\r\n"
                            "MODEM=0\r\nHandshake=XON\r\n[B]\r\nDispositivo=COM\r\nMODEM=1\r\n");
        window.Open(0);
        QCOMPARE(EnabledControls(window), kWithCharacters);
        window.Open(1); // a remote site with a device that has no modem
        QCOMPARE(EnabledControls(window), QStringList({"btnModem"}));

        window.Editor().InitFormDettagli();

        window.ExpectShown({"optLocale: on"});
        QCOMPARE(EnabledControls(window), kHandshakeOnly);
    }

    static void identityOfAnExistingSiteIsReadable()
    {
        EditorWindow window(SettingsWith({"A"}));

        window.Open();

        const QColor text = QApplication::palette().color(QPalette::Active, QPalette::Text);
        for (const char* const name : {"txtNomeSito", "txtCodice"})
            QCOMPARE(window.Field(name).palette().color(QPalette::Disabled, QPalette::Text), text);
    }

    static void newSiteMarksNoFieldWithoutTheFocus()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();

        window.Editor().SelectTab(2);

        const QColor mark = QApplication::palette().color(QPalette::Active, QPalette::Highlight);
        for (const char* const name : kFileNames)
            QVERIFY2(window.Focus() != name && !HasColour(window.Field(name), mark), name);
        window.Field("txtDati2").setFocus();
        QVERIFY(HasColour(window.Field("txtDati2"), mark));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmDettaglio_test> registered;
#include "frmDettaglio_test.moc"
