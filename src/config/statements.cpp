#include "config/statements.h"

#include "base/numbers.h"
#include "base/text.h"
#include "model/catalogue.h"
#include "model/runtime.h"

namespace kavorix {

namespace {

std::string digits(int value) {
    return std::to_string(value);
}

std::string last_digit(int value) {
    return std::string(1, digits(value).back());
}

// The value between quotes. Several quoted values stand side by side.
std::string quoted(const std::string& value) {
    return "'" + value + "'";
}

// Coefficients from the highest order down.
std::string quoted(const Polynomial6& polynomial) {
    std::string text;
    for (auto c = polynomial.rbegin(); c != polynomial.rend(); ++c) text += quoted(general(*c));
    return text;
}

std::string quoted(const UserTherm& table) {
    return quoted(table.Polynomial) + quoted(table.InversePoly);
}

std::string quoted(const AlarmLimit& alarm) {
    return quoted(general(alarm.Limit)) + quoted(general(alarm.Hysteresis));
}

std::string group_text(const AlarmGroup& group) {
    std::string text = digits(group.OutputState);
    if (group.OutputState != GroupOff)
        for (int channel = 1; channel <= AlarmGroupChannels; ++channel) {
            if (group.Low[at(channel - 1)] == 1) text += two_digits(channel) + "L";
            if (group.High[at(channel - 1)] == 1) text += two_digits(channel) + "H";
        }
    return text + ";";
}

bool always(const PodConfig&) {
    return true;
}
bool calibrates(const PodConfig& p) {
    return supports_calibration(p.TypeCode);
}
bool integrates(const PodConfig& p) {
    return supports_integration(p.TypeCode);
}
bool has_reference(const PodConfig& p) {
    return supports_temperature_reference(p.TypeCode);
}
bool has_table(const PodConfig& p, std::size_t index) {
    return is_universal_type(p.TypeCode) && p.UserTherm[index].Enabled == TableOn;
}
bool has_equation(const PodConfig& p, std::size_t index) {
    return is_universal_type(p.TypeCode) && p.PostLinEquation[index].Enabled == TableOn;
}
bool has_group(const PodConfig& p, std::size_t slot) {
    return is_universal_type(p.TypeCode) && p.AlarmGroup[slot].OutputState != GroupOff;
}
bool watches(const PodConfig& p) {
    return supports_watchdogs(p.TypeCode) && p.HWWatch == 1;
}

bool always_on_slot(const PodConfig&, int) {
    return true;
}
bool is_strain(const PodConfig& p, int slot) {
    return is_strain_mode(p.Channel[at(slot)].Mode);
}
bool samples(const PodConfig& p, int slot) {
    return supports_sampling(p.TypeCode, slot);
}
bool is_linearised(const PodConfig& p, int slot) {
    const std::int16_t equation = p.Channel[at(slot)].PostLin;
    return supports_linearisation(p.TypeCode, slot) && (equation == 1 || equation == 2);
}
bool alarms(const PodConfig& p, int slot, const AlarmLimit& alarm) {
    return p.Channel[at(slot)].Mode != DigitalStatus && alarm.Enabled == 1;
}

// Channel number as it is: mode, strain and sampling statements.
std::string channel(int slot) {
    return "CH" + digits(slot + 1);
}
// Channel number in two digits: post-linearisation and alarm statements.
std::string wide_channel(int slot) {
    return "CH" + two_digits(slot + 1);
}

std::string mode_statement(const PodConfig& p, int slot) {
    constexpr std::int16_t UserThermocouple2 = 30;  // known to the pods as "3A"
    const ChannelConfig& c = p.Channel[at(slot)];
    return channel(slot) + "MO" + (c.Mode == UserThermocouple2 ? "3A" : two_digits(c.Mode)) +
           digits(c.Range) + ";";
}

std::string timeout_statement(const PodConfig& p, int slot) {
    const std::int16_t code = p.Timeout[at(slot)];
    return channel(slot) + "TI" + digits(code == DefaultTimeout ? 1 : code) + ";";
}

// A statement of a pod: when it is sent and its text.
struct PodStatement {
    bool (*sent)(const PodConfig& p);
    std::string (*text)(const PodConfig& p);
};

constexpr PodStatement OpeningStatements[] = {
    {[](const PodConfig& p) { return p.Setup == 1; },
     [](const PodConfig&) { return std::string("SE;"); }},
    {[](const PodConfig& p) { return p.Arm == 1; },
     [](const PodConfig&) { return std::string("AR;"); }},
    {always, [](const PodConfig& p) { return "SP" + quoted(digits(p.ScanPeriod)) + ";"; }},
    // The digit is the inverse of the flag.
    {calibrates, [](const PodConfig& p) { return std::string(p.CalOn == 1 ? "KA0;" : "KA1;"); }},
    {integrates, [](const PodConfig& p) { return "FR" + last_digit(p.Integration) + ";"; }},
    {integrates, [](const PodConfig& p) { return "UN" + last_digit(p.DegF) + ";"; }},
    {has_reference,
     [](const PodConfig& p) {
         if (p.AmbTemp == 1) return std::string("AM;");
         return "TE" + quoted(rounded_text(static_cast<double>(p.ExtTemp))) + ";";
     }},
    {has_reference, [](const PodConfig& p) { return "TC" + last_digit(p.OpenTC) + ";"; }},
    {[](const PodConfig& p) { return has_table(p, 0); },
     [](const PodConfig& p) { return "UT1" + quoted(p.UserTherm[0]) + ";"; }},
    {[](const PodConfig& p) { return has_table(p, 1); },
     [](const PodConfig& p) { return "UT2" + quoted(p.UserTherm[1]) + ";"; }},
    {[](const PodConfig& p) { return has_equation(p, 0); },
     [](const PodConfig& p) { return "PL1" + quoted(p.PostLinEquation[0].Coeff) + ";"; }},
    {[](const PodConfig& p) { return has_equation(p, 1); },
     [](const PodConfig& p) { return "PL2" + quoted(p.PostLinEquation[1].Coeff) + ";"; }},
};

// A statement of a channel slot.
struct ChannelStatement {
    bool (*sent)(const PodConfig& p, int slot);
    std::string (*text)(const PodConfig& p, int slot);
};

constexpr ChannelStatement ChannelStatements[] = {
    {always_on_slot, mode_statement},
    {is_strain,
     [](const PodConfig& p, int slot) {
         return channel(slot) + "GA" + quoted(general(p.Strain[at(slot)].GaugeFactor)) + ";";
     }},
    {is_strain,
     [](const PodConfig& p, int slot) {
         const StrainSettings& strain = p.Strain[at(slot)];
         return channel(slot) + "OF" + quoted(general(strain.Offset)) +
                quoted(general(strain.InitialVolt)) + ";";
     }},
    {samples, [](const PodConfig& p,
                 int slot) { return channel(slot) + "RA" + digits(p.SampleRate[at(slot)]) + ";"; }},
    {samples, timeout_statement},
    {is_linearised,
     [](const PodConfig& p, int slot) {
         return wide_channel(slot) + "PL" + digits(p.Channel[at(slot)].PostLin) + ";";
     }},
    {[](const PodConfig& p, int slot) { return alarms(p, slot, p.Channel[at(slot)].HighAlarm); },
     [](const PodConfig& p, int slot) {
         return wide_channel(slot) + "HL" + quoted(p.Channel[at(slot)].HighAlarm) + ";";
     }},
    {[](const PodConfig& p, int slot) { return alarms(p, slot, p.Channel[at(slot)].LowAlarm); },
     [](const PodConfig& p, int slot) {
         return wide_channel(slot) + "LL" + quoted(p.Channel[at(slot)].LowAlarm) + ";";
     }},
};

constexpr PodStatement ClosingStatements[] = {
    {[](const PodConfig& p) { return has_group(p, 0); },
     [](const PodConfig& p) { return "CH19GO" + group_text(p.AlarmGroup[0]); }},
    {[](const PodConfig& p) { return has_group(p, 1); },
     [](const PodConfig& p) { return "CH20GO" + group_text(p.AlarmGroup[1]); }},
    // A watchdog that is off is not mentioned, the software one only along with the hardware one.
    {watches, [](const PodConfig&) { return std::string("HW1;"); }},
    {[](const PodConfig& p) { return watches(p) && p.SWWatch > 0; },
     [](const PodConfig& p) { return "SW" + digits(p.SWWatchTime) + ";"; }},
    {[](const PodConfig& p) { return p.ContScan == 1; },
     [](const PodConfig&) { return std::string("CO;"); }},
};

}  // namespace

std::string configuration_statements(const PodConfig& pod) {
    std::string text;
    for (const PodStatement& statement : OpeningStatements)
        if (statement.sent(pod)) text += statement.text(pod);
    for (int slot = 0; slot < pod.NumChannels && slot < ChannelSlots; ++slot)
        for (const ChannelStatement& statement : ChannelStatements)
            if (statement.sent(pod, slot)) text += statement.text(pod, slot);
    for (const PodStatement& statement : ClosingStatements)
        if (statement.sent(pod)) text += statement.text(pod);
    return text;
}

std::string TxCHmGOStatement(const PodConfigs& configs, std::int16_t podIndex,
                             std::int16_t groupSlot) {
    return group_text(configs[at(podIndex)].AlarmGroup[at(groupSlot)]);
}

}  // namespace kavorix
