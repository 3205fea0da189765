#include "sim/front_end.h"

namespace kavorix::sim {

namespace {

constexpr int SwitchOutput = 80;
constexpr std::int16_t OutputOn = 1;
constexpr std::int16_t TripOutput = 2;
constexpr double OutputTime = 0.001;
constexpr std::int16_t GroupOff = 2;
constexpr std::int16_t GroupAsserts = 1;

bool needs_two_channels(int mode) {
    return mode == 20 || mode == 21 || (mode >= 40 && mode <= 43);
}

}  // namespace

FrontEnd::FrontEnd(const PodSettings& pod, const HeldSettings& held, const RandomSource& random)
    : pod_(pod),
      held_(held),
      family_(pod_family(std::string_view(pod.ident).substr(0, 2))),
      channels_(channels_of(family_)),
      analog_(pod, random),
      digital_(pod, random) {}

void FrontEnd::set_mode(int channel, double time_s) {
    digital_.configure(channel, set_of(channel));
    digital_.clear_count(channel, time_s);
    tripped_.at(static_cast<std::size_t>(channel - 1)) = {};
}

void FrontEnd::set_sampling(int channel) {
    digital_.configure(channel, set_of(channel));
}

// Why a channel cannot be measured as it is set.
Fail FrontEnd::objection(int channel) const {
    const HeldChannel& set = set_of(channel);
    if (set.mode == 0) return Fail::NotMeasured;
    if (pod_.channels.at(static_cast<std::size_t>(channel - 1)).signal.kind == SignalKind::Absent)
        return Fail::ChannelRange;
    if (!accepts_mode(family_, channel, set.mode) ||
        !accepts_range(family_, channel, set.mode, set.range))
        return Fail::UnknownMode;
    // The channel before it can have taken its terminals.
    const bool paired = family_ == PodFamily::Universal && channel % 2 == 0 && channel <= 18;
    if (paired && needs_two_channels(set_of(channel - 1).mode)) return Fail::UnknownMode;
    return Fail::None;
}

Reading FrontEnd::measure(int channel, double time_s) {
    if (const Fail fail = objection(channel); fail != Fail::None) return failed(fail);
    const HeldChannel& set = set_of(channel);
    if (set.mode == SwitchOutput) return {output(channel) ? 1.0F : 0.0F, 0, OutputTime};
    if (set.mode >= 70) return digital_.measure(set, channel, time_s);
    return analog_.measure(held_, channel, time_s);
}

double FrontEnd::measure_all(double time_s, Readings& readings) {
    const double start_s = time_s;
    for (int channel = 1; channel <= channels_; ++channel) {
        Reading& reading = readings.at(static_cast<std::size_t>(channel - 1));
        reading = measure(channel, time_s);
        time_s += reading.duration_s;
        follow_alarms(channel, reading);
    }
    return time_s - start_s;
}

std::optional<double> FrontEnd::scan_duration() const {
    double total = 0.0;
    for (int channel = 1; channel <= channels_; ++channel) {
        if (objection(channel) != Fail::None) continue;
        const HeldChannel& set = set_of(channel);
        if (set.mode < 70) {
            total += analog_.duration(held_);
        } else if (const auto duration = DigitalInputs::duration(set)) {
            total += *duration;
        } else {
            return std::nullopt;
        }
    }
    return total;
}

bool FrontEnd::drives_outputs() const {
    return family_ == PodFamily::Universal &&
           (held_.groups[0].state != GroupOff || held_.groups[1].state != GroupOff);
}

// An alarm trips beyond its limit and clears on the other side of the hysteresis.
void FrontEnd::follow_alarms(int channel, const Reading& reading) {
    if (reading.code > 128) return;
    const HeldChannel& set = set_of(channel);
    Tripped& tripped = tripped_.at(static_cast<std::size_t>(channel - 1));
    const float high = set.high_alarm.limit;
    const float low = set.low_alarm.limit;
    tripped.high = set.high_alarm.enabled &&
                   reading.value > (tripped.high ? high - set.high_alarm.hysteresis : high);
    tripped.low = set.low_alarm.enabled &&
                  reading.value < (tripped.low ? low + set.low_alarm.hysteresis : low);
}

// The state of a switch output. A trip output follows its alarm group: one tripped member asserts
// it, or takes it away where it stands asserted.
bool FrontEnd::output(int channel) const {
    const HeldChannel& set = set_of(channel);
    if (set.range != TripOutput) return set.range == OutputOn;
    const HeldGroup& group = held_.groups.at(static_cast<std::size_t>(channel - 19));
    if (group.state == GroupOff) return false;
    bool alarm = false;
    for (std::size_t i = 0; i < group.low.size(); ++i)
        alarm = alarm || (group.low.at(i) && tripped_.at(i).low) ||
                (group.high.at(i) && tripped_.at(i).high);
    return (group.state == GroupAsserts) == alarm;
}

}  // namespace kavorix::sim
