#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/registered_test.h"
#include "tests/support/vectors.h"
#include "ui/widgets/check_list.h"
#include "ui/widgets/mask_edit.h"
#include "ui/widgets/texts.h"

#include <QTest>

#include <map>

namespace corvrec
{

namespace
{

// A settings file whose only site, A, has these lines in its section.
std::string SiteWith(const QString& lines, const QString& general = "Com=COM2")
{
    return ("[Siti]\r\nA=Alfa\r\n[General]\r\n" + general + "\r\n[A]\r\n" + lines + "\r\n").toStdString();
}

constexpr auto kCatalogue = "Alfa=A1\r\nBeta=B2\r\nBeta due=B3\r\n";

// Each row gives stored lines, the control that shows them, and the text that it shows.
void AddShownColumns()
{
    QTest::addColumn<QString>("lines");
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("shown");
}

void AddShownRow(const QString& lines, const char* control, const QString& shown)
{
    QTest::newRow(qPrintable(QString(lines).replace("\r\n", ", ") + " in " + control))
        << lines << control << shown;
}

void ShowsWhatIsStored()
{
    QFETCH(QString, lines);
    QFETCH(QString, control);
    EditorWindow window(SiteWith(lines), kCatalogue);

    window.Open();

    QTEST(window.Shows(qPrintable(control)), "shown");
}

QString Rows(const QJsonValue& rows)
{
    QStringList numbers;
    for (const QJsonValue row : rows.toArray())
        numbers.append(QString::number(row.toInt()));
    return numbers.join(' ');
}

} // namespace

class frmDettaglio_load_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void nameComesFromTheListAndCodeFromTheCall()
    {
        EditorWindow window("[Siti]\r\nA=Alfa\r\nB=Beta & figli\r\n[General]\r\nCom=COM2\r\n[B]\r\nB=no\r\n");

        window.Open(1);

        QCOMPARE(window.Shows("txtNomeSito"), "Beta & figli");
        QCOMPARE(window.Shows("txtCodice"), "B");
    }

    static void codeNotUpperCasedByLoading()
    {
        EditorWindow window("[Siti]\r\nroma=Roma\r\n[General]\r\nCom=COM2\r\n");

        window.Open();

        QCOMPARE(window.Shows("txtCodice"), "roma");
    }

    static void connectionKeys_data()
    {
        AddShownColumns();
        AddShownRow("Dispositivo=COM", "cboTipoConn", "Pabx");
        AddShownRow("Dispositivo=BUFF", "cboTipoConn", "Buffer");
        AddShownRow("Dispositivo=STX11", "cboTipoConn", "Stratobox 1.1");
        AddShownRow("Dispositivo=STX20", "cboTipoConn", "Stratobox 2.0");
        AddShownRow("Dispositivo=stx30", "cboTipoConn", "Stratobox 3.0");
        AddShownRow("Dispositivo=Stx40", "cboTipoConn", "Stratobox Buffer");
        AddShownRow("Dispositivo=STX", "cboTipoConn", "Pabx");
        AddShownRow("Dispositivo=", "cboTipoConn", "Pabx");
        AddShownRow("MODEM=0", "optLocale", "on");
        AddShownRow("MODEM=1", "optRemoto", "on");
        AddShownRow("MODEM=00", "optRemoto", "on");
        AddShownRow("MODEM=", "optRemoto", "on");
        AddShownRow("MODEM=abc", "optRemoto", "on");
        AddShownRow("Handshake=NONE", "cboHandS", "Nessuno");
        AddShownRow("Handshake=xon", "cboHandS", "Software");
        AddShownRow("Handshake=HDW", "cboHandS", "Hardware");
        AddShownRow("Handshake=XOFF", "cboHandS", "Hardware");
        AddShownRow("Baud=300", "cboVelocita", "300");
        AddShownRow("Baud=96", "cboVelocita", "9600");
        AddShownRow("Baud=1", "cboVelocita", "19200");
        AddShownRow("Baud=115200", "cboVelocita", "9600");
        AddShownRow("Baud=", "cboVelocita", "9600");
        AddShownRow("Dispositivo=STX40\r\nBaud=115200", "cboVelocita", "115200");
        AddShownRow("Baud=1\r\nDispositivo=STX40", "cboVelocita", "115200");
        AddShownRow("BitDati=7", "cboBitDati", "7");
        AddShownRow("BitDati=9", "cboBitDati", "8");
        AddShownRow("Parita=N", "cboParita", "Nessuna");
        AddShownRow("Parita=e", "cboParita", "Pari");
        AddShownRow("Parita=O", "cboParita", "Dispari");
        AddShownRow("Parita=X", "cboParita", "Nessuna");
        AddShownRow("Stop=2", "cboBitStop", "2");
        AddShownRow("Stop=1.5", "cboBitStop", "1");
    }

    static void connectionKeys() { ShowsWhatIsStored(); }
    static void flowCharacters_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("skip");
        QTest::addColumn<bool>("box");
        QTest::addColumn<QString>("field");
        for (const QJsonValue vector : Vectors("control_char_load")) {
            const QString stored = vector["in"].toString();
            QTest::newRow(qPrintable("'" + stored + "'"))
                << stored << vector["skip"].toBool() << vector["box"].toBool() << vector["field"].toString();
        }
        for (const char* const lineBreak : {"-51", "-54"})
            QTest::newRow(lineBreak) << lineBreak << true << true << "";
    }

    static void flowCharacters()
    {
        QFETCH(QString, stored);
        QFETCH(bool, skip);
        QFETCH(bool, box);
        QFETCH(QString, field);
        EditorWindow window(SiteWith("Xon=" + stored + "\r\nXoff=" + stored));
        for (const char* const name : {"Xon", "Xoff"}) {
            window.Field(qPrintable(QString("txt") + name)).setText("W");
            window.Box(qPrintable(QString("chk") + name)).setChecked(skip || !box);
        }

        window.Open();

        for (const char* const name : {"Xon", "Xoff"}) {
            QCOMPARE(window.Shows(qPrintable(QString("txt") + name)), skip ? "W" : field);
            QCOMPARE(window.Shows(qPrintable(QString("chk") + name)), skip || box ? "on" : "off");
        }
    }

    static void remotePabxRunsTheRemoteRule()
    {
        EditorWindow window(SiteWith("Dispositivo=COM\r\nMODEM=1"));

        window.Open();

        QVERIFY(!IsEnabled(window.At<QWidget>("fraHandS")));
        QVERIFY(!IsEnabled(window.At<QWidget>("fraColleg")));
        QVERIFY(IsEnabled(window.At<QWidget>("btnModem")));
    }

    static void localPabxKeepsItsHandshake()
    {
        EditorWindow window(SiteWith("Dispositivo=COM\r\nMODEM=0\r\nHandshake=XON"));

        window.Open();

        QVERIFY(window.At<QWidget>("cboHandS").isEnabled());
        QVERIFY(window.At<QWidget>("txtXon").isEnabled());
        QVERIFY(window.At<QWidget>("lblXoff").isEnabled());
    }

    static void deviceIsReadBeforeTheSpeed()
    {
        EditorWindow window(
            "[Siti]\r\nA=a\r\nB=b\r\n[General]\r\nCom=COM2\r\n[A]\r\nDispositivo=STX40\r\nBaud=57600\r\n"
            "[B]\r\nDispositivo=COM\r\nBaud=57600\r\n");

        window.Open(0);
        QCOMPARE(window.Shows("cboVelocita"), "57600");
        window.Open(1);

        QCOMPARE(window.Shows("cboVelocita"), "9600");
    }

    static void enabledFlag_data()
    {
        AddShownColumns();
        for (const char* const on : {"1", " 1", "1.0", "01", "1abc"})
            AddShownRow(QString("SitoAbilitato=") + on, "chkAbilitato", "on");
        for (const char* const off : {"0", "2", "-1", "", "abc", "1.5"})
            AddShownRow(QString("SitoAbilitato=") + off, "chkAbilitato", "off");
    }

    static void enabledFlag() { ShowsWhatIsStored(); }
    static void scheduleKinds_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<int>("kind");
        for (const QJsonValue vector : Vectors("schedule_kind_from_text")) {
            const QString stored = vector["in"].toString();
            QTest::newRow(qPrintable("'" + stored + "'")) << stored << vector["index"].toInt();
        }
    }

    static void scheduleKinds()
    {
        QFETCH(QString, stored);
        EditorWindow window(SiteWith("Ricorrenza=" + stored));

        window.Open();

        QTEST(window.Choice("cboRicorrenza").currentIndex(), "kind");
    }

    static void weekdayMarks_data()
    {
        QTest::addColumn<int>("mask");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        for (const QJsonValue vector : Vectors("weekday_rows_from_mask"))
            QTest::addRow("%d over %s", vector["mask"].toInt(), qPrintable(Rows(vector["before"])))
                << vector["mask"].toInt() << Rows(vector["before"]) << Rows(vector["out"]);
    }

    static void weekdayMarks()
    {
        QFETCH(int, mask);
        QFETCH(QString, before);
        EditorWindow window(SiteWith("Ricorrenza= " + QString::number(mask)));
        for (const QString& row : before.split(' ', Qt::SkipEmptyParts))
            window.At<CheckList>("lstGiorni").SetMarked(row.toInt(), true);

        window.Open();

        QCOMPARE(window.Shows("cboRicorrenza"), "Settimanale");
        QTEST(window.Shows("lstGiorni"), "after");
    }

    static void weekdayMarksOfTheLastSiteStay()
    {
        EditorWindow window(
            "[Siti]\r\nA=a\r\nB=b\r\nC=c\r\n[General]\r\nCom=COM2\r\n[A]\r\nRicorrenza= 65\r\n[B]\r\n"
            "Ricorrenza=-1\r\n[C]\r\nRicorrenza= 2\r\n");

        window.Open(0);
        QCOMPARE(window.Shows("lstGiorni"), "5 6");
        window.Open(1);
        QCOMPARE(window.Shows("lstGiorni"), "5 6");
        window.Open(2);

        QCOMPARE(window.Shows("lstGiorni"), "0 5 6");
    }

    static void intervals_data()
    {
        AddShownColumns();
        const auto addVectors = [](const char* vectors, const char* kind) {
            for (const QJsonValue vector : Vectors(vectors))
                AddShownRow(QString(kind) + "\r\nOgni=" + vector["in"].toString(), "mskValore",
                            vector["out"].toString());
        };
        addVectors("hour_minute_from_seconds", "Ricorrenza=-1");
        addVectors("days_from_seconds", "Ricorrenza=-2");
        addVectors("weeks_from_seconds", "Ricorrenza= 62");
        AddShownRow("Ricorrenza=0\r\nOgni=5400", "mskValore", "1");
        AddShownRow("Ogni=5400", "mskValore", "1");
        AddShownRow("Ricorrenza=-1", "mskValore", "__:__");
        AddShownRow("Ricorrenza=-2", "mskValore", "1");
        AddShownRow("Ogni= 7200\r\nRicorrenza=-1", "mskValore", "02:00");
    }

    static void intervals() { ShowsWhatIsStored(); }
    static void startTimes_data()
    {
        AddShownColumns();
        for (const QJsonValue vector : Vectors("start_time_load"))
            AddShownRow("Ora=" + vector["in"].toString(), "mskOrario", vector["field"].toString());
        AddShownRow("Ricorrenza=-1", "mskOrario", "18:03");
    }

    static void startTimes() { ShowsWhatIsStored(); }
    static void kindRuleRunsOnLoading()
    {
        EditorWindow window(SiteWith("Ricorrenza= 62\r\nOgni= 1209600\r\nOra=08:30 21/11/2026"));

        window.Open();

        QCOMPARE(window.Shows("txtTempo"), "settimana/e alle ore");
        QVERIFY(!window.At<CheckList>("lstGiorni").isHidden());
        QVERIFY(IsEnabled(window.At<MaskEdit>("mskOrario")));
        QCOMPARE(window.At<MaskEdit>("mskValore").mask(), "");
        QCOMPARE(window.Shows("mskValore"), " 2");
    }

    static void transformations_data()
    {
        AddShownColumns();
        const QList<std::pair<const char*, const char*>> flags{{"AggData", "chkData"},
                                                               {"AggOra", "chkOra"},
                                                               {"EliminaNull", "chkNull"},
                                                               {"CorreggiCR", "chkCrLf"}};
        for (const auto& [key, box] : flags) {
            for (const char* const on : {"1", " 1", "1x"})
                AddShownRow(QString("%1=%2").arg(key, on), box, "on");
            for (const char* const off : {"0", "2", "", "-1"})
                AddShownRow(QString("%1=%2").arg(key, off), box, "off");
        }
    }

    static void transformations() { ShowsWhatIsStored(); }
    static void files_data()
    {
        AddShownColumns();
        const QList<std::pair<const char*, const char*>> files{
            {"Dati", "txtDati"}, {"Dati2", "txtDati2"}, {"Storico", "txtStorico"}};
        for (const auto& [key, field] : files) {
            const QString start = QString(key) + "=";
            AddShownRow(start + R"(c:\dati\pabx.txt)", field, R"(c:\Dati\Pabx.txt)");
            AddShownRow(start + R"(\\srv\quota\a.txt)", field, R"(\\Srv\Quota\A.txt)");
            AddShownRow(start + "dati.txt", field, "dati.txt");
            AddShownRow(start + R"(c:\dati\)", field, R"(c:\Dati\)");
            AddShownRow(start + "/srv/dati/pabx.txt", field, "/srv/dati/pabx.txt");
            AddShownRow(start, field, "");
        }
    }

    static void files() { ShowsWhatIsStored(); }
    static void fileNamesShowTheirStart()
    {
        EditorWindow window(SiteWith(R"(Dati=c:\dati\a.txt)"
                                     "\r\n"
                                     R"(Dati2=c:\dati\b.txt)"
                                     "\r\n"
                                     R"(Storico=c:\dati\c.txt)",
                                     "Com=COM2\r\nLog=c:\\log.txt"));

        window.Open();

        for (const char* const name : {"txtDati", "txtDati2", "txtStorico", "txtLog"}) {
            QCOMPARE(window.Field(name).cursorPosition(), 0);
            QVERIFY(!window.Field(name).hasSelectedText());
        }
    }

    static void logIsReadFromGeneral()
    {
        EditorWindow window(SiteWith("", "Com=COM2\r\nLog=c:\\log\\rec.log"));

        window.Open();

        QCOMPARE(window.Shows("txtLog"), "c:\\Log\\Rec.log");
    }

    static void logOfTheSiteItselfIsNotRead()
    {
        EditorWindow window(SiteWith("Log=proprio.log"));

        window.Open();

        QCOMPARE(window.Shows("txtLog"), "Corvrec.log");
    }

    static void longValueIsCutAtNinetyNineCharacters()
    {
        EditorWindow window(SiteWith("Dati=" + QString(120, 'x')));

        window.Open();

        QCOMPARE(window.Shows("txtDati"), QString(99, 'x'));
    }

    static void modemKeys_data()
    {
        AddShownColumns();
        AddShownRow("Modello=Beta", "cboModem", "Beta");
        AddShownRow("Modello=bet", "cboModem", "Beta");
        AddShownRow("Modello=BETA D", "cboModem", "Beta due");
        AddShownRow("Modello=Gamma", "cboModem", "Alfa");
        AddShownRow("Modello=", "cboModem", "Alfa");
        AddShownRow("StringaModem=ATX3S0=0", "txtStringaInit", "ATX3S0=0");
        AddShownRow("StringaModem=", "txtStringaInit", "");
        AddShownRow("StringaReset=AT&F", "txtStringaReset", "AT&F");
        AddShownRow("Importazione=3", "txtTentImpor", "3");
        AddShownRow("Importazione=tre", "txtTentImpor", "tre");
    }

    static void modemKeys() { ShowsWhatIsStored(); }
    static void numbersToCall_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("tone");
        QTest::addColumn<QString>("number");
        for (const QJsonValue vector : Vectors("phone_load")) {
            const QString stored = vector["in"].toString();
            QTest::newRow(qPrintable("'" + stored + "'"))
                << stored << vector["tone"].toBool() << vector["number"].toString();
        }
    }

    static void numbersToCall()
    {
        QFETCH(QString, stored);
        QFETCH(bool, tone);
        EditorWindow window(SiteWith("NumeroTel=" + stored));
        window.At<QAbstractButton>(tone ? "optImpulsi" : "optToni").setChecked(true);

        window.Open();

        QCOMPARE(window.Shows("optToni"), tone ? "on" : "off");
        QCOMPARE(window.Shows("optImpulsi"), tone ? "off" : "on");
        QTEST(window.Shows("txtTelefono"), "number");
    }

    static void loadedModelDoesNotBringItsString()
    {
        EditorWindow window(SiteWith("Modello=Beta"), kCatalogue);

        window.Open();

        QCOMPARE(window.Shows("cboModem"), "Beta");
        QCOMPARE(window.Shows("txtStringaInit"), "A1");
    }

    static void alerts_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("ticked");
        QTest::addColumn<QString>("field");
        for (const QJsonValue vector : Vectors("alert_load")) {
            const QString stored = vector["in"].toString();
            QTest::newRow(qPrintable("'" + stored + "'"))
                << stored << vector["ticked"].toBool() << vector["field"].toString("before");
        }
    }

    static void alerts()
    {
        QFETCH(QString, stored);
        QFETCH(bool, ticked);
        QFETCH(QString, field);
        EditorWindow window(SiteWith("FileTimeout=" + stored + "\r\nSpazioTimeout=" + stored));
        for (const char* const name : {"File", "Spazio"}) {
            window.Field(qPrintable(QString("txt") + name)).setText("before");
            window.Box(qPrintable(QString("chk") + name)).setChecked(!ticked);
        }

        window.Open();

        for (const char* const name : {"File", "Spazio"}) {
            QCOMPARE(window.Shows(qPrintable(QString("chk") + name)), ticked ? "on" : "off");
            QCOMPARE(window.Shows(qPrintable(QString("txt") + name)), field);
            QCOMPARE(IsEnabled(window.At<QWidget>(qPrintable(QString("txt") + name))), ticked);
            QCOMPARE(IsEnabled(window.At<QWidget>(qPrintable(QString("lbl") + name))), ticked);
        }
    }

    static void alertOffKeepsTheField()
    {
        EditorWindow window(SiteWith("FileTimeout=-1\r\nSpazioTimeout=-1"));

        window.Open();

        QCOMPARE(window.Shows("txtFile"), "600");
        QCOMPARE(window.Shows("txtSpazio"), "20");
    }

    static void missingKeysLeaveTheDefaults()
    {
        EditorWindow window(SiteWith("Altro=1"));
        const QString directory = QString::fromStdString(window.Settings().Directory().string()) + "/";
        const std::map<const char*, QString> states{
            {"cboTipoConn", "Pabx"},   {"optLocale", "on"},
            {"cboVelocita", "9600"},   {"cboBitDati", "8"},
            {"cboParita", "Nessuna"},  {"cboBitStop", "1"},
            {"cboHandS", "Hardware"},  {"cboRicorrenza", "Continua"},
            {"mskOrario", "18:03"},    {"mskValore", "1"},
            {"chkAbilitato", "off"},   {"txtXon", "Q"},
            {"txtLog", "Corvrec.log"}, {"txtDati", directory + "Corvrec.txt"},
            {"txtNomeSito", "Alfa"},
        };

        window.Open();

        for (const auto& [name, state] : states)
            QCOMPARE(QString(name) + ": " + window.Shows(name), QString(name) + ": " + state);
    }

    static void missingKeysLeaveWhatTheLastSiteShowed()
    {
        EditorWindow window(
            "[Siti]\r\nA=a\r\nB=b\r\n[General]\r\nCom=COM2\r\n[A]\r\nXon= 1\r\nAggData=1\r\n"
            "Modello=Beta\r\nStringaModem=ATX\r\nStringaReset=ATZ\r\nNumeroTel=ATDP7\r\nImportazione=9\r\n"
            "FileTimeout=5\r\n[B]\r\nDispositivo=COM\r\n",
            kCatalogue);
        const std::map<const char*, QString> states{
            {"txtXon", "A"},           {"chkData", "on"},          {"cboModem", "Beta"},
            {"txtStringaInit", "ATX"}, {"txtStringaReset", "ATZ"}, {"optImpulsi", "on"},
            {"txtTelefono", "7"},      {"txtTentImpor", "9"},      {"chkFile", "on"},
            {"txtFile", "5"},
        };
        window.Open(0);

        window.Open(1);

        for (const auto& [name, state] : states)
            QCOMPARE(QString(name) + ": " + window.Shows(name), QString(name) + ": " + state);
    }

    static void emptyValuesAreNotMissing()
    {
        EditorWindow window(SiteWith("Dati=\r\nStringaReset=\r\nOra=\r\nXon=", "Com=COM2\r\nLog="));

        window.Open();

        QCOMPARE(window.Shows("txtDati"), "");
        QCOMPARE(window.Shows("txtLog"), "");
        QCOMPARE(window.Shows("txtStringaReset"), "");
        QCOMPARE(window.Shows("mskOrario"), "__:__");
        QCOMPARE(window.Shows("txtXon"), "@");
    }

    static void sentinelCountsAsMissing()
    {
        EditorWindow window(SiteWith("StringaReset=-CaVacca-\r\nImportazione=-cavacca-"));

        window.Open();

        QCOMPARE(window.Shows("txtStringaReset"), "&F");
        QCOMPARE(window.Shows("txtTentImpor"), "-cavacca-");
    }

    static void loadingWritesNothing()
    {
        EditorWindow window(SettingsWith({"A", "B"}));
        const QByteArray before = window.File();

        window.Open(0);
        window.Open(1);

        QCOMPARE(window.File(), before);
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmDettaglio_load_test> registered;
#include "frmDettaglio_load_test.moc"
