#pragma once

// Time and events. Nothing in the program reads a clock, sleeps or waits but through this
// interface.

#include <cstdint>
#include <functional>
#include <memory>

#include "base/dates.h"

namespace kavorix {

// A repeating timer, made by EventLoop::make_timer(). It stops when it is destroyed. Its handler
// never runs inside itself: a tick that falls due while the handler waits is dropped.
class Timer {
  public:
    virtual ~Timer() = default;

    // Starts it, or starts it anew: the next tick comes `interval_ms` (at least 1) from now.
    virtual void start(int interval_ms) = 0;
    virtual void stop() = 0;
    virtual bool running() const = 0;

    // The interval that it was last given, in ms.
    virtual int interval_ms() const = 0;
};

// What time it is.
class Clock {
  public:
    virtual ~Clock() = default;

    // Milliseconds since some fixed moment, never going back but wrapping at 2^32. For intervals.
    virtual std::uint32_t tick_count() const = 0;

    // The local wall clock. It may jump in either direction.
    virtual WallTime wall_time() const = 0;

    // Milliseconds since 1970 UTC. It jumps as the wall clock does, but for the changes to and from
    // daylight saving. A clock without a time zone has local time for UTC.
    virtual std::int64_t utc_ms() const { return milliseconds_between(WallTime{}, wall_time()); }

    // Lets `ms` pass without any event: for a driver call that has to wait. Up to 32767 ms.
    virtual void block(int ms);
};

// One thread. Handlers may throw: the exception leaves the innermost run or wait call, whatever
// toolkit lies between.
class EventLoop : public Clock {
  public:
    // A stopped timer that calls `on_tick`.
    virtual std::unique_ptr<Timer> make_timer(std::function<void()> on_tick) = 0;

    // Calls `task` once, `delay_ms` from now (0: as soon as events flow).
    virtual void call_later(int delay_ms, std::function<void()> task) = 0;

    // Lets events flow until `done` returns true; `done` is asked after every event.
    virtual void wait_until(const std::function<bool()>& done) = 0;

    // Lets the events flow that are due, waiting up to `longest_ms` for the first.
    virtual void process_events(int longest_ms) = 0;
};

}  // namespace kavorix
