#pragma once

// The event loop on the host's clock for runs without a toolkit: a terminal command that works in
// real time and is ended by a signal.

#include <chrono>
#include <functional>

#include "platform/scheduled_event_loop.h"

namespace kavorix {

// The host's local date and time, and its milliseconds since some fixed moment.
WallTime host_wall_time();
std::uint32_t host_tick_count();
std::int64_t host_utc_ms();

// While one exists, SIGINT and SIGTERM do not end the process but come to it as events. One at a
// time, made before any thread is.
class HostEventLoop : public ScheduledEventLoop {
  public:
    // `on_interrupt` is called for each of the two signals.
    explicit HostEventLoop(std::function<void()> on_interrupt);
    ~HostEventLoop() override;
    HostEventLoop(const HostEventLoop&) = delete;
    HostEventLoop& operator=(const HostEventLoop&) = delete;

    std::uint32_t tick_count() const override { return host_tick_count(); }
    WallTime wall_time() const override { return host_wall_time(); }
    std::int64_t utc_ms() const override { return host_utc_ms(); }

  protected:
    long long now() const override;
    void pass_time_until(long long moment) override;
    void nothing_pending() override;

  private:
    // Waits for a signal; false when none came.
    bool take_signals(int longest_ms);

    std::function<void()> on_interrupt_;
    std::chrono::steady_clock::time_point start_;
    int signals_ = -1;  // descriptor that delivers them
};

}  // namespace kavorix
