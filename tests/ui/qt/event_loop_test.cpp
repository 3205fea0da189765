#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>
#include <stdexcept>

#include "base/trap.h"
#include "ui/qt/kit/qt_event_loop.h"

namespace kavorix::test {
namespace {

TEST(QtEventLoop, RunEndsWhenTold) {
    QtEventLoop loop;
    loop.call_later(0, [&] { loop.end(); });
    loop.run();
}

TEST(QtEventLoop, ExceptionOfATimerLeavesRun) {
    QtEventLoop loop;
    const auto timer = loop.make_timer([] { throw ProgramEnded{7}; });
    timer->start(1);
    try {
        loop.run();
        FAIL() << "run returned";
    } catch (const ProgramEnded& ended) {
        EXPECT_EQ(ended.exit_code, 7);
    }
}

TEST(QtEventLoop, ExceptionOfASlotLeavesTheInnermostWait) {
    QtEventLoop loop;
    QPushButton button;
    QObject::connect(&button, &QPushButton::clicked,
                     [&] { loop.dispatch([] { throw std::runtime_error("clicked"); }); });
    std::vector<std::string> order;
    loop.call_later(0, [&] {
        loop.call_later(0, [&] { button.click(); });
        try {
            loop.wait_until([] { return false; });
        } catch (const std::runtime_error& failure) {
            order.emplace_back(failure.what());
        }
        loop.end();
    });
    loop.run();
    EXPECT_EQ(order, std::vector<std::string>{"clicked"});
}

TEST(QtEventLoop, ExceptionOfATaskLeavesProcessEvents) {
    QtEventLoop loop;
    loop.call_later(0, [] { throw std::runtime_error("late"); });
    EXPECT_THROW(loop.process_events(1000), std::runtime_error);
}

TEST(QtEventLoop, NothingRunsWhileAnExceptionIsOnItsWayOut) {
    QtEventLoop loop;
    int ran = 0;
    loop.dispatch([] { throw std::runtime_error("first"); });
    loop.dispatch([&] { ++ran; });
    EXPECT_THROW(loop.process_events(0), std::runtime_error);
    EXPECT_EQ(ran, 0);
    loop.dispatch([&] { ++ran; });
    EXPECT_EQ(ran, 1);
}

TEST(QtEventLoop, TasksDueBehindAnExceptionStillRun) {
    QtEventLoop loop;
    bool ran = false;
    loop.call_later(0, [] { throw std::runtime_error("first"); });
    loop.call_later(0, [&] { ran = true; });
    EXPECT_THROW(loop.wait_until([] { return false; }), std::runtime_error);
    loop.wait_until([&] { return ran; });
}

TEST(QtEventLoop, WaitsNestAndClicksFlowDuringThem) {
    QtEventLoop loop;
    QPushButton button;
    std::string order;
    bool outer = false;
    bool inner = false;
    QObject::connect(&button, &QPushButton::clicked, [&] {
        loop.dispatch([&] {
            order += "a";
            loop.call_later(0, [&] { inner = true; });
            loop.wait_until([&] { return inner; });
            order += "b";
            outer = true;
        });
    });
    loop.call_later(0, [&] { QTest::mouseClick(&button, Qt::LeftButton); });
    loop.wait_until([&] { return outer; });
    order += "c";
    EXPECT_EQ(order, "abc");
}

TEST(QtEventLoop, TimerRepeatsAndKeepsItsInterval) {
    QtEventLoop loop;
    int ticks = 0;
    const auto timer = loop.make_timer([&] { ++ticks; });
    EXPECT_FALSE(timer->running());
    timer->start(2);
    EXPECT_TRUE(timer->running());
    EXPECT_EQ(timer->interval_ms(), 2);
    loop.wait_until([&] { return ticks == 3; });
    timer->stop();
    EXPECT_FALSE(timer->running());
    loop.process_events(10);
    EXPECT_EQ(ticks, 3);
}

TEST(QtEventLoop, TickThatFallsDueInsideItsHandlerIsDropped) {
    QtEventLoop loop;
    int depth = 0;
    int deepest = 0;
    bool handled = false;
    std::unique_ptr<Timer> timer = loop.make_timer([&] {
        deepest = std::max(deepest, ++depth);
        timer->start(1);  // anew, as a handler that corrects its interval does
        bool later = false;
        loop.call_later(20, [&] { later = true; });
        loop.wait_until([&] { return later; });
        --depth;
        handled = true;
    });
    timer->start(1);
    loop.wait_until([&] { return handled; });
    EXPECT_EQ(deepest, 1);
}

TEST(QtEventLoop, TimerCanBeDestroyedByItsOwnHandler) {
    QtEventLoop loop;
    std::unique_ptr<Timer> timer;
    timer = loop.make_timer([&] {
        timer.reset();
        loop.end();
    });
    timer->start(1);
    loop.run();
    EXPECT_EQ(timer, nullptr);
}

TEST(QtEventLoop, ProcessEventsReturnsWithoutEvents) {
    QtEventLoop loop;
    const std::uint32_t before = loop.tick_count();
    loop.process_events(15);
    EXPECT_LT(loop.tick_count() - before, 10'000U);
}

TEST(QtEventLoop, NothingOfTheProgramRunsWhileTheScreenIsFlushed) {
    QtEventLoop loop;
    int ran = 0;
    const auto timer = loop.make_timer([&] { ++ran; });
    timer->start(1);
    loop.call_later(0, [&] { ++ran; });
    loop.flush_screen(20, [] { return false; });
    EXPECT_EQ(ran, 0);
    loop.wait_until([&] { return ran >= 2; });
}

TEST(QtEventLoop, WallTimeIsAValidLocalTime) {
    const QtEventLoop loop;
    const WallTime now = loop.wall_time();
    EXPECT_GE(now.year, 2024);
    EXPECT_TRUE(now.month >= 1 && now.month <= 12 && now.day >= 1 && now.day <= 31);
    EXPECT_LT(now.millisecond, 1000);
}

}  // namespace
}  // namespace kavorix::test
