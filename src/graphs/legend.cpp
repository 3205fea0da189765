#include "graphs/legend.h"

#include <algorithm>

#include "base/text.h"

namespace kavorix {

std::vector<GraphedChannel> graphed_channels(const ChosenChannels& chosen) {
    std::vector<GraphedChannel> channels;
    for (int pod = 0; pod < MaxZavs; ++pod)
        for (int channel = 0; channel < MaxChannels; ++channel)
            if (chosen[at(pod)][at(channel)] == 1) channels.push_back({pod, channel});
    return channels;
}

std::string legend_entry(std::string_view label, const GraphedChannel& channel) {
    std::string entry(label);
    if (entry.empty())
        entry = "ZAV" + two_digits(channel.pod + 1) + " Chan" + two_digits(channel.channel + 1);
    entry.resize(LegendLength, ' ');
    return entry;
}

std::string legend_text(const std::vector<GraphedChannel>& channels, const PodConfigs& pods) {
    std::string text;
    for (const GraphedChannel& channel : channels)
        text += legend_entry(pods[at(channel.pod)].Channel[at(channel.channel)].Label, channel);
    return text;
}

std::vector<std::string> legend_entries(std::string_view text) {
    std::vector<std::string> entries;
    for (std::size_t start = 0; start < text.size(); start += LegendLength) {
        const std::string_view entry = text.substr(start, LegendLength);
        entries.emplace_back(entry.substr(0, entry.find_last_not_of(' ') + 1));
    }
    return entries;
}

}  // namespace kavorix
