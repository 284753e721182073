#include "tests/support/cases.h"
#include "tests/support/controls.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/registered_test.h"
#include "tests/support/site_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QToolTip>

#include <algorithm>

namespace corvrec
{

namespace
{

constexpr auto kEmptyFile = "[Siti]\r\n[General]\r\nCom=COM2\r\nLog=Corvrec.log\r\n";

// The site list as a user handles it.
class SiteList : public SiteWindow
{
public:
    using SiteWindow::SiteWindow;

    QTableView& Grid() { return Part<QTableView>(List(), "dgrdGrigliaSiti"); }
    QPushButton& Button(const char* name) { return Part<QPushButton>(List(), name); }
    QLabel& FileLine() { return Part<QLabel>(List(), "lblFile"); }
    int Count() { return Grid().model()->rowCount(); }
    int CurrentRow() { return Grid().currentIndex().row(); }
    QString Selected() { return QString::fromStdString(List().SelectedSite()); }
    QModelIndex Cell(int row, int column) { return Grid().model()->index(row, column); }
    QPoint Place(int row, int column) { return Grid().visualRect(Cell(row, column)).center(); }

    QStringList Row(int row)
    {
        QStringList texts;
        for (int column = 0; column < Grid().model()->columnCount(); ++column)
            texts.append(Cell(row, column).data().toString());
        return texts;
    }

    QStringList Codes()
    {
        QStringList codes;
        for (int row = 0; row < Count(); ++row)
            codes.append(Row(row).at(1));
        return codes;
    }

    void Click(const char* button) { QTest::mouseClick(&Button(button), Qt::LeftButton); }
    void Press(Qt::Key key) { QTest::keyClick(&Grid(), key); }

    // Adds a site with the data that it needs; by default with the button.
    void Add(const QString& name, const QString& code, const std::function<void()>& open = {})
    {
        const ModalVisit<frmDettaglio> editor([&](frmDettaglio& form) {
            QVERIFY(form.Nuovo());
            QVERIFY(Part<QCheckBox>(form, "chkAbilitato").isChecked());
            QTest::keyClicks(&Part<QLineEdit>(form, "txtNomeSito"), name);
            QTest::keyClicks(&Part<QLineEdit>(form, "txtCodice"), code);
            for (const char* const file : {"txtDati", "txtDati2", "txtStorico"})
                Part<QLineEdit>(form, file).setText("C:\\" + code + "\\" + file);
            QTest::mouseClick(&Part<QPushButton>(form, "OK"), Qt::LeftButton);
        });
        open ? open() : Click("cmdAggiungi");
    }

    void Remove()
    {
        const MessageProbe question(QString("Sì"));
        Click("cmdRimuovi");
    }

    // The command texts of the context menu; only those that are enabled, on demand.
    static QStringList Commands(const QMenu& menu, bool onlyEnabled = false)
    {
        QStringList commands;
        for (const QAction* const action : menu.actions()) {
            if (!onlyEnabled || (action->isEnabled() && !action->isSeparator()))
                commands.append(action->text().section('\t', 0, 0));
        }
        return commands;
    }

    QMenu* OpenMenu(QContextMenuEvent::Reason reason, QPoint where)
    {
        QWidget* const viewport = Grid().viewport();
        QContextMenuEvent event(reason, where, viewport->mapToGlobal(where));
        QWidget* const target = reason == QContextMenuEvent::Mouse ? viewport : &Grid();
        QCoreApplication::sendEvent(target, &event);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }

    int WishedWidth(int column)
    {
        const QAbstractItemView& cells = Grid();
        return std::max(cells.sizeHintForColumn(column), Caption(column));
    }
    int Caption(int column) { return Grid().horizontalHeader()->sectionSizeHint(column); }

    // The columns fill the list to the pixel. Each is as wide as its contents. Any remaining width belongs to
    // the last column; any missing width is taken from the name.
    bool ColumnsFit()
    {
        const int room = Grid().viewport()->width() - WishedWidth(1) - WishedWidth(2);
        const int name = std::min(WishedWidth(0), room - WishedWidth(3));
        return Grid().columnWidth(0) == name && Grid().columnWidth(1) == WishedWidth(1) &&
               Grid().columnWidth(2) == WishedWidth(2) && Grid().columnWidth(3) == room - name;
    }
};

// A way to use the list, from one cell to another.
struct Gesture {
    const char* name;
    const char* marked; // the code that is marked afterwards
    QPoint from;        // row and column; kBelow: below the rows
    QPoint to;
    Qt::KeyboardModifiers modifiers;
    Qt::MouseButton button = Qt::LeftButton;
    Qt::Key key = Qt::Key_unknown; // instead of the mouse
};

constexpr QPoint kBelow(-1, -1);

// The second of three sites is marked before.
constexpr std::array kGestures{
    Gesture{"click below the rows", "B", kBelow, kBelow, {}},
    Gesture{"click with Ctrl on the marked row", "B", {1, 0}, {1, 0}, Qt::ControlModifier},
    Gesture{"click with Ctrl on another row", "C", {2, 2}, {2, 2}, Qt::ControlModifier},
    Gesture{"click with Shift", "A", {0, 1}, {0, 1}, Qt::ShiftModifier},
    Gesture{"right click on another row", "C", {2, 0}, {2, 0}, {}, Qt::RightButton},
    Gesture{"drag over the rows", "C", {0, 0}, {2, 1}, {}},
    Gesture{"drag out of the rows", "A", {0, 0}, kBelow, {}},
    Gesture{"drag into the rows", "C", kBelow, {2, 3}, {}},
    Gesture{"Ctrl+Space", "B", {}, {}, Qt::ControlModifier, Qt::NoButton, Qt::Key_Space},
    Gesture{"Ctrl+Down", "C", {}, {}, Qt::ControlModifier, Qt::NoButton, Qt::Key_Down},
    Gesture{"Ctrl+A", "B", {}, {}, Qt::ControlModifier, Qt::NoButton, Qt::Key_A},
    Gesture{"End", "C", {}, {}, {}, Qt::NoButton, Qt::Key_End},
    Gesture{"Home", "A", {}, {}, {}, Qt::NoButton, Qt::Key_Home},
};

void Make(const Gesture& gesture, SiteList& window)
{
    QWidget* const cells = window.Grid().viewport();
    const auto place = [&](QPoint cell) {
        return cell == kBelow ? QPoint(cells->width() / 2, cells->height() - 2)
                              : window.Place(cell.x(), cell.y());
    };
    if (gesture.button == Qt::NoButton) {
        QTest::keyClick(&window.Grid(), gesture.key, gesture.modifiers);
        return;
    }
    QTest::mousePress(cells, gesture.button, gesture.modifiers, place(gesture.from));
    if (gesture.from != gesture.to)
        QTest::mouseMove(cells, place(gesture.to));
    QTest::mouseRelease(cells, gesture.button, gesture.modifiers, place(gesture.to));
}

} // namespace

class frmSiti_test : public QObject
{
    Q_OBJECT

private slots:
    static void showsTheSitesOfTheFile()
    {
        SiteList window(
            "[Siti]\r\nA=Alfa\r\nB=Beta\r\nC=Gamma\r\nD=Delta\r\nE=Epsilon\r\nF=-CaVacca-\r\n"
            "[General]\r\nCom=COM2\r\n"
            "[A]\r\nSitoAbilitato=1\r\nRicorrenza=0\r\n[B]\r\nSitoAbilitato=0\r\nRicorrenza=-1\r\n"
            "[C]\r\nSitoAbilitato=-1\r\nRicorrenza=-2\r\n[D]\r\nRicorrenza= 62\r\n"
            "[E]\r\nRicorrenza=-3\r\n");

        QStringList captions;
        for (int column = 0; column < window.Grid().model()->columnCount(); ++column)
            captions.append(window.Grid().model()->headerData(column, Qt::Horizontal).toString());
        QCOMPARE(captions, QStringList({"Sito", "Codice", "Abilitato", "Ricorrenza"}));
        QCOMPARE(window.Row(0), QStringList({"Alfa", "A", "Sì", "Continua"}));
        QCOMPARE(window.Row(1), QStringList({"Beta", "B", "No", "Oraria"}));
        QCOMPARE(window.Row(2), QStringList({"Gamma", "C", "Sì", "Giornaliera"}));
        QCOMPARE(window.Row(3), QStringList({"Delta", "D", "No", "Settimanale"}));
        QCOMPARE(window.Row(4), QStringList({"Epsilon", "E", "No", ""}));
        QCOMPARE(window.Row(5), QStringList({"0", "F", "No", ""}));
        QCOMPARE(window.Count(), 6);
        QCOMPARE(window.Selected(), "A");
        QVERIFY(window.Grid().selectionModel()->isRowSelected(0));
    }

    static void portIsTheLastDigitOfTheTitle()
    {
        const auto check = [](const QString& com, const QString& caption, int port) {
            SiteWindow window("[General]\r\nCom=" + com.toStdString() + "\r\n");
            QCOMPARE(window.List().windowTitle(), caption);
            QCOMPARE(window.List().ComPort(), port);
        };
        for (const QJsonValue each : Vectors("com_port"))
            check(each["com"].toString(), each["caption"].toString(), each["out"].toInt());
        // Doubled in the property, so that the window system shows them once.
        check("a [*] 3", "Configurazione Corvane Recorder - a [*][*] 3", 3);
    }

    static void emptyListOnlyAdds()
    {
        SiteList window(SettingsWith({}));
        const auto checkNoSite = [&window] {
            QCOMPARE(window.Count(), 0);
            QVERIFY(window.Button("cmdAggiungi").isEnabled());
            QVERIFY(window.Button("cmdChiudi").isEnabled());
            QVERIFY(!window.Button("cmdRimuovi").isEnabled());
            QVERIFY(!window.Button("cmdProperties").isEnabled());
            window.Press(Qt::Key_Return);
            window.Press(Qt::Key_Delete);
            QCOMPARE(QApplication::activeModalWidget(), nullptr);
            QMenu* const menu = window.OpenMenu(QContextMenuEvent::Keyboard, {});
            QCOMPARE(SiteList::Commands(*menu, true), QStringList({"&Aggiungi..."}));
            menu->close();
        };
        checkNoSite();

        window.Add("Alfa", "A");
        QCOMPARE(window.Row(0), QStringList({"Alfa", "A", "Sì", "Continua"}));
        QVERIFY(window.Button("cmdRimuovi").isEnabled());
        QVERIFY(window.Button("cmdProperties").isEnabled());
        QCOMPARE(window.CurrentRow(), 0);

        window.Remove();
        checkNoSite();
        QCOMPARE(window.File(), kEmptyFile);
    }

    static void addingAppendsARowAndSelectsIt()
    {
        SiteList window(SettingsWith({"A", "B"}));
        const QByteArray before = window.File();
        {
            const ModalVisit<frmDettaglio> cancelled([](frmDettaglio& form) {
                QTest::keyClicks(&SiteWindow::Part<QLineEdit>(form, "txtNomeSito"), "Gamma");
                QTest::keyClick(&form, Qt::Key_Escape);
            });
            window.Click("cmdAggiungi");
        }
        QCOMPARE(window.Codes(), QStringList({"A", "B"}));
        QCOMPARE(window.CurrentRow(), 0);
        QCOMPARE(window.File(), before);

        window.Add("Gamma", "C");
        window.Add("Delta", "D", [&window] { window.Press(Qt::Key_Insert); });
        QCOMPARE(window.Codes(), QStringList({"A", "B", "C", "D"}));
        QCOMPARE(window.CurrentRow(), 3);
    }

    static void columnsFitTheListedSites()
    {
        SiteList window(SettingsWith({"A", "Codice di prova"}));
        const int width = window.List().width();
        const auto fillsTheList = [&window] {
            return window.Grid().horizontalScrollBar()->maximum() == 0 &&
                   window.Grid().horizontalHeader()->length() == window.Grid().viewport()->width();
        };
        QVERIFY(window.ColumnsFit() && fillsTheList());
        window.Add("Sede centrale di Reggio nell'Emilia", "C");
        const int withLongName = window.Grid().columnWidth(0);
        QVERIFY(window.ColumnsFit());
        window.Remove();
        QVERIFY(window.ColumnsFit());
        QVERIFY(window.Grid().columnWidth(0) < withLongName);

        window.Add(QString("Sede lunghissima ").repeated(30), "C");
        QVERIFY(fillsTheList());
        QVERIFY(window.Grid().columnWidth(3) >= window.Caption(3));
        window.List().resize(2 * width, window.List().height());
        QTRY_COMPARE(window.List().width(), 2 * width);
        QVERIFY(fillsTheList());

        SiteList longCode("[Siti]\r\n" + std::string(300, 'Z') +
                          "=Sede di Reggio\r\n[General]\r\nCom=COM2\r\n");
        const QTableView& grid = longCode.Grid();
        QCOMPARE(grid.horizontalScrollBar()->maximum(), 0);
        QVERIFY(grid.columnWidth(0) >= std::min(longCode.WishedWidth(0), grid.columnWidth(1)));
    }

    static void longListScrollsToANewRow()
    {
        std::string sites = "[Siti]\r\n";
        for (int number = 10; number < 40; ++number)
            sites += "S" + std::to_string(number) + "=Sito " + std::to_string(number) + "\r\n";
        SiteList window(sites + "[General]\r\nCom=COM2\r\n");
        QVERIFY(window.Grid().verticalScrollBar()->maximum() > 0);
        QCOMPARE(window.Grid().horizontalScrollBar()->maximum(), 0);
        for (const char* const code : {"X", "Y"}) {
            window.Add(code, code);

            const QRect row = window.Grid().visualRect(window.Cell(window.Count() - 1, 0));
            const QRect begin(row.left(), row.top(), 1, row.height());
            QVERIFY(window.Grid().viewport()->rect().contains(begin));
        }
    }

    static void commandsActOnTheMarkedRow_data() { AddCases(kGestures); }
    static void commandsActOnTheMarkedRow()
    {
        QFETCH(const Gesture, given);
        SiteList window(SettingsWith({"A", "B", "C"}));
        QTest::mouseClick(window.Grid().horizontalHeader()->viewport(), Qt::LeftButton); // marks nothing
        window.Press(Qt::Key_Down);

        Make(given, window);

        const QModelIndexList rows = window.Grid().selectionModel()->selectedRows(1);
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows.constFirst().data().toString(), given.marked);
        QCOMPARE(window.Selected(), given.marked);
        QCOMPARE(window.CurrentRow(), rows.constFirst().row());
    }

    static void typingFindsANameWhereverTheMouseHasClicked()
    {
        SiteList window("[Siti]\r\nZ=Milano\r\nO=Roma\r\nR=Napoli\r\n[General]\r\nCom=COM2\r\n");
        for (int column = 0; column < 4; ++column) {
            QTest::mouseClick(window.Grid().viewport(), Qt::LeftButton, {}, window.Place(0, column));

            window.Grid().keyboardSearch({}); // ends the previous search
            QTest::keyClicks(&window.Grid(), "ro");

            QCOMPARE(window.Selected(), "O");
        }
    }

    static void cutNameIsShownAsAToolTip()
    {
        const std::string name = "Sede <b>lunga</b> " + std::string(400, 'x');
        SiteList window("[Siti]\r\nA=" + name + "\r\nB=Beta\r\n[General]\r\nCom=COM2\r\n");
        for (const bool isCut : {true, false}) {
            const QPoint where = window.Place(isCut ? 0 : 1, 0);
            QHelpEvent help(QEvent::ToolTip, where, window.Grid().viewport()->mapToGlobal(where));
            QCoreApplication::sendEvent(window.Grid().viewport(), &help);

            QTRY_COMPARE(QToolTip::isVisible(), isCut);
            QCOMPARE(QToolTip::text().contains("&lt;b&gt;"), isCut);
        }
    }

    static void fileLineSaysWhenTheListIsFull()
    {
        const std::string longCode(493, 'L'); // with its NUL, 494 of 498 bytes
        SiteList window(SettingsWith({longCode}));
        const QLabel& line = window.FileLine();
        const auto checkNote = [&line](const QString& note) {
            QCOMPARE(line.text().section(" – ", 1), note);
            QVERIFY(line.text().section(" – ", 0, 0).endsWith("Corvrec.ini"));
            QVERIFY(line.fontMetrics().horizontalAdvance(line.text()) <= line.width());
        };
        const QFileInfo file(ToText(window.Settings().Path()));
        QCOMPARE(line.accessibleName(), QDir::toNativeSeparators(file.canonicalFilePath()));
        QVERIFY(line.font().pointSizeF() < window.List().font().pointSizeF());

        window.Add("ABC", "ABC");
        checkNote("");
        window.Add("D", "D");
        checkNote("elenco pieno: al prossimo avvio mancheranno gli ultimi siti");
        window.Remove();
        checkNote("");
    }

    static void fileLineCountsTheSitesThatTheListDoesNotShow()
    {
        const std::string longCode(493, 'L'); // with its NUL, 494 of 498 bytes
        SiteList window(SettingsWith({longCode, "ABCDE"}));
        QCOMPARE(window.Count(), 1);

        window.Add("D", "D");

        QVERIFY(window.FileLine().text().endsWith(
            " – elenco pieno: al prossimo avvio mancheranno gli ultimi siti"));
    }

    // The list would lose a longer code at the next start.
    static void codeIsNoLongerThanTheListCanRead()
    {
        SiteList window(SettingsWith({}));

        window.Add("Sede", QString(600, 'C'));

        SiteList next(window.File().toStdString());
        QCOMPARE(next.Codes(), QStringList({QString(497, 'C')}));
        QCOMPARE(window.Codes(), next.Codes());
    }

    static void contextMenuOffersTheCommands()
    {
        SiteList window(SettingsWith({"A", "B"}));
        window.Press(Qt::Key_Down);

        QMenu* const menu = window.OpenMenu(QContextMenuEvent::Mouse, window.Place(1, 1));
        QCOMPARE(SiteList::Commands(*menu),
                 QStringList({"&Aggiungi...", "&Duplica...", "&Rimuovi...", "", "&Proprietà..."}));
        QCOMPARE(menu->defaultAction()->text().section('\t', 0, 0), "&Proprietà...");
        menu->close();

        QCOMPARE(window.OpenMenu(QContextMenuEvent::Keyboard, {}), menu);
        const QPoint belowRow = window.Grid().visualRect(window.Cell(1, 0)).bottomLeft();
        QCOMPARE(menu->pos(), window.Grid().viewport()->mapToGlobal(belowRow));
        menu->close();

        QTest::keyClick(&window.Grid(), Qt::Key_F10, Qt::ShiftModifier);
        QCOMPARE(QApplication::activePopupWidget(), menu);
        QCOMPARE(menu->pos(), window.Grid().viewport()->mapToGlobal(belowRow));
        MessageProbe question(QString("Sì"));
        QTest::keyClick(menu, Qt::Key_R);
        QCOMPARE(question.title(), "Si desidera continuare?");
        QCOMPARE(window.Codes(), QStringList({"A"}));
    }

    static void propertiesUpdateStateAndScheduleOnly()
    {
        SiteList window(SettingsWith({"A", "B"}));
        window.Press(Qt::Key_Down);
        {
            const ModalVisit<frmDettaglio> editor([](frmDettaglio& form) {
                const auto& name = SiteWindow::Part<QLineEdit>(form, "txtNomeSito");
                const auto& code = SiteWindow::Part<QLineEdit>(form, "txtCodice");
                QVERIFY(!form.Nuovo());
                QCOMPARE(name.text(), "Sito B");
                QCOMPARE(code.text(), "B");
                QVERIFY(!name.isEnabled() && !code.isEnabled());
                SiteWindow::Part<QCheckBox>(form, "chkAbilitato").click();
                SiteWindow::Part<QComboBox>(form, "cboRicorrenza").setCurrentIndex(2);
                QTest::mouseClick(&SiteWindow::Part<QPushButton>(form, "OK"), Qt::LeftButton);
            });
            window.Click("cmdProperties");
        }
        QCOMPARE(window.Row(0), QStringList({"Sito A", "A", "Sì", "Oraria"}));
        QCOMPARE(window.Row(1), QStringList({"Sito B", "B", "No", "Giornaliera"}));
        QCOMPARE(window.CurrentRow(), 1);
        QVERIFY(window.ColumnsFit());

        QStringList opened;
        const auto visit = [&opened](frmDettaglio& form) {
            opened.append(SiteWindow::Part<QLineEdit>(form, "txtCodice").text());
            form.reject();
        };
        {
            const ModalVisit<frmDettaglio> editor(visit);
            QTest::mouseClick(window.Grid().viewport(), Qt::LeftButton, {}, window.Place(0, 0));
            QTest::mouseDClick(window.Grid().viewport(), Qt::LeftButton, {}, window.Place(0, 0));
        }
        {
            const ModalVisit<frmDettaglio> editor(visit);
            window.Press(Qt::Key_Return);
        }
        QCOMPARE(opened, QStringList({"A", "A"}));

        window.Add("Gamma", "C"); // name and code can be edited again
        QCOMPARE(window.Codes(), QStringList({"A", "B", "C"}));
    }

    static void removingAsksFirst()
    {
        SiteList window(SettingsWith({"A", "B", "C"}));
        const QByteArray before = window.File();
        for (const bool isByKey : {true, false}) {
            MessageProbe question(Qt::Key_Escape);
            isByKey ? window.Press(Qt::Key_Delete) : window.Click("cmdRimuovi");
            QCOMPARE(question.text(), "Attenzione, sta per essere rimosso un sito.\nSi desidera continuare?");
            QCOMPARE(question.title(), "Si desidera continuare?");
            QCOMPARE(question.icon(), QMessageBox::Warning);
            QCOMPARE(question.buttons(), QStringList({"Sì", "No"}));
        }
        {
            const MessageProbe no(QString("No"));
            window.Click("cmdRimuovi");
        }
        QCOMPARE(window.Codes(), QStringList({"A", "B", "C"}));
        QCOMPARE(window.File(), before);

        window.Remove();
        QCOMPARE(window.Codes(), QStringList({"B", "C"}));
        QCOMPARE(window.Selected(), "C"); // the last row
        const MessageProbe yes(Qt::Key_Return);
        window.Press(Qt::Key_Delete);
        QCOMPARE(window.Codes(), QStringList({"B"}));
        QCOMPARE(window.Selected(), "B");
    }

    static void removingTakesSectionAndKeyAndNothingElse()
    {
        SiteList window("; prima\r\n[Siti]\r\nA=Alfa\r\n; tra i siti\r\nB=Beta\r\n\r\n"
                        "[General]\r\nCom=COM2\r\nAltro=1\r\n[A]\r\nRicorrenza=-1\r\n; nota su A\r\nMio=2\r\n"
                        "[B]\r\nRicorrenza=0\r\n[Estranea]\r\nx=y\r\n");

        window.Remove();

        QCOMPARE(window.File(),
                 "; prima\r\n[Siti]\r\n; tra i siti\r\nB=Beta\r\n\r\n[General]\r\nCom=COM2\r\nAltro=1\r\n"
                 "; nota su A\r\n[B]\r\nRicorrenza=0\r\n[Estranea]\r\nx=y\r\n");
        QCOMPARE(window.Codes(), QStringList({"B"}));
    }

    // The pending clicks are handled before the buttons are disabled.
    static void clicksPendingWhileTheLastSiteIsRemovedDoNothing()
    {
        SiteList window(SettingsWith({"A"}));
        QObject::connect(window.Grid().model(), &QAbstractItemModel::rowsRemoved, &window.List(), [&window] {
            for (const char* const name : {"cmdRimuovi", "cmdProperties"})
                QMetaObject::invokeMethod(&window.Button(name), &QPushButton::click, Qt::QueuedConnection);
        });

        window.Remove();

        QCOMPARE(window.Codes(), {});
        QVERIFY(!window.Editor().isVisible());
        QCOMPARE(window.File(), kEmptyFile);
    }

    static void closeRule()
    {
        for (const QJsonValue each : Vectors("close_rule")) {
            SiteList window(SettingsWith({}));
            std::vector<SiteRow> sites;
            for (const QJsonValue row : each["rows"].toArray())
                sites.push_back({.name = "x",
                                 .code = "x",
                                 .enabled = row["enabled"].toDouble(),
                                 .schedule = row["schedule"].toString() == "Continua"
                                                 ? ScheduleKind::continuous
                                                 : ScheduleKind::hourly});
            qobject_cast<SiteGrid*>(window.Grid().model())->SetRows(sites);

            if (each["may_close"].toBool()) {
                window.Click("cmdChiudi");
                QVERIFY(!window.List().isVisible());
                continue;
            }
            MessageProbe message(Qt::Key_Return);
            window.Click("cmdChiudi");
            QCOMPARE(message.text(),
                     "Impossibile abilitare piu' siti insieme ad un sito con importazione continua.");
            QCOMPARE(message.title(), "Attenzione");
            QCOMPARE(message.icon(), QMessageBox::Warning);
            QCOMPARE(message.buttons(), QStringList({"OK"}));
            QVERIFY(window.List().isVisible());
            window.List().close(); // the frame closes without the rule
            QVERIFY(!window.List().isVisible());
        }
    }

    static void keysOfTheWholeWindow()
    {
        SiteList window(SettingsWith({"A"}));
        window.Grid().setFocus();
        QCOMPARE(TabRound(window.List()),
                 QStringList({"dgrdGrigliaSiti", "cmdAggiungi", "cmdRimuovi", "cmdProperties", "cmdChiudi"}));

        window.Press(Qt::Key_Escape);
        QTest::keyClick(&window.List(), Qt::Key_Escape);
        QVERIFY(window.List().isVisible());

        QTest::keyClick(&window.Grid(), Qt::Key_C, Qt::AltModifier);
        QVERIFY(!window.List().isVisible()); // at once, before the next key
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::frmSiti_test> registered;
#include "frmSiti_test.moc"
