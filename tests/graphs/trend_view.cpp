#include "graphs/trend_view.h"

#include <gtest/gtest.h>

#include <random>

namespace kavorix::test {
namespace {

// A minute's span with rows every second, the newest at `newest`.
TrendLimits limits_at(double newest) {
    return trend_limits({std::max(0.0, newest - 61), newest}, 60, 1);
}

TEST(TrendView, FillsFromTheLeftAndThenMovesOn) {
    TrendView view = all_shown({}, limits_at(0));
    struct Case {
        double newest;
        TimeRange time;
    };
    for (const Case& c : {Case{0, {0, 60}}, Case{30, {0, 60}}, Case{60, {0, 60}}, Case{61, {1, 61}},
                          Case{500, {440, 500}}}) {
        view = settled(view, limits_at(c.newest));
        EXPECT_EQ(view.time, c.time) << c.newest;
        EXPECT_TRUE(view.following);
    }
}

TEST(TrendView, ZoomingKeepsWhatIsUnderThePointer) {
    const TrendView view = all_shown({}, limits_at(500));
    const TrendView zoomed = time_zoomed(view, 0.5, 455, limits_at(500));
    EXPECT_FALSE(zoomed.following);
    EXPECT_DOUBLE_EQ(zoomed.time.length(), 30);
    EXPECT_DOUBLE_EQ((455 - zoomed.time.begin) / zoomed.time.length(), 15.0 / 60);
    EXPECT_EQ(time_zoomed(zoomed, 2, 455, limits_at(500)), view);
}

TEST(TrendView, ZoomedAroundTheNewestRowItGoesOnFollowing) {
    const TrendView zoomed = time_zoomed(all_shown({}, limits_at(500)), 0.5, 500, limits_at(500));
    EXPECT_TRUE(zoomed.following);
    EXPECT_EQ(settled(zoomed, limits_at(510)).time, (TimeRange{480, 510}));
}

TEST(TrendView, AHeldViewStaysUntilItsRowsAreDropped) {
    TrendView view = time_shown(all_shown({}, limits_at(500)), {450, 460}, limits_at(500));
    EXPECT_FALSE(view.following);
    view = settled(view, limits_at(505));
    EXPECT_EQ(view.time, (TimeRange{450, 460}));
    view = settled(view, limits_at(530));
    EXPECT_EQ(view.time, (TimeRange{470, 480}));
}

TEST(TrendView, PannedToTheNewestRowItFollowsAgain) {
    const TrendLimits limits = limits_at(500);
    TrendView view = time_shown(all_shown({}, limits), {450, 460}, limits);
    view = time_panned(view, 20, limits);
    EXPECT_EQ(view.time, (TimeRange{470, 480}));
    EXPECT_FALSE(view.following);
    view = time_panned(view, 1000, limits);
    EXPECT_EQ(view.time, (TimeRange{490, 500}));
    EXPECT_TRUE(view.following);
}

TEST(TrendView, NoMoveLeavesTheLimits) {
    std::mt19937 random(1);
    const auto whole = [&](int low, int high) {
        return std::uniform_int_distribution(low, high)(random);
    };
    double newest = 0;
    TrendView view = all_shown({}, limits_at(0));
    for (int i = 0; i < 20000; ++i) {
        const TrendLimits limits = limits_at(newest);
        switch (whole(0, 3)) {
            case 0:
                newest += whole(0, 5);
                view = settled(view, limits_at(newest));
                break;
            case 1:
                view =
                    time_zoomed(view, whole(1, 300) / 100.0,
                                view.time.begin + view.time.length() * whole(0, 100) / 100, limits);
                break;
            case 2:
                view = time_panned(view, whole(-100, 100), limits);
                break;
            default:
                view = follow(view, limits);
        }
        const TrendLimits now = limits_at(newest);
        ASSERT_GE(view.time.begin, now.all.begin - 1e-6);
        ASSERT_LE(view.time.end, now.all.end + 1e-6);
        ASSERT_GE(view.time.length(), 5 - 1e-6);
        ASSERT_LE(view.time.length(), 60 + 1e-6);
    }
}

TEST(TrendView, ValuesZoomAroundThePointerAndWithinReason) {
    EXPECT_EQ(values_zoomed({-2, 2}, 0.5, 1), (ValueRange{-0.5, 1.5}));
    ValueRange range{-2, 2};
    for (int i = 0; i < 2000; ++i) range = values_zoomed(range, 0.8, 1);
    EXPECT_GT(range.length(), 0);
    for (int i = 0; i < 2000; ++i) range = values_zoomed(range, 1.25, 1);
    EXPECT_LT(range.length(), 1E31);
}

TEST(TrendView, RoomAroundValues) {
    EXPECT_EQ(room_around(0, 100), (ValueRange{-5, 105}));
    EXPECT_EQ(room_around(0, 0), (ValueRange{-1, 1}));
    EXPECT_EQ(room_around(-20, -20), (ValueRange{-21, -19}));
}

TEST(OnPixels, BeginsWithAWholeColumnAndKeepsTheNewestRow) {
    for (double newest = 60; newest < 200; newest += 0.37) {
        const TimeRange range = on_pixels({newest - 60, newest}, 1056);
        const double width = 60.0 / 1056;
        EXPECT_NEAR(range.begin / width, std::round(range.begin / width), 1e-6);
        EXPECT_NEAR(range.length(), 60, 1e-9);
        EXPECT_GE(range.end, newest - 1e-6);
        EXPECT_LE(range.end, newest + width);
    }
    EXPECT_EQ(on_pixels({0, 60}, 1056).begin, 0);
}

}  // namespace
}  // namespace kavorix::test
