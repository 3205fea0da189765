#pragma once

#include <string>

#include "base/dates.h"
#include "model/runtime.h"

namespace kavorix {

// The readings of a pod as a line: time, pod, type, then "channel=value" for every
// measured channel, the short error name for one in error: "13:45:02.500 03 7V 1=0.52 2=ErrOvrld".
// "-" when the pod has not given a reading yet.
std::string reading_line(const WallTime& time, Pod pod, const PodStatus& status);

}  // namespace kavorix
