#include "ui/qt/kit/qt_event_loop.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/host_event_loop.h"

namespace kavorix {

class QtEventLoop::QtTimer : public Timer {
  public:
    QtTimer(QtEventLoop& loop, std::function<void()> on_tick)
        : loop_(loop), on_tick_(std::make_shared<std::function<void()>>(std::move(on_tick))) {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
    }
    ~QtTimer() override {
        if (destroyed_) *destroyed_ = true;
    }

    void start(int interval_ms) override { timer_.start(std::max(interval_ms, 1)); }
    void stop() override { timer_.stop(); }
    bool running() const override { return timer_.isActive(); }
    int interval_ms() const override { return timer_.interval(); }

  private:
    void tick() {
        if (destroyed_) return;  // its own handler is waiting further up the stack
        if (!loop_.accepting()) {
            tick_later();
            return;
        }
        bool destroyed = false;
        destroyed_ = &destroyed;
        const auto handler = on_tick_;  // outlives the timer if that is destroyed meanwhile
        loop_.dispatch(*handler);
        if (!destroyed) destroyed_ = nullptr;
    }

    // The tick is due, but nothing may run now.
    void tick_later() {
        if (std::exchange(late_, true)) return;
        QTimer::singleShot(0, &timer_, [this] {
            late_ = false;
            if (timer_.isActive()) tick();
        });
    }

    QtEventLoop& loop_;
    std::shared_ptr<std::function<void()>> on_tick_;
    QTimer timer_;
    bool late_ = false;
    bool* destroyed_ = nullptr;  // set while the handler runs
};

QtEventLoop::QtEventLoop() = default;
QtEventLoop::~QtEventLoop() = default;

std::uint32_t QtEventLoop::tick_count() const {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

WallTime QtEventLoop::wall_time() const {
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    const QTime time = now.time();
    return {date.year(),   date.month(),  date.day(), time.hour(),
            time.minute(), time.second(), time.msec()};
}

std::int64_t QtEventLoop::utc_ms() const {
    return host_utc_ms();
}

std::unique_ptr<Timer> QtEventLoop::make_timer(std::function<void()> on_tick) {
    return std::make_unique<QtTimer>(*this, std::move(on_tick));
}

void QtEventLoop::call_later(int delay_ms, std::function<void()> task) {
    QTimer::singleShot(std::max(delay_ms, 0), Qt::PreciseTimer, &context_,
                       [this, task = std::move(task)] {
                           if (accepting())
                               dispatch(task);
                           else
                               call_later(0, task);
                       });
}

void QtEventLoop::rethrow() {
    if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void QtEventLoop::wait_until(const std::function<bool()>& done) {
    rethrow();
    while (!done()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        rethrow();
    }
}

void QtEventLoop::process_events(int longest_ms) {
    rethrow();
    if (longest_ms > 0) {
        QTimer limit;  // its tick is the event that ends the wait when no other comes
        limit.setTimerType(Qt::PreciseTimer);
        limit.start(longest_ms);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        rethrow();
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    rethrow();
}

void QtEventLoop::run() {
    ended_ = false;
    wait_until([this] { return ended_; });
}

void QtEventLoop::flush_screen(int longest_ms, const std::function<bool()>& shown) {
    if (flushing_) return;
    flushing_ = true;
    const QDeadlineTimer deadline(longest_ms, Qt::PreciseTimer);
    while (!shown() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    flushing_ = false;
}

}  // namespace kavorix
