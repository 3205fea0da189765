#pragma once

// The channels on the graph and their names.

#include <string>
#include <string_view>
#include <vector>

#include "model/runtime.h"

namespace kavorix {

inline constexpr std::size_t LegendLength = 42;
inline constexpr int MaxGraphChannels = 16;

// Pod index 0..49 and channel index 0..31.
struct GraphedChannel {
    int pod = 0;
    int channel = 0;
    bool operator==(const GraphedChannel&) const = default;
};

// The flagged channels in legend order: by pod, within a pod by channel.
std::vector<GraphedChannel> graphed_channels(const ChosenChannels& chosen);

// The label, or "ZAV07 Chan12" for a channel without one; exactly LegendLength characters, padded
// with blanks or cut.
std::string legend_entry(std::string_view label, const GraphedChannel& channel);

// The entries of the channels, joined without separators.
std::string legend_text(const std::vector<GraphedChannel>& channels, const PodConfigs& pods);

// The entries of a legend text without their padding.
std::vector<std::string> legend_entries(std::string_view text);

}  // namespace kavorix
