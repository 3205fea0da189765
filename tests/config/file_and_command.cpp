// The two forms of a pod's configuration: its lines in a file, and the command string that the pod
// is sent.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "config/config_reader.h"
#include "config/config_writer.h"
#include "config/statements.h"

namespace kavorix {
namespace {

const WallTime Created{2026, 3, 1, 12, 30, 5, 0};
const std::string Head =
    "KAVORIX ZAV CONFIGURATION FILE CREATED: 2026-03-01 12:30:05\r\n"
    "AD0;-14336;\r\nUR1000;\r\nPO0;\r\n";

// The text with its bars as line ends.
std::string lines(std::string_view text) {
    std::string with_ends;
    for (const char c : text) with_ends += c == '|' ? std::string("\r\n") : std::string(1, c);
    return with_ends;
}

// The statements that tell a pod of `channels` without a mode.
std::string unused(int channels) {
    std::string text;
    for (int i = 1; i <= channels; ++i) text += "CH" + std::to_string(i) + "MO000;";
    return text;
}

struct Forms {
    const char* what;
    std::string file;  // lines end in "|"
    std::string command;
};

const std::string Plain = "MO100;'';'';{1;0}|";
const std::string Status = "MO700;'';'';{1;0}|";
const std::string Universal = "SP'0';KA0;FR0;UN0;AM;TC0;";
const std::string Six = ",1.401764E-02,1E+07,2.5E-07,0,0.5,-1";
const std::string SixSent = "'1.401764E-02''1E+07''2.5E-07''0''0.5''-1'";

const Forms Pods[] = {
    {"7R", "IM05;7R;01;|KA;|SP0;|FR0;|AM;|CH01" + Plain, Universal + "CH1MO100;"},
    {"7S, without a reference", "IM05;7S;01;|KA;|SP0;|FR0;|CH01" + Plain,
     "SP'0';KA0;FR0;UN0;CH1MO100;"},
    {"7U, neither calibrated nor integrating", "IM05;7U;01;|SP0;|CH01" + Plain, "SP'0';CH1MO100;"},
    {"8R", "IM05;8R;01;|SP0;|CH01" + Status + "CH01RA0;|CH01TI6;|",
     "SP'0';CH1MO700;CH1RA0;CH1TI1;"},
    {"8S", "IM50;8S;02;|SP0;|HW0;|SW0;|CH01" + Status + "CH02" + Status,
     "SP'0';CH1MO700;CH2MO700;"},
    {"7V", "IM01;7V;01;|KA;|SP0;|FR0;|AM;|HW0;|SW0;|CH01" + Plain, Universal + "CH1MO100;"},
    {"every flag of a 7T, uncalibrated", "IM05;7T;00;|SE;|AR;|CO;|SP2500;|FR5;|UN1;|AM;|TC1;|",
     "SE;AR;SP'2500';KA1;FR5;UN1;AM;TC1;CO;"},
    {"every flag of a 7S", "IM05;7S;00;|SE;|AR;|KA;|CO;|SP2500;|FR3;|UN1;|",
     "SE;AR;SP'2500';KA0;FR3;UN1;CO;"},
    {"of a 7U", "IM05;7U;00;|SE;|AR;|CO;|SP2500;|", "SE;AR;SP'2500';CO;"},
    {"of an 8R", "IM05;8R;00;|SE;|AR;|CO;|SP2500;|", "SE;AR;SP'2500';CO;"},
    {"of an 8S", "IM05;8S;00;|SE;|AR;|CO;|SP2500;|HW1;|SW255;|", "SE;AR;SP'2500';HW1;SW255;CO;"},
    {"a 7V with an external reference, tables and equations",
     "IM05;7V;00;|SE;|AR;|KA;|CO;|SP2500;|FR3;|UN1;|TE21.6;|TC1;|UT1" + Six +
         ",6,5,4,3,2,1;|UT2,1,2,3,4,5,6" + Six + ";|PL1" + Six + ";|PL2,1,2,3,4,5,6;|HW1;|SW255;|",
     "SE;AR;SP'2500';KA0;FR3;UN1;TE'22';TC1;UT1" + SixSent +
         "'6''5''4''3''2''1';UT2'1''2''3''4''5''6'" + SixSent + ";PL1" + SixSent +
         ";PL2'1''2''3''4''5''6';HW1;SW255;CO;"},
    {"the second table and equation alone",
     "IM05;7V;00;|KA;|SP0;|FR0;|AM;|UT2,1,2,3,4,5,6" + Six + ";|PL2,1,2,3,4,5,6;|HW0;|SW0;|",
     Universal + "UT2'1''2''3''4''5''6'" + SixSent + ";PL2'1''2''3''4''5''6';"},
    {"the first alone",
     "IM05;7V;00;|KA;|SP0;|FR0;|AM;|UT1,1,2,3,4,5,6" + Six + ";|PL1,1,2,3,4,5,6;|HW0;|SW0;|",
     Universal + "UT1'1''2''3''4''5''6'" + SixSent + ";PL1'1''2''3''4''5''6';"},
    {"halves are sent rounded away from zero", "IM05;7R;00;|KA;|SP0;|FR0;|TE-2.5;|",
     "SP'0';KA0;FR0;UN0;TE'-3';TC0;"},
    {"zero without a sign", "IM05;7R;00;|KA;|SP0;|FR0;|TE-0.4;|", "SP'0';KA0;FR0;UN0;TE'0';TC0;"},
    {"the hardware watchdog alone", "IM05;8S;00;|SP0;|HW1;|SW0;|", "SP'0';HW1;"},
    {"the software watchdog alone is not sent", "IM05;8S;00;|SP0;|HW0;|SW9;|", "SP'0';"},
    {"user thermocouples, of which the second is sent as 3A",
     "IM05;7V;02;|KA;|SP0;|FR0;|AM;|HW0;|SW0;|CH01MO302;'';'';{1;0}|CH02MO394;'';'';{1;0}|",
     Universal + "CH1MO3A2;CH2MO394;"},
    {"unused channels leave no trace in the file", "IM05;7R;03;|KA;|SP0;|FR0;|AM;|CH02" + Plain,
     Universal + "CH1MO000;CH2MO100;CH3MO000;"},
    {"strain",
     "IM05;7S;02;|KA;|SP0;|FR0;|CH01MO603;'';'';{1;0}|CH01GA2.05;|CH01OF-0.5;1.401764E-02;|"
     "CH02MO670;'';'';{1;0}|CH02GA0;|CH02OF0;0;|",
     "SP'0';KA0;FR0;UN0;CH1MO603;CH1GA'2.05';CH1OF'-0.5''1.401764E-02';CH2MO670;CH2GA'0';CH2OF'0''"
     "0';"},
    {"sampling; the default time-out is sent as 1",
     "IM05;8R;03;|SP0;|CH01" + Status + "CH01RA1;|CH01TI3;|CH02" + Status +
         "CH02RA4;|CH02TI6;|CH03" + Status + "CH03RA0;|CH03TI0;|",
     "SP'0';CH1MO700;CH1RA1;CH1TI3;CH2MO700;CH2RA4;CH2TI1;CH3MO700;CH3RA0;CH3TI0;"},
    {"scaling stays here, post-linearisation and alarms in two digits",
     "IM05;7V;02;|KA;|SP0;|FR0;|AM;|HW0;|SW0;|CH01MO100;'Flow "
     "1';'l/s';{2;0.5}|CH01UC,2,0.5,1;|CH01PL2;|"
     "CH01HL,99.5,0.25;|CH01LL,-1E+07,1;|CH02MO700;'Flow';'l/s';{1;0}|CH02PL1;|",
     Universal + "CH1MO100;CH01PL2;CH01HL'99.5''0.25';CH01LL'-1E+07''1';CH2MO700;CH02PL1;"},
    {"digital channels of a universal pod, alarm groups",
     "IM05;7W;20;|KA;|SP0;|FR0;|AM;|HW0;|SW0;|CH19MO903;'';'';{2;0}|CH19RA4;|CH19TI5;|CH19HL,5,1;|"
     "CH20" +
         Status + "CH20RA0;|CH20TI6;|CH19GO1,03,L,03,H,07,H;|CH20GO0,18,L;|",
     Universal + unused(18) +
         "CH19MO903;CH19RA4;CH19TI5;CH19HL'5''1';CH20MO700;CH20RA0;CH20TI1;"
         "CH19GO103L03H07H;CH20GO018L;"},
};

TEST(Forms, AFileIsWrittenAsItWasReadAndSentToThePod) {
    for (const Forms& forms : Pods) {
        const auto configuration = std::make_unique<Configuration>();
        const std::string text = Head + lines(forms.file);
        load_on_its_own(text, *configuration, [&](const LoadMessage& message) {
            ADD_FAILURE() << forms.what << ": " << message.text;
            return true;
        });
        const auto pod = static_cast<std::size_t>(std::stoi(forms.file.substr(2, 2)) - 1);
        EXPECT_EQ(config_text(configuration->Interface, configuration->ZavConfig, Created), text)
            << forms.what;
        EXPECT_EQ(configuration_statements(configuration->ZavConfig[pod]), forms.command)
            << forms.what;
    }
}

// What no file says, from the defaults of a type with so many channels on.
struct Record {
    const char* what;
    std::int16_t type;
    std::int16_t channels;
    void (*change)(PodConfig&);
    std::string file;
    std::string command;
};

void all_flags(PodConfig& p) {
    p.CalOn = p.DegF = p.OpenTC = p.HWWatch = p.SWWatch = 1;
    p.Integration = 3;
    p.AmbTemp = 0;
    p.UserTherm[0].Enabled = p.PostLinEquation[0].Enabled = TableOn;
    p.AlarmGroup[0].OutputState = 1;
}

void all_of_a_channel(PodConfig& p) {
    p.Channel[0] = {10, 0, " It's; \xB5 ", " u ", 2, 3, 1, {1, -5, 1}, {1, 5, 1}};
    p.SampleRate[0] = p.Timeout[0] = 3;
    p.Strain[0] = {1, 2, 3};
}

const Record Records[] = {
    {"no device", NoDevice, 0, all_flags, "", "SP'0';"},
    {"what a 7U does not have", Type7U, 0, all_flags, "IM03;7U;00;|SP0;|", "SP'0';"},
    {"tables and groups belong to universal pods", Type7R, 0, all_flags,
     "IM03;7R;00;|KA;|SP0;|FR3;|UN1;|TE0;|TC1;|", "SP'0';KA0;FR3;UN1;TE'0';TC1;"},
    {"a table whose flag is 1 is off", Type7V, 0,
     [](PodConfig& p) {
         p.UserTherm[0].Enabled = p.UserTherm[1].Enabled = 1;
         p.PostLinEquation[0].Enabled = p.PostLinEquation[1].Enabled = 1;
     },
     "IM03;7V;00;|KA;|SP0;|FR0;|AM;|HW0;|SW0;|", Universal},
    {"blanks around texts are left out; no linearisation, sampling or strain but alarms in a 7R",
     Type7R, 1, all_of_a_channel,
     "IM03;7R;01;|KA;|SP0;|FR0;|AM;|CH01MO100;'It's; \xB5';'u';{2;3}|CH01HL,5,1;|CH01LL,-5,1;|",
     Universal + "CH1MO100;CH01HL'5''1';CH01LL'-5''1';"},
    {"no equation of that number", Type7V, 1, [](PodConfig& p) { p.Channel[0].PostLin = 3; },
     "IM03;7V;01;|KA;|SP0;|FR0;|AM;|HW0;|SW0;|CH01" + Plain, Universal + "CH1MO100;"},
    {"digital status has no alarms, an 8S no sampling", Type8S, 1,
     [](PodConfig& p) {
         all_of_a_channel(p);
         p.Channel[0] = {70, 0, "", "", 1, 0, 0, {1, -5, 1}, {1, 5, 1}};
     },
     "IM03;8S;01;|SP0;|HW0;|SW0;|CH01" + Status, "SP'0';CH1MO700;"},
    {"a group without members, which no file may name", Type7V, 0,
     [](PodConfig& p) { p.AlarmGroup[1].OutputState = 0; },
     "IM03;7V;00;|KA;|SP0;|FR0;|AM;|HW0;|SW0;|CH20GO0;|", Universal + "CH20GO0;"},
    {"an alarm whose flag is not 1 is off", Type7U, 1,
     [](PodConfig& p) { p.Channel[0].HighAlarm.Enabled = p.Channel[0].LowAlarm.Enabled = -1; },
     "IM03;7U;01;|SP0;|CH01" + Plain, "SP'0';CH1MO100;"},
    {"only what has a mode is written", Type7U, 1,
     [](PodConfig& p) {
         all_of_a_channel(p);
         p.Channel[0].Mode = 0;
         p.Channel[0].HighAlarm = p.Channel[0].LowAlarm = {};
         p.Channel[1].Label = "Beyond";
     },
     "IM03;7U;01;|SP0;|", "SP'0';CH1MO000;"},
};

TEST(Forms, OfWhatNoFileSays) {
    for (const Record& record : Records) {
        const auto configs = std::make_unique<PodConfigs>();
        PodConfig& pod = (*configs)[2];
        default_ZAV_config(pod, record.type, 1);
        pod.NumChannels = record.channels;
        record.change(pod);
        EXPECT_EQ(config_text({0, -14336, 1000, 0}, *configs, Created), Head + lines(record.file))
            << record.what;
        EXPECT_EQ(configuration_statements(pod), record.command) << record.what;
    }
}

TEST(Forms, OfTheCardAndOfSeveralPods) {
    const auto configs = std::make_unique<PodConfigs>();
    for (const int pod : {50, 5, 1}) {
        default_ZAV_config((*configs)[at(pod - 1)], Type7U, 0);
        (*configs)[at(pod - 1)].NumChannels = 0;
    }
    EXPECT_EQ(
        config_text({3, 4096, 250, 1}, *configs, Created),
        lines("KAVORIX ZAV CONFIGURATION FILE CREATED: 2026-03-01 12:30:05|AD3;4096;|UR250;|PO1;|"
              "IM01;7U;00;|SP0;|IM05;7U;00;|SP0;|IM50;7U;00;|SP0;|"));
}

TEST(Forms, ChannelsBeyondTheSlotsEndWithThem) {
    PodConfig pod;
    default_ZAV_config(pod, Type8S, 1);
    pod.NumChannels = 32767;
    const std::string text = configuration_statements(pod);
    EXPECT_EQ(text.substr(text.find("CH32")), "CH32MO700;CH33MO000;");
}

TEST(Forms, OfAnAlarmGroupAlone) {
    const auto configs = std::make_unique<PodConfigs>();
    auto& groups = (*configs)[4].AlarmGroup;
    groups[1].OutputState = 1;
    groups[1].Low[2] = groups[1].High[2] = groups[1].High[6] = groups[2].High[0] = 1;
    groups[0].OutputState = 0;
    groups[2].OutputState = GroupOff;
    const char* const forms[][2] = {
        {"0;", "0;"}, {"1,03,L,03,H,07,H;", "103L03H07H;"}, {"2;", "2;"}};
    for (std::int16_t group = 0; group < 3; ++group) {
        EXPECT_EQ(FormCHmGOStatement(*configs, 4, group), forms[group][0]);
        EXPECT_EQ(TxCHmGOStatement(*configs, 4, group), forms[group][1]);
    }
}

}  // namespace
}  // namespace kavorix
