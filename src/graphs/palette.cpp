#include "graphs/palette.h"

#include <array>

namespace kavorix {

namespace {

struct Palette {
    std::uint32_t ground;
    std::uint32_t text;
    std::array<std::uint32_t, PaletteLines> lines;
};

constexpr Palette Light = {
    0xFFFFFF,
    0x20242A,
    {0x6668D4, 0xBA2E00, 0x037A4D, 0x7B1890, 0x2D2A35, 0xC88800, 0x10A0D3, 0xC93C91, 0x7E8FE7,
     0x991500, 0x46A676, 0x581582, 0x828590, 0xA2750C, 0x016B92, 0x96005A}};
constexpr Palette Dark = {
    0x1B1E23,
    0xE4E7EC,
    {0x2584F7, 0xED743B, 0x20B97E, 0xD39CFF, 0xF8F8EC, 0xFCD252, 0x94E8FF, 0xF282BB, 0xA2BDFD,
     0xCC6F2F, 0x9EF4CD, 0xA36AE2, 0xAFAEB8, 0xD0AA16, 0x1E96BA, 0xE44C7F}};

const Palette& palette(Ground ground) {
    return ground == Ground::Dark ? Dark : Light;
}

}  // namespace

std::uint32_t graph_ground(Ground ground) {
    return palette(ground).ground;
}

std::uint32_t graph_colour(int number, Ground ground) {
    const Palette& colours = palette(ground);
    if (number < FirstLineColour) return colours.text;
    return colours.lines[static_cast<std::size_t>((number - FirstLineColour) % PaletteLines)];
}

Dash line_dash(int line) {
    return line % PaletteLines < SolidLines ? Dash::Solid : Dash::Dashed;
}

}  // namespace kavorix
