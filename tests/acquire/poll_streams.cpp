#include <gtest/gtest.h>

#include "acquire/poll_cycle.h"
#include "support/rig.h"

namespace kavorix {
namespace {

using test::failure;
using test::Lines;
using test::LogHeader;
using test::pods_with;
using test::Rig;
using test::scan;
using test::single;
using test::text;
using Pods = std::vector<int>;

// Pods 3 and 5, whose first tick has run.
class PollStreamsTest : public testing::Test, protected Rig {
  protected:
    PollStreamsTest() {
        station({{3, "7RJA 0F 1.00"}, {5, "8SFN 0F 1.00"}});
        tick();
        driver.calls.clear();
    }
    void tick() { cycle.tmrPoll_Timer(); }
    std::string stream_label(int stream, int pod) const {
        return screen.lblStrm(stream)[at(pod - 1)].caption;
    }
    std::string stream_labels(int pod) const {
        std::string labels;
        for (int stream = 0; stream < StreamCount; ++stream) labels += stream_label(stream, pod);
        return labels;
    }
};

TEST_F(PollStreamsTest, AsksEveryPodOfThePollTableForItsStreams) {
    tick();
    EXPECT_EQ(driver.recorded(), (Lines{"Test 3/0", "Test 3/1", "Test 3/2", "Test 3/3", "Test 5/0",
                                        "Test 5/1", "Test 5/2", "Test 5/3"}));
    run_time.Link.PollTable.InPollTable[2] = 0;
    driver.calls.clear();
    screen.lblStrm0[2].caption = "0";
    tick();
    EXPECT_EQ(driver.recorded("Test 3"), Lines{});
    EXPECT_EQ(stream_labels(3), "----");
    EXPECT_EQ(stream_labels(50), "----");
}

TEST_F(PollStreamsTest, APodThatDoesNotAnswerLeavesTheTableAndTheOthersGoOn) {
    for (std::int16_t stream = 0; stream < StreamCount; ++stream) {
        SCOPED_TRACE(stream);
        Rig rig;
        rig.station({{3, "7RJA 0F 1.00"}, {5, "7RJA 0F 1.00"}});
        rig.select({3});
        rig.run_time.Link.ScanState[2] = 2;
        rig.run_time.Link.Triggered[2] = 1;
        rig.driver.pod(3).test[at(stream)] = std::int16_t{-1};
        rig.cycle.tmrPoll_Timer();
        EXPECT_EQ(rig.driver.recorded("Test 3").size(), at(stream + 1));
        EXPECT_EQ(rig.driver.recorded("Test 5").size(), 4u);
        EXPECT_EQ(pods_with(rig.run_time.Link.PollTable.InPollTable), (Pods{5}));
        EXPECT_EQ(rig.screen.img_ZAV[2].picture, Picture::img1ZAV_E);
        EXPECT_EQ(rig.run_time.Link.ScanState[2], 0);
        EXPECT_EQ(rig.run_time.Link.NumSelected, 0);
        EXPECT_EQ(rig.log_text(),
                  LogHeader + " ERROR! - Receive Error (ZAV:03  Interface:C800)\r\n");
        rig.cycle.tmrPoll_Timer();
        EXPECT_EQ(rig.screen.img_ZAV[2].picture, Picture::img1ZAV_E);
        EXPECT_EQ(rig.run_time.Link.SessionErrorCount, 1);
    }
}

TEST_F(PollStreamsTest, AnyOtherTestResultMeansNothingWaits) {
    for (const int result : {2, -2, 256, 32767, -32768}) {
        driver.pod(3).test.fill(static_cast<std::int16_t>(result));
        driver.calls.clear();
        tick();
        EXPECT_EQ(driver.recorded("Test 3").size(), 4u) << result;
        EXPECT_EQ(driver.reads, 2);  // the status replies of the start
        EXPECT_EQ(stream_labels(3), "----");
    }
}

TEST_F(PollStreamsTest, AFailedReadTakesThePodOutForTheRestOfTheTick) {
    trigger({3});
    driver.pod(3).waiting[0] = {failure(1)};
    tick();
    EXPECT_EQ(driver.recorded("Test 3"), (Lines{"Test 3/0"}));
    EXPECT_FALSE(polled(3));
}

TEST_F(PollStreamsTest, ScanResultsAreReadOfTriggeredPodsAlone) {
    driver.pod(3).feed[0] = test::Feed{0, scan({1.0F})};
    tick();
    tick();
    EXPECT_EQ(driver.recorded("Numeric"), Lines{});
    EXPECT_EQ(stream_labels(3), "0---");
    EXPECT_EQ(status(3).StreamNew[0], 1);
    trigger({3});
    tick();
    EXPECT_EQ(driver.recorded("Numeric"), (Lines{"Numeric 3/0 20"}));
    EXPECT_EQ(status(3).Reading[0], 1.0F);
}

TEST_F(PollStreamsTest, ASevenSPodIsAskedForTenAndAnEightSForThirtyTwo) {
    trigger({5});
    driver.pod(5).waiting[0] = {scan({1.0F})};
    tick();
    EXPECT_EQ(driver.recorded("Numeric"), (Lines{"Numeric 5/0 32"}));
}

struct StreamRow {
    int stream;
    bool auto_clear;
    std::array<std::int16_t, 4> seen;
    std::array<std::int16_t, 4> fresh;
    const char* labels;       // after the tick
    const char* next_labels;  // after the one that follows
};

TEST_F(PollStreamsTest, DataIsNotedPerStream) {
    const StreamRow rows[] = {
        {0, false, {1, 0, 0, 0}, {1, 0, 0, 0}, "0---", "0---"},
        {1, false, {0, 1, 0, 0}, {0, 1, 0, 0}, "-1--", "-1--"},
        {2, false, {0, 0, 1, 0}, {0, 0, 1, 0}, "--2-", "--2-"},
        {3, false, {0, 0, 0, 1}, {0, 0, 0, 0}, "---3", "---3"},
        {3, true, {0, 0, 0, 0}, {0, 0, 0, 0}, "---3", "----"},
    };
    for (const StreamRow& row : rows) {
        SCOPED_TRACE(row.labels);
        Rig rig;
        rig.station({{3, "7RJA 0F 1.00"}});
        rig.run_time.Poll.Stream3AutoClear = row.auto_clear ? 1 : 0;
        rig.run_time.Link.StreamRequests[2] = "ME1;";
        rig.driver.pod(3).waiting[at(row.stream)] = {row.stream == 1 ? single(1, 2) : text("H")};
        const auto labels = [&] {
            std::string all;
            for (int stream = 0; stream < StreamCount; ++stream)
                all += rig.screen.lblStrm(stream)[2].caption;
            return all;
        };
        rig.cycle.tmrPoll_Timer();
        EXPECT_EQ(rig.status(3).StreamSeen, row.seen);
        EXPECT_EQ(rig.status(3).StreamNew, row.fresh);
        EXPECT_EQ(labels(), row.labels);
        rig.driver.pod(3).waiting[0].clear();
        rig.cycle.tmrPoll_Timer();
        EXPECT_EQ(labels(), row.next_labels);
    }
}

TEST_F(PollStreamsTest, StreamOneShowsItsNumberOnlyWhenARecordIsTaken) {
    driver.pod(3).waiting[1] = {single(1, 2)};  // nobody asked for it
    tick();
    EXPECT_EQ(stream_label(1, 3), "-");
    EXPECT_EQ(status(3).StreamSeen[1], 1);
}

struct IconRow {
    int state;
    bool selected;
    bool marked;  // for logging
    bool logging;
    int with_data;   // state in the tick that brings data
    int afterwards;  // state once no stream is seen any more
};

TEST_F(PollStreamsTest, IconsFollowTheData) {
    const IconRow rows[] = {
        {Resting, false, false, false, DataArrived, Resting},
        {SelectedResting, true, false, false, SelectedDataArrived, SelectedResting},
        {Resting, false, true, false, DataArrived, Resting},
        {Resting, false, false, true, DataArrived, Resting},
        {LoggingResting, false, true, true, LoggingDataArrived, LoggingResting},
        {SelectedLoggingResting, true, true, true, SelectedLoggingDataArrived,
         SelectedLoggingResting},
    };
    for (int by_events = 0; by_events < 2; ++by_events)
        for (const IconRow& row : rows) {
            SCOPED_TRACE(std::to_string(row.state) + (by_events ? " events" : " scans"));
            Rig rig;
            rig.station({{3, "7RJA 0F 1.00"}});
            if (row.selected) rig.select({3});
            rig.status(3).IconState = static_cast<std::int16_t>(row.state);
            (by_events ? rig.status(3).LogEvents : rig.status(3).LogScan) = row.marked;
            (by_events ? rig.run_time.Log.EventLogging : rig.run_time.Log.ScanLogging) =
                row.logging;
            rig.driver.pod(3).waiting[3] = {text("H")};
            rig.cycle.tmrPoll_Timer();
            EXPECT_EQ(rig.status(3).IconState, row.with_data);
            EXPECT_EQ(rig.screen.img_ZAV[2].picture,
                      picture_of(static_cast<std::int16_t>(row.with_data)));
            rig.cycle.tmrPoll_Timer();
            EXPECT_EQ(rig.status(3).IconState, row.with_data);  // stream 3 is still seen
            rig.status(3).StreamSeen.fill(0);
            rig.cycle.tmrPoll_Timer();
            EXPECT_EQ(rig.status(3).IconState, row.afterwards);
            EXPECT_EQ(rig.screen.img_ZAV[2].picture,
                      picture_of(static_cast<std::int16_t>(row.afterwards)));
        }
}

TEST_F(PollStreamsTest, APodMarkedForLoggingKeepsItsDataPictureWhileALogRuns) {
    status(3).LogScan = 1;
    run_time.Log.EventLogging = 1;
    for (const std::int16_t state : {DataArrived, SelectedDataArrived}) {
        status(3).IconState = state;
        tick();
        EXPECT_EQ(status(3).IconState, state);
    }
    run_time.Log.EventLogging = 0;
    tick();
    EXPECT_EQ(status(3).IconState, SelectedResting);
}

TEST_F(PollStreamsTest, TheRemovedPictureStays) {
    status(3).IconState = Removed;
    run_time.Link.PollTable.InPollTable[2] = 0;
    screen.img_ZAV[2].picture = Picture::img1ZAV_E;
    tick();
    EXPECT_EQ(status(3).IconState, Removed);
    EXPECT_EQ(screen.img_ZAV[2].picture, Picture::img1ZAV_E);
}

TEST(PictureOf, EveryIconStateHasItsOwn) {
    constexpr Picture Expected[] = {Picture::img1ZAV,  Picture::imgZAV,    Picture::img1ZAV_D,
                                    Picture::imgZAV_D, Picture::img1ZAV_E, Picture::img1LOG,
                                    Picture::imgLOG,   Picture::img1LOG_D, Picture::imgLOG_D};
    for (std::int16_t state = 0; state < 9; ++state) EXPECT_EQ(picture_of(state), Expected[state]);
}

TEST_F(PollStreamsTest, AnswersOnStreamOneAreDrainedInOneTick) {
    run_time.Link.StreamRequests[2] = "ME1;ME2;ME3;";
    driver.pod(3).waiting[1] = {single(1, 0), single(2, 0), single(3, 0)};
    tick();
    EXPECT_EQ(driver.recorded("Test 3/1").size(), 4u);
    EXPECT_EQ(driver.recorded("Numeric 3/1").size(), 3u);
    EXPECT_EQ(status(3).SingleReading[2], 3.0F);
    EXPECT_EQ(run_time.Poll.RequestKinds[2], "000");
}

TEST_F(PollStreamsTest, APodThatFailsWhileItIsDrainedIsRemoved) {
    run_time.Link.StreamRequests[2] = "ME1;ME2;";
    driver.pod(3).waiting[1] = {single(1, 0), single(2, 0)};
    int asked = 0;
    driver.at_call([&](const test::DriverCall& call) {
        if (call.text == "Test 3/1" && ++asked == 2) driver.pod(3).test[1] = std::int16_t{-1};
    });
    tick();
    EXPECT_EQ(status(3).SingleReading[0], 1.0F);
    EXPECT_EQ(run_time.Link.StreamRequests[2], "ME2;");
    EXPECT_FALSE(polled(3));
    EXPECT_EQ(driver.recorded("Test 3/2"), Lines{});
    EXPECT_EQ(driver.recorded("Test 5").size(), 4u);
}

TEST_F(PollStreamsTest, AFailedAnswerEndsTheDraining) {
    run_time.Link.StreamRequests[2] = "ME1;ME2;";
    driver.pod(3).waiting[1] = {failure(1), single(2, 0)};
    tick();
    EXPECT_EQ(driver.recorded("Numeric 3/1").size(), 1u);
    EXPECT_FALSE(polled(3));
}

TEST_F(PollStreamsTest, EndlessAnswersDoNotHoldUpTheOtherPods) {
    driver.pod(3).feed[1] = test::Feed{0, single(1, 2)};
    tick();
    EXPECT_EQ(driver.recorded("Numeric 3/1").size(), 1000u);
    EXPECT_EQ(driver.recorded("Test 5").size(), 4u);
    EXPECT_TRUE(polled(3));
}

TEST_F(PollStreamsTest, EndlessDataOnEveryStreamIsReadOncePerTick) {
    trigger({3});
    for (const std::size_t stream : {0u, 2u, 3u})
        driver.pod(3).feed[stream] = test::Feed{0, stream == 0 ? scan({1.0F}) : text("H")};
    tick();
    EXPECT_EQ(driver.recorded("Numeric 3").size(), 1u);
    EXPECT_EQ(driver.recorded("String 3").size(), 2u);
}

}  // namespace
}  // namespace kavorix
