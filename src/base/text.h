#pragma once

// Small text helpers. All text of the core is single-byte Windows-1252; nothing here looks at a
// locale.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavorix {

// The text without blanks (character 32 only) at both ends.
std::string_view trim(std::string_view text);

// ASCII letters in upper case; every other byte as it is.
std::string upper(std::string_view text);

// `count` characters from 1-based `position`, as far as the text has them; empty behind its end.
std::string_view middle(std::string_view text, std::size_t position,
                        std::size_t count = std::string_view::npos);

// At least `width` digits, zero-padded: padded(7, 3) gives "007", 123 with width 2 "123", -3 "-03".
std::string padded(int value, std::size_t width);
inline std::string two_digits(int value) {
    return padded(value, 2);
}

// Upper-case hexadecimal of the 16-bit value without leading zeros: -14336 gives "C800".
std::string hex16(std::int16_t value);

// Windows-1252 to UTF-8. Every byte has a character: the five that the code page leaves open (81,
// 8D, 8F, 90, 9D) become the control character of the same number.
std::string to_utf8(std::string_view cp1252);

// UTF-8 to Windows-1252; nothing when the text is no valid UTF-8 or holds a character without a
// place in the code page.
std::optional<std::string> from_utf8(std::string_view utf8);

// The same for text that is only shown, such as a path in a message: what has no place becomes "?".
std::string from_utf8_lossy(std::string_view utf8);

}  // namespace kavorix
