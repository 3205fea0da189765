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

std::vector<std::string> labels(const TimeTicks& ticks) {
    std::vector<std::string> result;
    for (const TimeTick& tick : ticks.ticks) result.push_back(tick.label);
    return result;
}

TEST(ElapsedTicks, StandAtRoundTimes) {
    EXPECT_THAT(
        labels(elapsed_ticks({0, 60}, 8)),
        ElementsAre("0:00:00", "0:00:10", "0:00:20", "0:00:30", "0:00:40", "0:00:50", "0:01:00"));
    EXPECT_THAT(labels(elapsed_ticks({3595, 3605}, 6)),
                ElementsAre("0:59:56", "0:59:58", "1:00:00", "1:00:02", "1:00:04"));
    EXPECT_THAT(labels(elapsed_ticks({0.9, 1.4}, 3)),
                ElementsAre("0:00:01.0", "0:00:01.2", "0:00:01.4"));
    EXPECT_EQ(elapsed_ticks({0, 60}, 8).between.size(), 13U);
}

TEST(ElapsedTicks, AreNeverMoreThanAskedFor) {
    for (double length = 0.3; length < 30 * 86400; length *= 1.07)
        for (const int most : {3, 6, 12}) {
            const std::size_t count = elapsed_ticks({12.3, 12.3 + length}, most).ticks.size();
            EXPECT_LE(count, static_cast<std::size_t>(most) + 1) << length;
        }
}

TrendData started_at(const WallTime& start, int rows) {
    TrendData data(1, 100000);
    const float value = 0;
    for (int i = 0; i < rows; ++i) data.append(i, add_milliseconds(start, i * 1000LL), {&value, 1});
    return data;
}

TEST(ClockTicks, StandAtRoundTimesOfDayWithTheDateWhereItIsNew) {
    const TrendData data = started_at({2026, 12, 31, 23, 58, 30, 0}, 200);
    const TimeTicks ticks = clock_ticks(data, {0, 180}, 4);
    EXPECT_THAT(labels(ticks), ElementsAre("23:59\n31 Dec 2026", "00:00\n1 Jan 2027", "00:01"));
    EXPECT_EQ(ticks.ticks[0].time_s, 30);
    EXPECT_EQ(ticks.ticks[2].time_s, 150);
}

TEST(ClockTicks, JumpWithTheClock) {
    TrendData data = started_at({2026, 1, 5, 8, 0, 0, 0}, 60);
    const float value = 0;
    for (int i = 60; i < 120; ++i)
        data.append(i, add_milliseconds({2026, 1, 5, 12, 0, 0, 0}, i * 1000LL), {&value, 1});
    EXPECT_THAT(labels(clock_ticks(data, {0, 119}, 4)),
                ElementsAre("08:00:00\n5 Jan 2026", "08:00:30", "12:01:00", "12:01:30"));
}

TEST(ClockTicks, AreNoneWithoutRows) {
    EXPECT_TRUE(clock_ticks(TrendData(1, 5), {0, 60}, 5).ticks.empty());
}

TEST(OnPage, CountsFractionsFromBelow) {
    const PixelBox box = on_page({0.1, 0.9, 0.2, 0.7}, 1000, 500);
    EXPECT_DOUBLE_EQ(box.left, 100);
    EXPECT_DOUBLE_EQ(box.right(), 900);
    EXPECT_DOUBLE_EQ(box.top, 150);
    EXPECT_DOUBLE_EQ(box.bottom(), 400);
}

TEST(LegendCells, FillTheBoxFourAndFour) {
    const PixelBox box{0, 7, 1200, 98};
    for (int entries = 1; entries <= 64; ++entries) {
        const auto cells = legend_cells(box, entries, 22);
        ASSERT_EQ(cells.size(), static_cast<std::size_t>(entries));
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

TEST(Bars, ReachFromZeroToTheirValue) {
    const PixelBox area{100, 50, 400, 200};
    const float values[] = {1, -2, 0};
    const auto shapes = bar_shapes(values, {-2, 2}, area);
    ASSERT_EQ(shapes.size(), 3U);
    EXPECT_EQ(shapes[0].box.top, 100);
    EXPECT_EQ(shapes[0].box.bottom(), 150);
    EXPECT_EQ(shapes[1].box.top, 150);
    EXPECT_EQ(shapes[1].box.bottom(), 250);
    EXPECT_EQ(shapes[2].box.height, 0);
    EXPECT_EQ(shapes[2].out, OutOfRange::No);
    EXPECT_LT(shapes[0].box.right(), shapes[1].box.left);
}

TEST(Bars, SayWhenTheirValueIsOutOfRange) {
    const PixelBox area{0, 0, 100, 100};
    const float values[] = {5,
                            0.5F,
                            2,
                            1,
                            std::numeric_limits<float>::infinity(),
                            std::numeric_limits<float>::quiet_NaN()};
    const auto shapes = bar_shapes(values, {1, 2}, area);
    EXPECT_EQ(shapes[0].out, OutOfRange::Above);
    EXPECT_EQ(shapes[0].box.height, 100);
    EXPECT_EQ(shapes[1].out, OutOfRange::Below);
    EXPECT_EQ(shapes[1].box.height, 0);
    EXPECT_EQ(shapes[2].out, OutOfRange::No);
    EXPECT_EQ(shapes[3].out, OutOfRange::No);
    EXPECT_EQ(shapes[4].out, OutOfRange::Above);
    EXPECT_FALSE(shapes[5].value);
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
