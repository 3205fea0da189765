#pragma once

// Values as a TOML file has them.

#include <string>
#include <string_view>

namespace kavorix {

// A text of the core in quotes, as UTF-8 on one line.
std::string toml_text(std::string_view cp1252);

// The shortest form that is read back as the same number; not for infinities and NaN.
std::string toml_number(double value);

}  // namespace kavorix
