#pragma once

#include <string>

#include "app/terminal.h"

namespace kavorix {

// The pods that a terminal run is about and how they come to measure.
struct MeasurementOptions {
    std::string
        pods;  // list of pod numbers; empty: all that answer, or all that the file configures
    std::string config_file;  // empty: every pod gets the default configuration of its type
};

// Selects the pods, configures them, lets them scan continuously and triggers them; returns which
// they are. A pod that the file does not let scan continuously is made to, or a run would have one
// reading of it. Throws UnusableInput when the file cannot be loaded or a pod does not answer.
PodSet start_measurement(TerminalStation& terminal, const MeasurementOptions& options);

// Loads a file into the station's configuration, checked against its pods. Throws UnusableInput
// with every problem.
void load_configuration_file(TerminalStation& terminal, const std::string& path);

// Halts the selected pods, if any are left.
void halt_measurement(Station& station);

// The pods that the configuration gives a type.
PodSet configured_pods(const Station& station);

// A duration option; 0 for an empty text. Throws UnusableInput when it is no duration.
int duration_ms(const std::string& text);

}  // namespace kavorix
