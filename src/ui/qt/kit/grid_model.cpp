#include "ui/qt/kit/grid_model.h"

#include <QApplication>
#include <QIcon>
#include <QPalette>
#include <algorithm>

#include "base/numbers.h"
#include "ui/qt/kit/glyphs.h"
#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/theme.h"

namespace kavorix {

namespace {

QVariant alignment(bool number) {
    return QVariant((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

// Most cells are numbers: the way over the code page is for the others.
QString text_of(const std::string& text) {
    const bool ascii = std::all_of(text.begin(), text.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    return ascii ? QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()))
                 : to_qt(text);
}

}  // namespace

GridModel::GridModel(GridSource& source)
    : source_(source),
      layout_(source.layout()),
      rows_(source.row_count()),
      columns_(static_cast<int>(source.headings().size())),
      numbers_(source.headings().size()) {
    if (rows_ > 0) look_for_numbers(0);
}

void GridModel::refresh() {
    const std::uint64_t layout = source_.layout();
    const std::vector<int>& changed = source_.take_changed_rows();
    if (layout != layout_) {
        beginResetModel();
        layout_ = layout;
        rows_ = source_.row_count();
        columns_ = static_cast<int>(source_.headings().size());
        cached_at_ = {};
        numbers_.assign(source_.headings().size(), false);
        if (rows_ > 0) look_for_numbers(0);
        endResetModel();
        return;
    }
    if (!changed.empty()) {
        cached_at_ = {};
        look_for_numbers(changed.front());
        announce(changed);
    }
    if (const int rows = source_.row_count(); rows > rows_) {
        beginInsertRows({}, rows_, rows - 1);
        look_for_numbers(rows_);
        rows_ = rows;
        endInsertRows();
    }
}

// The first column numbers the rows, whatever it holds.
void GridModel::look_for_numbers(int row) {
    for (int column = 1; column < columns_; ++column) {
        if (shows_numbers(column)) continue;
        if (!is_numeric(source_.cell(row, column).text)) continue;
        numbers_[static_cast<std::size_t>(column)] = true;
        emit headerDataChanged(Qt::Horizontal, column, column);
    }
}

bool GridModel::shows_numbers(int column) const {
    return numbers_[static_cast<std::size_t>(column)];
}

// Neighbouring rows are announced together.
void GridModel::announce(const std::vector<int>& rows) {
    for (std::size_t first = 0; first < rows.size();) {
        std::size_t last = first;
        while (last + 1 < rows.size() && rows[last + 1] == rows[last] + 1) ++last;
        emit dataChanged(index(rows[first], 0), index(rows[last], columns_ - 1));
        first = last + 1;
    }
}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns_;
}

const GridCell& GridModel::cell(const QModelIndex& index) const {
    if (!cached_at_.isValid() || cached_at_ != index) {
        cached_ = source_.cell(index.row(), index.column());
        cached_at_ = index;
    }
    return cached_;
}

// The source may have fewer rows by now than the view was told.
bool GridModel::is_there(const QModelIndex& index) const {
    return index.isValid() && index.row() < source_.row_count() && layout_ == source_.layout();
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    return is_there(index) ? shown(cell(index), index.column(), role) : QVariant();
}

// Everything that painting a cell asks for, in one go.
void GridModel::multiData(const QModelIndex& index, QModelRoleDataSpan roles) const {
    const bool there = is_there(index);
    for (QModelRoleData& role : roles)
        if (there)
            role.setData(shown(cell(index), index.column(), role.role()));
        else
            role.clearData();
}

QVariant GridModel::shown(const GridCell& cell, int column, int role) {
    switch (role) {
        case Qt::DisplayRole:
            return text_of(cell.text);
        case Qt::AccessibleTextRole:
            return cell.error ? to_qt(cell.text + ", error") : QVariant();
        case Qt::ForegroundRole:
            return cell.error ? text_colour(Colour::Red, QApplication::palette()) : QVariant();
        case Qt::DecorationRole:
            return cell.error ? glyph_icon(Glyph::Warning) : QVariant();
        case Qt::TextAlignmentRole:
            return alignment(column > 0 && is_numeric(cell.text));
        default:
            return {};
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columns_ ||
        layout_ != source_.layout())
        return {};
    if (role == Qt::DisplayRole)
        return to_qt(source_.headings()[static_cast<std::size_t>(section)]);
    if (role == Qt::TextAlignmentRole) return alignment(shows_numbers(section));
    return {};
}

GridCell GridRecordSource::cell(int row, int column) const {
    const auto& cells = grid_.rows[static_cast<std::size_t>(row)];
    const auto at = static_cast<std::size_t>(column);
    return at < cells.size() ? cells[at] : GridCell{};
}

std::uint64_t GridRecordSource::layout() const {
    if (grid_.headings != seen_.headings || grid_.rows.size() != seen_.rows.size()) {
        seen_ = grid_;
        ++layout_;
    }
    return layout_;
}

const std::vector<int>& GridRecordSource::take_changed_rows() {
    layout();
    changed_.clear();
    for (std::size_t row = 0; row < grid_.rows.size(); ++row)
        if (grid_.rows[row] != seen_.rows[row]) {
            seen_.rows[row] = grid_.rows[row];
            changed_.push_back(static_cast<int>(row));
        }
    return changed_;
}

}  // namespace kavorix
