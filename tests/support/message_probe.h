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

// Answers one message box as a user does, by a key or by the button with a text, and keeps what the box
// showed. Armed before the action that leads to the box; several armed together answer in the order in which
// they were armed. The check runs while the box is open, for what stands behind it.
//
// The test fails, and does not hang, when no box comes (reported at the latest when the probe goes out of
// scope), when the answer does not close the box, and when a box comes that no probe is armed for while there
// is a probe.
class MessageProbe : public QObject
{
    Q_OBJECT

public:
    explicit MessageProbe(Qt::Key key, std::function<void()> check = {});
    explicit MessageProbe(QString button, std::function<void()> check = {});
    ~MessageProbe() override;
    MessageProbe(const MessageProbe&) = delete;
    MessageProbe& operator=(const MessageProbe&) = delete;

    // How long each box may take to come, and to go once it is answered: half a minute, so that a busy
    // machine changes no result. Passed only by a test that fails.
    static void SetPatience(std::chrono::milliseconds longest);

    // What the box showed. A box that is still to come is waited for.
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
    QTimer patience_; // for the box to go once it is answered
    QString text_;
    QString title_;
    QMessageBox::Icon icon_ = QMessageBox::NoIcon;
    QStringList buttons_;
};

} // namespace corvrec
