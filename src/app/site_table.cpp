#include "app/site_table.h"

#include "app/site_grid.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>
#include <numeric>

namespace corvrec
{

void SiteTable::FitColumns()
{
    for (int column = 0; column < static_cast<int>(wishedWidths_.size()); ++column) {
        wishedWidths_.at(static_cast<std::size_t>(column)) =
            std::max(sizeHintForColumn(column), horizontalHeader()->sectionSizeHint(column));
    }
    SetColumnWidths();
}

void SiteTable::MarkRow(int row)
{
    const QModelIndex site = model()->index(row, 0);
    setCurrentIndex(site);
    // The scroll bar does not know about new rows until they are laid out.
    executeDelayedItemsLayout();
    updateGeometries();
    scrollTo(site);
}

void SiteTable::keyboardSearch(const QString& search)
{
    // The base class searches the current cell's column.
    if (currentIndex().isValid())
        selectionModel()->setCurrentIndex(currentIndex().siblingAtColumn(0), QItemSelectionModel::NoUpdate);
    QTableView::keyboardSearch(search);
}

// The base class would also clear the selection: on a click below the rows, or with Ctrl.
QItemSelectionModel::SelectionFlags SiteTable::selectionCommand(const QModelIndex& index,
                                                                const QEvent* /*event*/) const
{
    if (!index.isValid())
        return QItemSelectionModel::NoUpdate;
    return QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
}

// Home and End go to the first and the last site. By default they move along the row.
QModelIndex SiteTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (action == MoveHome)
        return model()->index(0, 0);
    if (action == MoveEnd)
        return model()->index(model()->rowCount() - 1, 0);
    return QTableView::moveCursor(action, modifiers);
}

// Wide enough for all columns without a cut.
QSize SiteTable::viewportSizeHint() const
{
    const int width = std::accumulate(wishedWidths_.begin(), wishedWidths_.end(), 0);
    return {width, QTableView::viewportSizeHint().height()};
}

void SiteTable::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    SetColumnWidths();
}

// A cell has a tool tip only if its text is cut.
bool SiteTable::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QTableView::viewportEvent(event);
    const auto& help = static_cast<const QHelpEvent&>(*event);
    const QModelIndex cell = indexAt(help.pos());
    const bool isCut = cell.isValid() && sizeHintForIndex(cell).width() > columnWidth(cell.column());
    const QString tip = isCut ? Qt::convertFromPlainText(cell.data().toString()) : QString();
    QToolTip::showText(help.globalPos(), tip, viewport());
    return true;
}

// By key the menu opens below the marked row, by mouse at the pointer.
void SiteTable::contextMenuEvent(QContextMenuEvent* event)
{
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    emit MenuRequested(isByKey ? MenuPlace() : event->globalPos());
}

// Under X11, Qt makes no context menu event of Shift+F10, only of the Menu key, which many keyboards lack.
void SiteTable::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier)
        emit MenuRequested(MenuPlace());
    else
        QTableView::keyPressEvent(event);
}

QPoint SiteTable::MenuPlace() const
{
    return viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft());
}

// In a narrow window name and code give way: the code keeps up to half of their common width, the name gets
// the rest. No column becomes narrower than its caption. The last column takes any width left over.
void SiteTable::SetColumnWidths()
{
    std::array<int, 4> widths = wishedWidths_;
    auto& [name, code, enabled, schedule] = widths;
    const int room = std::max(viewport()->width() - enabled - schedule, 0);
    if (name + code > room) {
        const auto caption = [this](SiteColumn column) {
            return horizontalHeader()->sectionSizeHint(static_cast<int>(column));
        };
        code = std::min(code, std::max({room / 2, room - name, caption(SiteColumn::code)}));
        name = std::min(name, std::max(room - code, caption(SiteColumn::name)));
    }
    schedule += std::max(room - name - code, 0);
    for (int column = 0; column < static_cast<int>(widths.size()); ++column)
        setColumnWidth(column, widths.at(static_cast<std::size_t>(column)));
}

} // namespace corvrec
