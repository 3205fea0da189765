#pragma once

// The dialog `frmCopyChan`: gives a channel's settings to other channels of the same pod.

#include <array>

#include "base/trap.h"
#include "model/records.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "ui/pods/sub_dialog.h"

namespace kavorix {

struct CopyChannelScreen {
    std::string caption;
    std::array<CheckBox, ChannelSlots - 1> chkChannel;  // index = slot
    Button cmdSelectAll{"&Select All", "Tick every channel that can be copied to"};
    Button cmdDeSelectAll{"&DeSelect All", "Clear every tick"};
    Button cmdOK{"OK", "Copy to the ticked channels"};
    Button cmdCancel{"Cancel", "Close without copying"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("chkChannel", chkChannel);
        visit("cmdSelectAll", cmdSelectAll);
        visit("cmdDeSelectAll", cmdDeSelectAll);
        visit("cmdOK", cmdOK);
        visit("cmdCancel", cmdCancel);
    }
};

class CopyChannel : public SubDialog {
  public:
    // `source`: slot of the channel to copy.
    CopyChannel(PodConfig& pod, int source, Dialogs& dialogs, FailureReporter& failures);

    CopyChannelScreen screen;

    void cmdSelectAll_Click();
    void cmdDeSelectAll_Click();
    void cmdOK_Click();

  private:
    void tick_all(bool ticked);
    bool any_ticked() const;
    bool confirmed();

    PodConfig& pod_;
    int source_;
    Dialogs& dialogs_;
    FailureReporter& failures_;
};

}  // namespace kavorix
