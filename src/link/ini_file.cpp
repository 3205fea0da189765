#include <algorithm>
#include <charconv>
#include <system_error>

#include "base/text.h"
#include "link/discovery.h"

namespace kavorix {

namespace {

// Buffer sizes of the settings reader, terminator included.
constexpr std::size_t ValueBuffer = 255;
constexpr std::size_t KeyListBuffer = 10000;

std::string_view next_line(std::string_view& text) {
    const auto end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return trim(line);
}

// A value in a pair of matching quotes stands for what is between them.
std::string_view unquoted(std::string_view value) {
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.front() == value.back())
        return value.substr(1, value.size() - 2);
    return value;
}

std::string up_to_nul(std::string_view text, std::size_t buffer) {
    text = text.substr(0, buffer - 1);
    return std::string(trim(text.substr(0, text.find('\0'))));
}

}  // namespace

std::string GetINIData(Files& files, const std::string& path, std::string_view section,
                       std::string_view key) {
    std::string content;
    try {
        content = read_all(files, path);
    } catch (const std::system_error&) {
        return {};
    }
    const std::string wanted_section = upper(section);
    const std::string wanted_key = upper(key);
    std::string_view rest = content;
    std::string keys;
    bool inside = false;
    while (!rest.empty()) {
        const std::string_view line = next_line(rest);
        if (line.starts_with('[')) {
            if (inside) break;
            // What stands behind the closing bracket is no part of the name.
            const auto closing = line.rfind(']');
            inside = closing != std::string_view::npos &&
                     upper(trim(line.substr(1, closing - 1))) == wanted_section;
        } else if (inside && !line.starts_with(';')) {
            const auto equals = line.find('=');
            if (equals == std::string_view::npos) continue;
            const std::string_view name = trim(line.substr(0, equals));
            if (key.empty())
                keys += std::string(name) + '\0';
            else if (upper(name) == wanted_key)
                return up_to_nul(unquoted(trim(line.substr(equals + 1))), ValueBuffer);
        }
    }
    return up_to_nul(keys, KeyListBuffer);
}

std::optional<std::vector<std::int16_t>> parse_exclude_addresses(std::string_view text) {
    std::vector<std::int16_t> addresses;
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool last = i + 1 == text.size();
        if (text[i] != ',' && !last) continue;
        if (last && start == i) break;  // an item of the last character alone is not taken
        const std::size_t end = text[i] == ',' ? i : i + 1;
        const std::string_view item = text.substr(start, end - start);
        start = i + 1;
        if (item.size() != 4) return std::nullopt;
        std::uint16_t address = 0;
        const auto result = std::from_chars(item.data(), item.data() + item.size(), address, 16);
        if (result.ec == std::errc() && result.ptr == item.data() + item.size())
            addresses.push_back(static_cast<std::int16_t>(address));
    }
    return addresses;
}

}  // namespace kavorix
