#pragma once

#include <QObject>

namespace corvrec
{

// Closes a message box that nobody answers and fails the test; without it, the test would hang.
class UnansweredBoxes : public QObject
{
public:
    UnansweredBoxes();

    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace corvrec
