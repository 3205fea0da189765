#include "model/channel_rules.h"

#include <gtest/gtest.h>

#include <functional>

#include "model/runtime.h"

namespace kavorix {
namespace {

using Change = std::function<void(PodConfig&)>;

ChannelConfig& channel(PodConfig& pod, int number) {
    return pod.Channel[at(number - 1)];
}

// A channel with all its settings, both alarms on, and in both groups with both alarms.
void use(PodConfig& pod, int number, std::int16_t mode = 10) {
    channel(pod, number) = {mode, 1, "Label", "Unit", 2, 3, 1, {1, 1, 0.5F}, {1, 9, 0.25F}};
    pod.Strain[at(number - 1)] = {1, 2, 3};
    pod.SampleRate[at(number - 1)] = 4;
    pod.Timeout[at(number - 1)] = 3;
    if (number > 18) return;
    for (int group = 0; group < 2; ++group) {
        pod.AlarmGroup[at(group)].OutputState = 1;
        pod.AlarmGroup[at(group)].High[at(number - 1)] =
            pod.AlarmGroup[at(group)].Low[at(number - 1)] = 1;
    }
}
void leave(PodConfig& pod, int number) {
    for (int group = 0; group < 2; ++group)
        pod.AlarmGroup[at(group)].High[at(number - 1)] =
            pod.AlarmGroup[at(group)].Low[at(number - 1)] = 0;
}
// Mode 0, no texts, no scaling; what the alarms were set to stays, switched off.
void clear(PodConfig& pod, int number) {
    channel(pod, number) = {
        0,
        0,
        "",
        "",
        1,
        0,
        0,
        {0, channel(pod, number).LowAlarm.Limit, channel(pod, number).LowAlarm.Hysteresis},
        {0, channel(pod, number).HighAlarm.Limit, channel(pod, number).HighAlarm.Hysteresis}};
    pod.Strain[at(number - 1)] = {};
    pod.SampleRate[at(number - 1)] = 0;
    pod.Timeout[at(number - 1)] = 6;
}
void groups_off(PodConfig& pod) {
    pod.AlarmGroup[0].OutputState = pod.AlarmGroup[1].OutputState = 2;
}

// A pod of a type as it is before, what is done, and how it is changed by that alone.
struct Row {
    const char* what;
    std::int16_t type;
    Change before, act, changes;
};

#define DO(...) [](PodConfig& p) { __VA_ARGS__; }
constexpr auto Nothing = [](PodConfig&) {};

const Row Rows[] = {
    {"a channel is cleared, and the last member of a group with it", Type7V, DO(use(p, 3)),
     DO(clear_channel(p, 2)), DO(clear(p, 3), leave(p, 3), groups_off(p))},
    {"others of the group stay", Type7V, DO(use(p, 3), use(p, 18)), DO(clear_channel(p, 17)),
     DO(clear(p, 18), leave(p, 18))},
    {"a digital channel has no membership", Type7W, DO(use(p, 1), use(p, 19, 90)),
     DO(clear_channel(p, 18)), DO(clear(p, 19))},
    {"alarms are switched off", Type7V, DO(use(p, 1), use(p, 2)), DO(switch_alarms_off(p, 0)),
     DO(channel(p, 1).LowAlarm.Enabled = channel(p, 1).HighAlarm.Enabled = 0, leave(p, 1))},
    {"only what is not enabled leaves: the high alarm", Type7V,
     DO(use(p, 5), channel(p, 5).HighAlarm.Enabled = 0), DO(leave_groups(p, 4)),
     DO(p.AlarmGroup[0].High[4] = p.AlarmGroup[1].High[4] = 0)},
    {"the low one", Type7V, DO(use(p, 5), channel(p, 5).LowAlarm.Enabled = 0),
     DO(leave_groups(p, 4)), DO(p.AlarmGroup[0].Low[4] = p.AlarmGroup[1].Low[4] = 0)},
    {"a group that had no member is left alone", Type7V,
     DO(use(p, 5), leave(p, 5), channel(p, 5).LowAlarm.Enabled = 0), DO(leave_groups(p, 4)),
     Nothing},
    {"a third group is not in use", Type7V,
     DO(p.AlarmGroup[2].OutputState = 1, p.AlarmGroup[2].High[4] = 1), DO(leave_groups(p, 4)),
     Nothing},
    {"a pair takes the next channel", Type7V, DO(use(p, 3), use(p, 4)), DO(make_pair(p, 2)),
     DO(p.SixPole[2] = 1, clear(p, 4), leave(p, 4))},
    {"pairs are found again by mode", Type7V,
     DO(use(p, 1, 20), use(p, 3, 41), use(p, 5, 22), use(p, 7, 20), use(p, 17, 43), use(p, 19, 20),
        clear(p, 2), clear(p, 4), clear(p, 6), clear(p, 18), clear(p, 20)),
     DO(restore_pairs(p)), DO(p.SixPole[0] = p.SixPole[2] = p.SixPole[16] = 1)},
    {"but for other types", Type7S, DO(use(p, 1, 20), clear(p, 2)), DO(restore_pairs(p)), Nothing},
    {"a copy takes the channel, its group members by its own alarms", Type7V,
     DO(use(p, 3), p.SixPole[4] = 1), DO(copy_channel(p, 2, 4)),
     DO(channel(p, 5) = channel(p, 3), p.SixPole[4] = 0)},
    {"the target's alarms leave with the copy of one without", Type7V,
     DO(use(p, 3), use(p, 5), channel(p, 3).HighAlarm.Enabled = channel(p, 3).LowAlarm.Enabled = 0),
     DO(copy_channel(p, 2, 4)), DO(channel(p, 5) = channel(p, 3), leave(p, 5))},
    {"a pair is copied as a pair", Type7V, DO(use(p, 1, 20), use(p, 6), p.SixPole[0] = 1),
     DO(copy_channel(p, 0, 4)),
     DO(channel(p, 5) = channel(p, 1), p.SixPole[4] = 1, clear(p, 6), leave(p, 6))},
    {"to an even channel nothing but the channel goes", Type7V,
     DO(use(p, 1), use(p, 2, 50), p.SixPole[1] = 1), DO(copy_channel(p, 0, 3)),
     DO(channel(p, 4) = channel(p, 1))},
    {"a digital one takes sampling and group along", Type7W,
     DO(use(p, 19, 90), use(p, 1), p.AlarmGroup[1] = {}), DO(copy_channel(p, 18, 19)),
     DO(channel(p, 20) = channel(p, 19), p.SampleRate[19] = 4, p.Timeout[19] = 3,
        p.AlarmGroup[1] = p.AlarmGroup[0])},
    {"an 8R its sampling", Type8R, DO(use(p, 1, 90)), DO(copy_channel(p, 0, 19)),
     DO(channel(p, 20) = channel(p, 1), p.SampleRate[19] = 4, p.Timeout[19] = 3)},
    {"a 7S its strain settings", Type7S, DO(use(p, 1, 60)), DO(copy_channel(p, 0, 9)),
     DO(channel(p, 10) = channel(p, 1), p.Strain[9] = {1, 2, 3})},
    {"what cannot be copied is not", Type7V, DO(use(p, 1)), DO(copy_channel(p, 0, 18)), Nothing},
};

TEST(ChannelRules, ChangeWhatBelongsTogether) {
    for (const Row& row : Rows) {
        PodConfig pod;
        default_ZAV_config(pod, row.type, 1);
        row.before(pod);
        PodConfig expected = pod;
        row.act(pod);
        row.changes(expected);
        EXPECT_TRUE(pod == expected) << row.what;
    }
}

// Channel numbers: which channel of a 7V with a pair on 1 and 2, and mode 90 on 19, may go where.
TEST(ChannelRules, SayWhatCanBeCopied) {
    struct Copy {
        std::int16_t type;
        int source, target;
        bool can;
    };
    for (const Copy& copy : {Copy{Type7V, 3, 4, true},
                             {Type7V, 3, 18, true},
                             {Type7V, 3, 3, false},
                             {Type7V, 3, 19, false},
                             {Type7V, 19, 18, false},
                             {Type7V, 19, 20, true},
                             {Type7V, 3, 2, false},
                             {Type7V, 3, 1, true},
                             {Type7V, 1, 17, true},
                             {Type7V, 1, 4, false},
                             {Type7R, 3, 20, true},
                             {Type7R, 3, 2, true},
                             {Type8S, 32, 29, true},
                             {Type8S, 32, 28, false}}) {
        PodConfig pod;
        default_ZAV_config(pod, copy.type, 1);
        pod.Channel[0].Mode = copy.type == Type7V ? 20 : 10;
        pod.Channel[18].Mode = copy.type == Type7V ? 90 : 10;
        pod.Channel[31].Mode = 80;
        pod.SixPole.fill(0);
        pod.SixPole[0] = copy.type == Type7V ? 1 : 0;
        EXPECT_EQ(can_copy_channel(pod, copy.source - 1, copy.target - 1), copy.can)
            << copy.type << ": " << copy.source << " to " << copy.target;
    }
}

TEST(ChannelRules, OddAnalogChannelsOfUniversalPodsStartAPair) {
    for (const std::int16_t type : {Type7R, Type7S, Type8S, Type7V, Type7W})
        for (int slot = 0; slot < 20; ++slot) {
            PodConfig pod;
            default_ZAV_config(pod, type, 1);
            pod.SixPole.fill(1);
            const bool universal = type == Type7V || type == Type7W;
            EXPECT_EQ(can_start_pair(pod, slot), universal && slot < 18 && slot % 2 == 0)
                << type << " " << slot;
            EXPECT_EQ(is_paired(pod, slot), universal && slot < 18 && slot % 2 == 1)
                << type << " " << slot;
            pod.SixPole.fill(0);
            EXPECT_FALSE(is_paired(pod, slot));
        }
}

}  // namespace
}  // namespace kavorix
