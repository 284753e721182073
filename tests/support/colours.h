#pragma once

class QColor;
class QWidget;

namespace corvrec
{

// Whether the widget, painted now, has a pixel of exactly this colour.
bool HasColour(QWidget& widget, const QColor& colour);

} // namespace corvrec
