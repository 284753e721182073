#include "tests/ui/monkey.h"

#include "tests/support/text_entry.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QPointer>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

#include <algorithm>
#include <array>
#include <numeric>

namespace corvrec
{

namespace
{

constexpr qsizetype kTrailLength = 40;
constexpr std::size_t kLongestPause = 900; // milliseconds; short enough for some double clicks

// How often, in percent, the monkey stays in a dialog instead of closing it.
constexpr std::size_t kLingering = 75;

constexpr QStringView kLetters =
    u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789012345678900112233"
    u" .,:;-_/\\=[]\"'&%()<>?àèéìòùÀßµÿ€ŒЖő漢";

constexpr std::array kEditingKeys{
    Qt::Key_Tab,      Qt::Key_Tab,    Qt::Key_Tab,   Qt::Key_Backtab, Qt::Key_Left,  Qt::Key_Right,
    Qt::Key_Up,       Qt::Key_Down,   Qt::Key_Down,  Qt::Key_Home,    Qt::Key_End,   Qt::Key_PageUp,
    Qt::Key_PageDown, Qt::Key_Delete, Qt::Key_Space, Qt::Key_Return,  Qt::Key_Enter, Qt::Key_Backspace,
    Qt::Key_Insert,   Qt::Key_Escape, Qt::Key_Menu,  Qt::Key_F1,      Qt::Key_F2,    Qt::Key_F4,
    Qt::Key_F5,       Qt::Key_F10,    Qt::Key_F12};

constexpr std::array kShortcuts{
    Qt::CTRL | Qt::Key_A,       Qt::CTRL | Qt::Key_C,       Qt::CTRL | Qt::Key_V,
    Qt::CTRL | Qt::Key_X,       Qt::CTRL | Qt::Key_Z,       Qt::CTRL | Qt::Key_Y,
    Qt::CTRL | Qt::Key_Tab,     Qt::CTRL | Qt::Key_Backtab, Qt::SHIFT | Qt::Key_Insert,
    Qt::SHIFT | Qt::Key_Delete, Qt::SHIFT | Qt::Key_Home,   Qt::SHIFT | Qt::Key_End,
    Qt::CTRL | Qt::Key_Left,    Qt::CTRL | Qt::Key_Delete,  Qt::ALT | Qt::Key_Down,
    Qt::SHIFT | Qt::Key_F10};

QString NameOf(const QWidget& widget)
{
    return QString("%1 %2").arg(widget.metaObject()->className(), widget.objectName());
}

// The key that types this letter; Key_Agrave stands in for all letters beyond ASCII.
Qt::Key KeyOf(QChar letter)
{
    return letter.unicode() < 0x80 ? static_cast<Qt::Key>(letter.toUpper().unicode()) : Qt::Key_Agrave;
}

// These keys close most dialogs.
bool LeadsAway(Qt::Key key)
{
    return key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool LeadsAway(const QAbstractButton& button)
{
    const QString name = button.objectName();
    return name == "OK" || name == "Annulla" || name == "cmdChiudi";
}

} // namespace

struct Monkey::Habit {
    std::size_t weight;
    void (Monkey::*act)(QWidget&);
};

void Monkey::Act(QWidget& front)
{
    static constexpr std::array kHabits{
        Habit{25, &Monkey::TypeLetter},    Habit{25, &Monkey::PressEditingKey},
        Habit{8, &Monkey::PressShortcut},  Habit{3, &Monkey::PressMnemonic},
        Habit{12, &Monkey::Click},         Habit{10, &Monkey::ClickButton},
        Habit{2, &Monkey::DoubleClick},    Habit{2, &Monkey::RightClick},
        Habit{3, &Monkey::PressOrRelease}, Habit{4, &Monkey::MoveMouse},
        Habit{3, &Monkey::TurnWheel},      Habit{3, &Monkey::PasteText},
        Habit{2, &Monkey::DropText},       Habit{2, &Monkey::CommitText},
        Habit{3, &Monkey::MoveFocus},      Habit{1, &Monkey::LeaveAndReturn},
        Habit{1, &Monkey::CloseByFrame},
    };
    static const std::size_t kAll =
        std::transform_reduce(kHabits.begin(), kHabits.end(), std::size_t{0}, std::plus<>(),
                              [](const Habit& habit) { return habit.weight; });
    // A habit may find nothing to act on, so another one is tried until an event is sent.
    for (const std::size_t before = sent_; sent_ == before;) {
        std::size_t pick = chance_.Below(kAll);
        const auto* habit = kHabits.begin();
        for (; pick >= habit->weight; ++habit)
            pick -= habit->weight;
        (this->*habit->act)(front);
    }
}

void Monkey::LetGo(QWidget& front)
{
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        if (held_.testFlag(button)) {
            Mouse(front, QEvent::MouseButtonRelease, button);
            return; // one at a time: the release may have closed the window
        }
    }
}

void Monkey::PressEscape(QWidget& front)
{
    if (held_ != Qt::NoButton)
        LetGo(front);
    else
        Press(front, Qt::Key_Escape);
}

void Monkey::TypeLetter(QWidget& front)
{
    const QChar letter = kLetters[static_cast<qsizetype>(chance_.Below(kLetters.size()))];
    Press(front, KeyOf(letter), {}, QString(letter));
}

void Monkey::PressEditingKey(QWidget& front)
{
    const Qt::Key key = chance_.OneOf(kEditingKeys);
    if (LeadsAway(key) && chance_.Percent(kLingering))
        return;
    Press(front, key, {}, key == Qt::Key_Space ? QString(" ") : QString());
}

void Monkey::PressShortcut(QWidget& front)
{
    const QKeyCombination keys = chance_.OneOf(kShortcuts);
    Press(front, keys.key(), keys.keyboardModifiers());
}

void Monkey::PressMnemonic(QWidget& front)
{
    const auto letter = static_cast<char>('a' + chance_.Below(26));
    Press(front, KeyOf(QChar(letter)), Qt::AltModifier, QString(letter));
}

void Monkey::Click(QWidget& front)
{
    const QPointer<QWidget> target = &AnyChild(front);
    Mouse(*target, QEvent::MouseButtonPress, Qt::LeftButton);
    if (target)
        Mouse(*target, QEvent::MouseButtonRelease, Qt::LeftButton);
}

void Monkey::ClickButton(QWidget& front)
{
    QList<QAbstractButton*> buttons = front.findChildren<QAbstractButton*>();
    buttons.removeIf([&front](const QAbstractButton* button) {
        return !button->isVisible() || !button->isEnabled() || button->window() != &front;
    });
    if (buttons.isEmpty())
        return;
    const QPointer<QAbstractButton> target = chance_.OneOf(buttons);
    if (LeadsAway(*target) && chance_.Percent(kLingering))
        return;
    Mouse(*target, QEvent::MouseButtonPress, Qt::LeftButton);
    if (target)
        Mouse(*target, QEvent::MouseButtonRelease, Qt::LeftButton);
}

void Monkey::DoubleClick(QWidget& front)
{
    const QPointer<QWidget> target = &AnyChild(front);
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                                    QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
        if (target)
            Mouse(*target, type, Qt::LeftButton);
    }
}

void Monkey::RightClick(QWidget& front)
{
    const QPointer<QWidget> target = &AnyChild(front);
    Mouse(*target, QEvent::MouseButtonPress, Qt::RightButton);
    if (target)
        Mouse(*target, QEvent::MouseButtonRelease, Qt::RightButton);
}

void Monkey::PressOrRelease(QWidget& front)
{
    Mouse(AnyChild(front), held_ == Qt::NoButton ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease,
          Qt::LeftButton);
}

void Monkey::MoveMouse(QWidget& front)
{
    Mouse(AnyChild(front), QEvent::MouseMove, Qt::NoButton);
}

void Monkey::TurnWheel(QWidget& front)
{
    QWidget& target = AnyChild(front);
    const QPointF middle = target.mapTo(&front, target.rect().center());
    const int turn = chance_.Percent(50) ? 120 : -120;
    Note("wheel", target);
    QWheelEvent wheel(middle, front.mapToGlobal(middle), {}, {0, turn}, held_, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(front.windowHandle(), &wheel);
}

void Monkey::PasteText(QWidget& front)
{
    const QString text = OddText(chance_);
    Note("clipboard", front, text);
    QGuiApplication::clipboard()->setText(text);
    Press(front, Qt::Key_Insert, Qt::ShiftModifier);
}

void Monkey::DropText(QWidget& front)
{
    QWidget& target = AnyChild(front);
    const QString text = OddText(chance_);
    if (!target.acceptDrops() || !target.isEnabled())
        return;
    Note("drop", target, text);
    Drop(target, text);
}

void Monkey::CommitText(QWidget& front)
{
    QWidget* const target = Focused(front);
    const QString text = OddText(chance_);
    if (target == nullptr || !target->isEnabled() || !target->testAttribute(Qt::WA_InputMethodEnabled))
        return;
    Note("input method", *target, text);
    Commit(*target, text);
}

void Monkey::MoveFocus(QWidget& front)
{
    QWidget& target = AnyChild(front);
    Note("focus", target);
    if (target.focusPolicy() != Qt::NoFocus)
        target.setFocus(chance_.Percent(50) ? Qt::MouseFocusReason : Qt::TabFocusReason);
}

// Switches to another program and back.
void Monkey::LeaveAndReturn(QWidget& front)
{
    Note("leave", front);
    const QPointer<QWidget> window = &front;
    QApplication::setActiveWindow(nullptr);
    if (window)
        QApplication::setActiveWindow(window);
}

void Monkey::CloseByFrame(QWidget& front)
{
    if (!chance_.Percent(20))
        return;
    Note("close", front);
    front.close();
}

void Monkey::Press(QWidget& front, Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    const QWidget* const focused = Focused(front);
    Note("key", focused != nullptr ? *focused : front, QKeySequence(key | modifiers).toString() + " " + text);
    const QPointer<QWindow> window = front.windowHandle();
    qt_handleKeyEvent(window, QEvent::KeyPress, key, modifiers, text);
    if (window && window->isVisible())
        qt_handleKeyEvent(window, QEvent::KeyRelease, key, modifiers, text);
}

void Monkey::Mouse(QWidget& target, QEvent::Type type, Qt::MouseButton button)
{
    QWidget& window = *target.window();
    const auto below = [this](int length) {
        return static_cast<int>(chance_.Below(static_cast<std::size_t>(std::max(length, 1))));
    };
    const QPoint inside(below(target.width()), below(target.height()));
    const QPoint position = target.mapTo(&window, inside);
    if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick)
        held_ |= button;
    else if (type == QEvent::MouseButtonRelease)
        held_ &= ~button;
    if (!window.isVisible()) // an earlier event of the same action has closed it
        return;
    timestamp_ += 1 + static_cast<int>(chance_.Below(kLongestPause));
    Note("mouse", target, QString("%1 %2").arg(type).arg(button));
    qt_handleMouseEvent(window.windowHandle(), position, window.mapToGlobal(position), held_, button, type,
                        {}, timestamp_);
}

QWidget& Monkey::AnyChild(QWidget& front)
{
    QList<QWidget*> children = front.findChildren<QWidget*>();
    children.removeIf(
        [&front](const QWidget* child) { return !child->isVisible() || child->window() != &front; });
    return children.isEmpty() ? front : *chance_.OneOf(children);
}

QWidget* Monkey::Focused(QWidget& front) const
{
    return front.focusWidget() != nullptr ? front.focusWidget() : QApplication::focusWidget();
}

void Monkey::Note(const char* what, const QWidget& target, const QString& detail)
{
    ++sent_;
    trail_.append(QString("%1: %2 %3").arg(what, NameOf(target), detail));
    if (trail_.size() > kTrailLength)
        trail_.removeFirst();
}

} // namespace corvrec
