#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <string>

#include "base/numbers.h"

namespace kavorix {
namespace {

struct Row {
    std::uint32_t bits;
    const char* text;
};

// What stands beside each pattern was worked out from its exact decimal expansion.
constexpr Row Rows[] = {
    // Plain form
    {0x3F800000, "1"},
    {0xBF800000, "-1"},
    {0x3F000000, "0.5"},
    {0x3DCCCCCD, "0.1"},
    {0x3EAAAAAB, "0.3333333"},
    {0x42C80000, "100"},
    {0x42F6E979, "123.456"},
    {0xC3889333, "-273.15"},
    {0x4996B438, "1234567"},
    {0x4B18967F, "9999999"},
    {0x3F7FFFFF, "0.9999999"},
    // The last place behind the point is the seventh
    {0x3727C5AC, "0.00001"},
    {0x33D6BF95, "0.0000001"},
    {0x3C4A4533, "0.0123456"},
    {0x3DFCD6DE, "0.1234567"},
    {0x3C65AA3E, "1.401764E-02"},
    {0x3AA1D132, "1.234567E-03"},
    {0x3DCCCCCB, "9.999999E-02"},
    {0x348637BD, "2.5E-07"},
    {0x34210FB0, "1.5E-07"},
    {0x322BCC77, "1E-08"},
    // Eight digits before the point
    {0x4B189680, "1E+07"},
    {0x4B3C614E, "1.234568E+07"},
    {0x4B800000, "1.677722E+07"},
    {0x4D004586, "1.345025E+08"},
    {0x501502F9, "1E+10"},
    {0x7E967699, "1E+38"},
    // Ties go to the even neighbour, in the exact range and beyond
    {0x49742408, "1000000"},       // 1000000.5
    {0x49742418, "1000002"},       // 1000001.5
    {0x4A7FFFFE, "4194304"},       // 4194303.5
    {0x4AFFFFFF, "8388608"},       // 8388607.5
    {0x48000004, "131072.1"},      // 131072.0625, no tie: seven digits end before it
    {0x4B189685, "1E+07"},         // 10000005
    {0x4B18968F, "1.000002E+07"},  // 10000015
    {0x4B189699, "1.000002E+07"},  // 10000025
    // Edges
    {0x209F613F, "2.7E-19"},
    {0x7F7FC99E, "3.4E+38"},
    {0x7F7FFFFF, "3.402823E+38"},
    {0xFF7FFFFF, "-3.402823E+38"},
    {0x00800000, "1.175494E-38"},
    {0x007FFFFF, "1.175494E-38"},
    {0x00000001, "1.401298E-45"},
    {0x80000001, "-1.401298E-45"},
    {0x8000000A, "-1.401298E-44"},
    {0x00000000, "0"},
    {0x80000000, "0"},
    {0x7F800000, "Inf"},
    {0xFF800000, "-Inf"},
    {0x7FC00000, "NaN"},
    {0xFFC00001, "NaN"},
    {0x7F800001, "NaN"},
};

std::string plain(float value) {
    std::array<char, GeneralBufferSize> text{};
    return {text.data(), write_general_plain(value, text.data())};
}

TEST(GeneralFormat, WritesTheTableOfValues) {
    for (const Row& row : Rows)
        EXPECT_EQ(general(std::bit_cast<float>(row.bits)), row.text) << std::hex << row.bits;
}

TEST(GeneralFormat, ThePlainRouteWritesTheSame) {
    for (const Row& row : Rows)
        EXPECT_EQ(plain(std::bit_cast<float>(row.bits)), row.text) << std::hex << row.bits;
}

// Literals that round on their way to a single: 9999999.5 has no single of its own.
TEST(GeneralFormat, WritesWhatTheSingleHolds) {
    EXPECT_EQ(general(9999999.5F), "1E+07");
    EXPECT_EQ(general(0.1F + 0.2F), "0.3");
    EXPECT_EQ(general(16777217.0F), "1.677722E+07");
}

// Every decade boundary has its own table entries; one wrong entry shows on one side of it.
TEST(GeneralFormat, BothRoutesAgreeAroundEveryPowerOfTenAndTwo) {
    const auto compare_around = [](float value) {
        const auto bits = std::bit_cast<std::uint32_t>(value);
        for (std::uint32_t near = bits - 20; near != bits + 20; ++near)
            ASSERT_EQ(general(std::bit_cast<float>(near)), plain(std::bit_cast<float>(near)))
                << std::hex << near;
    };
    for (int exponent = -37; exponent <= 38; ++exponent)
        compare_around(leading_single("1E" + std::to_string(exponent)));
    for (std::uint32_t field = 1; field < 255; ++field)
        compare_around(std::bit_cast<float>(field << 23));
}

TEST(GeneralFormat, KeepsWithinItsBuffer) {
    for (const Row& row : Rows) {
        std::array<char, GeneralBufferSize + 8> buffer{};
        buffer.fill('#');
        write_general(std::bit_cast<float>(row.bits), buffer.data());
        for (std::size_t i = GeneralBufferSize; i < buffer.size(); ++i)
            ASSERT_EQ(buffer[i], '#') << std::hex << row.bits;
    }
}

}  // namespace
}  // namespace kavorix
