#include "config/config_writer.h"

#include "config/rows.h"

namespace kavorix {

using namespace rows;

namespace {

using Out = std::string;

constexpr std::string_view LineEnd = "\r\n";

void put_file_group(Out& out, const AlarmGroup& group) {
    put_group(out, group, ",", ",");
}

void put_group_line(Out& out, int channel, const AlarmGroup& group) {
    put(out, "CH", TwoDigits{channel}, "GO");
    put_file_group(out, group);
    put(out, LineEnd);
}

template <class Coefficients>
void put_table_line(Out& out, std::string_view key, const Coefficients& coefficients) {
    put(out, key);
    put_coefficients(out, ",", coefficients, "");
    put(out, ";", LineEnd);
}

// What a channel line starts with.
void put_channel(Out& out, int slot, std::string_view key) {
    put(out, "CH", TwoDigits{slot + 1}, key);
}

void put_alarm_line(Out& out, int slot, std::string_view key, const AlarmLimit& alarm) {
    put_channel(out, slot, key);
    put(out, ",", alarm.Limit, ",", alarm.Hysteresis, ";", LineEnd);
}

constexpr PodRow PodRows[] = {
    {always,
     [](Out& out, const PodConfig& p) {
         put(out, pod_type(p.TypeCode).code, ";", TwoDigits{p.NumChannels}, ";", LineEnd);
     }},
    {is_set_up, [](Out& out, const PodConfig&) { put(out, "SE;", LineEnd); }},
    {is_armed, [](Out& out, const PodConfig&) { put(out, "AR;", LineEnd); }},
    {[](const PodConfig& p) { return calibrates(p) && p.CalOn == 1; },
     [](Out& out, const PodConfig&) { put(out, "KA;", LineEnd); }},
    {scans_continuously, [](Out& out, const PodConfig&) { put(out, "CO;", LineEnd); }},
    {always, [](Out& out, const PodConfig& p) { put(out, "SP", p.ScanPeriod, ";", LineEnd); }},
    {integrates, [](Out& out, const PodConfig& p) { put(out, "FR", p.Integration, ";", LineEnd); }},
    {[](const PodConfig& p) { return integrates(p) && p.DegF == 1; },
     [](Out& out, const PodConfig&) { put(out, "UN1;", LineEnd); }},
    {has_reference,
     [](Out& out, const PodConfig& p) {
         if (p.AmbTemp == 1)
             put(out, "AM;", LineEnd);
         else
             put(out, "TE", p.ExtTemp, ";", LineEnd);
     }},
    {[](const PodConfig& p) { return has_reference(p) && p.OpenTC == 1; },
     [](Out& out, const PodConfig&) { put(out, "TC1;", LineEnd); }},
    {has_table<0>,
     [](Out& out, const PodConfig& p) { put_table_line(out, "UT1", p.UserTherm[0]); }},
    {has_table<1>,
     [](Out& out, const PodConfig& p) { put_table_line(out, "UT2", p.UserTherm[1]); }},
    {has_equation<0>,
     [](Out& out, const PodConfig& p) { put_table_line(out, "PL1", p.PostLinEquation[0].Coeff); }},
    {has_equation<1>,
     [](Out& out, const PodConfig& p) { put_table_line(out, "PL2", p.PostLinEquation[1].Coeff); }},
    {has_watchdogs, [](Out& out, const PodConfig& p) { put(out, "HW", p.HWWatch, ";", LineEnd); }},
    {has_watchdogs,
     [](Out& out, const PodConfig& p) {
         put(out, "SW", p.SWWatch != 0 ? p.SWWatchTime : 0, ";", LineEnd);
     }},
};

constexpr ChannelRow ChannelRows[] = {
    // No ";" behind the brace.
    {always_given,
     [](Out& out, const PodConfig& p, int slot) {
         const ChannelConfig& c = p.Channel[at(slot)];
         put_channel(out, slot, "MO");
         put(out, TwoDigits{c.Mode}, c.Range, ";'", trim(c.Label), "';'", trim(c.Unit), "';{",
             c.MValue, ";", c.CValue, "}", LineEnd);
     }},
    {samples,
     [](Out& out, const PodConfig& p, int slot) {
         put_channel(out, slot, "RA");
         put(out, p.SampleRate[at(slot)], ";", LineEnd);
     }},
    {samples,
     [](Out& out, const PodConfig& p, int slot) {
         put_channel(out, slot, "TI");
         put(out, p.Timeout[at(slot)], ";", LineEnd);
     }},
    {[](const PodConfig& p, int slot) { return p.TypeCode == Type7S && is_strain(p, slot); },
     [](Out& out, const PodConfig& p, int slot) {
         const StrainSettings& strain = p.Strain[at(slot)];
         put_channel(out, slot, "GA");
         put(out, strain.GaugeFactor, ";", LineEnd);
         put_channel(out, slot, "OF");
         put(out, strain.Offset, ";", strain.InitialVolt, ";", LineEnd);
     }},
    // The scaling stands here once more; the last field says that it is on.
    {[](const PodConfig& p, int slot) {
         const ChannelConfig& c = p.Channel[at(slot)];
         return supports_linearisation(p.TypeCode, slot) && (c.MValue != 1.0F || c.CValue != 0.0F);
     },
     [](Out& out, const PodConfig& p, int slot) {
         const ChannelConfig& c = p.Channel[at(slot)];
         put_channel(out, slot, "UC,");
         put(out, c.MValue, ",", c.CValue, ",1;", LineEnd);
     }},
    {is_linearised,
     [](Out& out, const PodConfig& p, int slot) {
         put_channel(out, slot, "PL");
         put(out, p.Channel[at(slot)].PostLin, ";", LineEnd);
     }},
    {has_high_alarm,
     [](Out& out, const PodConfig& p, int slot) {
         put_alarm_line(out, slot, "HL", p.Channel[at(slot)].HighAlarm);
     }},
    {has_low_alarm,
     [](Out& out, const PodConfig& p, int slot) {
         put_alarm_line(out, slot, "LL", p.Channel[at(slot)].LowAlarm);
     }},
};

constexpr PodRow GroupRows[] = {
    {has_group<0>, [](Out& out, const PodConfig& p) { put_group_line(out, 19, p.AlarmGroup[0]); }},
    {has_group<1>, [](Out& out, const PodConfig& p) { put_group_line(out, 20, p.AlarmGroup[1]); }},
};

void put_pod(Out& out, int number, const PodConfig& pod) {
    put(out, "IM", TwoDigits{number}, ";");
    append_rows(out, PodRows, pod);
    for (int slot = 0; slot < used_slots(pod); ++slot)
        if (pod.Channel[at(slot)].Mode >= 1) append_rows(out, ChannelRows, pod, slot);
    append_rows(out, GroupRows, pod);
}

}  // namespace

std::string config_text(const InterfaceSettings& settings, const PodConfigs& configs,
                        const WallTime& created) {
    std::string text;
    put(text, "KAVORIX ZAV CONFIGURATION FILE CREATED: ", general_date(created), LineEnd);
    put(text, "AD", settings.CardHandle, ";", settings.CardAddress, ";", LineEnd);
    put(text, "UR", settings.PollRate, ";", LineEnd);
    put(text, "PO", settings.PowerOn, ";", LineEnd);
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (configs[at(pod)].TypeCode >= 1) put_pod(text, pod + 1, configs[at(pod)]);
    return text;
}

std::string FormCHmGOStatement(const PodConfigs& configs, std::int16_t podIndex,
                               std::int16_t groupSlot) {
    std::string text;
    put_file_group(text, configs[at(podIndex)].AlarmGroup[at(groupSlot)]);
    return text;
}

}  // namespace kavorix
