#include "config/config_reader.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace kavorix {
namespace {

using Lines = std::vector<std::string>;

const std::string Header = "KAVORIX ZAV CONFIGURATION FILE CREATED: 2026-03-01 12:30:00";

// Card 0 at C800; pods 1..8 of the types with their number, 9 a 7V without capability letters,
// number 10 without a pod.
Connected station() {
    Connected connected{0, -14336, {}};
    connected.Ident.fill("NC          ");
    const char* const codes[] = {"7R", "7S", "7T", "7U", "8R", "8S", "7V", "7W"};
    for (std::size_t pod = 0; pod < 8; ++pod)
        connected.Ident[pod] = std::string(codes[pod]) + "JA 0F 1.00";
    connected.Ident[8] = "7VJB 0X 1.00";
    return connected;
}

struct Loaded {
    LoadOutcome outcome = LoadOutcome::NoHeader;
    Lines messages;  // "line: text"
    std::unique_ptr<Configuration> configuration = std::make_unique<Configuration>();
};

Loaded load_text(const std::string& text) {
    Loaded loaded;
    loaded.configuration->Interface = {0, -14336, 1000, 0};
    loaded.outcome =
        load_configuration(text, station(), *loaded.configuration, [&](const LoadMessage& m) {
            loaded.messages.push_back(std::to_string(m.line) + ": " + m.text);
            return true;
        });
    return loaded;
}

Loaded load(const Lines& lines) {
    std::string text = Header + "\r\n";
    for (const std::string& line : lines) text += line + "\r\n";
    return load_text(text);
}

struct MessageCase {
    Lines lines;
    Lines messages;  // the header is line 1
};

void expect_messages(const std::vector<MessageCase>& cases) {
    for (const MessageCase& c : cases) {
        const Loaded loaded = load(c.lines);
        EXPECT_EQ(loaded.messages, c.messages) << testing::PrintToString(c.lines);
        EXPECT_EQ(loaded.outcome, c.messages.empty() ? LoadOutcome::Loaded : LoadOutcome::Errors)
            << testing::PrintToString(c.lines);
    }
}

struct EffectCase {
    Lines lines;
    std::function<bool(const PodConfig&)> holds;  // of the last "IM" statement's pod
};

// Every line but the first, "IM", is looked at for its effect on that pod.
void expect_effects(const std::vector<EffectCase>& cases) {
    for (const EffectCase& c : cases) {
        const Loaded loaded = load(c.lines);
        EXPECT_EQ(loaded.messages, Lines{}) << testing::PrintToString(c.lines);
        const std::size_t pod = static_cast<std::size_t>(std::stoi(c.lines[0].substr(2, 2)) - 1);
        EXPECT_TRUE(c.holds(loaded.configuration->ZavConfig[pod]))
            << testing::PrintToString(c.lines);
    }
}

TEST(Header, DecidesWhetherAnythingHappens) {
    const std::vector<std::pair<std::string, bool>> cases = {
        {Header + "\r\n", true},
        {"kavorix zav configuration file\r\n", true},
        {"  KAVORIX ZAV Configuration File and more", true},
        {"KAVORIX ZAV CONFIGURATION FIL\r\n", false},
        {"KAVORIX ZAV CONFIGURATION FILE ERROR LOG FOR x\r\n", true},
        {"\r\n" + Header + "\r\n", false},
        {"AD0;-14336;\r\n" + Header, false},
        {"", false},
        {std::string(30, '\0'), false},
    };
    for (const auto& [text, accepted] : cases)
        EXPECT_EQ(load_text(text).outcome, accepted ? LoadOutcome::Loaded : LoadOutcome::NoHeader)
            << text;
}

TEST(Header, WithoutItNothingChanges) {
    const auto owner = std::make_unique<Configuration>();
    Configuration& configuration = *owner;
    default_ZAV_config(configuration.ZavConfig[3], Type7V, 1);
    configuration.ZavConfigCopy[5].TypeCode = 5;
    const PodConfigs before = configuration.ZavConfig;
    const PodConfigs copy_before = configuration.ZavConfigCopy;
    EXPECT_EQ(load_configuration("UR500;\r\n", station(), configuration,
                                 [](const LoadMessage&) { return true; }),
              LoadOutcome::NoHeader);
    EXPECT_TRUE(configuration.ZavConfig == before);
    EXPECT_TRUE(configuration.ZavConfigCopy == copy_before);
    EXPECT_EQ(configuration.Interface.PollRate, 1000);
}

TEST(LineEnds, AllKinds) {
    for (const char* end : {"\r\n", "\n", "\r"}) {
        std::string text = Header;
        for (const char* line : {"  IM07;7V;20; ", "SE;", "UR500;"})
            text += end + std::string(line);
        for (const std::string& last : {std::string(), std::string(end)}) {
            const Loaded loaded = load_text(text + last);
            EXPECT_EQ(loaded.messages, Lines{});
            EXPECT_EQ(loaded.configuration->ZavConfig[6].Setup, 1);
            EXPECT_EQ(loaded.configuration->Interface.PollRate, 500);
        }
    }
}

TEST(LineEnds, MixedOnesKeepTheLineNumbers) {
    EXPECT_EQ(
        load_text(Header + "\rXX\n\nYY\r\r\nZZ").messages,
        (Lines{"2: Unknown command of XX", "3: Unknown command of ", "4: Unknown command of YY",
               "5: Unknown command of ", "6: Unknown command of ZZ"}));
}

TEST(Statements, CardAndSettings) {
    expect_messages({
        {{"AD0;-14336;"}, {}},
        {{"AD1;-14336;"}, {"2: The card handle does not match the handle currently in use (0)."}},
        {{"AD0;-14080;"},
         {"2: The card address does not match the address currently in use(C800)."}},
        {{"AD1;-14080;"},
         {"2: The card handle does not match the handle currently in use (0).",
          "2: The card address does not match the address currently in use(C800)."}},
        {{"ADx;what;"},
         {"2: Non-numeric Interface card handle x", "2: Non-numeric Interface card address what"}},
        {{"AD0;1;"}, {"2: Interface card address missing"}},
        {{"AD"}, {"2: Non-numeric Interface card handle ", "2: Interface card address missing"}},
        {{"AD0;51200;"},
         {"2: The card address does not match the address currently in use(C800)."}},
        {{"UR2500;"}, {"2: Invalid Poll Rate of: 2500"}},
        {{"URfast;"}, {"2: Non-Numeric Poll Rate: fast"}},
        {{"UR;"}, {"2: Non-Numeric Poll Rate: "}},
        {{"UR"}, {"2: Non-Numeric Poll Rate: "}},
        {{"UR1E300;"}, {"2: Invalid Poll Rate of: 1E300"}},
        {{"UR10000;", "UR 1,000 ;", "UR99.6;"}, {}},
        {{"POx;"}, {"2: Non-Numeric Power On Setting: x"}},
        {{"PO2;"}, {"2: Invalid Power On of: 2"}},
        {{"PO1;"}, {}},
    });
}

TEST(Statements, PollRateAndPowerOnStayAfterAFailedLoad) {
    const Loaded loaded = load({"UR500;", "PO1;", "XX"});
    EXPECT_EQ(loaded.outcome, LoadOutcome::Errors);
    EXPECT_EQ(loaded.configuration->Interface.PollRate, 500);
    EXPECT_EQ(loaded.configuration->Interface.PowerOn, 1);
}

TEST(Statements, Pod) {
    expect_messages({
        {{"IMxx;7V;20;"}, {"2: Non-numeric ZAV number xx"}},
        {{"IM00;7V;20;"}, {"2: Invalid ZAV number of 00"}},
        {{"IM51;7V;20;"}, {"2: Invalid ZAV number of 51"}},
        {{"IM-1;7V;20;"}, {"2: Invalid ZAV number of -1"}},
        {{"IM10;7V;20;"},
         {"2: Configuration for ZAV number 10 has been found although an ZAV is not Connected."}},
        {{"IM01;7V;20;"}, {"2: ZAV Types differ for ZAV number 1 Connected ZAV is 7R"}},
        {{"IM01;7v;20;"},
         {"2: ZAV Types differ for ZAV number 1 Connected ZAV is 7R", "2: Unknown ZAV type 7v"}},
        {{"IM10;XX;20;"},
         {"2: Configuration for ZAV number 10 has been found although an ZAV is not Connected.",
          "2: Unknown ZAV type XX"}},
        {{"IM07;7V;xx;"}, {"2: Non-numeric number of channels xx"}},
        {{"IM07;7V;"}, {"2: Non-numeric number of channels "}},
        {{"IM07;7V;33;"}, {}},
        {{"IM07;7V;34;"}, {"2: Invalid number of channels 34"}},
        {{"IM07;7V;99;"}, {"2: Invalid number of channels 99"}},
        {{"IM07;7V;-1;"}, {"2: Invalid number of channels -1"}},
        {{"IM"}, {"2: Non-numeric ZAV number "}},
    });
}

TEST(Statements, AfterABadPodNumberTheFirstPodIsMeant) {
    // Pod 1 is a 7R, for which a watchdog is wrong; the type text is that of the bad line.
    expect_messages(
        {{{"IM07;7V;20;", "IM77;8S;32;", "HW1;"},
          {"3: Invalid ZAV number of 77", "4: Hardware watchdog not valid for 8S ZAV"}}});
}

TEST(Statements, BeforeTheFirstPodTheFirstIsMeant) {
    const Loaded loaded = load({"SE;", "IM02;7S;10;"});
    EXPECT_EQ(loaded.messages, Lines{});
    EXPECT_EQ(loaded.configuration->ZavConfig[0].Setup, 1);
    EXPECT_EQ(load({"KA;"}).messages, (Lines{"2: Calibration not valid for  ZAV"}));
}

TEST(Statements, OfTypesThatDoNotTakeThem) {
    expect_messages({
        {{"IM04;7U;20;", "KA;", "FR0;", "UN1;", "AM;", "TE20;", "TC1;", "HW0;", "SW0;"},
         {"3: Calibration not valid for 7U ZAV", "4: Integration time not valid for 7U ZAV",
          "5: Temperature units not valid for 7U ZAV",
          "6: Ambient temperature not valid for 7U ZAV",
          "7: External temperature not valid for 7U ZAV", "8: TC open not valid for 7U ZAV",
          "9: Hardware watchdog not valid for 7U ZAV",
          "10: Software watchdog not valid for 7U ZAV"}},
        {{"IM02;7S;10;", "KA;", "FR0;", "UN1;", "AM;"},
         {"6: Ambient temperature not valid for 7S ZAV"}},
        {{"IM05;8R;20;", "HW1;", "KA;"},
         {"3: Hardware watchdog not valid for 8R ZAV", "4: Calibration not valid for 8R ZAV"}},
        {{"IM06;8S;32;", "HW1;", "SW5;"}, {}},
    });
}

TEST(Statements, ValuesOfAPod) {
    expect_messages({
        {{"IM01;7R;20;", "SP2500;", "SP0;"}, {}},
        {{"IM01;7R;20;", "SP2501;"}, {"3: Unknown scan period 2501"}},
        {{"IM01;7R;20;", "SPlong;"}, {"3: Non-numeric scan period long"}},
        {{"IM09;7V;20;", "SPlong;", "SP1;", "FRx;", "FR9;"}, {}},  // ignored without the letters
        {{"IM01;7R;20;", "FR6;"}, {"3: Unknown integration time 6"}},
        {{"IM01;7R;20;", "FRx;"}, {"3: Non-numeric integration time x"}},
        {{"IM01;7R;20;", "TE80;", "TE-30;"}, {}},
        {{"IM01;7R;20;", "TE81;"}, {"3: External temperature out of range 81"}},
        {{"IM01;7R;20;", "TE-30.5;"}, {"3: External temperature out of range -30.5"}},
        {{"IM01;7R;20;", "UN1;", "TE177;", "TE-22;"}, {}},
        {{"IM01;7R;20;", "UN1;", "TE180;"}, {"4: External temperature out of range 180"}},
        {{"IM01;7R;20;", "UN1;", "IM01;7R;20;", "TE81;"},
         {"5: External temperature out of range 81"}},
        {{"IM01;7R;20;", "TEwarm;"}, {"3: Non-numeric external temperature warm"}},
        {{"IM06;8S;32;", "HWx;"}, {"3: Non-numeric HW watch x"}},
        {{"IM06;8S;32;", "HW2;"}, {"3: Unknown HW watch 2"}},
        {{"IM06;8S;32;", "SWx;"}, {"3: Non-numeric SW watch x"}},
        {{"IM06;8S;32;", "SW256;"}, {"3: SW watch time out of range 256"}},
        {{"IM06;8S;32;", "SW-1;"}, {"3: SW watch time out of range -1"}},
        {{"XX;"}, {"2: Unknown command of XX"}},
        {{""}, {"2: Unknown command of "}},
        {{"\t"}, {"2: Unknown command of \t"}},
        {{"se;"}, {"2: Unknown command of se"}},
    });
}

TEST(Statements, TablesAndEquations) {
    const std::string twelve = "1,2,3,4,5,6,7,8,9,10,11,12;";
    expect_messages({
        {{"IM07;7V;20;", "UT1," + twelve, "UT2," + twelve}, {}},
        {{"IM01;7R;20;", "UT1," + twelve}, {}},  // for any type
        {{"UT3," + twelve}, {"2: Non-numeric user thermocouple number 3"}},
        {{"UTx," + twelve}, {"2: Non-numeric user thermocouple number x"}},
        {{"UT1,1,2,3;"}, {"2: Error in coefficients for user thermocouple number 1"}},
        {{"UT2,1,2,3,4,5,6,7,8,9,10,11,12"},
         {"2: Error in coefficients for user thermocouple number 2"}},  // no end
        {{"UT2,1,2,x,y;"}, {"2: Error in coefficients for user thermocouple number 2"}},
        {{"UT1,1E39,2,3,4,5,6,7,8,9,10,11,12;"},
         {"2: Error in coefficients for user thermocouple number 1"}},  // beyond a single
        {{"PL1,1,2,3,4,5,6;"}, {}},
        {{"PL0,1,2,3,4,5,6;"}, {"2: Non-numeric post linearisation equation number 0"}},
        {{"PL2,1,2,3,4,5;"}, {"2: Error in coefficients for post linearisation equation number 2"}},
    });
}

TEST(Statements, EffectsOnAPod) {
    expect_effects({
        {{"IM07;7V;20;"},
         [](const PodConfig& p) {
             return p.TypeCode == Type7V && p.NumChannels == 20 && p.CalOn == 0 && p.AmbTemp == 1;
         }},
        {{"IM07;7V;20;", "SE;", "AR;", "CO;", "KA;"},
         [](const PodConfig& p) {
             return p.Setup == 1 && p.Arm == 1 && p.ContScan == 1 && p.CalOn == 1;
         }},
        {{"IM07;7V;20;", "SP750;", "FR5;", "UN0;", "TC0;"},
         [](const PodConfig& p) {
             return p.ScanPeriod == 750 && p.Integration == 5 && p.DegF == 1 && p.OpenTC == 1;
         }},
        {{"IM09;7V;20;", "SP750;", "FR5;"},
         [](const PodConfig& p) { return p.ScanPeriod == 0 && p.Integration == 0; }},
        {{"IM07;7V;20;", "TE21.6;"},
         [](const PodConfig& p) { return p.AmbTemp == 0 && p.ExtTemp == 21.6F; }},
        {{"IM07;7V;20;", "TE21.6;", "AM;"},
         [](const PodConfig& p) { return p.AmbTemp == 1 && p.ExtTemp == 21.6F; }},
        {{"IM06;8S;32;", "HW1;", "SW255;"},
         [](const PodConfig& p) {
             return p.HWWatch == 1 && p.SWWatch == 1 && p.SWWatchTime == 255;
         }},
        {{"IM06;8S;32;", "SW255;", "SW0;"},
         [](const PodConfig& p) { return p.SWWatch == 0 && p.SWWatchTime == 255; }},
        {{"IM06;8S;32;", "SW2.5;"},
         [](const PodConfig& p) { return p.SWWatchTime == 2; }},  // half to even
        {{"IM07;7V;20;", "UT2,1,2,3,4,5,6,7,8,9,10,11,12;", "PL1,-1,2.5,3E-07,4,5,6;"},
         [](const PodConfig& p) {
             return p.UserTherm[0].Enabled == 0 && p.UserTherm[1].Enabled == TableOn &&
                    p.UserTherm[1].Polynomial == Polynomial6{6, 5, 4, 3, 2, 1} &&
                    p.UserTherm[1].InversePoly == Polynomial6{12, 11, 10, 9, 8, 7} &&
                    p.PostLinEquation[0].Enabled == TableOn &&
                    p.PostLinEquation[0].Coeff == Polynomial6{6, 5, 4, 3E-07F, 2.5F, -1} &&
                    p.PostLinEquation[1].Enabled == 0;
         }},
    });
}

TEST(Channels, NumberAndSubKey) {
    expect_messages({
        {{"IM07;7V;20;", "CHxxMO100;"}, {"3: Non-numeric channel number xx"}},
        {{"IM07;7V;20;", "CH21MO100;"}, {"3: Channel number exceeds maximum 21"}},
        {{"CH01MO100;"}, {"2: Channel number exceeds maximum 01"}},
        {{"IM07;7V;20;", "CH00MO100;"}, {"3: Invalid channel number of 00"}},
        {{"IM07;7V;20;", "CH-1MO100;"}, {"3: Invalid channel number of -1"}},
        {{"IM07;7V;20;", "CH01XX1;"}, {"3: Unknown channel command. CH01XX1;"}},
        {{"IM07;7V;20;", "CH01"}, {"3: Unknown channel command. CH01"}},
        {{"IM07;7V;20;", "CH"}, {"3: Non-numeric channel number "}},
    });
}

TEST(Channels, ModeAndRange) {
    const std::string rest = ";'';'';{1;0}";
    expect_messages({
        {{"IM01;7R;20;", "CH01MOabc;"}, {"3: Non-numeric channel mode/range abc"}},
        {{"IM01;7R;20;", "CH01MO110" + rest},
         {"3: Unknown mode of 11, ZAV number 1 for CH01MO110" + rest}},
        {{"IM07;7V;20;", "CH01MO-10" + rest},
         {"3: Unknown mode of -1, ZAV number 7 for CH01MO-10" + rest}},
        {{"IM01;7R;20;", "CH01MO200" + rest},
         {"3: Mode/ZAV type mismatch, mode 20 ZAV number 1 CH01MO200" + rest}},
        {{"IM01;7R;20;", "CH01MO104" + rest}, {}},
        {{"IM01;7R;20;", "CH01MO105" + rest}, {"3: Unknown range of 5 for CH01MO105" + rest}},
        {{"IM02;7S;10;", "CH01MO104" + rest}, {"3: Unknown range of 4 for CH01MO104" + rest}},
        {{"IM01;7R;20;", "CH01MO001" + rest}, {"3: Unknown range for CH01MO001" + rest}},
        {{"IM01;7R;20;", "CH01MO000" + rest}, {}},
        // Which channel it is does not matter.
        {{"IM07;7V;20;", "CH02MO200" + rest, "CH01MO900" + rest, "CH19MO702" + rest}, {}},
        {{"IM06;8S;32;", "CH01MO801" + rest}, {}},
    });
}

TEST(Channels, LabelUnitAndScaling) {
    const auto message = [](const std::string& line, const std::string& text) {
        return MessageCase{{"IM07;7V;20;", line}, {"3: " + text + line}};
    };
    expect_messages({
        message("CH01MO100;Flow';'l/s';{1;0}", "Quote for label not in position 11 for "),
        message("CH01MO100", "Quote for label not in position 11 for "),
        message("CH01MO100;'Fl;ow';'l/s';{1;0}", "Closing quote for label missing for "),
        message("CH01MO100;'Flow", "Closing quote for label missing for "),
        message("CH01MO100;'Flow'", "Format for channel command incorrect "),
        message("CH01MO100;'Flow';'", "Format for channel command incorrect "),
        message("CH01MO100;'Flow';l/s';{1;0}", "Quote for unit not in correct position for "),
        message("CH01MO100;'It's';'l/s';{1;0}", "Closing quote for unit missing for "),
        message("CH01MO100;'Flow';'l/s;{1;0}", "Closing quote for unit missing for "),
        message("CH01MO100;'Flow';'l/s", "Closing quote for unit missing for "),
        message("CH01MO100;'Flow';'l/s';(1;0)", "Brace({) for Mx+c not in correct position for "),
        {{"IM07;7V;20;", "CH01MO100;'Flow';'l/s';"}, {}},
    });
    const auto channel = [](const std::string& label, const std::string& unit, float m, float c) {
        return [=](const PodConfig& p) {
            const ChannelConfig& first = p.Channel[0];
            return first.Mode == 10 && first.Range == 2 && first.Label == label &&
                   first.Unit == unit && first.MValue == m && first.CValue == c;
        };
    };
    const auto effect = [](const std::string& line, std::function<bool(const PodConfig&)> holds) {
        return EffectCase{{"IM07;7V;20;", line}, std::move(holds)};
    };
    expect_effects({
        effect("CH01MO102;'Flow 1';'l/s';{2;-0.5}", channel("Flow 1", "l/s", 2, -0.5F)),
        effect("CH01MO102;'';'';{1;0}", channel("", "", 1, 0)),
        effect("CH01MO102;' Flow ';' l ';{1;0}", channel(" Flow ", " l ", 1, 0)),
        effect("CH01MO102;'12345678901234567890';'12345678';{1;0}",
               channel("123456789012345", "12345", 1, 0)),
        effect("CH01MO102;'Flow';'l/s';", channel("Flow", "l/s", 1, 0)),
        effect("CH01MO102;'Flow';'l/s'", channel("Flow", "l/s", 1, 0)),
        effect("CH01MO102;'Flow';'l/s';{", channel("Flow", "l/s", 1, 0)),
        effect("CH01MO102;'Flow';'l/s';{x;y}", channel("Flow", "l/s", 0, 0)),
        effect("CH01MO102;'Flow';'l/s';{2.5 per litre;1e1}", channel("Flow", "l/s", 2.5F, 10)),
        effect("CH01MO102;'Flow';'l/s';{2}", channel("Flow", "l/s", 2, 0)),
        effect("CH01MO102;'Flow';'l/s';{1E99;-1E99}",
               channel("Flow", "l/s", 3.40282347E+38F, -3.40282347E+38F)),
        effect("CH01MO102;'Gr\xF6\xDF"
               "e';'\xB5m';{1;0}",
               channel("Gr\xF6\xDF"
                       "e",
                       "\xB5m", 1, 0)),
    });
}

TEST(Channels, SamplingAndStrain) {
    expect_messages({
        {{"IM05;8R;20;", "CH01RAx;"}, {"3: Non-numeric sample rate x"}},
        {{"IM05;8R;20;", "CH01RA5;"}, {"3: Unknown sample rate 5"}},
        {{"IM05;8R;20;", "CH01TIx;"}, {"3: Non-numeric timeout x"}},
        {{"IM05;8R;20;", "CH01TI3;", "CH01TI6;"}, {}},
        {{"IM05;8R;20;", "CH01TI4;"}, {"3: Unknown timeout 4"}},
        {{"IM07;7V;20;", "CH19TI5;", "CH19TI6;"}, {}},
        {{"IM07;7V;20;", "CH19TI7;"}, {"3: Unknown timeout 7"}},
        {{"IM06;8S;32;", "CH01TI99;"}, {}},
        {{"IM06;8S;32;", "CH01TIx;"}, {"3: Non-numeric timeout x"}},
        {{"IM02;7S;10;", "CH01GAx;"}, {"3: Non-numeric Gauge factor x"}},
        {{"IM02;7S;10;", "CH01OFx;1;"}, {"3: Non-numeric offset CH01OFx;1;"}},
        {{"IM02;7S;10;", "CH01OF1;"}, {"3: Initial volt missing for CH01OF1;"}},
        {{"IM02;7S;10;", "CH01OF1"}, {"3: Initial volt missing for CH01OF1"}},
        {{"IM02;7S;10;", "CH01OF1;x;"}, {"3: Non-numeric initial volt CH01OF1;x;"}},
    });
    expect_effects({
        {{"IM05;8R;20;", "CH03RA4;", "CH03TI0;"},
         [](const PodConfig& p) {
             return p.SampleRate[2] == 4 && p.Timeout[2] == 0 && p.Timeout[1] == 6;
         }},
        {{"IM06;8S;32;", "CH01TI3;"}, [](const PodConfig& p) { return p.Timeout[0] == 6; }},
        {{"IM02;7S;10;", "CH10GA2.05;", "CH10OF-0.5;1.25;"},
         [](const PodConfig& p) {
             return p.Strain[9] == StrainSettings{2.05F, -0.5F, 1.25F};
         }},
    });
}

TEST(Channels, Alarms) {
    const std::string digital = "CH05MO700;'';'';{1;0}";
    expect_messages({
        {{"IM01;7R;20;", "CH03HL,1,2;", "CH03LL,1,2;"},
         {"3: Trying to set high alarm level for an invalid channel - Chan: 3 ZAV Type = 7R",
          "4: Trying to set low alarm level for an invalid channel - Chan: 3 ZAV Type = 7R"}},
        {{"IM07;7V;20;", digital, "CH05HL,1,2;", "CH05LL,1,2;"},
         {"4: Trying to set high alarm level for an invalid channel - Chan: 5 ZAV Type = 7V",
          "5: Trying to set low alarm level for an invalid channel - Chan: 5 ZAV Type = 7V"}},
        {{"IM07;7V;20;", "CH05HL,x,2;", "CH05LL,x,2;"},
         {"3: Invalid alarm limit for High Alarm on Chan: 5",
          "4: Invalid alarm limit for Low Alarm on Chan: 5"}},
        {{"IM07;7V;20;", "CH05HL,1,x;", "CH05LL,1;"},
         {"3: Invalid Hysteresis Limit for High Alarm on Chan: 5",
          "4: Invalid Hysteresis Limit for Low Alarm on Chan: 5"}},
    });
    expect_effects({
        {{"IM08;7W;20;", "CH18HL,99.5,0.25;", "CH18LL,-1E+07,1;"},
         [](const PodConfig& p) {
             return p.Channel[17].HighAlarm == AlarmLimit{1, 99.5F, 0.25F} &&
                    p.Channel[17].LowAlarm == AlarmLimit{1, -1E+07F, 1};
         }},
    });
}

TEST(Channels, AlarmGroups) {
    const auto group = [](const std::string& line, const Lines& messages) {
        Lines numbered;
        for (const std::string& message : messages) numbered.push_back("3: " + message);
        return MessageCase{{"IM07;7V;20;", line}, numbered};
    };
    expect_messages({
        group("CH19GO1,03,L;", {}),
        group("CH20GO2,03,X;", {}),  // members of a disabled group are not read
        group("CH18GO1,03,L;", {"Alarm group not allowed in ZAV Type 7V channel 18"}),
        {{"IM05;8R;20;", "CH19GO1,03,L;"},
         {"3: Alarm group not allowed in ZAV Type 8R channel 19"}},
        group("CH19GO0;", {"Non-numeric alarm output state  "}),
        group("CH19GOx,03,L;", {"Non-numeric alarm output state  "}),
        group("CH19GO3,03,L;", {"Invalid alarm output state  "}),
        group("CH19GO-1,03,L;", {"Invalid alarm output state  "}),
        group("CH19GO1,xx,L,03,H;",
              {"Non-numeric channel number (xx) in alarm group: CH19GO1,xx,L,03,H;"}),
        group("CH19GO1,19,L,0,H;",
              {"Channel number 19 is out of range for alarm group: CH19GO1,19,L,0,H;",
               "Channel number 0 is out of range for alarm group: CH19GO1,19,L,0,H;"}),
        group("CH20GO1,03,h,04,LL;",
              {"Expecting 'H' or 'L' in alarm group channel 20 ZAV type 7V",
               "Expecting 'H' or 'L' in alarm group channel 20 ZAV type 7V"}),
        group("CH19GO1,03;", {"Expecting 'H' or 'L' in alarm group channel 19 ZAV type 7V"}),
        group("CH19GO1,03,L", {"Expecting 'H' or 'L' in alarm group channel 19 ZAV type 7V"}),
        group("CH19GO1,xyz", {"Non-numeric channel number (Error) in alarm group: CH19GO1,xyz"}),
    });
    expect_effects({
        {{"IM07;7V;20;", "CH19GO1,03,L,03,H,07,H;", "CH20GO0,18,L;"},
         [](const PodConfig& p) {
             AlarmGroup first;
             first.OutputState = 1;
             first.Low[2] = first.High[2] = first.High[6] = 1;
             AlarmGroup second;
             second.Low[17] = 1;
             return p.AlarmGroup[0] == first && p.AlarmGroup[1] == second;
         }},
        {{"IM07;7V;20;", "CH19GO2,03,L;"},
         [](const PodConfig& p) {
             return p.AlarmGroup[0] == AlarmGroup{GroupOff, {}, {}};
         }},
    });
}

TEST(Channels, UnitConversionAndLinearisation) {
    const auto channel = [](const std::string& line, const Lines& messages) {
        Lines numbered;
        for (const std::string& message : messages) numbered.push_back("3: " + message + line);
        return MessageCase{{"IM07;7V;20;", line}, numbered};
    };
    expect_messages({
        channel("CH03UC,2,0.5,1;", {}),
        channel("CH19UC,2,0.5,1;", {"Unit Conversion not allowed in ZAV Type 7V channel 19 : "}),
        channel("CH03UC,x,y,1;", {"M value must be a number: ", "C value must be a number: "}),
        channel("CH03UC,x,2,2;",
                {"M value must be a number: ", "Unit conversion enable flag must be 1 or 0. "}),
        channel("CH03UC,1,2,x;", {"Unit conversion enable flag must be 1 or 0. "}),
        channel("CH03UC,1,2;", {"Unit conversion enable flag must be 1 or 0. "}),
        channel("CH03PL0;", {}),
        channel("CH20PL1;", {"Post Linearisation not allowed in ZAV Type 7V channel 20 : "}),
        channel("CH03PLx;", {"Equation specifier must be a number: "}),
        channel("CH03PL1", {"Equation specifier must be a number: "}),
        channel("CH03PL3;", {"Post Linearisation number must be 0,1 or 2: "}),
        {{"IM01;7R;20;", "CH03UC,1,0,1;", "CH03PL1;"},
         {"3: Unit Conversion not allowed in ZAV Type 7R channel 3 : CH03UC,1,0,1;",
          "4: Post Linearisation not allowed in ZAV Type 7R channel 3 : CH03PL1;"}},
    });
    expect_effects({
        {{"IM07;7V;20;", "CH03UC,2,0.5,1;", "CH03PL2;"},
         [](const PodConfig& p) {
             return p.Channel[2].MValue == 2 && p.Channel[2].CValue == 0.5F &&
                    p.Channel[2].PostLin == 2;
         }},
        {{"IM07;7V;20;", "CH03MO100;'';'';{3;4}", "CH03UC,2,0.5,0;"},
         [](const PodConfig& p) { return p.Channel[2].MValue == 1 && p.Channel[2].CValue == 0; }},
    });
}

TEST(HostileInput, NulsAndLongLinesAreLinesLikeOthers) {
    const std::string with_nul = std::string("CH01MO100;'A") + '\0' + "B';'u';{1;0}";
    const Loaded loaded = load({"IM07;7V;20;", with_nul});
    EXPECT_EQ(loaded.messages, Lines{});
    EXPECT_EQ(loaded.configuration->ZavConfig[6].Channel[0].Label, std::string("A\0B", 3));

    const std::string nul_key = std::string("S\0;", 3);
    EXPECT_EQ(load({nul_key}).messages, (Lines{"2: Unknown command of S" + std::string(1, '\0')}));

    const std::string long_line = "CH01MO100;'" + std::string(100000, 'x');
    EXPECT_EQ(load({"IM07;7V;20;", long_line}).messages,
              (Lines{"3: Closing quote for label missing for " + long_line}));
    EXPECT_EQ(load({"IM07;7V;20;", long_line + "';'l';{1;0}"})
                  .configuration->ZavConfig[6]
                  .Channel[0]
                  .Label,
              std::string(MaxLabel, 'x'));
}

TEST(Outcome, FailedLoadPutsTheConfigurationBackAndKeepsItAsCopy) {
    const auto configuration = std::make_unique<Configuration>();
    default_ZAV_config(configuration->ZavConfig[6], Type7W, 1);
    configuration->ZavConfig[6].Channel[0].HighAlarm = {0, 5, 6};
    const PodConfigs before = configuration->ZavConfig;
    const auto all = [](const LoadMessage&) { return true; };
    const std::string good = Header + "\r\nIM07;7V;20;\r\n";
    EXPECT_EQ(load_configuration(good + "XX", station(), *configuration, all), LoadOutcome::Errors);
    EXPECT_TRUE(configuration->ZavConfig == before);
    EXPECT_TRUE(configuration->ZavConfigCopy == before);

    EXPECT_EQ(load_configuration(good, station(), *configuration, all), LoadOutcome::Loaded);
    EXPECT_EQ(configuration->ZavConfig[6].TypeCode, Type7V);
    EXPECT_TRUE(configuration->ZavConfigCopy == before);
}

TEST(Outcome, SinkStopsTheLoad) {
    const auto configuration = std::make_unique<Configuration>();
    const PodConfigs before = configuration->ZavConfig;
    Lines messages;
    EXPECT_EQ(load_configuration(Header + "\r\nXX\r\nIM07;7V;20;\r\nYY", station(), *configuration,
                                 [&](const LoadMessage& m) {
                                     messages.push_back(m.text);
                                     return false;
                                 }),
              LoadOutcome::Stopped);
    EXPECT_EQ(messages, (Lines{"Unknown command of XX"}));
    EXPECT_TRUE(configuration->ZavConfig == before);
}

TEST(Outcome, SinkThatThrowsLeavesTheConfigurationAlone) {
    const auto configuration = std::make_unique<Configuration>();
    const PodConfigs before = configuration->ZavConfig;
    const auto fails = [](const LoadMessage&) -> bool { throw std::runtime_error("disk full"); };
    EXPECT_THROW(
        load_configuration(Header + "\r\nIM07;7V;20;\r\nXX", station(), *configuration, fails),
        std::runtime_error);
    EXPECT_TRUE(configuration->ZavConfig == before);
}

TEST(AssumedStation, IsWhatTheFileNames) {
    const Connected assumed = assume_connected(
        Header + "\nAD3;-14080;\nAD1;-1;\nIM03;7V;20;\nIM03;8R;20;\nIM04;XX;1;\nIM77;7V;20;\nIM");
    EXPECT_EQ(assumed.CardHandle, 3);
    EXPECT_EQ(assumed.CardAddress, -14080);
    EXPECT_EQ(assumed.Ident[2], "7V A  F     ");
    EXPECT_EQ(assumed.Ident[3], "XX A  F     ");
    EXPECT_EQ(assumed.Ident[4], "NC          ");
}

}  // namespace
}  // namespace kavorix
