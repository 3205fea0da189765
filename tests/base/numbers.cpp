#include "base/numbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <locale>
#include <string>

namespace kavorix {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(IsNumeric, TakesWholeNumbersTexts) {
    const struct {
        const char* text;
        double value;
    } rows[] = {
        {"0", 0},
        {"1", 1},
        {"-1", -1},
        {"+1", 1},
        {"007", 7},
        {"1.5", 1.5},
        {".5", 0.5},
        {"5.", 5},
        {"-.5", -0.5},
        {"1E3", 1000},
        {"1e3", 1000},
        {"1E+03", 1000},
        {"25e-1", 2.5},
        {"1.401764E-02", 0.01401764},
        {"  12  ", 12},
        {"1,", 1},
        {"1,234", 1234},
        {"1,2,3,4.5", 1234.5},
        {"12,,3", 123},
        {"-1,000E2", -100000},
        {"1E308", 1E308},
        {"1E-400", 0},
        {"0E999999999999", 0},
        {"0.1", 0.1},
        {"9007199254740993", 9007199254740992},
    };
    for (const auto& row : rows) {
        EXPECT_TRUE(is_numeric(row.text)) << row.text;
        EXPECT_EQ(numeric_value(row.text), row.value) << row.text;
    }
}

TEST(IsNumeric, RefusesEverythingElse) {
    for (const char* text : {"",
                             " ",
                             "+",
                             "-",
                             ".",
                             ",",
                             "-.",
                             "E5",
                             "1E",
                             "1E+",
                             "1E+ 5",
                             "0;",
                             "1 2",
                             "1-",
                             "--1",
                             "+-1",
                             "1.2.3",
                             "1.2,3",
                             "1E2.5",
                             "1E1,0",
                             "0x10",
                             "1f",
                             "$1",
                             "1%",
                             "(1)",
                             "NaN",
                             "Inf",
                             "Infinity",
                             "nan",
                             "1E309",
                             "-1E309",
                             "\t1",
                             "1\r",
                             "\xA0"
                             "1"}) {
        EXPECT_FALSE(is_numeric(text)) << text;
        EXPECT_EQ(numeric_value(text), 0) << text;
    }
    EXPECT_FALSE(is_numeric(std::string("1\0", 2)));
}

TEST(LeadingValue, TakesTheLongestNumericPrefix) {
    const struct {
        const char* text;
        double value;
    } rows[] = {
        {"", 0},
        {"abc", 0},
        {"-", 0},
        {"  12.5V", 12.5},
        {"-3 4", -3},
        {"+7;", 7},
        {"1.5.2", 1.5},
        {"1,5", 1},
        {"2E", 2},
        {"2E+", 2},
        {"2E+1x", 20},
        {"2e-1", 0.2},
        {".25'", 0.25},
        {".", 0},
        {"1E400", Infinity},
        {"-1E400", -Infinity},
        {"1E-400", 0},
        {"1E99999999999999999999", Infinity},
        {"1E-99999999999999999999", 0},
    };
    for (const auto& row : rows) EXPECT_EQ(leading_value(row.text), row.value) << row.text;
}

// Which end of the range a number passes is told by all of its digits, not by its exponent's sign.
TEST(LeadingValue, ANumberBeyondTheRangeGoesToTheNearerEnd) {
    const std::string zeros(5000, '0');
    EXPECT_EQ(leading_value("0." + zeros + "1"), 0);
    EXPECT_EQ(leading_value("1" + zeros), Infinity);
    EXPECT_EQ(leading_value("-1" + zeros + "E-1"), -Infinity);
    EXPECT_EQ(leading_value("0." + zeros + "1E+1"), 0);
    EXPECT_EQ(leading_value("0." + zeros + "1E+5001"), 1);
}

TEST(LeadingSingle, RoundsOnceToTheSingle) {
    EXPECT_EQ(std::bit_cast<std::uint32_t>(leading_single("0.1")), 0x3DCCCCCDu);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(leading_single("2.7E-19")), 0x209F613Fu);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(leading_single("-1.401298E-44")), 0x8000000Au);
    // A double in between would lie on the tie and go down to 1.
    EXPECT_EQ(std::bit_cast<std::uint32_t>(leading_single("1.00000005960464477539062500000001")),
              0x3F800001u);
    EXPECT_EQ(leading_single("1E39"), std::numeric_limits<float>::infinity());
    EXPECT_EQ(leading_single("-1E39x"), -std::numeric_limits<float>::infinity());
    EXPECT_EQ(leading_single("1E-60"), 0.0F);
    EXPECT_EQ(leading_single("V1"), 0.0F);
}

TEST(RoundHalfEven, TakesHalvesToTheEvenNeighbour) {
    const struct {
        double value;
        std::int32_t whole;
    } rows[] = {{0, 0},
                {0.5, 0},
                {1.5, 2},
                {2.5, 2},
                {-0.5, 0},
                {-1.5, -2},
                {2.4999999999, 2},
                {2.5000000001, 3},
                {1E12, 2147483647},
                {-1E12, -2147483647 - 1},
                {2147483647.5, 2147483647},
                {Infinity, 2147483647},
                {-Infinity, -2147483647 - 1},
                {NotANumber, 0}};
    for (const auto& row : rows) EXPECT_EQ(round_half_even(row.value), row.whole) << row.value;
}

TEST(RoundedText, TakesHalvesAwayFromZero) {
    const struct {
        double value;
        const char* text;
    } rows[] = {{0, "0"},
                {-0.0, "0"},
                {-0.4, "0"},
                {0.5, "1"},
                {-0.5, "-1"},
                {2.5, "3"},
                {-2.5, "-3"},
                {0.49999999999999994, "0"},
                {1E20, "100000000000000000000"},
                {4503599627370497.5, "4503599627370498"}};
    for (const auto& row : rows) EXPECT_EQ(rounded_text(row.value), row.text) << row.value;
}

TEST(Shortest, GivesTheSameDoubleAgain) {
    const struct {
        double value;
        const char* text;
    } rows[] = {{2, "2"},        {0.1, "0.1"},        {-1234567.89, "-1234567.89"},
                {1E20, "1e+20"}, {NotANumber, "NaN"}, {-Infinity, "-Inf"}};
    for (const auto& row : rows) EXPECT_EQ(shortest(row.value), row.text);
}

struct FixedRow {
    double value;
    int decimals;
    const char* text;
};

TEST(Fixed, WritesTheGivenDecimals) {
    const FixedRow rows[] = {
        {2.5, 6, "2.500000"},
        {0, 0, "0"},
        {0, 3, "0.000"},
        {-0.0, 1, "0.0"},
        {12.25, 2, "12.25"},
        {-12.345, 1, "-12.3"},
        {999.9996, 3, "1000.000"},
        {0.0000004, 6, "0.000000"},
        {1E22, 2, "10000000000000000000000.00"},
        {3.4028234663852886E38, 0, "340282346638528859811704183484516925440"},
        {5E-324, 9, "0.000000000"},
        {Infinity, 2, "Inf"},
        {-Infinity, 2, "-Inf"},
        {NotANumber, 2, "NaN"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(fixed(row.value, row.decimals), row.text) << row.value << " " << row.decimals;
}

TEST(Fixed, AnExactTieGoesAwayFromZero) {
    const FixedRow rows[] = {
        {0.5, 0, "1"},
        {1.5, 0, "2"},
        {2.5, 0, "3"},
        {-2.5, 0, "-3"},
        {9.5, 0, "10"},
        {99.5, 0, "100"},
        {0.25, 1, "0.3"},
        {0.75, 1, "0.8"},
        {9.75, 1, "9.8"},
        {9.9375, 3, "9.938"},
        {0.0078125, 6, "0.007813"},
        {-0.0078125, 6, "-0.007813"},
        {0.0625, 3, "0.063"},
        {0.00048828125, 9, "0.000488281"},  // two digits more than shown: no tie
        {0.0009765625, 9, "0.000976563"},   // 2^-10
        {1.9990234375, 9, "1.999023438"},
        {4503599627370495.5, 0, "4503599627370496"},
        {2251799813685247.75, 1, "2251799813685247.8"},
        {4398046511103.9990234375, 9, "4398046511103.999023438"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(fixed(row.value, row.decimals), row.text) << row.value << " " << row.decimals;
}

// Not ties: the binary value lies beside the decimal one that it was written as.
TEST(Fixed, WhatOnlyLooksLikeATieIsRoundedFromTheExactValue) {
    const FixedRow rows[] = {
        {0.15, 1, "0.1"},    // 0.1499999999999999944...
        {0.35, 1, "0.3"},    // 0.3499999999999999778...
        {0.45, 1, "0.5"},    // 0.4500000000000000111...
        {1.005, 2, "1.00"},  // 1.0049999999999998934...
        {1.115, 2, "1.11"},  // 1.1149999999999999911...
        {2.675, 2, "2.67"},  // 2.6749999999999998223...
        {0.49999999999999994, 0, "0"},
        {2.5000000000000004, 0, "3"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(fixed(row.value, row.decimals), row.text) << row.value << " " << row.decimals;
}

class CommaForPoint : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(Numbers, DoNotFollowTheLocale) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new CommaForPoint));
    EXPECT_EQ(fixed(1234.5, 2), "1234.50");
    EXPECT_EQ(general(1234.5F), "1234.5");
    EXPECT_EQ(leading_value("1.5"), 1.5);
    EXPECT_TRUE(is_numeric("1.5"));
    std::locale::global(before);
}

}  // namespace
}  // namespace kavorix
