#include "platform/scheduled_event_loop.h"

#include <algorithm>
#include <optional>

namespace kavorix {

class ScheduledEventLoop::ScheduledTimer : public Timer {
  public:
    ScheduledTimer(ScheduledEventLoop& loop, std::function<void()> on_tick)
        : loop_(loop), on_tick_(std::move(on_tick)) {}
    ~ScheduledTimer() override {
        stop();
        if (destroyed_) *destroyed_ = true;
    }

    void start(int interval_ms) override {
        stop();
        interval_ms_ = std::max(interval_ms, 1);
        schedule_next();
    }
    void stop() override {
        if (key_) loop_.pending_.erase(*key_);
        key_.reset();
    }
    bool running() const override { return key_.has_value(); }
    int interval_ms() const override { return interval_ms_; }

  private:
    void schedule_next() {
        key_ = loop_.schedule(loop_.now() + interval_ms_, [this] { tick(); });
    }
    void tick() {
        schedule_next();
        if (destroyed_) return;  // its own handler is waiting further up the stack
        bool destroyed = false;
        destroyed_ = &destroyed;
        struct Reset {
            ScheduledTimer* timer;
            const bool& destroyed;
            ~Reset() {
                if (!destroyed) timer->destroyed_ = nullptr;
            }
        } const reset{this, destroyed};
        on_tick_();
    }

    ScheduledEventLoop& loop_;
    std::function<void()> on_tick_;
    int interval_ms_ = 0;
    std::optional<Key> key_;
    bool* destroyed_ = nullptr;  // set while the handler runs
};

ScheduledEventLoop::~ScheduledEventLoop() = default;

std::unique_ptr<Timer> ScheduledEventLoop::make_timer(std::function<void()> on_tick) {
    return std::make_unique<ScheduledTimer>(*this, std::move(on_tick));
}

void ScheduledEventLoop::call_later(int delay_ms, std::function<void()> task) {
    schedule(now() + std::max(delay_ms, 0), std::move(task));
}

ScheduledEventLoop::Key ScheduledEventLoop::schedule(long long due, std::function<void()> task) {
    const Key key{due, next_order_++};
    pending_.emplace(key, std::move(task));
    return key;
}

bool ScheduledEventLoop::due_by(long long moment) const {
    return !pending_.empty() && pending_.begin()->first.first <= moment;
}

// Waits for the first pending event and runs it, unless one that became due meanwhile is earlier.
void ScheduledEventLoop::run_next() {
    pass_time_until(pending_.begin()->first.first);
    if (!due_by(now())) return;
    const auto node = pending_.extract(pending_.begin());
    node.mapped()();
}

void ScheduledEventLoop::wait_until(const std::function<bool()>& done) {
    while (!done()) {
        if (pending_.empty())
            nothing_pending();
        else
            run_next();
    }
}

void ScheduledEventLoop::process_events(int longest_ms) {
    const long long until = now() + longest_ms;
    if (!due_by(until)) {
        pass_time_until(until);
        return;
    }
    const long long moment = std::max(now(), pending_.begin()->first.first);
    while (due_by(moment)) run_next();
}

void ScheduledEventLoop::run_for(long long ms) {
    const long long until = now() + ms;
    while (due_by(until)) run_next();
    pass_time_until(until);
}

}  // namespace kavorix
