#pragma once

// Numbers as the system's files and commands write and read them: "." is the decimal separator
// whatever the locale.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavorix {

// True when the whole text is a number: blanks around, optional sign, digits with an optional point
// (at least one digit), digit-grouping commas anywhere in the integer part, optional exponent ("E"
// or "e", optional sign, digits). "1," is a number, "0;" and "" are not; neither is one beyond the
// range of a double.
bool is_numeric(std::string_view text);

// The value of a text that is_numeric() accepts, grouping commas dropped; 0 for any other text.
double numeric_value(std::string_view text);

// Both in one: the value of a text that is_numeric() accepts, nothing for any other text.
std::optional<double> to_number(std::string_view text);

// The same as a single, nothing also for a value beyond its range.
std::optional<float> to_single(std::string_view text);

// The value of the longest numeric prefix (leading blanks skipped, no grouping commas), 0 when
// there is none. A value beyond the range of a double gives the infinity of its sign.
double leading_value(std::string_view text);

// The same as a single; beyond its range the infinity of its sign.
float leading_single(std::string_view text);

// Nearest whole number, halves to the even neighbour: integer fields that are read. Saturates at
// the 32-bit range; NaN gives 0.
std::int32_t round_half_even(double value);

// Nearest whole number, halves away from zero, as text without sign for zero: whole numbers in
// commands.
std::string rounded_text(double value);

// Room that write_general() needs. Its longest text has 13 characters: sign, 7 digits, point, "E",
// sign, two exponent digits; whole words are stored, so what stands behind the text may change.
inline constexpr std::size_t GeneralBufferSize = 24;

// The general format of a single: up to 7 significant digits, trailing zeros dropped; the plain
// form unless it needs more than 7 digits before the point or more than 7 after it (leading zeros
// after the point count), else mantissa, "E", sign and two exponent digits: 0.1,
// 0.00001, 2.5E-07, 1.401764E-02, 1234567, 1E+07. Rounded from the exact binary value, ties to
// even. Zero of either sign is "0", NaN "NaN", the infinities "Inf" and "-Inf".
std::string general(float value);

// The same into a buffer of at least GeneralBufferSize characters; returns the end of the text,
// which is not terminated.
char* write_general(float value, char* out);

// The same by the standard library alone, slower: the reference that write_general() is checked
// against.
char* write_general_plain(float value, char* out);

// The shortest text that gives the same double again: "0.1", "1e+20". Not finite values as
// general() has them.
std::string shortest(double value);

// Fixed number of decimals (0..9), rounded from the exact value, halves away from zero, "-" only
// before a value that does not round to zero: fixed(2.5, 0) is "3", fixed(-0.4, 0) is "0". NaN
// "NaN", infinities "Inf" and "-Inf".
std::string fixed(double value, int decimals);

}  // namespace kavorix
