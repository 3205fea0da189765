#pragma once

// The check sum of a journal line.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kavorix {

// CRC-32 (polynomial EDB88320, as of Ethernet) of the bytes as eight hexadecimal digits.
inline std::string check_sum_text(std::string_view bytes) {
    static constexpr auto Table = [] {
        std::array<std::uint32_t, 256> table{};
        for (std::uint32_t i = 0; i < 256; ++i) {
            table[i] = i;
            for (int bit = 0; bit < 8; ++bit)
                table[i] = (table[i] >> 1) ^ ((table[i] & 1) != 0 ? 0xEDB88320U : 0U);
        }
        return table;
    }();
    std::uint32_t sum = 0xFFFFFFFFU;
    for (const char c : bytes)
        sum = Table[(sum ^ static_cast<unsigned char>(c)) & 0xFFU] ^ (sum >> 8);
    sum = ~sum;
    std::string text(8, '0');
    for (std::size_t i = 8; i-- > 0; sum /= 16) text[i] = "0123456789ABCDEF"[sum % 16];
    return text;
}

}  // namespace kavorix
