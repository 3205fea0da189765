#include "logging/log_clock.h"

#include <gtest/gtest.h>

#include "platform/virtual_event_loop.h"

namespace kavorix {
namespace {

TEST(LogClock, TheFirstRecordTakesTheWallClockAndHalfASecond) {
    const VirtualEventLoop loop({2026, 1, 5, 13, 45, 2, 123}, 777);
    LogClock clock;
    EXPECT_EQ(record_time(clock, 4711, loop), 134502500);
    EXPECT_EQ(clock.LastTick, 777);
}

TEST(LogClock, LaterRecordsAreCarriedOnByTicks) {
    const struct {
        LogClock before;
        std::int32_t passed_ms;
        std::int32_t stamp;
    } rows[] = {
        {{13, 45, 2, 500}, 0, 134502500},
        {{13, 45, 2, 500}, 499, 134502999},
        {{13, 45, 2, 500}, 500, 134503000},
        {{13, 45, 2, 500}, 1499, 134503999},
        {{13, 45, 59, 999}, 1, 134600000},
        {{13, 59, 59, 999}, 1, 140000000},
        {{13, 59, 59, 500}, 61500, 140101000},
        {{0, 0, 0, 0}, 3600000, 10000000},
        {{0, 0, 0, 0}, 86399999, 235959999},
        {{23, 59, 59, 900}, 200, 100},
        {{23, 59, 59, 900}, 86400000, 235959900},
        {{13, 45, 2, 500}, -3, 134502497},  // the other log's record came first in the same tick
    };
    const VirtualEventLoop loop({2026, 1, 5, 7, 7, 7, 0}, 777);
    for (const auto& row : rows) {
        LogClock clock = row.before;
        clock.Started = 1;
        clock.LastTick = 1000000;
        EXPECT_EQ(record_time(clock, 1000000 + row.passed_ms, loop), row.stamp) << row.passed_ms;
        EXPECT_EQ(clock.LastTick, 1000000 + row.passed_ms);
    }
}

TEST(LogClock, FollowsTheTickCountOverItsEnds) {
    const VirtualEventLoop loop;
    LogClock clock{12, 0, 0, 0, 2147483647, 1};
    EXPECT_EQ(record_time(clock, -2147483647 - 1, loop), 120000001);
    clock = {12, 0, 0, 0, -1, 1};
    EXPECT_EQ(record_time(clock, 999, loop), 120001000);
}

TEST(LogClock, TimeZeroSetsItAnew) {
    const VirtualEventLoop loop({2026, 1, 5, 9, 8, 7, 0}, 5000);
    LogClock clock{12, 0, 0, 0, 4000, 1};
    EXPECT_EQ(record_time(clock, 0, loop), 90807500);
    EXPECT_EQ(clock.LastTick, 5000);
}

TEST(LogClock, IsSetAnewWhereTheTicksLeadOutOfTheDay) {
    const VirtualEventLoop loop({2026, 1, 5, 9, 8, 7, 0}, 5000);
    LogClock after_days{12, 0, 0, 0, 1000, 1};
    EXPECT_EQ(record_time(after_days, 1000 + 3 * 86400000, loop), 90807500);
    LogClock backwards{0, 0, 0, 100, 100000, 1};
    EXPECT_EQ(record_time(backwards, 50000, loop), 90807500);
}

}  // namespace
}  // namespace kavorix
