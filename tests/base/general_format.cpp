#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <string>

#include "base/numbers.h"
#include "rows.h"

namespace kavorix {
namespace {

// What stands beside each pattern was worked out from its exact decimal expansion: the plain form,
// with at most seven places behind the point; the exponent form; ties, which go to the even
// neighbour (1000000.5, 1000001.5, 4194303.5, 8388607.5, 10000005, 10000015, 10000025; 131072.0625
// is none); the edges.
const auto Rows = test::rows_of(R"(
    3F800000=1| BF800000=-1| 3F000000=0.5| 3DCCCCCD=0.1| 3EAAAAAB=0.3333333| 42C80000=100|
    42F6E979=123.456| C3889333=-273.15| 4996B438=1234567| 4B18967F=9999999| 3F7FFFFF=0.9999999|
    3727C5AC=0.00001| 33D6BF95=0.0000001| 3C4A4533=0.0123456| 3DFCD6DE=0.1234567|
    3C65AA3E=1.401764E-02| 3AA1D132=1.234567E-03| 3DCCCCCB=9.999999E-02| 348637BD=2.5E-07|
    34210FB0=1.5E-07| 322BCC77=1E-08| 4B189680=1E+07| 4B3C614E=1.234568E+07|
    4B800000=1.677722E+07| 4D004586=1.345025E+08| 501502F9=1E+10| 7E967699=1E+38|
    49742408=1000000| 49742418=1000002| 4A7FFFFE=4194304| 4AFFFFFF=8388608| 48000004=131072.1|
    4B189685=1E+07| 4B18968F=1.000002E+07| 4B189699=1.000002E+07| 209F613F=2.7E-19|
    7F7FC99E=3.4E+38| 7F7FFFFF=3.402823E+38| FF7FFFFF=-3.402823E+38| 00800000=1.175494E-38|
    007FFFFF=1.175494E-38| 00000001=1.401298E-45| 80000001=-1.401298E-45| 8000000A=-1.401298E-44|
    00000000=0| 80000000=0| 7F800000=Inf| FF800000=-Inf| 7FC00000=NaN| FFC00001=NaN| 7F800001=NaN)");

float single(const std::string& bits) {
    return std::bit_cast<float>(static_cast<std::uint32_t>(std::stoul(bits, nullptr, 16)));
}

std::string plain(float value) {
    std::array<char, GeneralBufferSize> text{};
    return {text.data(), write_general_plain(value, text.data())};
}

TEST(GeneralFormat, BothRoutesWriteTheTableOfValuesWithinTheBuffer) {
    for (const auto& [bits, text] : Rows) {
        EXPECT_EQ(general(single(bits)), text) << bits;
        EXPECT_EQ(plain(single(bits)), text) << bits;
        std::array<char, GeneralBufferSize + 8> buffer{};
        write_general(single(bits), buffer.data());
        EXPECT_EQ(std::string_view(buffer.data() + GeneralBufferSize, 8), std::string(8, '\0'))
            << bits;
    }
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

}  // namespace
}  // namespace kavorix
