#include "app/site_grid.h"

#include "ui/widgets/qt_text.h"
#include "ui/widgets/texts.h"

#include <array>

namespace corvrec
{

namespace
{

// In the order of SiteColumn.
constexpr std::array kCaptions{text::siteColumn, text::codeColumn, text::enabledColumn, text::scheduleColumn};

QString CellText(const SiteRow& row, SiteColumn column)
{
    switch (column) {
    case SiteColumn::name:
        return ToQt(row.name);
    case SiteColumn::code:
        return ToQt(row.code);
    case SiteColumn::enabled:
        return Text(row.enabled != 0 ? text::yes : text::no);
    case SiteColumn::schedule:
        return row.schedule ? Text(kScheduleTexts.at(static_cast<std::size_t>(*row.schedule))) : QString();
    }
    return {};
}

} // namespace

void SiteGrid::SetRows(std::vector<SiteRow> rows)
{
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

void SiteGrid::Append(SiteRow row)
{
    const int last = rowCount();
    beginInsertRows({}, last, last);
    rows_.push_back(std::move(row));
    endInsertRows();
}

void SiteGrid::Remove(int row)
{
    beginRemoveRows({}, row, row);
    rows_.erase(rows_.begin() + row);
    endRemoveRows();
}

void SiteGrid::SetRow(int row, SiteRow site)
{
    rows_.at(static_cast<std::size_t>(row)) = std::move(site);
    emit dataChanged(index(row, 0), index(row, columnCount() - 1));
}

void SiteGrid::Refresh()
{
    beginResetModel();
    endResetModel();
}

int SiteGrid::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int SiteGrid::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(kCaptions.size());
}

QVariant SiteGrid::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return {};
    return CellText(rows_.at(static_cast<std::size_t>(index.row())), static_cast<SiteColumn>(index.column()));
}

QVariant SiteGrid::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole) // aligned like the cells below
        return QVariant::fromValue(Qt::AlignLeft | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    return Text(kCaptions.at(static_cast<std::size_t>(section)));
}

} // namespace corvrec
