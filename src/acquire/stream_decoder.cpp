#include "acquire/stream_decoder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "base/numbers.h"
#include "base/program_name.h"
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

Decoded StreamDecoder::read(Pod pod, std::int16_t stream, const Moment& now) {
    switch (stream) {
        case ReadingStream:
            return read_stream0(pod, now);
        case RequestStream:
            return read_stream1(pod);
        case EventStream:
            return read_stream2(pod);
        default:
            return read_stream3(pod);
    }
}

Decoded StreamDecoder::read_stream0(Pod pod, const Moment& now) {
    PodStatus& status = status_[pod];
    std::int16_t count = status.Channels;
    // Copies: a read that fails must not leave half a record behind.
    ChannelValues values = status.Reading;
    ChannelCodes codes = status.ResultCode;
    const auto result =
        with_.driver.Zav_Numeric(pod.number(), ReadingStream, count, values, codes, card_handle());
    if (result != 0) return result == 1 ? Decoded::Failed : Decoded::Nothing;
    status.Reading = values;
    status.ResultCode = codes;
    status.ReadingAt = now;
    status.ChannelCount =
        std::clamp(count, std::int16_t{0}, static_cast<std::int16_t>(MaxChannels));
    for (std::size_t channel = 0; channel < at(status.ChannelCount); ++channel) {
        if (status.ResultCode[channel] > HighestValidCode)
            with_.errors.LogZAVErr(
                pod, static_cast<std::int16_t>(channel + 1),
                static_cast<std::int16_t>(status.ResultCode[channel] - HighestValidCode));
        else
            take_reading(pod, channel);
    }
    return Decoded::Done;
}

void StreamDecoder::take_reading(Pod pod, std::size_t channel) {
    PodStatus& status = status_[pod];
    const ChannelConfig& config = with_.configuration.ZavConfig[pod].Channel[channel];
    const float value = cleaned(status.Reading[channel]) * config.MValue + config.CValue;
    status.Reading[channel] = value;
    if (value > status.PeakMax[channel]) {
        status.PeakMax[channel] = value;
        status.MaxChanged[channel] = true;
    }
    if (value < status.PeakMin[channel]) {
        status.PeakMin[channel] = value;
        status.MinChanged[channel] = true;
    }
    feed_trend(pod, channel, value);
}

void StreamDecoder::feed_trend(Pod pod, std::size_t channel, float value) {
    GraphState& graph = with_.run_time.Graph;
    if (!graph.TrendRunning || !graph.TrendSelected[pod][channel]) return;
    const float deviation = std::fabs(value - graph.TrendRef[pod][channel]);
    if (deviation <= graph.TrendDev[pod][channel]) return;
    graph.TrendDev[pod][channel] = deviation;
    graph.TrendPeak[pod][channel] = value;
}

Decoded StreamDecoder::read_stream1(Pod pod) {
    float values[2] = {};
    std::int16_t code = 0;
    std::int16_t count = 2;
    const auto result = with_.driver.Zav_Numeric(pod.number(), RequestStream, count, values,
                                                 {&code, 1}, card_handle());
    take_answer(pod, values, code);
    return result == 1 ? Decoded::Failed : Decoded::Done;
}

void StreamDecoder::take_answer(Pod pod, const float (&values)[2], std::int16_t code) {
    std::string& requests = with_.run_time.Link.StreamRequests[pod];
    if (requests.size() <= 3) return;
    const auto end = requests.find(';');
    const std::string token = requests.substr(0, end);
    requests.erase(0, end == std::string::npos ? end : end + 1);

    std::string& kinds = with_.run_time.Link.RequestKinds[pod];
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
        with_.dialogs.message_box("Zav " + std::to_string(pod.number()) +
                                      ", Stream 1: Detected Illegal Channel Number " +
                                      std::to_string(round_half_even(std::trunc(channel))),
                                  box::Exclamation, ProgramName);
        return;
    }
    take_single_result(pod, static_cast<std::size_t>(channel) - 1, values, code);
}

void StreamDecoder::take_single_result(Pod pod, std::size_t channel, const float (&values)[2],
                                       std::int16_t code) {
    PodStatus& status = status_[pod];
    status.StreamMarked[RequestStream] = true;
    status.StreamSeen[RequestStream] = true;
    if (with_.run_time.Link.RequestKinds[pod].starts_with('0')) {
        const ChannelConfig& config = with_.configuration.ZavConfig[pod].Channel[channel];
        status.SingleReading[channel] = cleaned(values[0]) * config.MValue + config.CValue;
    } else {
        status.SingleReading[channel] = cleaned(values[0]);
        status.SingleReading2[channel] = cleaned(values[1]);
    }
    status.SingleResultCode[channel] = code;
    status.SingleNew[channel] = true;
    status.SinglePending[channel] = false;
    with_.run_time.Poll.Stream1Arrived = true;
}

Decoded StreamDecoder::read_stream2(Pod pod) {
    const std::span<char> buffer = std::span(status_[pod].StreamText).first(EventBytes);
    // What a reply leaves of the previous one must not be taken for events.
    std::fill(buffer.begin(), buffer.end(), '\0');
    if (with_.driver.Zav_String(pod.number(), EventStream, buffer, card_handle()) == 1)
        return Decoded::Failed;
    with_.run_time.Poll.EventPending = true;
    with_.run_time.Poll.LastEvent[pod] = -1;
    for (std::size_t at_byte = 0; at_byte < EventBytes; at_byte += 4) {
        std::array<unsigned char, 4> record{};
        std::transform(buffer.begin() + static_cast<std::ptrdiff_t>(at_byte),
                       buffer.begin() + static_cast<std::ptrdiff_t>(at_byte) + 4, record.begin(),
                       [](char c) { return static_cast<unsigned char>(c); });
        if (record[0] == 0) break;
        if (record[0] != Filler) take_event_record(pod, record.data());
    }
    return Decoded::Done;
}

void StreamDecoder::take_event_record(Pod pod, const unsigned char* record) {
    PollState& poll = with_.run_time.Poll;
    EventTimeBase& base = poll.EventTimeBase[pod];
    if (record[0] <= LastTimeBase) {
        base = {bcd(record[0]), bcd(record[1]), bcd(record[2]), bcd(record[3])};
        return;
    }
    const bool switch_pod = status_[pod].type_code() == "8S";
    EventEntry& event = poll.Events[pod][at(++poll.LastEvent[pod])];
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

Decoded StreamDecoder::read_stream3(Pod pod) {
    auto& buffer = status_[pod].Stream3Text;
    const auto result = with_.driver.Zav_String(pod.number(), TextStream,
                                                std::span(buffer).first(TextBytes), card_handle());
    if (!with_.run_time.Poll.Stream3AutoClear) {
        const std::string text = shortened_stream3_text({buffer.data(), buffer.size()});
        buffer.fill(' ');
        std::copy(text.begin(), text.end(), buffer.begin());
    }
    return result == 1 ? Decoded::Failed : Decoded::Done;
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
