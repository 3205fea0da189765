// What a pod does on each statement.

#include <algorithm>
#include <cmath>

#include "sim/pod.h"

namespace kavorix::sim {

namespace {

constexpr std::array<float, 12> ScanPeriods = {0,    250,  500,  750,  1000, 1500,
                                               2000, 2500, 3000, 4000, 5000, 10000};
constexpr std::size_t MostAnswers = 64;

// Stores `value` when it lies within 0..`most`.
template <class Target>
Refusal store(Target& target, int value, int most) {
    if (value < 0 || value > most) return Refusal::Argument;
    target = static_cast<Target>(value);
    return Refusal::None;
}

Refusal store_numbers(const Statement& statement, std::initializer_list<float*> targets) {
    const auto* number = statement.numbers.begin();
    for (std::size_t i = 0; i < targets.size(); ++i)
        if (!std::isfinite(statement.numbers.at(i))) return Refusal::Argument;
    for (float* target : targets) *target = *number++;
    return Refusal::None;
}

// Six numbers from the 5th power down.
Coefficients coefficients(const Statement& statement, std::size_t first) {
    Coefficients result{};
    for (std::size_t i = 0; i < result.size(); ++i)
        result.at(result.size() - 1 - i) = statement.numbers.at(first + i);
    return result;
}

Refusal store_alarm(const Statement& statement, HeldAlarm& alarm) {
    if (!std::isfinite(statement.numbers[0]) || !std::isfinite(statement.numbers[1]))
        return Refusal::Argument;
    alarm = {true, statement.numbers[0], statement.numbers[1]};
    return Refusal::None;
}

bool is_analog(PodFamily family) {
    return family == PodFamily::Voltage || family == PodFamily::Bridge ||
           family == PodFamily::Universal;
}

// Whether pods of this family take a statement that concerns the pod as a whole.
bool belongs(Verb verb, PodFamily family) {
    switch (verb) {
        case Verb::Calibration:
        case Verb::Integration:
        case Verb::Units:
            return is_analog(family);
        case Verb::AmbientReference:
        case Verb::ExternalReference:
        case Verb::OpenCheck:
            return family == PodFamily::Voltage || family == PodFamily::Universal;
        case Verb::UserTable:
        case Verb::Equation:
            return family == PodFamily::Universal;
        case Verb::HardwareWatch:
        case Verb::SoftwareWatch:
            return family == PodFamily::Switch || family == PodFamily::Universal;
        case Verb::Events:
            return family == PodFamily::Switch || family == PodFamily::Digital;
        default:
            return true;
    }
}

}  // namespace

void Pod::apply(const Statement& statement) {
    // Requests are answered in any case, so that answers and requests stay in step.
    if (statement.mnemonic == "ME" || statement.mnemonic == "IN") {
        answer_request(statement);
        return;
    }
    Refusal refusal = statement.refusal;
    if (refusal == Refusal::None)
        refusal = statement.names_channel ? apply_to_channel(statement) : apply_to_pod(statement);
    if (refusal != Refusal::None) refuse(statement, refusal);
}

Refusal Pod::apply_to_pod(const Statement& statement) {
    if (!belongs(statement.verb, front_.family())) return Refusal::Mode;
    const int argument = statement.argument;
    switch (statement.verb) {
        case Verb::ScanPeriod:
            if (std::find(ScanPeriods.begin(), ScanPeriods.end(), statement.numbers[0]) ==
                ScanPeriods.end())
                return Refusal::Argument;
            held_.scan_period_ms = statement.numbers[0];
            return Refusal::None;
        case Verb::Calibration:
            return store(held_.calibration, 1 - argument, 1);
        case Verb::Integration:
            return store(held_.integration, argument, 5);
        case Verb::Units:
            return store(held_.fahrenheit, argument, 1);
        case Verb::ExternalReference: {
            const Refusal refusal = store_numbers(statement, {&held_.external_temperature});
            if (refusal == Refusal::None) held_.ambient_reference = false;
            return refusal;
        }
        case Verb::OpenCheck:
            return store(held_.open_check, argument, 1);
        case Verb::UserTable:
            if (argument < 1 || argument > 2) return Refusal::Argument;
            held_.user_tables.at(static_cast<std::size_t>(argument - 1)) = {
                true, coefficients(statement, 0), coefficients(statement, 6)};
            return Refusal::None;
        case Verb::Equation:
            if (argument < 1 || argument > 2) return Refusal::Argument;
            held_.equations.at(static_cast<std::size_t>(argument - 1)) = {
                true, coefficients(statement, 0)};
            return Refusal::None;
        case Verb::HardwareWatch:
            return store(held_.hardware_watch, argument, 1);
        case Verb::SoftwareWatch:
            return store(held_.software_watch, argument, 255);
        case Verb::Events: {
            const Refusal refusal = store(held_.event_capture, argument, 1);
            if (refusal == Refusal::None && held_.event_capture) events_.start(now_ms_);
            return refusal;
        }
        default:
            operate(statement);
            return Refusal::None;
    }
}

void Pod::operate(const Statement& statement) {
    switch (statement.verb) {
        case Verb::Trigger:
            scanner_.trigger(now_ms_);
            break;
        case Verb::Halt:
            scanner_.halt();
            held_.continuous = false;
            break;
        case Verb::Reset:
            reset();
            break;
        case Verb::Setup:
            held_.setup = true;
            set_default_modes();
            break;
        case Verb::Arm:
            held_.armed = true;
            break;
        case Verb::Continuous:
            held_.continuous = true;
            break;
        case Verb::AmbientReference:
            held_.ambient_reference = true;
            break;
        default:
            break;
    }
}

Refusal Pod::apply_to_channel(const Statement& statement) {
    if (!has_channel(statement.channel)) return Refusal::Channel;
    HeldChannel& channel = held_channel(statement.channel);
    const PodFamily family = front_.family();
    const bool digital = is_digital_channel(family, statement.channel);
    const bool timed = digital && family != PodFamily::Switch;
    const bool bridge = family == PodFamily::Bridge;
    const bool linearised = family == PodFamily::Universal && !digital;
    switch (statement.verb) {
        case Verb::ChannelMode:
            return set_mode(channel, statement);
        case Verb::GaugeFactor:
            return bridge ? store_numbers(statement, {&channel.gauge_factor}) : Refusal::Mode;
        case Verb::StrainOffset:
            return bridge ? store_numbers(statement, {&channel.offset, &channel.initial_volt})
                          : Refusal::Mode;
        case Verb::SampleRate: {
            const Refusal refusal =
                timed ? store(channel.sample_rate, statement.argument, 4) : Refusal::Mode;
            if (refusal == Refusal::None) front_.set_sampling(statement.channel);
            return refusal;
        }
        case Verb::Timeout:
            return timed ? store(channel.timeout, statement.argument, 5) : Refusal::Mode;
        case Verb::ChannelEquation:
            return linearised ? store(channel.equation, statement.argument, 2) : Refusal::Mode;
        case Verb::HighAlarm:
            return store_alarm(statement, channel.high_alarm);
        case Verb::LowAlarm:
            return store_alarm(statement, channel.low_alarm);
        case Verb::GroupOutput:
            return set_group(statement);
        case Verb::ClearCount:
            if (timed) front_.clear_count(statement.channel, seconds(now_ms_));
            return timed ? Refusal::None : Refusal::Mode;
        default:
            return Refusal::Unknown;
    }
}

void Pod::set_default_modes() {
    for (int channel = 1; channel <= channels(); ++channel) {
        const auto& wired = settings_.channels.at(static_cast<std::size_t>(channel - 1));
        HeldChannel& set = held_channel(channel);
        set = {};
        set.mode = wired.default_mode.value_or(default_mode(front_.family(), channel));
        front_.set_mode(channel, seconds(now_ms_));
    }
}

// A mode starts the channel's settings anew: what belongs to it follows in statements of its own.
Refusal Pod::set_mode(HeldChannel& channel, const Statement& statement) {
    channel = {};
    channel.mode = static_cast<std::int16_t>(statement.argument);
    channel.range = static_cast<std::int16_t>(statement.range);
    front_.set_mode(statement.channel, seconds(now_ms_));
    return accepts_mode(front_.family(), statement.channel, channel.mode) &&
                   accepts_range(front_.family(), statement.channel, channel.mode, channel.range)
               ? Refusal::None
               : Refusal::Mode;
}

Refusal Pod::set_group(const Statement& statement) {
    if (front_.family() != PodFamily::Universal || statement.channel < 19) return Refusal::Mode;
    HeldGroup group;
    if (store(group.state, statement.argument, 2) != Refusal::None) return Refusal::Argument;
    for (const GroupMember& member : statement.members) {
        if (member.channel < 1 || member.channel > 18) return Refusal::Argument;
        const auto index = static_cast<std::size_t>(member.channel - 1);
        (member.high ? group.high : group.low).at(index) = true;
    }
    held_.groups.at(static_cast<std::size_t>(statement.channel - 19)) = group;
    return Refusal::None;
}

// Tells on stream 3 what was not taken: "?", the statement's letters, the channel as a byte, the
// reason and the last digit of the count of such texts.
void Pod::refuse(const Statement& statement, Refusal refusal) {
    std::string letters = statement.mnemonic;
    letters.resize(2, ' ');
    for (char& c : letters)
        if (c < ' ' || c > '~') c = '.';
    refused_ = (refused_ + 1) % 10;
    push_text("?" + letters + ": " + static_cast<char>(statement.channel) +
              static_cast<char>(refusal) + " " + static_cast<char>('0' + refused_) + "   ");
}

// The answer to ME or IN. Measurements wait for each other.
void Pod::answer_request(const Statement& statement) {
    if (answers_.size() >= MostAnswers) return;
    const std::int64_t start_ms = std::max(now_ms_, busy_until_ms_);
    Answer answer;
    Reading reading = failed(Fail::ChannelRange);
    if (statement.refusal == Refusal::None && has_channel(statement.channel))
        reading = statement.verb == Verb::Measure
                      ? front_.measure(statement.channel, seconds(start_ms))
                      : initialise_strain(statement.channel, seconds(start_ms), answer);
    busy_until_ms_ = start_ms + static_cast<std::int64_t>(std::ceil(reading.duration_s * 1000.0));
    answer.ready_ms = busy_until_ms_ + settings_.answer_ms;
    answer.values[0] = reading.value;
    answer.code = reading.code;
    answers_.push_back(answer);
}

// Balances a strain gauge: its output now is its zero from here on.
Reading Pod::initialise_strain(int channel, double time_s, Answer& answer) {
    HeldChannel& set = held_channel(channel);
    const bool strain = set.mode >= 60 && set.mode <= 67;
    if (!strain || !accepts_mode(front_.family(), channel, set.mode))
        return failed(Fail::UnknownMode);
    const auto balance = front_.balance(channel, time_s);
    if (balance.offset.code > 128) return balance.offset;
    set.offset = balance.offset.value;
    set.initial_volt = balance.initial_volt;
    answer.values[1] = balance.initial_volt;
    return balance.offset;
}

}  // namespace kavorix::sim
