#pragma once

// The pod configuration dialog `frmConfigZAV`: its handlers, what opening and closing it do, and
// the way back (undo). Every change goes to the working copy until the operator accepts.

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "base/trap.h"
#include "link/message_line.h"
#include "model/runtime.h"
#include "platform/dialogs.h"
#include "platform/driver.h"
#include "ui/pods/pod_setup_rules.h"
#include "ui/pods/pod_setup_screen.h"
#include "ui/pods/sub_dialog.h"

namespace kavorix {

class AlarmGroups;
class AlarmLimits;
class ChannelView;
class CopyChannel;
class PodSetup;
class PostLinearisation;
class UnitConversion;
class UserThermocouple;

// The windows of the dialog and of those that it opens. All are modal: a call returns when the
// dialog says that it is closed.
class PodSetupWindows {
  public:
    virtual ~PodSetupWindows() = default;
    virtual void show_pod_setup(PodSetup& dialog) = 0;
    virtual void show_copy_channel(CopyChannel& dialog) = 0;
    virtual void show_channel_view(ChannelView& view) = 0;
    virtual void show_unit_conversion(UnitConversion& dialog) = 0;
    virtual void show_post_linearisation(PostLinearisation& dialog) = 0;
    virtual void show_user_thermocouple(UserThermocouple& dialog) = 0;
    virtual void show_alarm_limits(AlarmLimits& dialog) = 0;
    virtual void show_alarm_groups(AlarmGroups& dialog) = 0;
};

// A handler of a field that is left gets the name of the control that receives the focus; false =
// the focus returns to the field.
class PodSetup {
  public:
    // All of it outlives the dialog.
    struct Surroundings {
        Configuration& configuration;
        RunTime& run_time;
        Driver& driver;
        Dialogs& dialogs;
        MessageLine& message_line;
        FailureReporter& failures;
        PodSetupWindows& windows;
        std::function<void()> accepted;  // the live configuration was replaced
    };
    // Stands for "no pod" where a pod index is expected.
    static constexpr int NoPod = 99;

    explicit PodSetup(const Surroundings& surroundings);

    PodSetupScreen screen;

    // Opens the dialog for a pod (index, or NoPod) and returns when it is closed.
    void run(int pod);

    void Form_Load(int pod);
    bool closed() const { return closed_; }
    const PodSetupState& state() const { return rules_.state; }
    // The record that is edited.
    const PodConfig& pod() const { return rules_.pod(); }

    void cboZAVNo_Click();
    void cboZAVType_Click();
    void cboScanPeriod_Click();
    void chkSetup_Click();
    void chkArm_Click();
    void chkCalOn_Click();
    void chkContScan_Click();
    void cmdDefault_Click();

    void cboChannel_Click();
    void cboChanMode_Click();
    void cboRange_Click();
    bool txtLabel_LostFocus(std::string_view next);
    bool txtUnit_LostFocus(std::string_view next);
    void cmdCopyChan_Click();
    void cmdViewChans_Click();
    void cmdMx_c_Click();
    void cmdPostLin_Click();
    void cmdCoeff_Click();
    void cmdAlarm_Click();
    void cmdGroup_Click();

    void cboIntegration_Click();
    void chkDegF_Click();
    void optAmbTemp_Click();
    void optExtTemp_Click();
    bool txtExtTemp_LostFocus(std::string_view next);
    void chkOpenTC_Click();
    void cboSampleRate_Click();
    void cboTimeout_Click();
    void chkHWWatch_Click();
    void chkSWWatch_Click();
    bool txtSWWatchTime_LostFocus(std::string_view next);
    bool txtGaugeFactor_LostFocus(std::string_view next);
    bool txtOffset_LostFocus(std::string_view next);
    bool txtInitialVolt_LostFocus(std::string_view next);
    void cmdInitialise_Click();

    void cmdUndo_Click();
    void cmdRedo_Click();
    void cmdOK_Click();
    // Cancel, and every other way of closing the window.
    void unload_request();

  private:
    // What a change is taken back to.
    struct Step {
        std::int16_t pod;
        std::int16_t channel;
        std::int16_t dialog_changed;
        PodConfig record;
    };
    struct StrainField {
        TextField& field;
        float& value;
        std::string_view missing;
        std::string_view not_a_number;
    };

    void disable_everything();
    void fill_selectors();
    std::int16_t type_to_open() const;
    void select_type(std::int16_t type);
    void warn_of_connected_type();
    void select_pairing(std::int16_t mode);
    void check_box(const CheckBox& box, std::int16_t& flag);
    void list_choice(const ListBox& list, std::int16_t& value, int chosen);
    bool leave_text(TextField& field, std::string& stored, std::size_t longest,
                    std::string_view too_long);
    bool leave_strain_field(const StrainField& strain);
    // The message about a reference temperature in whole degrees that is out of the range of its
    // unit; empty when it is not.
    std::string_view limit_broken(double degrees) const;
    void accept_changes();

    template <class Dialog>
    void run_dialog(Dialog& dialog, void (PodSetupWindows::*show)(Dialog&));

    void mark_changed();
    template <class Value>
    void store(Value& stored, const Value& value) {
        if (stored == value) return;
        stored = value;
        mark_changed();
    }
    // Runs a handler under its trace name; what it changed can be taken back.
    template <class Action>
    auto handler(std::string_view name, Action&& action) {
        return trapped(with_.failures, "frmConfigZAV/" + std::string(name), [&] {
            Step before = begin_step();
            if constexpr (std::is_void_v<decltype(action())>) {
                action();
                end_step(std::move(before));
            } else {
                const auto result = action();
                end_step(std::move(before));
                return result;
            }
        });
    }
    Step now() const;
    Step begin_step();
    void end_step(Step before);
    void show_step(const Step& step);
    void travel(std::deque<Step>& from, std::deque<Step>& to);
    void show_steps();

    Surroundings with_;
    PodSetupRules rules_;
    bool closed_ = false;
    bool accepted_ = false;
    bool changed_by_handler_ = false;
    std::deque<Step> undo_;
    std::deque<Step> redo_;
};

// The command "ZAV Setup...": opens the dialog for the selected pod, without a selection for the
// operator to choose one.
void setup_selected_pod(const PodSetup::Surroundings& surroundings);

}  // namespace kavorix
