#pragma once

#include <QProgressBar>
#include <QTimer>

namespace corvrec
{

// Shows that the program is alive during a wait of unknown length: a step every 400 ms. Qt's own endless bar
// takes more processor time than all the rest of a wait. At rest it is hidden and keeps its place.
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

// The bar moves until the end of this object's life.
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
