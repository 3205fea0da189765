#include "acquire/stream_texts.h"

#include <gtest/gtest.h>

#include <ostream>

namespace kavorix {

void PrintTo(const EventTexts& texts, std::ostream* out) {
    *out << texts.date << " | " << texts.time << " | " << texts.channel << " | " << texts.event;
}

void PrintTo(const SingleResultText& result, std::ostream* out) {
    *out << result.channel << ": " << result.text << (result.error ? " (error)" : "");
}

namespace {

// Fields in the order of EventEntry: channel, day, hour, minute, month, ms, second, state, level.
TEST(EventTexts, SayWhenWhereAndWhat) {
    const std::pair<EventEntry, EventTexts> rows[] = {
        {{19, 5, 8, 0, 1, 7, 2, 1, 0}, {"5 Jan", "08:00:02:007", "19", "Lo to Hi"}},
        {{1, 31, 23, 59, 12, 999, 59, 0, 0}, {"31 Dec", "23:59:59:999", "1", "Hi to Lo"}},
        {{2, 1, 0, 0, 2, 0, 0, 1, 1}, {"1 Feb", "00:00:00:000", "2", "High"}},
        {{2, 1, 0, 0, 2, 10, 0, 0, 1}, {"1 Feb", "00:00:00:010", "2", "Low"}},
        // Fields that are no valid BCD are shown as they are.
        {{31, 165, 165, 99, 25, 1650, 165, 0, 0}, {"165 ", "165:99:165:1650", "31", "Hi to Lo"}},
    };
    for (const auto& [event, texts] : rows) EXPECT_EQ(event_texts(event), texts);
}

TEST(DisplayStream2, ShowsTheLastEventsOfThePodAndCountsThemAsSeen) {
    RunTime run_time;
    const Pod fifty = Pod::numbered(50);
    const EventEntry events[] = {{19, 5, 8, 0, 1, 0, 0, 1, 0}, {20, 5, 8, 0, 1, 0, 1, 1, 1}};
    std::copy(std::begin(events), std::end(events), run_time.Poll.Events[fifty].begin());
    run_time.Poll.LastEvent[fifty] = 1;  // what stands behind it is of an earlier read
    run_time.Status[fifty].StreamSeen.fill(true);
    EXPECT_EQ(DisplayStream2(run_time, fifty),
              (std::vector{event_texts(events[0]), event_texts(events[1])}));
    EXPECT_EQ(run_time.Status[fifty].StreamSeen, (StreamFlags{true, true, false, true}));
    EXPECT_EQ(DisplayStream2(run_time, Pod::numbered(1)), std::vector<EventTexts>{});
}

struct SingleResults : testing::Test {
    SingleResults() { std::copy_n("7V", 2, status.Ident.begin()); }
    void arrived(std::size_t channel, float first, float second, std::int16_t code) {
        status.SingleReading[channel - 1] = first;
        status.SingleReading2[channel - 1] = second;
        status.SingleResultCode[channel - 1] = code;
        status.SingleNew[channel - 1] = true;
    }
    const Pod pod = Pod::numbered(50);
    RunTime run_time;
    PodStatus& status = run_time.Status[pod];
    std::string& kinds = run_time.Link.RequestKinds[pod];
};

TEST_F(SingleResults, HaveTheirTextsByRequestAndCode) {
    arrived(1, 2.5F, 9, 0);
    arrived(5, 0.5F, 0.25F, 128);
    arrived(7, 1, 2, 129);
    arrived(8, 1, 2, 136);
    arrived(19, 3, 9, 0);
    kinds = "01000";
    EXPECT_EQ(take_single_results(run_time, pod),
              (std::vector<SingleResultText>{{0, "2.500000", false},
                                             {4, "Offset=0.500000 Initial Volt=0.250000", false},
                                             {6, "Overload", true},
                                             {7, "Unknown error number: 8", true},
                                             {18, "3", false}}));
    EXPECT_EQ(kinds, "");
}

TEST_F(SingleResults, AreTakenOnceAndNotWhilePending) {
    arrived(1, 2.5F, 0, 0);
    arrived(2, 2.5F, 0, 0);
    status.SinglePending[1] = true;
    kinds = "00";
    EXPECT_EQ(take_single_results(run_time, pod).size(), 1u);
    EXPECT_EQ(take_single_results(run_time, pod).size(), 0u);
    EXPECT_EQ(kinds, "0");
    status.SinglePending[1] = false;
    EXPECT_EQ(take_single_results(run_time, pod).size(), 1u);
}

}  // namespace
}  // namespace kavorix
