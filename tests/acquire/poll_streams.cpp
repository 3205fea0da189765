// What a tick of the poll cycle does with the streams of the pods.

#include <gtest/gtest.h>

#include "acquire/poll_cycle.h"
#include "support/facts.h"
#include "support/rig.h"

namespace kavorix {
namespace {

using test::facts;
using test::failure;
using test::Lines;
using test::Rig;
using test::scan;
using test::single;
using test::text;

const Pod Five = Pod::numbered(5);

// Numbers of the streams that are flagged: "0--3".
std::string streams(const StreamFlags& flags) {
    std::string text;
    for (std::size_t stream = 0; stream < flags.size(); ++stream)
        text += flags[stream] ? static_cast<char>('0' + stream) : '-';
    return text;
}

// Pods 5 and 50, whose first tick has run.
struct PollStreams : Rig {
    PollStreams() {
        station({{5, "7RJA 0F 1.00"}, {50, "8SFN 0F 1.00"}});
        tick();
        driver.calls.clear();
    }
    void tick() { cycle.tmrPoll_Timer(); }
    // How often the driver was asked so since the last tick but one.
    std::size_t asked(const std::string& call) const { return driver.recorded(call).size(); }
};

struct PollStreamsTest : testing::Test, PollStreams {};

TEST_F(PollStreamsTest, AsksEveryPodOfThePollTableForItsStreams) {
    tick();
    EXPECT_EQ(driver.recorded(), (Lines{"Test 5/0", "Test 5/1", "Test 5/2", "Test 5/3", "Test 50/0",
                                        "Test 50/1", "Test 50/2", "Test 50/3"}));
    run_time.Link.PollTable.InPollTable.remove(Five);
    status(5).StreamMarked.fill(true);
    driver.calls.clear();
    tick();
    EXPECT_EQ(asked("Test 5/"), 0u);
    EXPECT_EQ(streams(status(5).StreamMarked), "----");
}

TEST(PollStreams, APodThatDoesNotAnswerIsRemovedAndTheOthersGoOn) {
    for (int stream = 0; stream < StreamCount; ++stream) {
        PollStreams rig;
        rig.select({5});
        rig.trigger({5});
        rig.run_time.Link.ScanState[Five] = ScanState::ContinuouslyScanning;
        rig.driver.pod(5).test[at(stream)] = std::int16_t{-1};
        rig.tick();
        rig.tick();
        EXPECT_EQ(rig.asked("Test 5/"), at(stream + 1));
        EXPECT_EQ(rig.asked("Test 50/"), 8u);
        EXPECT_EQ(facts(rig.run_time),
                  "polled: 50; removed: 5; in error: 5; message: ERROR! - Receive Error (ZAV:05); "
                  "fault: receive; errors: 1");
    }
}

TEST_F(PollStreamsTest, AnyOtherTestResultMeansNothingWaits) {
    for (const int result : {0, 2, -2, 256, 32767, -32768}) {
        driver.pod(5).test.fill(static_cast<std::int16_t>(result));
        driver.calls.clear();
        tick();
        EXPECT_EQ(asked("Test 5/"), 4u) << result;
        EXPECT_EQ(driver.recorded().size(), 8u);
        EXPECT_FALSE(status(5).DataArrived);
    }
}

TEST(PollStreams, AReadThatFailsTakesThePodOutForTheRestOfTheTick) {
    for (std::size_t stream = 0; stream < StreamCount; ++stream) {
        PollStreams rig;
        rig.trigger({5});
        rig.run_time.Link.StreamRequests[Five] = "ME1;ME2;";
        rig.driver.pod(5).waiting[stream] = {failure(1), single(2, 0)};
        rig.tick();
        EXPECT_EQ(rig.asked("Test 5/"), stream + 1);
        EXPECT_EQ(rig.asked("Numeric 5/") + rig.asked("String 5/"), 1u);
        EXPECT_FALSE(rig.polled(5));
        EXPECT_EQ(rig.run_time.Link.SessionErrorCount, 1);
    }
}

TEST_F(PollStreamsTest, ScanResultsAreReadOfTriggeredPodsAlone) {
    driver.pod(50).feed[0] = test::Feed{0, scan({1.5F})};
    tick();
    EXPECT_EQ(asked("Numeric"), 0u);
    EXPECT_EQ(streams(status(50).StreamNew), "0---");
    trigger({50});
    tick();
    EXPECT_EQ(driver.recorded("Numeric"), Lines{"Numeric 50/0 32"});
    EXPECT_EQ(status(50).Reading[0], 1.5F);
}

TEST(PollStreams, DataIsNotedPerStream) {
    struct Row {
        const char* what;
        std::size_t stream;
        const char* requests;
        const char* seen;
        const char* fresh;
        const char* marked;       // in the tick
        const char* next_marked;  // in the one that follows
    };
    const Row rows[] = {
        {"readings", 0, "", "0---", "0---", "0---", "0---"},
        {"an answer", 1, "ME1;", "-1--", "-1--", "-1--", "-1--"},
        {"an answer to nothing", 1, "", "-1--", "-1--", "----", "----"},
        {"events", 2, "", "--2-", "--2-", "--2-", "--2-"},
        {"a text", 3, "", "---3", "----", "---3", "---3"},
        {"a text that clears itself", 3, "auto", "----", "----", "---3", "----"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        PollStreams rig;
        rig.run_time.Poll.Stream3AutoClear = row.requests == std::string("auto");
        rig.run_time.Link.StreamRequests[Five] = row.requests;
        rig.driver.pod(5).waiting[row.stream] = {row.stream == 1 ? single(1, 2) : text("H")};
        rig.tick();
        EXPECT_EQ(streams(rig.status(5).StreamSeen), row.seen);
        EXPECT_EQ(streams(rig.status(5).StreamNew), row.fresh);
        EXPECT_EQ(streams(rig.status(5).StreamMarked), row.marked);
        EXPECT_TRUE(rig.status(5).DataArrived);
        rig.driver.pod(5).waiting[0].clear();
        rig.tick();
        EXPECT_EQ(streams(rig.status(5).StreamMarked), row.next_marked);
        EXPECT_EQ(rig.status(5).DataArrived, row.seen != std::string("----"));
        rig.status(5).StreamSeen.fill(false);
        rig.tick();
        EXPECT_EQ(streams(rig.status(5).StreamMarked), "----");
        EXPECT_FALSE(rig.status(5).DataArrived);
    }
}

TEST_F(PollStreamsTest, AnswersOnStreamOneAreDrainedInOneTick) {
    run_time.Link.StreamRequests[Five] = "ME1;ME2;ME3;";
    driver.pod(5).waiting[1] = {single(1, 0), single(2, 0), single(3, 0)};
    tick();
    EXPECT_EQ(asked("Test 5/1"), 4u);
    EXPECT_EQ(asked("Numeric 5/1"), 3u);
    EXPECT_EQ(status(5).SingleReading[2], 3.0F);
    EXPECT_EQ(run_time.Link.RequestKinds[Five], "000");
}

TEST_F(PollStreamsTest, APodThatFailsWhileItIsDrainedIsRemoved) {
    run_time.Link.StreamRequests[Five] = "ME1;ME2;";
    driver.pod(5).waiting[1] = {single(1, 0), single(2, 0)};
    driver.at_call([&](const test::DriverCall& call) {
        if (call.text.starts_with("Numeric 5")) driver.pod(5).test[1] = std::int16_t{-1};
    });
    tick();
    EXPECT_EQ(status(5).SingleReading[0], 1.0F);
    EXPECT_EQ(run_time.Link.StreamRequests[Five], "ME2;");
    EXPECT_FALSE(polled(5));
    EXPECT_EQ(run_time.Link.SessionErrorCount, 1);
    EXPECT_EQ(asked("Test 5/2"), 0u);
    EXPECT_EQ(asked("Test 50/"), 4u);
}

TEST_F(PollStreamsTest, EndlessDataDoesNotHoldUpTheOtherPods) {
    trigger({5});
    for (const std::size_t stream : {0u, 1u, 2u, 3u})
        driver.pod(5).feed[stream] = test::Feed{0, stream < 2 ? single(1, 2) : text("H")};
    tick();
    EXPECT_EQ(asked("Numeric 5/0"), 1u);
    EXPECT_EQ(asked("Numeric 5/1"), 1000u);
    EXPECT_EQ(asked("String 5/"), 2u);
    EXPECT_EQ(asked("Test 50/"), 4u);
    EXPECT_TRUE(polled(5));
}

}  // namespace
}  // namespace kavorix
