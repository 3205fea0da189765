#include "model/channel_rules.h"

#include <algorithm>

#include "model/catalogue.h"
#include "model/runtime.h"

namespace kavorix {

namespace {

constexpr int GroupsInUse = 2;

bool is_digital_slot(int slot) {
    return slot >= AlarmGroupChannels;
}

}  // namespace

void clear_channel(PodConfig& pod, int slot) {
    ChannelConfig& channel = pod.Channel[at(slot)];
    switch_alarms_off(pod, slot);
    channel.Mode = 0;
    channel.Range = 0;
    channel.Label.clear();
    channel.Unit.clear();
    channel.MValue = 1.0F;
    channel.CValue = 0.0F;
    channel.PostLin = 0;
    pod.Strain[at(slot)] = {};
    pod.SampleRate[at(slot)] = 0;
    pod.Timeout[at(slot)] = DefaultTimeout;
}

void switch_alarms_off(PodConfig& pod, int slot) {
    pod.Channel[at(slot)].HighAlarm.Enabled = 0;
    pod.Channel[at(slot)].LowAlarm.Enabled = 0;
    leave_groups(pod, slot);
}

void leave_groups(PodConfig& pod, int slot) {
    if (is_digital_slot(slot)) return;
    const ChannelConfig& channel = pod.Channel[at(slot)];
    for (int output = 0; output < GroupsInUse; ++output) {
        AlarmGroup& group = pod.AlarmGroup[at(output)];
        if (!has_members(group)) continue;
        if (channel.HighAlarm.Enabled != 1) group.High[at(slot)] = 0;
        if (channel.LowAlarm.Enabled != 1) group.Low[at(slot)] = 0;
        if (!has_members(group)) group.OutputState = GroupOff;
    }
}

bool has_members(const AlarmGroup& group) {
    const auto member = [](std::int16_t flag) { return flag != 0; };
    return std::any_of(group.High.begin(), group.High.end(), member) ||
           std::any_of(group.Low.begin(), group.Low.end(), member);
}

bool can_start_pair(const PodConfig& pod, int slot) {
    return is_universal_type(pod.TypeCode) && !is_digital_slot(slot) && slot % 2 == 0;
}

bool is_paired(const PodConfig& pod, int slot) {
    return slot > 0 && can_start_pair(pod, slot - 1) && pod.SixPole[at(slot - 1)] == 1;
}

void make_pair(PodConfig& pod, int slot) {
    pod.SixPole[at(slot)] = 1;
    clear_channel(pod, slot + 1);
}

void restore_pairs(PodConfig& pod) {
    for (int slot = 0; slot < AlarmGroupChannels; ++slot)
        if (can_start_pair(pod, slot) && is_six_pole_mode(pod.Channel[at(slot)].Mode) &&
            pod.Channel[at(slot + 1)].Mode == 0)
            pod.SixPole[at(slot)] = 1;
}

bool can_copy_channel(const PodConfig& pod, int source, int target) {
    if (source == target) return false;
    if (is_universal_type(pod.TypeCode) && is_digital_slot(source) != is_digital_slot(target))
        return false;
    if (pod.SixPole[at(source)] == 1 && target % 2 != 0) return false;
    return is_legal_mode(pod.Channel[at(source)].Mode, pod.TypeCode, target + 1) &&
           !is_paired(pod, target);
}

void copy_channel(PodConfig& pod, int source, int target) {
    if (!can_copy_channel(pod, source, target)) return;
    pod.Channel[at(target)] = pod.Channel[at(source)];
    if (pod.TypeCode == Type7S) pod.Strain[at(target)] = pod.Strain[at(source)];
    if (supports_sampling(pod.TypeCode, source)) {
        pod.SampleRate[at(target)] = pod.SampleRate[at(source)];
        pod.Timeout[at(target)] = pod.Timeout[at(source)];
    }
    if (is_universal_type(pod.TypeCode)) {
        if (is_digital_slot(source))
            pod.AlarmGroup[at(target - AlarmGroupChannels)] =
                pod.AlarmGroup[at(source - AlarmGroupChannels)];
        else if (can_start_pair(pod, target)) {
            if (pod.SixPole[at(source)] == 1)
                make_pair(pod, target);
            else
                pod.SixPole[at(target)] = 0;
        }
    }
    leave_groups(pod, target);
}

}  // namespace kavorix
