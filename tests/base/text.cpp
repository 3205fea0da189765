#include "base/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace kavorix {
namespace {

TEST(Text, TrimTakesBlanksOnly) {
    EXPECT_EQ(trim(""), "");
    EXPECT_EQ(trim("   "), "");
    EXPECT_EQ(trim("  a b "), "a b");
    EXPECT_EQ(trim("\ta\r\n"), "\ta\r\n");
    EXPECT_EQ(trim(" \xA0x\xA0 "), "\xA0x\xA0");
}

TEST(Text, UpperLeavesWhatIsNoAsciiLetter) {
    EXPECT_EQ(upper("az AZ 09 {`"), "AZ AZ 09 {`");
    EXPECT_EQ(upper("\xE4\xB5"), "\xE4\xB5");
}

TEST(Text, MiddleCountsFromOne) {
    EXPECT_EQ(middle("abcdef", 1, 2), "ab");
    EXPECT_EQ(middle("abcdef", 3), "cdef");
    EXPECT_EQ(middle("abcdef", 5, 9), "ef");
    EXPECT_EQ(middle("abcdef", 6, 1), "f");
    EXPECT_EQ(middle("abcdef", 7, 1), "");
    EXPECT_EQ(middle("abcdef", 8, 1), "");
    EXPECT_EQ(middle("", 1), "");
}

TEST(Text, PaddedFillsUpAndNeverCuts) {
    EXPECT_EQ(padded(7, 3), "007");
    EXPECT_EQ(padded(-7, 3), "-007");
    EXPECT_EQ(padded(1234, 3), "1234");
    EXPECT_EQ(padded(0, 0), "0");
    EXPECT_EQ(two_digits(0), "00");
    EXPECT_EQ(two_digits(7), "07");
    EXPECT_EQ(two_digits(10), "10");
    EXPECT_EQ(two_digits(123), "123");
    EXPECT_EQ(two_digits(-3), "-03");
    EXPECT_EQ(two_digits(std::numeric_limits<int>::min()), "-2147483648");
}

TEST(Text, Hex16ShowsTheBitsOfTheNumber) {
    EXPECT_EQ(hex16(-14336), "C800");
    EXPECT_EQ(hex16(0), "0");
    EXPECT_EQ(hex16(0x0A0F), "A0F");
    EXPECT_EQ(hex16(-1), "FFFF");
    EXPECT_EQ(hex16(std::numeric_limits<std::int16_t>::min()), "8000");
}

TEST(CodePage, EveryByteGoesToUtf8AndBack) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(from_utf8(to_utf8(text)), text) << byte;
        EXPECT_EQ(from_utf8_lossy(to_utf8(text)), text) << byte;
    }
}

TEST(CodePage, TheBytesHaveTheirCharacters) {
    EXPECT_EQ(to_utf8("A\xB0"
                      "C \xB5m \xDF"),
              "A°C µm ß");
    EXPECT_EQ(to_utf8("\x80\x85\x92\x96\x99\x9F"), "€…’–™Ÿ");
    EXPECT_EQ(to_utf8("\x81\x8D\x8F\x90\x9D"), "\u0081\u008D\u008F\u0090\u009D");
    EXPECT_EQ(to_utf8(std::string("\0\x7F", 2)), std::string("\0\x7F", 2));
}

TEST(CodePage, WhatHasNoPlaceIsRefusedOrShownAsAQuestionMark) {
    const struct {
        const char* utf8;
        const char* shown;
    } rows[] = {
        {"Ω", "?"},
        {"1 kΩ±", "1 k?\xB1"},
        {"\u0080", "?"},      // the code page has the euro sign at 80
        {"\U0001F600", "?"},  // beyond 16 bits
        {"a\xFF"
         "b",
         "a?b"},                       // never part of UTF-8
        {"\xC3", "?"},                 // cut short
        {"\xE2\x82", "??"},            // cut short
        {"\xC0\x80", "??"},            // longer than needed
        {"\xE0\x80\x80", "???"},       // longer than needed
        {"\xED\xA0\x80", "???"},       // a surrogate
        {"\xF4\x90\x80\x80", "????"},  // beyond the last character
        {"\x80x", "?x"},               // a continuation on its own
        {"\xC3x", "?x"},               // a continuation missing
    };
    for (const auto& row : rows) {
        EXPECT_EQ(from_utf8(row.utf8), std::nullopt) << row.utf8;
        EXPECT_EQ(from_utf8_lossy(row.utf8), row.shown) << row.utf8;
    }
}

}  // namespace
}  // namespace kavorix
