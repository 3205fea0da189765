#pragma once

// A configuration file that is being read: inside the reader only.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "base/numbers.h"
#include "base/text.h"
#include "config/config_reader.h"
#include "config/rows.h"

namespace kavorix {

struct Reading {
    const Connected& connected;
    InterfaceSettings& settings;
    PodConfigs& pods;
    const MessageSink& sink;

    int pod = 0;              // index set by the last "IM"
    std::string type_text{};  // type code of the last "IM" as it was written
    bool units_seen = false;
    int slot = 0;             // of the current "CH" statement
    std::string_view line{};  // without blanks at both ends
    std::size_t line_number = 0;
    std::size_t errors = 0;
    bool stopped = false;

    PodConfig& config() { return pods[at(pod)]; }
    ChannelConfig& channel() { return config().Channel[at(slot)]; }
    int channel_number() const { return slot + 1; }
    std::string_view ident() const { return connected.Ident[at(pod)]; }

    // The rest of the line from 1-based `position`; body() leaves out its last character, the ";".
    std::string_view from(std::size_t position) const { return middle(line, position); }
    std::string_view body(std::size_t position) const {
        return middle(line.substr(0, line.empty() ? 0 : line.size() - 1), position);
    }

    // Gives a message put together from texts and whole numbers.
    template <class... Parts>
    void log(const Parts&... parts) {
        if (stopped) return;
        LoadMessage message{line_number, {}};
        rows::put(message.text, parts...);
        ++errors;
        stopped = !sink(message);
    }
};

// Whole number, halves to the even neighbour; nothing for what is no number.
inline std::optional<std::int32_t> whole_number(std::string_view text) {
    const auto value = to_number(text);
    if (!value) return std::nullopt;
    return round_half_even(*value);
}

// The value at the start of a text, 0 when there is none; beyond the range of a single its end.
inline float finite_single(std::string_view text) {
    constexpr float End = std::numeric_limits<float>::max();
    return std::clamp(leading_single(text), -End, End);
}

// The part of `text` before the first ",", without one before the first ";"; that part and the
// separator are taken off `text`. "Error" when it holds neither, `text` staying as it is.
std::string_view NextField(std::string_view& text);

// Handles the "CH" statement on the line.
void read_channel_statement(Reading& r);

}  // namespace kavorix
