#pragma once

#include <QObject>
#include <QStringList>

namespace corvrec
{

// Answers every message box by Return as soon as it is there, and keeps the texts; for tests in which boxes
// may come or not.
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
