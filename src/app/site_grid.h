#pragma once

#include "core/site/site_list.h"

#include <QAbstractTableModel>

#include <vector>

namespace corvrec
{

// Columns of the site list, as in the site array.
enum class SiteColumn { name, code, enabled, schedule };

// The site array as the grid's model: the grid reads it and owns no data of its own. Cells are read-only.
class SiteGrid : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    const std::vector<SiteRow>& Rows() const { return rows_; }

    void SetRows(std::vector<SiteRow> rows);
    void Append(SiteRow row);
    void Remove(int row);
    void SetRow(int row, SiteRow site);

    // Makes the views read everything again.
    void Refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<SiteRow> rows_;
};

} // namespace corvrec
