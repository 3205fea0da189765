#pragma once

// The set-up dialog of a log, `frmLogFile`: its file, comment and, for the scan log, interval.

#include <cstdint>
#include <string>
#include <vector>

#include "base/trap.h"
#include "logging/log_format.h"
#include "model/runtime.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/files.h"

namespace kavorix {

// The choices of the interval list for a poll rate in ms: text and ms, 0 being the poll rate
// itself.
std::vector<ListEntry> log_intervals(std::int16_t poll_rate_ms);

struct LogSetupScreen {
    std::string caption;
    Label lblFileName;
    Button cmdFile{"&File...", "Choose the file to log to; an existing one is appended to"};
    Label lblComment{"Co&mment:"};
    TextField txtFileComment;
    Label lblInterval{"&Interval:"};
    ListBox cboInterval;
    Button cmdClear{"C&lear", "Log to no file"};
    Button cmdOK{"&OK", "Use this set-up for the pods that are selected in the main window"};
    Button cmdCancel{"&Cancel", "Close without changing anything"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("lblFileName", lblFileName);
        visit("cmdFile", cmdFile);
        visit("lblComment", lblComment);
        visit("txtFileComment", txtFileComment);
        visit("lblInterval", lblInterval);
        visit("cboInterval", cboInterval);
        visit("cmdClear", cmdClear);
        visit("cmdOK", cmdOK);
        visit("cmdCancel", cmdCancel);
    }
};

class LogSetup {
  public:
    // All of it outlives the dialog.
    struct Surroundings {
        LogState& log;
        PodStatuses& status;
        const LinkState& link;
        const InterfaceSettings& interface;
        Files& files;
        Dialogs& dialogs;
        FailureReporter& failures;
    };
    // `kind`: the log to set up, 0 the scan log, any other the event log.
    LogSetup(const Surroundings& surroundings, std::int16_t kind)
        : with_(surroundings), scans_(kind == ScanLog) {}

    LogSetupScreen screen;

    // The dialog opens.
    void Form_Load();

    void cmdFile_Click();
    void cmdClear_Click();
    // The set-up is stored; the dialog closes.
    void cmdOK_Click();
    void cmdCancel_Click() { closed_ = true; }

    bool closed() const { return closed_; }

  private:
    void choose_file();
    bool usable(const std::string& path);
    void show_file();
    void store();

    Surroundings with_;
    bool scans_;
    std::string file_name_;
    bool closed_ = false;
};

}  // namespace kavorix
