#include "graphs/trend_raster.h"

#include <gtest/gtest.h>

#include "random_trend.h"

namespace kavorix::test {
namespace {

const std::vector<LineLook> Looks = {{0xBA2E00, Dash::Solid, false},
                                     {0x037A4D, Dash::Dashed, false},
                                     {0x6668D4, Dash::Solid, false}};

// A trend and its picture.
struct Picture {
    TrendData data;
    TrendColumns columns;
    TrendRaster raster;
    PixelMapping mapping;

    Picture(int channels, std::size_t capacity) : data(channels, capacity) {}

    void add(double time_s, float value) { data.append(time_s, {}, {&value, 1}); }

    // Draws the last `length_s` seconds over `width` pixels, the values from -2 to 2.
    void draw_newest(double length_s, int width, int height, const std::vector<LineLook>& looks) {
        const double width_s = length_s / width;
        const auto end = static_cast<std::int64_t>(std::floor(data.range().end / width_s)) + 1;
        mapping = {end - width, width, height, -2, 2, 1};
        columns.show(
            data, {static_cast<double>(end - width) * width_s, static_cast<double>(end) * width_s},
            width_s);
        raster.draw(columns, mapping, looks);
    }
    std::vector<std::uint32_t> pixels() const {
        return {raster.pixels(), raster.pixels() + mapping.width * mapping.height};
    }
    std::uint32_t pixel(std::int64_t column, double y) const {
        return raster.pixels()[std::min(static_cast<int>(y), mapping.height - 1) * mapping.width +
                               static_cast<int>(column - mapping.first_column)];
    }
};

TEST(TrendRaster, WhatIsMovedOnIsWhatWouldBeDrawnAnew) {
    for (unsigned seed = 0; seed < 12; ++seed) {
        RandomTrend random(seed, 3);
        Picture moved(3, 2000);
        const double length_s = random.whole(300, 1500);
        for (int step = 0; step < 60; ++step) {
            random.append(moved.data, random.whole(0, 60), 1);
            moved.draw_newest(length_s, 120, 80, Looks);
            Picture anew(3, 1);
            anew.data = moved.data;
            anew.draw_newest(length_s, 120, 80, Looks);
            ASSERT_EQ(moved.pixels(), anew.pixels()) << "seed " << seed << " step " << step;
        }
    }
}

TEST(TrendRaster, AnAppendedRowCostsItsColumnAlone) {
    RandomTrend random(3, 3);
    Picture picture(3, 14402);
    random.append(picture.data, 14402, 1);
    picture.draw_newest(14400, 1000, 50, Looks);
    EXPECT_EQ(picture.raster.painted_columns(), 1000);
    for (int i = 0; i < 100; ++i) {
        random.append(picture.data, 1, 1);
        picture.draw_newest(14400, 1000, 50, Looks);
        EXPECT_LE(picture.raster.painted_columns(), 2);
    }
}

// A line of 1.5 pixels through rows that stand in columns of their own, with columns between them:
// in each column it covers what lies between where it was in the column before and where it is.
TEST(TrendRaster, PixelsAreAsFullAsTheLineCoversThem) {
    std::mt19937 random(5);
    for (int run = 0; run < 20; ++run) {
        constexpr int Width = 60, Height = 40;
        Picture picture(1, Width);
        std::vector<double> top(Width, 1E9), bottom(Width, -1E9);
        double before = 0;
        for (int column = 0, last = 0; column < Width;
             column += 1 + static_cast<int>(random() % 5)) {
            const auto value = static_cast<float>(random() % 5000) / 1000 - 2.5F;
            picture.add(column + 0.25, value);
            const double y = (2 - static_cast<double>(value)) / 4 * Height;
            for (int c = column == 0 ? 0 : last + 1; c <= column; ++c) {
                const double rise = column == 0 ? 0 : (y - before) / (column - last);
                const auto [low, high] =
                    std::minmax({y - rise * (column - c), y - rise * (column - c + 1)});
                top[static_cast<std::size_t>(c)] = low - 0.75;
                bottom[static_cast<std::size_t>(c)] = high + 0.75;
            }
            before = y;
            last = column;
        }
        picture.mapping = {0, Width, Height, -2, 2, 1};
        picture.columns.show(picture.data, {0, Width}, 1);
        picture.raster.draw(picture.columns, picture.mapping, {{0xFF0000, Dash::Solid, false}});
        for (int x = 0; x < Width; ++x)
            for (int y = 0; y < Height; ++y) {
                const auto c = static_cast<std::size_t>(x);
                const double covered =
                    std::max(0.0, std::min(y + 1.0, bottom[c]) - std::max(y + 0.0, top[c]));
                ASSERT_NEAR(picture.pixel(x, y) >> 24, std::min(1.0, covered) * 255, 0.51)
                    << x << "," << y;
            }
    }
}

TEST(TrendRaster, LaterLinesLieOverEarlierOnes) {
    Picture picture(2, 10);
    for (const double time_s : {0.0, 1.0})
        picture.data.append(time_s, {}, std::vector<float>{0.0F, 0.5F});
    picture.columns.show(picture.data, {0, 2}, 1);
    picture.mapping = {0, 2, 11, -5.5, 5.5, 1};
    picture.raster.draw(picture.columns, picture.mapping,
                        {{0x0000FF, Dash::Solid, false}, {0xFF8000, Dash::Solid, false}});
    // The first line covers 4.75 to 6.25, the second 4.25 to 5.75: of pixel 5 three quarters (191
    // of 255).
    EXPECT_EQ(picture.pixel(0, 3), 0U);
    EXPECT_EQ(picture.pixel(0, 4), 0xCFBF6010U)
        << "three quarters of orange over a quarter of blue";
    EXPECT_EQ(picture.pixel(0, 5), 0xFFBF6040U);
    EXPECT_EQ(picture.pixel(0, 6), 0x40000040U);
}

TEST(TrendRaster, EveryValueHasItsPixelEvenOfADashedLine) {
    for (const Dash dash : {Dash::Solid, Dash::Dashed}) {
        Picture picture(1, 5000);
        std::mt19937 random(5);
        for (int i = 0; i < 5000; ++i)
            picture.add(i,
                        random() % 50 == 0 ? static_cast<float>(random() % 3000) / 1000 - 1.5F : 0);
        picture.draw_newest(4990, 300, 100, {{0xFF0000, dash, false}});
        const TrendColumns& columns = picture.columns;
        for (std::size_t i = columns.index_of(picture.mapping.first_column); i < columns.size();
             ++i) {
            const Extremes& extremes = columns.extremes(i, 0);
            if (dash == Dash::Dashed && extremes.maximum - extremes.minimum < 0.1F) continue;
            for (const float value : {extremes.maximum, extremes.minimum})
                EXPECT_NE(picture.pixel(columns.number(i), picture.mapping.y(value)), 0U);
        }
    }
}

TEST(TrendRaster, FlatDashedLinesPauseAndHiddenOnesAreNotThere) {
    Picture picture(1, 1000);
    for (int i = 0; i < 1000; ++i) picture.add(i, 0);
    picture.draw_newest(600, 120, 11, {{0xFF0000, Dash::Dashed, false}});
    int drawn = 0;
    for (int x = 0; x < 120; ++x) drawn += picture.raster.pixels()[5 * 120 + x] != 0 ? 1 : 0;
    EXPECT_EQ(drawn, 80);
    picture.draw_newest(600, 120, 11, {{0xFF0000, Dash::Solid, true}});
    EXPECT_EQ(picture.pixels(), std::vector<std::uint32_t>(120 * 11, 0));
}

constexpr float None = std::numeric_limits<float>::quiet_NaN();

// The pieces of a line with a row a second, over 100 pixels from 1 down to -1; by default 100
// pixels a second.
std::vector<Polyline> traced(const std::vector<float>& values, Dash dash, double width_s = 0.01) {
    TrendData data(1, values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        data.append(static_cast<double>(i), {}, {&values[i], 1});
    const TimeRange range{0, static_cast<double>(values.size())};
    TrendColumns columns;
    columns.show(data, range, width_s);
    return trace(columns, 0, {0, static_cast<int>(range.end / width_s), 100, -1, 1, 1}, dash);
}

TEST(Trace, ALineRunsThroughItsRowsInPiecesBetweenItsGaps) {
    using Pieces = std::vector<Polyline>;
    EXPECT_EQ(traced({0, 1, -1}, Dash::Solid), (Pieces{{{0, 50}, {100, 0}, {200, 100}}}));
    EXPECT_EQ(traced({None, 0, 1, None, 1, None}, Dash::Solid),
              (Pieces{{{100, 50}, {200, 0}}, {{400, 0}}}));
    EXPECT_EQ(traced({0, 1, -1, 0.5F}, Dash::Solid, 4),
              (Pieces{{{0.5, 50}, {0.5, 100}, {0.5, 0}, {0.5, 25}}}))
        << "a column of several rows: first, lowest, highest, last";
    EXPECT_EQ(traced({-1, 1, -1}, Dash::Dashed, 0.1), (Pieces{{{0, 100}, {10, 0}, {20, 100}}}))
        << "a steep line does not pause";
    EXPECT_EQ(traced({0, 3.0E38F}, Dash::Solid)[0][1].y, -800) << "a few heights away";
}

// Dashes of 8 pixels and gaps of 4, counted from column 0; a rising line's ends lie on the line.
TEST(Trace, AFlatDashedLinePausesForAThird) {
    for (const float end : {0.0F, 0.5F}) {
        const auto pieces = traced({0, end}, Dash::Dashed);
        ASSERT_EQ(pieces.size(), 9U);
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            const double from = 12.0 * static_cast<double>(i), to = std::min(from + 8, 100.0);
            EXPECT_EQ(pieces[i].front(),
                      (PlotPoint{from, 50 - from / 2 * static_cast<double>(end)}));
            EXPECT_NEAR(pieces[i].back().x, to, 1e-9);
            EXPECT_NEAR(pieces[i].back().y, 50 - to / 2 * static_cast<double>(end), 1e-9);
        }
    }
}

}  // namespace
}  // namespace kavorix::test
