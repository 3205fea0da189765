#pragma once

// The dialog `frmAlarm`: the high and the low alarm of a channel.

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "base/trap.h"
#include "model/records.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "ui/pods/sub_dialog.h"

namespace kavorix {

// The rows of the dialog.
inline constexpr int HighRow = 0;
inline constexpr int LowRow = 1;

struct AlarmLimitsScreen {
    std::string caption = "Alarm Limits";
    Label lblChannel;
    std::array<CheckBox, 2> chkEnableAlarm{{{"&High Alarm"}, {"&Low Alarm"}}};
    std::array<Label, 2> lblAlarmLimit{{{"L&imit:"}, {"Li&mit:"}}};
    std::array<TextField, 2> txtAlarmLimit;
    std::array<Label, 2> lblHisteresisLimit{{{"H&ysteresis:"}, {"Hys&teresis:"}}};
    std::array<TextField, 2> txtHisteresisLimit;
    Button cmdOK{"OK", "Store both alarms"};
    Button cmdCancel{"Cancel", "Close without storing"};
    std::string focus;  // control that is to get the focus, if any

    template <class Visit>
    void each(Visit&& visit) {
        visit("lblChannel", lblChannel);
        visit("chkEnableAlarm", chkEnableAlarm);
        visit("lblAlarmLimit", lblAlarmLimit);
        visit("txtAlarmLimit", txtAlarmLimit);
        visit("lblHisteresisLimit", lblHisteresisLimit);
        visit("txtHisteresisLimit", txtHisteresisLimit);
        visit("cmdOK", cmdOK);
        visit("cmdCancel", cmdCancel);
    }
};

// Leaving a field: `next` is the control that gets the focus; false = the focus returns.
class AlarmLimits : public SubDialog {
  public:
    AlarmLimits(PodConfig& pod, int slot, Dialogs& dialogs, FailureReporter& failures);

    AlarmLimitsScreen screen;

    void chkEnableAlarm_Click(int row);
    bool txtAlarmLimit_LostFocus(int row, std::string_view next);
    bool txtHisteresisLimit_LostFocus(int row, std::string_view next);
    void cmdOK_Click();

  private:
    struct Entered {
        bool enabled = false;
        float limit = 0;
        float hysteresis = 0;
    };

    void show_row(int row, const AlarmLimit& alarm);
    void enable_row(int row);
    bool complete(int row);
    bool require(TextField& field, std::string_view name, int row, std::string_view message);
    Entered entered(int row) const;
    void store_alarm(AlarmLimit& alarm, int row);

    PodConfig& pod_;
    int slot_;
    Dialogs& dialogs_;
    FailureReporter& failures_;
};

}  // namespace kavorix
