#pragma once

// Whether simulated pods hold what was configured: the records of the station against what each pod
// has read out of the commands that reached it.

#include <string>
#include <vector>

#include "model/records.h"
#include "sim/network.h"

namespace kavorix {

// Every setting of one pod that differs, as a line such as
// "channel 5 mode: configured 10 Volts DC, held 33 Thermocouple Type K". Compared is what the type
// of the pod is sent; numbers count as equal when they are what their 7 significant digits give.
// A setting that the configuration leaves off must be off in the pod, even if an earlier
// configuration switched it on.
std::vector<std::string> differences(const PodConfig& configured, const sim::HeldSettings& held);

// The same over several pods, each line with "ZAV 07 " in front. Pods without a
// configured type are skipped; one that the network does not have is a difference.
std::vector<std::string> verify_pods(const PodConfigs& configured, const sim::Network& network,
                                     const PodSet& pods);

}  // namespace kavorix
