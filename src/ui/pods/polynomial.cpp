#include "ui/pods/polynomial.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

#include "base/numbers.h"
#include "model/runtime.h"

namespace kavorix {

namespace {

// Without the zeros at the end of its decimals, down to `least` decimals.
std::string without_trailing_zeros(std::string text, std::size_t least) {
    const std::size_t point = text.find('.');
    if (point == std::string::npos) return text;
    while (text.size() > point + 1 + least && text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text;
}

// One to three decimals, an exponent without padding that has a sign only when it is negative.
std::string exponent_text(double value) {
    constexpr int Decimals = 3;
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value,
                                   std::chars_format::scientific, Decimals)
                         .ptr;
    const std::string text(digits, end);
    const std::size_t e = text.find('e');
    int exponent = 0;
    const char* first = text.data() + e + (text[e + 1] == '+' ? 2 : 1);
    std::from_chars(first, text.data() + text.size(), exponent);
    return without_trailing_zeros(text.substr(0, e), 1) + "E" + std::to_string(exponent);
}

}  // namespace

double value_at(const Coefficients6& coefficients, double x) {
    double value = 0;
    for (auto c = coefficients.rbegin(); c != coefficients.rend(); ++c) value = value * x + *c;
    return value;
}

PolynomialRange value_range(const Coefficients6& coefficients, double from, double to) {
    constexpr int Steps = 200;
    bool any = false;
    PolynomialRange range;
    for (int i = 0; i <= Steps; ++i) {
        const double value = value_at(coefficients, from + (to - from) * i / Steps);
        if (!std::isfinite(value)) continue;
        range.lowest = any ? std::min(range.lowest, value) : value;
        range.highest = any ? std::max(range.highest, value) : value;
        any = true;
    }
    const double apart = std::max(1.0, std::fabs(range.lowest)) * 1E-6;
    if (range.highest - range.lowest < apart) {
        const double margin = std::max(1.0, std::fabs(range.lowest)) / 2;
        range.lowest -= margin;
        range.highest += margin;
    }
    return range;
}

std::string coefficient_text(double value) {
    constexpr int Decimals = 4;
    const double size = std::fabs(value);
    if (size >= 1000 || size < 0.01) return exponent_text(value);
    return without_trailing_zeros(fixed(value, Decimals), 0);
}

std::string formula(const Coefficients6& coefficients) {
    std::string text;
    for (int i = 0; i < Coefficients; ++i) {
        std::string term = coefficient_text(coefficients[at(i)]);
        if (numeric_value(term) == 0) continue;
        if (i > 0) term += "x^" + std::to_string(i);
        text.insert(0, term + "+");
    }
    if (!text.empty()) text.pop_back();
    return text;
}

}  // namespace kavorix
