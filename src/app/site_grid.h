#pragma once

#include "core/site/site_list.h"

#include <QAbstractTableModel>

#include <vector>

namespace corvrec
{

// Columns of the site list, in the order of SiteRow's fields.
enum class SiteColumn { name, code, enabled, schedule };

// The site array as the grid's model. Cells are read-only. Rows count from 0 and must exist.
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

    // Makes the views read everything again; clears their selection.
    void Refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<SiteRow> rows_;
};

} // namespace corvrec
