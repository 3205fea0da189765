#pragma once

// The channel selection `frmSelChan`: check boxes for the channels of one pod, or of several pods
// in turn.

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "model/runtime.h"
#include "platform/controls.h"
#include "ui/main/windows.h"

namespace kavorix {

// What is to be chosen, and what was chosen.
struct ChannelChoice {
    // A set of channels: those of a pod, or of all pods alike.
    struct Set {
        std::string name;  // shown in the list when there are several sets
        int channels = 0;  // 1..this can be chosen
        ChannelFlags chosen{};
    };
    std::string caption = "Select Channels";
    std::string prompt;
    std::vector<Set> sets;

    // Why the channels cannot be accepted; empty when they can. Left out: anything goes.
    std::function<std::string(const std::vector<Set>&)> complaint;
};

struct SelectChannelsScreen {
    std::string caption;
    Label lblPrompt;
    ListBox cboZav;  // the sets, behind "All ZAVs"; codes: index of the set, -1 = all
    std::array<CheckBox, MaxChannels> chkChan;
    Button cmdAll{"&All", "Check every channel"};
    Button cmdNone{"&None", "Clear every channel"};
    Button cmdOK{"OK", "Take these channels"};
    Button cmdCancel{"Cancel", "Close without a change"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("lblPrompt", lblPrompt);
        visit("cboZav", cboZav);
        visit("chkChan", chkChan);
        visit("cmdAll", cmdAll);
        visit("cmdNone", cmdNone);
        visit("cmdOK", cmdOK);
        visit("cmdCancel", cmdCancel);
    }
};

class SelectChannelsDialog {
  public:
    SelectChannelsDialog(ChannelChoice choice, Dialogs& dialogs, FailureReporter& failures);

    SelectChannelsScreen screen;

    void cboZav_Click(int list_index);
    void chkChan_Click(int channel);  // index 0..31; the box has changed already
    void cmdAll_Click() { check_all(true); }
    void cmdNone_Click() { check_all(false); }
    void cmdOK_Click();  // at least one channel is checked
    void cmdCancel_Click() { closed_ = true; }

    bool closed() const { return closed_; }
    bool accepted() const { return accepted_; }
    const std::vector<ChannelChoice::Set>& sets() const { return choice_.sets; }

  private:
    template <class Change>
    void each_shown_set(Change&& change);
    void check_all(bool checked);
    void show();

    ChannelChoice choice_;
    Dialogs& dialogs_;
    FailureReporter& failures_;
    bool accepted_ = false;
    bool closed_ = false;
};

// Lets the operator choose; true when accepted, the sets of `choice` then being what was chosen.
using ChooseChannels = std::function<bool(ChannelChoice& choice)>;
ChooseChannels choose_in_window(Windows& windows, Dialogs& dialogs, FailureReporter& failures);

// A token for every chosen channel in ascending order, each ended by ";": "CL3;CL19;".
std::string tokens_for(std::string_view mnemonic, const ChannelFlags& chosen);

}  // namespace kavorix
