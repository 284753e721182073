#pragma once

class QWidget;

namespace corvrec
{

// Puts the window's contents into a scroll area, for a screen that is too small for them. The last row of the
// window's layout, with the buttons, stays outside. The focused control scrolls into view. The size that the
// contents need now, in a view of at most `width` pixels, is reserved for good, so that nothing is squeezed
// when a part of them is hidden and shown again. To be called before the first show. A window whose layout is
// not a column stays as it is.
void ScrollContents(QWidget& window, int width);

} // namespace corvrec
