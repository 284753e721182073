// Every window used by keyboard only, and as a screen reader sees it.
#include "core/site/code_tables.h"
#include "tests/support/buffer_window.h"
#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/registered_test.h"
#include "ui/help/guide.h"
#include "ui/widgets/check_list.h"
#include "ui/widgets/texts.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QKeySequence>
#include <QLabel>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>
#include <QTextDocumentFragment>
#include <QToolTip>

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace corvrec
{

namespace
{

// Sites that together need every control of the editor.
enum class Site { added, bySoftwareEachWeek, byModemEachHour };

// All windows of the program, with the tested one in front.
struct Windows {
    Windows(const QString& name, int page, Site site = Site::added)
    {
        buffer.Dialog().SetAzione(-1); // neither connects nor hangs up
        Prepare(site);
        program.At<QTabWidget>("tabSetup").setCurrentIndex(page);
        if (name == "frmGuida")
            QTest::keyClick(&program.List(), Qt::Key_F1);
        const auto all = QApplication::topLevelWidgets();
        const auto named =
            std::ranges::find_if(all, [&name](const QWidget* each) { return each->objectName() == name; });
        if (named == all.end())
            qFatal("no window %s", qPrintable(name));
        window = *named;
        window->show();
        BringToFront(*window);
    }

    void Prepare(Site site)
    {
        if (site == Site::added)
            return;
        const bool isByModem = site == Site::byModemEachHour;
        program.Choice("cboTipoConn").setCurrentIndex(isByModem ? device::stratoboxBuffer : device::pabx);
        program.Choice("cboHandS").setCurrentIndex(1);                      // Software
        program.Choice("cboRicorrenza").setCurrentIndex(isByModem ? 1 : 3); // hourly, weekly
        if (isByModem)
            program.At<QRadioButton>("optRemoto").click();
        for (const char* const alert : {"chkFile", "chkSpazio"})
            program.Box(alert).setChecked(true);
        program.At<CheckList>("lstGiorni").SetMarked(2, true);
    }

    Guide guide{*qApp};
    EditorWindow program{SettingsWith({"A", "B"})};
    BufferWindow buffer;
    QWidget* window = nullptr;
};

void AddWindows()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("page");
    QTest::addColumn<Site>("site");
    QTest::newRow("site list") << "frmSiti" << 0 << Site::added;
    QTest::newRow("connection") << "frmDettaglio" << 0 << Site::added;
    QTest::newRow("connection, Xon and Xoff") << "frmDettaglio" << 0 << Site::bySoftwareEachWeek;
    QTest::newRow("connection, by modem") << "frmDettaglio" << 0 << Site::byModemEachHour;
    QTest::newRow("schedule") << "frmDettaglio" << 1 << Site::added;
    QTest::newRow("schedule, weekly") << "frmDettaglio" << 1 << Site::bySoftwareEachWeek;
    QTest::newRow("schedule, hourly") << "frmDettaglio" << 1 << Site::byModemEachHour;
    QTest::newRow("files") << "frmDettaglio" << 2 << Site::added;
    QTest::newRow("transformations") << "frmTrasfAvanzate" << 0 << Site::added;
    QTest::newRow("alerts") << "frmFileAvanzate" << 0 << Site::added;
    QTest::newRow("alerts, on") << "frmFileAvanzate" << 0 << Site::byModemEachHour;
    QTest::newRow("modem") << "frmModem" << 0 << Site::added;
    QTest::newRow("buffer status") << "frmSX" << 0 << Site::added;
    QTest::newRow("modem connection") << "frmConnessione" << 0 << Site::added;
}

void AddWindowsAndGuide()
{
    AddWindows();
    QTest::newRow("guide") << "frmGuida" << 0 << Site::added;
}

bool CanBeUsed(const QWidget& control)
{
    return control.isVisible() && control.isEnabled();
}

// In a group of option buttons, Tab reaches the checked one; the arrow keys move to the others.
bool IsReachedByArrows(const QWidget& control)
{
    const auto* const option = qobject_cast<const QRadioButton*>(&control);
    return option != nullptr && !option->isChecked();
}

// Names of the controls that a keyboard user must be able to reach, sorted.
QStringList ControlsToReach(const QWidget& window)
{
    QStringList names;
    for (const QWidget* const control : window.findChildren<QWidget*>()) {
        const bool isReached = control->window() == &window && CanBeUsed(*control) &&
                               (control->focusPolicy() & Qt::TabFocus) != 0 &&
                               control->focusProxy() == nullptr && !IsReachedByArrows(*control);
        if (isReached)
            names.append(control->objectName());
    }
    names.sort();
    return names;
}

// The targets of each mnemonic; several where captions share a letter.
std::map<QKeySequence, std::vector<QWidget*>> Mnemonics(const QWidget& window)
{
    std::map<QKeySequence, std::vector<QWidget*>> found;
    const auto add = [&found](const QString& caption, QWidget* target) {
        const QKeySequence mnemonic = QKeySequence::mnemonic(caption);
        if (!mnemonic.isEmpty())
            found[mnemonic].push_back(target);
    };
    for (QWidget* const control : window.findChildren<QWidget*>()) {
        if (control->window() != &window || !CanBeUsed(*control))
            continue;
        if (auto* const label = qobject_cast<QLabel*>(control);
            label != nullptr && label->buddy() != nullptr) {
            if (CanBeUsed(*label->buddy()))
                add(label->text(), label->buddy());
        } else if (auto* const button = qobject_cast<QAbstractButton*>(control)) {
            add(button->text(), button);
        }
    }
    return found;
}

// Whether the mnemonic reached the control: a field then has the focus, a button was clicked.
class Arrival
{
public:
    explicit Arrival(QWidget& target)
        : target_(target)
    {
        if (auto* const button = qobject_cast<QAbstractButton*>(&target))
            QObject::connect(button, &QAbstractButton::clicked, &watch_, [this] { wasClicked_ = true; });
    }

    [[nodiscard]] bool HasCome() const { return wasClicked_ || target_.window()->focusWidget() == &target_; }

private:
    QWidget& target_;
    QObject watch_;
    bool wasClicked_ = false;
};

// Disconnects the buttons, so that a click opens nothing.
void Silence(QWidget& window)
{
    for (QAbstractButton* const button : window.findChildren<QAbstractButton*>())
        QObject::disconnect(button, &QAbstractButton::clicked, nullptr, nullptr);
}

void CheckMarks(QAccessibleInterface& seen, const CheckList& list)
{
    QCOMPARE(seen.childCount(), list.count());
    QVERIFY(list.count() > 0);
    for (int row = 0; row < list.count(); ++row) {
        QAccessibleInterface& entry = *seen.child(row);
        QCOMPARE(entry.text(QAccessible::Name), list.item(row)->text());
        QCOMPARE(entry.state().checked != 0, list.Marked(row));
    }
}

void Check(QAccessibleInterface& control, QWidget& widget)
{
    const QByteArray where = widget.objectName().toUtf8();
    const QAccessible::Role role = control.role();
    QVERIFY2(role != QAccessible::NoRole && role != QAccessible::Client && role != QAccessible::Pane,
             qPrintable(QString("%1 has role %2").arg(widget.objectName()).arg(role)));
    // A list reports its current entry as its name; the name required here says what the list is for.
    const bool isNamed = role == QAccessible::ComboBox ? !AccessibleName(widget).isEmpty()
                                                       : !control.text(QAccessible::Name).isEmpty();
    QVERIFY2(isNamed, where + " has no name");
    if (role == QAccessible::EditableText || role == QAccessible::ComboBox)
        QVERIFY2(control.text(QAccessible::Value) == Shown(widget),
                 where + " reports another value than it shows");
    if (role == QAccessible::CheckBox || role == QAccessible::RadioButton)
        QVERIFY2((control.state().checked != 0) == (Shown(widget) == "on"), where);
    QVERIFY2((control.state().disabled != 0) == !widget.isEnabled(), where);
    if (const auto* const list = qobject_cast<const CheckList*>(&widget))
        CheckMarks(control, *list);
}

} // namespace

class access_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase()
    {
        InstallTexts(*qApp);
        QAccessible::setActive(true);
    }

    static void tabLeadsToEveryControl_data() { AddWindows(); }
    static void tabLeadsToEveryControl()
    {
        QFETCH(const QString, name);
        QFETCH(const int, page);
        QFETCH(const Site, site);
        const Windows windows(name, page, site);

        QStringList reached = TabRound(*windows.window);
        reached.sort();

        QVERIFY(!reached.isEmpty());
        QCOMPARE(reached, ControlsToReach(*windows.window));
    }

    static void tabLeavesTheGuideAfterItsLinks()
    {
        constexpr int kMoreThanItsLinks = 300;
        const Windows windows("frmGuida", 0);

        QStringList reached;
        for (int press = 0; press < kMoreThanItsLinks; ++press) {
            reached.append(windows.window->focusWidget()->objectName());
            QTest::keyClick(windows.window->focusWidget(), Qt::Key_Tab);
        }

        reached.removeDuplicates();
        reached.sort();
        QCOMPARE(reached, ControlsToReach(*windows.window));
    }

    static void shiftTabLeadsBack_data() { AddWindows(); }
    static void shiftTabLeadsBack()
    {
        QFETCH(const QString, name);
        QFETCH(const int, page);
        QFETCH(const Site, site);
        const Windows windows(name, page, site);
        QStringList forward = TabRound(*windows.window);

        QStringList back;
        for (qsizetype i = 0; i < forward.size(); ++i) {
            back.prepend(windows.window->focusWidget()->objectName());
            QTest::keyClick(windows.window->focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
        }

        forward.append(forward.takeFirst()); // so that both start at the same control
        QCOMPARE(back, forward);
    }

    static void mnemonicsActivateTheirControls_data() { AddWindowsAndGuide(); }
    static void mnemonicsActivateTheirControls()
    {
        QFETCH(const QString, name);
        QFETCH(const int, page);
        QFETCH(const Site, site);
        Windows windows(name, page, site);
        Silence(*windows.window);

        for (const auto& [mnemonic, targets] : Mnemonics(*windows.window)) {
            windows.Prepare(site); // the previous mnemonic may have disabled something
            const auto key = static_cast<Qt::Key>(mnemonic[0].key());
            std::vector<std::unique_ptr<Arrival>> arrivals;
            for (QWidget* const target : targets)
                arrivals.push_back(std::make_unique<Arrival>(*target));
            // Where captions share a letter, each press moves to the next of them.
            std::set<const Arrival*> come;
            for (std::size_t press = 0; press < targets.size(); ++press) {
                QTest::keyClick(windows.window, key, Qt::AltModifier);
                for (const auto& arrival : arrivals) {
                    if (arrival->HasCome())
                        come.insert(arrival.get());
                }
            }
            QVERIFY2(come.size() == targets.size(), qPrintable(mnemonic.toString() + " in " + name));
        }
    }

    static void arrowsLeadThroughTheOptions()
    {
        const Windows windows("frmModem", 0);
        auto options = windows.window->findChildren<QRadioButton*>();
        options.removeIf([](const QRadioButton* option) { return !CanBeUsed(*option); });
        QVERIFY(options.size() > 1);
        const auto chosen =
            std::ranges::find_if(options, [](const QRadioButton* each) { return each->isChecked(); });
        QVERIFY(chosen != options.end());
        (*chosen)->setFocus();

        QStringList visited{(*chosen)->objectName()};
        for (const Qt::Key arrow : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Left, Qt::Key_Up}) {
            QTest::keyClick(windows.window->focusWidget(), arrow);
            visited.append(windows.window->focusWidget()->objectName());
        }

        visited.removeDuplicates();
        QCOMPARE(visited.size(), options.size());
    }

    static void pagesAreTurnedByKeyboard()
    {
        Windows windows("frmDettaglio", 0);
        auto& pages = windows.program.At<QTabWidget>("tabSetup");

        for (const int page : {1, 2, 0}) {
            QTest::keyClick(windows.window->focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
            QCOMPARE(pages.currentIndex(), page);
        }
    }

    static void screenReaderFindsNameRoleAndValue_data() { AddWindowsAndGuide(); }
    static void screenReaderFindsNameRoleAndValue()
    {
        QFETCH(const QString, name);
        QFETCH(const int, page);
        QFETCH(const Site, site);
        const Windows windows(name, page, site);
        QVERIFY(!QAccessible::queryAccessibleInterface(windows.window)->text(QAccessible::Name).isEmpty());

        int controls = 0;
        for (QWidget* const control : windows.window->findChildren<QWidget*>()) {
            const bool isControl = control->window() == windows.window && control->isVisible() &&
                                   (control->focusPolicy() & Qt::TabFocus) != 0 &&
                                   control->focusProxy() == nullptr;
            if (!isControl)
                continue;
            ++controls;
            QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(control);
            QVERIFY2(seen != nullptr, qPrintable(control->objectName()));
            Check(*seen, *control);
        }
        QVERIFY(controls > 0);
    }

    static void screenReaderDistinguishesTheControls_data() { AddWindows(); }
    static void screenReaderDistinguishesTheControls()
    {
        QFETCH(const QString, name);
        QFETCH(const int, page);
        QFETCH(const Site, site);
        const Windows windows(name, page, site);

        QStringList names;
        for (QWidget* const control : windows.window->findChildren<QWidget*>()) {
            if (control->window() == windows.window && control->isVisible() &&
                !control->objectName().isEmpty() &&
                (qobject_cast<QAbstractButton*>(control) != nullptr ||
                 qobject_cast<QLineEdit*>(control) != nullptr))
                names.append(qobject_cast<QAbstractButton*>(control) != nullptr
                                 ? QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name)
                                 : AccessibleName(*control));
        }

        QStringList different = names;
        different.removeDuplicates();
        QVERIFY(!names.isEmpty());
        QCOMPARE(names, different);
    }

    static void screenReaderReadsTheToolTipAsDescription_data() { AddWindows(); }
    static void screenReaderReadsTheToolTipAsDescription()
    {
        QFETCH(const QString, name);
        QFETCH(const int, page);
        QFETCH(const Site, site);
        const Windows windows(name, page, site);

        for (QWidget* const control : windows.window->findChildren<QWidget*>()) {
            if (control->window() != windows.window || control->toolTip().isEmpty())
                continue;
            QAccessibleInterface& seen = *QAccessible::queryAccessibleInterface(control);
            QCOMPARE(seen.text(QAccessible::Description),
                     QTextDocumentFragment::fromHtml(control->toolTip()).toPlainText());
            const QString itsName = seen.text(QAccessible::Name);
            control->setToolTip({});
            control->setAccessibleDescription({});
            QCOMPARE(itsName, seen.text(QAccessible::Name));
        }
    }

    static void toolTipAppearsUnderTheMouse_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<QString>("name");
        QTest::newRow("list") << 0 << "cboTipoConn";
        QTest::newRow("label of a field") << 0 << "lblVelocita";
        QTest::newRow("disabled button") << 0 << "cmdSX";
        QTest::newRow("field") << 1 << "mskOrario";
        QTest::newRow("list with check marks") << 1 << "lstGiorni";
    }

    static void toolTipAppearsUnderTheMouse()
    {
        QFETCH(const int, page);
        QFETCH(const QString, name);
        const Windows windows("frmDettaglio", page, Site::bySoftwareEachWeek);
        const auto* const control = windows.window->findChild<QWidget*>(name);
        const QPoint place = control->mapTo(windows.window, control->rect().center());
        QWidget* const under = windows.window->childAt(place);
        const QPoint global = windows.window->mapToGlobal(place);
        QHelpEvent event(QEvent::ToolTip, under->mapFromGlobal(global), global);

        QApplication::sendEvent(under, &event);

        QVERIFY(!control->toolTip().isEmpty());
        QCOMPARE(QToolTip::text(), control->toolTip());
        QToolTip::hideText();
    }

    static void screenReaderReadsTheListOfSites()
    {
        Windows windows("frmSiti", 0);
        const auto tables = windows.window->findChildren<QAbstractItemView*>();
        QVERIFY(!tables.isEmpty());
        QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(tables.front());
        QCOMPARE(seen->role(), QAccessible::Table);
        QAccessibleTableInterface* const table = seen->tableInterface();
        QVERIFY(table != nullptr);

        QCOMPARE(table->rowCount(), 2);
        QStringList row;
        for (int column = 0; column < table->columnCount(); ++column)
            row.append(table->cellAt(1, column)->text(QAccessible::Name));
        QCOMPARE(row, (QStringList{"Sito B", "B", "Sì", "Oraria"}));
    }

    static void screenReaderReadsTheValuesOfABuffer()
    {
        Windows windows("frmSX", 0);
        windows.buffer.DeviceReplies("\x02"
                                     "0262144xx055xM001002R30210211126"
                                     "1803*");

        windows.buffer.Click("cmdStato");

        const auto read = [&windows](const char* label) {
            auto& value = SiteWindow::Part<QWidget>(*windows.window, label);
            return AccessibleName(value) + " " +
                   QAccessible::queryAccessibleInterface(&value)->text(QAccessible::Name);
        };
        QCOMPARE(read("lblMemoria"), "Memoria totale: 0262144");
        QCOMPARE(read("lblGuasto"), "Guasti: Caduta 220 V");
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::access_test> registered;
#include "access_test.moc"
