#pragma once

// Brings the configuration to the pods.

#include <string>

#include "base/trap.h"
#include "config/sent_configurations.h"
#include "link/command_link.h"
#include "model/runtime.h"
#include "platform/dialogs.h"

namespace kavorix {

class Transmission {
  public:
    // What it works with; all of it outlives this. What has come through is noted in `sent`.
    struct Surroundings {
        const Configuration& configuration;
        const PodStatuses& status;
        LinkState& link;
        CommandLink& command_link;
        Dialogs& dialogs;
        FailureReporter& failures;
        SentConfigurations& sent;
    };
    explicit Transmission(const Surroundings& surroundings) : with_(surroundings) {}

    // The command string that configures one pod. Empty, after telling the operator, when another
    // type is connected than configured.
    std::string load_config(Pod pod);

    // Sends each of the pods its own configuration, one pod after the other in ascending order.
    // Returns the pods that got it; one that fails or is cleared before its turn gets nothing.
    // Asked for while it is under way it sends nothing to anybody.
    PodSet transmit_config(const PodSet& pods);

  private:
    std::string statements_for(Pod pod);
    bool transmit_to(Pod pod);

    Surroundings with_;
    bool transmitting_ = false;
};

}  // namespace kavorix
