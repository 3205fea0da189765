#pragma once

// What each pod was last sent, to tell which configurations have changed since.

#include <optional>
#include <string>

#include "model/runtime.h"

namespace kavorix {

class SentConfigurations {
  public:
    // The live configuration; outlives this.
    explicit SentConfigurations(const PodConfigs& configured) : configured_(configured) {}

    // The pod holds what is configured for it now.
    void note(Pod pod);

    // Nothing of it can be relied on: whatever is configured has to be sent again.
    void forget(Pod pod) { sent_[pod] = ""; }

    // Whether the pod would be sent something else than it was last. Labels, units and whatever
    // else stays in the station make no difference. False for a pod of which nothing was ever
    // noted.
    bool differs(Pod pod) const;

  private:
    const PodConfigs& configured_;
    PodArray<std::optional<std::string>> sent_;  // command strings
};

}  // namespace kavorix
