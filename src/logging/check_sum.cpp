#include "logging/check_sum.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace kavorix {

namespace {

constexpr std::uint32_t Polynomial = 0x82F63B78;  // of CRC-32C, lowest power in the highest bit
constexpr std::size_t Step = 8;                   // bytes taken at a time

using Tables = std::array<std::array<std::uint32_t, 256>, Step>;

// Table k holds the sums of a byte with k bytes of 0 behind it.
constexpr Tables make_tables() {
    Tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t sum = byte;
        for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1u) ^ ((sum & 1u) != 0 ? Polynomial : 0);
        tables[0][byte] = sum;
    }
    for (std::size_t table = 1; table < Step; ++table)
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = tables[table - 1][byte];
            tables[table][byte] = (before >> 8u) ^ tables[0][before & 0xFFu];
        }
    return tables;
}

constexpr Tables SumTables = make_tables();

}  // namespace

std::uint32_t check_sum(std::string_view bytes, std::uint32_t before) {
    std::uint32_t sum = ~before;
    while (bytes.size() >= Step) {
        std::uint64_t part = 0;
        std::memcpy(&part, bytes.data(), Step);
        part ^= sum;
        sum = 0;
        for (std::size_t i = 0; i < Step; ++i)
            sum ^= SumTables[Step - 1 - i][(part >> (8 * i)) & 0xFFu];
        bytes.remove_prefix(Step);
    }
    for (const char byte : bytes)
        sum = (sum >> 8u) ^ SumTables[0][(sum ^ static_cast<unsigned char>(byte)) & 0xFFu];
    return ~sum;
}

}  // namespace kavorix
