#pragma once

#include <cstdint>
#include <string_view>

namespace kavorix {

// The CRC-32C (Castagnoli) of some bytes. The sum of several parts: each one's `before` is the sum
// of those in front of it.
std::uint32_t check_sum(std::string_view bytes, std::uint32_t before = 0);

}  // namespace kavorix
