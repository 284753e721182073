#pragma once

#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <QStringList>
#include <QTest>
#include <QTimer>

namespace corvrec
{

// Answers every message box with Return as soon as it appears, and keeps the texts. For tests in which boxes
// may or may not appear.
class MessageLog : public QObject
{
public:
    MessageLog() { qApp->installEventFilter(this); }

    [[nodiscard]] const QStringList& Texts() const { return texts_; }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const box = qobject_cast<QMessageBox*>(watched);
        if (box != nullptr && event->type() == QEvent::Show) {
            texts_.append(box->text());
            QTimer::singleShot(0, box, [box] { QTest::keyClick(box, Qt::Key_Return); });
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QStringList texts_;
};

} // namespace corvrec
