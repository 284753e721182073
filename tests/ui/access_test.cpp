// Every window used by keyboard only, and as a screen reader sees it.
#include "tests/support/all_windows.h"
#include "tests/support/controls.h"
#include "tests/support/registered_test.h"
#include "ui/widgets/check_list.h"

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

bool CanBeUsed(const QWidget& control)
{
    return control.isVisible() && control.isEnabled();
}

bool IsStop(const QWidget& control)
{
    return control.isVisible() && (control.focusPolicy() & Qt::TabFocus) != 0 &&
           control.focusProxy() == nullptr;
}

// In a group of option buttons, Tab reaches the checked one; the arrow keys move to the others.
bool IsReachedByArrows(const QWidget& control)
{
    const auto* const option = qobject_cast<const QRadioButton*>(&control);
    return option != nullptr && !option->isChecked();
}

// Names of the controls that a keyboard user must be able to reach, sorted.
QStringList ControlsToReach(AllWindows& windows)
{
    QStringList names;
    for (const QWidget* const control : windows.Controls()) {
        if (IsStop(*control) && control->isEnabled() && !IsReachedByArrows(*control))
            names.append(control->objectName());
    }
    names.sort();
    return names;
}

// The targets of each mnemonic; several where captions share a letter.
std::map<QKeySequence, std::vector<QWidget*>> Mnemonics(AllWindows& windows)
{
    std::map<QKeySequence, std::vector<QWidget*>> found;
    const auto add = [&found](const QString& caption, QWidget* target) {
        const QKeySequence mnemonic = QKeySequence::mnemonic(caption);
        if (target != nullptr && CanBeUsed(*target) && !mnemonic.isEmpty())
            found[mnemonic].push_back(target);
    };
    for (QLabel* const label : windows.Controls<QLabel>()) {
        if (CanBeUsed(*label))
            add(label->text(), label->buddy());
    }
    for (QAbstractButton* const button : windows.Controls<QAbstractButton>())
        add(button->text(), button);
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

// Where captions share a letter, each press moves to the next of them.
bool LeadsToAll(QWidget& window, const QKeySequence& mnemonic, const std::vector<QWidget*>& targets)
{
    std::vector<std::unique_ptr<Arrival>> arrivals;
    arrivals.reserve(targets.size());
    for (QWidget* const target : targets)
        arrivals.push_back(std::make_unique<Arrival>(*target));
    std::set<const Arrival*> come;
    for (std::size_t press = 0; press < targets.size(); ++press) {
        QTest::keyClick(&window, static_cast<Qt::Key>(mnemonic[0].key()), Qt::AltModifier);
        for (const auto& arrival : arrivals) {
            if (arrival->HasCome())
                come.insert(arrival.get());
        }
    }
    return come.size() == targets.size();
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

// The name, role and value of one control.
void CheckSeen(QWidget& widget)
{
    QAccessibleInterface& seen = *QAccessible::queryAccessibleInterface(&widget);
    const QByteArray where = widget.objectName().toUtf8();
    const QAccessible::Role role = seen.role();
    QVERIFY2(role != QAccessible::NoRole && role != QAccessible::Client && role != QAccessible::Pane, where);
    // A list reports its current entry as its name; the name required here says what the list is for.
    const QString name =
        role == QAccessible::ComboBox ? AccessibleName(widget) : seen.text(QAccessible::Name);
    QVERIFY2(!name.isEmpty(), where);
    if (role == QAccessible::EditableText || role == QAccessible::ComboBox)
        QVERIFY2(seen.text(QAccessible::Value) == Shown(widget), where);
    if (role == QAccessible::CheckBox || role == QAccessible::RadioButton)
        QVERIFY2((seen.state().checked != 0) == (Shown(widget) == "on"), where);
    QVERIFY2((seen.state().disabled != 0) == !widget.isEnabled(), where);
    if (const auto* const list = qobject_cast<const CheckList*>(&widget))
        CheckMarks(seen, *list);
}

// The tool tip is the description, and not the name.
void CheckDescription(QWidget& control)
{
    QAccessibleInterface& seen = *QAccessible::queryAccessibleInterface(&control);
    QCOMPARE(seen.text(QAccessible::Description),
             QTextDocumentFragment::fromHtml(control.toolTip()).toPlainText());
    const QString name = seen.text(QAccessible::Name);
    control.setToolTip({});
    control.setAccessibleDescription({});
    QCOMPARE(name, seen.text(QAccessible::Name));
}

} // namespace

class access_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { QAccessible::setActive(true); }

    static void tabLeadsToEveryControlAndBack_data() { AddWindows(); }
    static void tabLeadsToEveryControlAndBack()
    {
        QFETCH(const WindowCase, tested);
        AllWindows windows(tested);

        QStringList forward = TabRound(windows.Tested());
        QStringList back;
        for (qsizetype i = 0; i < forward.size(); ++i) {
            back.prepend(windows.Tested().focusWidget()->objectName());
            QTest::keyClick(windows.Tested().focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
        }

        QVERIFY(!forward.isEmpty());
        forward.append(forward.takeFirst()); // so that both start at the same control
        QCOMPARE(back, forward);
        forward.sort();
        QCOMPARE(forward, ControlsToReach(windows));
    }

    static void tabLeavesTheGuideAfterItsLinks()
    {
        constexpr int kMoreThanItsLinks = 300;
        AllWindows windows(kGuideCase);

        QStringList reached;
        for (int press = 0; press < kMoreThanItsLinks; ++press) {
            reached.append(windows.Tested().focusWidget()->objectName());
            QTest::keyClick(windows.Tested().focusWidget(), Qt::Key_Tab);
        }

        reached.removeDuplicates();
        reached.sort();
        QCOMPARE(reached, ControlsToReach(windows));
    }

    static void mnemonicsActivateTheirControls_data()
    {
        AddWindows();
        QTest::newRow("guide") << kGuideCase;
    }
    static void mnemonicsActivateTheirControls()
    {
        QFETCH(const WindowCase, tested);
        AllWindows windows(tested);
        for (QAbstractButton* const button : windows.Controls<QAbstractButton>())
            QObject::disconnect(button, &QAbstractButton::clicked, nullptr, nullptr); // opens nothing

        for (const auto& [mnemonic, targets] : Mnemonics(windows)) {
            windows.Prepare(tested.site); // the previous mnemonic may have disabled something
            QVERIFY2(LeadsToAll(windows.Tested(), mnemonic, targets), qPrintable(mnemonic.toString()));
        }
    }

    static void arrowsLeadThroughTheOptions()
    {
        AllWindows windows({.window = "frmModem"});
        auto options = windows.Controls<QRadioButton>();
        options.removeIf([](const QRadioButton* option) { return !CanBeUsed(*option); });
        QVERIFY(options.size() > 1);
        const auto chosen =
            std::ranges::find_if(options, [](const QRadioButton* each) { return each->isChecked(); });
        (*chosen)->setFocus();

        QStringList visited{(*chosen)->objectName()};
        for (const Qt::Key arrow : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Left, Qt::Key_Up}) {
            QTest::keyClick(windows.Tested().focusWidget(), arrow);
            visited.append(windows.Tested().focusWidget()->objectName());
        }

        visited.removeDuplicates();
        QCOMPARE(visited.size(), options.size());
    }

    static void pagesAreTurnedByKeyboard()
    {
        AllWindows windows({.window = "frmDettaglio"});

        for (const int page : {1, 2, 0}) {
            QTest::keyClick(windows.Tested().focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
            QCOMPARE(windows.Program().Tab(), page);
        }
    }

    static void screenReaderDescribesEveryControl_data() { mnemonicsActivateTheirControls_data(); }
    static void screenReaderDescribesEveryControl()
    {
        QFETCH(const WindowCase, tested);
        AllWindows windows(tested);
        QAccessibleInterface& window = *QAccessible::queryAccessibleInterface(&windows.Tested());
        QVERIFY(!window.text(QAccessible::Name).isEmpty());

        QStringList names; // of buttons and fields
        for (QWidget* const control : windows.Controls()) {
            if (IsStop(*control))
                CheckSeen(*control);
            if (!control->toolTip().isEmpty() && !control->objectName().isEmpty())
                CheckDescription(*control);
            if (!control->isVisible() || control->objectName().isEmpty())
                continue;
            if (qobject_cast<QAbstractButton*>(control) != nullptr)
                names.append(QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name));
            else if (qobject_cast<QLineEdit*>(control) != nullptr)
                names.append(AccessibleName(*control));
        }

        QStringList different = names;
        different.removeDuplicates();
        QVERIFY(!names.isEmpty());
        QCOMPARE(names, different);
    }

    static void toolTipAppearsUnderTheMouse()
    {
        // A list, a label, a disabled button, a field and a list with check marks.
        const std::vector<std::pair<int, const char*>> controls{
            {0, "cboTipoConn"}, {0, "lblVelocita"}, {0, "cmdSX"}, {1, "mskOrario"}, {1, "lstGiorni"}};
        AllWindows windows({.window = "frmDettaglio", .site = Site::bySoftwareEachWeek});
        for (const auto& [page, name] : controls) {
            windows.Program().At<QTabWidget>("tabSetup").setCurrentIndex(page);
            const auto& control = windows.Program().At<QWidget>(name);
            const QPoint place = control.mapTo(&windows.Tested(), control.rect().center());
            QWidget* const under = windows.Tested().childAt(place);
            const QPoint global = windows.Tested().mapToGlobal(place);
            QHelpEvent event(QEvent::ToolTip, under->mapFromGlobal(global), global);

            QApplication::sendEvent(under, &event);

            QVERIFY2(!control.toolTip().isEmpty(), name);
            QCOMPARE(QToolTip::text(), control.toolTip());
            QToolTip::hideText();
        }
    }

    static void screenReaderReadsTheListOfSites()
    {
        AllWindows windows({.window = "frmSiti"});
        QAccessibleInterface* const seen =
            QAccessible::queryAccessibleInterface(windows.Controls<QAbstractItemView>().constFirst());
        QCOMPARE(seen->role(), QAccessible::Table);
        QAccessibleTableInterface* const table = seen->tableInterface();

        QCOMPARE(table->rowCount(), 2);
        QStringList row;
        for (int column = 0; column < table->columnCount(); ++column)
            row.append(table->cellAt(1, column)->text(QAccessible::Name));
        QCOMPARE(row, (QStringList{"Sito B", "B", "Sì", "Oraria"}));
    }

    static void screenReaderReadsTheValuesOfABuffer()
    {
        AllWindows windows({.window = "frmSX"});
        windows.Buffer().DeviceReplies("\x02"
                                       "0262144xx055xM001002R30210211126"
                                       "1803*");

        windows.Buffer().Click("cmdStato");

        const auto read = [&windows](const char* label) {
            auto& value = SiteWindow::Part<QWidget>(windows.Tested(), label);
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
