#pragma once

// Alarm files, NAME.alarms.toml beside NAME.CFG: reading, checking and writing. The format is on
// the page docs/guide/alarms.md.

#include <string>
#include <string_view>
#include <vector>

#include "alarms/alarm_rules.h"
#include "platform/files.h"

namespace kavorix {

struct LoadedRules {
    std::vector<AlarmRule> rules;     // with their lines; only to be used without errors
    std::vector<std::string> errors;  // "FILE:LINE:COLUMN: message", in the order of the file
};

// Reads the text (UTF-8) of an alarm file; `file_name` only appears in messages.
LoadedRules parse_rules(std::string_view text, std::string_view file_name);

// The same with a file. Throws std::system_error when it cannot be read.
LoadedRules load_rules(Files& files, const std::string& path);

// The text of an alarm file with these rules; keys that have their default are left out.
std::string rules_text(const std::vector<AlarmRule>& rules);

// Replaces an alarm file in one step: the one that was there survives every failure. Throws
// std::system_error.
void save_rules(Files& files, const std::string& path, const std::vector<AlarmRule>& rules);

// The alarm file of a configuration file: "kiln.alarms.toml" for "kiln.CFG".
std::string rules_path(const std::string& config_path);

}  // namespace kavorix
