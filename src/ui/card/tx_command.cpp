#include "ui/card/tx_command.h"

#include "base/program_name.h"
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

void TxCommandDialog::txtTxCmd_Change() {
    screen.txtTxCmd.text = upper(screen.txtTxCmd.text);
}

void TxCommandDialog::history_older() {
    screen.txtTxCmd.text = with_.history.older(screen.txtTxCmd.text);
}

void TxCommandDialog::history_newer() {
    screen.txtTxCmd.text = with_.history.newer(screen.txtTxCmd.text);
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
        if (with_.command_link.transmitting()) {
            with_.pods.send(command_string);  // is refused; the text stays for another try
            return;
        }
        with_.history.add(typed);
        screen.txtTxCmd.text.clear();
        screen.cmdSend.enabled = false;
        with_.pods.send_and_await(command_string);
        with_.sent(command_string);
        screen.cmdSend.enabled = true;
    });
}

}  // namespace kavorix
