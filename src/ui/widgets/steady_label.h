#pragma once

#include <QLabel>
#include <QStringList>

namespace corvrec
{

// A label of one line that is always as wide as the widest of the texts that it can show, so that its
// neighbours do not move when the text changes.
class SteadyLabel : public QLabel
{
    Q_OBJECT

public:
    explicit SteadyLabel(QWidget* parent = nullptr);

    // All texts that it can show; until then it is as wide as the text that it shows.
    void Reserve(const QStringList& texts);

    // Keeps its place while it is hidden.
    void KeepPlace();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    QSize Widened(const QSize& size) const;

    QStringList texts_;
};

} // namespace corvrec
