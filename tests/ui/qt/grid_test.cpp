#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QSignalSpy>
#include <QTest>

#include "ui/qt/kit/grid_model.h"
#include "ui/qt/kit/grid_view.h"

namespace kavorix::test {
namespace {

// Rows of "ROW.COLUMN"; counts how many cells were asked for.
class CountingSource : public GridSource {
  public:
    int row_count() const override { return rows; }
    const std::vector<std::string>& headings() const override { return names; }
    GridCell cell(int row, int column) const override {
        ++asked;
        if (column == 0) return {"ch" + std::to_string(row)};
        if (column == 1 && row == 0 && !first_cell.empty()) return {first_cell};
        return row == error_row ? GridCell{"ErrOvrld", true}
                                : GridCell{std::to_string(row) + '.' + std::to_string(column)};
    }
    std::uint64_t layout() const override { return layout_number; }
    const std::vector<int>& take_changed_rows() override {
        taken = std::exchange(changed, {});
        return taken;
    }

    int rows = 1000;
    std::vector<std::string> names = {"Chan", "Value", "Peak"};
    std::uint64_t layout_number = 0;
    std::vector<int> changed;
    std::vector<int> taken;
    int error_row = -1;
    std::string first_cell;  // instead of "0.1"
    mutable int asked = 0;
};

using RowRanges = std::vector<std::pair<int, int>>;

RowRanges ranges(const QSignalSpy& changes) {
    RowRanges result;
    for (const auto& change : changes)
        result.emplace_back(change[0].toModelIndex().row(), change[1].toModelIndex().row());
    return result;
}

TEST(GridModel, AnnouncesChangedRowsAlone) {
    CountingSource source;
    GridModel model(source);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    model.refresh();
    EXPECT_EQ(ranges(changes), RowRanges{});
    source.changed = {3, 4, 5, 7, 900};
    model.refresh();
    EXPECT_EQ(ranges(changes), (RowRanges{{3, 5}, {7, 7}, {900, 900}}));
}

TEST(GridModel, ReadsAllAnewWithAnotherLayout) {
    CountingSource source;
    GridModel model(source);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    source.rows = 2;
    source.names = {"ZAV  Chan", "Value"};
    source.layout_number = 1;
    source.changed = {900};
    model.refresh();
    EXPECT_EQ(resets.count(), 1);
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.columnCount(), 2);
    EXPECT_EQ(model.headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), "ZAV  Chan");
}

TEST(GridModel, CellIsNotAskedForBeyondTheSource) {
    CountingSource source;
    GridModel model(source);
    source.rows = 0;
    EXPECT_FALSE(model.data(model.index(3, 1), Qt::DisplayRole).isValid());
}

TEST(GridModel, ErrorsHaveAMarkAndAColour) {
    CountingSource source;
    source.error_row = 1;
    GridModel model(source);
    EXPECT_FALSE(model.data(model.index(0, 1), Qt::DecorationRole).isValid());
    EXPECT_FALSE(model.data(model.index(0, 1), Qt::ForegroundRole).isValid());
    EXPECT_TRUE(model.data(model.index(1, 1), Qt::DecorationRole).isValid());
    EXPECT_TRUE(model.data(model.index(1, 1), Qt::ForegroundRole).isValid());
    EXPECT_EQ(model.data(model.index(1, 1), Qt::AccessibleTextRole).toString(), "ErrOvrld, error");
}

TEST(GridModel, NumbersStandRightUnderTheirHeading) {
    CountingSource source;
    source.error_row = 0;
    GridModel model(source);
    const auto right = [](const QVariant& alignment) {
        return (alignment.toInt() & Qt::AlignRight) != 0;
    };
    EXPECT_FALSE(right(model.headerData(1, Qt::Horizontal, Qt::TextAlignmentRole)));
    source.error_row = -1;
    source.changed = {0};
    model.refresh();
    EXPECT_TRUE(right(model.headerData(1, Qt::Horizontal, Qt::TextAlignmentRole)));
    EXPECT_TRUE(right(model.data(model.index(0, 1), Qt::TextAlignmentRole)));
    EXPECT_FALSE(right(model.data(model.index(0, 0), Qt::TextAlignmentRole)));
}

TEST(GridView, FormatsOnlyWhatIsInSight) {
    CountingSource source;
    GridModel model(source);
    GridView view;
    view.setModel(&model);
    view.resize(500, 300);
    view.show();
    QCoreApplication::processEvents();
    EXPECT_GT(source.asked, 10);
    EXPECT_LT(source.asked, 200);
    source.asked = 0;
    source.changed = {990};  // out of sight
    model.refresh();
    QCoreApplication::processEvents();
    EXPECT_EQ(source.asked, 0);
}

TEST(GridView, SelectionIsCopiedAsTabbedText) {
    CountingSource source;
    GridModel model(source);
    GridView view;
    view.setModel(&model);
    const auto select = [&](int row, int column) {
        view.selectionModel()->select(model.index(row, column), QItemSelectionModel::Select);
    };
    EXPECT_EQ(view.selected_text(), "");
    select(4, 2);
    select(2, 0);
    select(2, 1);
    EXPECT_EQ(view.selected_text(), "ch2\t2.1\n\t\t4.2");
    QTest::keySequence(&view, QKeySequence::Copy);
    EXPECT_EQ(QApplication::clipboard()->text(), "ch2\t2.1\n\t\t4.2");
    view.clearSelection();
    select(4, 2);
    EXPECT_EQ(view.selected_text(), "4.2");
}

TEST(GridView, ColumnsAreFittedToTheFirstRowsAndThenLeftToTheOperator) {
    CountingSource source;
    source.rows = 0;
    source.first_cell = std::string(40, 'x');
    GridModel model(source);
    GridView view;
    const auto show_another = [&] {
        ++source.layout_number;
        model.refresh();
    };
    view.setModel(&model);
    const int empty = view.columnWidth(1);
    source.rows = 5;
    show_another();
    EXPECT_GT(view.columnWidth(1), empty + 100);
    view.setColumnWidth(1, 60);
    source.names[0] = "ZAV  and  Channel";
    const int narrow = view.columnWidth(0);
    show_another();
    EXPECT_GT(view.columnWidth(0), narrow);  // a heading is never cut
    EXPECT_EQ(view.columnWidth(1), 60);

    GridView of_next_start;
    of_next_start.restore_column_widths(view.column_widths());
    source.names = {};  // as long as nothing is viewed
    GridModel next_model(source);
    of_next_start.setModel(&next_model);
    source.names = {"Chan", "Value", "Peak"};
    ++source.layout_number;
    next_model.refresh();
    EXPECT_EQ(of_next_start.columnWidth(1), 60);
}

TEST(GridRecordSource, FindsChangedRowsAndOtherLayouts) {
    Grid grid{{"Chan", "Value"}, {{{"01"}, {"1"}}, {{"02"}, {"2"}}}};
    GridRecordSource source(grid);
    const auto layout = source.layout();
    EXPECT_EQ(source.take_changed_rows(), std::vector<int>{});
    grid.rows[1][1] = {"ErrOvrld", true};
    EXPECT_EQ(source.take_changed_rows(), std::vector<int>{1});
    EXPECT_EQ(source.take_changed_rows(), std::vector<int>{});
    EXPECT_EQ(source.layout(), layout);
    grid.rows.push_back({{"03"}});
    EXPECT_NE(source.layout(), layout);
    EXPECT_EQ(source.cell(2, 1), GridCell{});  // a row shorter than the headings
    EXPECT_EQ(source.cell(1, 1).text, "ErrOvrld");
}

}  // namespace
}  // namespace kavorix::test
