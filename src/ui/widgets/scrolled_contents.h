#pragma once

class QWidget;

namespace corvrec
{

// Gives the window's contents scroll bars, for a screen that is too small for them. The last row of the
// window's layout, its buttons, stays outside. The control that gets the focus comes into view. What
// the contents need now, in a view of this width at most, is theirs for good: nothing is squeezed when a part
// of them is hidden and shown again. Before the first show; a window whose layout is not a column is left as
// it is.
void ScrollContents(QWidget& window, int width);

} // namespace corvrec
