#include "logging/channel_list.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "base/text.h"

namespace kavorix {

namespace {

std::optional<int> number(std::string_view text) {
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size())
        return std::nullopt;
    return value;
}

// Takes the part up to the separator off the front of `text`.
std::string_view take(std::string_view& text, char separator) {
    const std::string_view part = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(text.size(), part.size() + 1));
    return part;
}

struct Range {
    int first = 0;
    int last = 0;
};

std::optional<Range> range(std::string_view text, int channels) {
    if (text == "*") return Range{1, channels};
    const auto first = number(take(text, '-'));
    const auto last = text.empty() ? first : number(text);
    if (!first || !last || *first > *last) return std::nullopt;
    return Range{*first, *last};
}

// Adds the channels of one item; what is wrong with it otherwise.
std::string add_item(std::string_view item, const std::vector<PodOnFile>& pods,
                     CsvSelection& selection) {
    const std::string quoted = "\"" + std::string(item) + "\"";
    const auto pod_number = number(take(item, '/'));
    if (!pod_number) return quoted + " does not begin with a pod number and \"/\"";
    const auto pod = std::find_if(pods.begin(), pods.end(),
                                  [&](const PodOnFile& p) { return p.Number == *pod_number; });
    if (pod == pods.end()) return quoted + " names a pod that is not in the log";
    const auto channels = range(item, pod->Channels);
    if (!channels) return quoted + " names no channel, range of channels or \"*\"";
    if (channels->first < 1 || channels->last > pod->Channels)
        return quoted + " names a channel that the pod does not have";
    selection.PodSelected.add(Pod::numbered(pod->Number));
    for (int channel = channels->first; channel <= channels->last; ++channel)
        selection.ChannelSelected[Pod::numbered(pod->Number)][at(channel - 1)] = true;
    return {};
}

}  // namespace

ChannelList parse_channel_list(std::string_view text, const std::vector<PodOnFile>& pods) {
    ChannelList list;
    if (trim(text).empty()) list.Complaint = "No channel is named";
    while (!text.empty() && list.Complaint.empty())
        list.Complaint = add_item(trim(take(text, ',')), pods, list.Selection);
    return list;
}

}  // namespace kavorix
