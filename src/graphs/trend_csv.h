#pragma once

#include <string>
#include <vector>

#include "graphs/trend_data.h"

namespace kavorix {

// The rows of a stretch of time as comma-separated text: "Time (s)", date and clock of each row,
// then a column per name, that is per channel. Numbers in the general format with ".", gaps empty,
// lines ended by CR LF.
std::string trend_csv(const TrendData& data, const TimeRange& range,
                      const std::vector<std::string>& names);

}  // namespace kavorix
