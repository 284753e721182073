#pragma once

#include <QLabel>
#include <QStringList>

namespace corvrec
{

// A one-line label that is always as wide as the widest text that it can show, so that its neighbours do not
// move when the text changes.
class SteadyLabel : public QLabel
{
    Q_OBJECT

public:
    explicit SteadyLabel(QWidget* parent = nullptr);

    // Sets all texts that the label can show. Before that it is as wide as its current text.
    void Reserve(const QStringList& texts);

    // Makes the label keep its place while it is hidden.
    void KeepPlace();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    QSize Widened(const QSize& size) const;

    QStringList texts_;
};

} // namespace corvrec
