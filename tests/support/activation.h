#pragma once

#include <QWidget>

namespace corvrec
{

// Milliseconds that the window system may take to activate a window on a busy machine. Only a failing test
// waits that long.
inline constexpr int kActivationMs = 30000;

// Whether the platform is offscreen. Without a window manager, a window becomes active when it is first shown
// or when the test activates it, but not when another window closes.
bool IsOffscreen();

// Whether the window is active for Qt and for the X server. Qt alone reports it too early: it treats its own
// request as granted. If a window is then hidden before the window manager has acted, Qt keeps an active
// window that never had the keyboard, and the next window is never activated.
bool IsInFront(const QWidget& window);

// Activates a visible window and waits until it is in front, so that the focus can move in it and its
// shortcuts work.
void BringToFront(QWidget& window);

// Shows the window and then the dialog, each of them in front when it is shown.
void ShowInFrontOf(QWidget& behind, QWidget& dialog);

} // namespace corvrec
