#include "ui/widgets/steady_label.h"

#include <QFontMetrics>
#include <QSizePolicy>

#include <algorithm>

namespace corvrec
{

SteadyLabel::SteadyLabel(QWidget* parent)
    : QLabel(parent)
{
}

void SteadyLabel::Reserve(const QStringList& texts)
{
    texts_ = texts;
    updateGeometry();
}

void SteadyLabel::KeepPlace()
{
    QSizePolicy policy = sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
}

QSize SteadyLabel::sizeHint() const
{
    return Widened(QLabel::sizeHint());
}

QSize SteadyLabel::minimumSizeHint() const
{
    return Widened(QLabel::minimumSizeHint());
}

// Adds the difference to the current text, so that margins and frame are those of the label.
QSize SteadyLabel::Widened(const QSize& size) const
{
    const QFontMetrics metrics = fontMetrics();
    const auto width = [&metrics](const QString& text) {
        return metrics.size(Qt::TextSingleLine | Qt::TextShowMnemonic, text).width();
    };
    const int shown = width(text());
    int widest = shown;
    for (const QString& text : texts_)
        widest = std::max(widest, width(text));
    return {size.width() + widest - shown, size.height()};
}

} // namespace corvrec
