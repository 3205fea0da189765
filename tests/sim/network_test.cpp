#include "sim/network.h"

#include <gtest/gtest.h>

#include "sim/bench_network.h"

namespace kavorix::test {
namespace {

const std::string Card = "[card]\n";

std::string pod(int number, const std::string& ident, const std::string& rest = "") {
    return "[[pod]]\nnumber = " + std::to_string(number) + "\nident = \"" + ident + "\"\n" + rest;
}

std::string channel(int number, const std::string& rest) {
    return "[[pod.channel]]\nnumber = " + std::to_string(number) + "\n" + rest + "\n";
}

const std::string OneVolt = "[[pod.channel]]\nnumber = 1\nsignal = \"constant\"\noffset = 1.0\n";
const std::string Universal = Card + pod(3, "7VJA 0F 1.00", OneVolt);

TEST(CardTest, AnswersAtItsAddressOnly) {
    VirtualEventLoop loop;
    sim::Network network(scenario_of("[card]\naddress = \"D000\"\nhandle = 4\n"), loop);
    EXPECT_LT(network.Zav_Connect(-14336), 0);
    EXPECT_EQ(network.Zav_Connect(static_cast<std::int16_t>(0xD000)), 4);
}

TEST(CardTest, AStationWithoutACard) {
    VirtualEventLoop loop;
    sim::Network network(scenario_of(pod(3, "7VJA 0F 1.00")), loop);
    for (int address = 0xC800; address <= 0xDF00; address += 0x100)
        EXPECT_LT(network.Zav_Connect(static_cast<std::int16_t>(address)), 0);
}

TEST(CardTest, InitMarksThePodsThatAreThere) {
    BenchNetwork bench(Card + pod(3, "7VJA 0F 1.00") + pod(50, "8SFA 0F 1.00"));
    for (std::size_t i = 0; i < bench.present.size(); ++i)
        EXPECT_EQ(bench.present.at(i), i == 2 || i == 49 ? 1 : 0) << i;
    bench.present.fill(0);
    bench.network.Zav_Init(bench.present, bench.handle);
    EXPECT_EQ(bench.present[2], 0);
    EXPECT_NE(bench.network.Zav_Init(bench.present, 7), 0);
}

TEST(CardTest, VersionTextFillsAsMuchAsItHas) {
    BenchNetwork bench("[card]\nversion = \"V 2\"\n");
    std::array<char, 34> text;
    text.fill('~');
    bench.network.Zav_DLLVersion(text);
    EXPECT_EQ(std::string(text.begin(), text.end()), "V 2" + std::string(31, '~'));
}

TEST(CardTest, NothingAnswersWithoutConnectionPowerOrRightHandle) {
    BenchNetwork bench(Universal);
    EXPECT_EQ(bench.network.Zav_Tx(3, "TR", 5), 1);
    EXPECT_EQ(bench.network.Zav_Test(3, 0, 5), -1);
    EXPECT_EQ(bench.send(4, "TR"), 1);
    EXPECT_EQ(bench.send(0, "TR"), 1);
    EXPECT_EQ(bench.send(51, "TR"), 1);

    bench.network.Zav_PowerOff(bench.handle);
    EXPECT_EQ(bench.send(3, "TR"), 1);
    bench.connect();
    EXPECT_EQ(bench.send(3, "TR"), 0);

    bench.network.Zav_Disconnect(bench.handle);
    EXPECT_EQ(bench.send(3, "TR"), 0) << "two connections were open";
    bench.network.Zav_Disconnect(bench.handle);
    EXPECT_EQ(bench.send(3, "TR"), 1);
    EXPECT_EQ(bench.network.Zav_Test(3, 0, bench.handle), -1);
}

TEST(CardTest, DelayLetsTimePassWithoutEvents) {
    BenchNetwork bench(Universal);
    bool ran = false;
    bench.loop.call_later(50, [&] { ran = true; });
    bench.network.Zav_DLLDelay(100);
    EXPECT_EQ(bench.loop.elapsed_ms(), 100);
    EXPECT_FALSE(ran);
}

TEST(StatusTest, RepliesWithItsIdentOnStream3) {
    BenchNetwork bench(Universal);
    bench.send(3, "RE;ST");
    EXPECT_EQ(bench.network.Zav_Test(3, 3, bench.handle), 0);
    EXPECT_EQ(bench.text(3, TextStream), std::nullopt);
    bench.loop.advance(5);
    EXPECT_TRUE(bench.waiting(3, TextStream));
    EXPECT_EQ(bench.text(3, TextStream), "7VJA 0F 1.00");
    EXPECT_FALSE(bench.waiting(3, TextStream));
}

TEST(StatusTest, AReplyLeavesTheRestOfALongBufferAlone) {
    BenchNetwork bench(Universal);
    bench.send(3, "ST");
    bench.loop.advance(5);
    EXPECT_EQ(bench.text(3, TextStream, 14), "7VJA 0F 1.00~~");
}

TEST(StatusTest, ComesBeforeTextsThatWereNotRead) {
    BenchNetwork bench(Universal);
    bench.send(3, "QQ");
    bench.send(3, "ST");
    bench.loop.advance(5);
    EXPECT_EQ(bench.text(3, TextStream), "7VJA 0F 1.00");
    EXPECT_EQ(bench.text(3, TextStream), std::nullopt);
}

TEST(ScanTest, ATriggerGivesOneRecord) {
    BenchNetwork bench(Universal);
    bench.send(3, "TR");
    EXPECT_FALSE(bench.waiting(3, ReadingStream));
    const ScanRecord record = bench.triggered_scan(3);
    EXPECT_EQ(record.values.size(), 20u);
    EXPECT_EQ(record.values[0], 1.0F);
    EXPECT_EQ(record.codes[0], 0);
    bench.loop.advance(10000);
    EXPECT_FALSE(bench.waiting(3, ReadingStream));
}

TEST(ScanTest, ChannelCountsByType) {
    BenchNetwork bench(Card + pod(1, "7RAA 0F 1.00") + pod(2, "7SBA 0F 1.00") +
                       pod(3, "8SFA 0F 1.00") + pod(4, "9Z       1.0"));
    EXPECT_EQ(bench.triggered_scan(1).values.size(), 20u);
    EXPECT_EQ(bench.triggered_scan(2).values.size(), 10u);
    EXPECT_EQ(bench.triggered_scan(3).values.size(), 32u);
    const ScanRecord unknown = bench.triggered_scan(4);
    EXPECT_EQ(unknown.codes, std::vector<std::int16_t>(20, 255));
}

TEST(ScanTest, ScansInContinuousModeAtTheScanPeriodUntilHalted) {
    BenchNetwork bench(Universal);
    bench.send(3, "SP'2000'");
    bench.send(3, "CO");
    bench.loop.advance(5000);
    EXPECT_FALSE(bench.waiting(3, ReadingStream)) << "not triggered yet";
    bench.send(3, "TR");
    int scans = 0;
    for (int i = 0; i < 2000; ++i) {
        bench.loop.advance(10);
        if (bench.scan(3)) ++scans;
    }
    EXPECT_EQ(scans, 10);
    bench.send(3, "HA");
    bench.loop.advance(5000);
    EXPECT_FALSE(bench.waiting(3, ReadingStream));
    EXPECT_FALSE(bench.network.held(3)->continuous);
}

TEST(ScanTest, WithoutAPeriodTheScanTimeDecides) {
    BenchNetwork bench(Universal);
    bench.send(3, "FR5");
    bench.send(3, "CO");
    bench.send(3, "TR");
    int fast = 0;
    for (int i = 0; i < 1000; ++i) {
        bench.loop.advance(1);
        if (bench.scan(3)) ++fast;
    }
    bench.send(3, "FR0");
    int slow = 0;
    for (int i = 0; i < 1000; ++i) {
        bench.loop.advance(1);
        if (bench.scan(3)) ++slow;
    }
    EXPECT_GT(fast, 15);
    EXPECT_LT(slow, 4);
    EXPECT_GT(slow, 0);
}

TEST(ScanTest, ALongSilenceLeavesTheLastScanOnly) {
    BenchNetwork bench(Card + pod(3, "7VJA 0F 1.00",
                                  channel(1,
                                          "signal=\"counter\"\nperiod_s=1.0\nphase=0.0\n"
                                          "amplitude=0.0001\noffset=0.0")));
    bench.send(3, "SP'1000'");
    bench.send(3, "CO");
    bench.send(3, "TR");
    bench.loop.advance(86400500LL);
    const auto record = bench.scan(3);
    ASSERT_TRUE(record);
    EXPECT_NEAR(record->values[0], 8.6400F, 0.0005);
    EXPECT_EQ(bench.scan(3), std::nullopt);
}

TEST(ScanTest, ResetDropsEverythingAndRestoresTheDefaults) {
    BenchNetwork bench(Universal);
    for (const char* command : {"FR3", "CH1MO504", "TC1", "ME01", "TR", "QQ"})
        bench.send(3, command);
    bench.send(3, "RE");
    bench.loop.advance(10000);
    for (std::int16_t stream = 0; stream < 4; ++stream) EXPECT_FALSE(bench.waiting(3, stream));
    const sim::HeldSettings& held = *bench.network.held(3);
    EXPECT_EQ(held.integration, 0);
    EXPECT_FALSE(held.open_check);
    EXPECT_EQ(held.channels[0].mode, 10);
    EXPECT_EQ(held.channels[18].mode, 70);
}

TEST(ScanTest, ChannelCodes) {
    BenchNetwork bench(Card + pod(3, "7VJA 0F 1.00",
                                  OneVolt + channel(2, "signal=\"absent\"") +
                                      channel(3, "signal=\"constant\"\noffset=-11.0")));
    bench.send(3, "CH1MO101");  // 20 mV
    bench.send(3, "CH4MO000");
    bench.send(3, "CH5MO900");  // no frequency on an analog channel
    bench.send(3, "CH6MO105");
    const ScanRecord record = bench.triggered_scan(3);
    EXPECT_EQ(record.codes[0], 129);
    EXPECT_EQ(record.codes[1], 137);
    EXPECT_EQ(record.codes[2], 129);
    EXPECT_EQ(record.codes[3], 255);
    EXPECT_EQ(record.codes[4], 135);
    EXPECT_EQ(record.codes[5], 135);
    EXPECT_EQ(record.codes[6], 0);
}

TEST(RequestTest, MeasureAnswersOnStream1InOrder) {
    BenchNetwork bench(
        Card + pod(3, "7VJA 0F 1.00", OneVolt + channel(2, "signal=\"constant\"\noffset=2.0")));
    bench.send(3, "ME02");
    bench.send(3, "ME1");
    bench.send(3, "ME33");
    bench.send(3, "MEX");
    EXPECT_EQ(bench.answer(3), std::nullopt);
    bench.loop.advance(100);
    EXPECT_EQ(bench.answer(3), (BenchNetwork::Answer{2.0F, 0, 0}));
    EXPECT_EQ(bench.answer(3), (BenchNetwork::Answer{1.0F, 0, 0}));
    EXPECT_EQ(bench.answer(3)->code, 137);
    EXPECT_EQ(bench.answer(3)->code, 137);
    EXPECT_EQ(bench.answer(3), std::nullopt);
}

TEST(TextTest, WhatIsNotUnderstoodIsToldOnStream3) {
    struct Case {
        const char* command;
        std::string text;
    };
    const Case cases[] = {
        {"XY", std::string("?XY: \0U 1   ", 12)},
        {"CH7QQ", "?QQ: \aU 2   "},
        {"FR9", std::string("?FR: \0A 3   ", 12)},
        {"CH21MO100",
         "?MO: \x15"
         "C 4   "},
        {"CH2MO200", "?MO: \2M 5   "},
        {"EV1", std::string("?EV: \0M 6   ", 12)},
        {"CL3", "?CL: \3M 7   "},
        {"SP'300'", std::string("?SP: \0A 8   ", 12)},
    };
    BenchNetwork bench(Universal);
    for (const Case& c : cases) {
        EXPECT_EQ(bench.send(3, c.command), 0);
        bench.loop.advance(5);
        EXPECT_EQ(bench.text(3, TextStream), c.text) << c.command;
    }
}

TEST(TextTest, TextsOfTheScenarioComeAtTheirTimes) {
    BenchNetwork bench(Card + pod(3, "7VJA 0F 1.00",
                                  "[[pod.text]]\ntext=\"H once\"\nat_s=3.0\n"
                                  "[[pod.text]]\ntext=\"C12\"\nat_s=1.0\nevery_s=2.0\n"));
    std::string seen;
    for (int i = 0; i < 80; ++i) {
        bench.loop.advance(100);
        if (const auto text = bench.text(3, TextStream)) seen += std::to_string(i / 10) + *text;
    }
    EXPECT_EQ(seen, "1C12~~~~~~~~~3H once~~~~~~3C12~~~~~~~~~5C12~~~~~~~~~7C12~~~~~~~~~");
}

const std::string Square = "signal=\"square\"\nperiod_s=2.0\nphase=0.5";  // low until 1 s
const std::string Capturing = Card + pod(12, "8RCA 0F 1.00", channel(3, Square));

TEST(EventTest, EdgesAreCapturedWhileOn) {
    BenchNetwork bench(Capturing);
    bench.send(12, "CH3MO762");
    bench.loop.advance(500);
    EXPECT_FALSE(bench.waiting(12, EventStream));
    bench.send(12, "EV1");
    bench.loop.advance(1600);
    EXPECT_TRUE(bench.waiting(12, EventStream));
    // The clock stood at 08:00 on 5 January; the pod reports the level, then two edges.
    EXPECT_EQ(bench.text(12, EventStream, 20), std::string("\x01\x05\x08\x00"
                                                           "\x43\x00\x50\x00"
                                                           "\xA3\x01\x00\x00"
                                                           "\x83\x02\x00\x00"
                                                           "\x00\x00\x00\x00",
                                                           20));
    EXPECT_FALSE(bench.waiting(12, EventStream));
    bench.send(12, "EV0");
    bench.loop.advance(5000);
    EXPECT_FALSE(bench.waiting(12, EventStream));
}

TEST(EventTest, ARangeChoosesTheEdges) {
    for (const auto& [range, first_byte] :
         {std::pair{"CH3MO760", '\x83'}, std::pair{"CH3MO761", '\xA3'}}) {
        BenchNetwork bench(Capturing);
        bench.send(12, range);
        bench.send(12, "EV1");
        bench.text(12, EventStream, 112);  // the level
        bench.loop.advance(4500);
        const std::string read = bench.text(12, EventStream, 112).value();
        EXPECT_EQ(read[4], first_byte) << range;
        EXPECT_EQ(read[8], first_byte) << range;
        EXPECT_EQ(read[12], '\xFF') << "filler after two events and a time base";
        EXPECT_EQ(read[16], '\0');
    }
}

TEST(EventTest, ANewMinuteBringsANewTimeBase) {
    BenchNetwork bench(Capturing);
    bench.send(12, "CH3MO761");
    bench.loop.advance(57500);
    bench.send(12, "EV1");
    bench.loop.advance(4000);
    EXPECT_EQ(bench.text(12, EventStream, 28), std::string("\x01\x05\x08\x00"
                                                           "\x23\x57\x50\x00"
                                                           "\xA3\x59\x00\x00"
                                                           "\x01\x05\x08\x01"
                                                           "\xA3\x01\x00\x00"
                                                           "\xFF\xFF\xFF\xFF"
                                                           "\x00\x00\x00\x00",
                                                           28));
}

TEST(EventTest, MoreThanOneReplyHolds) {
    BenchNetwork bench(Card +
                       pod(17, "8SFA 0F 1.00", channel(32, "signal=\"square\"\nperiod_s=0.1")));
    bench.send(17, "CH32MO762");
    bench.send(17, "EV1");
    bench.loop.advance(2549);
    int events = 0;
    int reads = 0;
    while (const auto read = bench.text(17, EventStream, 112)) {
        ++reads;
        EXPECT_EQ((*read)[0], 1);
        for (std::size_t i = 4; i < 112 && (*read)[i] != 0; i += 4) {
            if ((*read)[i] == '\xFF') continue;
            EXPECT_EQ((*read)[i] & 31, 31) << "channel 32 of an 8S counts from 0";
            ++events;
        }
    }
    EXPECT_EQ(events, 1 + 50);
    EXPECT_EQ(reads, 2);
}

TEST(EventTest, ABufferTooSmallTakesOneEventAway) {
    BenchNetwork bench(Capturing);
    bench.send(12, "CH3MO762");
    bench.send(12, "EV1");
    EXPECT_EQ(bench.text(12, EventStream, 7).value().substr(4), "~~~");
    EXPECT_FALSE(bench.waiting(12, EventStream));
}

TEST(DigitalTest, CountsTimesAndLevels) {
    const std::string fast = "signal=\"square\"\nperiod_s=0.02\nduty=0.25";
    BenchNetwork bench(
        Card + pod(12, "8RCA 0F 1.00", "[[pod.channel]]\nnumber=1\nlast=20\n" + fast + "\n"));
    bench.loop.advance(10005);  // half-way between edges
    for (const char* command : {"CH1MO700", "CH2MO740", "CH3MO742", "CH4MO751", "CH5MO902",
                                "CH6MO911", "CH7MO920", "CH8MO921", "CH9MO801", "CH10MO800"})
        bench.send(12, command);
    bench.loop.advance(1000);
    const ScanRecord first = bench.triggered_scan(12);
    EXPECT_EQ(first.codes, std::vector<std::int16_t>(20, 0));
    EXPECT_EQ(first.values[1], 50.0F);
    EXPECT_EQ(first.values[2], 100.0F);
    EXPECT_EQ(first.values[3], 50.0F);
    EXPECT_EQ(first.values[4], 50.0F);
    EXPECT_NEAR(first.values[5], 0.02F, 1e-6);
    EXPECT_NEAR(first.values[6], 0.015F, 1e-6);
    EXPECT_NEAR(first.values[7], 0.005F, 1e-6);
    EXPECT_EQ(first.values[8], 1.0F);
    EXPECT_EQ(first.values[9], 0.0F);

    bench.send(12, "CL2");
    const ScanRecord second = bench.triggered_scan(12);
    EXPECT_LT(second.values[1], 3.0F);
    EXPECT_GT(second.values[2], 150.0F);
    EXPECT_LT(second.values[3], 70.0F) << "increments since the first scan";
}

TEST(DigitalTest, ATimedInputThatStandsStillTimesOut) {
    BenchNetwork bench(Card + pod(12, "8RCA 0F 1.00", channel(1, "signal=\"constant\"")));
    bench.send(12, "CH1MO910");
    bench.send(12, "CH1TI0");
    EXPECT_EQ(bench.triggered_scan(12).codes[0], 142);
    EXPECT_LT(bench.loop.elapsed_ms(), 400);
}

struct FaultCase {
    const char* kind;
    std::int16_t sent;
    std::int16_t tested;
    bool answers;
    bool found;
};

TEST(FaultTest, EachKindWhileItLasts) {
    const FaultCase cases[] = {
        {"dead", 1, -1, false, false},
        {"transmit_error", 1, 0, false, true},
        {"receive_error", 0, -1, false, true},
        {"no_status", 0, 0, false, true},
    };
    for (const FaultCase& c : cases) {
        BenchNetwork bench(Card + pod(3, "7VJA 0F 1.00",
                                      std::string("[[pod.fault]]\nkind=\"") + c.kind +
                                          "\"\nfrom_s=10.0\nto_s=20.0\n"));
        const auto asks = [&] {
            const std::int16_t sent = bench.send(3, "ST");
            bench.loop.advance(100);
            const std::int16_t tested = bench.network.Zav_Test(3, TextStream, bench.handle);
            return std::pair{sent, tested};
        };
        EXPECT_EQ(asks(), (std::pair<std::int16_t, std::int16_t>{0, 1})) << c.kind;
        EXPECT_TRUE(bench.text(3, TextStream)) << c.kind;
        bench.loop.advance(10000);
        EXPECT_EQ(asks(), (std::pair{c.sent, c.tested})) << c.kind;
        EXPECT_EQ(bench.text(3, TextStream).has_value(), c.answers) << c.kind;
        bench.connect();
        EXPECT_EQ(bench.present[2] == 1, c.found) << c.kind;
        bench.loop.advance(10000);
        EXPECT_EQ(asks(), (std::pair<std::int16_t, std::int16_t>{0, 1})) << c.kind;
    }
}

TEST(FaultTest, ReadsFailWithAReceiveError) {
    BenchNetwork bench(Card + pod(3, "7VJA 0F 1.00", "[[pod.fault]]\nkind=\"receive_error\"\n"));
    std::array<float, 32> values{};
    std::array<std::int16_t, 32> codes{};
    std::int16_t count = 20;
    EXPECT_EQ(bench.network.Zav_Numeric(3, 0, count, values, codes, bench.handle), 1);
    std::array<char, 12> buffer{};
    EXPECT_EQ(bench.network.Zav_String(3, 3, buffer, bench.handle), 1);
}

// A minute of operation as one text.
std::string transcript(std::uint64_t seed) {
    sim::Scenario scenario = sim::demo_scenario();
    scenario.seed = seed;
    BenchNetwork bench(scenario);
    std::string seen;
    for (const sim::PodSettings& settings : scenario.pods) {
        const auto number = static_cast<std::int16_t>(settings.number);
        for (const char* command : {"EV1", "CO", "TR"}) bench.send(number, command);
    }
    for (int i = 0; i < 600; ++i) {
        bench.loop.advance(100);
        for (const sim::PodSettings& settings : scenario.pods) {
            const auto number = static_cast<std::int16_t>(settings.number);
            if (const auto record = bench.scan(number))
                for (const float value : record->values) seen += general(value) + " ";
            seen += bench.text(number, EventStream, 112).value_or("");
            seen += bench.text(number, TextStream, 12).value_or("");
        }
    }
    return seen;
}

TEST(RepeatTest, TheSameSeedRepeatsARunExactly) {
    const std::string first = transcript(5);
    EXPECT_GT(first.size(), 100000u);
    EXPECT_TRUE(transcript(5) == first);
    EXPECT_FALSE(transcript(6) == first);
}

TEST(DemoTest, EveryPodGivesLiveReadingsAfterAResetAndATrigger) {
    BenchNetwork bench(sim::demo_scenario());
    for (std::int16_t number = 1; number <= MaxZavs; ++number) {
        if (bench.present.at(static_cast<std::size_t>(number - 1)) != 1) continue;
        bench.send(number, "RE;ST");
        const ScanRecord first = bench.triggered_scan(number);
        bench.loop.advance(2700);
        const ScanRecord second = bench.triggered_scan(number);
        EXPECT_EQ(first.codes, std::vector<std::int16_t>(first.codes.size(), 0)) << number;
        EXPECT_NE(first.values, second.values) << number;
    }
}

}  // namespace
}  // namespace kavorix::test
