#pragma once

// Colours and dashes of the graph. The eight colours of solid lines stay apart for every kind of
// colour vision, so do the eight of dashed ones; all sixteen differ, on a light ground and on a
// dark one.

#include <cstdint>

#include "graphs/plot.h"

namespace kavorix {

inline constexpr int SolidLines = 8;
inline constexpr int PaletteLines = 16;

enum class Ground { Light, Dark };

// The paper that the colours are made for, 0xRRGGBB.
std::uint32_t graph_ground(Ground ground);

// Colour `number` of WGGetRGBColor on a ground, 0xRRGGBB: TextColour, or FirstLineColour and on,
// round and round after the sixteenth.
std::uint32_t graph_colour(int number, Ground ground);

// Dashes of a line, 0 the first.
Dash line_dash(int line);

}  // namespace kavorix
