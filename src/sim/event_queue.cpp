#include "sim/event_queue.h"

#include <algorithm>
#include <array>
#include <optional>

namespace kavorix::sim {

namespace {

using Record = std::array<unsigned char, 4>;

constexpr unsigned char StateFlag = 32;  // rising, or high
constexpr unsigned char LevelFlag = 64;  // keeps a report of the low level above 31
constexpr unsigned char TransitionFlag = 128;
constexpr Record Filler = {255, 255, 255, 255};
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

void EventQueue::write(std::span<char> buffer) {
    const std::size_t room = buffer.size() / sizeof(Record);
    std::size_t used = 0;
    const auto put = [&](const Record& record) {
        std::transform(record.begin(), record.end(),
                       buffer.begin() + static_cast<std::ptrdiff_t>(used * record.size()),
                       [](unsigned char byte) { return static_cast<char>(byte); });
        ++used;
    };
    std::optional<Record> base;
    while (!events_.empty()) {
        const Record needed = time_base(events_.front().time);
        const bool new_base = !base || *base != needed;
        if (used + (new_base ? 2 : 1) > room) break;
        if (new_base) put(needed);
        base = needed;
        put(event_record(events_.front()));
        events_.pop_front();
    }
    if (used == 0 && !events_.empty()) events_.pop_front();
    // Pods send whole pairs of records.
    if (used % 2 == 1 && used < room) put(Filler);
    if (used < room) put(End);
}

}  // namespace kavorix::sim
