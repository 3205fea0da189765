// The graph fed by the poll cycle of a wired station, in virtual time.

#include <gtest/gtest.h>

#include <set>

#include "graphs/graph_controls.h"
#include "graphs/live_graph.h"
#include "support/rig.h"

namespace kavorix::test {
namespace {

constexpr long long Hour_ms = 3600 * 1000;

class NoGraphWindow : public GraphWindow {
  public:
    void show_graph() override {}
    void close_graph() override {}
};

class FeedingTest : public testing::Test, protected Rig {
  protected:
    FeedingTest() {
        told.counting = true;
        cycle.sample.always([this](std::span<const float> samples) {
            ++rows;
            live.WRUpdateData(samples);
        });
        station({{3, "7RJA 0F 1.00"}});
        driver.recording = false;
        select({3});
        trigger({3});
        run_time.Graph.TrendSelected[2][0] = run_time.Graph.TrendSelected[2][4] = 1;
        status(3).Reading[0] = 1;
        status(3).Reading[4] = 5;
    }

    void start(int hours, int minutes) {
        run_time.Graph.Settings.Hours = hours;
        run_time.Graph.Settings.Minutes = minutes;
        live.view_graph();
        polling.start();
    }
    void reading(float first, float fifth, std::vector<std::int16_t> codes = {}) {
        driver.pod(3).waiting[0].push_back(scan({first, 0, 0, 0, fifth}, std::move(codes)));
    }
    const TrendData& data() const { return plot.picture().data; }
    std::vector<float> values(int channel) const {
        std::vector<float> result;
        for (std::uint64_t row = data().first_row(); row < data().end_row(); ++row)
            result.push_back(data().value(row, channel));
        return result;
    }

    long long rows = 0;
    NoGraphWindow window;
    PagePlot plot{loop};
    LiveGraph live{{run_time.Graph, run_time.Status, run_time.Link, configuration.ZavConfig,
                    dialogs, failures, plot, window}};
};

TEST_F(FeedingTest, ARowIsTheReadingThatStrayedFarthestFromTheLastOne) {
    start(0, 1);
    loop.run_for(150);
    reading(1.2F, 5);
    loop.run_for(100);
    reading(-3, 5);
    loop.run_for(100);
    reading(4, 9);
    loop.run_for(800);
    // From 0, then: -3 strayed by 3, 4 by 4; of channel 5 all are 5 or more.
    EXPECT_EQ(values(0), std::vector<float>{4});
    EXPECT_EQ(values(1), std::vector<float>{9});
    reading(3.5F, 8);
    loop.run_for(100);
    reading(4.25F, 9);
    loop.run_for(1000);
    EXPECT_EQ(values(0), (std::vector<float>{4, 3.5F}));
    EXPECT_EQ(values(1), (std::vector<float>{9, 8}));
}

TEST_F(FeedingTest, TheFirstRowIsTheLastReadingBeforeTheGraph) {
    start(0, 1);
    loop.run_for(2150);
    EXPECT_EQ(values(0), (std::vector<float>{1, 1}));
    EXPECT_EQ(values(1), (std::vector<float>{5, 5}));
}

TEST_F(FeedingTest, AnInvalidReadingLeavesTheLineWhereItWas) {
    start(0, 1);
    loop.run_for(150);
    reading(2, 7);
    loop.run_for(1000);
    reading(500, 8, {129, 0, 0, 0, 0});
    loop.run_for(1000);
    EXPECT_EQ(values(0), (std::vector<float>{2, 2}));
    EXPECT_EQ(values(1), (std::vector<float>{7, 8}));
}

TEST_F(FeedingTest, ALateTickRepeatsTheRowForEveryIntervalThatPassed) {
    start(0, 1);
    loop.run_for(1150);  // the first tick starts the count
    EXPECT_EQ(rows, 1);
    loop.advance(3700);
    loop.run_for(60);
    EXPECT_EQ(rows, 4);
    EXPECT_EQ(data().time(3), 3);
    loop.run_for(350);
    EXPECT_EQ(rows, 5) << "the rest of the late time counts towards the next row";
}

TEST_F(FeedingTest, ADayOfTrendIsHeldInItsSpan) {
    run_time.Link.PollTick = 500;
    // A sawtooth of an hour, with one spike of a single reading at noon.
    const long long begin_ms = loop.elapsed_ms();
    Feed feed{1000, scan({0, 0, 0, 0, 0}), begin_ms + 1000};
    driver.pod(3).feed[0] = feed;
    std::function<void()> next = [&] {
        const long long second = (loop.elapsed_ms() - begin_ms) / 1000;
        const float sawtooth = static_cast<float>(second % 3600) / 3600;
        driver.pod(3).feed[0]->reply.values = {second == 12 * 3600 ? 99.0F : sawtooth, 0, 0, 0, -1};
        loop.call_later(1000, next);
    };
    start(23, 59);
    next();
    loop.run_for(24 * Hour_ms + 600);

    EXPECT_EQ(rows, 24 * 600);
    EXPECT_EQ(data().end_row() - data().first_row(), 14392U);
    EXPECT_EQ(data().range().length(), 14391 * 6);
    EXPECT_EQ(data().clock().size(), 1U);
    EXPECT_EQ(data().wall_time(data().range().end),
              add_milliseconds({2026, 1, 5, 8, 0, 0, 0}, begin_ms + 24 * Hour_ms + 500));

    const std::vector<float> line = values(0);
    EXPECT_EQ(std::count(line.begin(), line.end(), 99.0F), 1) << "the spike is a row";

    // On a screen of 1000 columns the spike stands in one column, and every hour's peak is there.
    GraphControls controls(plot);
    controls.refresh();
    const TimeRange shown = on_pixels(controls.view().time, 1000);
    TrendColumns columns;
    columns.show(controls.data(), shown, shown.length() / 1000);
    int spikes = 0;
    std::set<std::int64_t> peaks;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Extremes& extremes = columns.extremes(i, 0);
        if (extremes.maximum == 99) ++spikes;
        if (extremes.maximum > 0.997F) peaks.insert(columns.number(i) / 20);
    }
    EXPECT_EQ(spikes, 1);
    EXPECT_GE(peaks.size(), 23U);
}

}  // namespace
}  // namespace kavorix::test
