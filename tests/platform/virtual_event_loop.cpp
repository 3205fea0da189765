#include "platform/virtual_event_loop.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kavorix {
namespace {

using Lines = std::vector<std::string>;

class VirtualLoop : public testing::Test {
  protected:
    // Notes what happened with its time.
    std::function<void()> noting(const std::string& what) {
        return [this, what] { note(what); };
    }
    void note(const std::string& what) {
        seen_.push_back(std::to_string(loop_.elapsed_ms()) + " " + what);
    }

    VirtualEventLoop loop_;
    Lines seen_;
};

TEST_F(VirtualLoop, EventsComeInTheOrderOfTheirTimesThenOfTheirScheduling) {
    loop_.call_later(20, noting("c"));
    loop_.call_later(10, noting("a"));
    loop_.call_later(20, noting("d"));
    loop_.call_later(10, noting("b"));
    loop_.call_later(-5, noting("now"));
    loop_.run_for(20);
    EXPECT_EQ(seen_, (Lines{"0 now", "10 a", "10 b", "20 c", "20 d"}));
}

TEST_F(VirtualLoop, RunForLeavesTheClockAtItsEnd) {
    loop_.call_later(31, noting("late"));
    loop_.run_for(30);
    EXPECT_EQ(loop_.elapsed_ms(), 30);
    EXPECT_EQ(seen_, Lines{});
    loop_.run_for(1);
    EXPECT_EQ(seen_, (Lines{"31 late"}));
}

TEST_F(VirtualLoop, WaitingMovesTheClockToTheEventsAndNoFurther) {
    bool done = false;
    loop_.call_later(10, noting("first"));
    loop_.call_later(25, [&] { done = true; });
    loop_.call_later(26, noting("too late"));
    loop_.wait_until([&] { return done; });
    EXPECT_EQ(loop_.elapsed_ms(), 25);
    EXPECT_EQ(seen_, (Lines{"10 first"}));
    loop_.wait_until([] { return true; });
    EXPECT_EQ(loop_.elapsed_ms(), 25);
}

TEST_F(VirtualLoop, WaitingForNothingIsAFault) {
    EXPECT_THROW(loop_.wait_until([] { return false; }), std::logic_error);
}

TEST_F(VirtualLoop, WaitsMayBeNested) {
    bool inner = false;
    bool outer = false;
    loop_.call_later(10, [&] {
        loop_.call_later(50, [&] { inner = true; });
        loop_.wait_until([&] { return inner; });
        note("inner wait over");
        outer = true;
    });
    loop_.call_later(30, noting("meanwhile"));
    loop_.wait_until([&] { return outer; });
    EXPECT_EQ(seen_, (Lines{"30 meanwhile", "60 inner wait over"}));
}

TEST_F(VirtualLoop, ProcessEventsRunsTheFirstMomentThatHasAny) {
    loop_.call_later(3, noting("a"));
    loop_.call_later(3, noting("b"));
    loop_.call_later(4, noting("c"));
    loop_.process_events(5);
    EXPECT_EQ(seen_, (Lines{"3 a", "3 b"}));
    loop_.process_events(0);
    EXPECT_EQ(loop_.elapsed_ms(), 3);
    loop_.process_events(5);
    loop_.process_events(5);
    EXPECT_EQ(seen_, (Lines{"3 a", "3 b", "4 c"}));
    EXPECT_EQ(loop_.elapsed_ms(), 9);
}

TEST_F(VirtualLoop, ATimerTicksUntilItIsStopped) {
    const auto timer = loop_.make_timer(noting("tick"));
    EXPECT_FALSE(timer->running());
    timer->start(10);
    EXPECT_TRUE(timer->running());
    EXPECT_EQ(timer->interval_ms(), 10);
    loop_.run_for(25);
    timer->start(7);  // anew from now
    loop_.run_for(10);
    timer->stop();
    loop_.run_for(100);
    EXPECT_EQ(seen_, (Lines{"10 tick", "20 tick", "32 tick"}));
    EXPECT_FALSE(timer->running());
    EXPECT_EQ(timer->interval_ms(), 7);
    timer->start(0);
    EXPECT_EQ(timer->interval_ms(), 1);
}

TEST_F(VirtualLoop, ATimerMayChangeItselfInItsTick) {
    std::unique_ptr<Timer> timer;
    int ticks = 0;
    timer = loop_.make_timer([&] {
        note("tick");
        if (++ticks == 3)
            timer->stop();
        else
            timer->start(ticks * 100);
    });
    timer->start(10);
    loop_.run_for(10'000);
    EXPECT_EQ(seen_, (Lines{"10 tick", "110 tick", "310 tick"}));
}

TEST_F(VirtualLoop, ATickThatFallsDueInsideItsOwnHandlerIsDropped) {
    const auto timer = loop_.make_timer([&] {
        note("begins");
        loop_.run_for(25);
        note("ends");
    });
    timer->start(10);
    loop_.run_for(41);
    EXPECT_EQ(seen_, (Lines{"10 begins", "35 ends", "40 begins", "65 ends"}));
}

TEST_F(VirtualLoop, ATimerThatIsGoneTicksNoMore) {
    auto timer = loop_.make_timer(noting("tick"));
    timer->start(10);
    timer.reset();
    loop_.run_for(100);
    EXPECT_EQ(seen_, Lines{});
}

TEST_F(VirtualLoop, AnExceptionLeavesTheInnermostWait) {
    loop_.call_later(10, [] { throw std::runtime_error("out"); });
    loop_.call_later(20, noting("afterwards"));
    EXPECT_THROW(loop_.run_for(100), std::runtime_error);
    EXPECT_EQ(loop_.elapsed_ms(), 10);
    loop_.run_for(10);
    EXPECT_EQ(seen_, (Lines{"20 afterwards"}));
}

TEST_F(VirtualLoop, ATimerWhoseHandlerThrewGoesOn) {
    bool threw = false;
    const auto timer = loop_.make_timer([&] {
        note("tick");
        if (!std::exchange(threw, true)) throw std::runtime_error("out");
    });
    timer->start(10);
    EXPECT_THROW(loop_.run_for(100), std::runtime_error);
    loop_.run_for(10);
    EXPECT_EQ(seen_, (Lines{"10 tick", "20 tick"}));
}

TEST_F(VirtualLoop, WorkTakesTimeWithoutEvents) {
    loop_.call_later(10, noting("late"));
    loop_.advance(50);
    EXPECT_EQ(seen_, Lines{});
    loop_.run_for(0);
    EXPECT_EQ(seen_, (Lines{"50 late"}));
}

TEST(VirtualClock, TicksWrapAndTheWallClockGoesOn) {
    VirtualEventLoop loop({2026, 12, 31, 23, 59, 59, 500}, 0xFFFFFF00);
    loop.run_for(1000);
    EXPECT_EQ(loop.tick_count(), 1000u - 0x100u);
    EXPECT_EQ(loop.wall_time(), (WallTime{2027, 1, 1, 0, 0, 0, 500}));
}

TEST(VirtualClock, SettingTheWallClockLeavesTheTicksAlone) {
    VirtualEventLoop loop;
    loop.run_for(1000);
    loop.set_wall_time({2030, 6, 1, 12, 0, 0, 0});
    loop.run_for(250);
    EXPECT_EQ(loop.wall_time(), (WallTime{2030, 6, 1, 12, 0, 0, 250}));
    EXPECT_EQ(loop.tick_count(), 1250u);
}

}  // namespace
}  // namespace kavorix
