#include "ui/pods/pod_setup.h"

#include <algorithm>
#include <utility>

#include "base/program_name.h"
#include "base/text.h"
#include "model/channel_rules.h"
#include "ui/pods/alarm_groups.h"
#include "ui/pods/alarm_limits.h"
#include "ui/pods/channel_view.h"
#include "ui/pods/copy_channel.h"
#include "ui/pods/field_checks.h"
#include "ui/pods/post_linearisation.h"
#include "ui/pods/strain_initialisation.h"
#include "ui/pods/unit_conversion.h"
#include "ui/pods/user_thermocouple.h"

namespace kavorix {

namespace {

constexpr int SetupModeEntry = 1;  // the mode that a set-up gives stands second in every list

}  // namespace

PodSetup::PodSetup(const Surroundings& surroundings)
    : with_(surroundings),
      rules_(screen, surroundings.configuration.ZavConfigCopy, surroundings.run_time.Status) {}

void PodSetup::run(int pod) {
    Form_Load(pod);
    with_.windows.show_pod_setup(*this);
    if (accepted_ && with_.run_time.Options.TransmitReminder)
        with_.dialogs.message_box(
            "The new configuration must now be transmitted to the ZAV by clicking the 'Transmit' "
            "button. To disable this reminder toggle 'Transmit Config Reminder' in the 'Options' "
            "menu.",
            box::Information, "Configuration Changed");
}

void PodSetup::Form_Load(int pod) {
    trapped(with_.failures, "frmConfigZAV/Form_Load", [&] {
        PodConfigs& copy = with_.configuration.ZavConfigCopy;
        copy = with_.configuration.ZavConfig;
        for (PodConfig& record : copy) restore_pairs(record);
        rules_.state = PodSetupState{};
        closed_ = accepted_ = false;
        undo_.clear();
        redo_.clear();
        disable_everything();
        fill_selectors();
        rules_.state.pod_passed = pod == NoPod ? 0 : 1;
        rules_.state.selected_pod = static_cast<std::int16_t>(pod == NoPod ? 0 : pod);
        screen.cboZAVNo.index = rules_.state.selected_pod;
        screen.cboZAVNo.enabled = pod == NoPod;
        rules_.set_common_combo();
        const std::int16_t type = type_to_open();
        if (type != rules_.pod().TypeCode && rules_.pod().NumChannels == 0) {
            default_ZAV_config(rules_.pod(), type, 0);
            rules_.state.dialog_changed = 1;
        }
        select_type(type);
        screen.cboZAVType.enabled = true;
        screen.lblZAVType.enabled = true;
        screen.lblZAVNo.enabled = true;
        rules_.set_ZAV_type();
        show_steps();
    });
}

void PodSetup::disable_everything() {
    screen.each_setting([](std::string_view, auto& control) { control.enabled = false; });
}

void PodSetup::fill_selectors() {
    screen.cboZAVNo.entries.clear();
    for (int pod = 0; pod < MaxZavs; ++pod)
        screen.cboZAVNo.entries.push_back({std::to_string(pod + 1), pod});
    screen.cboZAVType.entries.clear();
    for (const PodTypeRow& row : pod_types())
        screen.cboZAVType.entries.push_back({std::string(row.description), row.type});
}

// A pod that was passed and has no configuration yet starts with the type that answers there.
std::int16_t PodSetup::type_to_open() const {
    const PodConfig& record = rules_.pod();
    const PodStatus& status = rules_.status();
    if (rules_.state.pod_passed == 1 && status.connected() && record.TypeCode == NoDevice)
        return GetZAVTypeCode(status.type_code());
    return record.TypeCode;
}

void PodSetup::select_type(std::int16_t type) {
    screen.cboZAVType.select_code(type);
    rules_.state.selected_type = type;
}

void PodSetup::cboZAVNo_Click() {
    handler("cboZAVNo_Click", [&] {
        if (!screen.cboZAVNo.enabled || screen.cboZAVNo.index == rules_.state.selected_pod) return;
        rules_.state.selected_pod = static_cast<std::int16_t>(screen.cboZAVNo.index);
        rules_.state.selected_channel = 0;
        select_type(rules_.pod().TypeCode);
        rules_.set_ZAV_type();
    });
}

void PodSetup::cboZAVType_Click() {
    handler("cboZAVType_Click", [&] {
        const auto type = static_cast<std::int16_t>(screen.cboZAVType.code());
        if (!screen.cboZAVType.enabled || type == rules_.pod().TypeCode) return;
        rules_.state.selected_type = type;
        warn_of_connected_type();
        mark_changed();
        rules_.state.forget_groups();
        rules_.set_ZAV_type();
    });
}

void PodSetup::warn_of_connected_type() {
    const PodStatus& status = rules_.status();
    if (!status.connected() || status.type_code() == pod_type(rules_.state.selected_type).code)
        return;
    const PodTypeRow& type = pod_type(GetZAVTypeCode(status.type_code()));
    const std::string_view name = type.type == NoDevice ? status.type_code() : type.description;
    with_.dialogs.beep();
    with_.dialogs.message_box("Warning. ZAV number " + two_digits(rules_.state.selected_pod + 1) +
                                  " has an ZAV of type " + std::string(trim(name)) + " connected.",
                              box::Information, ProgramName);
}

void PodSetup::chkSetup_Click() {
    handler("chkSetup_Click", [&] {
        PodConfig& pod = rules_.pod();
        if (!screen.chkSetup.enabled || screen.chkSetup.checked == (pod.Setup == 1)) return;
        store(pod.Setup, static_cast<std::int16_t>(screen.chkSetup.checked ? 1 : 0));
        if (pod.Setup == 0) return;
        default_ZAV_config(pod, rules_.state.selected_type, 1);
        pod.SixPole.fill(0);  // none of the modes that the channels now have is one of a pair
        pod.Setup = 1;
        rules_.set_ZAV_type();
        screen.cboChanMode.index = SetupModeEntry;
        screen.chkArm.checked = true;
    });
}

void PodSetup::check_box(const CheckBox& box, std::int16_t& flag) {
    if (box.enabled) store(flag, static_cast<std::int16_t>(box.checked ? 1 : 0));
}

void PodSetup::chkArm_Click() {
    handler("chkArm_Click", [&] { check_box(screen.chkArm, rules_.pod().Arm); });
}

void PodSetup::chkCalOn_Click() {
    handler("chkCalOn_Click", [&] { check_box(screen.chkCalOn, rules_.pod().CalOn); });
}

void PodSetup::chkContScan_Click() {
    handler("chkContScan_Click", [&] {
        check_box(screen.chkContScan, rules_.pod().ContScan);
        if (!screen.chkContScan.enabled || !screen.chkContScan.checked) return;
        screen.chkArm.checked = true;
        check_box(screen.chkArm, rules_.pod().Arm);
    });
}

void PodSetup::chkDegF_Click() {
    handler("chkDegF_Click", [&] {
        check_box(screen.chkDegF, rules_.pod().DegF);
        // A temperature that the other unit does not allow is to be entered anew.
        const auto degrees = single_of(screen.txtExtTemp.text);
        if (screen.txtExtTemp.enabled && degrees && !limit_broken(*degrees).empty())
            screen.focus = "txtExtTemp";
    });
}

void PodSetup::chkOpenTC_Click() {
    handler("chkOpenTC_Click", [&] { check_box(screen.chkOpenTC, rules_.pod().OpenTC); });
}

void PodSetup::chkHWWatch_Click() {
    handler("chkHWWatch_Click", [&] { check_box(screen.chkHWWatch, rules_.pod().HWWatch); });
}

void PodSetup::chkSWWatch_Click() {
    handler("chkSWWatch_Click", [&] {
        if (!screen.chkSWWatch.enabled) return;
        check_box(screen.chkSWWatch, rules_.pod().SWWatch);
        TextField& time = screen.txtSWWatchTime;
        time.enabled = screen.chkSWWatch.checked;
        time.text = time.enabled ? std::to_string(rules_.pod().SWWatchTime) : "";
        if (time.enabled) screen.focus = "txtSWWatchTime";
    });
}

void PodSetup::cmdDefault_Click() {
    handler("cmdDefault_Click", [&] {
        if (!screen.cmdDefault.enabled) return;
        default_ZAV_config(rules_.pod(), NoDevice, 0);
        const PodStatus& status = rules_.status();
        select_type(status.connected() ? GetZAVTypeCode(status.type_code())
                                       : std::int16_t{NoDevice});
        mark_changed();
        rules_.set_ZAV_type();
    });
}

void PodSetup::list_choice(const ListBox& list, std::int16_t& value, int chosen) {
    if (list.enabled && list.index >= 0) store(value, static_cast<std::int16_t>(chosen));
}

void PodSetup::cboScanPeriod_Click() {
    handler("cboScanPeriod_Click", [&] {
        list_choice(screen.cboScanPeriod, rules_.pod().ScanPeriod, screen.cboScanPeriod.code());
    });
}

void PodSetup::cboRange_Click() {
    handler("cboRange_Click",
            [&] { list_choice(screen.cboRange, rules_.channel().Range, screen.cboRange.code()); });
}

void PodSetup::cboIntegration_Click() {
    handler("cboIntegration_Click", [&] {
        list_choice(screen.cboIntegration, rules_.pod().Integration, screen.cboIntegration.index);
    });
}

void PodSetup::cboSampleRate_Click() {
    handler("cboSampleRate_Click", [&] {
        list_choice(screen.cboSampleRate,
                    rules_.pod().SampleRate[at(rules_.state.selected_channel)],
                    screen.cboSampleRate.index);
    });
}

void PodSetup::cboTimeout_Click() {
    handler("cboTimeout_Click", [&] {
        list_choice(screen.cboTimeout, rules_.pod().Timeout[at(rules_.state.selected_channel)],
                    screen.cboTimeout.code());
    });
}

void PodSetup::cboChannel_Click() {
    handler("cboChannel_Click", [&] {
        const int slot = screen.cboChannel.index;
        if (!screen.cboChannel.enabled || slot < 0 || slot == rules_.state.selected_channel) return;
        rules_.select_channel(slot);
    });
}

void PodSetup::cboChanMode_Click() {
    handler("cboChanMode_Click", [&] {
        const auto mode = static_cast<std::int16_t>(screen.cboChanMode.code());
        if (!screen.cboChanMode.enabled || screen.cboChanMode.index < 0) return;
        if (mode == rules_.channel().Mode) return;
        mark_changed();
        rules_.channel().Mode = mode;
        rules_.channel().Range = 0;
        rules_.change_channel_mode();
        if (can_start_pair(rules_.pod(), rules_.state.selected_channel)) select_pairing(mode);
    });
}

void PodSetup::select_pairing(std::int16_t mode) {
    PodConfig& pod = rules_.pod();
    const int slot = rules_.state.selected_channel;
    if (!is_six_pole_mode(mode)) {
        pod.SixPole[at(slot)] = 0;
        return;
    }
    const std::string number = std::to_string(slot + 1);
    if (pod.Channel[at(slot + 1)].Mode > 0 &&
        with_.dialogs.message_box(
            "Setting this channel to 6 pole mode will overwrite the current settings for channel " +
                std::to_string(slot + 2) + ". Are you sure you wish to set channel " + number +
                " to 6 pole mode?",
            box::YesNo | box::Question, "6 Pole Setup") != Answer::Yes) {
        pod.SixPole[at(slot)] = 0;
        screen.cboChanMode.index = 0;
        rules_.change_channel_mode();
        return;
    }
    make_pair(pod, slot);
}

template <class Dialog>
void PodSetup::run_dialog(Dialog& dialog, void (PodSetupWindows::*show)(Dialog&)) {
    (with_.windows.*show)(dialog);
    if (dialog.changed()) mark_changed();
}

void PodSetup::cmdCopyChan_Click() {
    handler("cmdCopyChan_Click", [&] {
        if (!screen.cmdCopyChan.enabled) return;
        CopyChannel dialog(rules_.pod(), rules_.state.selected_channel, with_.dialogs,
                           with_.failures);
        run_dialog(dialog, &PodSetupWindows::show_copy_channel);
        // The selected channel may be half of a pair no longer.
        if (dialog.changed()) rules_.select_channel(rules_.state.selected_channel);
    });
}

void PodSetup::cmdViewChans_Click() {
    handler("cmdViewChans_Click", [&] {
        if (!screen.cmdViewChans.enabled) return;
        ChannelView view(rules_.pod(), rules_.state.selected_pod + 1);
        with_.windows.show_channel_view(view);
    });
}

void PodSetup::cmdMx_c_Click() {
    handler("cmdMx_c_Click", [&] {
        if (!screen.cmdMx_c.enabled) return;
        UnitConversion dialog(rules_.pod(), rules_.state.selected_channel, with_.dialogs,
                              with_.failures);
        run_dialog(dialog, &PodSetupWindows::show_unit_conversion);
    });
}

void PodSetup::cmdPostLin_Click() {
    handler("cmdPostLin_Click", [&] {
        if (!screen.cmdPostLin.enabled) return;
        PostLinearisation dialog(rules_.pod(), with_.dialogs, with_.failures);
        run_dialog(dialog, &PodSetupWindows::show_post_linearisation);
    });
}

void PodSetup::cmdCoeff_Click() {
    handler("cmdCoeff_Click", [&] {
        if (!screen.cmdCoeff.enabled) return;
        UserThermocouple dialog(rules_.pod(), rules_.state.current_mode, with_.dialogs,
                                with_.failures);
        run_dialog(dialog, &PodSetupWindows::show_user_thermocouple);
    });
}

void PodSetup::cmdAlarm_Click() {
    handler("cmdAlarm_Click", [&] {
        if (!screen.cmdAlarm.enabled) return;
        AlarmLimits dialog(rules_.pod(), rules_.state.selected_channel, with_.dialogs,
                           with_.failures);
        run_dialog(dialog, &PodSetupWindows::show_alarm_limits);
    });
}

void PodSetup::cmdGroup_Click() {
    handler("cmdGroup_Click", [&] {
        if (!screen.cmdGroup.enabled) return;
        AlarmGroups dialog(rules_.pod(), with_.dialogs, with_.failures);
        run_dialog(dialog, &PodSetupWindows::show_alarm_groups);
    });
}

void PodSetup::cmdInitialise_Click() {
    handler("cmdInitialise_Click", [&] {
        if (!screen.cmdInitialise.enabled) return;
        StrainInitialisation initialisation(
            with_.driver, with_.dialogs, with_.run_time, Pod::at_index(rules_.state.selected_pod),
            rules_.state.selected_channel + 1, with_.configuration.Interface.CardHandle);
        const auto reply = initialisation.run();
        if (!reply) return;
        StrainSettings& strain = rules_.pod().Strain[at(rules_.state.selected_channel)];
        store(strain.Offset, reply->offset);
        store(strain.InitialVolt, reply->initial_volt);
        screen.txtOffset.text = six_decimals(strain.Offset);
        screen.txtInitialVolt.text = six_decimals(strain.InitialVolt);
    });
}

void PodSetup::accept_changes() {
    with_.configuration.ZavConfig = with_.configuration.ZavConfigCopy;
    rules_.state.dialog_changed = 0;
    if (with_.accepted) with_.accepted();
}

void PodSetup::cmdOK_Click() {
    trapped(with_.failures, "frmConfigZAV/cmdOK_Click", [&] {
        if (rules_.state.dialog_changed == 1) {
            with_.configuration.ConfigChanged = 1;
            accept_changes();
        }
        with_.message_line.DispMsg(" Configuration Changed - must be Transmitted to take Effect",
                                   Severity::Progress);
        accepted_ = true;
        closed_ = true;
    });
}

void PodSetup::unload_request() {
    trapped(with_.failures, "frmConfigZAV/Form_QueryUnload", [&] {
        if (rules_.state.dialog_changed == 1) {
            const Answer answer =
                with_.dialogs.message_box("Configuration changed.\n\nKeep changes?",
                                          box::YesNoCancel | box::Question, ProgramName);
            if (answer == Answer::Cancel) return;
            if (answer == Answer::Yes) accept_changes();
        }
        closed_ = true;
    });
}

void setup_selected_pod(const PodSetup::Surroundings& surroundings) {
    const LinkState& link = surroundings.run_time.Link;
    if (link.NumSelected() > 1) {
        refuse(surroundings.dialogs, "More than 1 ZAV Icon Selected for Configuration");
        return;
    }
    PodSetup dialog(surroundings);
    dialog.run(link.ZavSelected.empty() ? PodSetup::NoPod : (*link.ZavSelected.begin()).index());
}

}  // namespace kavorix
