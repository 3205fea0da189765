#include "graphs/graph_controls.h"

#include <gtest/gtest.h>

#include <limits>

#include "graphs/live_graph.h"
#include "platform/virtual_event_loop.h"

namespace kavorix::test {
namespace {

constexpr float None = std::numeric_limits<float>::quiet_NaN();

// A trend of two channels over a minute with a row a second, built and shown.
class GraphControlsTest : public testing::Test {
  protected:
    GraphControlsTest() { build(); }

    void build(bool bars = false) {
        const PlotHandle page = plot.WGCreatePage("PAGE1");
        const PlotHandle graph = plot.WGCreateGraph(page);
        plot.WGScalePlotArea(graph, {0, 60, -2, 2});
        for (int line = 0; line < 2; ++line) plot.WGSetLineStyle(graph, line, 0, Dash::Solid);
        set = plot.WRDefineDynDataSet(graph, "Data", 2, 1, bars ? 0 : 60);
        plot.WRDynLegendPtr(graph, set, legend_entry("One", {}) + legend_entry("Two", {}), {});
        bars ? plot.WRSetBargraph(graph, set) : plot.WRSetScrollGraph(graph, set);
        plot.WGUpdatePage(page);
        controls.refresh();
    }
    // Rows of (row number, value).
    void rows(int count, float value = 0) {
        for (int i = 0; i < count; ++i) {
            const std::vector<float> row{static_cast<float>(plot.picture().data.end_row()), value};
            plot.WRUpdateData(set, row);
            loop.advance(1000);
        }
        controls.refresh();
    }
    const TimeRange& time() const { return controls.view().time; }

    VirtualEventLoop loop;
    PagePlot plot{loop};
    PlotHandle set = NoPlotHandle;
    GraphControls controls{plot};
};

TEST_F(GraphControlsTest, FollowsTheNewestRow) {
    EXPECT_EQ(time(), (TimeRange{0, 60}));
    rows(100);
    EXPECT_EQ(time(), (TimeRange{39, 99}));
    EXPECT_TRUE(controls.screen.chkFollow.checked);
    EXPECT_EQ(controls.screen.lblStatus.caption, "Following, a row every 1 s");
}

TEST_F(GraphControlsTest, OneKeyFollowsAgainInTheSameWidth) {
    rows(100);
    controls.wheel_time(4, 45);
    EXPECT_FALSE(controls.screen.chkFollow.checked);
    EXPECT_EQ(controls.screen.lblStatus.caption, "Held, a row every 1 s");
    const double length = time().length();
    controls.key(GraphKey::Follow);
    EXPECT_TRUE(controls.screen.chkFollow.checked);
    EXPECT_DOUBLE_EQ(time().end, 99);
    EXPECT_DOUBLE_EQ(time().length(), length);
}

TEST_F(GraphControlsTest, HoldStaysWhileRowsCome) {
    rows(30);
    controls.screen.chkFollow.checked = false;
    controls.chkFollow_Click();
    rows(10);
    EXPECT_EQ(time(), (TimeRange{0, 60}));
    EXPECT_FALSE(controls.screen.chkFollow.checked);
}

TEST_F(GraphControlsTest, PauseLosesNothing) {
    rows(50);
    controls.key(GraphKey::Pause);
    EXPECT_TRUE(controls.screen.chkPause.checked);
    const std::uint64_t revision = controls.revision();
    rows(200);
    EXPECT_EQ(controls.revision(), revision) << "nothing to draw while paused";
    EXPECT_EQ(controls.data().end_row(), 50U);
    EXPECT_EQ(controls.screen.lblStatus.caption, "Paused, 200 rows behind");
    controls.key(GraphKey::Pause);
    EXPECT_EQ(controls.data().end_row(), 250U);
    EXPECT_EQ(controls.data().value(200, 0), 200);
    EXPECT_EQ(time(), (TimeRange{189, 249}));
}

TEST_F(GraphControlsTest, APausedGraphCanBeZoomed) {
    rows(50);
    controls.key(GraphKey::Pause);
    rows(500);
    controls.wheel_time(3, 20);
    EXPECT_LT(time().end, 60);
    EXPECT_GT(time().begin, 0);
}

TEST_F(GraphControlsTest, AutoscaleFitsWhatIsVisibleAndNotHidden) {
    rows(40, 7);
    controls.show_area({10, 20}, {-2, 2});
    controls.cmdAutoscale_Click();
    EXPECT_EQ(controls.view().values, (ValueRange{7 - 0.65, 20 + 0.65}));
    controls.legend_click(0);
    controls.cmdAutoscale_Click();
    EXPECT_EQ(controls.view().values, room_around(7, 7));
    controls.legend_click(1);
    controls.cmdAutoscale_Click();
    EXPECT_EQ(controls.view().values, room_around(7, 7)) << "nothing to fit";
}

TEST_F(GraphControlsTest, WholeSpanGoesBackToTheSettings) {
    rows(100);
    controls.show_area({50, 60}, {0, 1});
    controls.cmdAll_Click();
    EXPECT_EQ(time(), (TimeRange{39, 99}));
    EXPECT_EQ(controls.view().values, (ValueRange{-2, 2}));
    EXPECT_TRUE(controls.view().following);
}

TEST_F(GraphControlsTest, DraggingTakesTheGraphAlong) {
    rows(100);
    controls.show_area({50, 60}, {0, 1});
    controls.drag_time(2);
    controls.drag_values(0.25);
    EXPECT_EQ(time(), (TimeRange{48, 58}));
    EXPECT_EQ(controls.view().values, (ValueRange{-0.25, 0.75}));
}

TEST_F(GraphControlsTest, TheLegendHidesAndShows) {
    controls.legend_click(1);
    EXPECT_FALSE(controls.looks()[0].hidden);
    EXPECT_TRUE(controls.looks()[1].hidden);
    controls.legend_click(1);
    EXPECT_FALSE(controls.looks()[1].hidden);
    controls.legend_click(7);
    EXPECT_FALSE(controls.looks()[1].hidden);
}

TEST_F(GraphControlsTest, CursorsComeIntoTheViewAndReadEveryChannel) {
    rows(31, 0.5F);
    controls.screen.chkCursors.checked = true;
    controls.chkCursors_Click();
    EXPECT_TRUE(controls.screen.fraCursors.visible);
    const Grid& grid = controls.screen.grdCursors;
    ASSERT_EQ(grid.rows.size(), 3U);
    EXPECT_EQ(grid.rows[0],
              (std::vector<GridCell>{{"Time"}, {"0:00:10.0"}, {"0:00:20.0"}, {"10 s"}}));
    EXPECT_EQ(grid.rows[1], (std::vector<GridCell>{{"One"}, {"10"}, {"20"}, {"10"}}));
    EXPECT_EQ(grid.rows[2], (std::vector<GridCell>{{"Two"}, {"0.5"}, {"0.5"}, {"0"}}));
}

TEST_F(GraphControlsTest, KeysMoveTheActiveCursorRowByRow) {
    rows(31);
    controls.screen.chkCursors.checked = true;
    controls.chkCursors_Click();
    controls.key(GraphKey::Right);
    controls.key(GraphKey::PageRight);
    EXPECT_EQ(controls.cursors().time(Cursor::A), 21);
    controls.key(GraphKey::OtherCursor);
    controls.key(GraphKey::Left);
    EXPECT_EQ(controls.cursors().time(Cursor::B), 19);
    controls.key(GraphKey::PageRight);
    controls.key(GraphKey::PageRight);
    EXPECT_EQ(controls.cursors().time(Cursor::B), 30) << "the newest row";
    EXPECT_EQ(time(), (TimeRange{0, 60}));
}

TEST_F(GraphControlsTest, ACursorInAColumnStandsOnItsSpike) {
    rows(20);
    rows(1, 1.75F);
    rows(20);
    // Channel one rises by a row; hide it, so that the spike is the largest excursion.
    controls.legend_click(0);
    controls.screen.chkCursors.checked = true;
    controls.chkCursors_Click();
    controls.put_cursor(Cursor::A, {15, 25});
    EXPECT_EQ(controls.cursors().time(Cursor::A), 20);
    controls.put_cursor(Cursor::B, {15.2, 15.4});
    EXPECT_EQ(controls.cursors().time(Cursor::B), 15) << "the nearest row of an empty column";
}

TEST_F(GraphControlsTest, ACursorsValuesEndWithItsRow) {
    rows(10);
    controls.screen.chkCursors.checked = true;
    controls.chkCursors_Click();
    controls.put_cursor(Cursor::A, {3, 4});
    rows(70);
    EXPECT_EQ(controls.screen.grdCursors.rows[1][1].text, "");
    EXPECT_EQ(controls.screen.grdCursors.rows[1][3].text, "");
}

TEST_F(GraphControlsTest, ClockTimesInTheTable) {
    rows(31);
    controls.screen.chkClock.checked = true;
    controls.chkClock_Click();
    controls.screen.chkCursors.checked = true;
    controls.chkCursors_Click();
    EXPECT_EQ(controls.screen.grdCursors.rows[0],
              (std::vector<GridCell>{{"Clock"}, {"08:00:10.0"}, {"08:00:20.0"}, {"10 s"}}));
}

TEST_F(GraphControlsTest, ANewGraphStartsAfresh) {
    rows(100);
    controls.legend_click(0);
    controls.key(GraphKey::Pause);
    controls.show_area({50, 60}, {0, 1});
    build();
    EXPECT_FALSE(controls.paused() || controls.looks()[0].hidden);
    EXPECT_EQ(time(), (TimeRange{0, 60}));
    EXPECT_EQ(controls.view().values, (ValueRange{-2, 2}));
}

TEST_F(GraphControlsTest, BarsHaveNoTimeButARange) {
    build(true);
    EXPECT_EQ(controls.screen.lblStatus.caption, "Waiting for values");
    rows(3, 5);
    EXPECT_EQ(controls.screen.lblStatus.caption, "");
    for (const CheckBox* box : {&controls.screen.chkFollow, &controls.screen.chkPause,
                                &controls.screen.chkCursors, &controls.screen.chkClock})
        EXPECT_FALSE(box->enabled);
    const TrendView before = controls.view();
    controls.wheel_time(1, 0);
    controls.drag_time(5);
    controls.key(GraphKey::Pause);
    controls.key(GraphKey::Left);
    EXPECT_EQ(controls.view(), before);
    controls.cmdAutoscale_Click();
    EXPECT_EQ(controls.view().values, room_around(0, 5));
}

TEST_F(GraphControlsTest, TheCsvHoldsTheVisibleRows) {
    rows(4, 0.25F);
    plot.WRUpdateData(set, std::vector<float>{None, -1});
    controls.refresh();
    controls.show_area({2, 7}, {0, 1});
    EXPECT_EQ(controls.csv(),
              "Time (s),Date,Clock,One,Two\r\n"
              "2,2026-01-05,08:00:02.000,2,0.25\r\n"
              "3,2026-01-05,08:00:03.000,3,0.25\r\n"
              "4,2026-01-05,08:00:04.000,,-1\r\n");
}

}  // namespace
}  // namespace kavorix::test
