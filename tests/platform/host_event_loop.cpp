#include "platform/host_event_loop.h"

#include <gtest/gtest.h>

#include <csignal>

namespace kavorix {
namespace {

TEST(HostEventLoop, SignalsComeAsEventsWhileItWaits) {
    int interrupts = 0;
    HostEventLoop loop([&] { ++interrupts; });
    loop.call_later(0, [] { std::raise(SIGTERM); });
    loop.wait_until([&] { return interrupts == 1; });
    loop.call_later(0, [] { std::raise(SIGINT); });
    loop.wait_until([&] { return interrupts == 2; });
    EXPECT_EQ(interrupts, 2);
}

TEST(HostEventLoop, ASignalWakesAWaitWithoutEvents) {
    bool interrupted = false;
    HostEventLoop loop([&] { interrupted = true; });
    std::raise(SIGTERM);
    loop.wait_until([&] { return interrupted; });
    EXPECT_TRUE(interrupted);
}

TEST(HostEventLoop, SignalsAreSeenAlsoWhenEventsAreAlwaysDue) {
    bool interrupted = false;
    HostEventLoop loop([&] { interrupted = true; });
    const auto timer = loop.make_timer([&] { loop.call_later(0, [] {}); });
    timer->start(1);
    std::function<void()> again = [&] { loop.call_later(0, again); };
    again();
    std::raise(SIGINT);
    loop.wait_until([&] { return interrupted; });
    EXPECT_TRUE(interrupted);
}

TEST(HostEventLoop, EventsRunInTheOrderOfTheirTimes) {
    HostEventLoop loop([] {});
    std::string order;
    loop.call_later(4, [&] { order += "c"; });
    loop.call_later(1, [&] { order += "a"; });
    loop.call_later(2, [&] { order += "b"; });
    loop.wait_until([&] { return order.size() == 3; });
    EXPECT_EQ(order, "abc");
}

TEST(HostEventLoop, SignalsDoNotEndTheProcessUntilTheLoopIsGone) {
    const auto blocked = [] {
        sigset_t set;
        sigprocmask(SIG_BLOCK, nullptr, &set);
        return sigismember(&set, SIGTERM) == 1;
    };
    {
        HostEventLoop loop([] {});
        EXPECT_TRUE(blocked());
    }
    EXPECT_FALSE(blocked());
}

TEST(HostClock, GivesARealDate) {
    const WallTime now = host_wall_time();
    EXPECT_GE(now.year, 2024);
    EXPECT_TRUE(now.month >= 1 && now.month <= 12 && now.day >= 1 && now.day <= 31);
    EXPECT_TRUE(now.hour < 24 && now.minute < 60 && now.second < 60 && now.millisecond < 1000);
    const std::uint32_t before = host_tick_count();
    EXPECT_LT(host_tick_count() - before, 60'000u);
}

}  // namespace
}  // namespace kavorix
