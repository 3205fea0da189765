#pragma once

// Which channels of a log become columns of the text file.

#include <array>
#include <cstdint>
#include <vector>

#include "logging/log_contents.h"
#include "model/runtime.h"

namespace kavorix {

// Reaching this many channels is refused: a spreadsheet's 256 columns less the three of the time.
inline constexpr int ColumnLimit = 253;

// What the operator chose; channels by channel number - 1.
struct CsvSelection {
    PodSet PodSelected;
    ChosenChannels ChannelSelected{};
    bool operator==(const CsvSelection&) const = default;
};

struct CsvColumn {
    std::int16_t Pod = 0;      // number
    std::int16_t Channel = 0;  // number
    bool operator==(const CsvColumn&) const = default;
};

// The columns in order: pods as they stand on file, the channels of each ascending.
std::vector<CsvColumn> csv_columns(const std::vector<PodOnFile>& pods,
                                   const CsvSelection& selection);

// The whole of a log: every pod with every channel that it has.
CsvSelection select_all(const std::vector<PodOnFile>& pods);

}  // namespace kavorix
