#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "logging/csv_columns.h"

namespace kavorix {

// Channels of a log named in a text: items with "," between them, each a pod number, "/" and a
// channel number, a range of channel numbers or "*" for all that the pod has: "3/1-5,3/7,4/*".
struct ChannelList {
    CsvSelection Selection;
    std::string Complaint;  // what is wrong with the text; empty when nothing is
};

// Every item has to name channels that are on file.
ChannelList parse_channel_list(std::string_view text, const std::vector<PodOnFile>& pods);

}  // namespace kavorix
