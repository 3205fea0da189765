#include "config/statements.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace kavorix {
namespace {

// A default record of a type with its channels cut down to `channels`.
PodConfig pod_of(std::int16_t type, std::int16_t channels) {
    PodConfig pod;
    default_ZAV_config(pod, type, 1);
    pod.NumChannels = channels;
    return pod;
}

TEST(Statements, UniversalPodWithDefaults) {
    std::string expected = "SP'0';KA0;FR0;UN0;AM;TC0;";
    for (int channel = 1; channel <= 18; ++channel)
        expected += "CH" + std::to_string(channel) + "MO100;";
    expected += "CH19MO700;CH19RA0;CH19TI1;CH20MO700;CH20RA0;CH20TI1;";
    EXPECT_EQ(configuration_statements(pod_of(Type7V, 20)), expected);
    EXPECT_EQ(configuration_statements(pod_of(Type7W, 20)), expected);
}

struct StatementCase {
    const char* what;
    std::int16_t type;
    std::int16_t channels;
    std::function<void(PodConfig&)> change;
    const char* text;
};

Polynomial6 sixth(float first) {
    return {first, first + 1, first + 2, first + 3, first + 4, first + 5};
}

void strain_everywhere(PodConfig& p) {
    p.Channel[0].Mode = 60;
    p.Channel[0].Range = 3;
    p.Channel[1].Mode = 67;
    p.Strain[0] = {2.05F, -0.5F, 1.401764E-02F};
}

void alarm_everything(PodConfig& p) {
    for (auto& channel : p.Channel) {
        channel.HighAlarm = {1, 99.5F, 0.25F};
        channel.LowAlarm = {1, -1E+07F, 1};
    }
}

void groups_of_state_1(PodConfig& p) {
    for (auto& group : p.AlarmGroup) group.OutputState = 1;
    p.AlarmGroup[0].Low[2] = p.AlarmGroup[0].High[2] = p.AlarmGroup[0].High[6] = 1;
    p.AlarmGroup[1].Low[17] = 1;
}

const StatementCase Cases[] = {
    {"defaults of a 7R", Type7R, 1, [](PodConfig&) {}, "SP'0';KA0;FR0;UN0;AM;TC0;CH1MO100;"},
    {"defaults of a 7S", Type7S, 1, [](PodConfig&) {}, "SP'0';KA0;FR0;UN0;CH1MO100;"},
    {"a 7U is never told calibration, integration, units or reference", Type7U, 1,
     [](PodConfig& p) {
         p.CalOn = p.DegF = p.OpenTC = 1;
         p.Integration = 3;
         p.AmbTemp = 0;
         p.HWWatch = p.SWWatch = 1;
     },
     "SP'0';CH1MO100;"},
    {"defaults of an 8R", Type8R, 1, [](PodConfig&) {}, "SP'0';CH1MO700;CH1RA0;CH1TI1;"},
    {"defaults of an 8S", Type8S, 2, [](PodConfig&) {}, "SP'0';CH1MO700;CH2MO700;"},
    {"no device", NoDevice, 0, [](PodConfig&) {}, "SP'0';"},
    {"flags of the pod", Type7T, 0,
     [](PodConfig& p) {
         p.Setup = p.Arm = p.ContScan = p.DegF = p.OpenTC = 1;
         p.ScanPeriod = 2500;
         p.CalOn = 0;
         p.Integration = 5;
     },
     "SE;AR;SP'2500';KA1;FR5;UN1;AM;TC1;CO;"},
    {"external reference rounds", Type7R, 0,
     [](PodConfig& p) {
         p.AmbTemp = 0;
         p.ExtTemp = 21.6F;
     },
     "SP'0';KA0;FR0;UN0;TE'22';TC0;"},
    {"external reference rounds halves away from zero", Type7R, 0,
     [](PodConfig& p) {
         p.AmbTemp = 0;
         p.ExtTemp = -2.5F;
     },
     "SP'0';KA0;FR0;UN0;TE'-3';TC0;"},
    {"external reference without a sign for zero", Type7R, 0,
     [](PodConfig& p) {
         p.AmbTemp = 0;
         p.ExtTemp = -0.4F;
     },
     "SP'0';KA0;FR0;UN0;TE'0';TC0;"},
    {"user thermocouple 2 and channel modes", Type7V, 2,
     [](PodConfig& p) {
         p.Channel[0].Mode = 30;
         p.Channel[0].Range = 2;
         p.Channel[1].Mode = 39;
         p.Channel[1].Range = 4;
     },
     "SP'0';KA0;FR0;UN0;AM;TC0;CH1MO3A2;CH2MO394;"},
    {"unused channels are sent too", Type7U, 2,
     [](PodConfig& p) { p.Channel[0].Mode = p.Channel[1].Mode = 0; }, "SP'0';CH1MO000;CH2MO000;"},
    {"strain", Type7S, 2, strain_everywhere,
     "SP'0';KA0;FR0;UN0;CH1MO603;CH1GA'2.05';CH1OF'-0.5''1.401764E-02';"
     "CH2MO670;CH2GA'0';CH2OF'0''0';"},
    {"sampling of an 8R", Type8R, 3,
     [](PodConfig& p) {
         p.SampleRate = {1, 4};
         p.Timeout = {3, 6, 0};
     },
     "SP'0';CH1MO700;CH1RA1;CH1TI3;CH2MO700;CH2RA4;CH2TI1;CH3MO700;CH3RA0;CH3TI0;"},
    {"an 8S has no sampling", Type8S, 1, [](PodConfig& p) { p.SampleRate[0] = p.Timeout[0] = 3; },
     "SP'0';CH1MO700;"},
    {"tables and equations that are on", Type7V, 0,
     [](PodConfig& p) {
         p.UserTherm[0] = {TableOn, {}, {}};
         p.UserTherm[1] = {TableOn, sixth(1), sixth(-2.5E-07F)};
         p.PostLinEquation[0] = {TableOn, sixth(0.5F)};
         p.PostLinEquation[1] = {TableOn, sixth(10)};
     },
     "SP'0';KA0;FR0;UN0;AM;TC0;"
     "UT1'0''0''0''0''0''0''0''0''0''0''0''0';"
     "UT2'6''5''4''3''2''1''5''4''3''2''0.9999998''-2.5E-07';"
     "PL1'5.5''4.5''3.5''2.5''1.5''0.5';PL2'15''14''13''12''11''10';"},
    {"a table whose flag is 1 is off", Type7V, 0,
     [](PodConfig& p) {
         p.UserTherm[0].Enabled = p.UserTherm[1].Enabled = 1;
         p.PostLinEquation[0].Enabled = p.PostLinEquation[1].Enabled = 1;
     },
     "SP'0';KA0;FR0;UN0;AM;TC0;"},
    {"tables belong to universal pods", Type7R, 0,
     [](PodConfig& p) { p.UserTherm[0].Enabled = p.PostLinEquation[0].Enabled = TableOn; },
     "SP'0';KA0;FR0;UN0;AM;TC0;"},
    {"post-linearisation and alarms in two digits", Type7V, 2,
     [](PodConfig& p) {
         alarm_everything(p);
         p.Channel[0].PostLin = 2;
         p.Channel[1].PostLin = 1;
         p.Channel[1].Mode = 70;
     },
     "SP'0';KA0;FR0;UN0;AM;TC0;CH1MO100;CH01PL2;CH01HL'99.5''0.25';CH01LL'-1E+07''1';"
     "CH2MO700;CH02PL1;"},
    {"post-linearisation of other types or unknown equations", Type7R, 1,
     [](PodConfig& p) { p.Channel[0].PostLin = 1; }, "SP'0';KA0;FR0;UN0;AM;TC0;CH1MO100;"},
    {"unknown equation", Type7V, 1, [](PodConfig& p) { p.Channel[0].PostLin = 3; },
     "SP'0';KA0;FR0;UN0;AM;TC0;CH1MO100;"},
    {"alarms of any type", Type7U, 1, alarm_everything,
     "SP'0';CH1MO100;CH01HL'99.5''0.25';CH01LL'-1E+07''1';"},
    {"alarm flag other than 1", Type7U, 1,
     [](PodConfig& p) { p.Channel[0].HighAlarm.Enabled = -1; }, "SP'0';CH1MO100;"},
    {"alarm groups", Type7W, 0, groups_of_state_1,
     "SP'0';KA0;FR0;UN0;AM;TC0;CH19GO103L03H07H;CH20GO118L;"},
    {"alarm groups belong to universal pods", Type8S, 0, groups_of_state_1, "SP'0';"},
    {"group without members", Type7V, 0, [](PodConfig& p) { p.AlarmGroup[1].OutputState = 0; },
     "SP'0';KA0;FR0;UN0;AM;TC0;CH20GO0;"},
    {"both watchdogs", Type8S, 0,
     [](PodConfig& p) {
         p.HWWatch = p.SWWatch = p.ContScan = 1;
         p.SWWatchTime = 255;
     },
     "SP'0';HW1;SW255;CO;"},
    {"hardware watchdog alone", Type8S, 0, [](PodConfig& p) { p.HWWatch = 1; }, "SP'0';HW1;"},
    {"software watchdog alone is not sent", Type8S, 0, [](PodConfig& p) { p.SWWatch = 1; },
     "SP'0';"},
};

TEST(Statements, OfSettings) {
    for (const StatementCase& c : Cases) {
        PodConfig pod = pod_of(c.type, c.channels);
        c.change(pod);
        EXPECT_EQ(configuration_statements(pod), c.text) << c.what;
    }
}

TEST(Statements, DigitalChannelsOfUniversalPodsKeepTheirSampling) {
    PodConfig pod = pod_of(Type7V, 20);
    for (std::size_t slot = 0; slot < 18; ++slot) pod.Channel[slot].Mode = 0;
    pod.Channel[18] = {90, 3, "", "", 1, 0, 1, {}, {1, 5, 1}};
    pod.SampleRate[18] = 4;
    pod.Timeout[18] = 5;
    std::string expected = "SP'0';KA0;FR0;UN0;AM;TC0;";
    for (int channel = 1; channel <= 18; ++channel)
        expected += "CH" + std::to_string(channel) + "MO000;";
    expected += "CH19MO903;CH19RA4;CH19TI5;CH19HL'5''1';CH20MO700;CH20RA0;CH20TI1;";
    EXPECT_EQ(configuration_statements(pod), expected);
}

TEST(Statements, ChannelCountBeyondTheSlotsEndsWithThem) {
    PodConfig pod = pod_of(Type8S, 32767);
    const std::string text = configuration_statements(pod);
    EXPECT_EQ(text.substr(text.find("CH32")), "CH32MO700;CH33MO000;");
}

TEST(AlarmGroupStatement, CommandForm) {
    PodConfigs configs;
    groups_of_state_1(configs[4]);
    configs[4].AlarmGroup[2].OutputState = GroupOff;
    configs[4].AlarmGroup[2].High[0] = 1;
    EXPECT_EQ(TxCHmGOStatement(configs, 4, 0), "103L03H07H;");
    EXPECT_EQ(TxCHmGOStatement(configs, 4, 1), "118L;");
    EXPECT_EQ(TxCHmGOStatement(configs, 4, 2), "2;");
    EXPECT_EQ(TxCHmGOStatement(configs, 5, 0), "0;");
}

}  // namespace
}  // namespace kavorix
