#pragma once

// The typed command `frmTxCmd`: sends a command string that the operator types.

#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/controls.h"
#include "ui/main/pod_commands.h"

namespace kavorix {

// The commands that were typed, for calling them up again.
class CommandHistory {
  public:
    static constexpr std::size_t MostEntries = 100;

    // Puts a command at the end, unless it stands there already, and leaves the entries for the
    // empty line behind it.
    void add(const std::string& command);

    // One entry back or forward from the one shown last; behind the newest comes the line that was
    // left for the entries. `line` is what the field shows now.
    std::string older(const std::string& line);
    std::string newer(const std::string& line);

  private:
    std::deque<std::string> entries_;  // oldest first
    std::size_t position_ = 0;         // of the entry shown; entries_.size(): none
    std::string line_;                 // what was left for the entries
};

struct TxCommandScreen {
    std::string caption = "Tx Command";
    Label lblTxCmd{"&Command string for the selected ZAV(s):"};
    TextField txtTxCmd;
    Button cmdSend{"&Send", "Send the command string to the selected pods"};
    Button cmdCancel{"Cancel", "Close this window"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("lblTxCmd", lblTxCmd);
        visit("txtTxCmd", txtTxCmd);
        visit("cmdSend", cmdSend);
        visit("cmdCancel", cmdCancel);
    }
};

class TxCommandDialog {
  public:
    // What it works with; all of it outlives the dialog.
    struct Surroundings {
        PodCommands& pods;
        const CommandLink& command_link;
        CommandHistory& history;
        Dialogs& dialogs;
        FailureReporter& failures;
        std::function<void(std::string_view)> sent;  // told every command string that went out
    };
    explicit TxCommandDialog(Surroundings surroundings) : with_(std::move(surroundings)) {}

    TxCommandScreen screen;

    void txtTxCmd_Change();  // typed characters become upper case
    void history_older();    // the arrow keys up and down
    void history_newer();
    void cmdSend_Click();  // also the Enter key
    void cmdCancel_Click() { closed_ = true; }

    bool closed() const { return closed_; }

  private:
    Surroundings with_;
    bool closed_ = false;
};

}  // namespace kavorix
