#include "tests/support/message_probe.h"

#include "tests/support/activation.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <utility>

namespace corvrec
{

namespace
{

std::chrono::milliseconds patience{30000};

// Property of a box that a probe has already taken.
constexpr const char* kTaken = "taken by a probe";

QList<MessageProbe*>& ArmedProbes()
{
    static QList<MessageProbe*> probes;
    return probes;
}

void Fail(const QString& what)
{
    QTest::qFail(qPrintable(what), __FILE__, __LINE__);
}

void Dismiss(QMessageBox& box, const QString& why)
{
    Fail(why + QStringLiteral(": \"%1\"").arg(box.text()));
    box.done(QMessageBox::NoButton);
}

void PressKey(QMessageBox& box, Qt::Key key)
{
    QWidget* const focused = box.focusWidget();
    QTest::keyClick(focused != nullptr ? focused : &box, key);
}

void PressButton(QMessageBox& box, const QString& text)
{
    const auto buttons = box.buttons();
    const auto button =
        std::ranges::find_if(buttons, [&](const QAbstractButton* each) { return each->text() == text; });
    if (button == buttons.end())
        Dismiss(box, QStringLiteral("no button \"%1\" on the message box").arg(text));
    else
        QTest::mouseClick(*button, Qt::LeftButton);
}

} // namespace

MessageProbe::MessageProbe(Qt::Key key, std::function<void()> check)
    : MessageProbe([key](QMessageBox& box) { PressKey(box, key); }, std::move(check))
{
}

MessageProbe::MessageProbe(QString button, std::function<void()> check)
    : MessageProbe([button = std::move(button)](QMessageBox& box) { PressButton(box, button); },
                   std::move(check))
{
}

MessageProbe::MessageProbe(std::function<void(QMessageBox&)> answer, std::function<void()> check)
    : answer_(std::move(answer))
    , check_(std::move(check))
{
    patience_.setSingleShot(true);
    connect(&patience_, &QTimer::timeout, this, &MessageProbe::GiveUp);
    ArmedProbes().append(this);
    qApp->installEventFilter(this);
}

MessageProbe::~MessageProbe()
{
    AwaitBox();
    ArmedProbes().removeOne(this);
}

void MessageProbe::SetPatience(std::chrono::milliseconds longest)
{
    patience = longest;
}

QString MessageProbe::text()
{
    AwaitBox();
    return text_;
}

QString MessageProbe::title()
{
    AwaitBox();
    return title_;
}

QMessageBox::Icon MessageProbe::icon()
{
    AwaitBox();
    return icon_;
}

QStringList MessageProbe::buttons()
{
    AwaitBox();
    return buttons_;
}

bool MessageProbe::eventFilter(QObject* watched, QEvent* event)
{
    auto* const box = qobject_cast<QMessageBox*>(watched);
    if (box == nullptr || event->type() != QEvent::Show || box->property(kTaken).toBool())
        return QObject::eventFilter(watched, event);
    box->setProperty(kTaken, true);
    // Answers from the event loop that the box is about to run, as a user would.
    MessageProbe* const probe = ArmedProbes().isEmpty() ? this : ArmedProbes().takeFirst();
    probe->box_ = box;
    QMetaObject::invokeMethod(probe, probe->answered_ ? &MessageProbe::Refuse : &MessageProbe::Meet,
                              Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

void MessageProbe::Meet()
{
    // A window manager activates a box only after it is shown; a user answers it after that.
    if (!QTest::qWaitFor([this] { return !box_ || IsOffscreen() || IsInFront(*box_); }, kActivationMs)) {
        Dismiss(*box_, QStringLiteral("the message box did not become active"));
        return;
    }
    if (!box_)
        return; // something else closed it; reported as missing
    text_ = box_->text();
    title_ = box_->windowTitle();
    icon_ = box_->icon();
    for (const QAbstractButton* const button : box_->buttons())
        buttons_.append(button->text());
    answered_ = true;
    if (check_)
        check_();
    patience_.start(patience);
    answer_(*box_);
}

void MessageProbe::Refuse()
{
    Dismiss(*box_, QStringLiteral("unexpected message box"));
}

void MessageProbe::GiveUp()
{
    if (box_ && box_->isVisible())
        Dismiss(*box_, QStringLiteral("the answer did not close the message box"));
}

void MessageProbe::AwaitBox()
{
    if (answered_ || QTest::qWaitFor([this] { return answered_; }, static_cast<int>(patience.count())))
        return;
    ArmedProbes().removeOne(this);
    answered_ = true; // so that it is reported only once
    Fail(QStringLiteral("no message box came"));
}

} // namespace corvrec
