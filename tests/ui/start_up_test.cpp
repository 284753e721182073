// The program from start to end, over good, bad and missing files.
#include "app/start_up.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "tests/support/site_window.h"
#include "ui/editor/environment.h"
#include "ui/editor/frmFileAvanzate.h"
#include "ui/editor/frmModem.h"

#include <QComboBox>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>

namespace corvrec
{

namespace
{

constexpr auto kUnreadable = "Impossibile leggere dal file di CorvRec.ini\nErrore leggendo la porta com.";

// A program directory with the files that the test puts into it.
class Place
{
public:
    const SettingsFile& Settings() const { return settings_; }
    std::filesystem::path Catalogue() const { return settings_.Directory() / "modem.dat"; }

    int Run() { return RunEditor(*qApp, {settings_.Directory(), *settings_, clock_, events_, {}}); }

    // Runs the program, calls look when the list is shown, and closes the list.
    int Run(const std::function<void(frmSiti&)>& look)
    {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            for (QWidget* const window : QApplication::topLevelWidgets()) {
                auto* const list = qobject_cast<frmSiti*>(window);
                if (list == nullptr || !list->isVisible())
                    continue;
                timer.stop();
                look(*list);
                list->close();
                return;
            }
        });
        timer.start(0);
        return Run();
    }

private:
    SettingsFile settings_{std::nullopt};
    FakeClock clock_;
    QtEventPump events_{clock_};
};

std::string RandomBytes(std::size_t count)
{
    std::mt19937 random(20261121); // a fixed seed
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random() & 0xFFU);
    return bytes;
}

void WriteFile(const std::filesystem::path& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

int SiteCount(frmSiti& list)
{
    return SiteWindow::Part<QTableView>(list, "dgrdGrigliaSiti").model()->rowCount();
}

QComboBox& Models(frmSiti& list)
{
    return SiteWindow::Part<QComboBox>(*list.findChild<frmModem*>(), "cboModem");
}

// nullptr unless it is shown.
QWidget* GuideWindow()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto guide = std::ranges::find_if(windows, [](const QWidget* window) {
        return window->objectName() == "frmGuida" && window->isVisible();
    });
    return guide == windows.end() ? nullptr : *guide;
}

bool IsGuideShown()
{
    return GuideWindow() != nullptr;
}

enum class Repeat { marked, ofTheSameTime };

// The events of a held key, marked as a repeat or not.
void PressAgain(QWidget& window, Qt::Key key, Repeat repeat)
{
    QApplication::setActiveWindow(&window);
    const bool isMarked = repeat == Repeat::marked;
    for (const QEvent::Type type : {QEvent::KeyRelease, QEvent::ShortcutOverride, QEvent::KeyPress}) {
        QKeyEvent event(type, key, Qt::NoModifier, QString(), isMarked);
        event.setTimestamp(isMarked ? static_cast<quint64>(type) : 4711);
        if (type == QEvent::ShortcutOverride)
            qt_sendShortcutOverrideEvent(window.focusWidget(), event.timestamp(), key, Qt::NoModifier,
                                         QString(), isMarked);
        else
            QApplication::sendEvent(window.windowHandle(), &event);
    }
}

} // namespace

class start_up_test : public QObject
{
    Q_OBJECT

private slots:
    static void listIsShownAndItsClosingEndsTheProgram()
    {
        Place place;
        place.Settings().Rewrite(SettingsWith({"A", "B"}));
        int sites = 0;

        const int status = place.Run([&sites](frmSiti& list) { sites = SiteCount(list); });

        QCOMPARE(status, 0);
        QCOMPARE(sites, 2);
        QCOMPARE(place.Settings().Bytes(), SettingsWith({"A", "B"}));
    }

    static void everyWindowHasTheProgramsIcon()
    {
        Place place;
        place.Settings().Rewrite(SettingsWith({"A"}));

        place.Run([](frmSiti& list) {
            const QIcon listIcon = list.windowIcon();
            const QIcon editorIcon = list.findChild<frmDettaglio*>()->windowIcon();
            for (const int size : {16, 64}) {
                const QPixmap drawn(QString(":/icons/corvrec-config-%1.png").arg(size));
                QCOMPARE(listIcon.pixmap(size), drawn);
                QCOMPARE(editorIcon.pixmap(size), drawn);
            }
        });
    }

    static void theGuideDoesNotKeepTheProgramRunning()
    {
        Place place;
        place.Settings().Rewrite(SettingsWith({"A"}));

        const int status = place.Run([](frmSiti& list) {
            QVERIFY(QTest::qWaitForWindowActive(&list, kPatienceMs));
            QTest::keyClick(&list, Qt::Key_F1);
            QVERIFY(IsGuideShown());
        });

        QCOMPARE(status, 0);
    }

    static void editorIsThereBeforeASiteIsOpened()
    {
        Place place;
        place.Settings().Rewrite(SettingsWith({"A"}));

        place.Run([](frmSiti& list) {
            QCOMPARE(list.findChildren<frmDettaglio*>().size(), 1);
            QVERIFY(!list.findChild<frmDettaglio*>()->isVisible());
            QCOMPARE(SiteWindow::Part<QComboBox>(list, "cboTipoConn").count(), 6);
            QCOMPARE(QString::fromStdString(list.SelectedSite()), "A");
        });
    }

    static void heldKeyActsOnce_data()
    {
        QTest::addColumn<Repeat>("repeat");
        QTest::newRow("marked as a repeat") << Repeat::marked;
        QTest::newRow("released and pressed at the same time") << Repeat::ofTheSameTime;
    }

    static void heldKeyActsOnce()
    {
        QFETCH(const Repeat, repeat);
        Place place;
        place.Settings().Rewrite(SettingsWith({"A"}));

        place.Run([repeat](frmSiti& list) {
            QVERIFY(QTest::qWaitForWindowActive(&list, kPatienceMs));
            const ModalVisit<frmDettaglio> editor([repeat](frmDettaglio& window) {
                PressAgain(window, Qt::Key_Return, repeat); // would press OK
                QVERIFY(window.isVisible());
                const ModalVisit<frmFileAvanzate> alerts([repeat, &window](frmFileAvanzate& dialog) {
                    QTest::keyClick(&dialog, Qt::Key_Escape);
                    QVERIFY(!dialog.isVisible());
                    PressAgain(window, Qt::Key_Escape, repeat);
                    QVERIFY(window.isVisible());
                });
                SiteWindow::Part<QPushButton>(window, "cmdFileAvanzate").click();
                QTest::keyClick(&window, Qt::Key_Escape);
            });
            QTest::keyClick(&SiteWindow::Part<QTableView>(list, "dgrdGrigliaSiti"), Qt::Key_Return);
            if (QTest::currentTestFailed())
                return;
            PressAgain(list, Qt::Key_Return, repeat); // would open the site again
            QVERIFY(!list.findChild<frmDettaglio*>()->isVisible());
            QTest::keyClick(&list, Qt::Key_F1);
            PressAgain(*GuideWindow(), Qt::Key_Escape, repeat);
            QVERIFY(IsGuideShown());
        });

        QCOMPARE(place.Settings().Bytes(), SettingsWith({"A"}));
    }

    static void fileWithoutComEndsTheProgramUnseen_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("exists");
        QTest::newRow("missing") << QByteArray() << false;
        QTest::newRow("empty") << QByteArray() << true;
        QTest::newRow("no Com") << QByteArray("[Siti]\r\nA=Alfa\r\n[General]\r\nLog=x\r\n") << true;
        QTest::newRow("Com in another section") << QByteArray("[Altro]\r\nCom=COM1\r\n") << true;
        QTest::newRow("Com says that it is missing") << QByteArray("[General]\r\nCom=-CaVacca-\r\n") << true;
        QTest::newRow("binary") << QByteArray::fromStdString(RandomBytes(100000)) << true;
    }

    static void fileWithoutComEndsTheProgramUnseen()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, exists);
        Place place;
        if (exists)
            place.Settings().Rewrite(bytes.toStdString());
        MessageProbe message(Qt::Key_Return);

        const int status = place.Run();

        QCOMPARE(status, 1);
        QCOMPARE(message.text(), kUnreadable);
        QCOMPARE(message.title(), "Configurazione Corvane Recorder");
        QCOMPARE(place.Settings().Exists(), exists);
        QCOMPARE(place.Settings().Bytes(), bytes.toStdString());
    }

    static void theGuideCanBeReadNextToTheMessage()
    {
        Place place;
        MessageProbe message(Qt::Key_Escape, [] {
            QWidget* const box = QApplication::activeModalWidget();
            QVERIFY(QTest::qWaitForWindowActive(box, kPatienceMs));
            QTest::keyClick(box, Qt::Key_F1);
            QVERIFY(IsGuideShown());
        });

        QCOMPARE(place.Run(), 1);

        QVERIFY(!IsGuideShown());
    }

    static void directoryInTheFilesPlaceIsUnreadable()
    {
        Place place;
        std::filesystem::create_directory(place.Settings().Path());
        MessageProbe message(Qt::Key_Return);

        const int status = place.Run();

        QCOMPARE(status, 1);
        QCOMPARE(message.text(), kUnreadable);
    }

    static void binaryFileWithAPortIsListedAndKept()
    {
        Place place;
        const std::string bytes =
            RandomBytes(50000) + "\r\n[General]\r\nCom=COM1\r\n[Siti]\r\nA=Alfa\r\n" + RandomBytes(50000);
        place.Settings().Rewrite(bytes);
        bool hasSites = false;

        const int status = place.Run([&hasSites](frmSiti& list) { hasSites = SiteCount(list) >= 1; });

        QCOMPARE(status, 0);
        QVERIFY(hasSites);
        QCOMPARE(place.Settings().Bytes(), bytes);
    }

    static void fileOfFiftyMegabytesIsListed()
    {
        Place place;
        std::string bytes = SettingsWith({"A", "B"});
        const std::string filling(1024 * 1024 - 2, ';');
        for (int megabyte = 0; megabyte < 50; ++megabyte)
            bytes += filling + "\r\n";
        place.Settings().Rewrite(bytes);
        int sites = 0;

        const int status = place.Run([&sites](frmSiti& list) { sites = SiteCount(list); });

        QCOMPARE(status, 0);
        QCOMPARE(sites, 2);
    }

    static void readOnlyFileIsListed()
    {
        Place place;
        place.Settings().Rewrite(SettingsWith({"A"}));
        std::filesystem::permissions(place.Settings().Path(), std::filesystem::perms::owner_read);
        int sites = 0;

        place.Run([&sites](frmSiti& list) { sites = SiteCount(list); });

        QCOMPARE(sites, 1);
    }

    static void anyCatalogueOffersModels_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("first");
        QTest::addColumn<int>("count");
        QByteArray many;
        for (int i = 0; i < 10000; ++i)
            many += "Modello " + QByteArray::number(i) + "=X" + QByteArray::number(i) + "\r\n";
        QTest::newRow("empty") << QByteArray("") << "Generico" << 1;
        QTest::newRow("10 000 lines") << many << "Modello 0" << 10000;
        QTest::newRow("line feeds alone") << QByteArray("A=1\nB=2\n") << "A" << 2;
        QTest::newRow("no equals sign") << QByteArray("solo testo\r\n") << "" << 1;
        QTest::newRow("NULs") << QByteArray("A\0B=1\r\n", 7) << QString::fromUtf8("A\0B", 3) << 1;
    }

    static void anyCatalogueOffersModels()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, first);
        QFETCH(int, count);
        Place place;
        place.Settings().Rewrite(SettingsWith({}));
        WriteFile(place.Catalogue(), bytes.toStdString());

        place.Run([&](frmSiti& list) {
            QCOMPARE(Models(list).count(), count);
            QCOMPARE(Models(list).itemText(0), first);
            QCOMPARE(Models(list).currentIndex(), 0);
        });
    }

    static void directoryInTheCataloguesPlaceOffersTheGenericModel()
    {
        Place place;
        place.Settings().Rewrite(SettingsWith({}));
        std::filesystem::create_directory(place.Catalogue());

        place.Run([](frmSiti& list) {
            QCOMPARE(Models(list).count(), 1);
            QCOMPARE(Models(list).itemText(0), "Generico");
        });
    }

    static void qtsOwnTextsAreItalian()
    {
        Place place;
        place.Settings().Rewrite(SettingsWith({}));
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);

        place.Run([](frmSiti& list) {
            QFileDialog chooser(&list);
            QStringList buttons;
            for (const QPushButton* const button : chooser.findChildren<QPushButton*>())
                buttons.append(button->text().remove(u'&'));
            QVERIFY2(buttons.contains("Annulla"), qPrintable(buttons.join(u'|')));
        });
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::start_up_test> registered;
#include "start_up_test.moc"
