#include "tests/support/controls.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/probed_calls.h"
#include "tests/support/registered_test.h"
#include "tests/support/site_window.h"
#include "ui/widgets/texts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QHelpEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QToolTip>

#include <algorithm>
#include <array>
#include <cerrno>
#include <functional>

namespace corvrec
{

namespace
{

constexpr auto kContinuousRefused =
    "Impossibile abilitare piu' siti insieme ad un sito con importazione continua.";

QTableView& Grid(SiteWindow& window)
{
    return SiteWindow::Part<QTableView>(window.List(), "dgrdGrigliaSiti");
}

QPushButton& Button(SiteWindow& window, const char* name)
{
    return SiteWindow::Part<QPushButton>(window.List(), name);
}

QString Cell(SiteWindow& window, int row, int column)
{
    return Grid(window).model()->index(row, column).data().toString();
}

QStringList Codes(SiteWindow& window)
{
    QStringList codes;
    for (int row = 0; row < Grid(window).model()->rowCount(); ++row)
        codes.append(Cell(window, row, 1));
    return codes;
}

int WishedWidth(SiteWindow& window, int column)
{
    const QAbstractItemView& cells = Grid(window);
    return std::max(cells.sizeHintForColumn(column),
                    Grid(window).horizontalHeader()->sectionSizeHint(column));
}

// The columns fill the list to the pixel. Each is as wide as its contents. Any remaining width belongs to the
// last column; any missing width is taken from the name.
bool ColumnsFit(SiteWindow& window)
{
    const QTableView& grid = Grid(window);
    const int room = grid.viewport()->width() - WishedWidth(window, 1) - WishedWidth(window, 2);
    const int name = std::min(WishedWidth(window, 0), room - WishedWidth(window, 3));
    return grid.columnWidth(0) == name && grid.columnWidth(1) == WishedWidth(window, 1) &&
           grid.columnWidth(2) == WishedWidth(window, 2) && grid.columnWidth(3) == room - name;
}

QModelIndex CurrentCell(SiteWindow& window)
{
    return Grid(window).currentIndex();
}

int CurrentRow(SiteWindow& window)
{
    return Grid(window).currentIndex().row();
}

// Fills the open editor with the data that a new site needs and presses OK.
void AcceptNewSite(frmDettaglio& editor, const QString& name, const QString& code)
{
    QTest::keyClicks(&SiteWindow::Part<QLineEdit>(editor, "txtNomeSito"), name);
    QTest::keyClicks(&SiteWindow::Part<QLineEdit>(editor, "txtCodice"), code);
    for (const char* const file : {"txtDati", "txtDati2", "txtStorico"})
        SiteWindow::Part<QLineEdit>(editor, file).setText("C:\\" + code + "\\" + file);
    QTest::mouseClick(&SiteWindow::Part<QPushButton>(editor, "OK"), Qt::LeftButton);
}

std::string OneSite(std::string_view recurrence, std::string_view enabled)
{
    return "[Siti]\r\nA=Alfa\r\n[General]\r\nCom=COM2\r\n[A]\r\nSitoAbilitato=" + std::string(enabled) +
           "\r\nRicorrenza=" + std::string(recurrence) + "\r\n";
}

} // namespace

class frmSiti_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void listsNameCodeStateAndSchedule()
    {
        SiteWindow window(SettingsWith({"ROMA", "MILANO"}));

        QCOMPARE(Codes(window), QStringList({"ROMA", "MILANO"}));
        QCOMPARE(Cell(window, 0, 0), "Sito ROMA");
        QCOMPARE(Cell(window, 0, 2), "Sì");
        QCOMPARE(Cell(window, 0, 3), "Oraria");
    }

    static void captionsComeFromTheStringTable()
    {
        SiteWindow window(SettingsWith({"A"}));

        QStringList captions;
        for (int column = 0; column < Grid(window).model()->columnCount(); ++column)
            captions.append(Grid(window).model()->headerData(column, Qt::Horizontal).toString());
        QCOMPARE(captions, QStringList({"Sito", "Codice", "Abilitato", "Ricorrenza"}));
        QCOMPARE(Button(window, "cmdAggiungi").text(), "&Aggiungi...");
        QCOMPARE(Button(window, "cmdRimuovi").text(), "&Rimuovi...");
        QCOMPARE(Button(window, "cmdProperties").text(), "&Proprietà...");
        QCOMPARE(Button(window, "cmdChiudi").text(), "&Chiudi");
    }

    static void titleEndsInTheComValue()
    {
        SiteWindow window("[General]\r\nCom=COM12\r\n");

        QCOMPARE(window.List().windowTitle(), "Configurazione Corvane Recorder - COM12");
        QCOMPARE(window.List().ComPort(), 2);
    }

    static void titleShowsBracketsLiterally()
    {
        SiteWindow window("[General]\r\nCom=a [*] 3\r\n");

        // Doubled in the property, so that the window system shows them once.
        QCOMPARE(window.List().windowTitle(), "Configurazione Corvane Recorder - a [*][*] 3");
        QCOMPARE(window.List().ComPort(), 3);
    }

    static void portIsTheLastDigitOfTheTitle_data()
    {
        QTest::addColumn<QString>("com");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("port");
        QFile file(CORVREC_TEST_DATA "/conversions.json");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonArray cases = QJsonDocument::fromJson(file.readAll()).object().value("com_port").toArray();
        QVERIFY(!cases.isEmpty());
        for (const QJsonValue row : cases)
            QTest::newRow(qPrintable(row["com"].toString()))
                << row["com"].toString() << row["caption"].toString() << row["out"].toInt();
    }

    static void portIsTheLastDigitOfTheTitle()
    {
        QFETCH(QString, com);
        QFETCH(QString, caption);
        QFETCH(int, port);

        SiteWindow window("[General]\r\nCom=" + com.toStdString() + "\r\n");

        QCOMPARE(window.List().windowTitle(), caption);
        QCOMPARE(window.List().ComPort(), port);
    }

    static void missingComEndsWithAMessage()
    {
        SettingsFile settings("[Siti]\r\nA=Alfa\r\n");
        FakeClock clock;
        QtEventPump events(clock);
        frmSiti list({settings.Directory(), *settings, clock, events, {}});
        MessageProbe message(Qt::Key_Return, [&list] { QVERIFY(!list.isVisible()); });

        const bool loaded = list.Load();

        QVERIFY(!loaded);
        QCOMPARE(message.text(),
                 "Impossibile leggere dal file di CorvRec.ini\nErrore leggendo la porta com.");
        QCOMPARE(message.title(), "Configurazione Corvane Recorder");
        QCOMPARE(message.icon(), QMessageBox::Warning);
        QCOMPARE(message.buttons(), QStringList({"OK"}));
    }

    static void scheduleTextFollowsTheStoredNumber_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("shown");
        QTest::newRow("0") << "0"
                           << "Continua";
        QTest::newRow("-1") << "-1"
                            << "Oraria";
        QTest::newRow("-2") << "-2"
                            << "Giornaliera";
        QTest::newRow("5") << "5"
                           << "Settimanale";
        QTest::newRow(" 62") << " 62"
                             << "Settimanale";
        QTest::newRow("40000, beyond 16 bits") << "40000"
                                               << "Settimanale";
        QTest::newRow("-3") << "-3"
                            << "";
        QTest::newRow("-99999") << "-99999"
                                << "";
        QTest::newRow("no number") << "abc"
                                   << "Continua";
        QTest::newRow("half, to the even") << "0.5"
                                           << "Continua";
        QTest::newRow("one and a half, to the even") << "1.5"
                                                     << "Settimanale";
        QTest::newRow("minus one and a half, to the even") << "-1.5"
                                                           << "Giornaliera";
    }

    static void scheduleTextFollowsTheStoredNumber()
    {
        QFETCH(QString, stored);
        QFETCH(QString, shown);

        SiteWindow window(OneSite(stored.toStdString(), "1"));

        QCOMPARE(Cell(window, 0, 3), shown);
    }

    static void missingKeysShowZeroAndNothing()
    {
        SiteWindow window("[Siti]\r\nA=-CaVacca-\r\n[General]\r\nCom=COM2\r\n");

        QCOMPARE(Cell(window, 0, 0), "0");
        QCOMPARE(Cell(window, 0, 1), "A");
        QCOMPARE(Cell(window, 0, 2), "No");
        QCOMPARE(Cell(window, 0, 3), "");
    }

    static void emptyListDisablesTheCommandsThatNeedASite()
    {
        SiteWindow window(SettingsWith({}));

        QCOMPARE(Grid(window).model()->rowCount(), 0);
        QVERIFY(Button(window, "cmdAggiungi").isEnabled());
        QVERIFY(Button(window, "cmdChiudi").isEnabled());
        QVERIFY(!Button(window, "cmdRimuovi").isEnabled());
        QVERIFY(!Button(window, "cmdProperties").isEnabled());
        // With an empty list, the keys do nothing either.
        QTest::keyClick(&Grid(window), Qt::Key_Return);
        QTest::keyClick(&Grid(window), Qt::Key_Delete);
        QCOMPARE(QApplication::activeModalWidget(), nullptr);
    }

    static void firstRowIsCurrentAtTheStart()
    {
        SiteWindow window(SettingsWith({"A", "B"}));

        QCOMPARE(QString::fromStdString(window.List().SelectedSite()), "A");
        QVERIFY(Grid(window).selectionModel()->isRowSelected(0));
    }

    static void longKeyListIsCutOff()
    {
        std::string settings = "[Siti]\r\n";
        for (int i = 0; i < 60; ++i)
            settings += "CODICE" + std::to_string(100 + i) + "=Sito\r\n";
        settings += "[General]\r\nCom=COM2\r\n";

        SiteWindow window(settings);

        // 9 letters and a NUL each: 498 bytes hold 49 whole names; the 50th lacks its NUL and does not count.
        QCOMPARE(Codes(window).size(), 49);
        QCOMPARE(Codes(window).constLast(), "CODICE148");
    }

    static void listsTwoHundredAndFiftyShortCodes()
    {
        std::string settings = "[General]\r\nCom=COM2\r\n[Siti]\r\n";
        for (int i = 0; i < 250; ++i)
            settings += std::string(1, static_cast<char>('A' + i % 26)) + "=x\r\n";

        SiteWindow window(settings);

        // One letter and a NUL each: 249 fit in 498 bytes.
        QCOMPARE(Codes(window).size(), 249);
        QVERIFY(Grid(window).verticalScrollBar()->maximum() > 0);
        QCOMPARE(Grid(window).horizontalScrollBar()->maximum(), 0);
    }

    static void addingAppendsTheRowAndSelectsIt()
    {
        SiteWindow window(SettingsWith({"A", "B"}));
        const ModalVisit<frmDettaglio> editor([](frmDettaglio& form) { AcceptNewSite(form, "Gamma", "C"); });

        QTest::mouseClick(&Button(window, "cmdAggiungi"), Qt::LeftButton);

        QCOMPARE(Codes(window), QStringList({"A", "B", "C"}));
        QCOMPARE(Cell(window, 2, 0), "Gamma");
        QCOMPARE(Cell(window, 2, 2), "Sì");
        QCOMPARE(Cell(window, 2, 3), "Continua");
        QCOMPARE(CurrentRow(window), 2);
    }

    static void columnsFitTheListedSites()
    {
        SiteWindow window(SettingsWith({"A", "Codice di prova"}));
        QVERIFY(ColumnsFit(window));
        QCOMPARE(Grid(window).horizontalScrollBar()->maximum(), 0);
        const ModalVisit<frmDettaglio> editor(
            [](frmDettaglio& form) { AcceptNewSite(form, "Sede centrale di Reggio nell'Emilia", "C"); });

        QTest::mouseClick(&Button(window, "cmdAggiungi"), Qt::LeftButton);
        const int withLongName = Grid(window).columnWidth(0);
        QVERIFY(ColumnsFit(window));
        MessageProbe message(QString("Sì"));
        QTest::mouseClick(&Button(window, "cmdRimuovi"), Qt::LeftButton);

        QVERIFY(ColumnsFit(window));
        QVERIFY(Grid(window).columnWidth(0) < withLongName);
    }

    static void addingToAnEmptyListEnablesTheCommands()
    {
        SiteWindow window(SettingsWith({}));
        const ModalVisit<frmDettaglio> editor([](frmDettaglio& form) { AcceptNewSite(form, "Alfa", "A"); });

        QTest::mouseClick(&Button(window, "cmdAggiungi"), Qt::LeftButton);

        QCOMPARE(Codes(window), QStringList({"A"}));
        QVERIFY(Button(window, "cmdRimuovi").isEnabled());
        QVERIFY(Button(window, "cmdProperties").isEnabled());
        QCOMPARE(CurrentRow(window), 0);
    }

    static void cancelledAddingChangesNothing()
    {
        SiteWindow window(SettingsWith({"A", "B"}));
        const QByteArray before = window.File();
        const ModalVisit<frmDettaglio> editor([](frmDettaglio& form) {
            QTest::keyClicks(&SiteWindow::Part<QLineEdit>(form, "txtNomeSito"), "Gamma");
            QTest::keyClick(&form, Qt::Key_Escape);
        });

        QTest::mouseClick(&Button(window, "cmdAggiungi"), Qt::LeftButton);

        QCOMPARE(Codes(window), QStringList({"A", "B"}));
        QCOMPARE(CurrentRow(window), 0);
        QCOMPARE(window.File(), before);
    }

    static void newSiteStartsEnabled()
    {
        SiteWindow window(SettingsWith({}));
        const ModalVisit<frmDettaglio> editor([](frmDettaglio& form) {
            QVERIFY(SiteWindow::Part<QCheckBox>(form, "chkAbilitato").isChecked());
            QVERIFY(form.Nuovo());
            form.reject();
        });

        QTest::mouseClick(&Button(window, "cmdAggiungi"), Qt::LeftButton);
    }

    static void insertKeyAdds()
    {
        SiteWindow window(SettingsWith({"A"}));
        const ModalVisit<frmDettaglio> editor([](frmDettaglio& form) { AcceptNewSite(form, "Beta", "B"); });

        QTest::keyClick(&Grid(window), Qt::Key_Insert);

        QCOMPARE(Codes(window), QStringList({"A", "B"}));
    }

    static void commandsActOnTheMarkedRow_data()
    {
        QTest::addColumn<std::function<void(QTableView&)>>("act");
        QTest::addColumn<QString>("marked");
        using Act = std::function<void(QTableView&)>;
        const auto cell = [](QTableView& grid, int row, int column) {
            return grid.visualRect(grid.model()->index(row, column)).center();
        };
        const auto below = [](QTableView& grid) {
            return QPoint(grid.viewport()->width() / 2, grid.viewport()->height() - 2);
        };
        QTest::newRow("click below the rows") << Act([=](QTableView& grid) {
            QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, below(grid));
        }) << "B";
        QTest::newRow("click with Ctrl on the marked row") << Act([=](QTableView& grid) {
            QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::ControlModifier, cell(grid, 1, 0));
        }) << "B";
        QTest::newRow("click with Ctrl on another row") << Act([=](QTableView& grid) {
            QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::ControlModifier, cell(grid, 2, 2));
        }) << "C";
        QTest::newRow("click with Shift") << Act([=](QTableView& grid) {
            QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::ShiftModifier, cell(grid, 0, 1));
        }) << "A";
        QTest::newRow("right click on another row") << Act([=](QTableView& grid) {
            QTest::mouseClick(grid.viewport(), Qt::RightButton, {}, cell(grid, 2, 0));
        }) << "C";
        QTest::newRow("drag over the rows") << Act([=](QTableView& grid) {
            QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, cell(grid, 0, 0));
            QTest::mouseMove(grid.viewport(), cell(grid, 2, 1));
            QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, cell(grid, 2, 1));
        }) << "C";
        QTest::newRow("drag out of the rows") << Act([=](QTableView& grid) {
            QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, cell(grid, 0, 0));
            QTest::mouseMove(grid.viewport(), below(grid));
            QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, below(grid));
        }) << "A";
        QTest::newRow("drag into the rows") << Act([=](QTableView& grid) {
            QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, below(grid));
            QTest::mouseMove(grid.viewport(), cell(grid, 2, 3));
            QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, cell(grid, 2, 3));
        }) << "C";
        QTest::newRow("Ctrl+Space") << Act([](QTableView& grid) {
            QTest::keyClick(&grid, Qt::Key_Space, Qt::ControlModifier);
        }) << "B";
        QTest::newRow("Ctrl+Down") << Act([](QTableView& grid) {
            QTest::keyClick(&grid, Qt::Key_Down, Qt::ControlModifier);
        }) << "C";
        QTest::newRow("Ctrl+A") << Act([](QTableView& grid) {
            QTest::keyClick(&grid, Qt::Key_A, Qt::ControlModifier);
        }) << "B";
        QTest::newRow("click on a caption") << Act([](QTableView& grid) {
            QTest::mouseClick(grid.horizontalHeader()->viewport(), Qt::LeftButton);
        }) << "B";
    }

    static void commandsActOnTheMarkedRow()
    {
        QFETCH(std::function<void(QTableView&)>, act);
        QFETCH(QString, marked);
        SiteWindow window(SettingsWith({"A", "B", "C"}));
        QTest::keyClick(&Grid(window), Qt::Key_Down);

        act(Grid(window));

        const QModelIndexList rows = Grid(window).selectionModel()->selectedRows(1);
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows.constFirst().data().toString(), marked);
        QCOMPARE(QString::fromStdString(window.List().SelectedSite()), marked);
        QCOMPARE(CurrentRow(window), rows.constFirst().row());
    }

    static void homeAndEndLeadToTheFirstAndTheLastSite()
    {
        SiteWindow window(SettingsWith({"A", "B", "C"}));

        QTest::keyClick(&Grid(window), Qt::Key_End);
        QCOMPARE(QString::fromStdString(window.List().SelectedSite()), "C");
        QTest::keyClick(&Grid(window), Qt::Key_Home);
        QCOMPARE(QString::fromStdString(window.List().SelectedSite()), "A");
    }

    static void typingFindsANameWhereverTheMouseHasClicked()
    {
        SiteWindow window("[Siti]\r\nZ=Milano\r\nO=Roma\r\nR=Napoli\r\n[General]\r\nCom=COM2\r\n");
        for (int column = 0; column < 4; ++column) {
            const QModelIndex cell = Grid(window).model()->index(0, column);
            QTest::mouseClick(Grid(window).viewport(), Qt::LeftButton, {},
                              Grid(window).visualRect(cell).center());

            Grid(window).keyboardSearch({}); // ends the previous search
            QTest::keyClicks(&Grid(window), "ro");

            QCOMPARE(QString::fromStdString(window.List().SelectedSite()), "O");
        }
    }

    static void columnsStayInViewWithALongName()
    {
        SiteWindow window(SettingsWith({"A"}));
        const int width = window.List().width();
        const ModalVisit<frmDettaglio> editor(
            [](frmDettaglio& form) { AcceptNewSite(form, QString("Sede lunghissima ").repeated(30), "C"); });

        QTest::mouseClick(&Button(window, "cmdAggiungi"), Qt::LeftButton);

        QCOMPARE(Grid(window).horizontalScrollBar()->maximum(), 0);
        QCOMPARE(Grid(window).horizontalHeader()->length(), Grid(window).viewport()->width());
        const int lastColumn = 3;
        QVERIFY(Grid(window).columnWidth(lastColumn) >=
                Grid(window).horizontalHeader()->sectionSizeHint(lastColumn));
        window.List().resize(2 * width, window.List().height());
        QTRY_COMPARE(window.List().width(), 2 * width);
        QCOMPARE(Grid(window).horizontalHeader()->length(), Grid(window).viewport()->width());
    }

    static void newRowComesIntoViewWhole()
    {
        std::string sites = "[Siti]\r\n";
        for (int number = 10; number < 40; ++number)
            sites += "S" + std::to_string(number) + "=Sito " + std::to_string(number) + "\r\n";
        SiteWindow window(sites + "[General]\r\nCom=COM2\r\n");
        for (const char* const code : {"X", "Y"}) {
            const ModalVisit<frmDettaglio> editor(
                [code](frmDettaglio& form) { AcceptNewSite(form, code, code); });
            QTest::mouseClick(&Button(window, "cmdAggiungi"), Qt::LeftButton);

            const QRect row = Grid(window).visualRect(CurrentCell(window));
            QVERIFY(Grid(window).viewport()->rect().contains(QRect(row.left(), row.top(), 1, row.height())));
        }
    }

    static void longCodeLeavesRoomForTheName()
    {
        SiteWindow window("[Siti]\r\n" + std::string(300, 'Z') +
                          "=Sede di Reggio\r\n[General]\r\nCom=COM2\r\n");

        QCOMPARE(Grid(window).horizontalScrollBar()->maximum(), 0);
        QVERIFY(Grid(window).columnWidth(0) >= std::min(WishedWidth(window, 0), Grid(window).columnWidth(1)));
    }

    static void cutNameIsShownAsAToolTip()
    {
        const std::string name = "Sede <b>lunga</b> " + std::string(400, 'x');
        SiteWindow window("[Siti]\r\nA=" + name + "\r\nB=Beta\r\n[General]\r\nCom=COM2\r\n");
        const auto askForTip = [&window](int row) {
            const QPoint where = Grid(window).visualRect(Grid(window).model()->index(row, 0)).center();
            QHelpEvent help(QEvent::ToolTip, where, Grid(window).viewport()->mapToGlobal(where));
            QCoreApplication::sendEvent(Grid(window).viewport(), &help);
        };

        askForTip(0);

        QTRY_VERIFY(QToolTip::isVisible());
        QVERIFY(QToolTip::text().contains("&lt;b&gt;"));
        askForTip(1);
        QTRY_VERIFY(!QToolTip::isVisible());
    }

    static void showsThePathOfTheFile()
    {
        SiteWindow window(SettingsWith({"A"}));
        const auto& file = SiteWindow::Part<QLabel>(window.List(), "lblFile");

        QCOMPARE(file.accessibleName(),
                 QFileInfo(QString::fromStdString(window.Settings().Path())).canonicalFilePath());
        QVERIFY(file.text().endsWith("Corvrec.ini"));
        QVERIFY(file.fontMetrics().horizontalAdvance(file.text()) <= file.width());
        QVERIFY(file.font().pointSizeF() < window.List().font().pointSizeF());
    }

    static void showsThatTheFileCannotBeWritten()
    {
        ProbedCalls calls;
        SiteWindow window(SettingsWith({"A"}), std::nullopt, calls);
        const auto& file = SiteWindow::Part<QLabel>(window.List(), "lblFile");
        QVERIFY(!file.text().contains("sola lettura"));

        // The permissions change while another program is in front.
        calls.DenyWriting(EACCES);
        QWidget other;
        other.show();
        BringToFront(other);
        BringToFront(window.List());

        QVERIFY(file.text().endsWith(" – sola lettura"));
        QVERIFY(file.fontMetrics().horizontalAdvance(file.text()) <= file.width());
    }

    static void showsThatTheListIsFull()
    {
        const std::string longCode(493, 'L'); // with its NUL, 494 of 498 bytes
        SiteWindow window(SettingsWith({longCode}));
        const auto& file = SiteWindow::Part<QLabel>(window.List(), "lblFile");

        const auto add = [&window](const char* code) {
            const ModalVisit<frmDettaglio> editor(
                [code](frmDettaglio& form) { AcceptNewSite(form, code, code); });
            QTest::mouseClick(&Button(window, "cmdAggiungi"), Qt::LeftButton);
        };

        add("ABC");
        QVERIFY(!file.text().contains("elenco pieno"));

        add("D");
        QVERIFY(file.text().endsWith(" – elenco pieno: al prossimo avvio mancheranno gli ultimi siti"));
        QVERIFY(file.fontMetrics().horizontalAdvance(file.text()) <= file.width());

        MessageProbe question(QString("Sì"));
        QTest::mouseClick(&Button(window, "cmdRimuovi"), Qt::LeftButton);
        QVERIFY(!file.text().contains("elenco pieno"));
    }

    // The list would lose a longer code at the next start.
    static void codeIsNoLongerThanTheListCanRead()
    {
        SiteWindow window(SettingsWith({}));
        const ModalVisit<frmDettaglio> editor(
            [](frmDettaglio& form) { AcceptNewSite(form, "Sede", QString(600, 'C')); });

        QTest::mouseClick(&Button(window, "cmdAggiungi"), Qt::LeftButton);

        SiteWindow next(window.File().toStdString());
        QCOMPARE(Codes(next), QStringList({QString(497, 'C')}));
        QCOMPARE(Codes(window), Codes(next));
    }

    static void contextMenuOffersTheCommands()
    {
        SiteWindow window(SettingsWith({"A", "B"}));
        QTest::keyClick(&Grid(window), Qt::Key_Down);
        const QPoint second = Grid(window).visualRect(CurrentCell(window)).center();

        const auto openMenu = [&window](QContextMenuEvent::Reason reason, QPoint where) {
            QContextMenuEvent event(reason, where, Grid(window).viewport()->mapToGlobal(where));
            QWidget* const target = reason == QContextMenuEvent::Mouse ? Grid(window).viewport()
                                                                       : static_cast<QWidget*>(&Grid(window));
            QCoreApplication::sendEvent(target, &event);
            return qobject_cast<QMenu*>(QApplication::activePopupWidget());
        };

        QMenu* const menu = openMenu(QContextMenuEvent::Mouse, second);
        QVERIFY(menu != nullptr);
        QStringList commands;
        for (const QAction* const action : menu->actions())
            commands.append(action->text().section('\t', 0, 0));
        QCOMPARE(commands, QStringList({"&Aggiungi...", "&Duplica...", "&Rimuovi...", "", "&Proprietà..."}));
        QCOMPARE(menu->defaultAction()->text().section('\t', 0, 0), "&Proprietà...");
        menu->close();

        QCOMPARE(openMenu(QContextMenuEvent::Keyboard, {}), menu);
        QCOMPARE(menu->pos(),
                 Grid(window).viewport()->mapToGlobal(
                     Grid(window).visualRect(CurrentCell(window).siblingAtColumn(0)).bottomLeft()));
        MessageProbe question(QString("Sì"));
        QTest::keyClick(menu, Qt::Key_R);
        QCOMPARE(question.title(), "Si desidera continuare?");
        QCOMPARE(Codes(window), QStringList({"A"}));
    }

    static void contextMenuWithoutASiteOnlyAdds()
    {
        SiteWindow window(SettingsWith({}));
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
        QCoreApplication::sendEvent(&Grid(window), &event);
        const auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());

        QVERIFY(menu != nullptr);
        QStringList enabled;
        for (const QAction* const action : menu->actions()) {
            if (action->isEnabled() && !action->isSeparator())
                enabled.append(action->text().section('\t', 0, 0));
        }
        QCOMPARE(enabled, QStringList({"&Aggiungi..."}));
    }

    static void propertiesShowTheSiteWithNameAndCodeLocked()
    {
        SiteWindow window(SettingsWith({"A", "B"}));
        Grid(window).setCurrentIndex(Grid(window).model()->index(1, 0));
        const ModalVisit<frmDettaglio> editor([](frmDettaglio& form) {
            QVERIFY(!form.Nuovo());
            const auto& name = SiteWindow::Part<QLineEdit>(form, "txtNomeSito");
            const auto& code = SiteWindow::Part<QLineEdit>(form, "txtCodice");
            QCOMPARE(name.text(), "Sito B");
            QCOMPARE(code.text(), "B");
            QVERIFY(!name.isEnabled());
            QVERIFY(!code.isEnabled());
            form.reject();
        });

        QTest::mouseClick(&Button(window, "cmdProperties"), Qt::LeftButton);
    }

    static void propertiesUpdateStateAndScheduleOnly()
    {
        SiteWindow window(SettingsWith({"A", "B"}));
        Grid(window).setCurrentIndex(Grid(window).model()->index(1, 0));
        const ModalVisit<frmDettaglio> editor([](frmDettaglio& form) {
            SiteWindow::Part<QCheckBox>(form, "chkAbilitato").click();
            SiteWindow::Part<QComboBox>(form, "cboRicorrenza").setCurrentIndex(2);
            QTest::mouseClick(&SiteWindow::Part<QPushButton>(form, "OK"), Qt::LeftButton);
        });

        QTest::mouseClick(&Button(window, "cmdProperties"), Qt::LeftButton);

        QCOMPARE(Cell(window, 1, 0), "Sito B");
        QCOMPARE(Cell(window, 1, 1), "B");
        QCOMPARE(Cell(window, 1, 2), "No");
        QCOMPARE(Cell(window, 1, 3), "Giornaliera");
        QCOMPARE(CurrentRow(window), 1);
        QCOMPARE(Cell(window, 0, 2), "Sì");
        QVERIFY(ColumnsFit(window));
    }

    static void addingAfterPropertiesFindsNameAndCodeEditable()
    {
        SiteWindow window(SettingsWith({"A"}));
        {
            const ModalVisit<frmDettaglio> properties([](frmDettaglio& form) { form.reject(); });
            QTest::mouseClick(&Button(window, "cmdProperties"), Qt::LeftButton);
        }
        const ModalVisit<frmDettaglio> adding([](frmDettaglio& form) { AcceptNewSite(form, "Beta", "B"); });

        QTest::mouseClick(&Button(window, "cmdAggiungi"), Qt::LeftButton);

        QCOMPARE(Codes(window), QStringList({"A", "B"}));
    }

    static void doubleClickAndEnterOpenProperties()
    {
        SiteWindow window(SettingsWith({"A", "B"}));
        QStringList opened;
        const auto visit = [&opened](frmDettaglio& form) {
            opened.append(SiteWindow::Part<QLineEdit>(form, "txtCodice").text());
            form.reject();
        };
        const QPoint second = Grid(window).visualRect(Grid(window).model()->index(1, 0)).center();
        {
            const ModalVisit<frmDettaglio> editor(visit);
            QTest::mouseClick(Grid(window).viewport(), Qt::LeftButton, {}, second);
            QTest::mouseDClick(Grid(window).viewport(), Qt::LeftButton, {}, second);
        }
        {
            const ModalVisit<frmDettaglio> editor(visit);
            QTest::keyClick(&Grid(window), Qt::Key_Return);
        }

        QCOMPARE(opened, QStringList({"B", "B"}));
    }

    static void removingAsksFirst()
    {
        SiteWindow window(SettingsWith({"A", "B"}));
        MessageProbe question(Qt::Key_Escape);

        QTest::mouseClick(&Button(window, "cmdRimuovi"), Qt::LeftButton);

        QCOMPARE(question.text(), "Attenzione, sta per essere rimosso un sito.\nSi desidera continuare?");
        QCOMPARE(question.title(), "Si desidera continuare?");
        QCOMPARE(question.icon(), QMessageBox::Warning);
        QCOMPARE(question.buttons(), QStringList({"Sì", "No"}));
    }

    static void anyAnswerButYesKeepsTheSite()
    {
        SiteWindow window(SettingsWith({"A", "B"}));
        const QByteArray before = window.File();
        {
            MessageProbe question(Qt::Key_Escape);
            QTest::mouseClick(&Button(window, "cmdRimuovi"), Qt::LeftButton);
        }
        MessageProbe question(QString("No"));

        QTest::mouseClick(&Button(window, "cmdRimuovi"), Qt::LeftButton);

        QCOMPARE(Codes(window), QStringList({"A", "B"}));
        QCOMPARE(window.File(), before);
    }

    static void removingTakesSectionAndKeyAndNothingElse()
    {
        SiteWindow window(
            "; prima\r\n[Siti]\r\nA=Alfa\r\n; tra i "
            "siti\r\nB=Beta\r\n\r\n[General]\r\nCom=COM2\r\nAltro=1\r\n"
            "[A]\r\nRicorrenza=-1\r\n; nota su A\r\nMio=2\r\n[B]\r\nRicorrenza=0\r\n[Estranea]\r\nx=y\r\n");
        MessageProbe question(QString("Sì"));

        QTest::mouseClick(&Button(window, "cmdRimuovi"), Qt::LeftButton);

        QCOMPARE(window.File(),
                 "; prima\r\n[Siti]\r\n; tra i siti\r\nB=Beta\r\n\r\n[General]\r\nCom=COM2\r\nAltro=1\r\n"
                 "; nota su A\r\n[B]\r\nRicorrenza=0\r\n[Estranea]\r\nx=y\r\n");
        QCOMPARE(Codes(window), QStringList({"B"}));
    }

    static void removingTheLastSiteDisablesTheCommands()
    {
        SiteWindow window(SettingsWith({"A"}));
        MessageProbe question(QString("Sì"));

        QTest::mouseClick(&Button(window, "cmdRimuovi"), Qt::LeftButton);

        QCOMPARE(Codes(window), QStringList());
        QVERIFY(!Button(window, "cmdRimuovi").isEnabled());
        QVERIFY(!Button(window, "cmdProperties").isEnabled());
        QCOMPARE(window.File(), "[Siti]\r\n[General]\r\nCom=COM2\r\nLog=Corvrec.log\r\n");
    }

    // The pending clicks are handled before the buttons are disabled.
    static void clicksPendingWhileTheLastSiteIsRemovedDoNothing()
    {
        SiteWindow window(SettingsWith({"A"}));
        QObject::connect(Grid(window).model(), &QAbstractItemModel::rowsRemoved, &window.List(), [&window] {
            for (const char* const name : {"cmdRimuovi", "cmdProperties"})
                QMetaObject::invokeMethod(&Button(window, name), &QPushButton::click, Qt::QueuedConnection);
        });
        const MessageProbe question(Qt::Key_Return);

        QTest::mouseClick(&Button(window, "cmdRimuovi"), Qt::LeftButton);

        QCOMPARE(Codes(window), {});
        QVERIFY(!window.Editor().isVisible());
        QCOMPARE(window.File(), "[Siti]\r\n[General]\r\nCom=COM2\r\nLog=Corvrec.log\r\n");
    }

    static void removingSelectsTheLastRow()
    {
        SiteWindow window(SettingsWith({"A", "B", "C"}));
        MessageProbe first(QString("Sì"));
        QTest::mouseClick(&Button(window, "cmdRimuovi"), Qt::LeftButton);
        QCOMPARE(Codes(window), QStringList({"B", "C"}));
        QCOMPARE(CurrentRow(window), 1);
        MessageProbe second(QString("Sì"));

        QTest::mouseClick(&Button(window, "cmdRimuovi"), Qt::LeftButton);

        // The only row is the current one, so the commands act on it.
        QCOMPARE(Codes(window), QStringList({"B"}));
        QCOMPARE(QString::fromStdString(window.List().SelectedSite()), "B");
    }

    static void deleteKeyRemoves()
    {
        SiteWindow window(SettingsWith({"A", "B"}));
        MessageProbe question(Qt::Key_Return);

        QTest::keyClick(&Grid(window), Qt::Key_Delete);

        QCOMPARE(question.text(), "Attenzione, sta per essere rimosso un sito.\nSi desidera continuare?");
        QCOMPARE(Codes(window), QStringList({"B"}));
    }

    static void closeRule_data()
    {
        QTest::addColumn<QJsonArray>("rows");
        QTest::addColumn<bool>("mayClose");
        QFile file(CORVREC_TEST_DATA "/conversions.json");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonArray cases =
            QJsonDocument::fromJson(file.readAll()).object().value("close_rule").toArray();
        QVERIFY(!cases.isEmpty());
        for (qsizetype i = 0; i < cases.size(); ++i)
            QTest::addRow("case %d", static_cast<int>(i))
                << cases.at(i)["rows"].toArray() << cases.at(i)["may_close"].toBool();
    }

    static void closeRule()
    {
        QFETCH(QJsonArray, rows);
        QFETCH(bool, mayClose);
        SiteWindow window(SettingsWith({}));
        std::vector<SiteRow> sites;
        for (const QJsonValue row : rows)
            sites.push_back({.name = "x",
                             .code = "x",
                             .enabled = row["enabled"].toDouble(),
                             .schedule = row["schedule"].toString().toStdString()});
        qobject_cast<SiteGrid*>(Grid(window).model())->SetRows(sites);

        if (mayClose) {
            QTest::mouseClick(&Button(window, "cmdChiudi"), Qt::LeftButton);
            QVERIFY(!window.List().isVisible());
            return;
        }
        MessageProbe message(Qt::Key_Return);
        QTest::mouseClick(&Button(window, "cmdChiudi"), Qt::LeftButton);
        QCOMPARE(message.text(), kContinuousRefused);
        QCOMPARE(message.title(), "Attenzione");
        QCOMPARE(message.icon(), QMessageBox::Warning);
        QCOMPARE(message.buttons(), QStringList({"OK"}));
        QVERIFY(window.List().isVisible());
    }

    static void frameClosesWithoutTheRule()
    {
        SiteWindow window(
            "[Siti]\r\nA=a\r\nB=b\r\n[General]\r\nCom=COM2\r\n[A]\r\nSitoAbilitato=1\r\nRicorrenza=0\r\n"
            "[B]\r\nSitoAbilitato=1\r\nRicorrenza=0\r\n");

        window.List().close();

        QVERIFY(!window.List().isVisible());
    }

    static void escapeDoesNothing()
    {
        SiteWindow window(SettingsWith({"A"}));

        QTest::keyClick(&Grid(window), Qt::Key_Escape);
        QTest::keyClick(&window.List(), Qt::Key_Escape);

        QVERIFY(window.List().isVisible());
    }

    static void mnemonicsPressTheButtons()
    {
        SiteWindow window(SettingsWith({"A"}));

        QTest::keyClick(&Grid(window), Qt::Key_C, Qt::AltModifier);

        QVERIFY(!window.List().isVisible()); // at once, before the next key
    }

    static void tabWalksFromTheGridThroughTheButtons()
    {
        SiteWindow window(SettingsWith({"A"}));
        Grid(window).setFocus();
        QStringList order;
        for (int i = 0; i < 5; ++i) {
            order.append(window.List().focusWidget()->objectName());
            QTest::keyClick(window.List().focusWidget(), Qt::Key_Tab);
        }

        QCOMPARE(order,
                 QStringList({"dgrdGrigliaSiti", "cmdAggiungi", "cmdRimuovi", "cmdProperties", "cmdChiudi"}));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSiti_test> registered;
#include "frmSiti_test.moc"
