#include "ui/widgets/alive_bar.h"

#include <QSizePolicy>

#include <chrono>

namespace corvrec
{

namespace
{

constexpr std::chrono::milliseconds kStep{400};
constexpr int kSteps = 12; // from an empty bar to a full one

} // namespace

AliveBar::AliveBar(QWidget* parent)
    : QProgressBar(parent)
{
    setRange(0, kSteps);
    setTextVisible(false);
    QSizePolicy policy = sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
    hide();
    connect(&timer_, &QTimer::timeout, this, &AliveBar::Step);
}

void AliveBar::Start()
{
    setValue(0);
    show();
    timer_.start(kStep);
}

void AliveBar::Stop()
{
    timer_.stop();
    hide();
}

void AliveBar::Step()
{
    setValue((value() + 1) % (kSteps + 1));
}

} // namespace corvrec
