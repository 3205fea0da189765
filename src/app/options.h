#pragma once

// What the command line says.

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kavorix {

// Process exit codes.
inline constexpr int ExitDone = 0;
inline constexpr int ExitFailed = 1;  // the work failed or found errors
inline constexpr int ExitUsage = 2;   // wrong usage or unreadable input

// Options common to the window and all subcommands.
struct CommonOptions {
    std::string
        network;  // scenario file of the simulated network; empty: the built-in demonstration
    std::string driver;            // driver library instead of the simulated network
    std::string theme = "system";  // "light", "dark", or as the desktop is
    std::string directory;         // program directory; empty: default_directory()
};

// $XDG_DATA_HOME/kavorix, or its usual place below the home directory.
std::string default_directory();

// Pod numbers of a list such as "1-5,7": ascending, each once. Nothing when the text is no such
// list or names a number outside 1..50.
std::optional<std::vector<int>> parse_pod_list(std::string_view text);

// A time such as "90", "90s", "1.5m", "2h", "7d" or "250ms"; plain numbers are seconds. Nothing
// when it is no such text or not above 0.
std::optional<std::chrono::milliseconds> parse_duration(std::string_view text);

}  // namespace kavorix
