#pragma once

// Configuration files as the terminal commands read them.

#include <memory>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "config/config_reader.h"

namespace kavorix {

struct LoadedConfig {
    std::unique_ptr<Configuration> configuration = std::make_unique<Configuration>();
    std::vector<LoadMessage> messages;
    LoadOutcome outcome = LoadOutcome::NoHeader;
};

// Loads a file with full validation, against the network that the options name, otherwise against a
// station that the file itself describes. Throws UnusableInput when it cannot be read or is no
// configuration file.
LoadedConfig load_config(const CommandLine& line, Files& files, const std::string& path);

// The same for the commands that need the content: what is wrong with it is said.
LoadedConfig load_config_or_explain(const CommandLine& line, Files& files, const std::string& path);

}  // namespace kavorix
