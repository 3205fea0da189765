#pragma once

// Tables of the records in the toolkit's table views.

#include <QAbstractTableModel>
#include <optional>

#include "platform/grid_source.h"

namespace kavorix {

// Cells are asked for when they are painted; refresh() announces the rows that changed. An error
// cell carries a small mark beside its red text. Outlived by the source.
class GridModel : public QAbstractTableModel {
  public:
    explicit GridModel(GridSource& source);

    // Follows the source: announces changed rows, and everything anew when its layout is another.
    void refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    void multiData(const QModelIndex& index, QModelRoleDataSpan roles) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    bool is_there(const QModelIndex& index) const;
    const GridCell& cell(const QModelIndex& index) const;
    static QVariant shown(const GridCell& cell, int column, int role);
    void announce(const std::vector<int>& rows);
    void look_for_numbers(int row);
    bool shows_numbers(int column) const;

    GridSource& source_;
    std::uint64_t layout_;
    int rows_;
    int columns_;
    // Columns in which a number was seen: the heading stands over its right edge.
    std::vector<bool> numbers_;
    // The cell asked for last: a view asks several times, for its text, its colour and so on.
    mutable QModelIndex cached_at_;
    mutable GridCell cached_;
};

// A `Grid` record as a source: finds the rows that differ from what was last looked at.
class GridRecordSource : public GridSource {
  public:
    explicit GridRecordSource(const Grid& grid) : grid_(grid), seen_(grid) {}

    int row_count() const override { return static_cast<int>(grid_.rows.size()); }
    const std::vector<std::string>& headings() const override { return grid_.headings; }
    GridCell cell(int row, int column) const override;
    std::uint64_t layout() const override;
    const std::vector<int>& take_changed_rows() override;

  private:
    const Grid& grid_;
    mutable Grid seen_;
    mutable std::uint64_t layout_ = 0;
    std::vector<int> changed_;
};

}  // namespace kavorix
