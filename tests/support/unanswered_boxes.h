#pragma once

#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <chrono>

namespace corvrec
{

// Closes a message box that nobody answers and fails the test; without it, the test would hang.
class UnansweredBoxes : public QObject
{
public:
    UnansweredBoxes() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        constexpr std::chrono::seconds kLongerThanAProbeWaits{60};
        auto* const box = qobject_cast<QMessageBox*>(watched);
        if (box != nullptr && event->type() == QEvent::Show)
            QTimer::singleShot(kLongerThanAProbeWaits, box, [box] { Close(*box); });
        return QObject::eventFilter(watched, event);
    }

private:
    static void Close(QMessageBox& box)
    {
        QTest::qFail(qPrintable("nobody answered: " + box.text()), __FILE__, __LINE__);
        box.done(QMessageBox::NoButton);
    }
};

} // namespace corvrec
