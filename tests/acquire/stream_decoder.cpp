#include "acquire/stream_decoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/rig.h"

namespace kavorix {
namespace {

using test::failure;
using test::Lines;
using test::LogHeader;
using test::pods_with;
using test::Rig;
using test::scan;
using test::single;
using test::text;
using Boxes = std::vector<test::ShownBox>;
using Pods = std::vector<int>;

constexpr int I16Max = std::numeric_limits<std::int16_t>::max();
constexpr int I16Min = std::numeric_limits<std::int16_t>::min();

// Pod 3 (7R), pod 5 (8S) and pod 8 (7V).
class DecoderTest : public testing::Test, protected Rig {
  protected:
    DecoderTest() { station({{3, "7RJA 0F 1.00"}, {5, "8SFN 0F 1.00"}, {8, "7VJA 0F 1.00"}}); }
    void read0(const test::Reply& reply) {
        driver.pod(3).waiting[0] = {reply};
        decoder.read_stream0(2);
    }
    void read1(const test::Reply& reply) {
        driver.pod(3).waiting[1] = {reply};
        decoder.read_stream1(2);
    }
    void read2(int pod, const std::string& bytes) {
        driver.pod(pod).waiting[2] = {text(bytes)};
        decoder.read_stream2(pod - 1);
    }
    std::string read3(const std::string& bytes) {
        driver.pod(3).waiting[3] = {text(bytes)};
        decoder.read_stream3(2);
        return shown_text();
    }
    std::string shown_text() {
        const auto& buffer = status(3).Stream3Text;
        return {buffer.begin(), buffer.begin() + 14};
    }
    std::string& requests() { return run_time.Link.StreamRequests[2]; }
    std::string& kinds() { return run_time.Poll.RequestKinds[2]; }
    ChannelConfig& channel(int number) { return config(3).Channel[at(number - 1)]; }
};

struct ReadingRow {
    float raw;
    float m;
    float c;
    float reading;
};

TEST_F(DecoderTest, ReadingsAreCleanedAndScaled) {
    const ReadingRow rows[] = {
        {1.5F, 1, 0, 1.5F},           {1.5F, 2, -1, 2.0F},    {1.0E-20F, 5, 7, 7.0F},
        {-1.0E-20F, 5, 7, 7.0F},      {2.6E-19F, 1, 0, 0.0F}, {2.7E-19F, 1, 0, 2.7E-19F},
        {-2.7E-19F, 1, 0, -2.7E-19F}, {0.0F, 3, 0.5F, 0.5F},  {3.0E38F, 1, 0, 3.0E38F},
    };
    for (const ReadingRow& row : rows) {
        channel(1).MValue = row.m;
        channel(1).CValue = row.c;
        read0(scan({row.raw}));
        EXPECT_EQ(status(3).Reading[0], row.reading) << row.raw;
    }
}

TEST_F(DecoderTest, NumbersThatAreNoneLeaveThePeaksAlone) {
    read0(scan({1.0F}));
    read0(scan({std::nanf("")}));
    EXPECT_TRUE(std::isnan(status(3).Reading[0]));
    EXPECT_EQ(status(3).PeakMin[0], 1.0F);
    EXPECT_EQ(status(3).PeakMax[0], 1.0F);
}

TEST_F(DecoderTest, PeaksFollowNewExtremesAlone) {
    read0(scan({2.0F}));
    EXPECT_EQ(status(3).PeakMin[0], 2.0F);
    EXPECT_EQ(status(3).PeakMax[0], 2.0F);
    EXPECT_EQ(status(3).MinChanged[0] + status(3).MaxChanged[0], 2);
    status(3).MinChanged[0] = status(3).MaxChanged[0] = 0;
    read0(scan({2.0F}));
    EXPECT_EQ(status(3).MinChanged[0] + status(3).MaxChanged[0], 0);
    read0(scan({3.0F}));
    EXPECT_EQ(status(3).MinChanged[0], 0);
    EXPECT_EQ(status(3).MaxChanged[0], 1);
    read0(scan({-3.0F}));
    EXPECT_EQ(status(3).MinChanged[0], 1);
    EXPECT_EQ(status(3).PeakMin[0], -3.0F);
    EXPECT_EQ(status(3).PeakMax[0], 3.0F);
}

struct CodeRow {
    int code;
    const char* logged;
};

TEST_F(DecoderTest, CodesAbove128AreErrorsAndLeaveTheRawValue) {
    const CodeRow rows[] = {
        {0, nullptr},
        {127, nullptr},
        {128, nullptr},
        {-1, nullptr},
        {I16Min, nullptr},
        {129, " Analog Overload (ZAV:03 Chan:02 Interface:C800)\r\n"},
        {136, " ZAV Error Code 8 (ZAV:03 Chan:02 Interface:C800)\r\n"},
        {141, ""},  // pending: no reading, but nothing to log
        {255, ""},  // not measured
        {I16Max, " ZAV Error Code 32639 (ZAV:03 Chan:02 Interface:C800)\r\n"},
    };
    for (const CodeRow& row : rows) {
        SCOPED_TRACE(row.code);
        Rig rig;
        rig.station({{3, "7RJA 0F 1.00"}});
        rig.config(3).Channel[1].MValue = 10;
        rig.driver.pod(3).waiting[0] = {
            scan({1, 1.0E-20F}, {0, static_cast<std::int16_t>(row.code)})};
        rig.decoder.read_stream0(2);
        const bool error = row.logged;
        EXPECT_EQ(rig.status(3).Reading[1], error ? 1.0E-20F : 0.0F);
        EXPECT_EQ(rig.status(3).PeakMax[1], error ? NoPeakMax : 0.0F);
        EXPECT_EQ(rig.status(3).ResultCode[1], row.code);
        EXPECT_EQ(rig.log_text(), LogHeader + (error ? row.logged : ""));
        EXPECT_EQ(rig.status(3).PeakMax[0], 1.0F);
    }
}

struct CountRow {
    int count;
    int used;
};

TEST_F(DecoderTest, CountsBeyondTheChannelsAreCut) {
    const CountRow rows[] = {{0, 0},  {1, 1},    {32, 32},     {33, 32},
                             {-1, 0}, {100, 32}, {I16Max, 32}, {I16Min, 0}};
    for (const CountRow& row : rows) {
        SCOPED_TRACE(row.count);
        test::Reply reply = scan(std::vector<float>(64, 1.0F));
        reply.count = static_cast<std::int16_t>(row.count);
        status(3).PeakMax.fill(NoPeakMax);
        read0(reply);
        EXPECT_EQ(status(3).ChannelCount, row.used);
        EXPECT_EQ(std::count(status(3).PeakMax.begin(), status(3).PeakMax.end(), 1.0F), row.used);
    }
}

TEST_F(DecoderTest, AFailedReadDropsTheRecord) {
    read0(scan({1.0F}));
    for (const int result : {1, 2, -1, I16Max}) {
        SCOPED_TRACE(result);
        test::Reply reply = scan({9.0F, 9.0F}, {200, 200});
        reply.status = static_cast<std::int16_t>(result);
        read0(reply);
        EXPECT_EQ(status(3).ChannelCount, 1);
        EXPECT_EQ(status(3).Reading[0], 1.0F);
        EXPECT_EQ(status(3).ResultCode[0], 0);
        EXPECT_EQ(status(3).PeakMax[0], 1.0F);
        EXPECT_EQ(polled(3), false);  // from the first of them on
    }
    EXPECT_EQ(log_text(), LogHeader + " ERROR! - Receive Error (ZAV:03  Interface:C800)\r\n");
}

TEST_F(DecoderTest, TheGraphGetsTheReadingThatStrayedFurthest) {
    GraphState& graph = run_time.Graph;
    graph.TrendSelected[2][0] = 1;
    graph.TrendRef[2][0] = 10.0F;
    const auto peak_after = [&](float value) {
        read0(scan({value, value}));
        return graph.TrendPeak[2][0];
    };
    EXPECT_EQ(peak_after(11.0F), 0.0F);  // the graph does not run
    graph.TrendRunning = 1;
    EXPECT_EQ(peak_after(11.0F), 11.0F);
    EXPECT_EQ(peak_after(9.5F), 11.0F);
    EXPECT_EQ(peak_after(9.0F), 11.0F);  // as far away, not further
    EXPECT_EQ(peak_after(8.0F), 8.0F);
    EXPECT_EQ(graph.TrendDev[2][0], 2.0F);
    read0(scan({100.0F}, {129}));
    EXPECT_EQ(graph.TrendPeak[2][0], 8.0F);
    EXPECT_EQ(graph.TrendPeak[2][1], 0.0F);  // not selected
}

TEST_F(DecoderTest, AMeasureRequestStoresTheScaledValue) {
    channel(5).MValue = 2;
    channel(5).CValue = 1;
    requests() = "ME5;IN6;";
    status(3).SinglePending[4] = 1;
    read1(single(3.0F, 99.0F, 7));
    EXPECT_EQ(driver.recorded("Numeric"), (Lines{"Numeric 3/1 2"}));
    EXPECT_EQ(status(3).SingleReading[4], 7.0F);
    EXPECT_EQ(status(3).SingleReading2[4], 0.0F);
    EXPECT_EQ(status(3).SingleResultCode[4], 7);
    EXPECT_EQ(status(3).SingleNew[4], 1);
    EXPECT_EQ(status(3).SinglePending[4], 0);
    EXPECT_EQ(status(3).StreamSeen[1], 1);
    EXPECT_EQ(screen.lblStrm1[2].caption, "1");
    EXPECT_EQ(run_time.Poll.Stream1Arrived, 1);
    EXPECT_EQ(requests(), "IN6;");
    EXPECT_EQ(kinds(), "0");
}

TEST_F(DecoderTest, AnInitialisationStoresOffsetAndVoltsUnscaled) {
    channel(6).MValue = 2;
    requests() = "IN6;";
    read1(single(1.0E-20F, 0.25F, 130));
    EXPECT_EQ(status(3).SingleReading[5], 0.0F);
    EXPECT_EQ(status(3).SingleReading2[5], 0.25F);
    EXPECT_EQ(status(3).SingleResultCode[5], 130);
    EXPECT_EQ(requests(), "");
    EXPECT_EQ(kinds(), "1");
}

TEST_F(DecoderTest, WithoutARequestAnAnswerIsDropped) {
    for (const char* waiting : {"", "ME", "ME;"}) {
        requests() = waiting;
        read1(single(3.0F, 4.0F));
        EXPECT_EQ(status(3).SingleReading, ChannelValues{});
        EXPECT_EQ(requests(), waiting);
        EXPECT_EQ(kinds(), "");
        EXPECT_EQ(run_time.Poll.Stream1Arrived, 0);
    }
    EXPECT_EQ(dialogs.boxes, Boxes{});
}

TEST_F(DecoderTest, AFailedAnswerIsCountedAndTakenAllTheSame) {
    requests() = "ME1;";
    test::Reply reply = single(3.0F, 0);
    reply.status = 1;
    read1(reply);
    EXPECT_EQ(status(3).SingleReading[0], 3.0F);
    EXPECT_FALSE(polled(3));
    EXPECT_EQ(log_text(), LogHeader + " ERROR! - Receive Error (ZAV:03  Interface:C800)\r\n");
}

struct ChannelRow {
    const char* token;
    const char* told;  // the number in the message; null: legal
    int channel;
};

TEST_F(DecoderTest, TheChannelOfARequestMustExist) {
    const ChannelRow rows[] = {
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
    for (const ChannelRow& row : rows) {
        SCOPED_TRACE(row.token);
        Rig rig;
        rig.station({{3, "7RJA 0F 1.00"}});
        rig.run_time.Link.StreamRequests[2] = row.token;
        rig.driver.pod(3).waiting[1] = {single(4.0F, 0)};
        rig.decoder.read_stream1(2);
        EXPECT_EQ(rig.run_time.Link.StreamRequests[2], "");
        if (row.told) {
            EXPECT_EQ(
                rig.dialogs.boxes,
                (Boxes{{std::string("Zav 3, Stream 1: Detected Illegal Channel Number ") + row.told,
                        48, "KAVORIX"}}));
            EXPECT_EQ(rig.status(3).SingleNew, ChannelFlags{});
        } else {
            EXPECT_EQ(rig.dialogs.boxes, Boxes{});
            EXPECT_EQ(rig.status(3).SingleReading[at(row.channel - 1)], 4.0F);
        }
    }
}

TEST_F(DecoderTest, AnAnswerToAnUnknownRequestEndsTheProgram) {
    requests() = "XY12;";
    EXPECT_THROW(read1(single(1, 2)), ProgramEnded);
    EXPECT_EQ(dialogs.boxes,
              (Boxes{{"Unknown data in stream 1 of XY\nKAVORIX will stop", 16, "KAVORIX"}}));
}

std::string bytes(std::initializer_list<int> values) {
    std::string result;
    for (const int value : values) result += static_cast<char>(value);
    return result;
}

TEST_F(DecoderTest, EventRecordsAreTakenApart) {
    // 12 Nov 23:59; channel 19 high level; channel 3 Lo to Hi; filler; channel 4 Hi to Lo.
    read2(8,
          bytes({0x11,    0x12, 0x23, 0x59,  //
                 32 + 19, 0x45, 0x98, 0x70, 128 + 32 + 3, 0x01, 0x00, 0x9F, 255, 1, 2, 3, 128 + 4,
                 0x59,    0x99, 0x90, 0,    32,           32,   32,   64,   0,   0, 0}));
    ASSERT_EQ(run_time.Poll.LastEvent[7], 2);
    EXPECT_EQ(run_time.Poll.EventPending, 1);
    const auto& events = run_time.Poll.Events[7];
    const auto numbers = [](const EventEntry& e) {
        return std::vector<int>{e.EvMonth,       e.EvDay,     e.EvHour,  e.EvMinute, e.EvSecond,
                                e.EvMillisecond, e.EvChannel, e.EvState, e.EvLevel};
    };
    EXPECT_EQ(numbers(events[0]), (std::vector<int>{11, 12, 23, 59, 45, 987, 19, 1, 1}));
    EXPECT_EQ(numbers(events[1]), (std::vector<int>{11, 12, 23, 59, 1, 9, 3, 1, 0}));
    EXPECT_EQ(numbers(events[2]), (std::vector<int>{11, 12, 23, 59, 59, 999, 4, 0, 0}));
}

TEST_F(DecoderTest, ASwitchPodCountsItsChannelsFromZero) {
    read2(5, bytes({32, 0, 0, 0, 63, 0, 0, 0}));
    EXPECT_EQ(run_time.Poll.Events[4][0].EvChannel, 1);
    EXPECT_EQ(run_time.Poll.Events[4][1].EvChannel, 32);
}

TEST_F(DecoderTest, ATimeBaseServesTheReadsThatFollow) {
    read2(8, bytes({0x02, 0x28, 0x10, 0x20}));
    EXPECT_EQ(run_time.Poll.LastEvent[7], -1);
    read2(8, bytes({40, 0, 0, 0}));
    EXPECT_EQ(run_time.Poll.Events[7][0].EvMonth, 2);
    EXPECT_EQ(run_time.Poll.Events[7][0].EvDay, 28);
}

TEST_F(DecoderTest, AShorterReadIsNotFilledUpWithTheLastOne) {
    read2(8, std::string(112, '\x41'));
    EXPECT_EQ(run_time.Poll.LastEvent[7], 27);
    read2(8, bytes({40, 0, 0, 0}));
    EXPECT_EQ(run_time.Poll.LastEvent[7], 0);
}

TEST_F(DecoderTest, AnyBytesFillAtMostTheTable) {
    for (int byte = 0; byte < 256; ++byte) {
        read2(8, std::string(300, static_cast<char>(byte)));
        const int last = run_time.Poll.LastEvent[7];
        EXPECT_EQ(last, byte >= 32 && byte <= 254 ? 27 : -1) << byte;
    }
    EXPECT_EQ(driver.recorded("String").front(), "String 8/2 112");
}

TEST_F(DecoderTest, AFailedEventReadIsDropped) {
    run_time.Poll.LastEvent[7] = 3;
    driver.pod(8).waiting[2] = {failure(1)};
    decoder.read_stream2(7);
    EXPECT_EQ(run_time.Poll.LastEvent[7], 3);
    EXPECT_EQ(run_time.Poll.EventPending, 0);
    EXPECT_FALSE(polled(8));
}

struct TextRow {
    std::string received;
    std::string shown;  // its first 14 characters
};

TEST_F(DecoderTest, TextsAreShortenedByTheirFirstCharacter) {
    using namespace std::string_literals;
    const TextRow rows[] = {
        {"CH5 ALARM HI", "CH5           "},      {"HALTED      ", "H             "},
        {"LO07xAyzBrst", "LO07 65y B    "},      {"LO07x\xFFyzBrst", "LO07 255y B   "},
        {"LO07x\x05\0zBrst"s, "LO07 5  B     "}, {"abcdefghijkl", "abcd 102g i   "},
    };
    for (const TextRow& row : rows) {
        status(3).Stream3Text.fill('#');
        EXPECT_EQ(read3(row.received), row.shown);
        EXPECT_EQ(status(3).Stream3Text.back(), ' ');
    }
    EXPECT_EQ(driver.recorded("String").front(), "String 3/3 12");
}

TEST_F(DecoderTest, AShortTextIsShortenedFromWhatItHas) {
    EXPECT_EQ(shortened_stream3_text("C"), "C");
    EXPECT_EQ(shortened_stream3_text("AB"), "AB 0  " + std::string(1, '\0'));
    EXPECT_EQ(shortened_stream3_text(""), " 0  " + std::string(1, '\0'));
}

TEST_F(DecoderTest, WithAutoClearATextStaysAsReceived) {
    run_time.Poll.Stream3AutoClear = 1;
    EXPECT_EQ(read3("CH5 ALARM HI").substr(0, 12), "CH5 ALARM HI");
}

TEST_F(DecoderTest, AFailedTextReadIsCountedAndTreatedAllTheSame) {
    test::Reply reply = text("CH5 ALARM HI");
    reply.status = 1;
    driver.pod(3).waiting[3] = {reply};
    decoder.read_stream3(2);
    EXPECT_EQ(shown_text(), "CH5           ");
    EXPECT_FALSE(polled(3));
}

}  // namespace
}  // namespace kavorix
