#pragma once

#include "tests/support/odd_texts.h"
#include "tests/support/text_entry.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QPointer>
#include <QStringList>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

#include <algorithm>
#include <array>

namespace corvrec
{

// Random use of keyboard, mouse and clipboard. Keys and mouse events take the window system's way: they go to
// the window, pass its shortcuts and popups, and do not reach a window that a dialog blocks.
class Monkey
{
public:
    explicit Monkey(Chance& chance)
        : chance_(chance)
    {
    }

    // Sends one event to this window, which must be the one in front. Whatever the event opens runs inside
    // the call.
    void Act(QWidget& front)
    {
        static const auto kHabits = [] {
            std::vector<void (Monkey::*)(QWidget&)> habits; // each as often as it weighs
            const auto add = [&habits](std::size_t weight, void (Monkey::*habit)(QWidget&)) {
                habits.insert(habits.end(), weight, habit);
            };
            add(25, &Monkey::TypeLetter);
            add(25, &Monkey::PressEditingKey);
            add(8, &Monkey::PressShortcut);
            add(3, &Monkey::PressMnemonic);
            add(16, &Monkey::Click);
            add(10, &Monkey::ClickButton);
            add(3, &Monkey::PressOrRelease);
            add(4, &Monkey::MoveMouse);
            add(3, &Monkey::TurnWheel);
            add(7, &Monkey::EnterText);
            add(3, &Monkey::MoveFocus);
            add(1, &Monkey::LeaveAndReturn);
            add(1, &Monkey::CloseByFrame);
            return habits;
        }();
        // A habit may find nothing to act on, so another one is tried until an event is sent.
        for (const std::size_t before = sent_; sent_ == before;)
            (this->*chance_.OneOf(kHabits))(front);
    }

    // Releases one held mouse button, or presses Escape.
    void PressEscape(QWidget& front)
    {
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
            if (held_.testFlag(button)) {
                Mouse(front, QEvent::MouseButtonRelease, button);
                return; // one at a time: the release may have closed the window
            }
        }
        Press(front, Qt::Key_Escape);
    }

    // The last events, oldest first.
    const QStringList& Trail() const { return trail_; }

private:
    static constexpr qsizetype kTrailLength = 40;
    static constexpr std::size_t kLongestPause = 900; // milliseconds; short enough for some double clicks

    // How often, in percent, the monkey stays in a dialog instead of closing it.
    static constexpr std::size_t kLingering = 75;

    // The key that types this letter; Key_Agrave stands in for all letters beyond ASCII.
    static Qt::Key KeyOf(QChar letter)
    {
        return letter.unicode() < 0x80 ? static_cast<Qt::Key>(letter.toUpper().unicode()) : Qt::Key_Agrave;
    }

    void TypeLetter(QWidget& front)
    {
        static constexpr QStringView kLetters =
            u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789012345678900112233"
            u" .,:;-_/\\=[]\"'&%()<>?àèéìòùÀßµÿ€ŒЖő漢";
        const QChar letter = chance_.OneOf(kLetters);
        Press(front, KeyOf(letter), {}, QString(letter));
    }

    void PressEditingKey(QWidget& front)
    {
        static constexpr std::array kKeys{
            Qt::Key_Tab,    Qt::Key_Tab,    Qt::Key_Tab,       Qt::Key_Backtab, Qt::Key_Left,
            Qt::Key_Right,  Qt::Key_Up,     Qt::Key_Down,      Qt::Key_Down,    Qt::Key_Home,
            Qt::Key_End,    Qt::Key_PageUp, Qt::Key_PageDown,  Qt::Key_Delete,  Qt::Key_Space,
            Qt::Key_Return, Qt::Key_Enter,  Qt::Key_Backspace, Qt::Key_Insert,  Qt::Key_Escape,
            Qt::Key_Menu,   Qt::Key_F1,     Qt::Key_F2,        Qt::Key_F4,      Qt::Key_F5,
            Qt::Key_F10,    Qt::Key_F12};
        const Qt::Key key = chance_.OneOf(kKeys);
        const bool leadsAway = key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter;
        if (!leadsAway || !chance_.Percent(kLingering))
            Press(front, key, {}, key == Qt::Key_Space ? QString(" ") : QString());
    }

    void PressShortcut(QWidget& front)
    {
        static constexpr std::array kShortcuts{
            Qt::CTRL | Qt::Key_A,       Qt::CTRL | Qt::Key_C,       Qt::CTRL | Qt::Key_V,
            Qt::CTRL | Qt::Key_X,       Qt::CTRL | Qt::Key_Z,       Qt::CTRL | Qt::Key_Y,
            Qt::CTRL | Qt::Key_Tab,     Qt::CTRL | Qt::Key_Backtab, Qt::SHIFT | Qt::Key_Insert,
            Qt::SHIFT | Qt::Key_Delete, Qt::SHIFT | Qt::Key_Home,   Qt::SHIFT | Qt::Key_End,
            Qt::CTRL | Qt::Key_Left,    Qt::CTRL | Qt::Key_Delete,  Qt::ALT | Qt::Key_Down,
            Qt::SHIFT | Qt::Key_F10};
        const QKeyCombination keys = chance_.OneOf(kShortcuts);
        Press(front, keys.key(), keys.keyboardModifiers());
    }

    void PressMnemonic(QWidget& front)
    {
        const QChar letter(static_cast<char16_t>('a' + chance_.Below(26)));
        Press(front, KeyOf(letter), Qt::AltModifier, QString(letter));
    }

    // Left, right or double.
    void Click(QWidget& front)
    {
        const QPointer<QWidget> target = &AnyChild(front);
        ClickOn(target, chance_.Percent(12) ? Qt::RightButton : Qt::LeftButton);
        if (target && held_ == Qt::NoButton && chance_.Percent(12)) {
            Mouse(*target, QEvent::MouseButtonDblClick, Qt::LeftButton);
            if (target)
                Mouse(*target, QEvent::MouseButtonRelease, Qt::LeftButton);
        }
    }

    void ClickButton(QWidget& front)
    {
        QList<QAbstractButton*> buttons = front.findChildren<QAbstractButton*>();
        buttons.removeIf([&front](const QAbstractButton* button) {
            return !button->isVisible() || !button->isEnabled() || button->window() != &front;
        });
        if (buttons.isEmpty())
            return;
        QAbstractButton* const target = chance_.OneOf(buttons);
        const bool leadsAway = QStringList{"OK", "Annulla", "cmdChiudi"}.contains(target->objectName());
        if (!leadsAway || !chance_.Percent(kLingering))
            ClickOn(target, Qt::LeftButton);
    }

    void PressOrRelease(QWidget& front)
    {
        Mouse(AnyChild(front), held_ == Qt::NoButton ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease,
              Qt::LeftButton);
    }

    void MoveMouse(QWidget& front) { Mouse(AnyChild(front), QEvent::MouseMove, Qt::NoButton); }

    void TurnWheel(QWidget& front)
    {
        QWidget& target = AnyChild(front);
        const QPointF middle = target.mapTo(&front, target.rect().center());
        const int turn = chance_.Percent(50) ? 120 : -120;
        Note("wheel", target);
        QWheelEvent wheel(middle, front.mapToGlobal(middle), {}, {0, turn}, held_, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(front.windowHandle(), &wheel);
    }

    // By clipboard, drop or input method.
    void EnterText(QWidget& front)
    {
        const QString text = OddText(chance_);
        QWidget* const focused = Focused(front);
        QWidget& target = AnyChild(front);
        if (chance_.Percent(40)) {
            Note("clipboard", front, text);
            QGuiApplication::clipboard()->setText(text);
            Press(front, Qt::Key_Insert, Qt::ShiftModifier);
        } else if (chance_.Percent(50) && target.acceptDrops() && target.isEnabled()) {
            Note("drop", target, text);
            Drop(target, text);
        } else if (focused != nullptr && focused->isEnabled() &&
                   focused->testAttribute(Qt::WA_InputMethodEnabled)) {
            Note("input method", *focused, text);
            Commit(*focused, text);
        }
    }

    void MoveFocus(QWidget& front)
    {
        QWidget& target = AnyChild(front);
        Note("focus", target);
        if (target.focusPolicy() != Qt::NoFocus)
            target.setFocus(chance_.Percent(50) ? Qt::MouseFocusReason : Qt::TabFocusReason);
    }

    // Switches to another program and back.
    void LeaveAndReturn(QWidget& front)
    {
        Note("leave", front);
        const QPointer<QWidget> window = &front;
        QApplication::setActiveWindow(nullptr);
        if (window)
            QApplication::setActiveWindow(window);
    }

    void CloseByFrame(QWidget& front)
    {
        if (!chance_.Percent(20))
            return;
        Note("close", front);
        front.close();
    }

    void Press(QWidget& front, Qt::Key key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {})
    {
        const QWidget* const focused = Focused(front);
        const QString keys = QKeySequence(key | modifiers).toString();
        Note("key", focused != nullptr ? *focused : front, keys + " " + text);
        const QPointer<QWindow> window = front.windowHandle();
        qt_handleKeyEvent(window, QEvent::KeyPress, key, modifiers, text);
        if (window && window->isVisible())
            qt_handleKeyEvent(window, QEvent::KeyRelease, key, modifiers, text);
    }

    void ClickOn(const QPointer<QWidget>& target, Qt::MouseButton button)
    {
        Mouse(*target, QEvent::MouseButtonPress, button);
        if (target)
            Mouse(*target, QEvent::MouseButtonRelease, button);
    }

    // At any point of the target.
    void Mouse(QWidget& target, QEvent::Type type, Qt::MouseButton button)
    {
        QWidget& window = *target.window();
        const auto below = [this](int length) {
            return static_cast<int>(chance_.Below(static_cast<std::size_t>(std::max(length, 1))));
        };
        const QPoint inside(below(target.width()), below(target.height()));
        const QPoint position = target.mapTo(&window, inside);
        if (type != QEvent::MouseMove)
            held_.setFlag(button, type != QEvent::MouseButtonRelease);
        if (!window.isVisible()) // an earlier event of the same action has closed it
            return;
        timestamp_ += 1 + static_cast<int>(chance_.Below(kLongestPause));
        Note("mouse", target, QString("%1 %2").arg(type).arg(button));
        qt_handleMouseEvent(window.windowHandle(), position, window.mapToGlobal(position), held_, button,
                            type, {}, timestamp_);
    }

    QWidget& AnyChild(QWidget& front)
    {
        QList<QWidget*> children = front.findChildren<QWidget*>();
        children.removeIf(
            [&front](const QWidget* child) { return !child->isVisible() || child->window() != &front; });
        return children.isEmpty() ? front : *chance_.OneOf(children);
    }

    static QWidget* Focused(QWidget& front)
    {
        return front.focusWidget() != nullptr ? front.focusWidget() : QApplication::focusWidget();
    }

    void Note(const char* what, const QWidget& target, const QString& detail = {})
    {
        ++sent_;
        const QString name = QString("%1 %2").arg(target.metaObject()->className(), target.objectName());
        trail_.append(QString("%1: %2 %3").arg(what, name, detail));
        if (trail_.size() > kTrailLength)
            trail_.removeFirst();
    }

    Chance& chance_;
    QStringList trail_;
    std::size_t sent_ = 0;
    Qt::MouseButtons held_;
    int timestamp_ = 0; // milliseconds
};

} // namespace corvrec
