#include "app/readings.h"

#include "acquire/result_codes.h"
#include "base/numbers.h"
#include "base/text.h"

namespace kavorix {

namespace {

std::string channel_text(const PodStatus& status, std::size_t channel) {
    const std::int16_t code = status.ResultCode[channel];
    if (code <= HighestValidCode) return general(status.Reading[channel]);
    const auto error = static_cast<std::int16_t>(code - HighestValidCode);
    const std::string_view name = DispZAVErr(error);
    return name.empty() ? "Err" + std::to_string(error) : std::string(name);
}

}  // namespace

std::string reading_line(const WallTime& time, Pod pod, const PodStatus& status) {
    std::string line = general_date(time).substr(11) + "." +
                       std::to_string(1000 + time.millisecond).substr(1) + " " +
                       two_digits(pod.number()) + " " + to_utf8(status.type_code());
    bool any = false;
    for (int channel = 0; channel < status.usable_channels(); ++channel) {
        if (status.ResultCode[at(channel)] == HighestValidCode + NotMeasured) continue;
        line += " " + std::to_string(channel + 1) + "=" + channel_text(status, at(channel));
        any = true;
    }
    return any ? line : line + " -";
}

}  // namespace kavorix
