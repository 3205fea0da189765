#include "graphs/live_graph.h"

#include <gmock/gmock.h>

#include "recording_plot.h"
#include "support/recording_failures.h"
#include "support/rig.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RecordingGraphWindow : public GraphWindow {
  public:
    void show_graph() override { calls.push_back("show"); }
    void close_graph() override { calls.push_back("close"); }
    Lines calls;
};

class LiveGraphTest : public testing::Test {
  protected:
    LiveGraphTest() {
        select(7);
        choose(7, 12);
    }

    void select(int pod) { link.ZavSelected.add(Pod::numbered(pod)); }
    void choose(int pod, int channel) { graph.TrendSelected[at(pod - 1)][at(channel - 1)] = 1; }
    Lines view() {
        live.view_graph();
        return plot.take_calls();
    }
    static std::string padded(std::string entry) {
        entry.resize(42, ' ');
        return entry;
    }

    GraphState graph;
    std::unique_ptr<PodStatuses> status = std::make_unique<PodStatuses>();
    LinkState link;
    std::unique_ptr<PodConfigs> pods = std::make_unique<PodConfigs>();
    ScriptedDialogs dialogs;
    RecordingFailures failures;
    RecordingPlot plot;
    RecordingGraphWindow window;
    LiveGraph live{{graph, *status, link, *pods, dialogs, failures, plot, window}};
};

TEST_F(LiveGraphTest, TrendIsBuiltOperationByOperation) {
    graph.Settings.Hours = 1;
    graph.Settings.Minutes = 30;
    graph.Settings.YMaximum = 10;
    graph.Settings.YMinimum = -10;
    EXPECT_THAT(
        view(),
        ElementsAre("WGCreatePage PAGE1", "WGEnableDialogs off", "WGCreateGraph 1",
                    "WGSetPlotArea 2 0.12 0.96 0.08 0.73", "WGScalePlotArea 2 0 5400 -10 10",
                    "WGSetXYIntercepts 2 0 -10", "WGSetTextByName 2 Arial 1000",
                    "WGSetLineStyle 2 0 1001 solid", "WGDrawYAxis 2", "WGLabelAxis 2 Y",
                    "WGTitleAxis 2 Y ZAV Data", "WGTitleGraph 2 Trend Graph", "WRDrawTimeAxis 2",
                    "WRLabelTimeAxis 2", "WGTitleAxis 2 X Time", "WRDynGrid 2",
                    "WRDefineDynDataSet 2 TrendData 1 1 5400", "WRSetDynText 3 Volts",
                    "WRDynLegendPtr 2 3 " + padded("ZAV07 Chan12") + " 0 1 0.85 0.99",
                    "WRSetScrollGraph 2 3", "WRStartTimeLabelsUpdate 2", "WGUpdatePage 1"));
    EXPECT_THAT(window.calls, ElementsAre("show"));
    EXPECT_EQ(graph.TrendRunning, 1);
}

TEST_F(LiveGraphTest, BarsAreBuiltOperationByOperation) {
    graph.Settings.Type = BarGraph;
    graph.Settings.Title = "Bar Graph";
    choose(7, 13);
    (*pods)[6].Channel[12].Label = "Inlet";
    EXPECT_THAT(
        view(),
        ElementsAre(
            "WGCreatePage PAGE1", "WGEnableDialogs off", "WGCreateGraph 1",
            "WGSetPlotArea 2 0.12 0.95 0.1 0.7", "WGScalePlotArea 2 0 2 -2 2",
            "WGSetXYIntercepts 2 0 -2", "WGSetTextByName 2 Arial 1000",
            "WGSetLineStyle 2 0 1001 solid", "WGSetLineStyle 2 1 1002 solid", "WGDrawYAxis 2",
            "WGLabelAxis 2 Y", "WGTitleAxis 2 Y ZAV Data", "WGTitleGraph 2 Bar Graph",
            "WRDefineDynDataSet 2 BarData 2 1 0", "WRSetDynText 3 Volts",
            "WRDynLegendPtr 2 3 " + padded("ZAV07 Chan12") + padded("Inlet") + " 0 1 0.8 0.95",
            "WRSetBargraph 2 3", "WGUpdatePage 1"));
    EXPECT_EQ(graph.TrendRunning, 1);
}

TEST_F(LiveGraphTest, WithoutGridLinesNoGrid) {
    graph.Settings.GridLines = 0;
    view();
    EXPECT_THAT(plot.calls_of("WRDynGrid"), IsEmpty());
}

TEST_F(LiveGraphTest, TheNinthLineIsTheFirstDashedOne) {
    for (int channel = 1; channel <= 8; ++channel) choose(9, channel);
    live.view_graph();
    EXPECT_THAT(
        plot.calls_of("WGSetLineStyle"),
        testing::AllOf(testing::SizeIs(9), testing::Contains("WGSetLineStyle 2 7 1008 solid"),
                       testing::Contains("WGSetLineStyle 2 8 1009 dashed")));
}

TEST(TrendInterval, GrowsByASecondForEveryFourHours) {
    struct Case {
        int hours, minutes;
        double interval_s, span_s;
    };
    for (const Case& c :
         {Case{0, 1, 1, 60}, Case{3, 59, 1, 14340}, Case{4, 0, 2, 14400}, Case{7, 59, 2, 28740},
          Case{19, 59, 5, 71940}, Case{20, 0, 6, 72000}, Case{23, 59, 6, 86340}}) {
        GraphSettings settings;
        settings.Hours = c.hours;
        settings.Minutes = c.minutes;
        EXPECT_EQ(trend_interval_s(settings), c.interval_s) << c.hours << ":" << c.minutes;
        EXPECT_EQ(trend_span_s(settings), c.span_s) << c.hours << ":" << c.minutes;
    }
}

TEST_F(LiveGraphTest, TheIntervalIsInForceForTheTrendAndASecondForBars) {
    graph.Settings.Hours = 23;
    view();
    EXPECT_EQ(graph.TrendInterval, 6);
    dialogs.answer(Answer::Ok);
    live.unload_request();
    graph.Settings.Type = BarGraph;
    view();
    EXPECT_EQ(graph.TrendInterval, 1);
}

TEST_F(LiveGraphTest, ASelectedPodWithoutAChannelRefuses) {
    select(3);
    EXPECT_THAT(view(), IsEmpty());
    EXPECT_EQ(
        dialogs.take_boxes(),
        (std::vector<ShownBox>{
            {"One or more Selected ZAV(s) have no Channels Selected to Graph", 48, "KAVORIX"}}));
    EXPECT_EQ(dialogs.beeps, 1);
    EXPECT_EQ(graph.TrendRunning, 0);
    EXPECT_THAT(window.calls, IsEmpty());
}

TEST_F(LiveGraphTest, EverySamplerStartsAtTheLastReading) {
    graph.TrendRef[6].fill(5);
    graph.TrendDev[6].fill(6);
    (*status)[6].Reading[11] = 1.5F;
    (*status)[49].Reading[31] = -2.5F;
    view();
    EXPECT_EQ(graph.TrendPeak[6][11], 1.5F);
    EXPECT_EQ(graph.TrendPeak[49][31], -2.5F);
    EXPECT_EQ(graph.TrendRef[6], ChannelValues{});
    EXPECT_EQ(graph.TrendDev[6], ChannelValues{});
}

TEST_F(LiveGraphTest, RowsGoToTheDataSetAndTheErrorIsKept) {
    choose(7, 13);
    view();
    live.WRUpdateData(std::vector<float>{1.5F, -2});
    EXPECT_THAT(plot.calls, ElementsAre("WRUpdateData 3 1.5 -2"));
    EXPECT_EQ(live.last_error(), 0);
    plot.error = 7;
    live.WRUpdateData(std::vector<float>{0, 0});
    EXPECT_EQ(live.last_error(), 7);
}

TEST_F(LiveGraphTest, CancelKeepsATrendOpen) {
    view();
    dialogs.answer(Answer::Cancel);
    EXPECT_FALSE(live.unload_request());
    EXPECT_EQ(dialogs.take_boxes(),
              (std::vector<ShownBox>{
                  {"All Data will be Lost. Are you Sure you want to Exit?", 33, "KAVORIX"}}));
    EXPECT_TRUE(live.exists());
    EXPECT_EQ(graph.TrendRunning, 1);
    EXPECT_THAT(plot.calls, IsEmpty());
}

TEST_F(LiveGraphTest, ClosingATrendFreesGraphAndDataSet) {
    view();
    dialogs.answer(Answer::Ok);
    EXPECT_TRUE(live.unload_request());
    EXPECT_THAT(plot.calls, ElementsAre("WRDeleteRTGraph 2", "WRFreeDynDataSet 3"));
    EXPECT_FALSE(live.exists());
    EXPECT_EQ(graph.TrendRunning, 0);
    EXPECT_THAT(window.calls, ElementsAre("show", "close"));
}

TEST_F(LiveGraphTest, ClosingBarsDoesNotAskEvenWhenTheSettingsWereResetMeanwhile) {
    graph.Settings.Type = BarGraph;
    view();
    graph.Settings = GraphSettings{};
    EXPECT_TRUE(live.unload_request());
    EXPECT_THAT(dialogs.boxes, IsEmpty());
    EXPECT_EQ(graph.TrendRunning, 0);
}

TEST_F(LiveGraphTest, OtherColoursAreGivenToTextsAndLines) {
    view();
    live.colours_changed();
    EXPECT_THAT(plot.calls, ElementsAre("WGSetTextByName 2 Arial 1000",
                                        "WGSetLineStyle 2 0 1001 solid", "WGUpdatePage 1"));
}

TEST_F(LiveGraphTest, PrintingIsTheDrawingLayers) {
    view();
    live.print();
    live.printer_setup();
    EXPECT_THAT(plot.calls, ElementsAre("WGPrintGraph 1", "WGPrinterSetup"));
}

TEST_F(LiveGraphTest, TheProgramsEndCleansUp) {
    {
        LiveGraph ending{{graph, *status, link, *pods, dialogs, failures, plot, window}};
        ending.view_graph();
        plot.take_calls();
    }
    EXPECT_THAT(plot.calls, ElementsAre("WRDeleteRTGraph 2", "WRFreeDynDataSet 3", "WRCleanup"));
}

TEST(Legend, EntriesAreLabelsOrNumbersInExactlyFortyTwoCharacters) {
    EXPECT_EQ(legend_entry("", {6, 11}), "ZAV07 Chan12" + std::string(30, ' '));
    EXPECT_EQ(legend_entry("Boiler", {0, 0}), "Boiler" + std::string(36, ' '));
    EXPECT_EQ(legend_entry(std::string(50, 'x'), {0, 0}), std::string(42, 'x'));
    EXPECT_EQ(legend_entry(std::string(42, 'x'), {0, 0}), std::string(42, 'x'));
}

TEST(Legend, ChannelsComeByPodAndThenByChannel) {
    ChosenChannels chosen{};
    chosen[49][0] = chosen[2][31] = chosen[2][4] = chosen[0][9] = 1;
    EXPECT_EQ(graphed_channels(chosen),
              (std::vector<GraphedChannel>{{0, 9}, {2, 4}, {2, 31}, {49, 0}}));
}

TEST(Legend, EntriesComeBackFromTheText) {
    EXPECT_EQ(legend_entries(legend_entry("a b ", {0, 0}) + legend_entry("", {1, 1})),
              (std::vector<std::string>{"a b", "ZAV02 Chan02"}));
}

}  // namespace
}  // namespace kavorix::test
