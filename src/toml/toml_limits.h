#pragma once

// Measures a TOML text without parsing it.

#include <optional>
#include <string>
#include <string_view>

#include "toml/toml_document.h"

namespace kavorix {

struct TomlExcess {
    TomlPlace at;
    std::string message;
};

// The first place where the text goes beyond TomlLimits; nothing when it does nowhere. What is no
// TOML is measured up to the mistake as a parser would see it; what follows does not matter.
std::optional<TomlExcess> find_excess(std::string_view text);

}  // namespace kavorix
