#include "tests/support/unanswered_boxes.h"

#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <chrono>

namespace corvrec
{

namespace
{

constexpr std::chrono::seconds kPatience{60}; // longer than a probe waits

void Close(QMessageBox& box)
{
    QTest::qFail(qPrintable("nobody answered: " + box.text()), __FILE__, __LINE__);
    box.done(QMessageBox::NoButton);
}

} // namespace

UnansweredBoxes::UnansweredBoxes()
{
    qApp->installEventFilter(this);
}

bool UnansweredBoxes::eventFilter(QObject* watched, QEvent* event)
{
    auto* const box = qobject_cast<QMessageBox*>(watched);
    if (box != nullptr && event->type() == QEvent::Show)
        QTimer::singleShot(kPatience, box, [box] { Close(*box); });
    return QObject::eventFilter(watched, event);
}

} // namespace corvrec
