#pragma once

// The dialog `frmGroup`: which alarms of channels 1..18 drive the outputs of channels 19 and 20 of
// a universal pod.

#include <array>
#include <cstdint>

#include "base/trap.h"
#include "model/records.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "ui/pods/sub_dialog.h"

namespace kavorix {

struct AlarmGroupsScreen {
    std::string caption = "Alarm Groups";
    OptionButton optchan19{"Channel 1&9"};
    OptionButton optchan20{"Channel &20"};
    OptionButton optAss{"&Assert Output"};
    OptionButton optDis{"&Disassert Output"};
    OptionButton optOff{"O&ff"};
    std::array<Frame, AlarmGroupChannels> frmChannel;
    std::array<CheckBox, AlarmGroupChannels> chkHi;
    std::array<CheckBox, AlarmGroupChannels> chkLow;
    Button cmdSelectAll{"&Select All", "Tick every alarm that is enabled"};
    Button cmdClearAll{"&Clear All", "Clear every tick"};
    Button cmdOK{"OK", "Store the groups"};
    Button cmdCancel{"Cancel", "Close without storing"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("optchan19", optchan19);
        visit("optchan20", optchan20);
        visit("optAss", optAss);
        visit("optDis", optDis);
        visit("optOff", optOff);
        visit("frmChannel", frmChannel);
        visit("chkHi", chkHi);
        visit("chkLow", chkLow);
        visit("cmdSelectAll", cmdSelectAll);
        visit("cmdClearAll", cmdClearAll);
        visit("cmdOK", cmdOK);
        visit("cmdCancel", cmdCancel);
    }
};

class AlarmGroups : public SubDialog {
  public:
    AlarmGroups(PodConfig& pod, Dialogs& dialogs, FailureReporter& failures);

    AlarmGroupsScreen screen;

    void optchan19_Click();
    void optchan20_Click();
    void optAss_Click();
    void optDis_Click();
    void optOff_Click();
    void cmdSelectAll_Click();
    void cmdClearAll_Click();
    void cmdOK_Click();

  private:
    void choose_group(int slot);
    void show_group();
    void show_state();
    void switch_off();
    void enable_members();
    void set_state(std::int16_t state);
    void clear_boxes();
    void save_shown();
    void store_group(int slot);
    bool differs(int slot) const;
    bool keep_other(int slot);

    PodConfig& pod_;
    Dialogs& dialogs_;
    FailureReporter& failures_;
    std::array<AlarmGroup, 2> groups_;  // the working copy
    int shown_ = 0;                     // slot of the group shown
};

}  // namespace kavorix
