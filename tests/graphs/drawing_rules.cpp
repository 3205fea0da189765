// Small pure functions of the drawing: time axis, page layout, bars, palette, CSV quoting.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "graphs/graph_layout.h"
#include "graphs/live_graph.h"
#include "graphs/palette.h"
#include "graphs/time_axis.h"
#include "graphs/trend_csv.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;

// The labels of ticks, between bars.
std::string labels(const TimeTicks& ticks) {
    std::string all;
    for (const TimeTick& tick : ticks.ticks) all += (all.empty() ? "" : "|") + tick.label;
    return all;
}

TEST(ElapsedTicks, StandAtRoundTimes) {
    EXPECT_EQ(labels(elapsed_ticks({0, 60}, 8)),
              "0:00:00|0:00:10|0:00:20|0:00:30|0:00:40|0:00:50|0:01:00");
    EXPECT_EQ(labels(elapsed_ticks({3595, 3605}, 6)), "0:59:56|0:59:58|1:00:00|1:00:02|1:00:04");
    EXPECT_EQ(labels(elapsed_ticks({0.9, 1.4}, 3)), "0:00:01.0|0:00:01.2|0:00:01.4");
    EXPECT_EQ(elapsed_ticks({0, 60}, 8).between.size(), 13U);
    for (double length = 0.3; length < 30 * 86400; length *= 1.07)
        for (const int most : {3, 6, 12}) {
            const std::size_t count = elapsed_ticks({12.3, 12.3 + length}, most).ticks.size();
            EXPECT_LE(count, static_cast<std::size_t>(most) + 1) << length;
        }
}

// Adds rows, one a second, from `start` on.
void add_rows(TrendData& data, WallTime start, int rows) {
    const float value = 0;
    for (int i = 0; i < rows; ++i, start = add_milliseconds(start, 1000))
        data.append(static_cast<double>(data.end_row()), start, {&value, 1});
}

TEST(ClockTicks, StandAtRoundTimesOfDayWithTheDateWhereItIsNew) {
    TrendData data(1, 1000);
    EXPECT_TRUE(clock_ticks(data, {0, 60}, 5).ticks.empty()) << "no rows";
    add_rows(data, {2026, 12, 31, 23, 58, 30, 0}, 200);
    const TimeTicks ticks = clock_ticks(data, {0, 180}, 4);
    EXPECT_EQ(labels(ticks), "23:59\n31 Dec 2026|00:00\n1 Jan 2027|00:01");
    EXPECT_EQ(std::pair(ticks.ticks[0].time_s, ticks.ticks[2].time_s), std::pair(30.0, 150.0));
    TrendData jumping(1, 1000);
    add_rows(jumping, {2026, 1, 5, 8, 0, 0, 0}, 60);
    add_rows(jumping, {2026, 1, 5, 12, 1, 0, 0}, 60);
    EXPECT_EQ(labels(clock_ticks(jumping, {0, 119}, 4)),
              "08:00:00\n5 Jan 2026|08:00:30|12:01:00|12:01:30");
}

using Edges = std::array<double, 4>;

Edges edges(const PixelBox& box) {
    return {box.left, box.right(), box.top, box.bottom()};
}

TEST(OnPage, CountsFractionsFromBelow) {
    const Edges found = edges(on_page({0.125, 0.875, 0.25, 0.75}, 1000, 500));
    EXPECT_EQ(found, (Edges{125, 875, 125, 375}));
}

TEST(LegendCells, FillTheBoxFourAndFour) {
    const PixelBox box{0, 7, 1200, 98};
    for (int entries = 1; entries <= 128; ++entries) {
        // Lines of 40 do not all fit.
        const auto cells = legend_cells(box, (entries + 1) / 2, entries % 2 == 0 ? 22 : 40);
        ASSERT_EQ(cells.size(), static_cast<std::size_t>((entries + 1) / 2));
        for (std::size_t i = 0; i < cells.size(); ++i) {
            EXPECT_GE(cells[i].top, box.top);
            EXPECT_LE(cells[i].bottom(), box.bottom() + 1e-9);
            EXPECT_LE(cells[i].right(), box.right() + 1e-9);
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(cells[j].contains(cells[i].left + 1, cells[i].top + 1));
        }
    }
    const auto cells = legend_cells(box, 16, 22);
    EXPECT_EQ(cells[5].left, 300);
    EXPECT_EQ(cells[5].top, cells[4].top);
    EXPECT_EQ(cells[4].top - cells[0].top, 22);
}

// Bars of 62 % of their place stand on zero, or on the end of the range that is nearest to it.
TEST(Bars, ReachFromZeroToTheirValueWithinTheRange) {
    constexpr float Infinite = std::numeric_limits<float>::infinity();
    struct Bar {
        float value;
        double top, bottom;
        OutOfRange out;
    };
    const auto expect_bars = [](const ValueRange& range, const std::vector<Bar>& bars) {
        std::vector<float> values;
        for (const Bar& bar : bars) values.push_back(bar.value);
        const auto shapes = bar_shapes(values, range, {100, 50, 400, 200});
        ASSERT_EQ(shapes.size(), bars.size());
        const double place = 400.0 / static_cast<double>(bars.size());
        for (std::size_t i = 0; i < bars.size(); ++i) {
            const double centre = 100 + place * (static_cast<double>(i) + 0.5);
            const double half = std::min(place * 0.62, 90.0) / 2;
            EXPECT_EQ(shapes[i].value, !std::isnan(bars[i].value));
            EXPECT_EQ(shapes[i].out, bars[i].out) << i;
            const Edges expected = {centre - half, centre + half, bars[i].top, bars[i].bottom};
            for (std::size_t edge = 0; edge < 4; ++edge)
                EXPECT_NEAR(edges(shapes[i].box)[edge], expected[edge], 1e-9) << i << " " << edge;
        }
    };
    expect_bars({-2, 2}, {{1, 100, 150, OutOfRange::No},
                          {-2, 150, 250, OutOfRange::No},
                          {0, 150, 150, OutOfRange::No}});
    expect_bars({1, 2}, {{5, 50, 250, OutOfRange::Above},
                         {0.5F, 250, 250, OutOfRange::Below},
                         {2, 50, 250, OutOfRange::No},
                         {1, 250, 250, OutOfRange::No},
                         {Infinite, 50, 250, OutOfRange::Above},
                         {NAN, 250, 250, OutOfRange::No}});
    expect_bars({-2, -1}, {{-2, 50, 250, OutOfRange::No}});
}

TEST(TrendCsv, QuotesNamesThatNeedIt) {
    TrendData data(2, 5);
    EXPECT_EQ(trend_csv(data, {0, 1}, {"a,b", "5\" pipe"}),
              "Time (s),Date,Clock,\"a,b\",\"5\"\" pipe\"\r\n");
}

// Colour vision: what eyes without one kind of cone make of a colour, as linear RGB.
using Rgb = std::array<double, 3>;
constexpr double Vision[4][3][3] = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                                    {{0.152286, 1.052583, -0.204868},
                                     {0.114503, 0.786281, 0.099216},
                                     {-0.003882, -0.048116, 1.051998}},
                                    {{0.367322, 0.860646, -0.227968},
                                     {0.280085, 0.672501, 0.047413},
                                     {-0.011820, 0.042940, 0.968881}},
                                    {{1.255528, -0.076749, -0.178779},
                                     {-0.078411, 0.930809, 0.147602},
                                     {0.004733, 0.691367, 0.303900}}};

Rgb linear(std::uint32_t rgb) {
    Rgb result{};
    for (std::size_t i = 0; i < 3; ++i) {
        const double c = static_cast<double>((rgb >> (16 - 8 * i)) & 0xFF) / 255;
        result[i] = c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    }
    return result;
}

double luminance(std::uint32_t rgb) {
    const Rgb c = linear(rgb);
    return 0.2126 * c[0] + 0.7152 * c[1] + 0.0722 * c[2];
}

double contrast(std::uint32_t a, std::uint32_t b) {
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

// Lightness and the two colour directions as the eye weighs them.
Rgb perceived(std::uint32_t rgb, const double (&eye)[3][3]) {
    const Rgb c = linear(rgb);
    Rgb seen{};
    for (std::size_t i = 0; i < 3; ++i)
        seen[i] = std::clamp(eye[i][0] * c[0] + eye[i][1] * c[1] + eye[i][2] * c[2], 0.0, 1.0);
    const double xyz[] = {
        (0.4124564 * seen[0] + 0.3575761 * seen[1] + 0.1804375 * seen[2]) / 0.95047,
        0.2126729 * seen[0] + 0.7151522 * seen[1] + 0.0721750 * seen[2],
        (0.0193339 * seen[0] + 0.1191920 * seen[1] + 0.9503041 * seen[2]) / 1.08883};
    const auto root = [](double v) { return v > 0.008856 ? std::cbrt(v) : 7.787 * v + 16.0 / 116; };
    return {116 * root(xyz[1]) - 16, 500 * (root(xyz[0]) - root(xyz[1])),
            200 * (root(xyz[1]) - root(xyz[2]))};
}

double distance(std::uint32_t a, std::uint32_t b, const double (&eye)[3][3]) {
    const Rgb p = perceived(a, eye);
    const Rgb q = perceived(b, eye);
    return std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]);
}

TEST(Palette, LinesOfOneKindStayApartForEveryEye) {
    for (const Ground ground : {Ground::Light, Ground::Dark})
        for (int a = 0; a < PaletteLines; ++a)
            for (int b = 0; b < a; ++b) {
                const std::uint32_t one = graph_colour(FirstLineColour + a, ground);
                const std::uint32_t other = graph_colour(FirstLineColour + b, ground);
                EXPECT_GE(distance(one, other, Vision[0]), 10) << a << " and " << b;
                if (line_dash(a) != line_dash(b)) continue;
                for (const auto& eye : Vision)
                    EXPECT_GE(distance(one, other, eye), 19) << a << " and " << b;
            }
}

TEST(Palette, EverythingStandsOutFromTheGround) {
    for (const Ground ground : {Ground::Light, Ground::Dark}) {
        const std::uint32_t paper = graph_ground(ground);
        EXPECT_GE(contrast(graph_colour(TextColour, ground), paper), 7);
        for (int line = 0; line < PaletteLines; ++line)
            EXPECT_GE(contrast(graph_colour(FirstLineColour + line, ground), paper), 2.95) << line;
    }
}

}  // namespace
}  // namespace kavorix::test
