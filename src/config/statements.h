#pragma once

// The statements that configure a pod: mnemonic, argument and ";", one behind the other. The
// configuration file has the same mnemonics with a punctuation of its own; the forms must not be
// mixed.

#include <cstdint>
#include <string>

#include "model/records.h"

namespace kavorix {

// Everything that a pod with this record is told, in the order of the tables in statements.cpp,
// whatever is connected.
std::string configuration_statements(const PodConfig& pod);

// Command form of an alarm group output: state, then the members as channel and letter, "03L03H".
// podIndex 0..49, groupSlot 0..2. "2;" for a group that is off.
std::string TxCHmGOStatement(const PodConfigs& configs, std::int16_t podIndex,
                             std::int16_t groupSlot);

}  // namespace kavorix
