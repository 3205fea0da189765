#pragma once

// The interface settings `frmConfigAdap`: card address, poll rate and power of the pod network.

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "link/discovery.h"
#include "platform/controls.h"

namespace kavorix {

struct InterfaceSettingsScreen {
    std::string caption = "Interface Settings";
    ListBox cboBaseAddr;      // codes: card addresses
    ListBox cboUserPollRate;  // codes: ms
    CheckBox chkPower{"&Power on: the pods are switched off at exit"};
    Button cmdOK{"OK", "Take the settings over; another address connects anew"};
    Button cmdCancel{"Cancel", "Close without a change"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("cboBaseAddr", cboBaseAddr);
        visit("cboUserPollRate", cboUserPollRate);
        visit("chkPower", chkPower);
        visit("cmdOK", cmdOK);
        visit("cmdCancel", cmdCancel);
    }
};

class InterfaceSettingsDialog {
  public:
    // What it works with; all of it outlives the dialog.
    struct Surroundings {
        Discovery& discovery;
        Dialogs& dialogs;
        MessageLine& message_line;
        FailureReporter& failures;
        Configuration& configuration;
        RunTime& run_time;
        // Saves the configuration (0: to its own file); returns 1 when the operator abandoned it.
        std::function<std::int16_t(std::int16_t)> save_file;
    };
    explicit InterfaceSettingsDialog(Surroundings surroundings)
        : with_(std::move(surroundings)), configuration_(with_.configuration) {}

    InterfaceSettingsScreen screen;

    void Form_Load();
    void cmdOK_Click();  // stays open when no connection comes about
    void cmdCancel_Click() { closed_ = true; }

    bool closed() const { return closed_; }

  private:
    void follow_poll_rate(std::int16_t rate);
    bool excluded(std::int16_t address);
    bool may_connect();
    bool save_changes();
    bool connect(std::int16_t address, std::int16_t rate);

    Surroundings with_;
    Configuration& configuration_;
    bool closed_ = false;
};

}  // namespace kavorix
