#pragma once

// The events that a pod has captured and not yet handed over, and their form on stream 2: records
// of four bytes, the number fields as two BCD digits a byte.
//     time base  month, day, hour, minute: for the events that follow
//     event      flags and channel, seconds, first two digits of the milliseconds, third digit in
//                the upper half
//     filler     255
//     end        0

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>

#include "base/dates.h"

namespace kavorix::sim {

struct CapturedEvent {
    WallTime time;
    int channel = 0;      // as the record carries it, 0..31
    bool rising = false;  // or the level, for a level report
    bool level_report = false;
};

class EventQueue {
  public:
    // Events beyond this number are lost.
    static constexpr std::size_t Capacity = 512;

    // False when the queue is full.
    bool push(const CapturedEvent& event);

    bool empty() const { return events_.empty(); }
    void clear() { events_.clear(); }

    // Writes as many events as the buffer takes in whole records, oldest first and each time from a
    // time base on; an end record follows where there is room. A buffer without room for a time
    // base and an event takes nothing but the oldest event out of the queue.
    void write(std::span<char> buffer);

  private:
    std::deque<CapturedEvent> events_;
};

}  // namespace kavorix::sim
