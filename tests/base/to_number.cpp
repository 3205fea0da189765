#include <gtest/gtest.h>

#include <optional>

#include "base/numbers.h"

namespace kavorix {
namespace {

TEST(ToNumber, ValueOfWhatIsNumericAndNothingElse) {
    const std::pair<const char*, std::optional<double>> cases[] = {
        {"1", 1.0},
        {" -2.5 ", -2.5},
        {"+1E3", 1000.0},
        {"1,", 1.0},
        {"1,234.5", 1234.5},
        {".5", 0.5},
        {"5.", 5.0},
        {"", std::nullopt},
        {"0;", std::nullopt},
        {"1 2", std::nullopt},
        {"1E", std::nullopt},
        {".", std::nullopt},
        {",", std::nullopt},
        {"1E400", std::nullopt},
        {"1E-400", 0.0},
        {"Inf", std::nullopt},
        {"0x10", std::nullopt},
    };
    for (const auto& [text, value] : cases) EXPECT_EQ(to_number(text), value) << text;
}

TEST(ToSingle, RoundsTheTextOnce) {
    // Just above the middle of two singles: by way of a double it would fall on the middle.
    EXPECT_EQ(to_single("1.00000005960464477540"), std::optional<float>(1.00000012F));
    EXPECT_EQ(to_single("16,777,217.0000000001"), std::optional<float>(16777218.0F));
}

TEST(ToSingle, NothingBeyondItsRange) {
    EXPECT_EQ(to_single("3.402823E+38"), std::optional<float>(3.402823E+38F));
    EXPECT_EQ(to_single("3.5E38"), std::nullopt);
    EXPECT_EQ(to_single("-1E300"), std::nullopt);
    EXPECT_EQ(to_single("1E-60"), std::optional<float>(0.0F));
    EXPECT_EQ(to_single("x"), std::nullopt);
}

}  // namespace
}  // namespace kavorix
