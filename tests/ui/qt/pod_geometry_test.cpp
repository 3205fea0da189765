#include "ui/qt/main/pod_geometry.h"

#include <gtest/gtest.h>

namespace kavorix::test {
namespace {

constexpr int TextHeight = 15;

TEST(PodGeometry, TilesAreWideEnoughOnASmallScreen) {
    const PodGeometry geometry(QSize(1280 - 32, 260), false, TextHeight);
    EXPECT_GE(geometry.tile(0).width(), 44);
    EXPECT_LE(geometry.tile(0).width(), 48);
}

TEST(PodGeometry, ExpandedWindowFitsOnASmallScreen) {
    // Menu, message, buttons and panels take some 240 pixels.
    EXPECT_LE(PodGeometry::minimum_size(true, TextHeight).height(), 720 - 240);
    EXPECT_LE(PodGeometry::minimum_size(true, TextHeight).width(), 1280 - 32);
}

class PodGeometrySizes : public testing::TestWithParam<std::tuple<int, int, bool>> {
  protected:
    int width = std::get<0>(GetParam());
    int height = std::get<1>(GetParam());
    bool expanded = std::get<2>(GetParam());
    PodGeometry geometry{QSize(width, height), expanded, TextHeight};
};

TEST_P(PodGeometrySizes, EverythingOfAPodLiesInItsTileOnItsCard) {
    for (int pod = 0; pod < MaxZavs; ++pod) {
        const QRectF tile = geometry.tile(pod);
        EXPECT_TRUE(geometry.card(pod / PodsPerStrip).contains(tile)) << pod;
        EXPECT_TRUE(tile.contains(geometry.number(pod))) << pod;
        EXPECT_TRUE(tile.contains(geometry.icon(pod))) << pod;
        EXPECT_TRUE(tile.contains(geometry.type(pod))) << pod;
        for (int stream = 0; expanded && stream < StreamCount; ++stream)
            EXPECT_TRUE(tile.contains(geometry.indicator(pod, stream))) << pod;
    }
}

TEST_P(PodGeometrySizes, EveryTileIsFoundByItsMiddle) {
    for (int pod = 0; pod < MaxZavs; ++pod)
        EXPECT_EQ(geometry.pod_at(geometry.tile(pod).center()), pod);
}

TEST_P(PodGeometrySizes, TheRestBelongsToNoPod) {
    EXPECT_EQ(geometry.pod_at(geometry.row_name(0, 0).center()), -1);
    EXPECT_EQ(geometry.pod_at({geometry.tile(24).right() + 1, geometry.tile(24).center().y()}), -1);
    EXPECT_EQ(geometry.pod_at({geometry.tile(3).center().x(), geometry.card(0).bottom() + 3}), -1);
    EXPECT_EQ(geometry.pod_at({-5, -5}), -1);
}

INSTANTIATE_TEST_SUITE_P(Sizes, PodGeometrySizes,
                         testing::Values(std::tuple{1248, 230, false}, std::tuple{1248, 420, true},
                                         std::tuple{1201, 800, false}, std::tuple{1888, 840, true},
                                         std::tuple{3800, 1900, true}));

TEST(PodGeometry, RoomMakesIconsLarger) {
    EXPECT_GT(PodGeometry(QSize(1900, 800), true, TextHeight).icon(0).width(),
              PodGeometry(QSize(1248, 420), true, TextHeight).icon(0).width());
}

TEST(PodAfter, GoesThroughBothStripsAndStopsAtTheEnds) {
    struct Row {
        int from;
        Step step;
        int to;
    };
    for (const Row& row : {Row{0, Step::Left, 0},
                           {24, Step::Right, 25},
                           {25, Step::Left, 24},
                           {49, Step::Right, 49},
                           {3, Step::Down, 28},
                           {28, Step::Down, 28},
                           {28, Step::Up, 3},
                           {3, Step::Up, 3},
                           {30, Step::First, 0},
                           {30, Step::Last, 49}})
        EXPECT_EQ(pod_after(row.from, row.step), row.to) << row.from;
}

}  // namespace
}  // namespace kavorix::test
