#pragma once

// The pod configuration dialog over a station in virtual time, with an operator's hands: what an
// operator chooses or types goes into the record first, then the handler runs, as the windows do
// it.

#include <functional>
#include <string>
#include <vector>

#include "support/rig.h"
#include "ui/pods/alarm_groups.h"
#include "ui/pods/alarm_limits.h"
#include "ui/pods/channel_view.h"
#include "ui/pods/copy_channel.h"
#include "ui/pods/pod_setup.h"
#include "ui/pods/post_linearisation.h"
#include "ui/pods/unit_conversion.h"
#include "ui/pods/user_thermocouple.h"

namespace kavorix::test {

inline ShownBox refusal(std::string text) {
    return {std::move(text), box::Exclamation, "KAVORIX"};
}

// Runs what a test wants to be done in a dialog that was opened; without it the dialog is
// cancelled.
class OperatedWindows : public PodSetupWindows {
  public:
    std::function<void(PodSetup&)> pod_setup;
    std::function<void(CopyChannel&)> copy_channel;
    std::function<void(ChannelView&)> channel_view;
    std::function<void(UnitConversion&)> unit_conversion;
    std::function<void(PostLinearisation&)> post_linearisation;
    std::function<void(UserThermocouple&)> user_thermocouple;
    std::function<void(AlarmLimits&)> alarm_limits;
    std::function<void(AlarmGroups&)> alarm_groups;

    void show_pod_setup(PodSetup& d) override {
        if (pod_setup) pod_setup(d);
    }
    void show_copy_channel(CopyChannel& d) override { show(copy_channel, d); }
    void show_channel_view(ChannelView& d) override {
        if (channel_view) channel_view(d);
    }
    void show_unit_conversion(UnitConversion& d) override { show(unit_conversion, d); }
    void show_post_linearisation(PostLinearisation& d) override { show(post_linearisation, d); }
    void show_user_thermocouple(UserThermocouple& d) override { show(user_thermocouple, d); }
    void show_alarm_limits(AlarmLimits& d) override { show(alarm_limits, d); }
    void show_alarm_groups(AlarmGroups& d) override { show(alarm_groups, d); }

  private:
    template <class Dialog>
    void show(const std::function<void(Dialog&)>& operate, Dialog& dialog) {
        if (operate) operate(dialog);
        if (!dialog.closed()) dialog.cmdCancel_Click();
    }
};

class PodSetupRig : public Rig {
  public:
    OperatedWindows windows;
    int accepted = 0;
    PodSetup::Surroundings surroundings_of_dialog{
        configuration, run_time, driver,  dialogs,
        message_line,  failures, windows, [this] { ++accepted; }};
    PodSetup dialog{surroundings_of_dialog};
    PodSetupScreen& form = dialog.screen;

    // A station with a pod at number 3 whose configuration is the default of `type`, and the dialog
    // opened for it.
    void open(std::int16_t type, std::int16_t set_modes = 0, const std::string& letters = "JA 0F") {
        const std::string code(pod_type(type).code);
        station({{3, code + letters + " 1.00"}});
        default_ZAV_config(config(3), type, set_modes);
        dialog.Form_Load(2);
    }

    PodConfig& edited() { return configuration.ZavConfigCopy[at(dialog.state().selected_pod)]; }
    ChannelConfig& channel(int number) { return edited().Channel[at(number - 1)]; }
    bool changed() const { return dialog.state().dialog_changed == 1; }

    void choose_pod(int number) {
        form.cboZAVNo.index = number - 1;
        dialog.cboZAVNo_Click();
    }
    void choose_type(std::int16_t type) {
        form.cboZAVType.select_code(type);
        dialog.cboZAVType_Click();
    }
    void choose_channel(int number) {
        form.cboChannel.index = number - 1;
        dialog.cboChannel_Click();
    }
    void choose_mode(int mode) {
        ASSERT_TRUE(form.cboChanMode.select_code(mode)) << mode << " is not offered";
        dialog.cboChanMode_Click();
    }
    void set_channel(int number, int mode) {
        choose_channel(number);
        choose_mode(mode);
    }
    void tick(CheckBox& box, void (PodSetup::*handler)(), bool checked = true) {
        box.checked = checked;
        (dialog.*handler)();
    }
    // Types into a field and leaves it; whether the focus may go.
    bool type(TextField& field, std::string text, bool (PodSetup::*leave)(std::string_view),
              std::string_view next = "cmdOK") {
        field.text = std::move(text);
        return (dialog.*leave)(next);
    }
};

inline std::vector<int> codes(const ListBox& list) {
    std::vector<int> result;
    for (const ListEntry& entry : list.entries) result.push_back(entry.code);
    return result;
}

}  // namespace kavorix::test
