#pragma once

#include <functional>
#include <string_view>

#include "app/options.h"

namespace kavorix {

// Told when the start of the window has reached a stage: "toolkit", "station", "window", "painted".
using StartWatcher = std::function<void(std::string_view stage)>;

// Opens the station's window and runs it until the program ends; returns the exit code. Throws
// UnusableInput before anything is shown when a file that the options name cannot be used.
int run_window(
    const CommonOptions& options, int argc, char** argv,
    const StartWatcher& reached = [](std::string_view) {});

}  // namespace kavorix
