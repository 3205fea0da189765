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

EventEntry event(int month, int day, int hour, int minute, int second, int ms, int channel,
                 int state, int level) {
    EventEntry entry;
    const auto set = [](std::int16_t& field, int value) {
        field = static_cast<std::int16_t>(value);
    };
    set(entry.EvMonth, month);
    set(entry.EvDay, day);
    set(entry.EvHour, hour);
    set(entry.EvMinute, minute);
    set(entry.EvSecond, second);
    set(entry.EvMillisecond, ms);
    set(entry.EvChannel, channel);
    set(entry.EvState, state);
    set(entry.EvLevel, level);
    return entry;
}

TEST(EventTexts, SayWhenWhereAndWhat) {
    EXPECT_EQ(event_texts(event(1, 5, 8, 0, 2, 7, 19, 1, 0)),
              (EventTexts{"5 Jan", "08:00:02:007", "19", "Lo to Hi"}));
    EXPECT_EQ(event_texts(event(12, 31, 23, 59, 59, 999, 1, 0, 0)),
              (EventTexts{"31 Dec", "23:59:59:999", "1", "Hi to Lo"}));
    EXPECT_EQ(event_texts(event(2, 1, 0, 0, 0, 0, 2, 1, 1)).event, "High");
    EXPECT_EQ(event_texts(event(2, 1, 0, 0, 0, 0, 2, 0, 1)).event, "Low");
    // Fields that are no valid BCD are shown as they are.
    EXPECT_EQ(event_texts(event(25, 165, 165, 99, 165, 1650, 31, 0, 0)),
              (EventTexts{"165 ", "165:99:165:1650", "31", "Hi to Lo"}));
}

TEST(DisplayStream2, ShowsTheEventsOfTheViewedPodAndCountsThemAsSeen) {
    RunTime run_time;
    run_time.Poll.ViewedZav = 8;
    run_time.Poll.Events[8][0] = event(1, 5, 8, 0, 0, 0, 19, 1, 0);
    run_time.Poll.Events[8][1] = event(1, 5, 8, 0, 1, 0, 20, 1, 1);
    run_time.Poll.Events[8][2] = event(1, 5, 8, 0, 2, 0, 1, 1, 1);  // of an earlier read
    run_time.Poll.LastEvent[8] = 1;
    run_time.Status[8].StreamSeen.fill(1);
    EXPECT_EQ(DisplayStream2(run_time),
              (std::vector<EventTexts>{{"5 Jan", "08:00:00:000", "19", "Lo to Hi"},
                                       {"5 Jan", "08:00:01:000", "20", "High"}}));
    EXPECT_EQ(run_time.Status[8].StreamSeen, (std::array<std::int16_t, 4>{1, 1, 0, 1}));
    run_time.Poll.ViewedZav = 9;
    EXPECT_EQ(DisplayStream2(run_time), std::vector<EventTexts>{});
}

class SingleResults : public testing::Test {
  protected:
    SingleResults() { std::copy_n("7V", 2, status_.Ident.begin()); }

    void arrived(int channel, float first, float second, int code) {
        const auto c = at(channel - 1);
        status_.SingleReading[c] = first;
        status_.SingleReading2[c] = second;
        status_.SingleResultCode[c] = static_cast<std::int16_t>(code);
        status_.SingleNew[c] = 1;
    }

    RunTime run_time_;
    PodStatus& status_ = run_time_.Status[2];
    std::string& kinds_ = run_time_.Poll.RequestKinds[2];
};

TEST_F(SingleResults, HaveTheirTextsByRequestAndCode) {
    arrived(1, 2.5F, 9, 0);
    arrived(5, 0.5F, 0.25F, 128);
    arrived(7, 1, 2, 129);
    arrived(8, 1, 2, 136);
    arrived(19, 3, 9, 0);
    kinds_ = "01000";
    EXPECT_EQ(take_single_results(run_time_, 2),
              (std::vector<SingleResultText>{{0, "2.500000", false},
                                             {4, "Offset=0.500000 Initial Volt=0.250000", false},
                                             {6, "Overload", true},
                                             {7, "Unknown error number: 8", true},
                                             {18, "3", false}}));
    EXPECT_EQ(kinds_, "");
}

TEST_F(SingleResults, AreTakenOnceAndNotWhilePending) {
    arrived(1, 2.5F, 0, 0);
    arrived(2, 2.5F, 0, 0);
    status_.SinglePending[1] = 1;
    kinds_ = "00";
    EXPECT_EQ(take_single_results(run_time_, 2).size(), 1u);
    EXPECT_EQ(take_single_results(run_time_, 2).size(), 0u);
    EXPECT_EQ(kinds_, "0");
    status_.SinglePending[1] = 0;
    EXPECT_EQ(take_single_results(run_time_, 2).size(), 1u);
}

}  // namespace
}  // namespace kavorix
