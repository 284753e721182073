#include "ui/widgets/scrolled_contents.h"

#include <QApplication>
#include <QGuiApplication>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace corvrec
{

namespace
{

constexpr int kAround = 10; // pixels kept visible above and below the focused control

class ScrolledContents : public QScrollArea
{
public:
    explicit ScrolledContents(QWidget* parent)
        : QScrollArea(parent)
    {
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
        setFocusPolicy(Qt::NoFocus);
        connect(qApp, &QApplication::focusChanged, this,
                [this](const QWidget* /*before*/, QWidget* now) { ShowFocused(now); });
    }

private:
    // Qt scrolls for Tab only, not when the program moves the focus. A control that the mouse is pressed on
    // stays under the mouse.
    void ShowFocused(QWidget* focused)
    {
        if (focused != nullptr && isAncestorOf(focused) && QGuiApplication::mouseButtons() == Qt::NoButton)
            ensureWidgetVisible(focused, 0, kAround);
    }
};

// Moves a layout item, which may be a widget, a layout or a spacer, into another column.
void Move(QLayoutItem* item, int stretch, QVBoxLayout& to)
{
    if (item->widget() != nullptr) {
        to.addWidget(item->widget(), stretch);
        delete item;
    } else if (item->layout() != nullptr) {
        to.addLayout(item->layout(), stretch);
    } else {
        to.addItem(item);
        to.setStretch(to.count() - 1, stretch);
    }
}

} // namespace

void ScrollContents(QWidget& window, int width)
{
    auto* const column = qobject_cast<QVBoxLayout*>(window.layout());
    if (column == nullptr || column->count() < 2)
        return;
    auto* const area = new ScrolledContents(&window);
    auto* const contents = new QWidget(area);
    auto* const inner = new QVBoxLayout(contents);
    inner->setSpacing(column->spacing());
    area->setWidget(contents);
    while (column->count() > 1) {
        const int stretch = column->stretch(0);
        Move(column->takeAt(0), stretch, *inner);
    }
    // The scroll bar is at the window's edge, where the right margin was.
    const QMargins margins = column->contentsMargins();
    inner->setContentsMargins(margins.left(), 0, 0, 0);
    column->setContentsMargins(0, margins.top(), 0, margins.bottom());
    if (QLayout* const buttons = column->itemAt(0)->layout())
        buttons->setContentsMargins(margins.left(), 0, margins.right(), 0);
    column->insertWidget(0, area, 1);

    const QSize least = inner->totalMinimumSize();
    const QSize hint = inner->totalSizeHint();
    const int given = std::max(std::min(hint.width(), width), least.width());
    contents->setMinimumSize(least.width(),
                             inner->hasHeightForWidth() ? inner->totalHeightForWidth(given) : hint.height());
}

} // namespace corvrec
