#pragma once

#include <QListWidget>

namespace corvrec
{

// A list with a check mark in front of each entry. New entries have no mark. A click anywhere on a row
// toggles its mark, as does Space on the current row. Marks are independent of the current row and stay while
// the list is hidden. Asking for a row that does not exist is the caller's mistake.
class CheckList : public QListWidget
{
    Q_OBJECT

public:
    explicit CheckList(QWidget* parent = nullptr);

    bool Marked(int row) const;
    void SetMarked(int row, bool marked);
    bool AnyMarked() const;

private:
    void RowsInserted(const QModelIndex& parent, int first, int last);
    QListWidgetItem& Row(int row) const;
};

} // namespace corvrec
