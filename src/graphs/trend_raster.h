#pragma once

// The picture of a dense trend: lines as vertical strokes of pixel columns, drawn without a
// toolkit. What the graph only moves on is moved, what was appended is drawn; the rest stays.

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "graphs/trace.h"
#include "graphs/trend_columns.h"

namespace kavorix {

// How a line looks.
struct LineLook {
    std::uint32_t rgb = 0;  // 0xRRGGBB
    Dash dash = Dash::Solid;
    bool hidden = false;
    bool operator==(const LineLook&) const = default;
};

class TrendRaster {
  public:
    // Draws the columns, a look per channel, later channels over earlier ones. The mapping's first
    // column and the columns' width belong together.
    void draw(const TrendColumns& columns, const PixelMapping& mapping,
              const std::vector<LineLook>& looks);

    // 0xAARRGGBB with premultiplied alpha, transparent where there is no line; row by row from the
    // top, width * height of the mapping last drawn.
    const std::uint32_t* pixels() const { return pixels_.data(); }

    // Pixel columns that the last draw() painted, for those who watch over the cost.
    int painted_columns() const { return painted_; }

  private:
    struct Drawn {
        PixelMapping mapping;
        std::vector<LineLook> looks;
        std::uint64_t generation;
        std::uint64_t next_row;
    };
    struct Stroke {
        double top;
        double bottom;
    };

    int move_on(const TrendColumns& columns, const PixelMapping& mapping,
                const std::vector<LineLook>& looks);
    void wipe(int from);
    void draw_line(const TrendColumns& columns, int channel, const LineLook& look, int from);
    void draw_line_between(std::pair<std::int64_t, double> from, std::pair<std::int64_t, double> to,
                           const LineLook& look, int first);
    void draw_column(std::int64_t number, Stroke stroke, const LineLook& look, int from);
    void stroke_column(int x, Stroke stroke, std::uint32_t rgb);

    PixelMapping mapping_;
    std::vector<std::uint32_t> pixels_;
    std::optional<Drawn> drawn_;
    int painted_ = 0;
};

}  // namespace kavorix
