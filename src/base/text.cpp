#include "base/text.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace kavorix {

namespace {

// Unicode of the bytes 80..9F; the rest of the code page stands at its own number.
constexpr std::array<char16_t, 32> UpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::optional<char> to_byte(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
        return static_cast<char>(character);
    const auto* found = std::find(UpperControls.begin(), UpperControls.end(), character);
    if (found == UpperControls.end()) return std::nullopt;
    return static_cast<char>(0x80 + (found - UpperControls.begin()));
}

constexpr char32_t Malformed = 0xFFFFFFFF;

// The next character of a UTF-8 text, taken off its front; Malformed takes one byte.
char32_t next_character(std::string_view& utf8) {
    const auto lead = static_cast<unsigned char>(utf8.front());
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    char32_t character = length == 1 ? lead : lead & (0x7Fu >> length);
    bool well_formed = length > 0 && utf8.size() >= length;
    for (std::size_t i = 1; well_formed && i < length; ++i) {
        const auto next = static_cast<unsigned char>(utf8[i]);
        well_formed = (next & 0xC0u) == 0x80u;
        character = (character << 6u) | (next & 0x3Fu);
    }
    constexpr std::array<char32_t, 5> Smallest = {0, 0, 0x80, 0x800, 0x10000};
    if (well_formed)
        well_formed = character >= Smallest[length] && character <= 0x10FFFF &&
                      (character < 0xD800 || character > 0xDFFF);
    utf8.remove_prefix(well_formed ? length : 1);
    return well_formed ? character : Malformed;
}

}  // namespace

std::string_view trim(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string upper(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return result;
}

std::string_view middle(std::string_view text, std::size_t position, std::size_t count) {
    return position > text.size() ? std::string_view{} : text.substr(position - 1, count);
}

std::string padded(int value, std::size_t width) {
    std::string digits = std::to_string(value < 0 ? -static_cast<long long>(value) : value);
    if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
    if (value < 0) digits.insert(digits.begin(), '-');
    return digits;
}

std::string hex16(std::int16_t value) {
    std::array<char, 4> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                   static_cast<std::uint16_t>(value), 16)
                         .ptr;
    return upper({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

std::string to_utf8(std::string_view cp1252) {
    std::string result;
    result.reserve(cp1252.size());
    for (const char c : cp1252) {
        const auto byte = static_cast<unsigned char>(c);
        const char16_t character = byte >= 0x80 && byte < 0xA0 ? UpperControls[byte - 0x80u] : byte;
        if (character < 0x80) {
            result += c;
        } else if (character < 0x800) {
            result += static_cast<char>(0xC0 | (character >> 6));
            result += static_cast<char>(0x80 | (character & 0x3F));
        } else {
            result += static_cast<char>(0xE0 | (character >> 12));
            result += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
            result += static_cast<char>(0x80 | (character & 0x3F));
        }
    }
    return result;
}

std::optional<std::string> from_utf8(std::string_view utf8) {
    std::string result;
    while (!utf8.empty()) {
        const auto byte = to_byte(next_character(utf8));
        if (!byte) return std::nullopt;
        result += *byte;
    }
    return result;
}

std::string from_utf8_lossy(std::string_view utf8) {
    std::string result;
    while (!utf8.empty()) result += to_byte(next_character(utf8)).value_or('?');
    return result;
}

}  // namespace kavorix
