#pragma once

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <functional>

namespace corvrec
{

// Answers one message box as a user does, with a key or the button with this text, and keeps what the box
// showed. Create it before the action that opens the box; several probes answer in the order of their
// creation. The check runs while the box is open, to look at the windows behind it.
//
// The test fails instead of hanging when no box appears (reported when the probe goes out of scope, at the
// latest), when the answer does not close the box, and when a box appears that no probe expects. Without any
// probe nothing is checked.
class MessageProbe : public QObject
{
    Q_OBJECT

public:
    explicit MessageProbe(Qt::Key key, std::function<void()> check = {});
    explicit MessageProbe(QString button, std::function<void()> check = {});
    ~MessageProbe() override;
    MessageProbe(const MessageProbe&) = delete;
    MessageProbe& operator=(const MessageProbe&) = delete;

    // How long each box may take to appear, and to close after its answer. The default of half a minute is
    // enough on a busy machine; only a failing test waits that long.
    static void SetPatience(std::chrono::milliseconds longest);

    // What the box showed. Waits for a box that has not appeared yet.
    QString text();
    QString title();
    QMessageBox::Icon icon();
    QStringList buttons();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit MessageProbe(std::function<void(QMessageBox&)> answer, std::function<void()> check);

    void Meet();
    void Refuse();
    void GiveUp();
    void AwaitBox();

    std::function<void(QMessageBox&)> answer_;
    std::function<void()> check_;
    bool answered_ = false;
    QPointer<QMessageBox> box_;
    QTimer patience_; // for the box to close after its answer
    QString text_;
    QString title_;
    QMessageBox::Icon icon_ = QMessageBox::NoIcon;
    QStringList buttons_;
};

} // namespace corvrec
