#include "acquire/poll_cycle.h"

#include <gtest/gtest.h>

#include "support/rig.h"

namespace kavorix {
namespace {

using test::Lines;
using test::Rig;
using test::single;
using Boxes = std::vector<test::ShownBox>;

// Pods 3 and 5, whose first tick has run.
class PollCycleTest : public testing::Test, protected Rig {
  protected:
    PollCycleTest() {
        station({{3, "7RJA 0F 1.00"}, {5, "8SFN 0F 1.00"}});
        begin();
    }
    void begin() {
        tmrPoll->start(100);
        run_time.Poll.PollStarted = 0;
        tick_after(0);
        driver.calls.clear();
    }
    // A tick that comes so long after the last one.
    void tick_after(int ms) {
        loop.advance(ms);
        cycle.tmrPoll_Timer();
    }
    void tick() { tick_after(100); }
    PollState& poll() { return run_time.Poll; }
    LogState& logs() { return run_time.Log; }
};

struct TimingRow {
    const char* what;
    int interval_ms;
    int elapsed_ms;
    int poll_rate;
    int poll_elapsed_ms;  // before the tick
    int next_interval_ms;
};

TEST_F(PollCycleTest, CorrectsItsIntervalForLateness) {
    const TimingRow rows[] = {
        {"on time", 100, 100, 1000, 0, 100},
        {"30 ms late", 100, 130, 1000, 0, 70},
        {"30 ms late with a short interval", 20, 130, 1000, 0, 1},
        {"as late as the interval is long", 30, 130, 1000, 0, 1},
        {"10 ms early", 100, 90, 1000, 0, 110},
        {"early with a short interval", 1, 1, 1000, 0, 100},
        {"ten hours late", 100, 36'000'000, 1000, 0, 1},
        {"a boundary before the next tick", 100, 100, 1000, 850, 50},
        {"a boundary at the next tick", 100, 100, 1000, 800, 100},
        {"a boundary now", 100, 100, 1000, 900, 100},
        {"a boundary just passed", 100, 130, 1000, 900, 70},
        {"late, and a boundary before the next tick", 100, 130, 1000, 830, 40},
        {"early, and a boundary before the next tick", 100, 60, 1000, 900, 40},
        {"1 ms before a boundary", 100, 100, 1000, 899, 1},
        {"every tick a boundary", 100, 100, 100, 0, 100},
        {"a rate that is no multiple of the tick", 100, 100, 250, 100, 50},
    };
    for (const TimingRow& row : rows) {
        SCOPED_TRACE(row.what);
        configuration.Interface.PollRate = static_cast<std::int16_t>(row.poll_rate);
        poll().PollElapsed = row.poll_elapsed_ms;
        tmrPoll->start(row.interval_ms);
        tick_after(row.elapsed_ms);
        EXPECT_EQ(tmrPoll->interval_ms(), row.next_interval_ms);
    }
}

TEST_F(PollCycleTest, TheFirstTickCorrectsNothingAndCountsFromZero) {
    poll().PollCount = 7;
    poll().PollElapsed = 5000;
    poll().TrendElapsed = 5000;
    poll().LoadTicks = 9;
    poll().PollStarted = 0;
    run_time.Graph.TrendRunning = 1;
    consumers.graph = true;
    tick_after(777);
    EXPECT_EQ(poll().PollStarted, 1);
    EXPECT_EQ(poll().PollCount, 0);
    EXPECT_EQ(poll().PollElapsed, 0);
    EXPECT_EQ(poll().LastTickTime, loop.tick_count());
    EXPECT_EQ(screen.pnlPollCnt.caption, "0");
    EXPECT_EQ(screen.pnlBars.caption, "");
    EXPECT_EQ(tmrPoll->interval_ms(), 100);
    EXPECT_EQ(consumers.calls, Lines{});
}

TEST_F(PollCycleTest, CountsOnePollASecond) {
    poll().PollStarted = 0;
    tmrPoll->start(100);
    loop.run_for(100 + 60'000);
    EXPECT_EQ(poll().PollCount, 60);
    EXPECT_EQ(screen.pnlBars, (Label{"10% |", Colour::Black}));
}

TEST_F(PollCycleTest, PollBoundariesKeepTheirRateWhateverTheTick) {
    for (const int rate : {100, 150, 250, 333, 999, 1000, 1001, 10000}) {
        Rig rig;
        rig.station({{3, "7RJA 0F 1.00"}});
        rig.configuration.Interface.PollRate = static_cast<std::int16_t>(rate);
        rig.start_polling();
        rig.loop.run_for(100 + 60'000);
        EXPECT_EQ(rig.run_time.Poll.PollCount, 60'000 / rate) << rate;
    }
}

TEST_F(PollCycleTest, MissedBoundariesAreCountedOnePerTick) {
    tick_after(3500);
    EXPECT_EQ(poll().PollCount, 1);
    EXPECT_EQ(poll().PollElapsed, 2500);
    EXPECT_EQ(tmrPoll->interval_ms(), 1);
    tick_after(1);
    tick_after(100);
    EXPECT_EQ(poll().PollCount, 3);
    tick_after(100);
    EXPECT_EQ(poll().PollCount, 3);
}

TEST(PollCycleWrap, TickCountsThatWrapAreNoTrouble) {
    Rig rig(0xFFFFFFFF - 5'000);
    rig.station({{3, "7RJA 0F 1.00"}});
    rig.driver.recording = false;
    rig.run_time.Log.ScanLogging = 1;
    rig.run_time.Log.ScanLogInterval = 2000;
    rig.run_time.Poll.LastScanLogTime = rig.loop.tick_count();
    rig.start_polling();
    for (int second = 1; second <= 20; ++second) {
        rig.loop.run_for(1000);
        EXPECT_EQ(rig.tmrPoll->interval_ms(), 100);
        EXPECT_EQ(rig.run_time.Poll.PollCount, second - 1);
    }
    EXPECT_LT(rig.loop.tick_count(), 16'000u);
    EXPECT_EQ(rig.consumers.scan_records, 9);  // at the boundaries 2100, 4100, .. 18100 ms
    EXPECT_EQ(rig.screen.pnlBars.caption, "10% |");
}

struct LoadRow {
    int elapsed_ms;  // of each of ten ticks
    int poll_rate;
    const char* caption;
    Colour colour;
};

TEST(PollCycleWrap, ScansAreLoggedOnAMachineThatHasRunForMonths) {
    Rig rig(3'000'000'000U);  // 34 days; no record has ever been written
    rig.station({{3, "7RAA 0F 1.00"}});
    rig.run_time.Log.ScanLogging = 1;
    rig.run_time.Log.ScanLogInterval = 1000;
    rig.start_polling();
    rig.loop.run_for(10'100);
    EXPECT_EQ(rig.consumers.scan_records, 10);
}

TEST_F(PollCycleTest, ShowsTheLoadEveryTenTicks) {
    const LoadRow rows[] = {
        {100, 1000, "10% |", Colour::Black},
        {0, 1000, "0% ", Colour::Black},
        {5, 100, "5% ", Colour::Black},
        {15, 100, "15% ||", Colour::Black},
        {25, 100, "25% ||", Colour::Black},
        {74, 100, "74% |||||||", Colour::Black},
        {75, 100, "75% ||||||||", Colour::Yellow},
        {85, 100, "85% ||||||||", Colour::Yellow},
        {89, 100, "89% |||||||||", Colour::Yellow},
        {90, 100, "90% |||||||||", Colour::Red},
        {100, 100, "100% ||||||||||", Colour::Red},
        {110, 100, "110% |||||||||||", Colour::Red},
        {115, 100, "115% |||||||||||", Colour::Red},
        {50'000, 100, "50000% |||||||||||", Colour::Red},
        {249, 1000, "25% ||", Colour::Black},
        {33, 10'000, "0% ", Colour::Black},
    };
    for (const LoadRow& row : rows) {
        SCOPED_TRACE(row.caption);
        configuration.Interface.PollRate = static_cast<std::int16_t>(row.poll_rate);
        begin();
        screen.pnlBars = Label{"before"};
        for (int i = 0; i < 9; ++i) tick_after(row.elapsed_ms);
        EXPECT_EQ(screen.pnlBars.caption, "before");
        tick_after(row.elapsed_ms);
        EXPECT_EQ(screen.pnlBars, (Label{row.caption, row.colour}));
        EXPECT_EQ(poll().LoadTicks, 0);
        EXPECT_EQ(poll().LoadAccum, 0);
    }
}

TEST_F(PollCycleTest, OpenViewsAreRefreshedAtThePollBoundaryAlone) {
    poll().ViewOpen = {1, 1, 0, 0};
    poll().Stream1Arrived = 1;
    for (int i = 0; i < 9; ++i) tick();
    EXPECT_EQ(consumers.calls, Lines{});
    tick();
    EXPECT_EQ(consumers.calls, (Lines{"stream0", "stream1"}));
    EXPECT_EQ(poll().Stream1Arrived, 0);
    for (int i = 0; i < 10; ++i) tick();
    EXPECT_EQ(consumers.calls, (Lines{"stream0", "stream1", "stream0"}));
}

TEST_F(PollCycleTest, AClosedStreamOneViewKeepsTheArrivalForLater) {
    poll().Stream1Arrived = 1;
    for (int i = 0; i < 10; ++i) tick();
    EXPECT_EQ(consumers.calls, Lines{});
    EXPECT_EQ(poll().Stream1Arrived, 1);
}

struct ScanLogRow {
    int interval_ms;
    int poll_rate;
    Lines records;  // of five seconds
};

TEST_F(PollCycleTest, ScanRecordsAreDueAtPollBoundaries) {
    const ScanLogRow rows[] = {
        {1000,
         1000,
         {"log 0 at 1000", "log 0 at 2000", "log 0 at 3000", "log 0 at 4000", "log 0 at 5000"}},
        {2000, 1000, {"log 0 at 2000", "log 0 at 4000"}},
        {2000, 1500, {"log 0 at 3000"}},
        // 100 ms less than the interval are enough.
        {2100, 1000, {"log 0 at 2000", "log 0 at 4000"}},
        {2101, 1000, {"log 0 at 3000"}},
        {1000, 3000, {"log 0 at 3000"}},
    };
    for (const ScanLogRow& row : rows) {
        SCOPED_TRACE(std::to_string(row.interval_ms) + "/" + std::to_string(row.poll_rate));
        Rig rig;
        rig.station({{3, "7RJA 0F 1.00"}});
        rig.configuration.Interface.PollRate = static_cast<std::int16_t>(row.poll_rate);
        rig.run_time.Log.ScanLogging = 1;
        rig.run_time.Log.ScanLogInterval = row.interval_ms;
        rig.cycle.tmrPoll_Timer();
        rig.tmrPoll->start(100);
        rig.loop.run_for(5000);
        EXPECT_EQ(rig.consumers.calls, row.records);
    }
}

struct EventRow {
    bool view_open;
    bool seen;
    bool logging;
    Lines calls;
    int pending_after;
};

TEST_F(PollCycleTest, NewEventsAreShownAndLoggedOnTheSameTick) {
    const EventRow rows[] = {
        {false, true, false, {}, 1},
        {true, true, false, {"events"}, 0},
        {true, false, false, {}, 1},
        {false, true, true, {"log 1 at 100"}, 0},
        {true, true, true, {"events", "log 1 at 100"}, 0},
        {true, false, true, {"log 1 at 100"}, 0},
    };
    for (const EventRow& row : rows) {
        Rig rig;
        rig.station({{3, "7RJA 0F 1.00"}});
        rig.run_time.Poll.EventPending = 1;
        rig.run_time.Poll.ViewedZav = 2;
        rig.run_time.Poll.ViewOpen[2] = row.view_open;
        rig.status(3).StreamSeen[2] = row.seen;
        rig.run_time.Log.EventLogging = row.logging;
        rig.loop.advance(100);
        rig.cycle.tmrPoll_Timer();
        EXPECT_EQ(rig.consumers.calls, row.calls);
        EXPECT_EQ(rig.run_time.Poll.EventPending, row.pending_after);
    }
}

class TrendTest : public PollCycleTest {
  protected:
    TrendTest() {
        consumers.graph = true;
        graph().TrendRunning = 1;
        graph().TrendInterval = 0.5;
        choose(5, 2, 2.5F);
        choose(3, 32, 1.5F);
    }
    GraphState& graph() { return run_time.Graph; }
    void choose(int pod, int channel, float peak) {
        graph().TrendSelected[at(pod - 1)][at(channel - 1)] = 1;
        graph().TrendPeak[at(pod - 1)][at(channel - 1)] = peak;
        graph().TrendDev[at(pod - 1)][at(channel - 1)] = 9;
    }
};

TEST_F(TrendTest, SamplesComeInPodAndChannelOrderAtTheirInterval) {
    for (int i = 0; i < 12; ++i) tick();
    EXPECT_EQ(consumers.calls, (Lines{"graph 1.5 2.5", "graph 1.5 2.5"}));
    EXPECT_EQ(poll().TrendElapsed, 200);
    EXPECT_EQ(graph().TrendRef[2][31], 1.5F);
    EXPECT_EQ(graph().TrendDev[2][31], 0.0F);
    EXPECT_EQ(graph().TrendRef[2][0], 0.0F);
}

TEST_F(TrendTest, ALateTickRepeatsTheSampleForEveryIntervalThatPassed) {
    tick_after(1700);
    EXPECT_EQ(consumers.calls, (Lines{"graph 1.5 2.5", "graph 1.5 2.5", "graph 1.5 2.5"}));
    EXPECT_EQ(poll().TrendElapsed, 200);
}

TEST_F(TrendTest, NothingIsSampledWithoutARunningGraph) {
    consumers.graph = false;
    tick_after(600);
    EXPECT_EQ(consumers.calls, Lines{});
    EXPECT_EQ(poll().TrendElapsed, 100);
    consumers.graph = true;
    graph().TrendRunning = 0;
    tick_after(600);
    EXPECT_EQ(poll().TrendElapsed, 100);
    EXPECT_EQ(consumers.calls, Lines{});
}

TEST_F(PollCycleTest, AFailureInATickEndsTheProgramUnderItsTraceName) {
    driver.pod(3).test[0] = std::int16_t{-1};
    files.space = 0;  // the error log cannot be written
    EXPECT_THROW(tick(), ProgramEnded);
    EXPECT_EQ(dialogs.boxes,
              (Boxes{{"A serious error has occurred in KAVORIX at frmMain/tmrPoll_Timer\n\nError "
                      "code : 28, Writing \"/station/ERR_LOG.TXT\": No space left on device\n\r\n"
                      "KAVORIX will stop",
                      16, "KAVORIX"}}));
}

TEST_F(PollCycleTest, TicksDoNotRunInsideOneThatWaitsForTheOperator) {
    run_time.Link.StreamRequests[2] = "ME99;";
    driver.pod(3).waiting[1] = {single(1, 2)};
    tmrPoll->start(100);
    long long tests_before = 0;
    dialogs.at_box([&](const test::ShownBox&) {
        tests_before = driver.tests;
        loop.run_for(10'000);
        EXPECT_EQ(driver.tests, tests_before);
    });
    loop.run_for(100);
    EXPECT_EQ(dialogs.boxes.size(), 1u);
    EXPECT_GT(driver.tests, tests_before);
    loop.run_for(100);
    EXPECT_EQ(poll().PollCount, 1);
}

}  // namespace
}  // namespace kavorix
