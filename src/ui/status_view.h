#pragma once

// The status view `frmViewStat`: what the selected pods say of themselves, the interface card and
// the machine.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "link/discovery.h"
#include "platform/system_info.h"
#include "ui/operations.h"

namespace kavorix {

inline constexpr std::string_view StatusHeader =
    "ZAV         ZAV Type                            Connector             SP          FR          "
    "Software      Retries";

// The line of a pod (index 0..49) under StatusHeader: what its status reply says, or that it was
// removed.
std::string pod_status_line(int pod, const PodStatus& status, bool selected);

// The interface section: lines, each ended by a line feed.
std::string interface_status(const InterfaceSettings& card, const LinkState& link);

// "Memory:  8,123,456 KB Free".
std::string memory_text(std::uint64_t available_bytes);

// Every setting in which pods (indices 0..49) hold something else than is configured, a line each
// that begins with the pod's number. Only a simulated network can tell.
using CompareHeld = std::function<std::vector<std::string>(const std::vector<int>& pods)>;

// Texts of a fixed pitch. A section that does not apply is not visible; with neither the window
// shrinks to its title.
struct StatusScreen {
    std::string caption = "Status";
    Frame fraZAV{"ZAV Status"};
    Label lblZAVHead{std::string(StatusHeader)};
    TextField txtZAVStat;  // lines, each ended by a line feed
    Frame fraAdap{"Interface Status"};
    TextField txtAdapStat;  // likewise
    Frame fraHeld{"Configuration against what the ZAVs hold", true, false};
    TextField txtHeld;  // likewise
    Label lblSysInfo;
    Button cmdCompare{"&Compare", "Compare the configuration with what the simulated ZAVs hold",
                      true, false};
    Button cmdOK{"OK", "Close this window"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("fraZAV", fraZAV);
        visit("lblZAVHead", lblZAVHead);
        visit("fraAdap", fraAdap);
        visit("fraHeld", fraHeld);
        visit("lblSysInfo", lblSysInfo);
        visit("cmdCompare", cmdCompare);
        visit("cmdOK", cmdOK);
    }
};

class StatusView {
  public:
    StatusView(const CommandLink::Surroundings& surroundings, Discovery& discovery,
               Operations& operations, const SystemInfo& system_info, CompareHeld compare = {})
        : with_(surroundings),
          discovery_(discovery),
          operations_(operations),
          system_info_(system_info),
          compare_(std::move(compare)) {}

    StatusScreen screen;

    // Asks the selected pods for their status and fills the record.
    void Form_Load();
    void cmdCompare_Click();
    void cmdOK_Click() { closed_ = true; }

    bool closed() const { return closed_; }

  private:
    void ask_pods();

    CommandLink::Surroundings with_;
    Discovery& discovery_;
    Operations& operations_;
    const SystemInfo& system_info_;
    CompareHeld compare_;
    bool closed_ = false;
};

}  // namespace kavorix
