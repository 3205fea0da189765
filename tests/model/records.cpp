#include "model/records.h"

#include <gtest/gtest.h>

namespace kavorix {
namespace {

// A record without a default anywhere.
PodConfig used_record() {
    PodConfig pod;
    pod.TypeCode = pod.NumChannels = pod.ScanPeriod = pod.Setup = pod.Arm = 99;
    pod.CalOn = pod.ContScan = pod.Integration = pod.DegF = pod.AmbTemp = 99;
    pod.OpenTC = pod.HWWatch = pod.SWWatch = pod.SWWatchTime = 99;
    pod.ExtTemp = 99;
    ChannelConfig channel{99, 9, "Label", "Unit", 9, 9, 2, {1, 4.5F, 0.5F}, {1, 8.5F, 0.25F}};
    pod.Channel.fill(channel);
    pod.SampleRate.fill(4);
    pod.Timeout.fill(3);
    pod.Strain.fill({1, 2, 3});
    pod.SixPole.fill(1);
    Polynomial6 polynomial;
    polynomial.fill(9);
    pod.UserTherm.fill({TableOn, polynomial, polynomial});
    pod.PostLinEquation.fill({TableOn, polynomial});
    AlarmGroup group;
    group.OutputState = 1;
    group.High.fill(1);
    group.Low.fill(1);
    pod.AlarmGroup.fill(group);
    return pod;
}

TEST(TypeCode, ExactComparison) {
    const char* const codes[] = {"7R", "7S", "7T", "7U", "8R", "8S", "7V", "7W"};
    for (std::int16_t type = 1; type <= 8; ++type) EXPECT_EQ(GetZAVTypeCode(codes[type - 1]), type);
    for (const char* code : {"7r", "", "7", "7V ", " 7V", "NC", "8V", "No Device"})
        EXPECT_EQ(GetZAVTypeCode(code), 0) << code;
}

struct DefaultCase {
    std::int16_t type;
    int channels;
    int cal_on;
    int first_mode;  // of slots 0..17
    int last_mode;   // of slots 18..31
};

const DefaultCase DefaultCases[] = {
    {NoDevice, 0, 0, 0, 0},  {Type7R, 20, 1, 10, 10}, {Type7S, 10, 1, 10, 10},
    {Type7T, 20, 1, 10, 10}, {Type7U, 20, 1, 10, 10}, {Type8R, 20, 0, 70, 70},
    {Type8S, 32, 0, 70, 70}, {Type7V, 20, 1, 10, 70}, {Type7W, 20, 1, 10, 70}};

TEST(Defaults, ModesChannelsAndCalibrationOfEachType) {
    for (const DefaultCase& c : DefaultCases) {
        PodConfig pod = used_record();
        default_ZAV_config(pod, c.type, 1);
        EXPECT_EQ(pod.TypeCode, c.type);
        EXPECT_EQ(pod.NumChannels, c.channels) << c.type;
        EXPECT_EQ(pod.CalOn, c.cal_on) << c.type;
        for (std::size_t slot = 0; slot < 32; ++slot) {
            EXPECT_EQ(pod.Channel[slot].Mode, slot < 18 ? c.first_mode : c.last_mode)
                << "type " << c.type << " slot " << slot;
            EXPECT_EQ(pod.SixPole[slot], 1);
        }
    }
}

TEST(Defaults, WithoutModesEveryChannelIsUnused) {
    PodConfig pod = used_record();
    default_ZAV_config(pod, Type7V, 0);
    for (std::size_t slot = 0; slot < 32; ++slot) {
        EXPECT_EQ(pod.Channel[slot].Mode, 0) << slot;
        EXPECT_EQ(pod.SixPole[slot], 0) << slot;
    }
}

TEST(Defaults, ResetFields) {
    PodConfig pod = used_record();
    default_ZAV_config(pod, Type7V, 0);
    PodConfig expected;
    expected.TypeCode = Type7V;
    expected.NumChannels = 20;
    expected.CalOn = 1;
    expected.Timeout.fill(6);
    expected.AlarmGroup[0].OutputState = expected.AlarmGroup[1].OutputState = 2;
    // What a reset leaves alone.
    const PodConfig used = used_record();
    for (auto& channel : expected.Channel) {
        channel.LowAlarm = {0, 4.5F, 0.5F};
        channel.HighAlarm = {0, 8.5F, 0.25F};
    }
    expected.Channel[32] = used.Channel[32];
    expected.SixPole[32] = 1;
    for (std::size_t slot = 20; slot < 33; ++slot) {
        expected.SampleRate[slot] = used.SampleRate[slot];
        expected.Timeout[slot] = used.Timeout[slot];
    }
    for (std::size_t slot = 10; slot < 33; ++slot) expected.Strain[slot] = used.Strain[slot];
    expected.AlarmGroup[2] = used.AlarmGroup[2];
    EXPECT_TRUE(pod == expected);
}

TEST(Defaults, UnknownTypeNumberGivesNoChannels) {
    PodConfig pod;
    default_ZAV_config(pod, 9, 1);
    EXPECT_EQ(pod.TypeCode, 9);
    EXPECT_EQ(pod.NumChannels, 0);
    EXPECT_EQ(pod.Channel[0].Mode, 0);
}

TEST(Records, CopyTakesTablesAndTextsAlong) {
    PodConfig original = used_record();
    const PodConfig copy = original;
    original.Channel[3].Label = "Changed";
    original.UserTherm[1].Polynomial[5] = 1;
    EXPECT_TRUE(copy == used_record());
    EXPECT_FALSE(copy == original);
}

}  // namespace
}  // namespace kavorix
