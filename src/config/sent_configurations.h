#pragma once

// What each pod was last sent, to tell which configurations have changed since.

#include <array>
#include <optional>
#include <string>

#include "model/runtime.h"

namespace kavorix {

class SentConfigurations {
  public:
    // The live configuration; outlives this.
    explicit SentConfigurations(const PodConfigs& configured) : configured_(configured) {}

    // The pod (index 0..49) holds what is configured for it now.
    void note(int pod);

    // Nothing of it can be relied on: whatever is configured has to be sent again.
    void forget(int pod) { sent_[at(pod)] = ""; }

    // Whether the pod would be sent something else than it was last. Labels, units and whatever
    // else stays in the station make no difference. False for a pod of which nothing was ever
    // noted.
    bool differs(int pod) const;

  private:
    const PodConfigs& configured_;
    std::array<std::optional<std::string>, MaxZavs> sent_;  // command strings
};

}  // namespace kavorix
