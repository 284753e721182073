#pragma once

#include "tests/support/odd_texts.h"

#include <QEvent>
#include <QPoint>
#include <QStringList>

#include <functional>

class QWidget;
class QWindow;

namespace corvrec
{

// Hands that do as chance has it, at the keyboard, the mouse and the clipboard. Keys and mouse go the way of
// the window system: to the window, through its shortcuts and popups, and not to a window that a dialog
// blocks.
class Monkey
{
public:
    explicit Monkey(Chance& chance)
        : chance_(chance)
    {
    }

    // One event to this window, in front of the user. Whatever the event opens runs inside.
    void Act(QWidget& front);

    // Lets go of the mouse buttons.
    void LetGo(QWidget& front);
    void PressEscape(QWidget& front);

    // The last events, in their order.
    const QStringList& Trail() const { return trail_; }

private:
    struct Habit;

    void TypeLetter(QWidget& front);
    void PressEditingKey(QWidget& front);
    void PressShortcut(QWidget& front);
    void PressMnemonic(QWidget& front);
    void Click(QWidget& front);
    void ClickButton(QWidget& front);
    void DoubleClick(QWidget& front);
    void RightClick(QWidget& front);
    void PressOrRelease(QWidget& front);
    void MoveMouse(QWidget& front);
    void TurnWheel(QWidget& front);
    void PasteText(QWidget& front);
    void DropText(QWidget& front);
    void CommitText(QWidget& front);
    void MoveFocus(QWidget& front);
    void LeaveAndReturn(QWidget& front);
    void CloseByFrame(QWidget& front);

    void Press(QWidget& front, Qt::Key key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {});
    void Mouse(QWidget& target, QEvent::Type type, Qt::MouseButton button);
    QWidget& AnyChild(QWidget& front);
    QWidget* Focused(QWidget& front) const;
    void Note(const char* what, const QWidget& target, const QString& detail = {});

    Chance& chance_;
    QStringList trail_;
    std::size_t sent_ = 0;
    Qt::MouseButtons held_;
    int timestamp_ = 0; // milliseconds
};

} // namespace corvrec
