#include "sim/scanner.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "sim/sim_clock.h"

namespace kavorix::sim {

namespace {

// A scan takes at least this long, whatever it measures.
constexpr std::int64_t ShortestScan = 10;
// Scans that drive outputs are caught up with, but not more of them than this.
constexpr std::int64_t MostCaughtUp = 100;

}  // namespace

void Scanner::trigger(std::int64_t now_ms) {
    if (running_ && repeating_ && held_.continuous) return;
    repeating_ = held_.continuous;
    start(now_ms);
}

void Scanner::clear() {
    running_.reset();
    finished_.reset();
}

void Scanner::start(std::int64_t start_ms) {
    Scan scan;
    scan.start_ms = start_ms;
    double duration_s = 0.0;
    if (const auto known = front_.scan_duration(); known && !front_.drives_outputs()) {
        duration_s = *known;
    } else {
        scan.readings.emplace();
        duration_s = front_.measure_all(seconds(start_ms), *scan.readings);
    }
    const auto duration_ms = static_cast<std::int64_t>(std::ceil(duration_s * 1000.0 - 1e-6));
    scan.end_ms = start_ms + std::max(duration_ms, ShortestScan);
    running_ = scan;
}

void Scanner::measure(Scan& scan) {
    if (scan.readings) return;
    scan.readings.emplace();
    front_.measure_all(seconds(scan.start_ms), *scan.readings);
}

void Scanner::advance(std::int64_t now_ms) {
    while (running_ && running_->end_ms <= now_ms) {
        finished_ = std::exchange(running_, std::nullopt);
        if (!repeating_ || !held_.continuous) return;
        const auto period = static_cast<std::int64_t>(held_.scan_period_ms);
        const std::int64_t cycle = std::max(period, finished_->end_ms - finished_->start_ms);
        // Whole cycles that have passed since; all but the last are skipped, or all but the last
        // few where each scan counts.
        const std::int64_t passed = (now_ms - finished_->end_ms) / cycle;
        const std::int64_t kept = finished_->readings ? MostCaughtUp : 1;
        start(finished_->start_ms + cycle * std::max<std::int64_t>(1, passed - kept + 1));
    }
}

void Scanner::settle() {
    if (finished_) measure(*finished_);
}

std::optional<std::int64_t> Scanner::finished_ms() const {
    if (!finished_) return std::nullopt;
    return finished_->end_ms;
}

std::optional<FrontEnd::Readings> Scanner::take() {
    if (!finished_) return std::nullopt;
    measure(*finished_);
    return std::exchange(finished_, std::nullopt)->readings;
}

}  // namespace kavorix::sim
