#pragma once

#include "app/options.h"

namespace kavorix {

// Opens the station's window and runs it until the program ends; returns the exit code. Throws
// UnusableInput before anything is shown when a file that the options name cannot be used.
int run_window(const CommonOptions& options, int argc, char** argv);

}  // namespace kavorix
