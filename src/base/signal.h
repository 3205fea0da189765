#pragma once

// Who wants to be told of something subscribes to its signal; who tells knows none of them.

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kavorix {

// Ends a subscription when it is destroyed; may outlive the signal.
class Subscription {
  public:
    Subscription() = default;
    explicit Subscription(std::shared_ptr<bool> active) : active_(std::move(active)) {}
    ~Subscription() { end(); }
    Subscription(Subscription&&) noexcept = default;
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            end();
            active_ = std::move(other.active_);
        }
        return *this;
    }

    void end() {
        if (active_) *active_ = false;
        active_.reset();
    }

  private:
    std::shared_ptr<bool> active_;
};

// Tells every subscriber, in the order of subscription; telling allocates nothing. Listeners may
// subscribe, end subscriptions and set off the same signal: who has ended is told no more, who is
// new is told from the next time on.
template <class... Args>
class Signal {
  public:
    using Listener = std::function<void(Args...)>;

    // For as long as the subscription lives.
    [[nodiscard]] Subscription subscribe(Listener listener) {
        const auto entry = std::make_shared<Entry>(Entry{std::move(listener)});
        entries_.push_back(entry);
        return Subscription(std::shared_ptr<bool>(entry, &entry->active));
    }
    // For as long as the signal lives.
    void always(Listener listener) {
        entries_.push_back(std::make_shared<Entry>(Entry{std::move(listener)}));
    }

    void operator()(Args... args) {
        const std::size_t count = entries_.size();
        ++telling_;
        struct Told {
            Signal& signal;
            ~Told() {
                if (--signal.telling_ == 0) signal.forget_ended();
            }
        } const told{*this};
        // An entry stays where it is until the telling is over, whatever becomes of the list.
        for (std::size_t i = 0; i < count; ++i) {
            Entry& entry = *entries_[i];
            if (entry.active) entry.listener(args...);
        }
    }

  private:
    struct Entry {
        Listener listener;
        bool active = true;
    };

    void forget_ended() {
        entries_.erase(std::remove_if(entries_.begin(), entries_.end(),
                                      [](const auto& entry) { return !entry->active; }),
                       entries_.end());
    }

    std::vector<std::shared_ptr<Entry>> entries_;
    int telling_ = 0;
};

}  // namespace kavorix
