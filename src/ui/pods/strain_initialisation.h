#pragma once

// Reads offset and initial volt of a strain gauge from its pod.

#include <optional>
#include <string>

#include "model/runtime.h"
#include "platform/dialogs.h"
#include "platform/driver.h"

namespace kavorix {

struct StrainReply {
    float offset = 0;
    float initial_volt = 0;
};

// Asks a pod to initialise one of its channels. All of it outlives the call, during which no events
// flow (half a second at most).
class StrainInitialisation {
  public:
    // `channel`: number.
    StrainInitialisation(Driver& driver, Dialogs& dialogs, RunTime& run_time, Pod pod, int channel,
                         std::int16_t card_handle);

    // The values; nothing, after a warning, when the pod is no 7S, cannot be reached or does not
    // answer.
    std::optional<StrainReply> run();

  private:
    enum class Data { None, Waiting, Error };

    Data test();
    bool read(StrainReply& reply);
    bool discard_pending();
    Data wait_for_reply();
    std::optional<StrainReply> warn(std::string_view text);
    std::optional<StrainReply> receive_error();

    Driver& driver_;
    Dialogs& dialogs_;
    RunTime& run_time_;
    Pod pod_;
    int channel_;
    std::int16_t card_handle_;
};

}  // namespace kavorix
