#include "logging/log_clock.h"

namespace kavorix {

namespace {

// Moves whole `limit`s from one field into the next.
void carry(std::int32_t& field, std::int32_t limit, std::int32_t& next) {
    next += field / limit;
    field %= limit;
}

LogClock from_wall_clock(const EventLoop& loop) {
    const WallTime now = loop.wall_time();
    return {now.hour, now.minute, now.second, 500, static_cast<std::int32_t>(loop.tick_count()), 1};
}

LogClock advanced(LogClock clock, std::int32_t time) {
    const auto passed_ms = static_cast<std::int32_t>(static_cast<std::uint32_t>(time) -
                                                     static_cast<std::uint32_t>(clock.LastTick));
    clock.Milliseconds += passed_ms % 1000;
    clock.Seconds += passed_ms / 1000;
    carry(clock.Milliseconds, 1000, clock.Seconds);
    carry(clock.Seconds, 60, clock.Minutes);
    carry(clock.Minutes, 60, clock.Hours);
    if (clock.Hours >= 24) clock.Hours -= 24;
    clock.LastTick = time;
    return clock;
}

bool is_time_of_day(const LogClock& clock) {
    return clock.Milliseconds >= 0 && clock.Seconds >= 0 && clock.Minutes >= 0 &&
           clock.Hours >= 0 && clock.Hours < 24;
}

}  // namespace

std::int32_t record_time(LogClock& clock, std::int32_t time, const EventLoop& loop) {
    LogClock next;
    if (clock.Started && time != 0) next = advanced(clock, time);
    if (!next.Started || !is_time_of_day(next)) next = from_wall_clock(loop);
    clock = next;
    return ((clock.Hours * 100 + clock.Minutes) * 100 + clock.Seconds) * 1000 + clock.Milliseconds;
}

}  // namespace kavorix
