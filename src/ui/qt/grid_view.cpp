#include "ui/qt/grid_view.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <algorithm>

namespace kavorix {

namespace {

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
    fitted_.clear();
    if (!model) return;
    connect(model, &QAbstractItemModel::modelReset, this, [this] { fit_columns(); });
    fit_columns();
}

// Other headings mean another table; with the same ones the operator's widths stay.
void GridView::fit_columns() {
    QStringList headings;
    for (int column = 0; column < model()->columnCount(); ++column)
        headings << model()->headerData(column, Qt::Horizontal).toString();
    const bool fitted = headings.size() == fitted_.size();
    fitted_ = headings;
    if (fitted) return;
    const int rows = std::min(model()->rowCount(), RowsToFit);
    for (int column = 0; column < headings.size(); ++column) {
        int width = fontMetrics().horizontalAdvance(headings[column]);
        for (int row = 0; row < rows; ++row)
            width = std::max(width, fontMetrics().horizontalAdvance(
                                        model()->index(row, column).data().toString()));
        setColumnWidth(column,
                       std::max(width + CellMargins, column == 0 ? LeastFirstColumn : LeastColumn));
    }
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
