#pragma once

// Scenario files: TOML descriptions of a simulated pod network.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/scenario.h"
#include "toml/toml_document.h"

namespace kavorix::sim {

inline constexpr std::size_t LongestScenario = TomlLimits::Bytes;

struct LoadedScenario {
    std::optional<Scenario> scenario;  // nothing when there are errors
    std::vector<std::string> errors;   // "FILE:LINE:COLUMN: message", in the order of the file
};

// Reads the text (UTF-8) of a scenario file; `file_name` only appears in messages.
LoadedScenario load_scenario(std::string_view text, std::string_view file_name);

// The built-in demonstration network, and the text that it is read from.
Scenario demo_scenario();
std::string_view demo_scenario_text();

}  // namespace kavorix::sim
