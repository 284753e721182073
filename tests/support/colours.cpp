#include "tests/support/colours.h"

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QWidget>

namespace corvrec
{

bool HasColour(QWidget& widget, const QColor& colour)
{
    const QImage image = widget.grab().toImage();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == colour)
                return true;
        }
    }
    return false;
}

} // namespace corvrec
