#include "base/numbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <functional>
#include <limits>
#include <locale>
#include <string>

#include "rows.h"

namespace kavorix {
namespace {

using test::number;
using test::rows_of;

TEST(IsNumeric, TakesWholeNumbersTexts) {
    for (const auto& [text, value] :
         rows_of(R"(0=0|1=1|-1=-1|+1=1|007=7|1.5=1.5|.5=0.5|5.=5|-.5=-0.5|1E3=1000|
        1e3=1000|1E+03=1000|25e-1=2.5|1.401764E-02=0.01401764|  12  =12|1,=1|1,234=1234|1,2,3,4.5=1234.5|12,,3=123|
        -1,000E2=-100000|1E308=1E308|1E-400=0|0E999999999999=0|0.1=0.1|9007199254740993=9007199254740992)")) {
        EXPECT_TRUE(is_numeric(text)) << text;
        EXPECT_EQ(numeric_value(text), number(value)) << text;
        EXPECT_EQ(to_number(text), number(value)) << text;
    }
}

TEST(IsNumeric, RefusesEverythingElse) {
    auto rows = rows_of(
        "| |+|-|.|,|-.|E5|1E|1E+|1E+ 5|0;|1 "
        "2|1-|--1|+-1|1.2.3|1.2,3|1E2.5|1E1,0|0x10|1f|$1|1%|(1)|NaN|Inf|"
        "Infinity|nan|1E309|-1E309|\t1|1\r|\xA0"
        "1");
    rows.emplace_back(std::string("1\0", 2), "");
    for (const auto& [text, nothing] : rows) {
        EXPECT_FALSE(is_numeric(text)) << text;
        EXPECT_EQ(numeric_value(text), 0) << text;
        EXPECT_EQ(to_number(text), std::nullopt) << text;
    }
}

TEST(LeadingValue, TakesTheLongestNumericPrefix) {
    for (const auto& [text, value] :
         rows_of(R"(=0|abc=0|-=0|  12.5V=12.5|-3 4=-3|+7;=7|1.5.2=1.5|1,5=1|2E=2|2E+=2|
        2E+1x=20|2e-1=0.2|.25'=0.25|.=0|1E400=inf|-1E400=-inf|1E-400=0|1E99999999999999999999=inf|
        1E-99999999999999999999=0)"))
        EXPECT_EQ(leading_value(text), number(value)) << text;
}

// Which end of the range a number passes is told by all of its digits, not by its exponent's sign.
TEST(LeadingValue, ANumberBeyondTheRangeGoesToTheNearerEnd) {
    const std::string zeros(5000, '0');
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(leading_value("0." + zeros + "1"), 0);
    EXPECT_EQ(leading_value("1" + zeros), Infinity);
    EXPECT_EQ(leading_value("-1" + zeros + "E-1"), -Infinity);
    EXPECT_EQ(leading_value("0." + zeros + "1E+1"), 0);
    EXPECT_EQ(leading_value("0." + zeros + "1E+5001"), 1);
}

// The bits of the single. Just above the middle of two, a double in between would fall on the
// middle.
TEST(Singles, AreRoundedOnceFromTheText) {
    for (const auto& [text, bits] :
         rows_of(R"(0.1=3DCCCCCD|2.7E-19=209F613F|-1.401298E-44=8000000A|1E-60=0|
        1.00000005960464477539062500000001=3F800001|16777217.0000000001=4B800001|3.402823E+38=7F7FFFFD)")) {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(leading_single(text)), std::stoul(bits, nullptr, 16))
            << text;
        EXPECT_EQ(std::bit_cast<std::uint32_t>(to_single(text).value()),
                  std::stoul(bits, nullptr, 16))
            << text;
    }
    for (const auto& [text, value] : rows_of("3.5E38=inf|-1E300=-inf|-1E39x=-inf|V1=0")) {
        EXPECT_EQ(leading_single(text), static_cast<float>(number(value))) << text;
        EXPECT_EQ(to_single(text), std::nullopt) << text;
    }
    EXPECT_EQ(to_single("16,777,217.0000000001"), 16777218.0F);
}

// What a value is written as; decimals, where there are any, stand behind a colon.
void expect_written(const char* table, const std::function<std::string(double, int)>& write) {
    for (const auto& [value, text] : rows_of(table)) {
        const auto colon = std::min(value.find(':'), value.size());
        const int decimals = colon < value.size() ? value[colon + 1] - '0' : 0;
        EXPECT_EQ(write(number(value.substr(0, colon)), decimals), text) << value;
    }
}

TEST(RoundHalfEven, TakesHalvesToTheEvenNeighbourAndEndsWith32Bits) {
    expect_written(
        R"(0=0|0.5=0|1.5=2|2.5=2|-0.5=0|-1.5=-2|2.4999999999=2|2.5000000001=3|1E12=2147483647|
        -1E12=-2147483648|2147483647.5=2147483647|inf=2147483647|-inf=-2147483648|nan=0)",
        [](double value, int) { return std::to_string(round_half_even(value)); });
}

TEST(RoundedText, TakesHalvesAwayFromZero) {
    expect_written(R"(0=0|-0=0|-0.4=0|0.5=1|-0.5=-1|2.5=3|-2.5=-3|0.49999999999999994=0|
        1E20=100000000000000000000|4503599627370497.5=4503599627370498)",
                   [](double value, int) { return rounded_text(value); });
}

TEST(Shortest, GivesTheSameDoubleAgain) {
    expect_written("2=2|0.1=0.1|-1234567.89=-1234567.89|1E20=1e+20|nan=NaN|-inf=-Inf",
                   [](double value, int) { return shortest(value); });
}

TEST(Fixed, WritesTheGivenDecimals) {
    expect_written(
        R"(2.5:6=2.500000|0:0=0|0:3=0.000|-0:1=0.0|12.25:2=12.25|-12.345:1=-12.3|999.9996:3=1000.000|
        0.0000004:6=0.000000|1E22:2=10000000000000000000000.00|5E-324:9=0.000000000|inf:2=Inf|-inf:2=-Inf|nan:2=NaN|
        3.4028234663852886E38:0=340282346638528859811704183484516925440)",
        fixed);
}

TEST(Fixed, AnExactTieGoesAwayFromZero) {
    expect_written(
        R"(0.5:0=1|1.5:0=2|2.5:0=3|-2.5:0=-3|9.5:0=10|99.5:0=100|0.25:1=0.3|0.75:1=0.8|9.75:1=9.8|
        9.9375:3=9.938|0.0078125:6=0.007813|-0.0078125:6=-0.007813|0.0625:3=0.063|0.0009765625:9=0.000976563|
        1.9990234375:9=1.999023438|4503599627370495.5:0=4503599627370496|2251799813685247.75:1=2251799813685247.8|
        4398046511103.9990234375:9=4398046511103.999023438)",
        fixed);
}

// The binary value lies beside the decimal one that it was written as: 0.15 is
// 0.1499999999999999944...; and 2^-11 has two digits more than shown.
TEST(Fixed, WhatOnlyLooksLikeATieIsRoundedFromTheExactValue) {
    expect_written(R"(0.15:1=0.1|0.35:1=0.3|0.45:1=0.5|1.005:2=1.00|1.115:2=1.11|2.675:2=2.67|
        0.49999999999999994:0=0|2.5000000000000004:0=3|0.00048828125:9=0.000488281)",
                   fixed);
}

class CommaForPoint : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(Numbers, DoNotFollowTheLocale) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new CommaForPoint));
    EXPECT_EQ(fixed(1234.5, 2) + general(1234.5F), "1234.501234.5");
    EXPECT_EQ(leading_value("1.5"), 1.5);
    EXPECT_TRUE(is_numeric("1.5"));
    std::locale::global(before);
}

}  // namespace
}  // namespace kavorix
