#pragma once

// The texts that the views of streams 1 and 2 show of what was decoded.

#include <string>
#include <vector>

#include "model/runtime.h"

namespace kavorix {

// One event in words: "5 Jan", "13:45:02:007", "19", "Lo to Hi".
struct EventTexts {
    std::string date;
    std::string time;
    std::string channel;
    std::string event;
    bool operator==(const EventTexts&) const = default;
};

EventTexts event_texts(const EventEntry& event);

// The last events of a pod, oldest first; they count as seen from now on.
std::vector<EventTexts> DisplayStream2(RunTime& run_time, Pod pod);

struct SingleResultText {
    int channel = 0;  // channel number - 1
    std::string text;
    bool error = false;
    bool operator==(const SingleResultText&) const = default;
};

// The new answers of a pod on stream 1 in channel order, each taken once. Values of
// digital channels without decimals, all others with six.
std::vector<SingleResultText> take_single_results(RunTime& run_time, Pod pod);

}  // namespace kavorix
