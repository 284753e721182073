#include "tests/support/activation.h"

#include <QApplication>
#include <QTest>

#ifdef CORVREC_XCB
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>
#endif

#include <tuple>

namespace corvrec
{

namespace
{

// Whether the X server sends keys to the window. True on platforms without an X server.
bool HasKeyboard([[maybe_unused]] const QWidget& window)
{
#ifdef CORVREC_XCB
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (xcb_connection_t* const server = x11 != nullptr ? x11->connection() : nullptr) {
        const std::unique_ptr<xcb_get_input_focus_reply_t, decltype(&std::free)> reply(
            xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr), &std::free);
        return reply && reply->focus == window.winId();
    }
#endif
    return true;
}

} // namespace

bool IsOffscreen()
{
    return QGuiApplication::platformName() == QLatin1String("offscreen");
}

bool IsInFront(const QWidget& window)
{
    // Not isActiveWindow(), which is true for a dialog as soon as its parent is active.
    return QApplication::activeWindow() == &window && HasKeyboard(window);
}

void BringToFront(QWidget& window)
{
    const auto isInFront = [&window] { return IsInFront(window); };
    // Processes pending X events first: after one of its lists was open, a window is briefly inactive.
    QGuiApplication::sync();
    // Repeats the request: the first is lost while the window manager moves the focus from a window that
    // closed.
    for (int askedMs = 0; !isInFront() && askedMs < kActivationMs; askedMs += kActivationMs / 10) {
        window.activateWindow();
        std::ignore = QTest::qWaitFor(isInFront, kActivationMs / 10);
    }
    QVERIFY(isInFront());
    QCoreApplication::processEvents(); // line edits handle the activation in a queued call
}

void ShowInFrontOf(QWidget& behind, QWidget& dialog)
{
    if (!dialog.isVisible()) { // a window manager does not activate a window behind a modal dialog
        behind.show();
        BringToFront(behind);
    }
    dialog.show();
    BringToFront(dialog);
}

} // namespace corvrec
