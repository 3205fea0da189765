#include "ui/tx_command.h"

#include <utility>

#include "base/text.h"

namespace kavorix {

void CommandHistory::add(const std::string& command) {
    if (entries_.empty() || entries_.back() != command) entries_.push_back(command);
    if (entries_.size() > MostEntries) entries_.pop_front();
    position_ = entries_.size();
    line_.clear();
}

std::string CommandHistory::older(const std::string& line) {
    if (position_ == 0) return line;
    if (position_ == entries_.size()) line_ = line;
    return entries_[--position_];
}

std::string CommandHistory::newer(const std::string& line) {
    if (position_ == entries_.size()) return line;
    return ++position_ == entries_.size() ? line_ : entries_[position_];
}

TxCommandDialog::TxCommandDialog(const CommandLink::Surroundings& surroundings,
                                 const CommandLink& command_link, Operations& operations,
                                 CommandHistory& history,
                                 std::function<void(std::string_view)> sent)
    : with_(surroundings),
      command_link_(command_link),
      operations_(operations),
      history_(history),
      sent_(std::move(sent)) {}

void TxCommandDialog::txtTxCmd_Change() {
    screen.txtTxCmd.text = upper(screen.txtTxCmd.text);
}

void TxCommandDialog::history_older() {
    screen.txtTxCmd.text = history_.older(screen.txtTxCmd.text);
}

void TxCommandDialog::history_newer() {
    screen.txtTxCmd.text = history_.newer(screen.txtTxCmd.text);
}

void TxCommandDialog::cmdSend_Click() {
    trapped(with_.failures, "frmTxCmd/cmdSend_Click", [&] {
        const std::string typed = upper(screen.txtTxCmd.text);
        if (typed.empty()) {
            with_.dialogs.beep();
            with_.dialogs.Msg_Box("No Command String was Entered!", box::Information, ProgramName);
            return;
        }
        const std::string command_string = typed + ";";
        if (command_link_.transmitting()) {
            operations_.send(command_string);  // is refused; the text stays for another try
            return;
        }
        history_.add(typed);
        screen.txtTxCmd.text.clear();
        screen.cmdSend.enabled = false;
        operations_.send(command_string);
        operations_.mark_triggered();
        sent_(command_string);
        screen.cmdSend.enabled = true;
    });
}

}  // namespace kavorix
