#include "config/config_writer.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kavorix {
namespace {

const WallTime Created{2026, 3, 1, 12, 30, 5, 0};
const std::string Head =
    "KAVORIX ZAV CONFIGURATION FILE CREATED: 2026-03-01 12:30:05\r\n"
    "AD0;-14336;\r\nUR1000;\r\nPO0;\r\n";

std::string text_of(const PodConfigs& configs) {
    return config_text({0, -14336, 1000, 0}, configs, Created);
}

TEST(ConfigWriter, WithoutPodsFourLines) {
    EXPECT_EQ(text_of(*std::make_unique<PodConfigs>()), Head);
    EXPECT_EQ(config_text({3, 4096, 250, 1}, *std::make_unique<PodConfigs>(), Created),
              "KAVORIX ZAV CONFIGURATION FILE CREATED: 2026-03-01 12:30:05\r\n"
              "AD3;4096;\r\nUR250;\r\nPO1;\r\n");
}

// What is written for pod 3, a default record of the type with `channels` channels that `change`
// has altered. Lines end in "|".
struct PodCase {
    const char* what;
    std::int16_t type;
    std::int16_t channels;
    std::function<void(PodConfig&)> change;
    const char* lines;
};

void groups(PodConfig& p) {
    for (auto& group : p.AlarmGroup) group.OutputState = 0;
    p.AlarmGroup[1].OutputState = 1;
    p.AlarmGroup[1].Low[2] = p.AlarmGroup[1].High[2] = p.AlarmGroup[1].High[6] = 1;
}

void all_flags(PodConfig& p) {
    p.Setup = p.Arm = p.CalOn = p.ContScan = p.DegF = p.OpenTC = 1;
    p.ScanPeriod = 2500;
    p.Integration = 3;
    p.AmbTemp = 0;
    p.ExtTemp = 21.6F;
    p.HWWatch = p.SWWatch = 1;
    p.SWWatchTime = 255;
    p.UserTherm[1] = {TableOn, {0, 1, 2, 3, 4, 5}, {6, 7, 8, 9, 1E+07F, 2.5E-07F}};
    p.PostLinEquation[0] = {TableOn, {-1, 0.5F, 0, 0, 0, 1.401764E-02F}};
}

void everything_on_two_channels(PodConfig& p) {
    for (std::size_t slot = 0; slot < 2; ++slot) {
        p.Channel[slot].Label = " Flow ";
        p.Channel[slot].Unit = " l/s";
        p.Channel[slot].PostLin = 2;
        p.Channel[slot].HighAlarm = {1, 99.5F, 0.25F};
        p.Channel[slot].LowAlarm = {1, -5, 1};
        p.Strain[slot] = {2.05F, -0.5F, 0.125F};
    }
    p.Channel[0].MValue = 2;
    p.Channel[0].CValue = 0.5F;
    p.Channel[1].Mode = 70;
}

const PodCase Cases[] = {
    {"no channels", Type7R, 0, [](PodConfig&) {}, "IM03;7R;00;|KA;|SP0;|FR0;|AM;|"},
    {"7R with every flag", Type7R, 0, all_flags,
     "IM03;7R;00;|SE;|AR;|KA;|CO;|SP2500;|FR3;|UN1;|TE21.6;|TC1;|"},
    {"7S has no reference", Type7S, 0, all_flags, "IM03;7S;00;|SE;|AR;|KA;|CO;|SP2500;|FR3;|UN1;|"},
    {"7U has neither calibration nor integration", Type7U, 0, all_flags,
     "IM03;7U;00;|SE;|AR;|CO;|SP2500;|"},
    {"8R", Type8R, 0, all_flags, "IM03;8R;00;|SE;|AR;|CO;|SP2500;|"},
    {"8S", Type8S, 0, all_flags, "IM03;8S;00;|SE;|AR;|CO;|SP2500;|HW1;|SW255;|"},
    {"7V", Type7V, 0, all_flags,
     "IM03;7V;00;|SE;|AR;|KA;|CO;|SP2500;|FR3;|UN1;|TE21.6;|TC1;|"
     "UT2,5,4,3,2,1,0,2.5E-07,1E+07,9,8,7,6;|PL1,1.401764E-02,0,0,0,0.5,-1;|HW1;|SW255;|"},
    {"watchdogs off", Type8S, 0, [](PodConfig& p) { p.SWWatchTime = 9; },
     "IM03;8S;00;|SP0;|HW0;|SW0;|"},
    {"channel 1 of a 7R", Type7R, 1,
     [](PodConfig& p) { p.Channel[0] = {33, 2, "Flow 1", "l/s", 1, 0, 0, {}, {}}; },
     "IM03;7R;01;|KA;|SP0;|FR0;|AM;|CH01MO332;'Flow 1';'l/s';{1;0}|"},
    {"unused channels leave no trace", Type7R, 2,
     [](PodConfig& p) {
         p.Channel[0] = {0, 1, "Label", "u", 2, 3, 1, {1, 2, 3}, {1, 2, 3}};
         p.Channel[2].Label = "Beyond";
     },
     "IM03;7R;02;|KA;|SP0;|FR0;|AM;|CH02MO100;'';'';{1;0}|"},
    {"digital sampling", Type8R, 2, [](PodConfig& p) { p.SampleRate[1] = p.Timeout[1] = 3; },
     "IM03;8R;02;|SP0;|CH01MO700;'';'';{1;0}|CH01RA0;|CH01TI6;|"
     "CH02MO700;'';'';{1;0}|CH02RA3;|CH02TI3;|"},
    {"universal channels", Type7V, 2, everything_on_two_channels,
     "IM03;7V;02;|KA;|SP0;|FR0;|AM;|HW0;|SW0;|"
     "CH01MO100;'Flow';'l/s';{2;0.5}|CH01UC,2,0.5,1;|CH01PL2;|CH01HL,99.5,0.25;|CH01LL,-5,1;|"
     "CH02MO700;'Flow';'l/s';{1;0}|CH02PL2;|"},
    {"alarms but no linearisation of other types", Type7R, 2, everything_on_two_channels,
     "IM03;7R;02;|KA;|SP0;|FR0;|AM;|"
     "CH01MO100;'Flow';'l/s';{2;0.5}|CH01HL,99.5,0.25;|CH01LL,-5,1;|"
     "CH02MO700;'Flow';'l/s';{1;0}|"},
    {"strain", Type7S, 2,
     [](PodConfig& p) {
         everything_on_two_channels(p);
         p.Channel[0] = {60, 0, "", "", 1, 0, 0, {}, {}};
         p.Channel[1] = {67, 3, "", "", 1, 0, 0, {}, {}};
     },
     "IM03;7S;02;|KA;|SP0;|FR0;|CH01MO600;'';'';{1;0}|CH01GA2.05;|CH01OF-0.5;0.125;|"
     "CH02MO673;'';'';{1;0}|CH02GA2.05;|CH02OF-0.5;0.125;|"},
    {"a label is written as it is", Type7R, 1,
     [](PodConfig& p) { p.Channel[0].Label = "It's; \xB5"; },
     "IM03;7R;01;|KA;|SP0;|FR0;|AM;|CH01MO100;'It's; \xB5';'';{1;0}|"},
    {"alarm groups", Type7W, 0, groups,
     "IM03;7W;00;|KA;|SP0;|FR0;|AM;|HW0;|SW0;|CH19GO0;|CH20GO1,03,L,03,H,07,H;|"},
    {"alarm groups of other types", Type8S, 0, groups, "IM03;8S;00;|SP0;|HW0;|SW0;|"},
};

TEST(ConfigWriter, PodBlocks) {
    for (const PodCase& c : Cases) {
        const auto configs = std::make_unique<PodConfigs>();
        PodConfig& pod = (*configs)[2];
        default_ZAV_config(pod, c.type, 1);
        pod.NumChannels = c.channels;
        c.change(pod);
        std::string expected = Head;
        for (const char* at = c.lines; *at; ++at)
            expected += *at == '|' ? std::string("\r\n") : std::string(1, *at);
        EXPECT_EQ(text_of(*configs), expected) << c.what;
    }
}

TEST(ConfigWriter, PodsAscendAndChannelsHaveTwoDigits) {
    const auto configs = std::make_unique<PodConfigs>();
    default_ZAV_config((*configs)[49], Type8S, 1);
    default_ZAV_config((*configs)[0], Type7U, 0);
    std::string expected = Head + "IM01;7U;20;\r\nSP0;\r\nIM50;8S;32;\r\nSP0;\r\nHW0;\r\nSW0;\r\n";
    for (int channel = 1; channel <= 32; ++channel)
        expected += "CH" + std::string(channel < 10 ? "0" : "") + std::to_string(channel) +
                    "MO700;'';'';{1;0}\r\n";
    EXPECT_EQ(text_of(*configs), expected);
}

TEST(ConfigWriter, DigitalChannelsOfUniversalPodsHaveSampling) {
    const auto configs = std::make_unique<PodConfigs>();
    default_ZAV_config((*configs)[0], Type7V, 1);
    for (std::size_t slot = 0; slot < 18; ++slot) (*configs)[0].Channel[slot].Mode = 0;
    (*configs)[0].Channel[18].PostLin = 1;
    (*configs)[0].Channel[18].MValue = 2;
    EXPECT_EQ(text_of(*configs), Head +
                                     "IM01;7V;20;\r\nKA;\r\nSP0;\r\nFR0;\r\nAM;\r\nHW0;\r\nSW0;\r\n"
                                     "CH19MO700;'';'';{2;0}\r\nCH19RA0;\r\nCH19TI6;\r\n"
                                     "CH20MO700;'';'';{1;0}\r\nCH20RA0;\r\nCH20TI6;\r\n");
}

TEST(AlarmGroupForm, OfTheFile) {
    const auto configs = std::make_unique<PodConfigs>();
    groups((*configs)[9]);
    (*configs)[9].AlarmGroup[2].OutputState = GroupOff;
    (*configs)[9].AlarmGroup[2].High[0] = 1;
    EXPECT_EQ(FormCHmGOStatement(*configs, 9, 0), "0;");
    EXPECT_EQ(FormCHmGOStatement(*configs, 9, 1), "1,03,L,03,H,07,H;");
    EXPECT_EQ(FormCHmGOStatement(*configs, 9, 2), "2;");
}

}  // namespace
}  // namespace kavorix
