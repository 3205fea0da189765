#include "app/verify.h"

#include <array>
#include <charconv>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"
#include "model/catalogue.h"
#include "model/runtime.h"

namespace kavorix {

namespace {

constexpr std::int16_t DefaultTimeoutSent = 1;  // the default time-out travels as this code

// A number as it is after its way through a command.
float sent(float value) {
    return leading_single(general(value));
}

std::string on_off(bool on) {
    return on ? "on" : "off";
}

std::string coded(std::int16_t code, std::string_view text) {
    return std::to_string(code) + (text.empty() ? "" : " " + std::string(text));
}

// Collects what differs.
class Comparison {
  public:
    std::vector<std::string> found;

    // What the following settings belong to, with a blank behind it: "channel 5 ".
    std::string owner;

    void text(std::string_view setting, const std::string& configured, const std::string& held) {
        if (configured != held)
            found.push_back(owner + std::string(setting) + ": configured " + configured +
                            ", held " + held);
    }
    void flag(std::string_view setting, bool configured, bool held) {
        text(setting, on_off(configured), on_off(held));
    }
    void code(std::string_view setting, int configured, int held) {
        text(setting, std::to_string(configured), std::to_string(held));
    }
    void number(std::string_view setting, float configured, float held) {
        if (sent(configured) != held) text(setting, exact(sent(configured)), exact(held));
    }
    void polynomial(std::string_view setting, const Polynomial6& configured,
                    const sim::Coefficients& held) {
        for (std::size_t i = 0; i < configured.size(); ++i)
            number(std::string(setting) + " coefficient " + std::to_string(i), configured[i],
                   held.at(i));
    }

  private:
    // Nine digits tell all singles apart.
    static std::string exact(float value) {
        std::array<char, 32> buffer{};
        const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                       std::chars_format::general, 9);
        return {buffer.data(), end.ptr};
    }
};

void compare_analog(Comparison& compare, const PodConfig& pod, const sim::HeldSettings& held) {
    if (supports_calibration(pod.TypeCode))
        compare.flag("calibration", pod.CalOn == 1, held.calibration);
    if (supports_integration(pod.TypeCode)) {
        compare.code("integration time", pod.Integration, held.integration);
        compare.text("temperature units", pod.DegF == 1 ? "Fahrenheit" : "Celsius",
                     held.fahrenheit ? "Fahrenheit" : "Celsius");
    }
    if (!supports_temperature_reference(pod.TypeCode)) return;
    const bool ambient = pod.AmbTemp == 1;
    compare.text("reference temperature", ambient ? "ambient" : "external",
                 held.ambient_reference ? "ambient" : "external");
    if (!ambient && !held.ambient_reference)
        compare.number("external temperature",
                       leading_single(rounded_text(static_cast<double>(pod.ExtTemp))),
                       held.external_temperature);
    compare.flag("open thermocouple check", pod.OpenTC == 1, held.open_check);
}

void compare_tables(Comparison& compare, const PodConfig& pod, const sim::HeldSettings& held) {
    for (std::size_t i = 0; i < pod.UserTherm.size(); ++i) {
        const UserTherm& table = pod.UserTherm[i];
        const std::string name = "user thermocouple " + std::to_string(i + 1);
        const bool on = table.Enabled == TableOn;
        compare.flag(name, on, held.user_tables.at(i).defined);
        if (!on || !held.user_tables.at(i).defined) continue;
        compare.polynomial(name, table.Polynomial, held.user_tables.at(i).polynomial);
        compare.polynomial(name + " inverse", table.InversePoly, held.user_tables.at(i).inverse);
    }
    for (std::size_t i = 0; i < pod.PostLinEquation.size(); ++i) {
        const PostLinEquation& equation = pod.PostLinEquation[i];
        const std::string name = "post-linearisation equation " + std::to_string(i + 1);
        const bool on = equation.Enabled == TableOn;
        compare.flag(name, on, held.equations.at(i).defined);
        if (on && held.equations.at(i).defined)
            compare.polynomial(name, equation.Coeff, held.equations.at(i).coefficients);
    }
}

void compare_alarm(Comparison& compare, const std::string& name, bool on, const AlarmLimit& alarm,
                   const sim::HeldAlarm& held) {
    compare.flag(name, on, held.enabled);
    if (!on || !held.enabled) return;
    compare.number(name + " limit", alarm.Limit, held.limit);
    compare.number(name + " hysteresis", alarm.Hysteresis, held.hysteresis);
}

void compare_channel(Comparison& compare, const PodConfig& pod, int slot,
                     const sim::HeldChannel& held) {
    const ChannelConfig& channel = pod.Channel[at(slot)];
    compare.text("mode", coded(channel.Mode, mode_text(channel.Mode)),
                 coded(held.mode, mode_text(held.mode)));
    // The same code has another text in another mode, which is no difference of its own.
    if (channel.Range != held.range)
        compare.text(
            "range",
            coded(channel.Range, range_text(channel.Mode, pod.TypeCode, slot + 1, channel.Range)),
            coded(held.range, range_text(held.mode, pod.TypeCode, slot + 1, held.range)));
    if (is_strain_mode(channel.Mode)) {
        compare.number("gauge factor", pod.Strain[at(slot)].GaugeFactor, held.gauge_factor);
        compare.number("offset", pod.Strain[at(slot)].Offset, held.offset);
        compare.number("initial volt", pod.Strain[at(slot)].InitialVolt, held.initial_volt);
    }
    if (supports_sampling(pod.TypeCode, slot)) {
        const std::int16_t timeout = pod.Timeout[at(slot)];
        compare.code("sample rate", pod.SampleRate[at(slot)], held.sample_rate);
        compare.code("time-out", timeout == DefaultTimeout ? DefaultTimeoutSent : timeout,
                     held.timeout);
    }
    if (supports_linearisation(pod.TypeCode, slot)) {
        const bool selected = channel.PostLin == 1 || channel.PostLin == 2;
        compare.code("post-linearisation", selected ? channel.PostLin : 0, held.equation);
    }
    const bool alarms = channel.Mode != DigitalStatus;
    compare_alarm(compare, "high alarm", alarms && channel.HighAlarm.Enabled == 1,
                  channel.HighAlarm, held.high_alarm);
    compare_alarm(compare, "low alarm", alarms && channel.LowAlarm.Enabled == 1, channel.LowAlarm,
                  held.low_alarm);
}

// "assert 3 high, 7 low"; "off".
std::string group_text(int state, const std::array<bool, AlarmGroupChannels>& low,
                       const std::array<bool, AlarmGroupChannels>& high) {
    if (state == GroupOff) return "off";
    std::string text = state == 1 ? "assert" : "disassert";
    for (std::size_t i = 0; i < low.size(); ++i) {
        if (low.at(i)) text += ", " + std::to_string(i + 1) + " low";
        if (high.at(i)) text += ", " + std::to_string(i + 1) + " high";
    }
    return text;
}

void compare_groups(Comparison& compare, const PodConfig& pod, const sim::HeldSettings& held) {
    for (std::size_t i = 0; i < held.groups.size(); ++i) {
        const AlarmGroup& group = pod.AlarmGroup[i];
        std::array<bool, AlarmGroupChannels> low{};
        std::array<bool, AlarmGroupChannels> high{};
        for (std::size_t member = 0; member < low.size(); ++member) {
            low.at(member) = group.Low[member] == 1;
            high.at(member) = group.High[member] == 1;
        }
        compare.text(
            "alarm group of channel " + std::to_string(i + 19),
            group_text(group.OutputState, low, high),
            group_text(held.groups.at(i).state, held.groups.at(i).low, held.groups.at(i).high));
    }
}

void compare_watchdogs(Comparison& compare, const PodConfig& pod, const sim::HeldSettings& held) {
    const bool hardware = pod.HWWatch == 1;
    const bool software = hardware && pod.SWWatch > 0;
    compare.flag("hardware watchdog", hardware, held.hardware_watch);
    compare.code("software watchdog time", software ? pod.SWWatchTime : 0, held.software_watch);
}

}  // namespace

std::vector<std::string> differences(const PodConfig& configured, const sim::HeldSettings& held) {
    Comparison compare;
    const std::int16_t type = configured.TypeCode;
    // A set-up is done once; that an earlier one is remembered is no difference.
    if (configured.Setup == 1) compare.flag("set-up", true, held.setup);
    compare.flag("arm", configured.Arm == 1, held.armed);
    compare.number("scan period", configured.ScanPeriod, held.scan_period_ms);
    compare_analog(compare, configured, held);
    if (is_universal_type(type)) compare_tables(compare, configured, held);
    for (int slot = 0; slot < configured.NumChannels; ++slot) {
        compare.owner = "channel " + std::to_string(slot + 1) + " ";
        if (slot >= channel_count(type))
            compare.found.push_back(compare.owner + "does not exist in the pod");
        else
            compare_channel(compare, configured, slot,
                            held.channels.at(static_cast<std::size_t>(slot)));
    }
    compare.owner.clear();
    if (is_universal_type(type)) compare_groups(compare, configured, held);
    if (supports_watchdogs(type)) compare_watchdogs(compare, configured, held);
    compare.flag("continuous scan", configured.ContScan == 1, held.continuous);
    return std::move(compare.found);
}

std::vector<std::string> verify_pods(const PodConfigs& configured, const sim::Network& network,
                                     const PodSet& pods) {
    std::vector<std::string> lines;
    for (const Pod pod : pods) {
        const PodConfig& config = configured[pod];
        if (config.TypeCode == NoDevice) continue;
        const std::string name = "ZAV " + two_digits(pod.number()) + " ";
        const sim::HeldSettings* held = network.held(pod.number());
        if (held == nullptr) {
            lines.push_back(name + "is not in the simulated network");
            continue;
        }
        for (const std::string& difference : differences(config, *held))
            lines.push_back(name + difference);
    }
    return lines;
}

}  // namespace kavorix
