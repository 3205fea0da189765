#include "base/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "base/text.h"

namespace kavorix {

namespace {

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

// Length of the numeric prefix of `text`: sign, digits, point, digits, exponent. 0 when it holds no
// digit.
std::size_t numeric_prefix(std::string_view text, bool grouping) {
    std::size_t at = 0;
    bool digits = false;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    for (; at < text.size() && (is_digit(text[at]) || (grouping && text[at] == ',')); ++at)
        digits = digits || is_digit(text[at]);
    if (at < text.size() && text[at] == '.')
        for (++at; at < text.size() && is_digit(text[at]); ++at) digits = true;
    if (!digits) return 0;
    if (at < text.size() && (text[at] == 'E' || text[at] == 'e')) {
        std::size_t end = at + 1;
        if (end < text.size() && (text[end] == '+' || text[end] == '-')) ++end;
        const std::size_t first_digit = end;
        while (end < text.size() && is_digit(text[end])) ++end;
        if (end > first_digit) at = end;
    }
    return at;
}

// Which end of the range a number without sign has passed (from_chars does not say): its decimal
// exponent, give or take one.
bool is_too_small(std::string_view text) {
    const auto mark = std::min(text.find_first_of("Ee"), text.size());
    const std::string_view mantissa = text.substr(0, mark);
    const auto point = std::min(mantissa.find('.'), mantissa.size());
    auto exponent =
        static_cast<long long>(point) - static_cast<long long>(mantissa.find_first_of("123456789"));
    text.remove_prefix(mark);
    const bool down = text.substr(0, 2).find('-') != std::string_view::npos;
    text.remove_prefix(std::min(text.find_first_of("0123456789"), text.size()));
    int shift = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), shift);
    if (result.ec == std::errc::result_out_of_range) return down;
    exponent += down ? -shift : shift;
    return exponent < 0;
}

// The value of a text that numeric_prefix() took whole and that holds no comma. Beyond the range:
// infinity, or zero for a value too small.
template <class Number>
Number parse(std::string_view text) {
    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') text.remove_prefix(1);
    Number value{};
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range)
        value = is_too_small(text) ? Number{0} : std::numeric_limits<Number>::infinity();
    return negative ? -value : value;
}

std::string without_commas(std::string_view text) {
    std::string digits;
    for (const char c : text)
        if (c != ',') digits += c;
    return digits;
}

// The value of up to 7 digits with nothing else, which most numbers of a configuration file are and
// which a single holds exactly; -1 for any other text.
int short_digits(std::string_view text) {
    if (text.empty() || text.size() > 7) return -1;
    int value = 0;
    for (const char c : text) {
        if (!is_digit(c)) return -1;
        value = 10 * value + (c - '0');
    }
    return value;
}

// "NaN" and the infinities; true when `value` is one of them.
bool write_non_finite(double value, std::string& out) {
    if (std::isfinite(value)) return false;
    out = std::isnan(value) ? "NaN" : value < 0 ? "-Inf" : "Inf";
    return true;
}

// Whether the decimal digits of a value end in a single 5 behind the last one of `decimals`: an odd
// multiple of 2^-(decimals + 1).
bool is_tie(double magnitude, int decimals) {
    return std::fmod(std::ldexp(magnitude, decimals + 1), 2.0) == 1.0;
}

// Rounded from the exact value, halves to even.
std::string exact_fixed(double magnitude, int decimals) {
    std::array<char, 336> buffer{};  // 309 digits, point, 10 decimals
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude,
                                   std::chars_format::fixed, decimals)
                         .ptr;
    return {buffer.data(), end};
}

// Adds 1 to the last digit of a decimal text.
void count_up(std::string& text) {
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit) {
        if (*digit == '.') continue;
        if (*digit != '9') {
            ++*digit;
            return;
        }
        *digit = '0';
    }
    text.insert(text.begin(), '1');
}

}  // namespace

std::optional<double> to_number(std::string_view text) {
    if (const int digits = short_digits(text); digits >= 0) return static_cast<double>(digits);
    text = trim(text);
    if (text.empty() || numeric_prefix(text, true) != text.size()) return std::nullopt;
    const bool grouped = text.find(',') != std::string_view::npos;
    const double value = grouped ? parse<double>(without_commas(text)) : parse<double>(text);
    if (!std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<float> to_single(std::string_view text) {
    if (const int digits = short_digits(text); digits >= 0) return static_cast<float>(digits);
    const auto value = to_number(text);
    if (!value) return std::nullopt;
    // From the text: by way of a double the value would be rounded twice.
    const bool grouped = text.find(',') != std::string_view::npos;
    const float single = grouped ? leading_single(without_commas(text)) : leading_single(text);
    if (!std::isfinite(single)) return std::nullopt;
    return single;
}

bool is_numeric(std::string_view text) {
    return to_number(text).has_value();
}

double numeric_value(std::string_view text) {
    return to_number(text).value_or(0.0);
}

double leading_value(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    const std::size_t length = numeric_prefix(text, false);
    return length == 0 ? 0.0 : parse<double>(text.substr(0, length));
}

float leading_single(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    const std::size_t length = numeric_prefix(text, false);
    return length == 0 ? 0.0F : parse<float>(text.substr(0, length));
}

std::int32_t round_half_even(double value) {
    if (std::isnan(value)) return 0;
    constexpr double Low = std::numeric_limits<std::int32_t>::min();
    constexpr double High = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::fmin(std::fmax(std::nearbyint(value), Low), High));
}

std::string rounded_text(double value) {
    return fixed(std::round(value), 0);
}

char* write_general_plain(float value, char* out) {
    std::string special;
    if (write_non_finite(static_cast<double>(value), special)) {
        for (const char c : special) *out++ = c;
        return out;
    }
    if (value == 0.0F) {
        *out++ = '0';
        return out;
    }
    // d.dddddde±xx, rounded from the exact binary value.
    std::array<char, 32> scientific{};
    const char* end = std::to_chars(scientific.data(), scientific.data() + scientific.size(), value,
                                    std::chars_format::scientific, 6)
                          .ptr;
    const char* at = scientific.data();
    if (*at == '-') *out++ = *at++;
    std::array<char, 7> digits{};
    digits[0] = *at++;
    ++at;
    for (std::size_t i = 1; i < digits.size(); ++i) digits[i] = *at++;
    ++at;
    int exponent = 0;
    std::from_chars(*at == '+' ? at + 1 : at, end, exponent);
    int significant = 7;
    while (significant > 1 && digits[static_cast<std::size_t>(significant - 1)] == '0')
        --significant;

    const auto digit = [&](int i) { return digits[static_cast<std::size_t>(i)]; };
    if (exponent >= 0 && exponent <= 6) {
        for (int i = 0; i <= exponent; ++i) *out++ = digit(i);
        if (significant > exponent + 1) *out++ = '.';
        for (int i = exponent + 1; i < significant; ++i) *out++ = digit(i);
    } else if (exponent < 0 && significant - exponent - 1 <= 7) {
        *out++ = '0';
        *out++ = '.';
        for (int i = -1; i > exponent; --i) *out++ = '0';
        for (int i = 0; i < significant; ++i) *out++ = digit(i);
    } else {
        *out++ = digit(0);
        if (significant > 1) *out++ = '.';
        for (int i = 1; i < significant; ++i) *out++ = digit(i);
        *out++ = 'E';
        *out++ = exponent < 0 ? '-' : '+';
        const int magnitude = exponent < 0 ? -exponent : exponent;
        *out++ = static_cast<char>('0' + magnitude / 10);
        *out++ = static_cast<char>('0' + magnitude % 10);
    }
    return out;
}

std::string shortest(double value) {
    std::string text;
    if (write_non_finite(value, text)) return text;
    std::array<char, 32> buffer{};
    return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

std::string fixed(double value, int decimals) {
    std::string text;
    if (write_non_finite(value, text)) return text;
    const double magnitude = std::fabs(value);
    if (is_tie(magnitude, decimals)) {
        // One decimal more shows the value exactly; what stands before its last digit, a 5, goes
        // up.
        text = exact_fixed(magnitude, decimals + 1);
        text.pop_back();
        if (decimals == 0) text.pop_back();
        count_up(text);
    } else {
        text = exact_fixed(magnitude, decimals);
    }
    const bool zero = text.find_first_not_of("0.") == std::string::npos;
    return value < 0 && !zero ? "-" + text : text;
}

}  // namespace kavorix
