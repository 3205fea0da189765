#include "graphs/page_plot.h"

#include <gmock/gmock.h>

#include <tuple>

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
    const GraphPicture& picture = plot.picture();
    const auto flags = [&] {
        std::string set;
        for (const bool flag :
             {picture.y_axis, picture.y_labels, picture.time_axis, picture.time_labels,
              picture.labels_move, picture.grid, picture.bars, picture.scrolling})
            set += flag ? "x" : "-";
        return set;
    };
    plot.WGSetPlotArea(graph, TrendArea);
    plot.WGScalePlotArea(graph, {0, 60, -2, 2});
    plot.WGSetXYIntercepts(graph, 3, -1);
    plot.WGSetLineStyle(graph, 1, 0x123456, Dash::Dashed);
    plot.WGTitleGraph(graph, "Furnace");
    plot.WGTitleAxis(graph, PlotAxis::X, "Time");
    plot.WGTitleAxis(graph, PlotAxis::Y, "Volts");
    plot.WGSetTextByName(graph, "Arial", 0x202020);
    const PlotHandle set = plot.WRDefineDynDataSet(graph, "TrendData", 2, 2, 60);
    plot.WRSetDynText(set, "of pod 5");
    plot.WRDynLegendPtr(graph, set, legend_entry("A", {}) + legend_entry("B", {}), TrendLegend);
    EXPECT_EQ(flags(), "--------");
    const std::pair<std::function<void()>, const char*> each[] = {
        {[&] { plot.WGDrawYAxis(graph); }, "x-------"},
        {[&] { plot.WGLabelAxis(graph, PlotAxis::Y); }, "xx------"},
        {[&] { plot.WRDrawTimeAxis(graph); }, "xxx-----"},
        {[&] { plot.WRLabelTimeAxis(graph); }, "xxxx----"},
        {[&] { plot.WRStartTimeLabelsUpdate(graph); }, "xxxxx---"},
        {[&] { plot.WRDynGrid(graph); }, "xxxxxx--"},
        {[&] { plot.WRSetBargraph(graph, set); }, "xxxxxxx-"},
        {[&] { plot.WRSetScrollGraph(graph, set); }, "xxxxxxxx"}};
    for (const auto& [tell, told] : each) {
        tell();
        EXPECT_EQ(flags(), told);
    }
    EXPECT_EQ(std::tuple(picture.area, picture.scale, picture.legend_box),
              std::tuple(TrendArea, PlotScale{0, 60, -2, 2}, TrendLegend));
    EXPECT_EQ(std::tuple(picture.x_intercept, picture.y_intercept, picture.interval_s,
                         picture.span_s, picture.text_rgb, picture.data.capacity()),
              std::tuple(3, -1, 2, 60, 0x202020U, 32U));
    const std::vector<std::string> texts = {picture.title,   picture.x_title,   picture.y_title,
                                            picture.font,    picture.data_name, picture.data_text,
                                            plot.page_name()};
    EXPECT_THAT(texts, testing::ElementsAre("Furnace", "Time", "Volts", "Arial", "TrendData",
                                            "of pod 5", "PAGE1"));
    EXPECT_EQ(picture.looks,
              (std::vector<LineLook>{{0, Dash::Solid, false}, {0x123456, Dash::Dashed, false}}));
    EXPECT_EQ(picture.legend, (std::vector<std::string>{"A", "B"}));
    EXPECT_FALSE(plot.drawn());
    plot.WGUpdatePage(page);
    EXPECT_TRUE(plot.drawn());
}

TEST_F(PagePlotTest, RowsStandOneIntervalApartAndKnowTheClock) {
    const PlotHandle set = plot.WRDefineDynDataSet(graph_on_page(), "TrendData", 1, 6, 60);
    append(set, {1});
    loop.advance(6000);
    append(set, {2});
    EXPECT_EQ(plot.picture().data.range(), (TimeRange{0, 6}));
    EXPECT_EQ(plot.picture().data.wall_time(6), (WallTime{2026, 1, 5, 8, 0, 6, 0}));
    // Rows of a log have times of their own.
    plot.append_row(60, {2025, 12, 31, 23, 0, 0, 0}, std::vector<float>{3});
    EXPECT_EQ(plot.picture().data.range(), (TimeRange{0, 60}));
    EXPECT_EQ(plot.picture().data.value(2, 0), 3);
}

TEST_F(PagePlotTest, TellsItsLastError) {
    const PlotHandle graph = graph_on_page();
    const PlotHandle set = plot.WRDefineDynDataSet(graph, "TrendData", 2, 1, 60);
    const std::pair<std::function<void()>, std::int16_t> each[] = {
        {[&] {
             append(set, {1, 2});
         },
         NoPlotError},
        {[&] { append(set, {1}); }, WrongRowLength},
        {[&] {
             append(graph, {1, 2});
         },
         UnknownHandle},
        {[&] { plot.WGDrawYAxis(graph); }, NoPlotError},
        {[&] { EXPECT_EQ(plot.WGCreateGraph(99), NoPlotHandle); }, UnknownHandle},
        {[&] { EXPECT_EQ(plot.WRDefineDynDataSet(set, "", 1, 1, 1), NoPlotHandle); },
         UnknownHandle},
        {[&] { plot.WRSetBargraph(graph, graph); }, UnknownHandle},
        {[&] { plot.WGCreatePage("PAGE2"); }, NoPlotError}};
    for (std::size_t i = 0; i < std::size(each); ++i) {
        each[i].first();
        EXPECT_EQ(plot.WGGetLastError(), each[i].second) << i;
    }
    EXPECT_EQ(plot.picture().data.end_row(), 1U);
    EXPECT_FALSE(plot.picture().bars);
}

TEST_F(PagePlotTest, AFreedGraphIsNoLongerValidAndANewOneStartsEmpty) {
    const PlotHandle graph = graph_on_page();
    const PlotHandle set = plot.WRDefineDynDataSet(graph, "TrendData", 1, 1, 60);
    plot.WRDynGrid(graph);
    append(set, {1});
    plot.WGUpdatePage(page);
    const std::uint64_t drawn = plot.revision();
    plot.WRDeleteRTGraph(graph);
    plot.WRFreeDynDataSet(set);
    EXPECT_NE(plot.revision(), drawn);
    EXPECT_FALSE(plot.WGIsDescValid(graph) || plot.WGIsDescValid(set) || plot.drawn());
    EXPECT_FALSE(plot.WGIsDescValid(NoPlotHandle));
    EXPECT_EQ(plot.picture().data.end_row(), 1U) << "who is still drawing it has its rows";
    const std::uint64_t number = plot.graph_number();
    EXPECT_NE(graph_on_page(), graph);
    EXPECT_NE(plot.graph_number(), number);
    EXPECT_TRUE(plot.WGIsDescValid(page) && !plot.picture().grid && plot.picture().data.empty());
    plot.WRCleanup();
    EXPECT_FALSE(plot.WGIsDescValid(page));
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
    EXPECT_EQ(std::pair(printed, set_up), std::pair(1, 1));
}

TEST_F(PagePlotTest, ColoursAreThoseOfTheGround) {
    EXPECT_EQ(plot.WGGetRGBColor(FirstLineColour), graph_colour(FirstLineColour, Ground::Light));
    plot.set_ground(Ground::Dark);
    EXPECT_EQ(plot.WGGetRGBColor(TextColour), graph_colour(TextColour, Ground::Dark));
}

}  // namespace
}  // namespace kavorix::test
