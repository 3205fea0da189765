#include "platform/virtual_event_loop.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

namespace kavorix {

class VirtualEventLoop::VirtualTimer : public Timer {
  public:
    VirtualTimer(VirtualEventLoop& loop, std::function<void()> on_tick)
        : loop_(loop), on_tick_(std::move(on_tick)) {}
    ~VirtualTimer() override {
        stop();
        if (destroyed_) *destroyed_ = true;
    }

    void start(int interval_ms) override {
        stop();
        interval_ms_ = std::max(interval_ms, 1);
        key_ = loop_.schedule(loop_.now_ + interval_ms_, [this] { tick(); });
    }
    void stop() override {
        if (key_) loop_.pending_.erase(*key_);
        key_.reset();
    }
    bool running() const override { return key_.has_value(); }
    int interval_ms() const override { return interval_ms_; }

  private:
    void tick() {
        key_ = loop_.schedule(loop_.now_ + interval_ms_, [this] { tick(); });
        if (destroyed_) return;  // its own handler is waiting further up the stack
        bool destroyed = false;
        destroyed_ = &destroyed;
        struct Reset {
            VirtualTimer* timer;
            const bool& destroyed;
            ~Reset() {
                if (!destroyed) timer->destroyed_ = nullptr;
            }
        } const reset{this, destroyed};
        on_tick_();
    }

    VirtualEventLoop& loop_;
    std::function<void()> on_tick_;
    int interval_ms_ = 0;
    std::optional<Key> key_;
    bool* destroyed_ = nullptr;  // set while the handler runs
};

VirtualEventLoop::VirtualEventLoop(const WallTime& start, std::uint32_t first_tick)
    : first_tick_(first_tick), wall_base_(start) {}

VirtualEventLoop::~VirtualEventLoop() = default;

std::uint32_t VirtualEventLoop::tick_count() const {
    return first_tick_ + static_cast<std::uint32_t>(now_);
}

WallTime VirtualEventLoop::wall_time() const {
    return add_milliseconds(wall_base_, now_ - wall_base_at_);
}

void VirtualEventLoop::set_wall_time(const WallTime& time) {
    wall_base_ = time;
    wall_base_at_ = now_;
}

std::unique_ptr<Timer> VirtualEventLoop::make_timer(std::function<void()> on_tick) {
    return std::make_unique<VirtualTimer>(*this, std::move(on_tick));
}

void VirtualEventLoop::call_later(int delay_ms, std::function<void()> task) {
    schedule(now_ + std::max(delay_ms, 0), std::move(task));
}

VirtualEventLoop::Key VirtualEventLoop::schedule(long long due, std::function<void()> task) {
    const Key key{due, next_order_++};
    pending_.emplace(key, std::move(task));
    return key;
}

void VirtualEventLoop::run_next() {
    const auto node = pending_.extract(pending_.begin());
    now_ = std::max(now_, node.key().first);
    node.mapped()();
}

void VirtualEventLoop::wait_until(const std::function<bool()>& done) {
    while (!done()) {
        if (pending_.empty()) throw std::logic_error("waiting for something that cannot happen");
        run_next();
    }
}

void VirtualEventLoop::process_events(int longest_ms) {
    const long long until = now_ + longest_ms;
    if (pending_.empty() || pending_.begin()->first.first > until) {
        now_ = until;
        return;
    }
    const long long moment = std::max(now_, pending_.begin()->first.first);
    while (!pending_.empty() && pending_.begin()->first.first <= moment) run_next();
}

void VirtualEventLoop::run_for(long long ms) {
    const long long until = now_ + ms;
    while (!pending_.empty() && pending_.begin()->first.first <= until) run_next();
    now_ = std::max(now_, until);
}

}  // namespace kavorix
