#pragma once

// The time of the simulated network: milliseconds since its start, and the wall clock that the pods
// stamp their events with.

#include <cstdint>

#include "platform/event_loop.h"

namespace kavorix::sim {

class SimClock {
  public:
    // Keeps a reference to the clock that it follows.
    explicit SimClock(const Clock& host) : host_(host), last_tick_(host.tick_count()) {}

    // Milliseconds since the start. The host's count wraps at 2^32: ask at least every 49 days.
    std::int64_t now_ms() {
        const std::uint32_t tick = host_.tick_count();
        now_ms_ += static_cast<std::uint32_t>(tick - last_tick_);
        last_tick_ = tick;
        return now_ms_;
    }

    // The wall clock at a moment of this clock.
    WallTime wall_at(std::int64_t moment_ms) {
        return add_milliseconds(host_.wall_time(), moment_ms - now_ms());
    }

  private:
    const Clock& host_;
    std::uint32_t last_tick_;
    std::int64_t now_ms_ = 0;
};

inline double seconds(std::int64_t ms) {
    return static_cast<double>(ms) / 1000.0;
}

}  // namespace kavorix::sim
