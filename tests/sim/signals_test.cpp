#include "sim/signals.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kavorix::test {
namespace {

using sim::LogicInput;
using sim::RandomSource;
using sim::Signal;
using sim::signal_value;
using sim::SignalKind;

const RandomSource Random(7);

// From -1.5 to 2.5 with a period of 8 s.
Signal signal_of(SignalKind kind, double phase = 0.0) {
    Signal signal;
    signal.kind = kind;
    signal.amplitude = 2.0;
    signal.offset = 0.5;
    signal.period_s = 8.0;
    signal.phase = phase;
    signal.step_s = 0.5;
    signal.edges_s = {1.0, 3.0, 7.0};
    return signal;
}

TEST(Signals, ValuesOverOnePeriod) {
    struct Row {
        SignalKind kind;
        std::vector<std::pair<double, double>> values;  // at a time in s
    };
    const Row rows[] = {
        {SignalKind::Constant, {{3, 0.5}}},
        {SignalKind::Sine, {{0, 0.5}, {2, 2.5}, {6, -1.5}}},
        {SignalKind::Ramp, {{0, -1.5}, {4, 0.5}, {7, 2.0}, {8, -1.5}}},
        {SignalKind::Square, {{3.9, 2.5}, {4, -1.5}}},
        {SignalKind::Pattern, {{0.9, -1.5}, {1, 2.5}, {3.5, -1.5}, {7.5, 2.5}, {8.5, -1.5}}},
        {SignalKind::Counter, {{7.9, 0.5}, {24, 6.5}}},
        {SignalKind::Open, {{1, 0}}},
        {SignalKind::Absent, {{1, 0}}},
    };
    for (const Row& row : rows)
        for (const auto& [time_s, value] : row.values) {
            EXPECT_NEAR(signal_value(signal_of(row.kind), Random, time_s), value, 1e-9)
                << static_cast<int>(row.kind) << " at " << time_s;
            if (time_s < 2) continue;
            EXPECT_NEAR(signal_value(signal_of(row.kind, 0.25), Random, time_s - 2), value, 1e-9)
                << static_cast<int>(row.kind) << " a quarter of a period earlier";
        }
}

TEST(Signals, RandomKindsUseMostOfTheirAmplitudeAndAWalkTakesSmallSteps) {
    for (const SignalKind kind : {SignalKind::Noise, SignalKind::RandomWalk}) {
        double lowest = 100.0, highest = -100.0, step = 0.0;
        for (int i = 0; i < 200000; ++i) {
            const double value = signal_value(signal_of(kind), Random, i * 0.01);
            step = std::max(
                step, std::fabs(value - signal_value(signal_of(kind), Random, i * 0.01 + 0.01)));
            lowest = std::min(lowest, value);
            highest = std::max(highest, value);
        }
        EXPECT_TRUE(lowest >= -1.5 && lowest < -0.5) << lowest;
        EXPECT_TRUE(highest <= 2.5 && highest > 1.5) << highest;
        EXPECT_EQ(step > 1.0, kind == SignalKind::Noise) << step;
        EXPECT_EQ(step < 0.1, kind == SignalKind::RandomWalk) << step;
    }
}

TEST(Signals, TheSameSeedGivesTheSameNoiseInAnyOrder) {
    const Signal signal = signal_of(SignalKind::Noise);
    const double later = signal_value(signal, RandomSource(3), 10.0);
    const double earlier = signal_value(signal, RandomSource(3), 2.0);
    EXPECT_EQ(signal_value(signal, RandomSource(3), 2.0), earlier);
    EXPECT_EQ(signal_value(signal, RandomSource(3), 10.0), later);
    EXPECT_NE(signal_value(signal, RandomSource(4), 10.0), later);
    EXPECT_NE(signal_value(signal, RandomSource(3).child(1), 10.0), later);
}

// Every kind of signal that has logic edges, either way up, against a slow look at its values.
// Pulses that are too short are looked at with a pattern of their own below.
TEST(LogicInput, LevelsAndEdgesAreThoseOfTheValues) {
    for (const SignalKind kind : {SignalKind::Sine, SignalKind::Ramp, SignalKind::Square,
                                  SignalKind::Pattern, SignalKind::Noise, SignalKind::Constant})
        for (const double amplitude : {2.5, -2.5})
            for (const double phase : {0.0, 0.3, 0.6}) {
                SCOPED_TRACE(static_cast<int>(kind));
                Signal wired = signal_of(kind, phase);
                wired.amplitude = amplitude;
                wired.offset = 2.5;
                wired.period_s = 0.75;
                wired.step_s = 0.25;
                wired.duty = 0.3;
                wired.edges_s = {0.1, 0.25, 0.4};
                const LogicInput input(wired, Random, {});
                constexpr int Looks = 7000;  // 7 s in steps of 1 ms, off the edges
                const auto time = [](int look) { return look * 0.001 + 0.00037; };
                LogicInput::Edges expected, walked;
                bool before = signal_value(wired, Random, time(0)) > 1.5;
                for (int look = 1; look <= Looks; ++look) {
                    const bool now = signal_value(wired, Random, time(look)) > 1.5;
                    ASSERT_EQ(input.level(time(look)), now) << "at " << time(look);
                    if (now != before) ++(now ? expected.rising : expected.falling);
                    before = now;
                }
                const auto counted = input.edges(time(0), time(Looks));
                for (double at = time(0);;) {
                    const auto change = input.next_change(at, time(Looks));
                    if (!change) break;
                    at = *change;
                    ++(input.level(at + 1e-9) ? walked.rising : walked.falling);
                }
                for (const auto& found : {counted, walked}) {
                    EXPECT_EQ(found.rising, expected.rising);
                    EXPECT_EQ(found.falling, expected.falling);
                }
            }
}

TEST(LogicInput, HysteresisNeedsBothThresholds) {
    Signal signal = signal_of(SignalKind::Sine);
    signal.amplitude = 4.0;
    signal.offset = 6.0;  // 2..10 V
    const LogicInput passing(signal, Random, {3.0, 9.0});
    EXPECT_EQ(passing.edges(0.0, 80.0).rising, 10);
    EXPECT_TRUE(passing.level(2.5));  // 9.7 V, falls back to 6 V by 4.0 s without passing 3 V
    EXPECT_TRUE(passing.level(4.0));
    EXPECT_FALSE(passing.level(8.0));  // came up to 6 V from 2 V
    signal.amplitude = 2.5;            // 3.5..8.5 V
    EXPECT_EQ(LogicInput(signal, Random, {3.0, 9.0}).edges(0.0, 80.0).rising, 0);
}

// High for 100 ms, low for 10 ms, high for 300 ms, low for the rest of a second.
TEST(LogicInput, APulseTooShortToBeSeenLeavesTheLevelAroundIt) {
    Signal signal = signal_of(SignalKind::Pattern);
    signal.period_s = 1.0;
    signal.offset = 2.5;
    signal.edges_s = {0.1, 0.2, 0.21, 0.51};
    for (const auto& [shortest_s, edges] : {std::pair{0.005, 20}, {0.05, 10}, {0.45, 0}})
        EXPECT_EQ(LogicInput(signal, Random, {}, shortest_s).edges(0.0, 10.0).rising, edges)
            << shortest_s;
    EXPECT_TRUE(LogicInput(signal, Random, {}, 0.05).level(0.205));
    EXPECT_FALSE(LogicInput(signal, Random, {}, 0.45).level(0.3)) << "it is low most of the time";
}

TEST(LogicInput, LongSpansNeedNoWalk) {
    Signal counter = signal_of(SignalKind::Counter);
    counter.period_s = 1e-4;
    EXPECT_EQ(LogicInput(counter, Random, {}).edges(0.0, 86400.0).rising, 864000000);
    Signal square = signal_of(SignalKind::Square);
    square.offset = 2.5;
    square.period_s = 0.01;
    const LogicInput input(square, Random, {});
    EXPECT_NEAR(input.nth_edge(0.001, 100.0, true, 1).value(), 0.01, 1e-9);
    EXPECT_NEAR(input.nth_edge(0.001, 100.0, false, 1).value(), 0.005, 1e-9);
    EXPECT_NEAR(input.nth_edge(0.001, 100.0, true, 1000).value(), 10.0, 1e-9);
    EXPECT_FALSE(input.nth_edge(0.001, 9.0, true, 1000).has_value());
}

TEST(LogicInput, AnOpenInputIsPulledUpAndSomeNeverChange) {
    EXPECT_TRUE(LogicInput(signal_of(SignalKind::Open), Random, {}).level(1.0));
    EXPECT_FALSE(LogicInput(signal_of(SignalKind::Absent), Random, {}).level(1.0));
    for (const double duty : {0.0, 1.0})
        for (const double amplitude : {2.0, -2.0}) {
            Signal square = signal_of(SignalKind::Square);
            square.duty = duty;
            square.amplitude = amplitude;
            const LogicInput input(square, Random, {});
            EXPECT_EQ(input.level(1.0), signal_value(square, Random, 1.0) > 1.5);
            EXPECT_EQ(input.edges(0.0, 80.0).rising, 0);
        }
}

}  // namespace
}  // namespace kavorix::test
