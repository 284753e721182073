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
    void Act(QWidget& front);

    // Releases one held mouse button.
    void LetGo(QWidget& front);
    void PressEscape(QWidget& front);

    // The last events, oldest first.
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
