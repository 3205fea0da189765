#include "sim/commands.h"

#include <algorithm>

#include "sim/bench_network.h"

namespace kavorix::test {
namespace {

using sim::HeldChannel;
using sim::HeldSettings;
using sim::read_command;
using sim::Refusal;

TEST(Commands, NumbersTravelLeastSignificantByteFirst) {
    EXPECT_EQ(sim::bytes_of(2.5F), (std::array<unsigned char, 4>{0x00, 0x00, 0x20, 0x40}));
    EXPECT_EQ(sim::value_of(std::string_view("\0\0\x20\x40", 4)), 2.5F);
}

// What pod 5 of a type holds differently after a command.
struct Effect {
    const char* type;
    const char* command;
    void (*change)(HeldSettings&);
};

HeldChannel& channel(HeldSettings& held, int number) {
    return held.channels.at(static_cast<std::size_t>(number - 1));
}
// A channel that got a mode starts anew.
void mode(HeldSettings& held, int number, std::int16_t mode, std::int16_t range = 0) {
    channel(held, number) = {};
    channel(held, number).range = range;
    channel(held, number).mode = mode;
}
constexpr sim::Coefficients OneToSix = {1, 2, 3, 4, 5, 6};
constexpr sim::HeldUserTable OneToTwelve = {true, OneToSix, {7, 8, 9, 10, 11, 12}};

#define HOLDS(...) [](HeldSettings& h) { (void)h, __VA_ARGS__; }

const Effect Effects[] = {
    {"7V", ";;SE;;AR", HOLDS(h.setup = h.armed = true)},
    {"7V", "CH1MO504;CH19MO802;SE", HOLDS(h.setup = true)},
    {"7V", "TE'1';CO",
     HOLDS(h.ambient_reference = false, h.external_temperature = 1, h.continuous = true)},
    {"7V", "CO;HA", HOLDS(void())},
    {"7V", "SP'2500'", HOLDS(h.scan_period_ms = 2500)},
    {"8R", "SP'10000'", HOLDS(h.scan_period_ms = 10000)},
    {"7S", "KA1", HOLDS(h.calibration = false)},
    {"7S", "KA1;KA0;FR5", HOLDS(h.integration = 5)},
    {"7R", "UN1", HOLDS(h.fahrenheit = true)},
    {"7V", "TE'21.5'", HOLDS(h.ambient_reference = false, h.external_temperature = 21.5F)},
    {"7R", "TE'21.5';AM", HOLDS(h.external_temperature = 21.5F)},
    {"7V", "TC1", HOLDS(h.open_check = true)},
    {"7V", "UT2'6''5''4''3''2''1''12''11''10''9''8''7'", HOLDS(h.user_tables[1] = OneToTwelve)},
    {"7W", "UT1'6''5''4''3''2''1''12''11''10''9''8''7'", HOLDS(h.user_tables[0] = OneToTwelve)},
    {"7W", "PL1'6''5''4''3''2''1'", HOLDS(h.equations[0] = {true, OneToSix})},
    {"7V", "PL2'6''5''4''3''2''1'", HOLDS(h.equations[1] = {true, OneToSix})},
    {"8S", "HW1;SW255", HOLDS(h.hardware_watch = true, h.software_watch = 255)},
    {"7V", "HW1;SW2;SW0", HOLDS(h.hardware_watch = true)},
    {"8R", "EV1", HOLDS(h.event_capture = true)},
    {"8S", "EV1;EV0", HOLDS(void())},
    {"7V", "CH3MO104", HOLDS(mode(h, 3, 10, 4))},
    {"7V", "CH1MO3A2;CH18MO000", HOLDS(mode(h, 1, 30, 2), mode(h, 18, 0))},
    {"7V", "CH7PL2;CH7MO104", HOLDS(mode(h, 7, 10, 4))},
    {"8R", "CH20RA4;CH20TI0", HOLDS(channel(h, 20).sample_rate = 4, channel(h, 20).timeout = 0)},
    {"7V", "CH19TI5;CH20RA1", HOLDS(channel(h, 19).timeout = 5, channel(h, 20).sample_rate = 1)},
    {"7V", "CH07PL2", HOLDS(channel(h, 7).equation = 2)},
    {"7S", "CH10GA'2.1'", HOLDS(channel(h, 10).gauge_factor = 2.1F)},
    {"7S", "CH1OF'-0.5''1.25'",
     HOLDS(channel(h, 1).offset = -0.5F, channel(h, 1).initial_volt = 1.25F)},
    {"7R", "CH03HL'-7.5''0.25'", HOLDS(channel(h, 3).high_alarm = {true, -7.5F, 0.25F})},
    {"8S", "CH32LL'1''2'", HOLDS(channel(h, 32).low_alarm = {true, 1.0F, 2.0F})},
    {"7V", "CH19GO101L18H",
     HOLDS(h.groups[0].state = 1, h.groups[0].low[0] = h.groups[0].high[17] = true)},
    {"7V", "CH20GO001L;CH20GO0", HOLDS(h.groups[1].state = 0)},
    {"7V", "FR3;CH1MO504;CH19GO1;TC1;RE", HOLDS(void())},
};

TEST(Commands, ChangeWhatAPodHolds) {
    for (const Effect& row : Effects) {
        BenchNetwork bench(pod(5, row.type));
        HeldSettings expected = *bench.network.held(5);
        row.change(expected);
        bench.send(5, row.command);
        EXPECT_TRUE(*bench.network.held(5) == expected) << row.type << " " << row.command;
        EXPECT_EQ(bench.play(5, "wait 1 s | text? nothing"), "wait 1 s | text? nothing")
            << row.type << " " << row.command;
    }
}

TEST(Commands, APodStartsWithTheModesOfItsTypeOrOfTheScenario) {
    BenchNetwork bench(pod(5, "7V; 2 constant default_mode=50"));
    HeldSettings expected;
    for (int number = 1; number <= 20; ++number)
        mode(expected, number, number > 18 ? std::int16_t{70} : std::int16_t{10});
    mode(expected, 2, 50);
    EXPECT_TRUE(*bench.network.held(5) == expected);
}

// Type and statement; what is told: its letters ("_" is a blank), the channel and why: 'U'nknown, a
// wrong 'A'rgument, no such 'C'hannel, or not in this 'M'ode or pod. "*" is four bytes that are no
// number.
const char* const Refused = R"(
    7V XY XY 0 U|      7V tr tr 0 U|      7V T T_ 0 U|       7V \x7F \x 0 U|    7V CHMO100 MO 0 U
    7V CH3XX1 XX 3 U|  7V CH3 __ 3 U|     7V TR1 TR 0 A|     7V FR FR 0 A|      7V FR12 FR 0 A
    7V FR6 FR 0 A|     7V KA2 KA 0 A|     7V UN2 UN 0 A|     7V TC2 TC 0 A|     7V HW2 HW 0 A
    7V SW256 SW 0 A|   7V SP SP 0 A|      7V SPABC SP 0 A|   7V SP'300' SP 0 A| 7V TE* TE 0 A
    7V UT0'1''1''1''1''1''1''1''1''1''1''1''1' UT 0 A|       7V PL3'1''1''1''1''1''1' PL 0 A
    8R EV2 EV 0 A|     7V CH1HL'1' HL 1 A| 7V CH1HL'1'* HL 1 A| 7V CH1LL*'1' LL 1 A| 7V CH1MO1 MO 1 A
    7V CH1MOA00 MO 1 A| 7V CH1PL3 PL 1 A| 8R CH1RA5 RA 1 A|  8R CH1TI6 TI 1 A| 7V CH19GO103 GO 19 A
    7V CH19GO1L GO 19 A| 7V CH19GO3 GO 19 A| 7V CH19GO119H GO 19 A|             7V CH19GO100H GO 19 A
    7V CH21RA1 RA 21 C| 7V CH0PL1 PL 0 C| 7S CH11GA'2' GA 11 C|                 8S CH33HL'1''1' HL 33 C
    8R KA0 KA 0 M|     8S FR1 FR 0 M|     8R UN1 UN 0 M|     7S AM AM 0 M|      7S TE'1' TE 0 M
    8R TC1 TC 0 M|     7R PL1'1''1''1''1''1''1' PL 0 M|      7R HW1 HW 0 M|     8R SW1 SW 0 M
    7R UT1'1''1''1''1''1''1''1''1''1''1''1''1' UT 0 M|       7V EV1 EV 0 M|     7V CL3 CL 3 M
    8S CL3 CL 3 M|     7V CH1GA'2' GA 1 M| 7R CH1OF'2''2' OF 1 M|               8S CH1RA1 RA 1 M
    7V CH18TI1 TI 18 M| 7R CH1PL1 PL 1 M| 7V CH19PL1 PL 19 M| 7V CH18GO1 GO 18 M| 8R CH19GO1 GO 19 M)";

TEST(Commands, WhatIsNotTakenIsToldOnStream3AndChangesNothing) {
    std::string rows = Refused;
    std::replace(rows.begin(), rows.end(), '\n', '|');
    for (const std::string& row : split(rows, '|')) {
        std::istringstream words(row);
        std::string type, command, letters, why;
        int channel = 0;
        words >> type >> command >> letters >> channel >> why;
        if (type.empty()) continue;
        if (const auto star = command.find('*'); star != std::string::npos)
            command.replace(star, 1, "\xFF\xFF\xFF\x7F");
        std::replace(letters.begin(), letters.end(), '_', ' ');
        BenchNetwork bench(pod(5, type));
        const HeldSettings before = *bench.network.held(5);
        bench.send(5, command);
        bench.loop.advance(5);
        EXPECT_EQ(bench.text(5, TextStream),
                  "?" + letters + ": " + static_cast<char>(channel) + why + " 1   ")
            << row;
        EXPECT_TRUE(*bench.network.held(5) == before) << row;
    }
}

// Modes and their ranges by type and channel. A wrong one is held all the same and read as error 7.
TEST(Commands, AModeOrRangeThatTheChannelDoesNotHaveIsTold) {
    struct Modes {
        const char* type;
        int channel;
        std::string taken;
    };
    const std::string thermocouples =
        "31:01234 32:01234 33:01234 34:01234 35:01234 36:01234 37:01234 38:01234 ";
    const std::string user = "30:01234 " + thermocouples + "39:01234 ";
    const Modes rows[] = {
        {"7R", 1, "10:01234 " + thermocouples + "50:01234 "},
        {"7S", 10,
         "10:0123 20:0123 21:0123 40:0123 41:0123 60:0123 61:0123 62:0123 63:0123 64:0123 65:0123 "
         "66:0123 67:0123 "},
        {"7V", 1,
         "10:01234 20:01234 21:034 22:01234 " + user +
             "40:0123 41:0123 42:0123 43:0123 50:01234 70:012 "},
        {"7W", 18, "10:01234 22:01234 " + user + "50:01234 70:012 "},
        {"7V", 19, "70:0 74:012 75:012 80:012 90:0123 91:0123 "},
        {"8R", 20, "70:0 74:012 75:012 76:012 80:01 90:0123 91:0123 92:01 "},
        {"8S", 28, "70:0 76:012 "},
        {"8S", 29, "70:0 76:012 80:01 "},
    };
    for (const Modes& row : rows) {
        std::string taken;
        for (int mode = 10; mode < 100; ++mode) {
            std::string ranges;
            for (int range = 0; range < 10; ++range) {
                BenchNetwork bench(pod(5, row.type));
                bench.send(5, "CH" + std::to_string(row.channel) + "MO" + std::to_string(mode) +
                                  std::to_string(range));
                bench.loop.advance(5);
                if (!bench.text(5, TextStream)) ranges += std::to_string(range);
            }
            if (!ranges.empty()) taken += std::to_string(mode) + ":" + ranges + " ";
        }
        EXPECT_EQ(taken, row.taken) << row.type << "/" << row.channel;
    }
}

TEST(Commands, ASemicolonInsideANumberEndsNothing) {
    const auto statements = read_command("TE;;;;;TR");
    ASSERT_EQ(statements.size(), 2u);
    EXPECT_EQ(statements[0].numbers[0], sim::value_of(";;;;"));
    EXPECT_EQ(statements[1].verb, sim::Verb::Trigger);
}

TEST(Commands, ReadingGoesOnBehindABadStatement) {
    const auto statements = read_command("FR;R;TR");
    ASSERT_EQ(statements.size(), 3u);
    EXPECT_EQ(statements[0].refusal, Refusal::Argument);
    EXPECT_EQ(statements[1].refusal, Refusal::Unknown);
    EXPECT_EQ(statements[2].refusal, Refusal::None);
}

}  // namespace
}  // namespace kavorix::test
