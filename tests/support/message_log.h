#pragma once

#include <QObject>
#include <QStringList>

namespace corvrec
{

// Answers every message box with Return as soon as it appears, and keeps the texts. For tests in which boxes
// may or may not appear.
class MessageLog : public QObject
{
public:
    MessageLog();

    [[nodiscard]] const QStringList& Texts() const { return texts_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QStringList texts_;
};

} // namespace corvrec
