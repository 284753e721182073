#pragma once

#include <QTableView>

#include <array>

namespace corvrec
{

// The view of the site list. The marked row is always the current one, and as long as there is a site exactly
// one row is marked, whatever is clicked, pressed or dragged: a command acts on the row that the user sees
// marked.
//
// All columns stay visible. A name too long for the window is cut, and its tool tip shows it in full.
class SiteTable : public QTableView
{
    Q_OBJECT

public:
    using QTableView::QTableView;

    // Measures every cell. To be called after the rows change; resizing the window needs no call.
    void FitColumns();

    // Marks the row and scrolls all of it into view, even right after the rows have changed.
    void MarkRow(int row);

    // Finds a site by the beginning of its name, whichever column was clicked last.
    void keyboardSearch(const QString& search) override;

signals:
    // The user asks for the context menu, by mouse or key. `where` is its place on the screen.
    void MenuRequested(const QPoint& where);

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    QSize viewportSizeHint() const override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    // Below the marked row.
    [[nodiscard]] QPoint MenuPlace() const;

    // Distributes the view's width to the columns.
    void SetColumnWidths();

    std::array<int, 4> wishedWidths_{}; // of each column without a cut, in pixels
};

} // namespace corvrec
