#include "ui/qt/kit/grid_view.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <algorithm>
#include <utility>

namespace kavorix {

namespace {

constexpr int LeastWidth = 20;  // of a column that the operator made narrow
constexpr int LeastFirstColumn = 72;
constexpr int CellMargins = 28;
constexpr int RowsToFit = 20;     // the toolkit would look at all of them
constexpr int LeastColumn = 124;  // a reading with six decimals

}  // namespace

GridView::GridView(QWidget* parent) : QTableView(parent) {
    setAlternatingRowColors(true);
    setSelectionMode(ExtendedSelection);
    setHorizontalScrollMode(ScrollPerPixel);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setEditTriggers(NoEditTriggers);
    setShowGrid(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(16);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 9);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void GridView::setModel(QAbstractItemModel* model) {
    QTableView::setModel(model);
    headings_.clear();
    fitted_ = false;
    if (!model) return;
    connect(model, &QAbstractItemModel::modelReset, this, [this] { fit_columns(); });
    fit_columns();
}

void GridView::set_least_widths(std::vector<int> widths) {
    least_widths_ = std::move(widths);
    headings_.clear();
    if (model()) fit_columns();
}

QByteArray GridView::column_widths() const {
    QByteArrayList widths;
    for (int column = 0; column < headings_.size(); ++column)
        widths << QByteArray::number(columnWidth(column));
    return widths.join(',');
}

void GridView::restore_column_widths(const QByteArray& widths) {
    remembered_ = widths.split(',');
    headings_.clear();
    if (model()) fit_columns();
}

// Columns are fitted once to a table with rows; from then on the operator's widths stay, but for
// those whose heading is another. Another number of columns means another table.
void GridView::fit_columns() {
    QStringList headings;
    for (int column = 0; column < model()->columnCount(); ++column)
        headings << model()->headerData(column, Qt::Horizontal).toString();
    const bool same_table = headings.size() == headings_.size();
    const bool remembered = !same_table && headings.size() == remembered_.size();
    for (int column = 0; column < headings.size(); ++column) {
        const int fitting = fitting_width(column);
        if (remembered)
            setColumnWidth(column, std::max(remembered_[column].toInt(), LeastWidth));
        else if (!same_table || !fitted_)
            setColumnWidth(column, fitting);
        else if (headings[column] != headings_[column])
            setColumnWidth(column, std::max(columnWidth(column), fitting));
    }
    fitted_ = remembered || (same_table && fitted_) || model()->rowCount() > 0;
    headings_ = headings;
}

int GridView::fitting_width(int column) const {
    int width = horizontalHeader()->fontMetrics().horizontalAdvance(
        model()->headerData(column, Qt::Horizontal).toString());
    const int rows = std::min(model()->rowCount(), RowsToFit);
    for (int row = 0; row < rows; ++row)
        width = std::max(
            width, fontMetrics().horizontalAdvance(model()->index(row, column).data().toString()));
    const auto index = static_cast<std::size_t>(column);
    return std::max(width + CellMargins, index < least_widths_.size() ? least_widths_[index]
                                         : column == 0                ? LeastFirstColumn
                                                                      : LeastColumn);
}

QString GridView::selected_text() const {
    if (!selectionModel()) return {};
    QModelIndexList cells = selectionModel()->selectedIndexes();
    std::sort(cells.begin(), cells.end());
    if (cells.isEmpty()) return {};
    int first_column = cells.front().column();
    for (const QModelIndex& cell : cells) first_column = std::min(first_column, cell.column());
    QString text;
    int row = cells.front().row();
    int column = first_column;
    for (const QModelIndex& cell : cells) {
        if (cell.row() != row) {
            text += u'\n';
            row = cell.row();
            column = first_column;
        }
        for (; column < cell.column(); ++column) text += u'\t';
        text += cell.data().toString();
    }
    return text;
}

void GridView::copy() const {
    const QString text = selected_text();
    if (!text.isEmpty()) QApplication::clipboard()->setText(text);
}

void GridView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy))
        copy();
    else
        QTableView::keyPressEvent(event);
}

void GridView::contextMenuEvent(QContextMenuEvent* event) {
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* const copying = menu->addAction("&Copy", this, [this] { copy(); });
    copying->setShortcut(QKeySequence::Copy);
    copying->setEnabled(selectionModel() && selectionModel()->hasSelection());
    menu->addAction("Select &All", this, [this] { selectAll(); });
    menu->popup(event->globalPos());
}

}  // namespace kavorix
