// When the poll cycle ticks, what it counts and whom it tells.

#include "acquire/poll_cycle.h"

#include <gtest/gtest.h>

#include <random>

#include "support/rig.h"

namespace kavorix {
namespace {

using test::Lines;
using test::Rig;

// Pods 5 and 50, whose first tick has run.
struct PollCycleTest : testing::Test, Rig {
    PollCycleTest() {
        station({{5, "7RJA 0F 1.00"}, {50, "8SFN 0F 1.00"}});
        begin();
    }
    void begin() {
        tmrPoll->start(100);
        poll.PollStarted = false;
        tick_after(0);
        told.lines.clear();
    }
    // A tick that comes so long after the last one.
    void tick_after(int ms) {
        loop.advance(ms);
        cycle.tmrPoll_Timer();
    }
    void set_poll_rate(int ms) { configuration.Interface.PollRate = static_cast<std::int16_t>(ms); }
    // What is told meanwhile; the poll timer runs.
    Lines told_in(int ms) {
        loop.run_for(ms);
        return std::exchange(told.lines, {});
    }
    PollState& poll = run_time.Poll;
};

TEST_F(PollCycleTest, CorrectsItsIntervalForLateness) {
    struct Row {
        const char* what;
        int interval_ms;
        int elapsed_ms;
        int poll_rate;
        int poll_elapsed_ms;  // before the tick
        int next_interval_ms;
    };
    const Row rows[] = {
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
    for (const Row& row : rows) {
        set_poll_rate(row.poll_rate);
        poll.PollElapsed = row.poll_elapsed_ms;
        tmrPoll->start(row.interval_ms);
        tick_after(row.elapsed_ms);
        EXPECT_EQ(tmrPoll->interval_ms(), row.next_interval_ms) << row.what;
    }
}

TEST_F(PollCycleTest, TheFirstTickCorrectsNothingAndCountsFromZero) {
    poll.PollCount = 7;
    poll.PollElapsed = 5000;
    poll.TrendElapsed = 5000;
    poll.LoadTicks = 9;
    poll.LoadAccum = 900;
    poll.PollStarted = false;
    run_time.Graph.TrendRunning = true;
    tick_after(777);
    EXPECT_TRUE(poll.PollStarted);
    EXPECT_EQ(poll.PollCount + poll.PollElapsed + poll.LoadTicks + poll.LoadAccum, 0);
    EXPECT_EQ(poll.TrendElapsed, 0);
    EXPECT_EQ(poll.LastTickTime, loop.tick_count());
    EXPECT_EQ(poll.LoadPercent, std::nullopt);
    EXPECT_EQ(tmrPoll->interval_ms(), 100);
    EXPECT_EQ(told.lines, Lines{});
}

TEST(PollBoundaries, KeepTheirRateWhateverTheTick) {
    for (const int rate : {100, 150, 250, 333, 999, 1000, 1001, 10000}) {
        Rig rig(0xFFFFFFFF - 5'000);  // the tick count wraps on the way
        rig.station({{5, "7RJA 0F 1.00"}});
        rig.configuration.Interface.PollRate = static_cast<std::int16_t>(rate);
        rig.start_polling();
        rig.loop.run_for(100 + 60'000);
        EXPECT_EQ(rig.told.boundaries, 60'000 / rate) << rate;
        EXPECT_EQ(rig.run_time.Poll.PollCount, 60'000 / rate) << rate;
    }
}

TEST_F(PollCycleTest, NoTimeIsLostHoweverLateTheTicksCome) {
    std::mt19937 random(3);
    long long elapsed_ms = 0;
    for (int tick = 0; tick < 20'000; ++tick) {
        const auto late = static_cast<int>(random() % 100 == 0 ? random() % 9000 : random() % 60);
        elapsed_ms += tmrPoll->interval_ms() + late;
        tick_after(tmrPoll->interval_ms() + late);
        ASSERT_EQ(poll.PollCount * 1000LL + poll.PollElapsed, elapsed_ms);
    }
    tmrPoll->start(100);
    for (int tick = 0; tick < 10'000; ++tick, elapsed_ms += 100) tick_after(100);
    EXPECT_EQ(poll.PollCount, elapsed_ms / 1000);
}

TEST_F(PollCycleTest, MissedBoundariesAreToldOnePerTick) {
    tick_after(3500);
    EXPECT_EQ(tmrPoll->interval_ms(), 1);
    tick_after(1);
    tick_after(100);
    tick_after(100);
    EXPECT_EQ(told.lines, (Lines{"boundary at 3500", "boundary at 3501", "boundary at 3601"}));
}

TEST_F(PollCycleTest, MeasuresItsLoadEveryTenTicks) {
    struct Row {
        int elapsed_ms;  // of each of ten ticks
        int poll_rate;
        double percent;
    };
    const Row rows[] = {{100, 1000, 10}, {0, 1000, 0},    {5, 100, 5},           {25, 1000, 3},
                        {249, 1000, 25}, {110, 100, 110}, {50'000, 100, 50'000}, {33, 10'000, 0}};
    for (const Row& row : rows) {
        set_poll_rate(row.poll_rate);
        begin();
        poll.LoadPercent.reset();
        for (int i = 0; i < 9; ++i) tick_after(row.elapsed_ms);
        EXPECT_EQ(poll.LoadPercent, std::nullopt);
        tick_after(row.elapsed_ms);
        EXPECT_EQ(poll.LoadPercent, row.percent);
        EXPECT_EQ(poll.LoadTicks + poll.LoadAccum, 0);
    }
}

TEST_F(PollCycleTest, EventsAreToldEveryTickUntilTheyAreTaken) {
    poll.EventPending = true;
    told.takes_events = false;
    EXPECT_EQ(told_in(250), (Lines{"events at 100", "events at 200"}));
    EXPECT_TRUE(poll.EventPending);
    told.takes_events = true;
    EXPECT_EQ(told_in(200), Lines{"events at 300"});
}

TEST_F(PollCycleTest, TellsReadingsThenTheBoundaryThenEventsThenSamples) {
    set_poll_rate(100);
    trigger({5, 50});
    run_time.Graph.TrendRunning = true;
    run_time.Graph.TrendInterval = 0.1;
    driver.pod(5).waiting[0] = {test::scan({1})};
    driver.pod(50).waiting[0] = {test::scan({2})};
    driver.pod(50).waiting[2] = {test::text("\x28")};
    told.at_boundary = [&] {
        EXPECT_EQ(poll.PollCount, 1);
        EXPECT_EQ(status(50).Reading[0], 2);
        EXPECT_EQ(status(50).ReadingAt, (Moment{100, loop.utc_ms()}));
    };
    EXPECT_EQ(told_in(100),
              (Lines{"reading 5", "reading 50", "boundary at 100", "events at 100", "graph"}));
}

TEST_F(PollCycleTest, OnlyAReadingThatWasStoredIsTold) {
    trigger({5, 50});
    driver.pod(5).waiting[0] = {test::failure(1)};
    driver.pod(50).waiting[0] = {test::failure(2)};
    EXPECT_EQ(told_in(100), Lines{});
    EXPECT_FALSE(polled(5));
    EXPECT_TRUE(polled(50));
}

// Channel 32 of pod 5 and channel 2 of pod 50 are on a running graph.
struct SampleTest : PollCycleTest {
    SampleTest() {
        graph.TrendRunning = true;
        graph.TrendInterval = 0.5;
        choose(50, 2, 2.5F);
        choose(5, 32, 1.5F);
    }
    void choose(int pod, int channel, float peak) {
        graph.TrendSelected[Pod::numbered(pod)][at(channel - 1)] = true;
        graph.TrendPeak[Pod::numbered(pod)][at(channel - 1)] = peak;
        graph.TrendDev[Pod::numbered(pod)][at(channel - 1)] = 9;
    }
    GraphState& graph = run_time.Graph;
};

TEST_F(SampleTest, ComesInPodAndChannelOrderAtItsIntervalAndStartsTheNext) {
    for (int i = 0; i < 9; ++i) tick_after(120);
    EXPECT_EQ(told.lines, (Lines{"graph 1.5 2.5", "boundary at 1080", "graph 1.5 2.5"}));
    EXPECT_EQ(poll.TrendElapsed, 80);
    const Pod five = Pod::numbered(5);
    EXPECT_EQ(graph.TrendRef[five][31], 1.5F);
    EXPECT_EQ(graph.TrendDev[five][31], 0.0F);
    EXPECT_EQ(graph.TrendRef[five][0], 0.0F);
}

TEST_F(SampleTest, IsRepeatedForEveryIntervalThatALateTickMissed) {
    set_poll_rate(10'000);
    tick_after(1700);
    EXPECT_EQ(told.lines, (Lines{"graph 1.5 2.5", "graph 1.5 2.5", "graph 1.5 2.5"}));
    EXPECT_EQ(poll.TrendElapsed, 200);
}

TEST_F(SampleTest, IsNotTakenWithoutARunningGraph) {
    poll.TrendElapsed = 600;  // of a graph that has just been closed
    graph.TrendRunning = false;
    tick_after(100);
    EXPECT_EQ(told.lines, Lines{});
    EXPECT_EQ(poll.TrendElapsed, 100);
}

TEST_F(PollCycleTest, AFailureInATickEndsTheProgramUnderItsTraceName) {
    driver.pod(5).test[0] = std::int16_t{-1};
    files.space = 0;  // the error log cannot be written
    EXPECT_THROW(tick_after(100), ProgramEnded);
    EXPECT_EQ(dialogs.boxes.at(0).text,
              "A serious error has occurred in KAVORIX at frmMain/tmrPoll_Timer\n\nError "
              "code : 28, Writing \"/station/ERR_LOG.TXT\": No space left on device\n\r\n"
              "KAVORIX will stop");
}

}  // namespace
}  // namespace kavorix
