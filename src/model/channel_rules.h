#pragma once

// What keeps the channels of a pod record consistent: channels that are not in use, pairs of
// channels that share a 6-pole measurement, and the membership of alarms in the alarm groups. Slots
// are channel numbers - 1.

#include "model/records.h"

namespace kavorix {

// Puts a slot into the state of a channel that is not in use: mode 0, no label, no scaling, no
// alarms (and none in a group), no strain settings, default sample rate and time-out.
void clear_channel(PodConfig& pod, int slot);

// Switches both alarms of a slot off and takes them out of the groups.
void switch_alarms_off(PodConfig& pod, int slot);

// Takes the alarms of a slot that are not enabled out of both groups. A group that so loses its
// last member is switched off; one that had none before is left alone.
void leave_groups(PodConfig& pod, int slot);

// Whether any alarm belongs to a group.
bool has_members(const AlarmGroup& group);

// The slots of a universal pod that can be one half of a 6-pole measurement: the odd channel
// numbers 1..17 start one.
bool can_start_pair(const PodConfig& pod, int slot);

// Whether the channel before this one is set to 6-pole mode and so uses this one, too.
bool is_paired(const PodConfig& pod, int slot);

// Sets the odd channel `slot` to 6-pole mode, which clears the channel after it.
void make_pair(PodConfig& pod, int slot);

// SixPole is not kept in files: sets it where a four- or three-terminal channel stands before a
// channel that is not in use.
void restore_pairs(PodConfig& pod);

// Whether the settings of one channel can be given to another of the same pod: not to itself, not
// across the border between the analog channels 1..18 and the digital channels of a universal pod,
// not where the mode is not offered, not to a channel that is half of another one's measurement.
bool can_copy_channel(const PodConfig& pod, int source, int target);

// Gives them, as far as the type has them; nothing where can_copy_channel() says no.
void copy_channel(PodConfig& pod, int source, int target);

}  // namespace kavorix
