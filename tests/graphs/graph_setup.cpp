#include "graphs/graph_setup.h"

#include <gmock/gmock.h>

#include "model/catalogue.h"
#include "support/recording_failures.h"
#include "support/rig.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;

class GraphSetupTest : public testing::Test {
  protected:
    GraphSetupTest() {
        pod(3, "7V", 20);
        pod(7, "8R", 32);
    }

    void pod(int number, std::string_view type, std::int16_t channels) {
        PodStatus& record = (*status)[at(number - 1)];
        std::copy(type.begin(), type.end(), record.Ident.begin());
        record.Channels = channels;
        link.ZavSelected.add(Pod::numbered(number));
    }
    GraphSetupScreen& open() {
        setup.Form_Load();
        return setup.screen;
    }
    void tick(int channel, bool checked = true) {
        setup.screen.chkChan[at(channel - 1)].checked = checked;
        setup.chkChan_Click(channel - 1);
    }
    int visible_boxes() const {
        return static_cast<int>(std::count_if(setup.screen.chkChan.begin(),
                                              setup.screen.chkChan.end(),
                                              [](const CheckBox& box) { return box.visible; }));
    }
    std::string refusal() {
        EXPECT_FALSE(setup.cmdOK_Click());
        const auto boxes = dialogs.take_boxes();
        if (boxes.size() != 1) return "boxes: " + std::to_string(boxes.size());
        EXPECT_EQ(boxes[0].flags, 48);
        EXPECT_EQ(boxes[0].title, "KAVORIX");
        return boxes[0].text;
    }

    GraphState graph;
    std::unique_ptr<PodStatuses> status = std::make_unique<PodStatuses>();
    LinkState link;
    std::unique_ptr<PodConfigs> pods = std::make_unique<PodConfigs>();
    ScriptedDialogs dialogs;
    RecordingFailures failures;
    int printer_setups = 0;
    GraphSetup setup{
        {graph, *status, link, *pods, dialogs, failures, [this] { ++printer_setups; }}};
};

TEST_F(GraphSetupTest, OpensWithTheSettingsInForce) {
    graph.Settings.Hours = 5;
    graph.Settings.Minutes = 7;
    graph.Settings.YMaximum = 0.123456789012;
    graph.Settings.YMinimum = -1e20;
    graph.Settings.Title = "Furnace 3";
    const GraphSetupScreen& screen = open();
    EXPECT_TRUE(screen.optTrend.selected);
    EXPECT_FALSE(screen.optBar.selected);
    EXPECT_TRUE(screen.chkGridLines.enabled);
    EXPECT_TRUE(screen.chkGridLines.checked);
    EXPECT_EQ(screen.txtHours.text, "5");
    EXPECT_EQ(screen.txtMinutes.text, "7");
    EXPECT_EQ(screen.txtPosVal.text, "0.123456789012");
    EXPECT_EQ(screen.txtNegVal.text, "-1e+20");
    EXPECT_EQ(screen.txtTitle.text, "Furnace 3");
    EXPECT_EQ(screen.txtXTitle.text, "Time");
    EXPECT_EQ(screen.txtYTitle.text, "ZAV Data");
    EXPECT_TRUE(screen.txtHours.enabled && screen.txtMinutes.enabled && screen.txtXTitle.enabled &&
                screen.lblTimeSpan.enabled && screen.lblXTitle.enabled);
}

TEST_F(GraphSetupTest, ABarGraphOpensWithoutSpanAndXAxis) {
    graph.Settings.Type = BarGraph;
    const GraphSetupScreen& screen = open();
    EXPECT_TRUE(screen.optBar.selected);
    EXPECT_FALSE(screen.optTrend.selected);
    EXPECT_FALSE(screen.chkGridLines.enabled || screen.txtHours.enabled ||
                 screen.txtMinutes.enabled || screen.lblTimeSpan.enabled ||
                 screen.lblHours.enabled || screen.lblMinutes.enabled || screen.txtXTitle.enabled ||
                 screen.lblXTitle.enabled);
    EXPECT_TRUE(screen.txtYTitle.enabled && screen.txtPosVal.enabled);
}

TEST_F(GraphSetupTest, OpeningReplacesTheseStoredTitlesAlone) {
    struct Case {
        std::int16_t type;
        const char* stored;
        const char* shown;
    };
    for (const Case& c :
         {Case{TrendGraph, "Bar Graph", "Trend Graph"}, Case{BarGraph, "Bar Graph", "Bar Graph"},
          Case{TrendGraph, "TrendGraph", "Trend Graph"}, Case{BarGraph, "TrendGraph", "Bar Graph"},
          Case{BarGraph, "Trend Graph", "Trend Graph"}, Case{TrendGraph, "Mine", "Mine"},
          Case{TrendGraph, "", ""}}) {
        graph.Settings.Type = c.type;
        graph.Settings.Title = c.stored;
        EXPECT_EQ(open().txtTitle.text, c.shown) << c.type << " " << c.stored;
    }
}

TEST_F(GraphSetupTest, ChoosingTheTypeReplacesTheOthersTitleOrNone) {
    struct Case {
        bool bar;
        const char* before;
        const char* after;
    };
    for (const Case& c : {Case{true, "Trend Graph", "Bar Graph"}, Case{true, "", "Bar Graph"},
                          Case{true, "Mine", "Mine"}, Case{true, "Bar Graph", "Bar Graph"},
                          Case{false, "Bar Graph", "Trend Graph"}, Case{false, "", "Trend Graph"},
                          Case{false, "Mine", "Mine"}, Case{false, "Trend Graph", "Trend Graph"}}) {
        open().txtTitle.text = c.before;
        c.bar ? setup.optBar_Click() : setup.optTrend_Click();
        EXPECT_EQ(setup.screen.txtTitle.text, c.after) << c.bar << " " << c.before;
        EXPECT_EQ(setup.screen.txtHours.enabled, !c.bar);
        EXPECT_EQ(setup.screen.optBar.selected, c.bar);
    }
}

TEST_F(GraphSetupTest, ListsTheSelectedPodsAndTheChannelsOfTheFirst) {
    (*pods)[2].Channel[1].Label = "Inlet";
    graph.TrendSelected[2][1] = 1;
    graph.TrendSelected[6][31] = 1;
    const GraphSetupScreen& screen = open();
    EXPECT_EQ(screen.cboZAV.entries,
              (std::vector<ListEntry>{{"03 - " + std::string(pod_type(Type7V).description), 2},
                                      {"07 - " + std::string(pod_type(Type8R).description), 6}}));
    EXPECT_EQ(screen.cboZAV.index, 0);
    EXPECT_EQ(visible_boxes(), 20);
    EXPECT_EQ(screen.chkChan[0].caption, "01");
    EXPECT_EQ(screen.chkChan[1].caption, "02  Inlet");
    EXPECT_TRUE(screen.chkChan[1].checked);
    EXPECT_FALSE(screen.chkChan[0].checked);
    EXPECT_EQ(screen.frmChan.caption, "2");
}

TEST_F(GraphSetupTest, AnotherPodShowsItsOwnChannels) {
    open();
    tick(2);
    setup.cboZAV_Click(1);
    EXPECT_EQ(visible_boxes(), 32);
    EXPECT_FALSE(setup.screen.chkChan[1].checked);
    tick(32);
    EXPECT_EQ(setup.screen.frmChan.caption, "2");
    setup.cboZAV_Click(0);
    EXPECT_TRUE(setup.screen.chkChan[1].checked);
    tick(2, false);
    EXPECT_EQ(setup.screen.frmChan.caption, "1");
}

TEST(WrappedStep, GoesRoundAtBothEnds) {
    struct Case {
        int value, steps, highest, result;
    };
    for (const Case& c :
         {Case{0, -1, 23, 23}, Case{23, 1, 23, 0}, Case{0, -1, 59, 59}, Case{59, 1, 59, 0},
          Case{5, 1, 23, 6}, Case{5, -10, 59, 55}, Case{5, -200, 59, 45}})
        EXPECT_EQ(wrapped_step(c.value, c.steps, 0, c.highest), c.result)
            << c.value << " " << c.steps;
}

TEST_F(GraphSetupTest, SpinnersChangeTheirFields) {
    open().txtHours.text = "23";
    setup.spinHours(1);
    EXPECT_EQ(setup.screen.txtHours.text, "0");
    setup.screen.txtMinutes.text = "0";
    setup.spinMinutes(-1);
    EXPECT_EQ(setup.screen.txtMinutes.text, "59");
    setup.screen.txtMinutes.text = "x";
    setup.spinMinutes(1);
    EXPECT_EQ(setup.screen.txtMinutes.text, "1");
}

TEST_F(GraphSetupTest, SixteenChannelsAreAcceptedSeventeenRefused) {
    open();
    for (int channel = 1; channel <= 16; ++channel) tick(channel);
    EXPECT_TRUE(setup.cmdOK_Click());
    EXPECT_EQ(graph.GraphsSetUp, 1);
    open();
    tick(17);
    EXPECT_EQ(refusal(), "Maximum of 16 Channels Exceeded - De-Select Channel(s)");
    EXPECT_EQ(graph.TrendSelected[2][16], 0);
}

TEST_F(GraphSetupTest, ASpanOfZeroIsRefused) {
    open().txtMinutes.text = "0";
    EXPECT_EQ(refusal(), "ERROR:  - A Time Period must be Entered");
    setup.screen.txtHours.text = "1";
    EXPECT_TRUE(setup.cmdOK_Click());
    EXPECT_EQ(graph.Settings.Hours, 1);
    EXPECT_EQ(graph.Settings.Minutes, 0);
}

TEST_F(GraphSetupTest, TheRangeMustRise) {
    open();
    struct Case {
        const char* positive;
        const char* negative;
        bool accepted;
    };
    for (const Case& c : {Case{"10", "-10", true}, Case{"5", "5", false}, Case{"-1", "1", false},
                          Case{"1,000", "999", true}, Case{"-5", "-5.5", true}}) {
        setup.screen.txtPosVal.text = c.positive;
        setup.screen.txtNegVal.text = c.negative;
        if (c.accepted)
            EXPECT_TRUE(setup.cmdOK_Click()) << c.positive;
        else
            EXPECT_EQ(refusal(), "Y Axis Range ERROR:  + Val must be GREATER than - Val")
                << c.positive;
    }
    EXPECT_EQ(graph.Settings.YMaximum, -5);
    EXPECT_EQ(graph.Settings.YMinimum, -5.5);
}

TEST_F(GraphSetupTest, ChecksComeInTheirOrder) {
    open();
    for (int channel = 1; channel <= 17; ++channel) tick(channel);
    setup.screen.txtMinutes.text = "0";
    setup.screen.txtNegVal.text = "9";
    EXPECT_EQ(refusal(), "Maximum of 16 Channels Exceeded - De-Select Channel(s)");
    tick(17, false);
    EXPECT_EQ(refusal(), "ERROR:  - A Time Period must be Entered");
    setup.spinMinutes(1);
    EXPECT_EQ(refusal(), "Y Axis Range ERROR:  + Val must be GREATER than - Val");
    EXPECT_EQ(graph.GraphsSetUp, 0);
    EXPECT_EQ(graph.TrendSelected, ChosenChannels{});
}

TEST_F(GraphSetupTest, AcceptedSettingsAreInForce) {
    open();
    setup.optBar_Click();
    setup.screen.txtYTitle.text = "Volts";
    setup.screen.chkGridLines.checked = true;
    tick(4);
    EXPECT_TRUE(setup.cmdOK_Click());
    EXPECT_EQ(graph.Settings.Type, BarGraph);
    EXPECT_EQ(graph.Settings.GridLines, 0);
    EXPECT_EQ(graph.Settings.Title, "Bar Graph");
    EXPECT_EQ(graph.Settings.YTitle, "Volts");
    EXPECT_EQ(graph.TrendSelected[2][3], 1);
    EXPECT_EQ(graph.GraphsSetUp, 1);
}

TEST_F(GraphSetupTest, WithoutAChannelNoGraphIsSetUp) {
    graph.GraphsSetUp = 1;
    graph.TrendSelected[2][3] = 1;
    open();
    tick(4, false);
    EXPECT_TRUE(setup.cmdOK_Click());
    EXPECT_EQ(graph.GraphsSetUp, 0);
    EXPECT_EQ(graph.TrendSelected, ChosenChannels{});
}

TEST_F(GraphSetupTest, FieldsAreCheckedWhenTheyAreLeft) {
    open();
    struct Case {
        bool (GraphSetup::*leave)(std::string_view);
        TextField& field;
        const char* text;
        const char* message;
    };
    GraphSetupScreen& s = setup.screen;
    for (const Case& c : {
             Case{&GraphSetup::txtHours_LostFocus, s.txtHours, "24",
                  "Hours must be a whole number from 0 to 23"},
             Case{&GraphSetup::txtHours_LostFocus, s.txtHours, "",
                  "Hours must be a whole number from 0 to 23"},
             Case{&GraphSetup::txtHours_LostFocus, s.txtHours, "23", ""},
             Case{&GraphSetup::txtMinutes_LostFocus, s.txtMinutes, "1.5",
                  "Minutes must be a whole number from 0 to 59"},
             Case{&GraphSetup::txtMinutes_LostFocus, s.txtMinutes, "-1",
                  "Minutes must be a whole number from 0 to 59"},
             Case{&GraphSetup::txtMinutes_LostFocus, s.txtMinutes, "59", ""},
             Case{&GraphSetup::txtPosVal_LostFocus, s.txtPosVal, "ten", "+ Val must be a number"},
             Case{&GraphSetup::txtPosVal_LostFocus, s.txtPosVal, "1E3", ""},
             Case{&GraphSetup::txtNegVal_LostFocus, s.txtNegVal, "", "- Val must be a number"},
         }) {
        c.field.text = c.text;
        EXPECT_TRUE((setup.*c.leave)("cmdCancel"));
        EXPECT_EQ((setup.*c.leave)("cmdOK"), *c.message == 0) << c.text;
        const auto boxes = dialogs.take_boxes();
        EXPECT_EQ(boxes.empty() ? "" : boxes[0].text, c.message) << c.text;
    }
    EXPECT_EQ(dialogs.beeps, 6);
}

TEST_F(GraphSetupTest, PrinterSetupIsTheDrawingLayers) {
    setup.cmdPrinterSetup_Click();
    EXPECT_EQ(printer_setups, 1);
}

}  // namespace
}  // namespace kavorix::test
