#include "ui/status_view.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "model/catalogue.h"

namespace kavorix {

namespace {

constexpr std::string_view Asking = " Getting ZAV/Interface Status";

struct Connector {
    char letter;
    std::string_view text;
};

constexpr std::array Connectors = {
    Connector{'A', "Thermocouple"},   Connector{'B', "Strain Gage"}, Connector{'C', "Digital"},
    Connector{'D', "Reed Relay"},     Connector{'E', "Analog Out"},  Connector{'F', "Switch"},
    Connector{'J', "Universal "},     Connector{'W', "Calibration"}, Connector{'X', "Calibration"},
    Connector{'Y', "Analog Out Cal"}, Connector{'Z', "Calibration"},
};

std::string_view type_text(std::string_view code) {
    const PodTypeRow& type = pod_type(GetZAVTypeCode(code));
    return type.type == NoDevice ? "Unknown ZAV  " : type.description;
}

std::string_view connector_text(char letter) {
    const auto* row = std::find_if(Connectors.begin(), Connectors.end(),
                                   [&](const Connector& c) { return c.letter == letter; });
    return row == Connectors.end() ? "Unknown..." : row->text;
}

// Puts `value` under a word of the header.
void place(std::string& line, std::string_view word, std::string_view value) {
    const std::size_t column = StatusHeader.find(word);
    if (line.size() < column) line.resize(column, ' ');
    line += value;
}

std::string interface_line(std::string_view label, std::string_view value) {
    constexpr std::size_t ValueColumn = 18;
    std::string line(label);
    line.resize(std::max(line.size(), ValueColumn), ' ');
    return line + std::string(value) + "\n";
}

}  // namespace

std::string pod_status_line(int pod, const PodStatus& status, bool selected) {
    std::string line = two_digits(pod + 1);
    if (status.ErrorFlag == 1 && !selected) {
        place(line, "ZAV Type", "ERROR - ZAV Removed from Poll Table");
        return line;
    }
    const std::string_view ident = status.ident();
    place(line, "ZAV Type", type_text(ident.substr(0, 2)));
    place(line, "Connector", connector_text(ident[2]));
    place(line, "SP", ident[3] == 'A' ? "Yes" : "No");
    place(line, "FR", ident[6] == 'F' ? "Yes" : "No");
    place(line, "Software", ident.substr(8, 4));
    place(line, "Retries", "    ");
    return line + ident[5];
}

std::string interface_status(const InterfaceSettings& card, const LinkState& link) {
    return interface_line(" Address: ", hex16(card.CardAddress)) +
           interface_line("Poll Rate: ", std::to_string(card.PollRate) + "ms") +
           interface_line("Rx/Tx Errors: ", std::to_string(link.ErrorCount)) +
           interface_line("ZAVS Connected: ", std::to_string(link.PollTable.NumInPoll));
}

std::string memory_text(std::uint64_t available_bytes) {
    std::string digits = std::to_string((available_bytes + 500) / 1000);
    if (digits.size() < 3) digits.insert(0, 3 - digits.size(), '0');
    for (std::size_t behind = digits.size(); behind > 3; behind -= 3)
        digits.insert(behind - 3, ",");
    return "Memory:  " + digits + " KB Free";
}

void StatusView::Form_Load() {
    trapped(with_.failures, "frmViewStat/Form_Load", [&] {
        const LinkState& link = with_.run_time.Link;
        // Asked first: a pod that does not answer is no longer selected, and its line says so.
        screen.fraZAV.visible = link.NumSelected > 0;
        screen.fraAdap.visible = link.InterfaceSelected == 1;
        ask_pods();
        screen.cmdCompare.visible = compare_ && link.NumSelected > 0;
        if (screen.fraZAV.visible)
            for (int pod = 0; pod < MaxZavs; ++pod) {
                const PodStatus& status = with_.run_time.Status[at(pod)];
                const bool selected = link.ZavSelected[at(pod)] == 1;
                if (selected || status.ErrorFlag == 1)
                    screen.txtZAVStat.text += pod_status_line(pod, status, selected) + "\n";
            }
        if (screen.fraAdap.visible)
            screen.txtAdapStat.text = interface_status(with_.configuration.Interface, link);
        screen.lblSysInfo.caption = memory_text(system_info_.available_memory());
    });
}

void StatusView::cmdCompare_Click() {
    trapped(with_.failures, "frmViewStat/cmdCompare_Click", [&] {
        std::vector<int> pods;
        for (int pod = 0; pod < MaxZavs; ++pod)
            if (with_.run_time.Link.ZavSelected[at(pod)] == 1) pods.push_back(pod);
        const std::vector<std::string> lines = compare_(pods);
        screen.txtHeld.text = lines.empty() ? "No differences\n" : "";
        for (const std::string& line : lines) screen.txtHeld.text += line + "\n";
        screen.fraHeld.visible = true;
    });
}

void StatusView::ask_pods() {
    with_.message_line.DispMsg(Asking, Colour::Blue);
    operations_.while_sending([&] { discovery_.GetStatus(1); });
    // An error that came meanwhile stays on the line.
    if (with_.screen.lblMsg.caption == Asking) with_.message_line.DispMsg("", Colour::Blue);
}

}  // namespace kavorix
