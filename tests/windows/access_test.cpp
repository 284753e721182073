// Every window by keyboard alone, and as a screen reader sees it.
#include "help/guide.h"
#include "resources/texts.h"
#include "tests/support/buffer_window.h"
#include "tests/support/controls.h"
#include "tests/support/editor_window.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QKeySequence>
#include <QLabel>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

namespace corvrec
{

namespace
{

// All windows of the program, the one under test in front.
struct Windows {
    Windows(const QString& name, int page)
    {
        buffer.Dialog().SetAzione(-1); // neither connects nor hangs up
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

    Guide guide{*qApp};
    EditorWindow program{SettingsWith({"A", "B"})};
    BufferWindow buffer;
    QWidget* window = nullptr;
};

void AddWindows()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("page");
    QTest::newRow("site list") << "frmSiti" << 0;
    QTest::newRow("connection") << "frmDettaglio" << 0;
    QTest::newRow("schedule") << "frmDettaglio" << 1;
    QTest::newRow("files") << "frmDettaglio" << 2;
    QTest::newRow("transformations") << "frmTrasfAvanzate" << 0;
    QTest::newRow("alerts") << "frmFileAvanzate" << 0;
    QTest::newRow("modem") << "frmModem" << 0;
    QTest::newRow("buffer status") << "frmSX" << 0;
    QTest::newRow("modem connection") << "frmConnessione" << 0;
}

void AddWindowsAndGuide()
{
    AddWindows();
    QTest::newRow("guide") << "frmGuida" << 0;
}

bool CanBeUsed(const QWidget& control)
{
    return control.isVisible() && control.isEnabled();
}

// Of a group of option buttons Tab reaches the chosen one; the arrow keys lead to the others.
bool IsReachedByArrows(const QWidget& control)
{
    const auto* const option = qobject_cast<const QRadioButton*>(&control);
    return option != nullptr && !option->isChecked();
}

// Names of the controls that a user at the keyboard has to come to, sorted.
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

// What Alt and a letter lead to: several where captions share a letter.
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

// Whether the key sequence has led to the control: a field has the focus, a button was clicked.
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

// A button that only shows that it was clicked: what it opens is not the question here.
void Silence(QWidget& window)
{
    for (QAbstractButton* const button : window.findChildren<QAbstractButton*>())
        QObject::disconnect(button, &QAbstractButton::clicked, nullptr, nullptr);
}

void Check(QAccessibleInterface& control, const QWidget& widget)
{
    const QByteArray where = widget.objectName().toUtf8();
    const QAccessible::Role role = control.role();
    QVERIFY2(role != QAccessible::NoRole && role != QAccessible::Client && role != QAccessible::Pane,
             qPrintable(QString("%1 has role %2").arg(widget.objectName()).arg(role)));
    QVERIFY2(!control.text(QAccessible::Name).isEmpty(), where + " has no name");
    if (role == QAccessible::EditableText || role == QAccessible::ComboBox)
        QVERIFY2(control.text(QAccessible::Value) == Shown(widget),
                 where + " tells another value than it shows");
    if (role == QAccessible::CheckBox || role == QAccessible::RadioButton)
        QVERIFY2((control.state().checked != 0) == (Shown(widget) == "on"), where);
    QVERIFY2((control.state().disabled != 0) == !widget.isEnabled(), where);
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
    static void tabLeadsToEveryControl();
    static void tabLeadsThroughTheLinksOfTheGuideAndOn();
    static void shiftTabLeadsBack_data() { AddWindows(); }
    static void shiftTabLeadsBack();
    static void mnemonicsLeadWhereTheyStand_data() { AddWindowsAndGuide(); }
    static void mnemonicsLeadWhereTheyStand();
    static void arrowsLeadThroughTheOptions();
    static void pagesAreTurnedByKeyboard();
    static void screenReaderFindsNameRoleAndValue_data() { AddWindowsAndGuide(); }
    static void screenReaderFindsNameRoleAndValue();
    static void screenReaderReadsTheListOfSites();
    static void screenReaderReadsTheValuesOfABuffer();
};

void access_test::tabLeadsToEveryControl()
{
    QFETCH(const QString, name);
    QFETCH(const int, page);
    const Windows windows(name, page);

    QStringList reached = TabRound(*windows.window);
    reached.sort();

    QVERIFY(!reached.isEmpty());
    QCOMPARE(reached, ControlsToReach(*windows.window));
}

void access_test::tabLeadsThroughTheLinksOfTheGuideAndOn()
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

void access_test::shiftTabLeadsBack()
{
    QFETCH(const QString, name);
    QFETCH(const int, page);
    const Windows windows(name, page);
    QStringList forward = TabRound(*windows.window);

    QStringList back;
    for (qsizetype i = 0; i < forward.size(); ++i) {
        back.prepend(windows.window->focusWidget()->objectName());
        QTest::keyClick(windows.window->focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
    }

    forward.append(forward.takeFirst()); // both rounds begin at the same control
    QCOMPARE(back, forward);
}

void access_test::mnemonicsLeadWhereTheyStand()
{
    QFETCH(const QString, name);
    QFETCH(const int, page);
    const Windows windows(name, page);
    Silence(*windows.window);

    for (const auto& [mnemonic, targets] : Mnemonics(*windows.window)) {
        const auto key = static_cast<Qt::Key>(mnemonic[0].key());
        std::vector<std::unique_ptr<Arrival>> arrivals;
        for (QWidget* const target : targets)
            arrivals.push_back(std::make_unique<Arrival>(*target));
        // Where captions share a letter each press leads to the next of them.
        std::size_t come = 0;
        for (std::size_t press = 0; press < targets.size(); ++press) {
            QTest::keyClick(windows.window, key, Qt::AltModifier);
            come += std::ranges::any_of(arrivals, [](const auto& arrival) { return arrival->HasCome(); })
                        ? 1U
                        : 0U;
        }
        QVERIFY2(come == targets.size(), qPrintable(mnemonic.toString() + " in " + name));
    }
}

void access_test::arrowsLeadThroughTheOptions()
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

void access_test::pagesAreTurnedByKeyboard()
{
    Windows windows("frmDettaglio", 0);
    auto& pages = windows.program.At<QTabWidget>("tabSetup");

    for (const int page : {1, 2, 0}) {
        QTest::keyClick(windows.window->focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(pages.currentIndex(), page);
    }
}

void access_test::screenReaderFindsNameRoleAndValue()
{
    QFETCH(const QString, name);
    QFETCH(const int, page);
    const Windows windows(name, page);
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

void access_test::screenReaderReadsTheListOfSites()
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

void access_test::screenReaderReadsTheValuesOfABuffer()
{
    Windows windows("frmSX", 0);
    windows.buffer.DeviceReplies("\x02"
                                 "0262144xx055xM001002R30210211126"
                                 "1803*");

    windows.buffer.Click("cmdStato");

    const auto read = [&windows](const char* label) {
        return QAccessible::queryAccessibleInterface(&SiteWindow::Part<QWidget>(*windows.window, label))
            ->text(QAccessible::Name);
    };
    QCOMPARE(read("lblMemoria"), "0262144");
    QCOMPARE(read("lblGuasto"), "Caduta 220 V");
}

} // namespace corvrec

QTEST_MAIN(corvrec::access_test)
#include "access_test.moc"
