#include "model/catalogue.h"

#include <algorithm>
#include <array>

namespace kavorix {

namespace {

constexpr std::array<PodTypeRow, 9> PodTypes = {{
    {NoDevice, "", "No Device", 0},
    {Type7R, "7R", "7R Solid State 3 Pole", 20},
    {Type7S, "7S", "7S Solid State 6 Pole", 10},
    {Type7T, "7T", "7T Reed Relay 3 Pole", 20},
    {Type7U, "7U", "7U Reed Relay 500V", 20},
    {Type7V, "7V", "7V Universal ZAV", 20},
    {Type7W, "7W", "7W Universal ZAV 500V", 20},
    {Type8R, "8R", "8R Digital I/O", 20},
    {Type8S, "8S", "8S Switch I/O", 32},
}};

}  // namespace

std::span<const PodTypeRow> pod_types() {
    return PodTypes;
}

const PodTypeRow& pod_type(std::int16_t type) {
    const auto* row = std::find_if(PodTypes.begin(), PodTypes.end(),
                                   [&](const PodTypeRow& r) { return r.type == type; });
    return row == PodTypes.end() ? PodTypes.front() : *row;
}

}  // namespace kavorix
