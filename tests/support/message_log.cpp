#include "tests/support/message_log.h"

#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

namespace corvrec
{

MessageLog::MessageLog()
{
    qApp->installEventFilter(this);
}

bool MessageLog::eventFilter(QObject* watched, QEvent* event)
{
    auto* const box = qobject_cast<QMessageBox*>(watched);
    if (box != nullptr && event->type() == QEvent::Show) {
        texts_.append(box->text());
        QTimer::singleShot(0, box, [box] { QTest::keyClick(box, Qt::Key_Return); });
    }
    return QObject::eventFilter(watched, event);
}

} // namespace corvrec
