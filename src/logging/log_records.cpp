#include "logging/log_records.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/numbers.h"
#include "base/text.h"

namespace kavorix {

namespace {

void append(std::vector<float>& block, std::int16_t& index, float value) {
    block[at(++index)] = value;
}

// Index of the last event that the table holds.
int last_event(int pod, const PollState& poll) {
    return std::clamp<int>(poll.LastEvent[at(pod)], -1, EventTableSize - 1);
}

}  // namespace

float logged_value(float reading) {
    // From here on neighbouring singles are more than a millionth apart: the nearest one to the
    // rounded value is the reading itself.
    constexpr float Coarse = 16;
    constexpr double Millionths = 1E6;
    if (!(std::fabs(reading) < Coarse)) return reading;
    // Both the product (24 and 14 bits) and the whole number (24 bits) are exact, so the quotient
    // is the only rounding. Adding 0 drops the sign of a value that rounds to zero.
    const auto whole =
        static_cast<float>(std::round(static_cast<double>(reading) * Millionths) + 0.0);
    return whole / static_cast<float>(Millionths);
}

int event_entries(int pod, const PollState& poll) {
    return 2 + EventEntries * (last_event(pod, poll) + 1);
}

void append_scan(std::vector<float>& block, std::int16_t& index, int pod, const PodStatus& status,
                 int channels) {
    append(block, index, static_cast<float>(pod + 1));
    const int answered = status.usable_channels();
    for (int channel = 0; channel < channels; ++channel)
        append(block, index,
               channel >= answered || status.ResultCode[at(channel)] > HighestValidCode
                   ? ErrorReading
                   : logged_value(status.Reading[at(channel)]));
}

void append_events(std::vector<float>& block, std::int16_t& index, int pod, const PollState& poll) {
    const int last = last_event(pod, poll);
    append(block, index, static_cast<float>(pod + 1));
    append(block, index, static_cast<float>(last));
    for (int i = 0; i <= last; ++i) {
        const EventEntry& event = poll.Events[at(pod)][at(i)];
        const std::string date =
            two_digits(event.EvDay) + two_digits(event.EvMonth) + two_digits(event.EvChannel);
        const std::string time =
            two_digits(event.EvHour) + two_digits(event.EvMinute) + two_digits(event.EvSecond);
        const std::string rest =
            padded(event.EvMillisecond, 3) + padded(event.EvLevel, 1) + padded(event.EvState, 1);
        append(block, index, leading_single(date));
        append(block, index, leading_single(time));
        append(block, index, leading_single(rest));
    }
}

}  // namespace kavorix
