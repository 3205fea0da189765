#include "graphs/page_plot.h"

#include <gmock/gmock.h>

#include "graphs/live_graph.h"
#include "platform/virtual_event_loop.h"

namespace kavorix::test {
namespace {

class PagePlotTest : public testing::Test {
  protected:
    PlotHandle graph_on_page() {
        page = plot.WGCreatePage("PAGE1");
        return plot.WGCreateGraph(page);
    }
    void append(PlotHandle data_set, std::vector<float> row) { plot.WRUpdateData(data_set, row); }

    VirtualEventLoop loop;
    PagePlot plot{loop};
    PlotHandle page = NoPlotHandle;
};

TEST_F(PagePlotTest, KeepsWhatItIsToldAsAPicture) {
    const PlotHandle graph = graph_on_page();
    plot.WGSetPlotArea(graph, TrendArea);
    plot.WGScalePlotArea(graph, {0, 60, -2, 2});
    plot.WGSetLineStyle(graph, 1, 0x123456, Dash::Dashed);
    plot.WGTitleGraph(graph, "Furnace");
    plot.WGTitleAxis(graph, PlotAxis::X, "Time");
    plot.WGTitleAxis(graph, PlotAxis::Y, "Volts");
    plot.WGSetTextByName(graph, "Arial", 0x202020);
    plot.WRDynGrid(graph);
    const PlotHandle set = plot.WRDefineDynDataSet(graph, "TrendData", 2, 2, 60);
    plot.WRDynLegendPtr(graph, set, legend_entry("A", {}) + legend_entry("B", {}), TrendLegend);
    plot.WRSetScrollGraph(graph, set);
    EXPECT_FALSE(plot.drawn());
    plot.WGUpdatePage(page);
    EXPECT_TRUE(plot.drawn());

    const GraphPicture& picture = plot.picture();
    EXPECT_EQ(picture.area, TrendArea);
    EXPECT_EQ(picture.scale, (PlotScale{0, 60, -2, 2}));
    EXPECT_EQ(picture.looks,
              (std::vector<LineLook>{{0, Dash::Solid, false}, {0x123456, Dash::Dashed, false}}));
    EXPECT_EQ(picture.title + picture.x_title + picture.y_title + picture.font,
              "FurnaceTimeVoltsArial");
    EXPECT_EQ(picture.legend, (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(picture.legend_box, TrendLegend);
    EXPECT_TRUE(picture.grid && picture.scrolling && !picture.bars);
    EXPECT_EQ(picture.data.capacity(), 32U);
}

TEST_F(PagePlotTest, RowsStandOneIntervalApartAndKnowTheClock) {
    const PlotHandle graph = graph_on_page();
    const PlotHandle set = plot.WRDefineDynDataSet(graph, "TrendData", 1, 6, 60);
    append(set, {1});
    loop.advance(6000);
    append(set, {2});
    const TrendData& data = plot.picture().data;
    EXPECT_EQ(data.time(0), 0);
    EXPECT_EQ(data.time(1), 6);
    EXPECT_EQ(data.wall_time(6), (WallTime{2026, 1, 5, 8, 0, 6, 0}));
}

TEST_F(PagePlotTest, TellsItsLastError) {
    const PlotHandle graph = graph_on_page();
    const PlotHandle set = plot.WRDefineDynDataSet(graph, "TrendData", 2, 1, 60);
    append(set, {1, 2});
    EXPECT_EQ(plot.WGGetLastError(), NoPlotError);
    append(set, {1});
    EXPECT_EQ(plot.WGGetLastError(), WrongRowLength);
    append(graph, {1, 2});
    EXPECT_EQ(plot.WGGetLastError(), UnknownHandle);
    EXPECT_EQ(plot.picture().data.end_row(), 1U);
    EXPECT_EQ(plot.WGCreateGraph(99), NoPlotHandle);
    EXPECT_EQ(plot.WGGetLastError(), UnknownHandle);
    plot.WGDrawYAxis(graph);
    EXPECT_EQ(plot.WGGetLastError(), NoPlotError);
}

TEST_F(PagePlotTest, AFreedGraphIsNoLongerValidAndANewOneStartsEmpty) {
    const PlotHandle graph = graph_on_page();
    const PlotHandle set = plot.WRDefineDynDataSet(graph, "TrendData", 1, 1, 60);
    plot.WRDynGrid(graph);
    append(set, {1});
    plot.WGUpdatePage(page);
    plot.WRDeleteRTGraph(graph);
    plot.WRFreeDynDataSet(set);
    EXPECT_FALSE(plot.WGIsDescValid(graph) || plot.WGIsDescValid(set) || plot.drawn());
    EXPECT_FALSE(plot.WGIsDescValid(NoPlotHandle));

    const std::uint64_t number = plot.graph_number();
    const PlotHandle next = graph_on_page();
    EXPECT_NE(next, graph);
    EXPECT_NE(plot.graph_number(), number);
    EXPECT_FALSE(plot.picture().grid);
    EXPECT_TRUE(plot.picture().data.empty());
}

TEST_F(PagePlotTest, PrintsOnlyItsPage) {
    int printed = 0;
    int set_up = 0;
    plot.WGPrinterSetup();
    plot.set_printing({[&] { ++set_up; }, [&] { ++printed; }});
    graph_on_page();
    plot.WGPrintGraph(page);
    plot.WGPrintGraph(page + 7);
    plot.WGPrinterSetup();
    EXPECT_EQ(printed, 1);
    EXPECT_EQ(set_up, 1);
}

TEST_F(PagePlotTest, ColoursAreThoseOfTheGround) {
    EXPECT_EQ(plot.WGGetRGBColor(FirstLineColour), graph_colour(FirstLineColour, Ground::Light));
    plot.set_ground(Ground::Dark);
    EXPECT_EQ(plot.WGGetRGBColor(TextColour), graph_colour(TextColour, Ground::Dark));
}

}  // namespace
}  // namespace kavorix::test
