#include "graphs/trend_raster.h"

#include <gtest/gtest.h>

#include "random_trend.h"

namespace kavorix::test {
namespace {

const std::vector<LineLook> Looks = {{0xBA2E00, Dash::Solid, false},
                                     {0x037A4D, Dash::Dashed, false},
                                     {0x6668D4, Dash::Solid, false}};

struct Shown {
    TimeRange range;
    PixelMapping mapping;
    double width_s;
};

// The last `length_s` seconds of the data over `width` pixels.
Shown newest(const TrendData& data, double length_s, int width, int height) {
    Shown shown;
    shown.width_s = length_s / width;
    const auto end = static_cast<std::int64_t>(std::floor(data.range().end / shown.width_s)) + 1;
    shown.mapping = {end - width, width, height, -2, 2, 1};
    shown.range = {static_cast<double>(end - width) * shown.width_s,
                   static_cast<double>(end) * shown.width_s};
    return shown;
}

std::vector<std::uint32_t> pixels_of(const TrendRaster& raster, const PixelMapping& mapping) {
    return {raster.pixels(), raster.pixels() + mapping.width * mapping.height};
}

std::vector<std::uint32_t> drawn_anew(const TrendData& data, const Shown& shown) {
    TrendColumns columns;
    columns.show(data, shown.range, shown.width_s);
    TrendRaster raster;
    raster.draw(columns, shown.mapping, Looks);
    return pixels_of(raster, shown.mapping);
}

TEST(TrendRaster, WhatIsMovedOnIsWhatWouldBeDrawnAnew) {
    for (unsigned seed = 0; seed < 12; ++seed) {
        RandomTrend random(seed, 3);
        TrendData data(3, 2000);
        TrendColumns columns;
        TrendRaster raster;
        const double length_s = random.whole(300, 1500);
        for (int step = 0; step < 60; ++step) {
            random.append(data, random.whole(0, 60), 1);
            const Shown shown = newest(data, length_s, 120, 80);
            columns.show(data, shown.range, shown.width_s);
            raster.draw(columns, shown.mapping, Looks);
            ASSERT_EQ(pixels_of(raster, shown.mapping), drawn_anew(data, shown))
                << "seed " << seed << " step " << step;
        }
    }
}

TEST(TrendRaster, AnAppendedRowCostsItsColumnAlone) {
    RandomTrend random(3, 3);
    TrendData data(3, 14402);
    random.append(data, 14402, 1);
    TrendColumns columns;
    TrendRaster raster;
    const auto draw = [&] {
        const Shown shown = newest(data, 14400, 1000, 50);
        columns.show(data, shown.range, shown.width_s);
        raster.draw(columns, shown.mapping, Looks);
        return raster.painted_columns();
    };
    EXPECT_EQ(draw(), 1000);
    for (int i = 0; i < 100; ++i) {
        random.append(data, 1, 1);
        EXPECT_LE(draw(), 2);
    }
}

// Whether the pixel of a value has its line's colour, at least partly.
bool painted(const TrendRaster& raster, const PixelMapping& mapping, std::int64_t column,
             float value) {
    const auto y = static_cast<int>(std::min(mapping.y(value), mapping.height - 1.0));
    const auto x = static_cast<int>(column - mapping.first_column);
    return raster.pixels()[y * mapping.width + x] != 0;
}

TEST(TrendRaster, EveryValueHasItsPixelEvenOfADashedLine) {
    for (const Dash dash : {Dash::Solid, Dash::Dashed}) {
        TrendData data(1, 5000);
        std::mt19937 random(5);
        for (int i = 0; i < 5000; ++i) {
            const bool spike = random() % 50 == 0;
            const float value = spike ? static_cast<float>(random() % 3000) / 1000 - 1.5F : 0;
            data.append(i, {}, {&value, 1});
        }
        const Shown shown = newest(data, 4990, 300, 100);
        TrendColumns columns;
        columns.show(data, shown.range, shown.width_s);
        TrendRaster raster;
        raster.draw(columns, shown.mapping, {{0xFF0000, dash, false}});
        for (std::size_t i = columns.index_of(shown.mapping.first_column); i < columns.size();
             ++i) {
            const Extremes& extremes = columns.extremes(i, 0);
            if (dash == Dash::Dashed && extremes.maximum - extremes.minimum < 0.1F) continue;
            EXPECT_TRUE(painted(raster, shown.mapping, columns.number(i), extremes.maximum));
            EXPECT_TRUE(painted(raster, shown.mapping, columns.number(i), extremes.minimum));
        }
    }
}

TEST(TrendRaster, FlatDashedLinesPause) {
    TrendData data(1, 1000);
    const float value = 0;
    for (int i = 0; i < 1000; ++i) data.append(i, {}, {&value, 1});
    const Shown shown = newest(data, 600, 120, 11);
    TrendColumns columns;
    columns.show(data, shown.range, shown.width_s);
    TrendRaster raster;
    raster.draw(columns, shown.mapping, {{0xFF0000, Dash::Dashed, false}});
    int drawn = 0;
    for (int x = 0; x < 120; ++x) drawn += raster.pixels()[5 * 120 + x] != 0 ? 1 : 0;
    EXPECT_EQ(drawn, 80);
}

TEST(TrendRaster, HiddenLinesLeaveNoPixel) {
    RandomTrend random(1, 1);
    TrendData data(1, 1000);
    random.append(data, 1000, 1);
    const Shown shown = newest(data, 900, 50, 40);
    TrendColumns columns;
    columns.show(data, shown.range, shown.width_s);
    TrendRaster raster;
    raster.draw(columns, shown.mapping, {{0xFF0000, Dash::Solid, false}});
    raster.draw(columns, shown.mapping, {{0xFF0000, Dash::Solid, true}});
    EXPECT_EQ(pixels_of(raster, shown.mapping), std::vector<std::uint32_t>(50 * 40, 0));
}

TEST(TrendRaster, AStrokesEndsAreAsFullAsTheyReach) {
    TrendData data(1, 10);
    for (const float value : {0.0F, 0.0F}) data.append(data.empty() ? 0 : 1, {}, {&value, 1});
    TrendColumns columns;
    columns.show(data, {0, 2}, 1);
    TrendRaster raster;
    raster.draw(columns, {0, 2, 11, -5.5, 5.5, 1}, {{0x0000FF, Dash::Solid, false}});
    // Around the middle of pixel 5, three quarters of a pixel up and down.
    EXPECT_EQ(raster.pixels()[4 * 2] >> 24, 64U);
    EXPECT_EQ(raster.pixels()[5 * 2], 0xFF0000FFU);
    EXPECT_EQ(raster.pixels()[6 * 2] >> 24, 64U);
    EXPECT_EQ(raster.pixels()[3 * 2], 0U);
}

double length_of(const std::vector<Polyline>& pieces) {
    double length = 0;
    for (const Polyline& piece : pieces)
        for (std::size_t i = 1; i < piece.size(); ++i)
            length += std::hypot(piece[i].x - piece[i - 1].x, piece[i].y - piece[i - 1].y);
    return length;
}

std::vector<Polyline> traced(const std::vector<float>& values, Dash dash, double width_s = 0.01) {
    TrendData data(1, values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        data.append(static_cast<double>(i), {}, {&values[i], 1});
    const TimeRange range{0, static_cast<double>(values.size())};
    TrendColumns columns;
    columns.show(data, range, width_s);
    const auto width = static_cast<int>(range.end / width_s);
    return trace(columns, 0, {0, width, 100, -1, 1, 1}, dash);
}

TEST(Trace, ALineIsOnePieceThroughItsRows) {
    EXPECT_EQ(traced({0, 1, -1}, Dash::Solid),
              (std::vector<Polyline>{{{0, 50}, {100, 0}, {200, 100}}}));
}

TEST(Trace, AGapIsBetweenTwoPieces) {
    const float none = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(traced({none, 0, 1, none, 1, none}, Dash::Solid),
              (std::vector<Polyline>{{{100, 50}, {200, 0}}, {{400, 0}}}));
}

TEST(Trace, AColumnOfSeveralRowsGivesFirstLowestHighestLast) {
    EXPECT_EQ(traced({0, 1, -1, 0.5F}, Dash::Solid, 4),
              (std::vector<Polyline>{{{0.5, 50}, {0.5, 100}, {0.5, 0}, {0.5, 25}}}));
}

TEST(Trace, AFlatDashedLineIsDrawnForTwoThirds) {
    const auto pieces = traced({0, 0, 0, 0}, Dash::Dashed);
    EXPECT_NEAR(length_of(pieces), 200, 4);
    EXPECT_EQ(pieces.size(), 25U);
    EXPECT_EQ(pieces[1].front().x, 12);
    EXPECT_EQ(pieces[1].back().x, 20);
}

TEST(Trace, ASteepDashedLineDoesNotPause) {
    EXPECT_EQ(traced({-1, 1, -1}, Dash::Dashed, 0.1),
              (std::vector<Polyline>{{{0, 100}, {10, 0}, {20, 100}}}));
}

TEST(Trace, ValuesFarOutsideStayWithinAFewHeights) {
    const auto pieces = traced({0, 3.0E38F}, Dash::Solid);
    EXPECT_EQ(pieces[0][1].y, -800);
}

}  // namespace
}  // namespace kavorix::test
