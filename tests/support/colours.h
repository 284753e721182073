#pragma once

class QColor;
class QWidget;

namespace corvrec
{

// Whether a pixel of the widget, as it would be painted now, has exactly this colour.
bool HasColour(QWidget& widget, const QColor& colour);

} // namespace corvrec
