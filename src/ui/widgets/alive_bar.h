#pragma once

#include <QProgressBar>
#include <QTimer>

namespace corvrec
{

// Shows that the program is alive during a wait of unknown length, by a step every 400 ms. Qt's own endless
// bar would take more processor time than everything else in a wait. Hidden while stopped, but keeps its
// place.
class AliveBar : public QProgressBar
{
    Q_OBJECT

public:
    explicit AliveBar(QWidget* parent = nullptr);

    void Start();
    void Stop();

private:
    void Step();

    QTimer timer_{this};
};

// Moves the bar for its own lifetime.
class AliveWhile
{
public:
    explicit AliveWhile(AliveBar& bar)
        : bar_(bar)
    {
        bar_.Start();
    }
    ~AliveWhile() { bar_.Stop(); }
    AliveWhile(const AliveWhile&) = delete;
    AliveWhile& operator=(const AliveWhile&) = delete;

private:
    AliveBar& bar_;
};

} // namespace corvrec
