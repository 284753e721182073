#pragma once

#include <QGuiApplication>

namespace corvrec
{

// How long, in milliseconds, the window system may take to activate a window on a busy machine. Passed only
// by a test that fails.
inline constexpr int kActivationMs = 30000;

// Whether the windows are shown nowhere. There is no window manager then: a window becomes active when it is
// shown for the first time or when the test activates it, and none does when another one closes.
inline bool IsOffscreen()
{
    return QGuiApplication::platformName() == QLatin1String("offscreen");
}

} // namespace corvrec
