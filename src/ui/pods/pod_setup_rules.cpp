#include "ui/pods/pod_setup_rules.h"

#include <string>

#include "base/numbers.h"
#include "base/text.h"
#include "model/channel_rules.h"
#include "ui/pods/field_checks.h"

namespace kavorix {

namespace {

constexpr std::size_t SwitchOutputEntry = 3;  // the fourth of an 8S pod's mode list
constexpr int FirstSwitchOutputSlot = 28;     // channel 29
constexpr int FirstDigitalSlot = 18;          // channel 19 of a universal pod
constexpr std::size_t FirstLongTimeout = 5;   // position in the time-out list

ListEntry entry_of(const Option& option) {
    return {std::string(option.text), option.code};
}

void fill(ListBox& list, std::span<const Option> options) {
    list.entries.clear();
    for (const Option& option : options) list.entries.push_back(entry_of(option));
    list.index = -1;
}

void empty(ListBox& list) {
    list.entries.clear();
    list.index = -1;
}

void select_code_or_first(ListBox& list, int code) {
    if (!list.select_code(code)) list.index = list.entries.empty() ? -1 : 0;
}

void select_position(ListBox& list, int position) {
    list.index = position >= 0 && position < static_cast<int>(list.entries.size()) ? position : -1;
}

void unselect_and_disable(ListBox& list, Label& label) {
    list.index = -1;
    list.enabled = false;
    label.enabled = false;
}

void enable(ListBox& list, Label& label) {
    list.enabled = true;
    label.enabled = true;
}

void empty_and_disable(TextField& field) {
    field.text.clear();
    field.enabled = false;
}

void show(TextField& field, std::string text) {
    field.text = std::move(text);
    field.enabled = true;
}

void clear_and_disable(CheckBox& box) {
    box.checked = false;
    box.enabled = false;
}

void show(CheckBox& box, bool checked) {
    box.checked = checked;
    box.enabled = true;
}

}  // namespace

void PodSetupRules::set_ZAV_type() {
    if (state.selected_type != pod().TypeCode) default_ZAV_config(pod(), state.selected_type, 0);
    // What belongs to the channel of another pod or type is not offered until a channel asks for
    // it.
    for (Button* button :
         {&screen_.cmdCoeff, &screen_.cmdAlarm, &screen_.cmdGroup, &screen_.cmdPostLin})
        button->enabled = false;
    state.selected_channel = 0;
    state.mode_list_digital = 0;
    if (state.selected_type == NoDevice)
        set_no_device();
    else
        apply_type(state.selected_type);
}

void PodSetupRules::apply_type(std::int16_t type) {
    const bool universal = is_universal_type(type);
    if (type == Type8R && state.timeout_variant == LongTimeouts) set_timeout();
    set_check_items(type);
    if (type == Type7S)
        set_strain_off();
    else if (is_analog_type(type))
        set_thermo_off();
    set_scan_period();
    set_channels(channel_count(type));
    set_channel_mode(type);
    change_chan_no();
    if (is_analog_type(type))
        set_analog_on();
    else
        set_analog_off();
    if (type == Type7S || type == Type8R || type == Type8S) set_thermo_off();
    if (universal && state.timeout_variant == ShortTimeouts) set_timeout();
    if (type == Type8S)
        set_digital_on(type);
    else if (type != Type8R)
        set_digital_off();
    if (type != Type7S) set_strain_off();
}

void PodSetupRules::set_no_device() {
    screen_.cboScanPeriod.index = -1;
    screen_.cboScanPeriod.enabled = false;
    screen_.lblScanPeriod.enabled = false;
    set_analog_off();
    set_thermo_off();
    set_digital_off();
    set_strain_off();
    for (CheckBox* box :
         {&screen_.chkSetup, &screen_.chkArm, &screen_.chkCalOn, &screen_.chkContScan})
        clear_and_disable(*box);
    if (state.channel_off != 1) {
        screen_.fmeChannels.enabled = false;
        for (ListBox* list : {&screen_.cboChannel, &screen_.cboChanMode, &screen_.cboRange})
            list->enabled = false;
        for (Label* label : {&screen_.lblChannel, &screen_.lblChanMode, &screen_.lblRange,
                             &screen_.lblLabel, &screen_.lblUnit})
            label->enabled = false;
        for (Button* button : {&screen_.cmdCopyChan, &screen_.cmdViewChans, &screen_.cmdMx_c})
            button->enabled = false;
        state.channel_off = 1;
    }
    for (ListBox* list : {&screen_.cboChannel, &screen_.cboChanMode, &screen_.cboRange})
        empty(*list);
    empty_and_disable(screen_.txtLabel);
    empty_and_disable(screen_.txtUnit);
    default_ZAV_config(pod(), NoDevice, 0);
    state.current_mode = 0;
}

void PodSetupRules::set_check_items(std::int16_t type) {
    pod().Arm = 1;
    show(screen_.chkArm, true);
    show(screen_.chkSetup, pod().Setup == 1);
    if (is_analog_type(type))
        show(screen_.chkCalOn, pod().CalOn == 1);
    else
        clear_and_disable(screen_.chkCalOn);
    show(screen_.chkContScan, pod().ContScan == 1);
    screen_.cmdDefault.enabled = true;
}

void PodSetupRules::set_channels(int count) {
    screen_.fmeChannels.enabled = true;
    enable(screen_.cboChannel, screen_.lblChannel);
    enable(screen_.cboChanMode, screen_.lblChanMode);
    screen_.cmdCopyChan.enabled = true;
    screen_.cmdViewChans.enabled = true;
    state.channel_off = 0;
    screen_.cboChannel.entries.clear();
    for (int slot = 0; slot < count; ++slot)
        screen_.cboChannel.entries.push_back({std::to_string(slot + 1), slot});
    screen_.cboChannel.index = 0;
    pod().NumChannels = static_cast<std::int16_t>(count);
    empty(screen_.cboChanMode);
    empty(screen_.cboRange);
    screen_.txtLabel.text.clear();
    screen_.txtUnit.text.clear();
}

void PodSetupRules::set_channel_mode(std::int16_t type) {
    fill(screen_.cboChanMode, modes(type, 1));
}

void PodSetupRules::set_scan_period() {
    if (state.pod_passed == 1 && !offers_scan_period(status().ident(), state.selected_type)) {
        unselect_and_disable(screen_.cboScanPeriod, screen_.lblScanPeriod);
        return;
    }
    select_code_or_first(screen_.cboScanPeriod, pod().ScanPeriod);
    enable(screen_.cboScanPeriod, screen_.lblScanPeriod);
}

void PodSetupRules::set_common_combo() {
    fill(screen_.cboIntegration, integration_times());
    fill(screen_.cboSampleRate, sample_rates());
    fill(screen_.cboScanPeriod, scan_periods());
    fill(screen_.cboTimeout, timeouts(false));
    state.timeout_variant = ShortTimeouts;
    unselect_and_disable(screen_.cboIntegration, screen_.lblIntegration);
    unselect_and_disable(screen_.cboSampleRate, screen_.lblSampleRate);
    unselect_and_disable(screen_.cboScanPeriod, screen_.lblScanPeriod);
    unselect_and_disable(screen_.cboTimeout, screen_.lblTimeout);
}

void PodSetupRules::set_timeout() {
    auto& entries = screen_.cboTimeout.entries;
    if (is_universal_type(state.selected_type)) {
        for (const Option& option : timeouts(true).subspan(FirstLongTimeout))
            entries.push_back(entry_of(option));
        state.timeout_variant = LongTimeouts;
    } else {
        entries.resize(FirstLongTimeout);
        state.timeout_variant = ShortTimeouts;
    }
    unselect_and_disable(screen_.cboTimeout, screen_.lblTimeout);
}

void PodSetupRules::select_channel(int slot) {
    state.selected_channel = static_cast<std::int16_t>(slot);
    screen_.cboChannel.index = slot;
    if (is_universal_type(state.selected_type)) {
        const bool analog = slot < FirstDigitalSlot;
        screen_.cmdPostLin.enabled = analog;
        screen_.cmdAlarm.enabled = analog;
    }
    if (is_paired(pod(), slot))
        show_paired_channel();
    else
        change_chan_no();
}

void PodSetupRules::show_paired_channel() {
    screen_.cboChanMode.entries = {
        {"In Use (Channel " + std::to_string(state.selected_channel) + " is 6 pole)", 0}};
    screen_.cboChanMode.index = 0;
    // As for any channel that is not in use. The fields would otherwise keep showing the settings
    // of the channel selected before, and leaving one would store them here.
    change_channel_mode();
}

void PodSetupRules::change_chan_no() {
    const bool universal = is_universal_type(state.selected_type);
    if (universal)
        build_universal_modes();
    else if (state.selected_type == Type8S)
        build_switch_modes();
    select_code_or_first(screen_.cboChanMode, channel().Mode);
    change_channel_mode();
    if (universal && state.selected_channel < FirstDigitalSlot && state.selected_channel % 2 != 0)
        remove_six_pole_modes();
}

void PodSetupRules::build_universal_modes() {
    const bool digital = state.selected_channel >= FirstDigitalSlot;
    fill(screen_.cboChanMode, modes(state.selected_type, digital ? FirstDigitalSlot + 1 : 1));
    state.mode_list_digital = digital ? 1 : 0;
}

void PodSetupRules::build_switch_modes() {
    auto& entries = screen_.cboChanMode.entries;
    const bool offered = state.selected_channel >= FirstSwitchOutputSlot;
    if (!offered && state.mode_list_digital == 1) {
        entries.resize(SwitchOutputEntry);
    } else if (offered && state.mode_list_digital == 0) {
        entries.push_back({std::string(mode_text(SwitchOutputMode)), SwitchOutputMode});
    }
    state.mode_list_digital = offered ? 1 : 0;
}

// A stored mode that an even channel cannot have stays stored; the list then has nothing selected.
void PodSetupRules::remove_six_pole_modes() {
    ListBox& list = screen_.cboChanMode;
    for (int i = static_cast<int>(list.entries.size()) - 1; i >= 1; --i) {
        if (!is_six_pole_mode(static_cast<std::int16_t>(list.entries[at(i)].code))) continue;
        list.entries.erase(list.entries.begin() + i);
        if (i == list.index)
            list.index = -1;
        else if (i < list.index)
            --list.index;
    }
}

void PodSetupRules::change_channel_mode() {
    state.current_mode = static_cast<std::int16_t>(screen_.cboChanMode.code());
    const std::int16_t mode = state.current_mode;
    const std::int16_t type = state.selected_type;
    show_ranges();
    if (mode != 0)
        show_used_channel();
    else
        show_unused_channel();
    if (is_strain_mode(mode))
        set_strain_on();
    else
        set_strain_off();
    if (is_thermocouple_mode(mode) && is_analog_type(type) && type != Type7S)
        set_thermo_on();
    else
        set_thermo_off();
    if (is_universal_type(type)) switch_universal_fields();
    if (is_universal_type(type) || type == Type8R) switch_digital_group();
}

void PodSetupRules::show_ranges() {
    ListBox& list = screen_.cboRange;
    fill(list, ranges(state.current_mode, state.selected_type, state.selected_channel + 1));
    unselect_and_disable(list, screen_.lblRange);
    if (list.entries.empty()) return;
    enable(list, screen_.lblRange);
    select_code_or_first(list, channel().Range);
}

void PodSetupRules::show_used_channel() {
    screen_.lblLabel.enabled = true;
    screen_.lblUnit.enabled = true;
    show(screen_.txtLabel, std::string(trim(channel().Label)));
    show(screen_.txtUnit, std::string(trim(channel().Unit)));
    screen_.cmdMx_c.enabled = true;
}

void PodSetupRules::show_unused_channel() {
    screen_.lblLabel.enabled = false;
    screen_.lblUnit.enabled = false;
    empty_and_disable(screen_.txtLabel);
    empty_and_disable(screen_.txtUnit);
    for (Button* button : {&screen_.cmdMx_c, &screen_.cmdPostLin, &screen_.cmdCoeff,
                           &screen_.cmdAlarm, &screen_.cmdGroup})
        button->enabled = false;
    clear_channel(pod(), state.selected_channel);
}

void PodSetupRules::switch_universal_fields() {
    const std::int16_t mode = state.current_mode;
    if (mode != 0 && state.selected_channel < FirstDigitalSlot) {
        set_analog_on();
        screen_.cmdAlarm.enabled = true;
        screen_.cmdMx_c.enabled = true;
        screen_.cmdPostLin.enabled = true;
    } else {
        set_analog_off();
    }
    screen_.cmdCoeff.enabled = mode == UserTable1Mode || mode == UserTable2Mode;
    screen_.cmdGroup.enabled = true;
    if (mode != DigitalStatus) return;
    screen_.cmdAlarm.enabled = false;
    screen_.cmdMx_c.enabled = false;
    screen_.cmdPostLin.enabled = false;
    switch_alarms_off(pod(), state.selected_channel);
}

void PodSetupRules::switch_digital_group() {
    const bool digital_pod = state.selected_type == Type8R;
    if (state.current_mode != 0 && (digital_pod || has_sampling(state.current_mode))) {
        state.digital_on = 1;
        screen_.fmeDigitalZAVs.enabled = true;
        show_sampling();
        if (!digital_pod) show_watchdogs();
    } else {
        set_digital_off();
    }
    if (digital_pod) clear_watchdogs();
}

void PodSetupRules::show_sampling() {
    enable(screen_.cboSampleRate, screen_.lblSampleRate);
    enable(screen_.cboTimeout, screen_.lblTimeout);
    const auto slot = at(state.selected_channel);
    select_position(screen_.cboSampleRate, pod().SampleRate[slot]);
    select_code_or_first(screen_.cboTimeout, pod().Timeout[slot]);
}

void PodSetupRules::show_watchdogs() {
    show(screen_.chkHWWatch, pod().HWWatch == 1);
    const bool watching = pod().SWWatch != 0;
    show(screen_.chkSWWatch, watching);
    if (watching)
        show(screen_.txtSWWatchTime, std::to_string(pod().SWWatchTime));
    else
        empty_and_disable(screen_.txtSWWatchTime);
}

void PodSetupRules::clear_watchdogs() {
    clear_and_disable(screen_.chkHWWatch);
    clear_and_disable(screen_.chkSWWatch);
    empty_and_disable(screen_.txtSWWatchTime);
}

void PodSetupRules::set_analog_on() {
    screen_.fmeAnalogZAVs.enabled = true;
    state.analog_on = 1;
    show(screen_.chkDegF, pod().DegF == 1);
    if (state.pod_passed == 1 && !offers_integration(status().ident(), state.selected_type)) {
        unselect_and_disable(screen_.cboIntegration, screen_.lblIntegration);
        return;
    }
    enable(screen_.cboIntegration, screen_.lblIntegration);
    select_position(screen_.cboIntegration, pod().Integration);
}

void PodSetupRules::set_analog_off() {
    if (state.analog_on == 0) return;
    state.analog_on = 0;
    unselect_and_disable(screen_.cboIntegration, screen_.lblIntegration);
    clear_and_disable(screen_.chkDegF);
    screen_.fmeAnalogZAVs.enabled = false;
}

void PodSetupRules::set_thermo_on() {
    screen_.fmeThermoZAVs.enabled = true;
    state.thermo_on = 1;
    screen_.cmdMx_c.enabled = false;
    screen_.cmdPostLin.enabled = false;
    const bool external = pod().AmbTemp == 0;
    screen_.optAmbTemp = {screen_.optAmbTemp.caption, !external};
    screen_.optExtTemp = {screen_.optExtTemp.caption, external};
    if (external)
        show(screen_.txtExtTemp, rounded_text(static_cast<double>(pod().ExtTemp)));
    else
        empty_and_disable(screen_.txtExtTemp);
    show(screen_.chkOpenTC, pod().OpenTC == 1);
}

void PodSetupRules::set_thermo_off() {
    if (state.thermo_on == 0) return;
    state.thermo_on = 0;
    screen_.optAmbTemp = {screen_.optAmbTemp.caption, false, false};
    screen_.optExtTemp = {screen_.optExtTemp.caption, false, false};
    empty_and_disable(screen_.txtExtTemp);
    clear_and_disable(screen_.chkOpenTC);
    screen_.fmeThermoZAVs.enabled = false;
    screen_.cmdCoeff.enabled = false;
}

void PodSetupRules::set_strain_on() {
    state.strain_on = 1;
    screen_.fmeStrain.enabled = true;
    const StrainSettings& strain = pod().Strain[at(state.selected_channel)];
    show(screen_.txtGaugeFactor, six_decimals(strain.GaugeFactor));
    show(screen_.txtOffset, six_decimals(strain.Offset));
    show(screen_.txtInitialVolt, six_decimals(strain.InitialVolt));
    for (Label* label : {&screen_.lblGaugeFactor, &screen_.lblOffset, &screen_.lblInitialVolt})
        label->enabled = true;
    screen_.cmdInitialise.enabled = true;
}

void PodSetupRules::set_strain_off() {
    if (state.strain_on == 0) return;
    state.strain_on = 0;
    for (TextField* field : {&screen_.txtGaugeFactor, &screen_.txtOffset, &screen_.txtInitialVolt})
        empty_and_disable(*field);
    for (Label* label : {&screen_.lblGaugeFactor, &screen_.lblOffset, &screen_.lblInitialVolt})
        label->enabled = false;
    screen_.cmdInitialise.enabled = false;
    screen_.fmeStrain.enabled = false;
}

void PodSetupRules::set_digital_on(std::int16_t type) {
    if (!supports_watchdogs(type)) return;
    state.digital_on = 1;
    screen_.fmeDigitalZAVs.enabled = true;
    unselect_and_disable(screen_.cboSampleRate, screen_.lblSampleRate);
    unselect_and_disable(screen_.cboTimeout, screen_.lblTimeout);
    show_watchdogs();
}

void PodSetupRules::set_digital_off() {
    if (state.digital_on == 0) return;
    state.digital_on = 0;
    unselect_and_disable(screen_.cboSampleRate, screen_.lblSampleRate);
    unselect_and_disable(screen_.cboTimeout, screen_.lblTimeout);
    clear_watchdogs();
    screen_.fmeDigitalZAVs.enabled = false;
}

}  // namespace kavorix
