#pragma once

#include "ui/main/pod_commands.h"
#include "ui/streams/select_channels.h"

namespace kavorix {

// The operator chooses channels whose event counters the selected pods set to zero. The universal
// types count on channels 19 and 20 alone.
void clear_event_counters(PodCommands& pods, const RunTime& run_time, const ChooseChannels& choose);

}  // namespace kavorix
