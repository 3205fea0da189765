#pragma once

// The event loops that need no toolkit. Both keep what is due in one list; they differ in how time
// passes.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "platform/event_loop.h"

namespace kavorix {

class ScheduledEventLoop : public EventLoop {
  public:
    ~ScheduledEventLoop() override;

    std::unique_ptr<Timer> make_timer(std::function<void()> on_tick) override;
    void call_later(int delay_ms, std::function<void()> task) override;
    void wait_until(const std::function<bool()>& done) override;

    // Runs what falls due within the next `longest_ms`, up to and including the first moment that
    // has events; without one, that time passes.
    void process_events(int longest_ms) override;

    // Runs everything that falls due in the next `ms` and leaves the clock at their end.
    void run_for(long long ms);

  protected:
    // Milliseconds since the loop was made.
    virtual long long now() const = 0;
    // Lets time pass until now() is `moment`, or until something outside the loop has scheduled an
    // event.
    virtual void pass_time_until(long long moment) = 0;
    // Nothing is due any more and wait_until() is not done.
    virtual void nothing_pending() = 0;

  private:
    class ScheduledTimer;
    using Key = std::pair<long long, std::uint64_t>;  // due time, order of scheduling

    Key schedule(long long due, std::function<void()> task);
    bool due_by(long long moment) const;
    void run_next();

    std::uint64_t next_order_ = 0;
    std::map<Key, std::function<void()>> pending_;
};

}  // namespace kavorix
