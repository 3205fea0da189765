#pragma once

#include <cstddef>

namespace kavorix {

// An index that is known not to be negative, as the standard containers take it.
constexpr std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}

}  // namespace kavorix
