#include "app/text_table.h"

#include <algorithm>
#include <ostream>

#include "base/text.h"

namespace kavorix {

// Texts are measured in the characters that they have before they become UTF-8.
void print_table(const std::vector<std::vector<std::string>>& rows, std::ostream& out) {
    constexpr std::size_t Gap = 2;
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    }
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            line.append(widths[i] - row[i].size() + Gap, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << to_utf8(line) << "\n";
    }
}

}  // namespace kavorix
