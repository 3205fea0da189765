#include "acquire/stream_decoder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "base/numbers.h"
#include "base/text.h"

namespace kavorix {

namespace {

constexpr std::size_t EventBytes = 112;  // 28 records of 4 bytes
constexpr std::size_t TextBytes = 12;
constexpr unsigned char Filler = 255;
constexpr unsigned char LastTimeBase =
    31;  // first byte of a time base is a month in BCD, an event's is above

float cleaned(float value) {
    return std::fabs(value) < SmallestReading ? 0.0F : value;
}

std::int16_t bcd(unsigned char byte) {
    return static_cast<std::int16_t>((byte >> 4) * 10 + (byte & 0x0F));
}

}  // namespace

void StreamDecoder::read_stream0(int pod) {
    PodStatus& status = with_.run_time.Status[at(pod)];
    std::int16_t count = status.Channels;
    // Copies: a read that fails must not leave half a record behind.
    ChannelValues values = status.Reading;
    ChannelFlags codes = status.ResultCode;
    const auto result =
        with_.driver.Zav_Numeric(static_cast<std::int16_t>(pod + 1), ReadingStream, count, values,
                                 codes, with_.configuration.Interface.CardHandle);
    if (result == 1) link_.RxTxErr(pod, 1, 1);
    if (result != 0) return;
    status.Reading = values;
    status.ResultCode = codes;
    status.ChannelCount =
        std::clamp(count, std::int16_t{0}, static_cast<std::int16_t>(MaxChannels));
    for (std::size_t channel = 0; channel < at(status.ChannelCount); ++channel) {
        if (status.ResultCode[channel] > HighestValidCode)
            errors_.LogZAVErr(
                static_cast<std::int16_t>(pod + 1), static_cast<std::int16_t>(channel + 1),
                static_cast<std::int16_t>(status.ResultCode[channel] - HighestValidCode));
        else
            take_reading(pod, channel);
    }
}

void StreamDecoder::take_reading(int pod, std::size_t channel) {
    PodStatus& status = with_.run_time.Status[at(pod)];
    const ChannelConfig& config = with_.configuration.ZavConfig[at(pod)].Channel[channel];
    const float value = cleaned(status.Reading[channel]) * config.MValue + config.CValue;
    status.Reading[channel] = value;
    if (value > status.PeakMax[channel]) {
        status.PeakMax[channel] = value;
        status.MaxChanged[channel] = 1;
    }
    if (value < status.PeakMin[channel]) {
        status.PeakMin[channel] = value;
        status.MinChanged[channel] = 1;
    }
    GraphState& graph = with_.run_time.Graph;
    if (graph.TrendRunning == 1 && graph.TrendSelected[at(pod)][channel] == 1) {
        const float deviation = std::fabs(value - graph.TrendRef[at(pod)][channel]);
        if (deviation > graph.TrendDev[at(pod)][channel]) {
            graph.TrendDev[at(pod)][channel] = deviation;
            graph.TrendPeak[at(pod)][channel] = value;
        }
    }
}

void StreamDecoder::read_stream1(int pod) {
    float values[2] = {};
    std::int16_t code = 0;
    std::int16_t count = 2;
    const auto result =
        with_.driver.Zav_Numeric(static_cast<std::int16_t>(pod + 1), RequestStream, count, values,
                                 {&code, 1}, with_.configuration.Interface.CardHandle);
    if (result == 1) link_.RxTxErr(pod, 1, 1);

    std::string& requests = with_.run_time.Link.StreamRequests[at(pod)];
    if (requests.size() <= 3) return;
    const auto end = requests.find(';');
    const std::string token = requests.substr(0, end);
    requests.erase(0, end == std::string::npos ? end : end + 1);

    std::string& kinds = with_.run_time.Poll.RequestKinds[at(pod)];
    if (token.starts_with("ME")) {
        kinds += '0';
    } else if (token.starts_with("IN")) {
        kinds += '1';
    } else {
        with_.dialogs.message_box(
            "Unknown data in stream 1 of " + token.substr(0, 2) + "\nKAVORIX will stop", box::Stop,
            ProgramName);
        throw ProgramEnded{1};
    }
    const double channel = leading_value(middle(token, 3));
    if (!(channel >= 1 && channel < MaxChannels + 1)) {
        with_.dialogs.message_box("Zav " + std::to_string(pod + 1) +
                                      ", Stream 1: Detected Illegal Channel Number " +
                                      std::to_string(round_half_even(std::trunc(channel))),
                                  box::Exclamation, ProgramName);
        return;
    }
    take_single_result(pod, static_cast<std::size_t>(channel) - 1, values, code);
}

void StreamDecoder::take_single_result(int pod, std::size_t channel, const float (&values)[2],
                                       std::int16_t code) {
    PodStatus& status = with_.run_time.Status[at(pod)];
    with_.screen.lblStrm1[at(pod)].caption = "1";
    status.StreamSeen[RequestStream] = 1;
    if (with_.run_time.Poll.RequestKinds[at(pod)].starts_with('0')) {
        const ChannelConfig& config = with_.configuration.ZavConfig[at(pod)].Channel[channel];
        status.SingleReading[channel] = cleaned(values[0]) * config.MValue + config.CValue;
    } else {
        status.SingleReading[channel] = cleaned(values[0]);
        status.SingleReading2[channel] = cleaned(values[1]);
    }
    status.SingleResultCode[channel] = code;
    status.SingleNew[channel] = 1;
    status.SinglePending[channel] = 0;
    with_.run_time.Poll.Stream1Arrived = 1;
}

void StreamDecoder::read_stream2(int pod) {
    PodStatus& status = with_.run_time.Status[at(pod)];
    const std::span<char> buffer = std::span(status.StreamText).first(EventBytes);
    // What a reply leaves of the previous one must not be taken for events.
    std::fill(buffer.begin(), buffer.end(), '\0');
    const auto result = with_.driver.Zav_String(static_cast<std::int16_t>(pod + 1), EventStream,
                                                buffer, with_.configuration.Interface.CardHandle);
    if (result == 1) {
        link_.RxTxErr(pod, 1, 1);
        return;
    }
    with_.run_time.Poll.EventPending = 1;
    with_.run_time.Poll.LastEvent[at(pod)] = -1;
    for (std::size_t at_byte = 0; at_byte < EventBytes; at_byte += 4) {
        std::array<unsigned char, 4> record{};
        std::transform(buffer.begin() + static_cast<std::ptrdiff_t>(at_byte),
                       buffer.begin() + static_cast<std::ptrdiff_t>(at_byte) + 4, record.begin(),
                       [](char c) { return static_cast<unsigned char>(c); });
        if (record[0] == 0) break;
        if (record[0] != Filler) take_event_record(pod, record.data());
    }
}

void StreamDecoder::take_event_record(int pod, const unsigned char* record) {
    PollState& poll = with_.run_time.Poll;
    EventTimeBase& base = poll.EventTimeBase[at(pod)];
    if (record[0] <= LastTimeBase) {
        base = {bcd(record[0]), bcd(record[1]), bcd(record[2]), bcd(record[3])};
        return;
    }
    const bool switch_pod = with_.run_time.Status[at(pod)].type_code() == "8S";
    EventEntry& event = poll.Events[at(pod)][at(++poll.LastEvent[at(pod)])];
    event.EvMonth = base.Month;
    event.EvDay = base.Day;
    event.EvHour = base.Hour;
    event.EvMinute = base.Minute;
    event.EvChannel = static_cast<std::int16_t>((record[0] & 31) + (switch_pod ? 1 : 0));
    event.EvState = (record[0] & 32) != 0 ? 1 : 0;
    event.EvLevel = record[0] < 128 ? 1 : 0;
    event.EvSecond = bcd(record[1]);
    event.EvMillisecond = static_cast<std::int16_t>(bcd(record[2]) * 10 + (record[3] >> 4));
}

void StreamDecoder::read_stream3(int pod) {
    auto& buffer = with_.run_time.Status[at(pod)].Stream3Text;
    const auto result = with_.driver.Zav_String(static_cast<std::int16_t>(pod + 1), TextStream,
                                                std::span(buffer).first(TextBytes),
                                                with_.configuration.Interface.CardHandle);
    if (result == 1) link_.RxTxErr(pod, 1, 1);
    if (with_.run_time.Poll.Stream3AutoClear == 1) return;
    const std::string text = shortened_stream3_text({buffer.data(), buffer.size()});
    buffer.fill(' ');
    std::copy(text.begin(), text.end(), buffer.begin());
}

std::string shortened_stream3_text(std::string_view text) {
    if (text.starts_with('C')) return std::string(text.substr(0, 3));
    if (text.starts_with('H')) return std::string(text.substr(0, 1));
    const auto character = [&](std::size_t position) {
        return position <= text.size() ? text[position - 1] : '\0';
    };
    std::string result(text.substr(0, 4));
    result += ' ';
    result += std::to_string(static_cast<unsigned char>(character(6)));
    result += character(7) == '\0' ? ' ' : character(7);
    result += ' ';
    result += character(9);
    return result;
}

}  // namespace kavorix
