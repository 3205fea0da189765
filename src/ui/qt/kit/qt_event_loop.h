#pragma once

// The event loop on the toolkit's: timers, waits, and the way of exceptions across toolkit frames.

#include <QObject>
#include <exception>
#include <functional>

#include "platform/event_loop.h"

namespace kavorix {

// Needs a QApplication. Whatever the toolkit calls (slots, event handlers) goes through dispatch()
// as soon as it reaches code of the program, because no exception may pass a toolkit frame.
class QtEventLoop : public EventLoop {
  public:
    QtEventLoop();
    ~QtEventLoop() override;
    QtEventLoop(const QtEventLoop&) = delete;
    QtEventLoop& operator=(const QtEventLoop&) = delete;

    std::uint32_t tick_count() const override;
    WallTime wall_time() const override;
    std::int64_t utc_ms() const override;
    std::unique_ptr<Timer> make_timer(std::function<void()> on_tick) override;
    void call_later(int delay_ms, std::function<void()> task) override;
    void wait_until(const std::function<bool()>& done) override;
    void process_events(int longest_ms) override;

    // Lets events flow until end() is called or a handler throws; the exception leaves run().
    void run();
    void end() { ended_ = true; }

    // Runs `work`. What it throws is kept and leaves the innermost run or wait call; until then
    // nothing else is run.
    template <class Work>
    void dispatch(Work&& work) noexcept {
        if (!accepting()) return;
        try {
            work();
        } catch (...) {
            if (!failure_) failure_ = std::current_exception();
        }
    }

    // Whether dispatch() runs its work now: not while an exception is on its way out, nor during
    // flush_screen().
    bool accepting() const { return !failure_ && !flushing_; }

    // Lets the window system show what is drawn, for `longest_ms` or until `shown` is true, while
    // nothing of the program runs: timers tick and tasks start afterwards, input waits.
    void flush_screen(int longest_ms, const std::function<bool()>& shown);

  private:
    class QtTimer;
    void rethrow();

    QObject context_;  // pending tasks go with it
    std::exception_ptr failure_;
    bool flushing_ = false;
    bool ended_ = false;
};

}  // namespace kavorix
