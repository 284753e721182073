#pragma once

#include <QWidget>

namespace corvrec
{

// How long, in milliseconds, the window system may take to activate a window on a busy machine. Passed only
// by a test that fails.
inline constexpr int kActivationMs = 30000;

// Whether the windows are shown nowhere. There is no window manager then: a window becomes active when it is
// shown for the first time or when the test activates it, and none does when another one closes.
bool IsOffscreen();

// Whether the window is active, for Qt and for the X server. Qt alone says so too early: it hears its own
// request for the window, and believes that the window manager has granted it. A window that is hidden before
// the window manager has acted leaves Qt with an active window that never had the keyboard, and the next one
// is never activated.
bool IsInFront(const QWidget& window);

// Activates a visible window and waits until it is in front, so that the focus really moves in it and its
// shortcuts work.
void BringToFront(QWidget& window);

// Shows the dialog in front of a window that is behind it, both of them in front in their turn.
void ShowInFrontOf(QWidget& behind, QWidget& dialog);

} // namespace corvrec
