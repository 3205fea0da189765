#pragma once

// Brings the configuration to the pods.

#include <cstdint>
#include <functional>
#include <string>

#include "base/trap.h"
#include "config/sent_configurations.h"
#include "model/runtime.h"
#include "platform/dialogs.h"

namespace kavorix {

class Transmission {
  public:
    // `TXString` sends LinkState::CommandString to the selected pods; what has come through is
    // noted in `sent`. All else outlives this.
    Transmission(const Configuration& configuration, const PodStatuses& status, LinkState& link,
                 Dialogs& dialogs, FailureReporter& failures, SentConfigurations& sent,
                 std::function<void()> TXString);

    // The command string that configures one pod, podIndex 0..49. Empty, after telling the
    // operator, when another type is connected than configured.
    std::string load_config(std::int16_t podIndex);

    // Sends every selected pod its own configuration, one pod after the other in ascending order,
    // and selects them again; pods that failed on the way stay deselected. NumSelected agrees with
    // the selection afterwards. A pod that is taken out of the poll table, or marked in
    // `withdrawn`, before its turn gets nothing. Asked for while it is under way it does nothing.
    void transmit_config(const PodFlags& withdrawn = PodFlags{});

    // Whether transmit_config() is under way. ZavSelected then names the pod being sent to, not the
    // operator's choice.
    bool transmitting() const { return transmitting_; }

  private:
    std::string statements_for(std::int16_t podIndex);
    void transmit_to(int pod, PodFlags& chosen);

    const Configuration& configuration_;
    const PodStatuses& status_;
    LinkState& link_;
    Dialogs& dialogs_;
    FailureReporter& failures_;
    SentConfigurations& sent_;
    std::function<void()> tx_string_;
    bool transmitting_ = false;
};

}  // namespace kavorix
