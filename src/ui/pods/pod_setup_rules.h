#pragma once

// The rules that keep a pod's configuration consistent while it is edited: what a pod type, a
// channel or a mode does to the lists that are offered, to the fields that can be used and to the
// stored values. They work on the control record and on the working copy alone.

#include <cstdint>
#include <span>

#include "model/catalogue.h"
#include "model/runtime.h"
#include "ui/pods/pod_setup_screen.h"

namespace kavorix {

// Remembers that a group's state is not known: the next call for the group acts.
inline constexpr std::int16_t GroupUnknown = 99;

// Time-out lists with (1) and without (2) the two long time-outs.
inline constexpr std::int16_t LongTimeouts = 1;
inline constexpr std::int16_t ShortTimeouts = 2;

// The editing state; flags are 1 or 0 but for GroupUnknown.
struct PodSetupState {
    std::int16_t selected_pod = 0;      // index 0..49
    std::int16_t pod_passed = 0;        // 1: opened for a pod, 0: the operator chooses it here
    std::int16_t selected_type = 0;     // type number of the type selector
    std::int16_t selected_channel = 0;  // slot
    std::int16_t current_mode = 0;      // of the selected channel, as last applied
    std::int16_t dialog_changed = 0;
    std::int16_t mode_list_digital = 0;  // list of channels 19 and 20, or "Switch Output" of an 8S
    std::int16_t timeout_variant = ShortTimeouts;
    // Which groups of fields are enabled.
    std::int16_t analog_on = GroupUnknown;
    std::int16_t thermo_on = GroupUnknown;
    std::int16_t strain_on = GroupUnknown;
    std::int16_t digital_on = GroupUnknown;
    std::int16_t channel_off = GroupUnknown;

    void forget_groups() {
        analog_on = thermo_on = strain_on = digital_on = channel_off = GroupUnknown;
    }
};

class PodSetupRules {
  public:
    // All of it outlives the rules.
    PodSetupRules(PodSetupScreen& screen, PodConfigs& working_copy, const PodStatuses& status)
        : screen_(screen), working_copy_(working_copy), status_(status) {}

    PodSetupState state;

    PodConfig& pod() { return working_copy_[at(state.selected_pod)]; }
    const PodConfig& pod() const { return working_copy_[at(state.selected_pod)]; }
    ChannelConfig& channel() { return pod().Channel[at(state.selected_channel)]; }
    // What the pod of this number last said.
    const PodStatus& status() const { return status_[at(state.selected_pod)]; }

    // Applies the selected type. A record of another type is reset, all channels unused; the pod is
    // armed; the first channel is selected.
    void set_ZAV_type();
    // Rebuilds the mode list for the selected channel and selects its stored mode.
    void change_chan_no();
    // Rebuilds the range list and switches the groups of fields for the selected mode. Mode 0
    // clears the channel.
    void change_channel_mode();
    // Selects a channel of the list and shows it. A channel that the one before it uses, too, is
    // shown as in use.
    void select_channel(int slot);

    // The steps that these are made of.
    void set_common_combo();  // once, when the dialog opens
    void set_no_device();
    void set_check_items(std::int16_t type);
    void set_channels(int count);
    void set_channel_mode(std::int16_t type);
    void set_scan_period();
    void set_timeout();
    void set_analog_on();
    void set_analog_off();
    void set_thermo_on();
    void set_thermo_off();
    void set_strain_on();
    void set_strain_off();
    void set_digital_on(std::int16_t type);
    void set_digital_off();

  private:
    void apply_type(std::int16_t type);
    void build_universal_modes();
    void build_switch_modes();
    void remove_six_pole_modes();
    void show_paired_channel();
    void show_ranges();
    void show_used_channel();
    void show_unused_channel();
    void switch_universal_fields();
    void switch_digital_group();
    void show_sampling();
    void show_watchdogs();
    void clear_watchdogs();

    PodSetupScreen& screen_;
    PodConfigs& working_copy_;
    const PodStatuses& status_;
};

}  // namespace kavorix
