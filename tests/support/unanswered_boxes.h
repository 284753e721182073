#pragma once

#include <QObject>

namespace corvrec
{

// Lets a test fail, and go on, at a message box that nobody answers: without it the box would stand for ever.
class UnansweredBoxes : public QObject
{
public:
    UnansweredBoxes();

    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace corvrec
