#include "ui/widgets/check_list.h"

#include <QMouseEvent>
#include <QStyledItemDelegate>

#include <cassert>

namespace corvrec
{

namespace
{

// Makes the whole row clickable. Keys work as in the base class.
class RowToggle : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            return false; // the row becomes the current one
        case QEvent::MouseButtonRelease:
            return static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton && Toggle(*model, index);
        default:
            return QStyledItemDelegate::editorEvent(event, model, option, index);
        }
    }

private:
    static bool Toggle(QAbstractItemModel& model, const QModelIndex& index)
    {
        if (!model.flags(index).testFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled))
            return false;
        const bool marked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        return model.setData(index, marked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
};

} // namespace

CheckList::CheckList(QWidget* parent)
    : QListWidget(parent)
{
    setItemDelegate(new RowToggle(this));
    setEditTriggers(NoEditTriggers);
    setSizeAdjustPolicy(AdjustToContents); // the preferred size shows all rows, whatever the font
    connect(model(), &QAbstractItemModel::rowsInserted, this, &CheckList::RowsInserted);
}

bool CheckList::Marked(int row) const
{
    return Row(row).checkState() == Qt::Checked;
}

void CheckList::SetMarked(int row, bool marked)
{
    Row(row).setCheckState(marked ? Qt::Checked : Qt::Unchecked);
}

bool CheckList::AnyMarked() const
{
    int row = 0;
    while (row < count() && !Marked(row))
        ++row;
    return row < count();
}

void CheckList::RowsInserted(const QModelIndex& /*parent*/, int first, int last)
{
    for (int row = first; row <= last; ++row)
        SetMarked(row, false);
}

QListWidgetItem& CheckList::Row(int row) const
{
    QListWidgetItem* const entry = item(row);
    assert(entry != nullptr);
    return *entry;
}

} // namespace corvrec
