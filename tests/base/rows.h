#pragma once

// Tables of texts: "1.5=2|2.5=2" gives the pairs ("1.5", "2") and ("2.5", "2"); line ends and the
// blanks behind them separate nothing.

#include <charconv>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kavorix::test {

inline std::vector<std::pair<std::string, std::string>> rows_of(std::string_view table) {
    std::vector<std::pair<std::string, std::string>> rows;
    while (!table.empty()) {
        const std::string_view row = table.substr(0, table.find('|'));
        table.remove_prefix(std::min(row.size() + 1, table.size()));
        const auto begin = row.starts_with('\n') ? row.find_first_not_of(" \n") : 0;
        const std::string_view text = row.substr(std::min(begin, row.size()));
        const auto equals = text.rfind('=');
        rows.emplace_back(text.substr(0, equals),
                          equals == text.npos ? "" : text.substr(equals + 1));
    }
    return rows;
}

// The value of a text by the standard library.
inline double number(const std::string& text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

}  // namespace kavorix::test
