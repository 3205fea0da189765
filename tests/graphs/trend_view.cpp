#include "graphs/trend_view.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>

namespace kavorix::test {
namespace {

// A minute's span with rows every second, the newest at `newest`.
TrendLimits limits_at(double newest) {
    return trend_limits({std::max(0.0, newest - 61), newest}, 60, 1);
}

TrendView held_at(const TimeRange& time) {
    return time_shown(all_shown({}, limits_at(500)), time, limits_at(500));
}

// What becomes of a view, with the newest row at `newest` s.
TEST(TrendView, FollowsTheNewestRowOrIsHeld) {
    struct Row {
        const char* what;
        TrendView before;
        std::function<TrendView(const TrendView&, const TrendLimits&)> move;
        double newest;
        TimeRange time;
        bool following;
    };
    const TrendView whole = all_shown({}, limits_at(0));
    const TrendView late = all_shown({}, limits_at(500));
    const auto pan = [](double by_s) {
        return [=](const TrendView& v, const TrendLimits& l) { return time_panned(v, by_s, l); };
    };
    const auto zoom = [](double factor, double around_s) {
        return [=](const TrendView& v, const TrendLimits& l) {
            return time_zoomed(v, factor, around_s, l);
        };
    };
    const Row rows[] = {
        {"fills from the left", whole, settled, 30, {0, 60}, true},
        {"until it is full", whole, settled, 60, {0, 60}, true},
        {"then moves on", whole, settled, 61, {1, 61}, true},
        {"for ever", whole, settled, 500, {440, 500}, true},
        {"zooming keeps what is under the pointer",
         late,
         zoom(0.5, 455),
         500,
         {447.5, 477.5},
         false},
        {"and back", held_at({447.5, 477.5}), zoom(2, 455), 500, {440, 500}, true},
        {"around the newest row it goes on following", late, zoom(0.5, 500), 500, {470, 500}, true},
        {"no nearer than five rows", late, zoom(1e-6, 470), 500, {467.5, 472.5}, false},
        {"a held one stays", held_at({450, 460}), settled, 505, {450, 460}, false},
        {"until its rows are dropped", held_at({450, 460}), settled, 530, {470, 480}, false},
        {"panning moves it", held_at({450, 460}), pan(20), 500, {470, 480}, false},
        {"to the newest row, where it follows again",
         held_at({450, 460}),
         pan(1000),
         500,
         {490, 500},
         true},
        {"back no further than the span", held_at({450, 460}), pan(-1000), 500, {440, 450}, false},
        {"told to follow it keeps its width", held_at({450, 460}), follow, 500, {490, 500}, true},
        {"or shows all", held_at({450, 460}), all_shown, 500, {440, 500}, true},
    };
    for (const Row& row : rows) {
        const TrendView after = row.move(row.before, limits_at(row.newest));
        EXPECT_NEAR(after.time.begin, row.time.begin, 1e-9) << row.what;
        EXPECT_NEAR(after.time.end, row.time.end, 1e-9) << row.what;
        EXPECT_EQ(after.following, row.following) << row.what;
    }
}

TEST(TrendView, NoMoveLeavesTheLimits) {
    std::mt19937 random(1);
    const auto whole = [&](int low, int high) {
        return std::uniform_int_distribution(low, high)(random);
    };
    double newest = 0;
    TrendView view = all_shown({}, limits_at(0));
    for (int i = 0; i < 20000; ++i) {
        const int move = whole(0, 3);
        if (move == 0) newest += whole(0, 5);
        const TrendLimits limits = limits_at(newest);
        const double around_s = view.time.begin + view.time.length() * whole(0, 100) / 100;
        view = move == 0   ? settled(view, limits)
               : move == 1 ? time_zoomed(view, whole(1, 300) / 100.0, around_s, limits)
               : move == 2 ? time_panned(view, whole(-100, 100), limits)
                           : follow(view, limits);
        ASSERT_GE(view.time.begin, limits.all.begin - 1e-6);
        ASSERT_LE(view.time.end, limits.all.end + 1e-6);
        ASSERT_GE(view.time.length(), 5 - 1e-6);
        ASSERT_LE(view.time.length(), 60 + 1e-6);
    }
}

TEST(TrendView, ValuesZoomAroundThePointerAndWithinReason) {
    EXPECT_EQ(values_zoomed({-2, 2}, 0.5, 1), (ValueRange{-0.5, 1.5}));
    ValueRange range{-2, 2};
    for (int i = 0; i < 2000; ++i) range = values_zoomed(range, 0.8, 1);
    EXPECT_GT(range.length(), 1E-12) << "numbers around 1 are no closer";
    for (int i = 0; i < 2000; ++i) range = values_zoomed(range, 1.25, 1);
    EXPECT_LT(range.length(), 1E31);
    EXPECT_EQ(room_around(0, 100), (ValueRange{-5, 105}));
    EXPECT_EQ(room_around(0, 0), (ValueRange{-1, 1}));
    EXPECT_EQ(room_around(-20, -20), (ValueRange{-21, -19}));
}

TEST(TrendView, OnPixelsItBeginsWithAWholeColumnAndKeepsTheNewestRow) {
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
