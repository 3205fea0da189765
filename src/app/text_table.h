#pragma once

// Tables in the terminal.

#include <iosfwd>
#include <string>
#include <vector>

namespace kavorix {

// Prints rows of texts of the core as UTF-8: every column as wide as its widest text, two blanks
// between them. A row may end early.
void print_table(const std::vector<std::vector<std::string>>& rows, std::ostream& out);

}  // namespace kavorix
