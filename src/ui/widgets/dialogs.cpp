#include "ui/widgets/dialogs.h"

#include "ui/widgets/scrolled_contents.h"
#include "ui/widgets/texts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QMargins>
#include <QRadioButton>
#include <QScreen>
#include <QShortcutEvent>
#include <QStyle>
#include <QTabWidget>
#include <QTextDocument>
#include <QTimer>
#include <QVariant>
#include <QWidget>

#include <algorithm>

namespace corvrec
{

namespace
{

// The text whose number is in the widget's dynamic property; null without a usable number, or when the table
// has no such text.
QString TextByProperty(const QWidget& widget, const char* property)
{
    const int id = TagId(widget.property(property).toString());
    return id > 0 ? FindText(id) : QString();
}

QString TextByTag(const QWidget& widget)
{
    return TextByProperty(widget, "tag");
}

// A field's label has the field's tool tip.
QString TipOf(const QWidget& widget)
{
    const auto* const label = qobject_cast<const QLabel*>(&widget);
    const bool namesField = label != nullptr && label->buddy() != nullptr;
    return TextByProperty(namesField ? *label->buddy() : widget, kToolTip);
}

// The captions of all pages are one text, separated by "|".
void SetTabCaptions(QTabWidget& tabs, const QString& text)
{
    const QStringList captions = text.split(u'|');
    const int count = std::min(tabs.count(), static_cast<int>(captions.size()));
    for (int page = 0; page < count; ++page)
        tabs.setTabText(page, captions.at(page));
}

// Widgets of other types have no caption.
void SetCaption(QWidget& widget, const QString& text)
{
    if (auto* const label = qobject_cast<QLabel*>(&widget))
        label->setText(text);
    else if (auto* const button = qobject_cast<QAbstractButton*>(&widget))
        button->setText(text);
    else if (auto* const group = qobject_cast<QGroupBox*>(&widget))
        group->setTitle(text);
    else if (auto* const tabs = qobject_cast<QTabWidget*>(&widget))
        SetTabCaptions(*tabs, text);
}

void SetTip(QWidget& widget, const QString& text)
{
    // Qt wraps rich text only; plain text would be one line, wider than a small screen.
    widget.setToolTip(Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal));
    widget.setAccessibleDescription(text); // otherwise a screen reader would read the mark-up
}

// Clicks a button for its mnemonic. A mnemonic shared by several controls only moves the focus, as in Qt.
class MnemonicClick : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const button = qobject_cast<QAbstractButton*>(watched);
        if (button == nullptr || event->type() != QEvent::Shortcut ||
            static_cast<QShortcutEvent*>(event)->isAmbiguous())
            return QObject::eventFilter(watched, event);
        if (button->isCheckable()) // a push button leaves the focus where it is
            button->setFocus();
        button->click();
        return true;
    }
};

// The same conditions as for Tab. A widget with a focus proxy leaves the focus to the proxy.
bool CanTakeFocus(const QWidget& widget, const QWidget& scope)
{
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.focusProxy() == nullptr &&
           widget.isEnabled() && widget.isVisibleTo(&scope);
}

// The first control in `scope`, in tab order (which begins at the window), that can take the focus; null when
// there is none.
QWidget* FirstOf(const QWidget& scope)
{
    const QWidget* const window = scope.window();
    for (QWidget* next = window->nextInFocusChain(); next != window; next = next->nextInFocusChain()) {
        if (scope.isAncestorOf(next) && CanTakeFocus(*next, scope))
            return next;
    }
    return nullptr;
}

void SendFocusEvent(QWidget& widget, QEvent::Type type)
{
    QFocusEvent event(type, Qt::OtherFocusReason);
    QCoreApplication::sendEvent(&widget, &event);
}

// The tab control of which the widget is a page; null when it is no page.
QTabWidget* TabsOfPage(const QWidget& widget)
{
    const QWidget* const stack = widget.parentWidget();
    auto* const tabs = stack == nullptr ? nullptr : qobject_cast<QTabWidget*>(stack->parentWidget());
    return tabs != nullptr && tabs->indexOf(&widget) != -1 ? tabs : nullptr;
}

// The width that a frame needs for the whole title between its icon and buttons. An estimate: frames belong
// to the desktop.
int TitleWidth(const QWidget& window)
{
    constexpr int iconAndButtons = 10; // in line heights
    const QFontMetrics metrics = window.fontMetrics();
    return window.windowTitle().isEmpty()
               ? 0
               : metrics.horizontalAdvance(window.windowTitle()) + iconAndButtons * metrics.lineSpacing();
}

const QScreen& ScreenOf(const QWidget& window)
{
    const QWidget* const parent = window.parentWidget();
    return parent != nullptr ? *parent->screen() : *QGuiApplication::primaryScreen();
}

// The frame that the desktop will put around the window: the same as around its parent's window if that is on
// the screen, otherwise an estimate.
QMargins FrameAround(const QWidget& window)
{
    const QWidget* const parent =
        window.parentWidget() == nullptr ? nullptr : window.parentWidget()->window();
    if (parent != nullptr && parent->isVisible() && parent->frameSize() != parent->size()) {
        const QRect outside = parent->frameGeometry();
        const QRect inside = parent->geometry();
        return {inside.left() - outside.left(), inside.top() - outside.top(),
                outside.right() - inside.right(), outside.bottom() - inside.bottom()};
    }
    const int border = window.style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, &window);
    const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    return {border, title + border, border, border};
}

// The area for the window, without its frame.
QRect RoomOn(const QScreen& screen, const QWidget& window)
{
    return screen.availableGeometry().marginsRemoved(FrameAround(window));
}

// The size that shows everything. (QWidget::adjustSize would stop at two thirds of the screen.) If wrapped
// text makes the window too high, it becomes wider, with fewer lines.
QSize WantedSize(const QWidget& window, const QSize& room)
{
    QSize wanted = window.sizeHint().expandedTo({TitleWidth(window), 0});
    const QLayout* const layout = window.layout();
    if (layout == nullptr || !layout->hasHeightForWidth())
        return wanted;
    constexpr int step = 10; // pixels
    int width = std::min(wanted.width(), room.width());
    while (layout->totalHeightForWidth(width) > room.height() && width + step <= room.width())
        width += step;
    return {std::max(wanted.width(), width), layout->totalHeightForWidth(width)};
}

// The smallest size that shows everything; lists have their own scroll bars.
QSize LeastSize(const QWidget& window, int width)
{
    const QLayout* const layout = window.layout();
    if (layout == nullptr)
        return {};
    QSize least = layout->totalMinimumSize();
    if (layout->hasHeightForWidth())
        least.setHeight(layout->totalMinimumHeightForWidth(std::max(width, least.width())));
    return least;
}

// The size that a window should have, and the place and size that it was given.
struct Placement {
    QSize wanted;
    QPoint givenPosition;
    QSize givenSize;
};

// Centres the window on the whole screen, but keeps a window that fits the free area inside it. A window that
// is still too large shows its upper left corner.
void Place(QWidget& window, Placement& placement)
{
    const QScreen& screen = ScreenOf(window);
    const QMargins frame = FrameAround(window);
    const QRect free = screen.availableGeometry();
    window.resize(placement.wanted.boundedTo(free.marginsRemoved(frame).size()));

    const QRect area = screen.geometry();
    const auto placed = [](int middle, int begin, int end) { return std::max(std::min(middle, end), begin); };
    const QSize outside = window.size().grownBy(frame);
    window.move(placed(area.left() + (area.width() - window.width()) / 2, free.left(),
                       free.left() + free.width() - outside.width()),
                placed(area.top() + (area.height() - window.height()) / 2, free.top(),
                       free.top() + free.height() - outside.height()));
    placement.givenPosition = window.pos();
    placement.givenSize = window.size();
}

// Places the window again just before its first show, unless it has been moved since.
class PlaceAtFirstShow : public QObject
{
public:
    PlaceAtFirstShow(QWidget& window, const Placement& placement)
        : QObject(&window)
        , window_(window)
        , placement_(placement)
    {
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && !event->spontaneous()) {
            watched->removeEventFilter(this);
            if (window_.pos() == placement_.givenPosition && window_.size() == placement_.givenSize)
                Place(window_, placement_);
            deleteLater();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QWidget& window_;
    Placement placement_;
};

} // namespace

void LocaliseDialog(QWidget& window)
{
    const QString title = TextByTag(window);
    if (!title.isNull())
        window.setWindowTitle(title);
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        if (widget->window() != &window) // owned dialogs localise themselves
            continue;
        if (const QString caption = TextByTag(*widget); !caption.isNull())
            SetCaption(*widget, caption);
        if (const QString tip = TipOf(*widget); !tip.isNull())
            SetTip(*widget, tip);
    }
}

void ClickAtOnce(QWidget& window)
{
    for (QAbstractButton* const button : window.findChildren<QAbstractButton*>())
        button->installEventFilter(new MnemonicClick(button));
}

void TabToChosenOption(QWidget& window)
{
    for (QRadioButton* const option : window.findChildren<QRadioButton*>()) {
        QObject::connect(option, &QRadioButton::toggled, option, [option](bool chosen) {
            option->setFocusPolicy(chosen ? Qt::StrongFocus : Qt::ClickFocus);
        });
    }
}

void CentreDialog(QWidget& window)
{
    const QSize room = RoomOn(ScreenOf(window), window).size();
    Placement placement{.wanted = WantedSize(window, room), .givenPosition = {}, .givenSize = {}};
    const QSize least = LeastSize(window, std::min(placement.wanted.width(), room.width()));
    const bool isTooWide = least.width() > room.width();
    const bool isTooHigh = least.height() > room.height();
    if (isTooWide || isTooHigh) {
        const int bar = window.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &window);
        ScrollContents(window, room.width() - bar);
        placement.wanted += QSize(isTooHigh ? bar : 0, isTooWide ? bar : 0);
    }
    Place(window, placement);
    // By its first show the frame may be known.
    window.installEventFilter(new PlaceAtFirstShow(window, placement));
}

bool IsWithinWindow(const QFocusEvent& event)
{
    return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason &&
           event.reason() != Qt::MenuBarFocusReason;
}

void FocusField(QWidget& field)
{
    QWidget* const left = field.window()->focusWidget();
    const bool isActive = left != nullptr && left->hasFocus();
    const QWidget* scope = field.window();
    for (QWidget* widget = &field; !widget->isWindow(); widget = widget->parentWidget()) {
        QTabWidget* const tabs = TabsOfPage(*widget);
        if (tabs == nullptr)
            continue;
        tabs->setCurrentWidget(widget);
        if (scope->isWindow())
            scope = widget; // the innermost page
    }
    QWidget* const target = CanTakeFocus(field, *scope) ? &field : FirstOf(*scope);
    if (target == nullptr)
        return;
    target->setFocus(Qt::OtherFocusReason);

    // Qt sends no focus events when the focus moves in an inactive window, or does not move. The events sent
    // when the window is activated later (Qt::ActiveWindowFocusReason) run no rule. So send them here.
    if (left != nullptr && left != target && !isActive)
        SendFocusEvent(*left, QEvent::FocusOut);
    if (left == target || !target->hasFocus())
        SendFocusEvent(*target, QEvent::FocusIn);
}

void FocusFirst(QWidget& window)
{
    if (QWidget* const first = FirstOf(window))
        first->setFocus(Qt::OtherFocusReason);
}

namespace
{

bool HasOpenDialog(const QWidget& window)
{
    const auto dialogs = window.findChildren<QDialog*>();
    return std::ranges::any_of(dialogs, [](const QDialog* dialog) { return dialog->isVisible(); });
}

} // namespace

FocusReturn::FocusReturn(QApplication& application)
{
    application.installEventFilter(this);
}

// Only while the program has the keyboard: a window that closes by itself must not take it from another
// program.
bool FocusReturn::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Hide || event->spontaneous() ||
        QGuiApplication::applicationState() != Qt::ApplicationActive)
        return false;
    const auto* const dialog = qobject_cast<const QDialog*>(watched);
    if (dialog == nullptr || dialog->parentWidget() == nullptr)
        return false;
    // Once the calls that closed the window have ended: they may close its owner too.
    QWidget* const owner = dialog->parentWidget()->window();
    QTimer::singleShot(0, owner, [owner] {
        if (owner->isVisible() && !HasOpenDialog(*owner))
            owner->activateWindow();
    });
    return false;
}

BusyPointer::BusyPointer(const QList<QWidget*>& windows)
    : windows_(windows.begin(), windows.end())
{
    for (QWidget* const window : windows)
        window->setCursor(Qt::WaitCursor);
}

BusyPointer::~BusyPointer()
{
    Restore();
}

void BusyPointer::Restore()
{
    for (const QPointer<QWidget>& window : windows_) {
        if (window)
            window->unsetCursor();
    }
    windows_.clear();
}

} // namespace corvrec
