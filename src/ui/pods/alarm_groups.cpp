#include "ui/pods/alarm_groups.h"

#include "base/program_name.h"
#include "model/channel_rules.h"
#include "model/runtime.h"

namespace kavorix {

namespace {

constexpr std::int16_t DisassertOutput = 0;
constexpr std::int16_t AssertOutput = 1;
constexpr int FirstOutput = 19;  // channel number of slot 0

std::string group_name(int slot) {
    return "Alarm Group Channel " + std::to_string(FirstOutput + slot);
}

}  // namespace

AlarmGroups::AlarmGroups(PodConfig& pod, Dialogs& dialogs, FailureReporter& failures)
    : pod_(pod), dialogs_(dialogs), failures_(failures) {
    groups_ = {pod.AlarmGroup[0], pod.AlarmGroup[1]};
    for (int i = 0; i < AlarmGroupChannels; ++i)
        screen.frmChannel[at(i)].caption = std::to_string(i + 1);
    screen.optchan19.selected = true;
    show_group();
}

void AlarmGroups::optchan19_Click() {
    trapped(failures_, "frmGroup/optchan19_Click", [&] { choose_group(0); });
}

void AlarmGroups::optchan20_Click() {
    trapped(failures_, "frmGroup/optchan20_Click", [&] { choose_group(1); });
}

void AlarmGroups::choose_group(int slot) {
    screen.optchan19.selected = slot == 0;
    screen.optchan20.selected = slot == 1;
    save_shown();
    shown_ = slot;
    show_group();
}

void AlarmGroups::show_group() {
    const AlarmGroup& group = groups_[at(shown_)];
    for (int i = 0; i < AlarmGroupChannels; ++i) {
        screen.chkHi[at(i)].checked = group.High[at(i)] == 1;
        screen.chkLow[at(i)].checked = group.Low[at(i)] == 1;
    }
    show_state();
    if (group.OutputState == GroupOff)
        switch_off();
    else
        enable_members();
}

void AlarmGroups::show_state() {
    const std::int16_t state = groups_[at(shown_)].OutputState;
    screen.optAss.selected = state == AssertOutput;
    screen.optDis.selected = state == DisassertOutput;
    screen.optOff.selected = state == GroupOff;
}

void AlarmGroups::switch_off() {
    clear_boxes();
    for (int i = 0; i < AlarmGroupChannels; ++i) {
        screen.frmChannel[at(i)].enabled = false;
        screen.chkHi[at(i)].enabled = false;
        screen.chkLow[at(i)].enabled = false;
    }
}

void AlarmGroups::enable_members() {
    for (int i = 0; i < AlarmGroupChannels; ++i) {
        const ChannelConfig& channel = pod_.Channel[at(i)];
        const bool high = channel.HighAlarm.Enabled == 1;
        const bool low = channel.LowAlarm.Enabled == 1;
        screen.chkHi[at(i)].enabled = high;
        screen.chkLow[at(i)].enabled = low;
        screen.frmChannel[at(i)].enabled = high || low;
    }
}

void AlarmGroups::optAss_Click() {
    trapped(failures_, "frmGroup/optAss_Click", [&] { set_state(AssertOutput); });
}

void AlarmGroups::optDis_Click() {
    trapped(failures_, "frmGroup/optDis_Click", [&] { set_state(DisassertOutput); });
}

void AlarmGroups::optOff_Click() {
    trapped(failures_, "frmGroup/optOff_Click", [&] { set_state(GroupOff); });
}

void AlarmGroups::set_state(std::int16_t state) {
    groups_[at(shown_)].OutputState = state;
    show_state();
    if (state == GroupOff)
        switch_off();
    else
        enable_members();
}

void AlarmGroups::cmdSelectAll_Click() {
    trapped(failures_, "frmGroup/cmdSelectAll_Click", [&] {
        for (auto* boxes : {&screen.chkHi, &screen.chkLow})
            for (CheckBox& box : *boxes)
                if (box.enabled) box.checked = true;
    });
}

void AlarmGroups::cmdClearAll_Click() {
    trapped(failures_, "frmGroup/cmdClearAll_Click", [&] { clear_boxes(); });
}

void AlarmGroups::clear_boxes() {
    for (auto* boxes : {&screen.chkHi, &screen.chkLow})
        for (CheckBox& box : *boxes) box.checked = false;
}

void AlarmGroups::save_shown() {
    AlarmGroup& group = groups_[at(shown_)];
    for (int i = 0; i < AlarmGroupChannels; ++i) {
        group.High[at(i)] = screen.chkHi[at(i)].checked ? 1 : 0;
        group.Low[at(i)] = screen.chkLow[at(i)].checked ? 1 : 0;
    }
}

void AlarmGroups::store_group(int slot) {
    AlarmGroup& group = groups_[at(slot)];
    if (!has_members(group) && group.OutputState != GroupOff) {
        dialogs_.message_box(group_name(slot) + " is empty.\nThe alarm group will be disabeld.",
                             box::Exclamation, ProgramName);
        group.OutputState = GroupOff;
    }
    store(pod_.AlarmGroup[at(slot)], group);
}

bool AlarmGroups::differs(int slot) const {
    return groups_[at(slot)] != pod_.AlarmGroup[at(slot)];
}

bool AlarmGroups::keep_other(int slot) {
    return dialogs_.message_box(group_name(slot) + " has also changed.\n\nKeep changes?",
                                box::YesNo | box::Exclamation, ProgramName) == Answer::Yes;
}

void AlarmGroups::cmdOK_Click() {
    trapped(failures_, "frmGroup/cmdOK_Click", [&] {
        save_shown();
        if (differs(shown_)) store_group(shown_);
        const int other = 1 - shown_;
        if (differs(other) && keep_other(other)) store_group(other);
        close();
    });
}

}  // namespace kavorix
