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
#include "platform/controls.h"
#include "platform/system_info.h"

namespace kavorix {

inline constexpr std::string_view StatusHeader =
    "ZAV         ZAV Type                            Connector             SP          FR          "
    "Software      Retries";

// The line of a pod under StatusHeader: what its status reply says, or that it was removed.
std::string pod_status_line(Pod pod, const PodStatus& status, bool answers);

// The interface section: lines, each ended by a line feed.
std::string interface_status(const InterfaceSettings& card, const LinkState& link);

// "Memory:  8,123,456 KB Free".
std::string memory_text(std::uint64_t available_bytes);

// Every setting in which pods hold something else than is configured, a line each
// that begins with the pod's number. Only a simulated network can tell.
using CompareHeld = std::function<std::vector<std::string>(const PodSet& pods)>;

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
    // What it works with; all of it outlives this. Without `compare` nothing is compared.
    struct Surroundings {
        Discovery& discovery;
        MessageLine& message_line;
        FailureReporter& failures;
        const SystemInfo& system_info;
        const Configuration& configuration;
        const RunTime& run_time;
        CompareHeld compare;
    };
    explicit StatusView(Surroundings surroundings) : with_(std::move(surroundings)) {}

    StatusScreen screen;

    // Asks the selected pods for their status and fills the record.
    void Form_Load();
    void cmdCompare_Click();
    void cmdOK_Click() { closed_ = true; }

    bool closed() const { return closed_; }

  private:
    void ask_pods();

    Surroundings with_;
    PodSet answering_;
    bool closed_ = false;
};

}  // namespace kavorix
