#pragma once

// The event loop in virtual time: waiting moves the clock to the next event at once, so that a day
// takes seconds and every run repeats exactly. Used where the program runs as fast as it can, and
// by the tests.

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "platform/event_loop.h"

namespace kavorix {

class VirtualEventLoop : public EventLoop {
  public:
    explicit VirtualEventLoop(const WallTime& start = {2026, 1, 5, 8, 0, 0, 0},
                              std::uint32_t first_tick = 0);
    ~VirtualEventLoop() override;

    std::uint32_t tick_count() const override;
    WallTime wall_time() const override;
    std::unique_ptr<Timer> make_timer(std::function<void()> on_tick) override;
    void call_later(int delay_ms, std::function<void()> task) override;

    // Throws std::logic_error when no event is left that could make `done` true.
    void wait_until(const std::function<bool()>& done) override;

    // Runs what falls due within the next `longest_ms`, up to and including the first moment that
    // has events; without one the clock moves on by `longest_ms`.
    void process_events(int longest_ms) override;

    void block(int ms) override { advance(ms > 0 ? ms : 0); }

    // Runs everything that falls due in the next `ms` and leaves the clock at their end.
    void run_for(long long ms);

    // Time that the program's own work takes: the clock moves, nothing runs.
    void advance(long long ms) { now_ += ms; }

    // Sets the wall clock; the tick count goes on as it was.
    void set_wall_time(const WallTime& time);

    // Milliseconds since the start.
    long long elapsed_ms() const { return now_; }

  private:
    class VirtualTimer;
    using Key = std::pair<long long, std::uint64_t>;  // due time, order of scheduling

    Key schedule(long long due, std::function<void()> task);
    void run_next();

    long long now_ = 0;
    std::uint32_t first_tick_;
    WallTime wall_base_;
    long long wall_base_at_ = 0;
    std::uint64_t next_order_ = 0;
    std::map<Key, std::function<void()>> pending_;
};

}  // namespace kavorix
