// The program from start to end, over good, bad and missing files.
#include "app/start_up.h"
#include "tests/support/activation.h"
#include "tests/support/all_windows.h"
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

#include <filesystem>
#include <fstream>
#include <random>

namespace corvrec
{

namespace
{

// A program directory with the files that the test puts into it.
class Place
{
public:
    // nullopt: Corvrec.ini is missing.
    explicit Place(std::optional<std::string_view> settings = std::nullopt)
        : settings_(settings)
    {
    }

    const SettingsFile& Settings() const { return settings_; }

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
    SettingsFile settings_;
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

int SiteCount(frmSiti& list)
{
    return SiteWindow::Part<QTableView>(list, "dgrdGrigliaSiti").model()->rowCount();
}

bool IsGuideShown()
{
    return std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget* window) {
        return window->objectName() == "frmGuida" && window->isVisible();
    });
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
            qt_sendShortcutOverrideEvent(window.focusWidget(), static_cast<ulong>(event.timestamp()), key,
                                         Qt::NoModifier, QString(), isMarked);
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
        Place place(SettingsWith({"A", "B"}));
        bool isShown = false;
        std::ofstream(place.Settings().Directory() / "modem.dat", std::ios::binary)
            << "Modello A=X3\r\nModello B=X4\r\n";

        const int status = place.Run([&isShown](frmSiti& list) {
            isShown = true;
            auto& editor = SiteWindow::Part<frmDettaglio>(list, "frmDettaglio");
            QCOMPARE(SiteCount(list), 2);
            QCOMPARE(QString::fromStdString(list.SelectedSite()), "A");
            QCOMPARE(list.findChildren<frmDettaglio*>().size(), 1); // before a site is opened
            QVERIFY(!editor.isVisible());
            QCOMPARE(SiteWindow::Part<QComboBox>(list, "cboTipoConn").count(), 6);
            const auto& models = SiteWindow::Part<QComboBox>(*list.findChild<frmModem*>(), "cboModem");
            QCOMPARE(models.count(), 2);
            QCOMPARE(models.itemText(0), "Modello A");
            for (const int size : {16, 64}) {
                const QPixmap drawn(QString(":/icons/corvrec-config-%1.png").arg(size));
                QCOMPARE(list.windowIcon().pixmap(size), drawn);
                QCOMPARE(editor.windowIcon().pixmap(size), drawn);
            }
            QFileDialog chooser(&list);
            QStringList buttons; // Qt's own texts
            for (const QPushButton* const button : chooser.findChildren<QPushButton*>())
                buttons.append(button->text().remove(u'&'));
            QVERIFY2(buttons.contains("Annulla"), qPrintable(buttons.join(u'|')));
            QVERIFY(QTest::qWaitForWindowActive(&list, kPatienceMs));
            QTest::keyClick(&list, Qt::Key_F1); // the guide does not keep the program running
            QVERIFY(IsGuideShown());
        });

        QCOMPARE(status, 0);
        QVERIFY(isShown);
        QCOMPARE(place.Settings().Bytes(), SettingsWith({"A", "B"}));
    }

    static void heldKeyActsOnce()
    {
        for (const Repeat repeat : {Repeat::marked, Repeat::ofTheSameTime}) {
            Place place(SettingsWith({"A"}));

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
                PressAgain(WindowNamed("frmGuida"), Qt::Key_Escape, repeat);
                QVERIFY(IsGuideShown());
            });

            QCOMPARE(place.Settings().Bytes(), SettingsWith({"A"}));
        }
    }

    static void keyboardReturnsToTheListWhenTheEditorCloses()
    {
        Place place(SettingsWith({"A"}));
        place.Run([](frmSiti& list) {
            BringToFront(list);
            const ModalVisit<frmDettaglio> editor([](frmDettaglio& window) {
                BringToFront(window);
                QTest::keyClick(&window, Qt::Key_Escape);
            });
            SiteWindow::Part<QPushButton>(list, "cmdProperties").click();
            QTRY_VERIFY_WITH_TIMEOUT(list.isActiveWindow(), kPatienceMs);
        });
    }

    static void fileWithoutComEndsTheProgramAfterAMessage_data()
    {
        using Bytes = std::optional<std::string>;
        QTest::addColumn<Bytes>("bytes");
        QTest::newRow("missing") << Bytes();
        QTest::newRow("empty") << Bytes("");
        QTest::newRow("no Com") << Bytes("[Siti]\r\nA=Alfa\r\n[General]\r\nLog=x\r\n");
        QTest::newRow("Com in another section") << Bytes("[Altro]\r\nCom=COM1\r\n");
        QTest::newRow("Com says that it is missing") << Bytes("[General]\r\nCom=-CaVacca-\r\n");
        QTest::newRow("binary") << Bytes(RandomBytes(100000));
        QTest::newRow("directory") << Bytes();
    }

    static void fileWithoutComEndsTheProgramAfterAMessage()
    {
        QFETCH(const std::optional<std::string>, bytes);
        Place place(bytes);
        if (qstrcmp(QTest::currentDataTag(), "directory") == 0)
            std::filesystem::create_directory(place.Settings().Path());
        const bool exists = place.Settings().Exists();
        MessageProbe message(Qt::Key_Escape, [] {
            for (const QWidget* const window : QApplication::topLevelWidgets())
                QVERIFY(!window->isVisible() || qobject_cast<const QMessageBox*>(window) != nullptr);
            QWidget* const box = QApplication::activeModalWidget();
            QVERIFY(QTest::qWaitForWindowActive(box, kPatienceMs));
            QTest::keyClick(box, Qt::Key_F1);
            QVERIFY(IsGuideShown());
        });

        const int status = place.Run();

        QCOMPARE(status, 1);
        QCOMPARE(message.text(),
                 "Impossibile leggere dal file di CorvRec.ini\nErrore leggendo la porta com.");
        QCOMPARE(message.title(), "Configurazione Corvane Recorder");
        QCOMPARE(message.icon(), QMessageBox::Warning);
        QCOMPARE(message.buttons(), QStringList({"OK"}));
        QVERIFY(!IsGuideShown());
        QCOMPARE(place.Settings().Exists(), exists);
        QCOMPARE(place.Settings().Bytes(), bytes.value_or(""));
    }

    static void anyFileWithAPortIsListedAndKept_data()
    {
        QTest::addColumn<std::string>("bytes");
        QTest::newRow("binary") << RandomBytes(50000) +
                                       "\r\n[General]\r\nCom=COM1\r\n[Siti]\r\nA=Alfa\r\nB=Beta\r\n" +
                                       RandomBytes(50000);
        const std::string filling(1024 * 1024 - 2, ';');
        std::string fiftyMegabytes = SettingsWith({"A", "B"});
        for (int megabyte = 0; megabyte < 50; ++megabyte)
            fiftyMegabytes += filling + "\r\n";
        QTest::newRow("50 megabytes") << fiftyMegabytes;
        QTest::newRow("read only") << SettingsWith({"A", "B"});
    }

    static void anyFileWithAPortIsListedAndKept()
    {
        QFETCH(const std::string, bytes);
        Place place(bytes);
        if (qstrcmp(QTest::currentDataTag(), "read only") == 0)
            std::filesystem::permissions(place.Settings().Path(), std::filesystem::perms::owner_read);
        int sites = 0;

        const int status = place.Run([&sites](frmSiti& list) { sites = SiteCount(list); });

        QCOMPARE(status, 0);
        QVERIFY(sites >= 2);
        QVERIFY(place.Settings().Bytes() == bytes);
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::start_up_test> registered;
#include "start_up_test.moc"
