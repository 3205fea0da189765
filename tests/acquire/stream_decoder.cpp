// What the records of the four streams leave in the status of a pod.

#include "acquire/stream_decoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/rig.h"

namespace kavorix {
namespace {

using test::Lines;
using test::LogHeader;
using test::Reply;
using test::Rig;
using test::scan;
using test::single;
using test::text;
using Boxes = std::vector<test::ShownBox>;

constexpr int I16Max = std::numeric_limits<std::int16_t>::max();
constexpr int I16Min = std::numeric_limits<std::int16_t>::min();

const Pod Five = Pod::numbered(5);    // 7R
const Pod Fifty = Pod::numbered(50);  // 8S

struct Decoding : Rig {
    Decoding() {
        station({{5, "7RJA 0F 1.00"}, {50, "8SFN 0F 1.00"}});
        loop.advance(1500);
    }
    Decoded read(Pod pod, int stream, const Reply& reply) {
        driver.pod(pod.number()).waiting[at(stream)] = {reply};
        return decoder.read(pod, static_cast<std::int16_t>(stream), {1500, loop.utc_ms()});
    }
    Decoded read(int stream, const Reply& reply) { return read(Five, stream, reply); }
    ChannelConfig& channel(int number) { return config(5).Channel[at(number - 1)]; }
    PodStatus& five = status(5);
    std::string& requests = run_time.Link.StreamRequests[Five];
    std::string& kinds = run_time.Link.RequestKinds[Five];
};

struct DecoderTest : testing::Test, Decoding {};

Reply with_status(Reply reply, int status) {
    reply.status = static_cast<std::int16_t>(status);
    return reply;
}

TEST_F(DecoderTest, ReadingsAreCleanedAndScaled) {
    struct Row {
        float raw, m, c, reading;
    };
    const Row rows[] = {
        {1.5F, 1, 0, 1.5F},           {1.5F, 2, -1, 2.0F},    {1.0E-20F, 5, 7, 7.0F},
        {-1.0E-20F, 5, 7, 7.0F},      {2.6E-19F, 1, 0, 0.0F}, {2.7E-19F, 1, 0, 2.7E-19F},
        {-2.7E-19F, 1, 0, -2.7E-19F}, {0.0F, 3, 0.5F, 0.5F},  {3.0E38F, 1, 0, 3.0E38F},
    };
    for (const Row& row : rows) {
        channel(2).MValue = row.m;
        channel(2).CValue = row.c;
        EXPECT_EQ(read(0, scan({0, row.raw})), Decoded::Done);
        EXPECT_EQ(five.Reading[1], row.reading) << row.raw;
    }
    EXPECT_EQ(five.ChannelCount, 2);
    EXPECT_EQ(five.ReadingAt, (Moment{1500, loop.utc_ms()}));
}

TEST_F(DecoderTest, PeaksFollowNewExtremesAlone) {
    struct Row {
        float reading, lowest, highest;
        bool lower, higher;  // than any before
    };
    const Row rows[] = {
        {2, 2, 2, true, true},
        {2, 2, 2, false, false},
        {3, 2, 3, false, true},
        {-3, -3, 3, true, false},
        {std::nanf(""), -3, 3, false, false},
    };
    for (const Row& row : rows) {
        five.MinChanged[0] = five.MaxChanged[0] = false;
        read(0, scan({row.reading}));
        EXPECT_EQ(five.PeakMin[0], row.lowest);
        EXPECT_EQ(five.PeakMax[0], row.highest);
        EXPECT_EQ(five.MinChanged[0], row.lower) << row.reading;
        EXPECT_EQ(five.MaxChanged[0], row.higher) << row.reading;
    }
}

TEST(Decoder, CodesAbove128AreErrorsAndLeaveTheRawValue) {
    struct Row {
        int code;
        const char* logged;  // null: no error
    };
    const Row rows[] = {
        {0, nullptr},
        {128, nullptr},
        {-1, nullptr},
        {I16Min, nullptr},
        {129, " Analog Overload (ZAV:05 Chan:02 Interface:C800)\r\n"},
        {136, " ZAV Error Code 8 (ZAV:05 Chan:02 Interface:C800)\r\n"},
        {141, ""},  // pending: no reading, but nothing to log
        {255, ""},  // not measured
        {I16Max, " ZAV Error Code 32639 (ZAV:05 Chan:02 Interface:C800)\r\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.code);
        Decoding rig;
        rig.read(0, scan({1, 1.0E-20F}, {0, static_cast<std::int16_t>(row.code)}));
        EXPECT_EQ(rig.five.Reading[1], row.logged ? 1.0E-20F : 0.0F);
        EXPECT_EQ(rig.five.PeakMax[1], row.logged ? NoPeakMax : 0.0F);
        EXPECT_EQ(rig.five.ResultCode[1], row.code);
        EXPECT_EQ(rig.log_text(), LogHeader + (row.logged ? row.logged : ""));
        EXPECT_EQ(rig.five.PeakMax[0], 1.0F);
    }
}

TEST_F(DecoderTest, CountsBeyondTheChannelsAreCut) {
    for (const auto& [count, used] :
         {std::pair{0, 0}, {1, 1}, {32, 32}, {33, 32}, {-1, 0}, {I16Max, 32}, {I16Min, 0}}) {
        Reply reply = scan(std::vector<float>(64, 1.0F));
        reply.count = static_cast<std::int16_t>(count);
        five.PeakMax.fill(NoPeakMax);
        read(0, reply);
        EXPECT_EQ(five.ChannelCount, used);
        EXPECT_EQ(std::count(five.PeakMax.begin(), five.PeakMax.end(), 1.0F), used) << count;
    }
}

TEST_F(DecoderTest, AReadThatBringsNoRecordLeavesTheLastOne) {
    read(0, scan({1.0F}));
    const auto at_1500 = five.ReadingAt;
    loop.advance(1);
    for (const auto& [result, decoded] :
         {std::pair{1, Decoded::Failed}, {2, Decoded::Nothing}, {-1, Decoded::Nothing}}) {
        EXPECT_EQ(read(0, with_status(scan({9.0F, 9.0F}, {200, 200}), result)), decoded);
        EXPECT_EQ(five.ChannelCount, 1);
        EXPECT_EQ(five.Reading[0], 1.0F);
        EXPECT_EQ(five.ResultCode[0], 0);
        EXPECT_EQ(five.PeakMax[0], 1.0F);
        EXPECT_EQ(five.ReadingAt, at_1500);
    }
}

TEST_F(DecoderTest, TheGraphGetsTheReadingThatStrayedFurthest) {
    GraphState& graph = run_time.Graph;
    graph.TrendSelected[Five][0] = true;
    graph.TrendRef[Five][0] = 10.0F;
    const auto peak_after = [&](float value, std::int16_t code = 0) {
        read(0, scan({value, value}, {code, code}));
        return graph.TrendPeak[Five][0];
    };
    EXPECT_EQ(peak_after(11.0F), 0.0F) << "the graph does not run";
    graph.TrendRunning = true;
    EXPECT_EQ(peak_after(11.0F), 11.0F);
    EXPECT_EQ(peak_after(9.5F), 11.0F);
    EXPECT_EQ(peak_after(9.0F), 11.0F) << "as far away, not further";
    EXPECT_EQ(peak_after(8.0F), 8.0F);
    EXPECT_EQ(peak_after(100.0F, 129), 8.0F) << "no reading";
    EXPECT_EQ(graph.TrendDev[Five][0], 2.0F);
    EXPECT_EQ(graph.TrendPeak[Five][1], 0.0F) << "not on the graph";
}

TEST_F(DecoderTest, AMeasureRequestStoresTheScaledValue) {
    channel(5).MValue = 2;
    channel(5).CValue = 1;
    requests = "ME5;IN6;";
    five.SinglePending[4] = true;
    EXPECT_EQ(read(1, single(3.0F, 99.0F, 7)), Decoded::Done);
    EXPECT_EQ(driver.recorded("Numeric"), Lines{"Numeric 5/1 2"});
    EXPECT_EQ(five.SingleReading[4], 7.0F);
    EXPECT_EQ(five.SingleReading2[4], 0.0F);
    EXPECT_EQ(five.SingleResultCode[4], 7);
    EXPECT_TRUE(five.SingleNew[4]);
    EXPECT_FALSE(five.SinglePending[4]);
    EXPECT_TRUE(five.StreamSeen[1] && five.StreamMarked[1] && run_time.Poll.Stream1Arrived);
    EXPECT_EQ(requests + kinds, "IN6;0");
}

TEST_F(DecoderTest, AnInitialisationStoresOffsetAndVoltsUnscaled) {
    channel(6).MValue = 2;
    requests = "IN6;";
    read(1, single(1.0E-20F, 0.25F, 130));
    EXPECT_EQ(five.SingleReading[5], 0.0F);
    EXPECT_EQ(five.SingleReading2[5], 0.25F);
    EXPECT_EQ(five.SingleResultCode[5], 130);
    EXPECT_EQ(requests + kinds, "1");
}

TEST_F(DecoderTest, WithoutARequestAnAnswerIsDropped) {
    for (const char* waiting : {"", "ME", "ME;"}) {
        requests = waiting;
        read(1, single(3.0F, 4.0F));
        EXPECT_EQ(five.SingleReading, ChannelValues{});
        EXPECT_EQ(requests + kinds, waiting);
        EXPECT_FALSE(run_time.Poll.Stream1Arrived || five.StreamMarked[1]);
    }
}

TEST(Decoder, TheChannelOfARequestMustExist) {
    struct Row {
        const char* token;
        const char* told;  // the number in the message; null: legal
        std::size_t channel;
    };
    const Row rows[] = {
        {"ME1;", nullptr, 1},
        {"ME32;", nullptr, 32},
        {"ME 7X;", nullptr, 7},
        {"ME12Q9;", nullptr, 12},
        {"ME0;", "0", 0},
        {"ME33;", "33", 0},
        {"ME-1;", "-1", 0},
        {"MEX1;", "0", 0},
        {"ME1E9;", "1000000000", 0},
        {"ME1E99;", "2147483647", 0},
        {"ME-1E99;", "-2147483648", 0},
        {"ME99", "99", 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.token);
        Decoding rig;
        rig.requests = row.token;
        rig.read(1, single(4.0F, 0));
        ChannelFlags answered{};
        if (row.channel > 0) answered[row.channel - 1] = true;
        EXPECT_EQ(rig.five.SingleNew, answered);
        EXPECT_EQ(rig.requests, "");
        EXPECT_EQ(rig.dialogs.boxes,
                  row.told
                      ? (Boxes{{std::string("Zav 5, Stream 1: Detected Illegal Channel Number ") +
                                    row.told,
                                48, "KAVORIX"}})
                      : Boxes{});
    }
}

TEST_F(DecoderTest, AnAnswerToAnUnknownRequestEndsTheProgram) {
    requests = "XY12;";
    EXPECT_THROW(read(1, single(1, 2)), ProgramEnded);
    EXPECT_EQ(dialogs.boxes,
              (Boxes{{"Unknown data in stream 1 of XY\nKAVORIX will stop", 16, "KAVORIX"}}));
}

TEST_F(DecoderTest, AnswersAndTextsAreTakenEvenWhenTheReadFailed) {
    requests = "ME1;ME2;";
    EXPECT_EQ(read(1, with_status(single(3.0F, 0), 1)), Decoded::Failed);
    EXPECT_EQ(read(1, with_status(single(4.0F, 0), 2)), Decoded::Done);
    EXPECT_EQ(five.SingleReading[0] + five.SingleReading[1], 7.0F);
    EXPECT_EQ(read(3, with_status(text("HALT"), 1)), Decoded::Failed);
    EXPECT_EQ(five.Stream3Text[0], 'H');
}

// The events of the last read: month, day, hour, minute, second, millisecond, channel, state,
// level.
using Events = std::vector<std::vector<int>>;
Events events_of(const RunTime& run_time, Pod pod) {
    Events events;
    for (int i = 0; i <= run_time.Poll.LastEvent[pod]; ++i) {
        const EventEntry& e = run_time.Poll.Events[pod][at(i)];
        events.push_back({e.EvMonth, e.EvDay, e.EvHour, e.EvMinute, e.EvSecond, e.EvMillisecond,
                          e.EvChannel, e.EvState, e.EvLevel});
    }
    return events;
}

Reply bytes(std::initializer_list<int> values) {
    std::string result;
    for (const int value : values) result += static_cast<char>(value);
    return text(result);
}

TEST_F(DecoderTest, EventRecordsAreTakenApart) {
    EXPECT_EQ(read(2, bytes({0x11,
                             0x12,
                             0x23,
                             0x59,  // 12 Nov 23:59
                             32 + 19,
                             0x45,
                             0x98,
                             0x70,  // channel 19 is high
                             255,
                             1,
                             2,
                             3,  // filler
                             128 + 32 + 3,
                             0x01,
                             0x00,
                             0x9F,  // channel 3 went high
                             128 + 4,
                             0x59,
                             0x99,
                             0x90,  // channel 4 went low
                             0,
                             32,
                             32,
                             32,
                             64,
                             0,
                             0,
                             0})),  // the end
              Decoded::Done);
    EXPECT_EQ(events_of(run_time, Five), (Events{{11, 12, 23, 59, 45, 987, 19, 1, 1},
                                                 {11, 12, 23, 59, 1, 9, 3, 1, 0},
                                                 {11, 12, 23, 59, 59, 999, 4, 0, 0}}));
    EXPECT_TRUE(run_time.Poll.EventPending);
    EXPECT_EQ(driver.recorded("String"), Lines{"String 5/2 112"});
}

TEST_F(DecoderTest, ASwitchPodCountsItsChannelsFromZero) {
    read(Fifty, 2, bytes({32, 0, 0, 0, 63, 0, 0, 0}));
    EXPECT_EQ(events_of(run_time, Fifty),
              (Events{{0, 0, 0, 0, 0, 0, 1, 1, 1}, {0, 0, 0, 0, 0, 0, 32, 1, 1}}));
}

TEST_F(DecoderTest, ATimeBaseServesTheReadsThatFollowTheEventsDoNot) {
    read(2, bytes({0x02, 0x28, 0x10, 0x20, 40, 0, 0, 0, 41, 0, 0, 0}));
    read(2, bytes({64 + 1, 0, 0, 0}));
    EXPECT_EQ(events_of(run_time, Five), (Events{{2, 28, 10, 20, 0, 0, 1, 0, 1}}));
}

TEST_F(DecoderTest, AnyBytesFillAtMostTheTable) {
    for (int byte = 0; byte < 256; ++byte) {
        read(2, text(std::string(300, static_cast<char>(byte))));
        EXPECT_EQ(events_of(run_time, Five).size(), byte >= 32 && byte <= 254 ? 28u : 0u) << byte;
    }
}

TEST_F(DecoderTest, AFailedEventReadIsDropped) {
    run_time.Poll.LastEvent[Five] = 3;
    EXPECT_EQ(read(2, with_status(bytes({40, 0, 0, 0}), 1)), Decoded::Failed);
    EXPECT_EQ(run_time.Poll.LastEvent[Five], 3);
    EXPECT_FALSE(run_time.Poll.EventPending);
}

TEST_F(DecoderTest, TextsAreShortenedByTheirFirstCharacterOrLeftAsReceived) {
    using namespace std::string_literals;
    const std::pair<std::string, std::string> rows[] = {
        {"CH5 ALARM HI", "CH5           "},      {"HALTED      ", "H             "},
        {"LO07xAyzBrst", "LO07 65y B    "},      {"LO07x\xFFyzBrst", "LO07 255y B   "},
        {"LO07x\x05\0zBrst"s, "LO07 5  B     "}, {"abcdefghijkl", "abcd 102g i   "},
    };
    for (const bool auto_clear : {false, true})
        for (const auto& [received, shortened] : rows) {
            run_time.Poll.Stream3AutoClear = auto_clear;
            five.Stream3Text.fill('#');
            EXPECT_EQ(read(3, text(received)), Decoded::Done);
            EXPECT_EQ(std::string(five.Stream3Text.data(), 14),
                      auto_clear ? received + "##" : shortened);
            EXPECT_EQ(five.Stream3Text.back(), auto_clear ? '#' : ' ');
        }
    EXPECT_EQ(driver.recorded("String").front(), "String 5/3 12");
}

TEST(ShortenedText, IsMadeFromWhatThereIs) {
    EXPECT_EQ(shortened_stream3_text("C"), "C");
    EXPECT_EQ(shortened_stream3_text("AB"), "AB 0  " + std::string(1, '\0'));
    EXPECT_EQ(shortened_stream3_text(""), " 0  " + std::string(1, '\0'));
}

}  // namespace
}  // namespace kavorix
