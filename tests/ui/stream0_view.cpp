#include "ui/streams/stream0_view.h"

#include <gtest/gtest.h>

#include "support/ui_rig.h"

namespace kavorix {
namespace {

using test::Lines;
using test::scan;
using test::UiRig;

// Pods 3 (7R), 5 (8S), 8 (7V), all selected, with readings on their way.
class Stream0ViewTest : public testing::Test, protected UiRig {
  protected:
    Stream0ViewTest() {
        station({{3, "7SJA 0F 1.00"}, {5, "8SFN 0F 1.00"}, {8, "7VJA 0F 1.00"}});
        click({3, 5, 8});
    }
    void reading(int pod, const test::Reply& reply) {
        driver.pod(pod).waiting[0] = {reply};
        decoder.read_stream0(Pod::numbered(pod), {});
    }
    Lines row(int number) const {
        Lines cells;
        for (int column = 0; column < static_cast<int>(view.headings().size()); ++column)
            cells.push_back(view.cell(number - 1, column).text);
        return cells;
    }
    std::vector<int> changed() {
        view.refresh();
        std::vector<int> rows = view.take_changed_rows();
        for (int& row : rows) ++row;
        return rows;
    }
    void view_pod(int list_index) { view.cboView_Click(list_index); }

    Stream0View view{run_time, configuration};
};

TEST_F(Stream0ViewTest, OpensOnTheFirstSelectedPod) {
    config(3).Channel[0].Label = "Oven";
    config(3).Channel[0].Unit =
        "\xB0"
        "C";
    run_time.Poll.PollCount = 12;
    view.load();
    EXPECT_EQ(run_time.Poll.ViewOpen[0], 1);
    EXPECT_EQ(run_time.Poll.ViewedZav, Pod::at_index(2));
    EXPECT_EQ(view.screen.caption, "Stream 0");
    EXPECT_EQ(view.screen.lblZAV.caption, "Viewing ZAV:");
    EXPECT_EQ(view.screen.lblNum.caption, "03");
    EXPECT_EQ(view.screen.cmdToggle.caption, "--> &Multi View");
    EXPECT_EQ(view.screen.lblUpdateNum.caption, "12");
    EXPECT_EQ(view.screen.cboView.entries,
              (std::vector<ListEntry>{{"03 - 7S", 2}, {"05 - 8S", 4}, {"08 - 7V", 7}}));
    EXPECT_EQ(view.screen.cboView.index, 0);
    EXPECT_EQ(view.headings(), (Lines{"Chan", "Value", "Label", "Unit", "Peak Min", "Peak Max"}));
    EXPECT_EQ(view.row_count(), 10);
    EXPECT_EQ(row(1), (Lines{"01", "", "Oven",
                             "\xB0"
                             "C",
                             "", ""}));
    view.unload();
    EXPECT_EQ(run_time.Poll.ViewOpen[0], 0);
}

TEST_F(Stream0ViewTest, OpensOnThePodLastViewedWhenItIsSelected) {
    run_time.Poll.ViewedZav = Pod::at_index(7);
    view.load();
    EXPECT_EQ(view.screen.cboView.index, 2);
    EXPECT_EQ(view.screen.lblNum.caption, "08");
    view.unload();
    click({8});
    view.load();
    EXPECT_EQ(run_time.Poll.ViewedZav, Pod::at_index(2));
    EXPECT_EQ(view.screen.cboView.index, 0);
}

TEST_F(Stream0ViewTest, WithoutASelectionItIsEmpty) {
    view.load();
    view.unload();
    click({3, 5, 8});
    view.load();
    EXPECT_EQ(view.row_count(), 0);
    EXPECT_EQ(view.screen.cboView.index, -1);
    view.cmdToggle_Click();
    EXPECT_EQ(view.row_count(), 0);
    view.cboView_Click(0);
    view.cboView_Click(-1);
    view.cmdMin_Click();
}

struct CellRow {
    const char* type;
    int channel;
    float value;
    int code;
    const char* shown;
    bool error;
};

TEST_F(Stream0ViewTest, CellsFollowTypeChannelAndCode) {
    const CellRow rows[] = {
        {"8R", 1, 1.0F, 0, "1", false},
        {"8S", 32, 12345.6F, 0, "12346", false},
        {"7V", 5, 1.5F, 0, "1.500000", false},
        {"7V", 19, 1.0F, 0, "1", false},
        {"7W", 20, 7.0F, 128, "7", false},
        {"7W", 18, -0.25F, 0, "-0.250000", false},
        {"7R", 19, 1234567.0F, 0, "1234567.000000", false},
        {"7R", 1, 9.0F, 129, "ErrOvrld", true},
        {"8R", 1, 9.0F, 142, "ErrTmOut", true},
        {"7R", 1, 9.0F, 136, "", true},  // an error code without a name
        {"7R", 1, 9.0F, 141, "Pending", true},
    };
    for (const CellRow& row : rows) {
        SCOPED_TRACE(row.type + std::to_string(row.channel));
        UiRig rig;
        rig.station({{3, std::string(row.type) + "JA 0F 1.00"}});
        rig.click({3});
        Stream0View single(rig.run_time, rig.configuration);
        single.load();
        std::vector<float> values(32, row.value);
        rig.driver.pod(3).waiting[0] = {
            scan(values, std::vector<std::int16_t>(32, static_cast<std::int16_t>(row.code)))};
        rig.decoder.read_stream0(Pod::at_index(2), {});
        single.refresh();
        EXPECT_EQ(single.cell(row.channel - 1, 1), (GridCell{row.shown, row.error}));
    }
}

TEST_F(Stream0ViewTest, PeaksShowUntilTheyAreReset) {
    view.load();
    reading(3, scan({1.0F, 2.0F}));
    reading(3, scan({3.0F, -2.0F}));
    reading(8, scan({5.0F}));
    view.refresh();
    EXPECT_EQ(row(1), (Lines{"01", "3.000000", "", "", "1.000000", "3.000000"}));
    EXPECT_EQ(row(2), (Lines{"02", "-2.000000", "", "", "-2.000000", "2.000000"}));
    view.cmdMax_Click();
    EXPECT_EQ(row(1), (Lines{"01", "3.000000", "", "", "1.000000", ""}));
    EXPECT_EQ(status(3).PeakMax[31], -3.4E38F);
    EXPECT_EQ(status(3).MaxChanged, ChannelFlags{});
    EXPECT_EQ(status(3).MinChanged[0], 1);
    EXPECT_EQ(status(8).PeakMax[0], 5.0F);
    view.cmdMin_Click();
    EXPECT_EQ(status(3).PeakMin[0], 3.4E38F);
    EXPECT_EQ(status(3).MinChanged, ChannelFlags{});
    EXPECT_EQ(row(1), (Lines{"01", "3.000000", "", "", "", ""}));
    reading(3, scan({2.5F, 2.0F}));
    view.refresh();
    EXPECT_EQ(row(1), (Lines{"01", "2.500000", "", "", "2.500000", "2.500000"}));
}

TEST_F(Stream0ViewTest, OnlyRowsThatDifferAreGivenForDrawing) {
    view.load();
    const auto first_layout = view.layout();
    reading(3, scan(std::vector<float>(10, 1.0F)));
    EXPECT_EQ(changed(), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(view.layout(), first_layout);
    EXPECT_EQ(changed(), std::vector<int>{});
    std::vector<float> values(10, 1.0F);
    values[3] = 1.5F;
    reading(3, scan(values));
    EXPECT_EQ(changed(), (std::vector<int>{4}));
    reading(3, scan(values, {0, 0, 0, 0, 0, 0, 0, 0, 0, 129}));
    EXPECT_EQ(changed(), (std::vector<int>{10}));
    EXPECT_EQ(changed(), std::vector<int>{});
    reading(5, scan(std::vector<float>(32, 1.0F)));  // not viewed
    EXPECT_EQ(changed(), std::vector<int>{});
    view.cmdMax_Click();
    EXPECT_EQ(view.take_changed_rows().size(), 10u);
    // Two changes before the drawing give the row once.
    for (const float value : {2.0F, 3.0F}) {
        values[0] = value;
        reading(3, scan(values));
        view.refresh();
    }
    const std::vector<int> rows = view.take_changed_rows();
    EXPECT_EQ(std::count(rows.begin(), rows.end(), 0), 1);
}

TEST_F(Stream0ViewTest, TheRowsFollowTheCountOfTheLastRecord) {
    view.load();
    reading(3, scan({1, 2, 3}));
    view.refresh();
    EXPECT_EQ(view.row_count(), 3);
    auto layout = view.layout();
    reading(3, scan(std::vector<float>(32, 1.0F)));
    view.refresh();
    EXPECT_EQ(view.row_count(), 32);
    EXPECT_NE(view.layout(), layout);
}

TEST_F(Stream0ViewTest, DataThatIsNotReadLeavesTheRowsOfTheType) {
    view.load();
    status(3).StreamSeen[0] = 1;  // data waits, but the pod was not triggered
    view.refresh();
    EXPECT_EQ(view.row_count(), 10);
    EXPECT_EQ(row(1)[1], "");
}

TEST_F(Stream0ViewTest, AnotherPodIsChosenInTheList) {
    view.load();
    const auto layout = view.layout();
    view_pod(1);
    EXPECT_EQ(run_time.Poll.ViewedZav, Pod::at_index(4));
    EXPECT_EQ(view.screen.lblNum.caption, "05");
    EXPECT_EQ(view.row_count(), 32);
    EXPECT_NE(view.layout(), layout);
    view_pod(99);
    EXPECT_EQ(run_time.Poll.ViewedZav, Pod::at_index(4));
}

TEST_F(Stream0ViewTest, FollowsAPodThatAnotherViewChose) {
    reading(3, scan(std::vector<float>(10, 3.0F)));
    reading(8, scan(std::vector<float>(10, 8.0F)));
    view.load();
    run_time.Poll.ViewedZav = Pod::at_index(7);
    view.refresh();
    EXPECT_EQ(view.screen.lblNum.caption, "08");
    EXPECT_EQ(view.screen.cboView.index, 2);
    EXPECT_EQ(row(1)[1], "8.000000");
}

TEST_F(Stream0ViewTest, MultiViewHasTheChosenChannelsOfAllPods) {
    for (const int pod : {3, 5, 8}) {
        status(pod).ViewChannel[1] = 1;
        reading(pod, scan({1, 2, 3}));
    }
    status(8).ViewChannel[2] = 1;
    view.load();
    view.cmdToggle_Click();
    EXPECT_TRUE(view.multi_view());
    EXPECT_EQ(view.screen.lblZAV.caption, " Multi View:");
    EXPECT_EQ(view.screen.lblNum.caption, "ON");
    EXPECT_EQ(view.screen.cmdToggle.caption, "&Single View <--");
    EXPECT_EQ(view.headings().front(), "ZAV  Chan");
    ASSERT_EQ(view.row_count(), 4);
    EXPECT_EQ(row(1), (Lines{"03   02", "2.000000", "", "", "2.000000", "2.000000"}));
    EXPECT_EQ(row(2), (Lines{"05   02", "2", "", "", "2", "2"}));
    EXPECT_EQ(row(4)[0], "08   03");
    reading(8, scan({1, 2, 4}));
    EXPECT_EQ(changed(), (std::vector<int>{4}));
    view.cmdToggle_Click();
    EXPECT_EQ(view.screen.cmdToggle.caption, "--> &Multi View");
    EXPECT_EQ(view.row_count(), 3);
}

TEST_F(Stream0ViewTest, MultiViewFollowsAnotherChoiceOfAsManyChannels) {
    status(3).ViewChannel[0] = 1;
    view.load();
    view.cmdToggle_Click();
    EXPECT_EQ(row(1)[0], "03   01");
    status(3).ViewChannel = ChannelFlags{};
    status(3).ViewChannel[6] = 1;
    view.refresh();
    EXPECT_EQ(row(1)[0], "03   07");
}

TEST_F(Stream0ViewTest, MultiViewStartsWithEveryChannelOfAPodWithoutAChoice) {
    view.load();
    view.cmdToggle_Click();
    EXPECT_EQ(view.row_count(), 10 + 32 + 20);
}

TEST_F(Stream0ViewTest, RefreshShowsThePollCount) {
    view.load();
    run_time.Poll.PollCount = 86400;
    view.refresh();
    EXPECT_EQ(view.screen.lblUpdateNum.caption, "86400");
}

TEST_F(Stream0ViewTest, OtherLabelsAreAnotherLayout) {
    view.load();
    const auto layout = view.layout();
    config(3).Channel[0].Label = "New";
    view.configuration_changed();
    EXPECT_NE(view.layout(), layout);
    EXPECT_EQ(row(1)[2], "New");
}

TEST_F(Stream0ViewTest, ReadingsThatAreNoNumbersAreDrawnOnce) {
    view.load();
    const float not_a_number = std::numeric_limits<float>::quiet_NaN();
    reading(3, scan({not_a_number}));
    view.refresh();
    EXPECT_EQ(row(1)[1], "NaN");
    view.take_changed_rows();
    reading(3, scan({not_a_number}));
    EXPECT_EQ(changed(), std::vector<int>{});
}

}  // namespace
}  // namespace kavorix
