#pragma once

// The data records of the logs, as singles of a block.

#include <cstdint>
#include <vector>

#include "logging/log_format.h"
#include "model/runtime.h"

namespace kavorix {

// A reading as it is logged: the single nearest to its value rounded to 6 decimals, halves away
// from zero. Infinities and NaN stay what they are.
float logged_value(float reading);

// Adds a pod's part of a scan record behind entry `index`: its number and a single for each of
// `channels`, the value of its last reading, or ErrorReading where there is none or the result code
// is above 128.
void append_scan(std::vector<float>& block, std::int16_t& index, int pod, const PodStatus& status,
                 int channels);

// The same for an event record: pod number, index of the last event, three singles per event.
void append_events(std::vector<float>& block, std::int16_t& index, int pod, const PollState& poll);

// Entries that this part takes.
int event_entries(int pod, const PollState& poll);

}  // namespace kavorix
