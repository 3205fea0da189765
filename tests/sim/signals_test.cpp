#include "sim/signals.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kavorix::test {
namespace {

using sim::LogicInput;
using sim::RandomSource;
using sim::Signal;
using sim::SignalKind;

const RandomSource Random(7);

Signal signal_of(SignalKind kind) {
    Signal signal;
    signal.kind = kind;
    signal.amplitude = 2.0;
    signal.offset = 0.5;
    signal.period_s = 8.0;
    signal.step_s = 0.5;
    return signal;
}

struct ValueCase {
    SignalKind kind;
    double time_s;
    double value;
};

TEST(SignalTest, ValuesOverOnePeriod) {
    const ValueCase cases[] = {
        {SignalKind::Constant, 3.0, 0.5}, {SignalKind::Sine, 0.0, 0.5},
        {SignalKind::Sine, 2.0, 2.5},     {SignalKind::Sine, 6.0, -1.5},
        {SignalKind::Ramp, 0.0, -1.5},    {SignalKind::Ramp, 4.0, 0.5},
        {SignalKind::Ramp, 7.0, 2.0},     {SignalKind::Square, 3.9, 2.5},
        {SignalKind::Square, 4.0, -1.5},  {SignalKind::Counter, 7.9, 0.5},
        {SignalKind::Counter, 24.0, 6.5}, {SignalKind::Open, 1.0, 0.0},
        {SignalKind::Absent, 1.0, 0.0},
    };
    for (const ValueCase& c : cases)
        EXPECT_NEAR(sim::signal_value(signal_of(c.kind), Random, c.time_s), c.value, 1e-9)
            << static_cast<int>(c.kind) << " at " << c.time_s;
}

TEST(SignalTest, PhaseStartsAPeriodPartWayThrough) {
    Signal signal = signal_of(SignalKind::Sine);
    signal.phase = 0.25;
    EXPECT_NEAR(sim::signal_value(signal, Random, 0.0), 2.5, 1e-9);
}

TEST(SignalTest, PatternChangesSidesAtItsEdges) {
    Signal signal = signal_of(SignalKind::Pattern);
    signal.edges_s = {1.0, 3.0, 7.0};
    EXPECT_EQ(sim::signal_value(signal, Random, 0.9), -1.5);
    EXPECT_EQ(sim::signal_value(signal, Random, 1.0), 2.5);
    EXPECT_EQ(sim::signal_value(signal, Random, 3.5), -1.5);
    EXPECT_EQ(sim::signal_value(signal, Random, 7.5), 2.5);
    EXPECT_EQ(sim::signal_value(signal, Random, 8.5), -1.5);
}

TEST(SignalTest, RandomKindsStayWithinTheirAmplitudeAndUseMostOfIt) {
    for (const SignalKind kind : {SignalKind::Noise, SignalKind::RandomWalk}) {
        double lowest = 100.0;
        double highest = -100.0;
        for (int i = 0; i < 4000; ++i) {
            const double value = sim::signal_value(signal_of(kind), Random, i * 0.5);
            lowest = std::min(lowest, value);
            highest = std::max(highest, value);
        }
        EXPECT_GE(lowest, -1.5);
        EXPECT_LE(highest, 2.5);
        EXPECT_LT(lowest, -0.5);
        EXPECT_GT(highest, 1.5);
    }
}

TEST(SignalTest, ARandomWalkMovesInSmallSteps) {
    const Signal signal = signal_of(SignalKind::RandomWalk);
    for (double t = 0.0; t < 100.0; t += 0.01)
        EXPECT_LT(std::fabs(sim::signal_value(signal, Random, t + 0.01) -
                            sim::signal_value(signal, Random, t)),
                  0.1);
}

TEST(SignalTest, SameSeedSameNoiseInAnyOrder) {
    const Signal signal = signal_of(SignalKind::Noise);
    const double later = sim::signal_value(signal, RandomSource(3), 10.0);
    const double earlier = sim::signal_value(signal, RandomSource(3), 2.0);
    EXPECT_EQ(sim::signal_value(signal, RandomSource(3), 2.0), earlier);
    EXPECT_EQ(sim::signal_value(signal, RandomSource(3), 10.0), later);
    EXPECT_NE(sim::signal_value(signal, RandomSource(4), 10.0), later);
    EXPECT_NE(sim::signal_value(signal, RandomSource(3).child(1), 10.0), later);
}

// Every kind of signal that has logic edges, with the numbers that a slow look at its values finds.
class LogicInputTest : public testing::TestWithParam<int> {
  protected:
    static Signal signal(int number) {
        Signal made;
        made.amplitude = 2.5;
        made.offset = 2.5;
        made.period_s = 0.75;
        made.phase = number % 3 * 0.3;
        made.step_s = 0.25;
        constexpr SignalKind Kinds[] = {SignalKind::Sine,   SignalKind::Ramp,
                                        SignalKind::Square, SignalKind::Pattern,
                                        SignalKind::Noise,  SignalKind::Constant};
        made.kind = Kinds[number / 6];
        if (number / 3 % 2 == 1) made.amplitude = -2.5;
        made.duty = 0.3;
        made.edges_s = {0.1, 0.25, 0.4};
        return made;
    }
};

TEST_P(LogicInputTest, LevelsAndEdgesAreThoseOfTheValues) {
    const Signal wired = signal(GetParam());
    const LogicInput input(wired, Random, {});
    constexpr int Looks = 7000;  // 7 s in steps of 1 ms, off the edges
    const auto time = [](int look) { return look * 0.001 + 0.00037; };
    LogicInput::Edges expected;
    bool before = sim::signal_value(wired, Random, time(0)) > 1.5;
    for (int look = 1; look <= Looks; ++look) {
        const bool now = sim::signal_value(wired, Random, time(look)) > 1.5;
        ASSERT_EQ(input.level(time(look)), now) << "at " << time(look);
        if (now && !before) ++expected.rising;
        if (!now && before) ++expected.falling;
        before = now;
    }
    const auto counted = input.edges(time(0), time(Looks));
    EXPECT_EQ(counted.rising, expected.rising);
    EXPECT_EQ(counted.falling, expected.falling);

    LogicInput::Edges walked;
    double at = time(0);
    while (const auto change = input.next_change(at, time(Looks))) {
        at = *change;
        ++(input.level(at + 1e-9) ? walked.rising : walked.falling);
    }
    EXPECT_EQ(walked.rising, expected.rising);
    EXPECT_EQ(walked.falling, expected.falling);
}

INSTANTIATE_TEST_SUITE_P(AllKinds, LogicInputTest, testing::Range(0, 36));

TEST(LogicInputEdgeTest, HysteresisNeedsBothThresholds) {
    Signal signal = signal_of(SignalKind::Sine);
    signal.amplitude = 4.0;
    signal.offset = 6.0;  // 2..10 V
    const LogicInput passing(signal, Random, {3.0, 9.0});
    EXPECT_EQ(passing.edges(0.0, 80.0).rising, 10);
    EXPECT_TRUE(passing.level(2.5));  // 9.7 V, fell back to 6 V by 4.0 s without passing 3 V
    EXPECT_TRUE(passing.level(4.0));
    EXPECT_FALSE(passing.level(8.0));  // came up to 6 V from 2 V
    signal.amplitude = 2.5;            // 3.5..8.5 V
    EXPECT_EQ(LogicInput(signal, Random, {3.0, 9.0}).edges(0.0, 80.0).rising, 0);
}

TEST(LogicInputEdgeTest, CountsOverLongSpansNeedNoWalk) {
    Signal signal = signal_of(SignalKind::Counter);
    signal.period_s = 1e-4;
    const LogicInput input(signal, Random, {});
    EXPECT_EQ(input.edges(0.0, 86400.0).rising, 864000000);
}

TEST(LogicInputEdgeTest, NthEdgeSkipsWholePeriods) {
    Signal signal = signal_of(SignalKind::Square);
    signal.amplitude = 2.5;
    signal.offset = 2.5;
    signal.period_s = 0.01;
    const LogicInput input(signal, Random, {});
    EXPECT_NEAR(input.nth_edge(0.001, 100.0, true, 1).value(), 0.01, 1e-9);
    EXPECT_NEAR(input.nth_edge(0.001, 100.0, false, 1).value(), 0.005, 1e-9);
    EXPECT_NEAR(input.nth_edge(0.001, 100.0, true, 1000).value(), 10.0, 1e-9);
    EXPECT_FALSE(input.nth_edge(0.001, 9.0, true, 1000).has_value());
}

TEST(LogicInputEdgeTest, AnOpenInputIsPulledUp) {
    EXPECT_TRUE(LogicInput(signal_of(SignalKind::Open), Random, {}).level(1.0));
    EXPECT_FALSE(LogicInput(signal_of(SignalKind::Absent), Random, {}).level(1.0));
}

}  // namespace
}  // namespace kavorix::test
