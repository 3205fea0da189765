#pragma once

// The text of a configuration file: one statement a line, each line ended by carriage return and
// line feed, in Windows-1252. docs/configuration-files.md describes the format.

#include <cstdint>
#include <string>

#include "base/dates.h"
#include "model/records.h"

namespace kavorix {

// A whole file. Numbers have up to 7 significant digits, so a single that needs more is rounded.
std::string config_text(const InterfaceSettings& settings, const PodConfigs& configs,
                        const WallTime& created);

// File form of an alarm group output: state and members set apart by commas, "1,03,L,03,H;".
// podIndex 0..49, groupSlot 0..2. "2;" for a group that is off.
std::string FormCHmGOStatement(const PodConfigs& configs, std::int16_t podIndex,
                               std::int16_t groupSlot);

}  // namespace kavorix
