#include "config/statements.h"

#include "config/rows.h"

namespace kavorix {

using namespace rows;

namespace {

using Out = std::string;

// The last character of the number's plain text.
std::string last_digit(int value) {
    return std::string(1, std::to_string(value).back());
}

void put_command_group(Out& out, const AlarmGroup& group) {
    put_group(out, group, "", "");
}

bool watches(const PodConfig& p) {
    return has_watchdogs(p) && p.HWWatch == 1;
}

constexpr PodRow OpeningRows[] = {
    {is_set_up, [](Out& out, const PodConfig&) { put(out, "SE;"); }},
    {is_armed, [](Out& out, const PodConfig&) { put(out, "AR;"); }},
    {always, [](Out& out, const PodConfig& p) { put(out, "SP'", p.ScanPeriod, "';"); }},
    // The digit is the inverse of the flag.
    {calibrates, [](Out& out, const PodConfig& p) { put(out, p.CalOn == 1 ? "KA0;" : "KA1;"); }},
    {integrates,
     [](Out& out, const PodConfig& p) { put(out, "FR", last_digit(p.Integration), ";"); }},
    {integrates, [](Out& out, const PodConfig& p) { put(out, "UN", last_digit(p.DegF), ";"); }},
    {has_reference,
     [](Out& out, const PodConfig& p) {
         if (p.AmbTemp == 1)
             put(out, "AM;");
         else
             put(out, "TE'", rounded_text(static_cast<double>(p.ExtTemp)), "';");
     }},
    {has_reference,
     [](Out& out, const PodConfig& p) { put(out, "TC", last_digit(p.OpenTC), ";"); }},
    {has_table<0>,
     [](Out& out, const PodConfig& p) {
         put(out, "UT1");
         put_coefficients(out, "'", p.UserTherm[0], "'");
         put(out, ";");
     }},
    {has_table<1>,
     [](Out& out, const PodConfig& p) {
         put(out, "UT2");
         put_coefficients(out, "'", p.UserTherm[1], "'");
         put(out, ";");
     }},
    {has_equation<0>,
     [](Out& out, const PodConfig& p) {
         put(out, "PL1");
         put_coefficients(out, "'", p.PostLinEquation[0].Coeff, "'");
         put(out, ";");
     }},
    {has_equation<1>,
     [](Out& out, const PodConfig& p) {
         put(out, "PL2");
         put_coefficients(out, "'", p.PostLinEquation[1].Coeff, "'");
         put(out, ";");
     }},
};

// The channel number stands as it is in the mode, strain and sampling statements and in two digits
// in the others: the pods receive both forms.
constexpr ChannelRow ChannelRows[] = {
    {always_given,
     [](Out& out, const PodConfig& p, int slot) {
         constexpr std::int16_t UserThermocouple2 = 30;  // known to the pods as "3A"
         const ChannelConfig& c = p.Channel[at(slot)];
         put(out, "CH", slot + 1, "MO");
         if (c.Mode == UserThermocouple2)
             put(out, "3A");
         else
             put(out, TwoDigits{c.Mode});
         put(out, c.Range, ";");
     }},
    {is_strain,
     [](Out& out, const PodConfig& p, int slot) {
         put(out, "CH", slot + 1, "GA'", p.Strain[at(slot)].GaugeFactor, "';");
     }},
    {is_strain,
     [](Out& out, const PodConfig& p, int slot) {
         const StrainSettings& strain = p.Strain[at(slot)];
         put(out, "CH", slot + 1, "OF'", strain.Offset, "''", strain.InitialVolt, "';");
     }},
    {samples, [](Out& out, const PodConfig& p,
                 int slot) { put(out, "CH", slot + 1, "RA", p.SampleRate[at(slot)], ";"); }},
    {samples,
     [](Out& out, const PodConfig& p, int slot) {
         const std::int16_t code = p.Timeout[at(slot)];
         put(out, "CH", slot + 1, "TI", code == DefaultTimeout ? 1 : code, ";");
     }},
    {is_linearised,
     [](Out& out, const PodConfig& p, int slot) {
         put(out, "CH", TwoDigits{slot + 1}, "PL", p.Channel[at(slot)].PostLin, ";");
     }},
    {has_high_alarm,
     [](Out& out, const PodConfig& p, int slot) {
         const AlarmLimit& alarm = p.Channel[at(slot)].HighAlarm;
         put(out, "CH", TwoDigits{slot + 1}, "HL'", alarm.Limit, "''", alarm.Hysteresis, "';");
     }},
    {has_low_alarm,
     [](Out& out, const PodConfig& p, int slot) {
         const AlarmLimit& alarm = p.Channel[at(slot)].LowAlarm;
         put(out, "CH", TwoDigits{slot + 1}, "LL'", alarm.Limit, "''", alarm.Hysteresis, "';");
     }},
};

constexpr PodRow ClosingRows[] = {
    {has_group<0>,
     [](Out& out, const PodConfig& p) {
         put(out, "CH19GO");
         put_command_group(out, p.AlarmGroup[0]);
     }},
    {has_group<1>,
     [](Out& out, const PodConfig& p) {
         put(out, "CH20GO");
         put_command_group(out, p.AlarmGroup[1]);
     }},
    // A watchdog that is off is not mentioned, the software one only along with the hardware one.
    {watches, [](Out& out, const PodConfig&) { put(out, "HW1;"); }},
    {[](const PodConfig& p) { return watches(p) && p.SWWatch > 0; },
     [](Out& out, const PodConfig& p) { put(out, "SW", p.SWWatchTime, ";"); }},
    {scans_continuously, [](Out& out, const PodConfig&) { put(out, "CO;"); }},
};

}  // namespace

std::string configuration_statements(const PodConfig& pod) {
    std::string text;
    append_rows(text, OpeningRows, pod);
    for (int slot = 0; slot < used_slots(pod); ++slot) append_rows(text, ChannelRows, pod, slot);
    append_rows(text, ClosingRows, pod);
    return text;
}

std::string TxCHmGOStatement(const PodConfigs& configs, std::int16_t podIndex,
                             std::int16_t groupSlot) {
    std::string text;
    put_command_group(text, configs[at(podIndex)].AlarmGroup[at(groupSlot)]);
    return text;
}

}  // namespace kavorix
