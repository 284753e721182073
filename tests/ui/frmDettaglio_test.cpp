#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/registered_test.h"
#include "tests/support/vectors.h"
#include "ui/widgets/check_list.h"
#include "ui/widgets/mask_edit.h"
#include "ui/widgets/texts.h"

#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

#include <map>

namespace corvrec
{

namespace
{

enum Device { pabx, buffer, stratobox11, stratobox20, stratobox30, stratoboxBuffer };

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
const QStringList kFlowCharacters{"lblXon", "lblXoff", "chkXon", "chkXoff", "txtXon", "txtXoff"};
const QStringList kStatusOnly{"cmdSX"};
const QStringList kBothWays{"cmdSX", "fraColleg", "optLocale", "optRemoto"};
const QStringList kByModem = kBothWays + QStringList{"btnModem"};

QStringList Entries(const QComboBox& list)
{
    QStringList entries;
    for (int row = 0; row < list.count(); ++row)
        entries.append(list.itemText(row));
    return entries;
}

} // namespace

class frmDettaglio_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void captionsComeFromTheStringTable_data()
    {
        QTest::addColumn<QString>("caption");
        const std::map<const char*, const char*> captions{
            {"lblNomeSito", "&Nome del sito"},
            {"lblCodice", "&Codice"},
            {"chkAbilitato", "Sito &abilitato"},
            {"OK", "OK"},
            {"Annulla", "Annulla"},
            {"Label3", "Dispositi&vo:"},
            {"fraColleg", "Tipo di collegamento"},
            {"optLocale", "Collegamento &locale"},
            {"optRemoto", "Collegamento &remoto"},
            {"btnModem", "&Modem..."},
            {"fraHandS", "Handshake"},
            {"txtTipoHands", "&Tipo:"},
            {"chkXon", "Xo&n"},
            {"lblXon", "C&TRL -"},
            {"chkXoff", "Xo&ff:"},
            {"lblXoff", "C&TRL -"},
            {"cmdSX", "Stato &Buffer..."},
            {"Frame1", "Parametri di connessione"},
            {"lblVelocita", "V&elocità:"},
            {"lblBitDati", "Bit di &dati:"},
            {"lblParita", "&Parità:"},
            {"lblBitStop", "Bit di &stop:"},
            {"lblRicorrenza", "&Ricorrenza:"},
            {"fraParametri", "Parametri"},
            {"lblNessuno", "Nessuno"},
            {"lblOgni", "Acquisisci &ogni"},
            {"cmdTAvanzate", "A&vanzate..."},
            {"lblDati", "File &dati:"},
            {"lblDati2", "File di sca&mbio:"},
            {"lblStorico", "File &storico:"},
            {"lblLog", "File di &log:"},
            {"cmdSfoglia1", "Sfoglia..."},
            {"cmdSfoglia2", "Sfoglia..."},
            {"cmdSfoglia3", "Sfoglia..."},
            {"cmdFileAvanzate", "A&vanzate..."},
        };
        for (const auto& [name, caption] : captions)
            QTest::newRow(name) << QString(caption);
    }

    static void captionsComeFromTheStringTable()
    {
        QFETCH(QString, caption);
        EditorWindow window(SettingsWith({}));

        const auto& control = window.At<QWidget>(QTest::currentDataTag());

        const bool isGroup = qobject_cast<const QGroupBox*>(&control) != nullptr;
        QCOMPARE(control.property(isGroup ? "title" : "text").toString(), caption);
    }

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

        QCOMPARE(Entries(window.Choice("cboTipoConn")),
                 QStringList({"Pabx", "Buffer", "Stratobox 1.1", "Stratobox 2.0", "Stratobox 3.0",
                              "Stratobox Buffer"}));
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

    static void firstStatesOfControlsWithoutADefault()
    {
        EditorWindow window(SettingsWith({}));
        const std::map<const char*, QString> states{
            {"chkXon", "on"},
            {"txtXon", "Q"},
            {"chkXoff", "on"},
            {"txtXoff", "S"},
            {"chkData", "off"},
            {"chkOra", "off"},
            {"chkNull", "off"},
            {"chkCrLf", "off"},
            {"chkFile", "off"},
            {"txtFile", "600"},
            {"chkSpazio", "off"},
            {"txtSpazio", "20"},
            {"optToni", "on"},
            {"txtTelefono", ""},
            {"txtTentImpor", ""},
            {"txtStringaReset", "&F"},
            {"lstGiorni", ""},
            {"mskValore", "1"},
            {"txtStringaInit", "X3S0=0&M5&K0&C1&D2&R1"},
        };

        for (const auto& [name, state] : states)
            QCOMPARE(QString(name) + ": " + window.Shows(name), QString(name) + ": " + state);
    }

    static void newSiteStartsWithTheDefaults()
    {
        EditorWindow window(SettingsWith({}));
        const std::map<const char*, QString> states{
            {"cboTipoConn", "Pabx"}, {"optLocale", "on"},       {"optRemoto", "off"},
            {"cboVelocita", "9600"}, {"cboBitDati", "8"},       {"cboParita", "Nessuna"},
            {"cboBitStop", "1"},     {"cboHandS", "Hardware"},  {"mskOrario", "18:03"},
            {"txtNomeSito", ""},     {"txtCodice", ""},         {"chkAbilitato", "off"},
            {"mskValore", "1"},      {"txtLog", "Corvrec.log"}, {"cboRicorrenza", "Continua"},
        };

        window.Add();

        for (const auto& [name, state] : states)
            QCOMPARE(QString(name) + ": " + window.Shows(name), QString(name) + ": " + state);
        QCOMPARE(EnabledControls(window), kHandshakeOnly);
    }

    static void newSiteNamesFilesInTheProgramsFolder()
    {
        EditorWindow window(SettingsWith({}));
        const QString directory = QString::fromStdString(window.Settings().Directory().string()) + "/";

        window.Add();

        QCOMPARE(window.Shows("txtDati"), directory + "Corvrec.txt");
        QCOMPARE(window.Shows("txtDati2"), directory + "CRemoto.txt");
        QCOMPARE(window.Shows("txtStorico"), directory + "Storico.txt");
        QCOMPARE(window.Shows("txtLog"), "Corvrec.log");
    }

    static void defaultsSelectTheWholeFileNames()
    {
        EditorWindow window(SettingsWith({}));

        window.Add();

        for (const char* const name : {"txtDati", "txtDati2", "txtStorico", "txtLog"})
            QCOMPARE(window.Field(name).selectedText(), window.Field(name).text());
    }

    static void defaultsPutTheTimeOfDayOverAnyStartTime()
    {
        EditorWindow window(SettingsWith({}));
        for (const char* const before : {"__:__", "_1:_2", "23:59"}) {
            window.At<MaskEdit>("mskOrario").setText(before);
            window.Time().SetNow({.year = 2026, .month = 3, .day = 3, .hour = 7, .minute = 5, .second = 59});

            window.Editor().InitFormDettagli();

            QCOMPARE(window.Shows("mskOrario"), "07:05");
        }
    }

    static void defaultsResetARemoteSiteWithPabx()
    {
        EditorWindow window(
            "[Siti]\r\nA=Alfa\r\n[General]\r\nCom=COM2\r\n[A]\r\nDispositivo=COM\r\nMODEM=1\r\n");
        window.Open();
        QCOMPARE(EnabledControls(window), QStringList({"btnModem"}));

        window.Editor().InitFormDettagli();

        QCOMPARE(window.Shows("optLocale"), "on");
        QCOMPARE(EnabledControls(window), kHandshakeOnly);
    }

    static void defaultsLeaveControlsThatTheyDoNotName()
    {
        EditorWindow window(SettingsWith({}), "Alfa=A1\r\nBeta=B2\r\n");
        const QStringList fields{"txtXon",      "txtXoff",      "txtFile",        "txtSpazio",
                                 "txtTelefono", "txtTentImpor", "txtStringaInit", "txtStringaReset"};
        const QStringList boxes{"chkXon",  "chkXoff", "chkData", "chkOra",
                                "chkNull", "chkCrLf", "chkFile", "chkSpazio"};
        for (const QString& field : fields)
            window.Field(qPrintable(field)).setText("5" + field);
        for (const QString& box : boxes)
            window.Box(qPrintable(box)).toggle();
        window.Choice("cboModem").setCurrentIndex(1);
        window.At<QRadioButton>("optImpulsi").setChecked(true);
        window.At<CheckList>("lstGiorni").SetMarked(3, true);

        window.Add();

        for (const QString& field : fields)
            QCOMPARE(window.Shows(qPrintable(field)), "5" + field);
        for (const QString& box : boxes)
            QCOMPARE(box + " " + window.Shows(qPrintable(box)),
                     box + (box.startsWith("chkXo") ? " off" : " on"));
        QCOMPARE(window.Shows("cboModem"), "Beta");
        QCOMPARE(window.Shows("optImpulsi"), "on");
        QCOMPARE(window.Shows("lstGiorni"), "3");
    }

    static void deviceRule_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QStringList>("enabled");
        QTest::addColumn<QStringList>("speeds");
        QTest::newRow("Pabx") << int(pabx) << kHandshakeOnly << kLowSpeeds;
        QTest::newRow("Buffer") << int(buffer) << kHandshakeOnly << kLowSpeeds;
        QTest::newRow("Stratobox 1.1") << int(stratobox11) << kStatusOnly << kLowSpeeds;
        QTest::newRow("Stratobox 2.0") << int(stratobox20) << kBothWays << kLowSpeeds;
        QTest::newRow("Stratobox 3.0") << int(stratobox30) << kBothWays << kLowSpeeds;
        QTest::newRow("Stratobox Buffer") << int(stratoboxBuffer) << kBothWays << kAllSpeeds;
    }

    static void deviceRule()
    {
        QFETCH(int, row);
        QFETCH(QStringList, enabled);
        QFETCH(QStringList, speeds);
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboTipoConn", row == pabx ? buffer : pabx);

        window.Pick("cboTipoConn", row);

        QCOMPARE(EnabledControls(window), enabled);
        QCOMPARE(Entries(window.Choice("cboVelocita")), speeds);
        QCOMPARE(window.Shows("cboVelocita"), "9600");
        QCOMPARE(window.Shows("optLocale"), "on");
    }

    static void deviceRuleOfARemoteSite_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("staysRemote");
        QTest::addColumn<QStringList>("enabled");
        QTest::newRow("Pabx") << int(pabx) << false << kHandshakeOnly;
        QTest::newRow("Buffer") << int(buffer) << false << kHandshakeOnly;
        QTest::newRow("Stratobox 1.1") << int(stratobox11) << true << kStatusOnly;
        QTest::newRow("Stratobox 2.0") << int(stratobox20) << true << kByModem;
        QTest::newRow("Stratobox 3.0") << int(stratobox30) << true << kByModem;
        QTest::newRow("Stratobox Buffer") << int(stratoboxBuffer) << true << kByModem;
    }

    static void deviceRuleOfARemoteSite()
    {
        QFETCH(int, row);
        QFETCH(bool, staysRemote);
        QFETCH(QStringList, enabled);
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboTipoConn", row == stratobox20 ? stratobox30 : stratobox20);
        window.Click("optRemoto");

        window.Pick("cboTipoConn", row);

        QCOMPARE(EnabledControls(window), enabled);
        QCOMPARE(window.Shows("optRemoto"), staysRemote ? "on" : "off");
        QCOMPARE(window.Shows("optLocale"), staysRemote ? "off" : "on");
    }

    static void leavingForPabxForcesLocal()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboTipoConn", stratobox20);
        window.Click("optRemoto");
        QVERIFY(IsEnabled(window.At<QPushButton>("btnModem")));

        window.Pick("cboTipoConn", pabx);

        QCOMPARE(window.Shows("optLocale"), "on");
        QVERIFY(!IsEnabled(window.At<QPushButton>("btnModem")));
        QVERIFY(window.Choice("cboHandS").isEnabled());
    }

    static void oldestStratoboxKeepsTheOptionAndTheSpeeds()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();

        window.Pick("cboTipoConn", stratobox11);

        QCOMPARE(Entries(window.Choice("cboVelocita")), kLowSpeeds);
        QCOMPARE(window.Shows("cboVelocita"), "9600");
        QCOMPARE(window.Shows("optLocale"), "on");
    }

    static void remoteSiteComesBackFromTheOldestStratobox()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboTipoConn", stratobox30);
        window.Click("optRemoto");
        window.Pick("cboTipoConn", stratobox11);

        window.Pick("cboTipoConn", stratobox30);

        QCOMPARE(window.Shows("optRemoto"), "on");
        QCOMPARE(EnabledControls(window), kByModem);
    }

    static void localAndRemoteSwitchTheModemButton()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboTipoConn", stratoboxBuffer);

        window.Click("optRemoto");
        QCOMPARE(EnabledControls(window), kByModem);
        window.Click("optLocale");
        QCOMPARE(EnabledControls(window), kBothWays);
    }

    static void unknownDeviceRowChangesNothing()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboTipoConn", stratoboxBuffer);
        window.Click("optRemoto");

        window.Choice("cboTipoConn").setCurrentIndex(-1);

        QCOMPARE(EnabledControls(window), kByModem);
        QCOMPARE(Entries(window.Choice("cboVelocita")), kAllSpeeds);
    }

    static void handshakeRule_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QStringList>("enabled");
        QTest::newRow("Nessuno") << 0 << kHandshakeOnly;
        QTest::newRow("Software") << 1 << kHandshakeOnly + kFlowCharacters;
        QTest::newRow("Hardware") << 2 << kHandshakeOnly;
    }

    static void handshakeRule()
    {
        QFETCH(int, row);
        QFETCH(QStringList, enabled);
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboHandS", row == 1 ? 2 : 1);

        window.Pick("cboHandS", row);

        QCOMPARE(EnabledControls(window), enabled);
    }

    static void bufferDeviceNeverEditsTheHandshake()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboHandS", 1);

        window.Pick("cboTipoConn", stratobox30);
        QCOMPARE(EnabledControls(window), kBothWays);
        window.Click("optRemoto");

        QCOMPARE(EnabledControls(window), kByModem);
        QCOMPARE(window.Shows("cboHandS"), "Software");
    }

    static void softwareHandshakeReturnsWithPabx()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboHandS", 1);
        window.Pick("cboTipoConn", stratobox11);

        window.Pick("cboTipoConn", buffer);

        QCOMPARE(EnabledControls(window), kHandshakeOnly + kFlowCharacters);
    }

    static void speedList_data()
    {
        QTest::addColumn<QString>("remembered");
        QTest::addColumn<bool>("high");
        QTest::addColumn<QStringList>("items");
        QTest::addColumn<int>("selected");
        for (const QJsonValue vector : Vectors("speed_list")) {
            QStringList items;
            for (const QJsonValue item : vector["items"].toArray())
                items.append(item.toString());
            const QString remembered = vector["remembered"].toString();
            const bool high = vector["high"].toBool();
            QTest::addRow("'%s', %s", qPrintable(remembered), high ? "high" : "low")
                << remembered << high << items << vector["selected"].toInt();
        }
    }

    static void speedList()
    {
        QFETCH(QString, remembered);
        QFETCH(bool, high);
        QFETCH(QStringList, items);
        QFETCH(int, selected);
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Editor().ComboVelocita(true);
        window.Choice("cboVelocita").setCurrentIndex(window.Choice("cboVelocita").findText(remembered));
        QCOMPARE(window.Shows("cboVelocita"), remembered);

        window.Editor().ComboVelocita(high);

        QCOMPARE(Entries(window.Choice("cboVelocita")), items);
        QCOMPARE(window.Choice("cboVelocita").currentIndex(), selected);
    }

    static void highSpeedIsLostWithItsDevice()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboTipoConn", stratoboxBuffer);
        window.Pick("cboVelocita", 0);
        QCOMPARE(window.Shows("cboVelocita"), "115200");

        window.Pick("cboTipoConn", pabx);
        QCOMPARE(window.Shows("cboVelocita"), "");
        QCOMPARE(window.Choice("cboVelocita").currentIndex(), -1);
        window.Pick("cboTipoConn", stratoboxBuffer);

        QCOMPARE(window.Choice("cboVelocita").currentIndex(), -1);
    }

    static void lowSpeedSurvivesTheDevice()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboVelocita", 3);

        window.Pick("cboTipoConn", stratoboxBuffer);
        QCOMPARE(window.Shows("cboVelocita"), "2400");
        window.Pick("cboTipoConn", stratobox20);

        QCOMPARE(window.Shows("cboVelocita"), "2400");
    }

    static void oldestStratoboxKeepsTheHighSpeeds()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboTipoConn", stratoboxBuffer);
        window.Pick("cboVelocita", 1);

        window.Pick("cboTipoConn", stratobox11);

        QCOMPARE(Entries(window.Choice("cboVelocita")), kAllSpeeds);
        QCOMPARE(window.Shows("cboVelocita"), "57600");
    }

    static void identityIsEnabledFromOutsideOnly()
    {
        EditorWindow window(SettingsWith({"A"}));

        window.Open();
        QVERIFY(!IsEnabled(window.Field("txtNomeSito")));
        QVERIFY(!IsEnabled(window.Field("txtCodice")));
        window.Editor().InitFormDettagli();
        QVERIFY(!IsEnabled(window.Field("txtNomeSito")));
        window.Editor().EnableIdentity(true);

        QVERIFY(IsEnabled(window.Field("txtNomeSito")));
        QVERIFY(IsEnabled(window.Field("txtCodice")));
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

        window.At<QTabWidget>("tabSetup").setCurrentIndex(2);

        const QColor mark = QApplication::palette().color(QPalette::Active, QPalette::Highlight);
        const QString focused = window.Focus();
        for (const char* const name : {"txtDati", "txtDati2", "txtStorico", "txtLog"}) {
            QVERIFY(window.Field(name).hasSelectedText());
            QVERIFY(focused != name);
            QVERIFY2(!HasColour(window.Field(name), mark), name);
        }
        window.Field("txtDati2").setFocus();
        QVERIFY(HasColour(window.Field("txtDati2"), mark));
    }

    static void cancelAndNuovoAreFlags()
    {
        EditorWindow window(SettingsWith({}));

        for (const bool flag : {true, false}) {
            window.Editor().SetNuovo(flag);
            window.Editor().SetCancel(!flag);

            QCOMPARE(window.Editor().Nuovo(), flag);
            QCOMPARE(window.Editor().Cancel(), !flag);
        }
    }

    static void contentsStayBetweenUses()
    {
        EditorWindow window(SettingsWith({}));
        window.Add();
        window.Pick("cboHandS", 1);
        window.Retype("txtXon", "W");
        window.Click("Annulla");

        window.Add();

        QCOMPARE(window.Shows("txtXon"), "W");
        QCOMPARE(window.Shows("cboHandS"), "Hardware");
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmDettaglio_test> registered;
#include "frmDettaglio_test.moc"
