#pragma once

#include "tests/support/activation.h"

#include <QApplication>
#include <QTest>
#include <QTimer>

#include <functional>
#include <utility>

namespace corvrec
{

// Acts inside a modal dialog as a user does: created before the action that opens the dialog, it waits until
// the dialog is the active modal window and then runs the visit, once. The visit must close the dialog.
template <class Dialog>
class ModalVisit
{
public:
    explicit ModalVisit(std::function<void(Dialog&)> visit)
        : visit_(std::move(visit))
    {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Look(); });
        timer_.start(0);
    }

    ~ModalVisit() { QTEST_ASSERT_X(visited_, "ModalVisit", "the dialog did not open"); }

    ModalVisit(const ModalVisit&) = delete;
    ModalVisit& operator=(const ModalVisit&) = delete;

private:
    void Look()
    {
        auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || !dialog->isVisible())
            return;
        // The offscreen platform does not activate a dialog that is shown again. A window manager does, and
        // the visit waits for it.
        if (!IsInFront(*dialog)) {
            if (!IsOffscreen())
                return;
            QApplication::setActiveWindow(dialog);
        }
        timer_.stop();
        visited_ = true;
        visit_(*dialog);
    }

    std::function<void(Dialog&)> visit_;
    QTimer timer_;
    bool visited_ = false;
};

} // namespace corvrec
