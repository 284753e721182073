#pragma once

#include <QListWidget>

namespace corvrec
{

// A list with a check mark in front of each entry. Every entry that is added starts without a mark. A click
// anywhere on a row changes its mark, and so does Space on the current row. Marks have nothing to do with the
// current row, and stay while the list is hidden. A row that is not there is a mistake of the caller.
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
