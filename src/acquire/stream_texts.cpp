#include "acquire/stream_texts.h"

#include "acquire/result_codes.h"
#include "base/dates.h"
#include "base/text.h"

namespace kavorix {

namespace {

std::string event_name(const EventEntry& event) {
    if (event.EvLevel == 1) return event.EvState == 1 ? "High" : "Low";
    return event.EvState == 1 ? "Lo to Hi" : "Hi to Lo";
}

std::string three_digits(int value) {
    std::string digits = std::to_string(value);
    while (digits.size() < 3) digits.insert(digits.begin(), '0');
    return digits;
}

}  // namespace

EventTexts event_texts(const EventEntry& event) {
    return {std::to_string(event.EvDay) + " " + month_name(event.EvMonth),
            two_digits(event.EvHour) + ":" + two_digits(event.EvMinute) + ":" +
                two_digits(event.EvSecond) + ":" + three_digits(event.EvMillisecond),
            std::to_string(event.EvChannel), event_name(event)};
}

std::vector<EventTexts> DisplayStream2(RunTime& run_time, Pod pod) {
    std::vector<EventTexts> texts;
    for (int i = 0; i <= run_time.Poll.LastEvent[pod]; ++i)
        texts.push_back(event_texts(run_time.Poll.Events[pod][at(i)]));
    run_time.Status[pod].StreamSeen[EventStream] = false;
    return texts;
}

std::vector<SingleResultText> take_single_results(RunTime& run_time, Pod pod) {
    PodStatus& status = run_time.Status[pod];
    std::string& kinds = run_time.Link.RequestKinds[pod];
    std::vector<SingleResultText> results;
    for (int channel = 0; channel < MaxChannels; ++channel) {
        const auto c = at(channel);
        if (!status.SingleNew[c] || status.SinglePending[c]) continue;
        status.SingleNew[c] = false;
        const bool error = status.SingleResultCode[c] > HighestValidCode;
        const std::int16_t decimals = decimals_of(status.type_code(), channel + 1);
        std::string text;
        if (error)
            text =
                ZAVError(static_cast<std::int16_t>(status.SingleResultCode[c] - HighestValidCode));
        else if (kinds.starts_with('1'))
            text = "Offset=" + FormatValue(status.SingleReading[c], decimals) +
                   " Initial Volt=" + FormatValue(status.SingleReading2[c], decimals);
        else
            text = FormatValue(status.SingleReading[c], decimals);
        if (!kinds.empty()) kinds.erase(0, 1);
        results.push_back({channel, text, error});
    }
    return results;
}

}  // namespace kavorix
