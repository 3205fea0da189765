#include "ui/card/status_view.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "model/catalogue.h"

namespace kavorix {

namespace {

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

std::string pod_status_line(Pod pod, const PodStatus& status, bool answers) {
    std::string line = two_digits(pod.number());
    if (status.ErrorFlag && !answers) {
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
           interface_line("ZAVS Connected: ", std::to_string(link.PollTable.NumInPoll()));
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
        screen.fraZAV.visible = link.NumSelected() > 0;
        screen.fraAdap.visible = link.InterfaceSelected;
        ask_pods();
        screen.cmdCompare.visible = with_.compare && !answering_.empty();
        if (screen.fraZAV.visible)
            for (const Pod pod : all_pods()) {
                const PodStatus& status = with_.run_time.Status[pod];
                if (answering_.has(pod) || status.ErrorFlag)
                    screen.txtZAVStat.text +=
                        pod_status_line(pod, status, answering_.has(pod)) + "\n";
            }
        if (screen.fraAdap.visible)
            screen.txtAdapStat.text = interface_status(with_.configuration.Interface, link);
        screen.lblSysInfo.caption = memory_text(with_.system_info.available_memory());
    });
}

void StatusView::cmdCompare_Click() {
    trapped(with_.failures, "frmViewStat/cmdCompare_Click", [&] {
        const std::vector<std::string> lines = with_.compare(answering_);
        screen.txtHeld.text = lines.empty() ? "No differences\n" : "";
        for (const std::string& line : lines) screen.txtHeld.text += line + "\n";
        screen.fraHeld.visible = true;
    });
}

void StatusView::ask_pods() {
    const auto asking =
        with_.message_line.DispMsg(" Getting ZAV/Interface Status", Severity::Progress);
    answering_ = with_.discovery.GetStatus(1, with_.run_time.Link.ZavSelected);
    // An error that came meanwhile stays on the line.
    with_.message_line.take_back(asking);
}

}  // namespace kavorix
