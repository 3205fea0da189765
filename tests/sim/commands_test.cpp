#include "sim/commands.h"

#include <gtest/gtest.h>

namespace kavorix::test {
namespace {

using sim::read_command;
using sim::Refusal;
using sim::Statement;
using sim::Verb;

std::string number(float value) {
    std::string bytes;
    for (const unsigned char byte : sim::bytes_of(value)) bytes += static_cast<char>(byte);
    return bytes;
}

Statement only(const std::string& command) {
    const auto statements = read_command(command);
    EXPECT_EQ(statements.size(), 1u) << command;
    return statements.empty() ? Statement() : statements.front();
}

TEST(CommandsTest, NumbersTravelLeastSignificantByteFirst) {
    EXPECT_EQ(sim::bytes_of(2.5F), (std::array<unsigned char, 4>{0x00, 0x00, 0x20, 0x40}));
    EXPECT_EQ(sim::value_of(number(-1.25e-7F)), -1.25e-7F);
}

TEST(CommandsTest, StatementsWithoutNumbers) {
    struct Case {
        const char* text;
        Verb verb;
        int channel;
        int argument;
        int range;
    };
    const Case cases[] = {
        {"TR", Verb::Trigger, 0, 0, 0},
        {"HA", Verb::Halt, 0, 0, 0},
        {"RE", Verb::Reset, 0, 0, 0},
        {"ST", Verb::Status, 0, 0, 0},
        {"SE", Verb::Setup, 0, 0, 0},
        {"AR", Verb::Arm, 0, 0, 0},
        {"CO", Verb::Continuous, 0, 0, 0},
        {"AM", Verb::AmbientReference, 0, 0, 0},
        {"ME05", Verb::Measure, 5, 0, 0},
        {"IN10", Verb::InitialiseStrain, 10, 0, 0},
        {"EV1", Verb::Events, 0, 1, 0},
        {"CL19", Verb::ClearCount, 19, 0, 0},
        {"KA0", Verb::Calibration, 0, 0, 0},
        {"FR5", Verb::Integration, 0, 5, 0},
        {"UN1", Verb::Units, 0, 1, 0},
        {"TC1", Verb::OpenCheck, 0, 1, 0},
        {"HW1", Verb::HardwareWatch, 0, 1, 0},
        {"SW255", Verb::SoftwareWatch, 0, 255, 0},
        {"CH3MO104", Verb::ChannelMode, 3, 10, 4},
        {"CH1MO3A2", Verb::ChannelMode, 1, 30, 2},
        {"CH12MO000", Verb::ChannelMode, 12, 0, 0},
        {"CH4RA3", Verb::SampleRate, 4, 3, 0},
        {"CH20TI1", Verb::Timeout, 20, 1, 0},
        {"CH07PL2", Verb::ChannelEquation, 7, 2, 0},
    };
    for (const Case& c : cases) {
        const Statement read = only(c.text);
        EXPECT_EQ(read.refusal, Refusal::None) << c.text;
        EXPECT_EQ(read.verb, c.verb) << c.text;
        EXPECT_EQ(read.channel, c.channel) << c.text;
        EXPECT_EQ(read.argument, c.argument) << c.text;
        EXPECT_EQ(read.range, c.range) << c.text;
    }
}

TEST(CommandsTest, StatementsWithNumbers) {
    const Statement period = only("SP" + number(2500));
    EXPECT_EQ(period.verb, Verb::ScanPeriod);
    EXPECT_EQ(period.numbers[0], 2500.0F);

    const Statement alarm = only("CH03HL" + number(-7.5F) + number(0.25F));
    EXPECT_EQ(alarm.verb, Verb::HighAlarm);
    EXPECT_EQ(alarm.channel, 3);
    EXPECT_EQ(alarm.numbers[0], -7.5F);
    EXPECT_EQ(alarm.numbers[1], 0.25F);

    std::string table = "UT2";
    for (int i = 0; i < 12; ++i) table += number(static_cast<float>(i));
    const Statement user = only(table);
    EXPECT_EQ(user.verb, Verb::UserTable);
    EXPECT_EQ(user.argument, 2);
    for (std::size_t i = 0; i < 12; ++i) EXPECT_EQ(user.numbers.at(i), static_cast<float>(i));
}

TEST(CommandsTest, AnAlarmGroupNamesItsMembers) {
    const Statement group = only("CH19GO103L03H07H");
    EXPECT_EQ(group.verb, Verb::GroupOutput);
    EXPECT_EQ(group.channel, 19);
    EXPECT_EQ(group.argument, 1);
    EXPECT_EQ(group.members, (std::vector<sim::GroupMember>{{3, false}, {3, true}, {7, true}}));
    EXPECT_TRUE(only("CH20GO0").members.empty());
}

TEST(CommandsTest, SeveralStatementsInOneCommand) {
    const auto statements = read_command("RE;ST");
    ASSERT_EQ(statements.size(), 2u);
    EXPECT_EQ(statements[0].verb, Verb::Reset);
    EXPECT_EQ(statements[1].verb, Verb::Status);
    EXPECT_EQ(read_command(";;TR;;HA;").size(), 2u);
}

TEST(CommandsTest, ASemicolonInsideANumberEndsNothing) {
    const std::string digits = ";;;;";  // a number of its own
    const auto statements = read_command("TE" + digits + ";TR");
    ASSERT_EQ(statements.size(), 2u);
    EXPECT_EQ(statements[0].numbers[0], sim::value_of(digits));
    EXPECT_EQ(statements[1].verb, Verb::Trigger);
}

TEST(CommandsTest, WhatIsNotUnderstood) {
    struct Case {
        std::string text;
        Refusal refusal;
        const char* mnemonic;
    };
    const Case cases[] = {
        {"XY", Refusal::Unknown, "XY"},
        {"tr", Refusal::Unknown, "tr"},
        {"T", Refusal::Unknown, "T"},
        {"CHMO100", Refusal::Unknown, "MO"},
        {"CH3XX1", Refusal::Unknown, "XX"},
        {"CH3", Refusal::Unknown, ""},
        {"TR1", Refusal::Argument, "TR"},
        {"FR", Refusal::Argument, "FR"},
        {"FR12", Refusal::Argument, "FR"},
        {"SP", Refusal::Argument, "SP"},
        {"SP'250'", Refusal::Argument, "SP"},
        {"SP" + number(250).substr(0, 3), Refusal::Argument, "SP"},
        {"CH1HL" + number(1), Refusal::Argument, "HL"},
        {"CH1MO1", Refusal::Argument, "MO"},
        {"CH1MOA00", Refusal::Argument, "MO"},
        {"CH19GO103", Refusal::Argument, "GO"},
        {"CH19GO1L", Refusal::Argument, "GO"},
        {"ME", Refusal::Argument, "ME"},
    };
    for (const Case& c : cases) {
        const Statement read = only(c.text);
        EXPECT_EQ(read.refusal, c.refusal) << c.text;
        EXPECT_EQ(read.mnemonic, c.mnemonic) << c.text;
    }
}

TEST(CommandsTest, ReadingGoesOnBehindABadStatement) {
    const auto statements = read_command("FR;R;TR");
    ASSERT_EQ(statements.size(), 3u);
    EXPECT_EQ(statements[0].refusal, Refusal::Argument);
    EXPECT_EQ(statements[1].refusal, Refusal::Unknown);
    EXPECT_EQ(statements[2].verb, Verb::Trigger);
}

}  // namespace
}  // namespace kavorix::test
