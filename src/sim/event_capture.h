#pragma once

// The digital events that a pod captures and has not yet handed over, and their form on stream 2:
// records of four bytes, the number fields as two BCD digits a byte.
//     time base  month, day, hour, minute: for the events that follow
//     event      flags and channel, seconds, first two digits of the milliseconds, third digit in
//                the upper half
//     filler     255
//     end        0

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "base/dates.h"
#include "sim/front_end.h"
#include "sim/held_settings.h"
#include "sim/sim_clock.h"

namespace kavorix::sim {

struct CapturedEvent {
    std::int64_t at_ms = 0;
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

    std::optional<std::int64_t> oldest_ms() const;

    // Takes out as many events as `size` bytes hold in whole records, oldest first and each time
    // from a time base on; an end record follows where there is room. Without room for a time base
    // and an event only the oldest event is lost.
    std::string take(std::size_t size);

  private:
    std::deque<CapturedEvent> events_;
};

// Watches the channels in mode 76 (Event Capture) while capture is on.
class EventCapture {
  public:
    // Keeps references to all.
    EventCapture(const FrontEnd& front, const HeldSettings& held, SimClock& clock)
        : front_(front), held_(held), clock_(clock) {}

    // Capture was switched on: the present levels come first.
    void start(std::int64_t now_ms);
    void clear() { queue_.clear(); }

    // Captures the edges up to `now_ms`; only those of the moments that capture was on.
    void advance(std::int64_t now_ms);

    // The moment of the oldest event.
    std::optional<std::int64_t> oldest_ms() const { return queue_.oldest_ms(); }

    // The bytes of one read of at most `size`; nothing without events.
    std::optional<std::string> take(std::size_t size);

  private:
    struct Edge {
        double time_s;
        int channel;
        bool rising;
    };
    void find_edges(int channel, double from_s, double to_s, std::vector<Edge>& found) const;
    void push(std::int64_t time_ms, int channel, bool rising, bool level_report);

    const FrontEnd& front_;
    const HeldSettings& held_;
    SimClock& clock_;
    std::int64_t captured_to_ms_ = 0;
    EventQueue queue_;
};

}  // namespace kavorix::sim
