#pragma once

#include <string_view>

namespace kavorix {

// Titles of boxes, texts of the error log.
inline constexpr std::string_view ProgramName = "KAVORIX";

}  // namespace kavorix
