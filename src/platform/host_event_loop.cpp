#include "platform/host_event_loop.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <system_error>
#include <thread>

namespace kavorix {

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using std::chrono::system_clock;

constexpr long long LongestWait_ms = 60'000;

sigset_t ending_signals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

}  // namespace

WallTime host_wall_time() {
    const auto now = system_clock::now();
    const std::time_t seconds = system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    const auto since_epoch = duration_cast<milliseconds>(now.time_since_epoch()).count();
    // A leap second would be second 60: it is shown as another 59.
    return {local.tm_year + 1900,
            local.tm_mon + 1,
            local.tm_mday,
            local.tm_hour,
            local.tm_min,
            std::min(local.tm_sec, 59),
            static_cast<int>(since_epoch % 1000)};
}

std::uint32_t host_tick_count() {
    return static_cast<std::uint32_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

std::int64_t host_utc_ms() {
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

// Loops that follow the real time wait in it.
void Clock::block(int ms) {
    if (ms > 0) std::this_thread::sleep_for(milliseconds(ms));
}

HostEventLoop::HostEventLoop(std::function<void()> on_interrupt)
    : on_interrupt_(std::move(on_interrupt)), start_(steady_clock::now()) {
    const sigset_t set = ending_signals();
    sigprocmask(SIG_BLOCK, &set, nullptr);
    signals_ = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signals_ < 0)
        throw std::system_error(errno, std::generic_category(), "Listening for signals");
}

HostEventLoop::~HostEventLoop() {
    ::close(signals_);
    const sigset_t set = ending_signals();
    sigprocmask(SIG_UNBLOCK, &set, nullptr);
}

long long HostEventLoop::now() const {
    return duration_cast<milliseconds>(steady_clock::now() - start_).count();
}

void HostEventLoop::pass_time_until(long long moment) {
    // At least one look at the signals, also when events are always due.
    do {
        if (take_signals(static_cast<int>(std::clamp(moment - now(), 0LL, LongestWait_ms)))) return;
    } while (now() < moment);
}

void HostEventLoop::nothing_pending() {
    take_signals(static_cast<int>(LongestWait_ms));
}

bool HostEventLoop::take_signals(int longest_ms) {
    pollfd descriptor{signals_, POLLIN, 0};
    if (::poll(&descriptor, 1, longest_ms) <= 0) return false;
    signalfd_siginfo signal{};
    while (::read(signals_, &signal, sizeof signal) == sizeof signal) on_interrupt_();
    return true;
}

}  // namespace kavorix
