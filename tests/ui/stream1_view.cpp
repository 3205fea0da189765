#include "ui/streams/stream1_view.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "support/ui_rig.h"

namespace kavorix::test {
namespace {

TEST(SingleRequests, AreReadFromACommandString) {
    using Requests = std::vector<SingleRequest>;
    for (const auto& [text, requests] : std::vector<std::pair<std::string, Requests>>{
             {"", {}},
             {"TR;", {}},
             {"ME5;", {{5, false}}},
             {"ME05;IN12;TR;ME32;", {{5, false}, {12, true}, {32, false}}},
             {" ME5 ;", {{5, false}}},
             {"ME0;ME33;ME;INX;", {}},
             {"ME7", {}}})  // never sent without its semicolon
        EXPECT_EQ(single_requests(text), requests) << text;
}

class Stream1Test : public testing::Test, public UiRig {
  protected:
    Stream1Test() {
        station({{3, "7SBA 0F 1.00"}, {8, "8RCA 0F 1.00"}, {9, "7RAA 0F 1.00"}});
        told.at_boundary = [this] {
            if (run_time.Poll.ViewOpen[RequestStream] && run_time.Poll.Stream1Arrived)
                view.refresh();
        };
    }
    // The pods are selected and the view opened.
    void open(const std::vector<int>& pods) {
        click(pods);
        view.load();
    }
    void choose(const std::vector<int>& channels) {
        windows.at_select = [channels](SelectChannelsDialog& dialog) {
            dialog.cmdNone_Click();
            for (const int channel : channels) {
                dialog.screen.chkChan[at(channel - 1)].checked = true;
                dialog.chkChan_Click(channel - 1);
            }
            dialog.cmdOK_Click();
        };
        view.cmdSelChan_Click();
    }
    void answer(int pod, const Reply& reply) {
        driver.pod(pod).waiting[RequestStream].push_back(reply);
    }
    std::string data(int pod, int channel) const {
        for (int row = 0; row < view.row_count(); ++row)
            if (view.cell(row, 0).text == two_digits(pod) &&
                view.cell(row, 1).text == two_digits(channel)) {
                const GridCell cell = view.cell(row, 2);
                return (cell.error ? "!" : "") + cell.text;
            }
        return "no row";
    }
    void strain(int pod, int channel) { config(pod).Channel[at(channel - 1)].Mode = 60; }

    Stream1View view{
        {commands, loop, message_line, failures, configuration, run_time, choose_channels()}};
};

TEST_F(Stream1Test, HasARowForEveryChannelOfTheSelectedPods) {
    config(8).Channel[1].Label = "Door";
    config(8).Channel[1].Unit = "open";
    open({3, 8});
    EXPECT_EQ(view.headings(), (Lines{"ZAV", "Chan", "Data", "Label", "Units"}));
    EXPECT_EQ(view.row_count(), 10 + 20);
    Lines cells;
    for (int column = 0; column < 5; ++column) cells.push_back(view.cell(11, column).text);
    EXPECT_EQ(cells, (Lines{"08", "02", "", "Door", "open"}));
    EXPECT_EQ(run_time.Poll.ViewOpen, (StreamFlags{0, 1, 0, 0}));
    EXPECT_FALSE(view.screen.cmdMeasure.enabled);
}

TEST_F(Stream1Test, ChosenChannelsAreRequestedOfEverySelectedPod) {
    open({3, 8});
    choose({2, 10});
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 3 ME02", "Tx 8 ME02", "Tx 3 ME10", "Tx 8 ME10"}));
    EXPECT_EQ(view.screen.lblRequest.caption, "Requests:  ME02;ME10;");
    EXPECT_EQ(data(3, 2), "Measuring...");
    EXPECT_EQ(data(3, 3), "");
    EXPECT_EQ(data(8, 10), "Measuring...");
}

TEST_F(Stream1Test, AnswersStandAgainstTheirRequests) {
    config(3).Channel[1].MValue = 2.0F;
    open({3, 8});
    answer(3, single(1.5F, 0));
    answer(3, single(0, 0, 129));
    answer(8, single(1.0F, 0));
    answer(8, single(7.4F, 0));
    choose({2, 10});
    loop.run_for(1500);
    EXPECT_EQ(data(3, 2), "3.000000");
    EXPECT_EQ(data(3, 10), "!Overload");
    EXPECT_EQ(data(8, 2), "1");
    EXPECT_EQ(data(8, 10), "7");
    auto changed = view.take_changed_rows();
    std::sort(changed.begin(), changed.end());
    EXPECT_EQ(changed, (std::vector{1, 9, 11, 19}));
}

TEST_F(Stream1Test, StrainGaugesAreInitialised) {
    strain(3, 2);
    open({3});
    answer(3, single(0.25F, 1.5F));
    choose({2});
    EXPECT_EQ(driver.recorded("Tx"), Lines{"Tx 3 IN02"});
    EXPECT_EQ(data(3, 2), "Initialising...");
    loop.run_for(1500);
    EXPECT_EQ(data(3, 2), "Offset=0.250000 Initial Volt=1.500000");
}

TEST_F(Stream1Test, OrMeasuredWhenTheOperatorSaysSo) {
    strain(3, 2);
    open({3});
    view.screen.chkInit.checked = false;
    choose({2});
    EXPECT_EQ(driver.recorded("Tx"), Lines{"Tx 3 ME02"});
}

TEST_F(Stream1Test, AChannelThatIsNoGaugeOnEveryPodIsMeasured) {
    strain(3, 2);
    strain(3, 4);
    strain(9, 4);
    open({3, 9});
    choose({2, 4});
    EXPECT_EQ(view.screen.lblRequest.caption, "Requests:  ME02;IN04;");
}

TEST_F(Stream1Test, MeasurementsAndInitialisationsFollowEachOther) {
    strain(3, 2);
    config(3).Channel[0].MValue = 2.0F;
    open({3});
    Reply first = single(1.0F, 0);
    first.ready_ms = loop.elapsed_ms() + 700;
    answer(3, first);
    Reply second = single(0.5F, 2.5F);
    second.ready_ms = loop.elapsed_ms() + 2000;
    answer(3, second);
    choose({1, 2});
    EXPECT_EQ(driver.recorded("Tx"), Lines{"Tx 3 ME01"});
    loop.run_for(1200);
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 3 ME01", "Tx 3 IN02"}));
    loop.run_for(2000);
    EXPECT_EQ(data(3, 1), "2.000000");
    EXPECT_EQ(data(3, 2), "Offset=0.500000 Initial Volt=2.500000");
}

TEST_F(Stream1Test, MeasureRepeatsTheStoredRequests) {
    open({3});
    answer(3, single(1.0F, 0));
    choose({5});
    loop.run_for(1500);
    EXPECT_EQ(data(3, 5), "1.000000");
    answer(3, single(2.0F, 0));
    view.cmdMeasure_Click();
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 3 ME05", "Tx 3 ME05"}));
    loop.run_for(1500);
    EXPECT_EQ(data(3, 5), "2.000000");
}

TEST_F(Stream1Test, ASecondMeasurementWaitsForTheFirst) {
    open({3});
    choose({5});
    view.cmdMeasure_Click();
    EXPECT_EQ(driver.recorded("Tx"), Lines{"Tx 3 ME05"});
    answer(3, single(1.0F, 0));
    loop.run_for(1000);
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 3 ME05", "Tx 3 ME05"}));
}

TEST_F(Stream1Test, AnAnswerThatNeverCameDoesNotShiftTheNext) {
    open({3});
    choose({5});
    loop.run_for(200000);
    choose({6});
    answer(3, single(1.0F, 0));
    loop.run_for(1500);
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 3 ME05", "Tx 3 ME06"}));
    EXPECT_EQ(data(3, 6), "1.000000");
    EXPECT_EQ(data(3, 5), "");
}

TEST_F(Stream1Test, APodThatFailsHasNoAnswer) {
    open({3, 8});
    choose({5});
    driver.pod(3).test[0] = -1;
    loop.run_for(500);
    EXPECT_EQ(data(3, 5), "!No answer");
    EXPECT_EQ(data(8, 5), "Measuring...");
    const auto changed = view.take_changed_rows();
    EXPECT_TRUE(std::find(changed.begin(), changed.end(), 4) != changed.end());
}

TEST_F(Stream1Test, WithoutASelectionNothingIsSent) {
    open({3});
    choose({5});
    click({3});
    driver.calls.clear();
    for (int i = 0; i < 2; ++i) {
        if (i == 0)
            view.cmdMeasure_Click();
        else
            view.cmdSelChan_Click();
        EXPECT_EQ(run_time.Reports.Message.Text, " No ZAV Selected - Command not Sent");
        EXPECT_EQ(run_time.Reports.Message.Severity, Severity::Error);
        run_time.Reports.Message.Text.clear();
    }
    EXPECT_TRUE(driver.recorded("Tx").empty());
}

TEST_F(Stream1Test, CancellingTheChoiceSendsNothing) {
    open({3});
    view.cmdSelChan_Click();
    EXPECT_TRUE(driver.recorded("Tx").empty());
    EXPECT_FALSE(view.screen.cmdMeasure.enabled);
}

TEST_F(Stream1Test, TheChoiceStartsWithTheStoredChannels) {
    open({3, 8});
    choose({2, 10});
    std::vector<int> checked;
    windows.at_select = [&](SelectChannelsDialog& dialog) {
        EXPECT_EQ(dialog.screen.lblPrompt.caption, "Select Channels to Measure:");
        for (int channel = 1; channel <= MaxChannels; ++channel)
            if (dialog.screen.chkChan[at(channel - 1)].checked) checked.push_back(channel);
    };
    view.cmdSelChan_Click();
    EXPECT_EQ(checked, (std::vector{2, 10}));
}

TEST_F(Stream1Test, RequestsTypedElsewhereAreRepeatedToo) {
    open({3});
    send("ME7;");
    view.note_sent("ME7;");
    EXPECT_EQ(view.screen.lblRequest.caption, "Requests:  ME07;");
    EXPECT_EQ(data(3, 7), "Measuring...");
    answer(3, single(4.0F, 0));
    loop.run_for(1500);
    EXPECT_EQ(data(3, 7), "4.000000");
    view.cmdMeasure_Click();
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 3 ME7", "Tx 3 ME07"}));
    view.note_sent("TR;");
    EXPECT_EQ(view.screen.lblRequest.caption, "Requests:  ME07;");
}

TEST_F(Stream1Test, AnswersThatCameBeforeTheViewAreShown) {
    click({3});
    send("ME7;");
    answer(3, single(4.0F, 0));
    loop.run_for(1500);
    view.load();
    EXPECT_EQ(data(3, 7), "4.000000");
}

TEST_F(Stream1Test, CanBeNarrowedToTheRequestedChannels) {
    open({3, 8});
    choose({2, 15});
    view.screen.chkRequested.checked = true;
    const auto layout = view.layout();
    view.chkRequested_Click();
    EXPECT_NE(view.layout(), layout);
    EXPECT_EQ(view.row_count(), 3);  // a 7S pod has 10 channels
    EXPECT_EQ(data(8, 15), "Measuring...");
}

TEST_F(Stream1Test, ClosingStopsWhatWasToFollow) {
    strain(3, 2);
    open({3});
    choose({1, 2});
    view.unload();
    EXPECT_EQ(run_time.Poll.ViewOpen[RequestStream], 0);
    answer(3, single(1.0F, 0));
    loop.run_for(3000);
    EXPECT_EQ(driver.recorded("Tx"), Lines{"Tx 3 ME01"});
}

}  // namespace
}  // namespace kavorix::test
