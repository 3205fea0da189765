#include "base/numbers.h"

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

// The value of a text that numeric_prefix() took whole and that holds no comma. Beyond the range:
// infinity, or zero for a value too small.
template <class Number>
Number parse(std::string_view text) {
    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') text.remove_prefix(1);
    Number value{};
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        // from_chars does not say which end was passed; a long double tells them apart.
        long double wide = 0;
        const auto again = std::from_chars(text.data(), text.data() + text.size(), wide);
        const auto exponent = text.find_first_of("Ee");
        const bool tiny = again.ec == std::errc()
                              ? wide < 1
                              : exponent != std::string_view::npos && text[exponent + 1] == '-';
        value = tiny ? Number{0} : std::numeric_limits<Number>::infinity();
    }
    return negative ? -value : value;
}

std::string without_commas(std::string_view text) {
    std::string digits;
    for (const char c : text)
        if (c != ',') digits += c;
    return digits;
}

// "NaN" and the infinities; true when `value` is one of them.
bool write_non_finite(double value, std::string& out) {
    if (std::isfinite(value)) return false;
    out = std::isnan(value) ? "NaN" : value < 0 ? "-Inf" : "Inf";
    return true;
}

}  // namespace

bool is_numeric(std::string_view text) {
    text = trim(text);
    if (text.empty() || numeric_prefix(text, true) != text.size()) return false;
    return std::isfinite(parse<double>(without_commas(text)));
}

double numeric_value(std::string_view text) {
    return is_numeric(text) ? parse<double>(without_commas(trim(text))) : 0.0;
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

char* write_general(float value, char* out) {
    return write_general_plain(value, out);
}

std::string general(float value) {
    std::array<char, MaxGeneralLength> text{};
    return {text.data(), write_general(value, text.data())};
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
    // Enough for every double: 309 digits, point, 9 decimals. 17 significant digits decide a tie as
    // a reader of the number's digits would.
    std::array<char, 352> buffer{};
    const auto format = [&](double number, int places) {
        const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                       std::chars_format::fixed, places)
                             .ptr;
        return std::string(buffer.data(), end);
    };
    text = format(std::fabs(value), decimals);
    // to_chars rounds an exact tie to even; the tie goes away from zero here.
    if (const double shown = leading_value(text); shown < std::fabs(value)) {
        const double scale = std::pow(10.0, decimals);
        if (std::fabs(value) * scale - shown * scale == 0.5)
            text = format((shown * scale + 1.0) / scale, decimals);
    }
    const bool zero = text.find_first_not_of("0.") == std::string::npos;
    return value < 0 && !zero ? "-" + text : text;
}

}  // namespace kavorix
