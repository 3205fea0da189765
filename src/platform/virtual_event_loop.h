#pragma once

// The event loop in virtual time: waiting moves the clock to the next event at once, so that a day
// takes seconds and every run repeats exactly. Used where the program runs as fast as it can, and
// by the tests.

#include <algorithm>
#include <stdexcept>

#include "platform/scheduled_event_loop.h"

namespace kavorix {

class VirtualEventLoop : public ScheduledEventLoop {
  public:
    explicit VirtualEventLoop(const WallTime& start = {2026, 1, 5, 8, 0, 0, 0},
                              std::uint32_t first_tick = 0)
        : first_tick_(first_tick) {
        set_wall_time(start);
    }

    std::uint32_t tick_count() const override {
        return first_tick_ + static_cast<std::uint32_t>(now_);
    }
    WallTime wall_time() const override { return add_milliseconds(wall_base_, now_ - wall_at_); }
    std::int64_t utc_ms() const override { return utc_base_ms_ + now_ - wall_at_; }

    void block(int ms) override { advance(std::max(ms, 0)); }

    // Time that the program's own work takes: the clock moves, nothing runs.
    void advance(long long ms) { now_ += ms; }

    // Sets the wall clock; the tick count goes on as it was.
    void set_wall_time(const WallTime& time) {
        wall_base_ = time;
        wall_at_ = now_;
        utc_base_ms_ = milliseconds_between(WallTime{}, time);
    }

    // Milliseconds since the start.
    long long elapsed_ms() const { return now_; }

  protected:
    long long now() const override { return now_; }
    void pass_time_until(long long moment) override { now_ = std::max(now_, moment); }
    void nothing_pending() override {
        throw std::logic_error("waiting for something that cannot happen");
    }

  private:
    long long now_ = 0;
    std::uint32_t first_tick_;
    WallTime wall_base_;
    long long wall_at_ = 0;
    std::int64_t utc_base_ms_ = 0;  // of wall_base_, taken for UTC
};

}  // namespace kavorix
