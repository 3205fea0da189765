#pragma once

#include <cstdint>

#include "model/runtime.h"
#include "platform/event_loop.h"

namespace kavorix {

// The time of day of a record at tick count `time`, as the decimal number hhmmssmmm. The clock is
// carried on by the ticks since the last record; it is set from the wall clock at the first record,
// at time 0, and where the ticks would lead out of the day, which only a pause of more than a day
// does.
std::int32_t record_time(LogClock& clock, std::int32_t time, const EventLoop& loop);

}  // namespace kavorix
