#include "sim/event_capture.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kavorix::sim {

namespace {

using Record = std::array<unsigned char, 4>;

constexpr unsigned char StateFlag = 32;  // rising, or high
constexpr unsigned char LevelFlag = 64;  // keeps a report of the low level above 31
constexpr unsigned char TransitionFlag = 128;
constexpr Record Filler = {255, 255, 255, 255};
constexpr std::int16_t CaptureMode = 76;
constexpr Record End = {0, 0, 0, 0};

unsigned char bcd(int value) {
    return static_cast<unsigned char>(value / 10 * 16 + value % 10);
}

Record time_base(const WallTime& time) {
    return {bcd(time.month), bcd(time.day), bcd(time.hour), bcd(time.minute)};
}

Record event_record(const CapturedEvent& event) {
    auto flags = static_cast<unsigned char>(event.channel);
    flags |= event.level_report ? (event.rising ? 0 : LevelFlag) : TransitionFlag;
    if (event.rising) flags |= StateFlag;
    return {flags, bcd(event.time.second), bcd(event.time.millisecond / 10),
            static_cast<unsigned char>(event.time.millisecond % 10 * 16)};
}

}  // namespace

bool EventQueue::push(const CapturedEvent& event) {
    if (events_.size() >= Capacity) return false;
    events_.push_back(event);
    return true;
}

std::optional<std::int64_t> EventQueue::oldest_ms() const {
    if (events_.empty()) return std::nullopt;
    return events_.front().at_ms;
}

std::string EventQueue::take(std::size_t size) {
    const std::size_t room = size / sizeof(Record);
    std::vector<Record> records;
    std::optional<Record> base;
    while (!events_.empty()) {
        const Record needed = time_base(events_.front().time);
        const bool new_base = base != needed;
        if (records.size() + (new_base ? 2 : 1) > room) break;
        if (new_base) records.push_back(needed);
        base = needed;
        records.push_back(event_record(events_.front()));
        events_.pop_front();
    }
    if (records.empty() && !events_.empty()) events_.pop_front();
    // Pods send whole pairs of records.
    if (records.size() % 2 == 1 && records.size() < room) records.push_back(Filler);
    if (records.size() < room) records.push_back(End);
    std::string bytes;
    for (const Record& record : records)
        for (const unsigned char byte : record) bytes += static_cast<char>(byte);
    return bytes;
}

void EventCapture::start(std::int64_t now_ms) {
    captured_to_ms_ = now_ms;
    for (int channel = 1; channel <= front_.channels(); ++channel)
        if (held_.channels.at(static_cast<std::size_t>(channel - 1)).mode == CaptureMode)
            push(now_ms, channel, front_.input(channel).level(seconds(now_ms)), true);
}

void EventCapture::advance(std::int64_t now_ms) {
    const double from_s = seconds(std::exchange(captured_to_ms_, now_ms));
    if (!held_.event_capture) return;
    std::vector<Edge> edges;
    for (int channel = 1; channel <= front_.channels(); ++channel)
        if (held_.channels.at(static_cast<std::size_t>(channel - 1)).mode == CaptureMode)
            find_edges(channel, from_s, seconds(now_ms), edges);
    std::stable_sort(edges.begin(), edges.end(),
                     [](const Edge& a, const Edge& b) { return a.time_s < b.time_s; });
    for (const Edge& edge : edges)
        push(static_cast<std::int64_t>(edge.time_s * 1000.0), edge.channel, edge.rising, false);
}

// The edges of the direction that the channel's range chooses: 0 falling, 1 rising, 2 both.
void EventCapture::find_edges(int channel, double from_s, double to_s,
                              std::vector<Edge>& found) const {
    const LogicInput& input = front_.input(channel);
    const std::int16_t range = held_.channels.at(static_cast<std::size_t>(channel - 1)).range;
    const std::size_t most = found.size() + EventQueue::Capacity;
    while (found.size() < most) {
        const auto change = input.next_change(from_s, to_s);
        if (!change) return;
        from_s = *change;
        const bool rising = input.level(from_s);
        if (range == 2 || rising == (range == 1)) found.push_back({from_s, channel, rising});
    }
}

void EventCapture::push(std::int64_t time_ms, int channel, bool rising, bool level_report) {
    // 8S pods number their channels from 0.
    const int first = front_.family() == PodFamily::Switch ? 1 : 0;
    queue_.push({time_ms, clock_.wall_at(time_ms), channel - first, rising, level_report});
}

std::optional<std::string> EventCapture::take(std::size_t size) {
    if (queue_.empty()) return std::nullopt;
    return queue_.take(size);
}

}  // namespace kavorix::sim
