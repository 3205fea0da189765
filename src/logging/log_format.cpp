#include "logging/log_format.h"

#include <algorithm>
#include <limits>

#include "base/text.h"

namespace kavorix {

namespace {

void append_padded(std::string& bytes, std::string_view text, std::size_t width) {
    text = text.substr(0, width);
    bytes += text;
    bytes.append(width - text.size(), ' ');
}

}  // namespace

std::string encode(const RunHeader& header) {
    constexpr std::size_t LongestComment = std::numeric_limits<std::int16_t>::max();
    const std::string_view comment = trim(header.Comment).substr(0, LongestComment);
    std::string bytes;
    append_field(bytes, HeaderMarker);
    append_field(bytes, header.Kind);
    append_field(bytes, static_cast<std::int16_t>(comment.size()));
    bytes += comment;
    append_field(bytes, ConfigurationMarker);
    append_field(bytes, header.Date);
    append_field(bytes, static_cast<std::int16_t>(header.Pods.size()));
    for (const LoggedPod& pod : header.Pods) {
        append_field(bytes, pod.Number);
        append_padded(bytes, pod.TypeCode, 2);
        append_field(bytes, static_cast<std::int16_t>(pod.Channels.size()));
        for (const LoggedChannel& channel : pod.Channels) {
            append_padded(bytes, channel.Label, MaxLabel);
            append_padded(bytes, channel.Unit, MaxUnit);
        }
    }
    return bytes;
}

}  // namespace kavorix
