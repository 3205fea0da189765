// The general format of singles, written fast: it is the inner loop of every conversion of a log.
//
// A single has 24 significant bits, so its product with 10^k, k = 0..12 (5^12 < 2^29), is exact in
// a double: scaled to seven digits before the point and rounded half to even it gives the digits of
// the exact value. Outside of that range power and product are rounded, together by less than 3E-9
// of a unit of the last digit; only a value that near to a tie is left to the standard library, and
// so are denormals and what is no number.

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

#include "base/numbers.h"

namespace kavorix {

namespace {

static_assert(std::endian::native == std::endian::little, "digits are assembled low byte first");

constexpr int MaxDigits = 7;
constexpr int LowestPower = -38;
constexpr int HighestPower = 44;  // seven digits of the smallest normal single
constexpr std::array<double, HighestPower - LowestPower + 1> Powers = {
    1E-38, 1E-37, 1E-36, 1E-35, 1E-34, 1E-33, 1E-32, 1E-31, 1E-30, 1E-29, 1E-28, 1E-27,
    1E-26, 1E-25, 1E-24, 1E-23, 1E-22, 1E-21, 1E-20, 1E-19, 1E-18, 1E-17, 1E-16, 1E-15,
    1E-14, 1E-13, 1E-12, 1E-11, 1E-10, 1E-9,  1E-8,  1E-7,  1E-6,  1E-5,  1E-4,  1E-3,
    1E-2,  1E-1,  1E0,   1E1,   1E2,   1E3,   1E4,   1E5,   1E6,   1E7,   1E8,   1E9,
    1E10,  1E11,  1E12,  1E13,  1E14,  1E15,  1E16,  1E17,  1E18,  1E19,  1E20,  1E21,
    1E22,  1E23,  1E24,  1E25,  1E26,  1E27,  1E28,  1E29,  1E30,  1E31,  1E32,  1E33,
    1E34,  1E35,  1E36,  1E37,  1E38,  1E39,  1E40,  1E41,  1E42,  1E43,  1E44};

constexpr double power(int exponent) {
    return Powers[static_cast<std::size_t>(exponent - LowestPower)];
}

// Exponent fields of the normal singles: 1..254.
constexpr unsigned FirstNormal = 1;
constexpr unsigned BehindNormal = 255;

// Where the singles of one exponent field stand: the decimal exponent of the smallest, and the bits
// of the first one with the exponent after it (those of infinity when there is none).
struct Decade {
    std::uint32_t next = 0;
    std::int32_t exponent = 0;
};

constexpr std::array<Decade, BehindNormal> make_decades() {
    std::array<Decade, BehindNormal> decades{};
    double smallest = 0x1p-126;
    int exponent = LowestPower;
    for (unsigned field = FirstNormal; field < BehindNormal; ++field, smallest *= 2) {
        while (smallest >= power(exponent + 1)) ++exponent;
        const double next = power(exponent + 1);
        std::uint32_t bits = 0x7F800000;
        if (next < 2 * smallest) {
            const auto near = static_cast<float>(next);
            bits = std::bit_cast<std::uint32_t>(near) + (static_cast<double>(near) < next ? 1 : 0);
        }
        decades[field] = {bits, exponent};
    }
    return decades;
}
constexpr auto Decades = make_decades();

// The three digits of 0..999 as bytes 0..9, the first in the lowest byte.
constexpr std::array<std::uint32_t, 1000> make_triples() {
    std::array<std::uint32_t, 1000> triples{};
    for (std::uint32_t i = 0; i < 1000; ++i)
        triples[i] = i / 100 | (i / 10 % 10) << 8 | (i % 10) << 16;
    return triples;
}
constexpr auto Triples = make_triples();

constexpr int HighestExactPower = 12;
constexpr double NearTie = 0.5 - 1E-8;

// The seven digits of 0..9999999 as bytes 0..9, the first in the lowest byte; the highest byte is
// 0.
std::uint64_t split_digits(std::uint32_t number) {
    const std::uint32_t high = number / 1000;
    const std::uint32_t first = high / 1000;
    return first | std::uint64_t{Triples[high - first * 1000]} << 8 |
           std::uint64_t{Triples[number - high * 1000]} << 32;
}

void store(char* at, std::uint64_t bytes) {
    std::memcpy(at, &bytes, sizeof bytes);
}

// The text of d.dddddd * 10^exponent. `digits` as split_digits() gives them, the first not 0.
char* write_decimal(std::uint64_t digits, int exponent, char* out) {
    const int significant = 8 - std::countl_zero(digits) / 8;
    const std::uint64_t text = digits | 0x3030303030303030;
    if (exponent >= 0 && exponent < MaxDigits) {
        const int whole = exponent + 1;
        store(out, text);
        if (significant <= whole) return out + whole;
        out[whole] = '.';
        store(out + whole + 1, text >> 8 * whole);
        return out + significant + 1;
    }
    if (exponent < 0 && significant - exponent - 1 <= MaxDigits) {
        std::memcpy(out, "0.000000", 8);
        store(out + 1 - exponent, text);
        return out + 1 - exponent + significant;
    }
    *out++ = static_cast<char>(text);
    if (significant > 1) {
        *out = '.';
        store(out + 1, text >> 8);
        out += significant;
    }
    *out++ = 'E';
    *out++ = exponent < 0 ? '-' : '+';
    const int magnitude = exponent < 0 ? -exponent : exponent;
    *out++ = static_cast<char>('0' + magnitude / 10);
    *out++ = static_cast<char>('0' + magnitude % 10);
    return out;
}

}  // namespace

char* write_general(float value, char* out) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const unsigned field = bits >> 23 & 0xFF;
    if (field < FirstNormal || field >= BehindNormal) return write_general_plain(value, out);
    const std::uint32_t absolute = bits & 0x7FFFFFFF;
    const auto magnitude = static_cast<double>(std::bit_cast<float>(absolute));
    int exponent = Decades[field].exponent + (absolute >= Decades[field].next ? 1 : 0);
    const int scale = MaxDigits - 1 - exponent;
    const double scaled = magnitude * power(scale);
    // The sum has no bits below the point: it is rounded, halves to even, and its lowest bits are
    // the whole number.
    constexpr double Shift = 0x1.8p52;
    const double shifted = scaled + Shift;
    const bool exact = scale >= 0 && scale <= HighestExactPower;
    if (!exact && std::fabs(scaled - (shifted - Shift)) > NearTie)
        return write_general_plain(value, out);
    auto number = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(shifted));
    if (number == 10000000) {
        number = 1000000;
        ++exponent;
    }
    *out = '-';
    out += bits >> 31;
    return write_decimal(split_digits(number), exponent, out);
}

std::string general(float value) {
    std::array<char, GeneralBufferSize> text{};
    return {text.data(), write_general(value, text.data())};
}

}  // namespace kavorix
