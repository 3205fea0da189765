#include "config/config_reader.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "config/config_writer.h"
#include "support/memory_files.h"

namespace kavorix {
namespace {

using Lines = std::vector<std::string>;
using PairOfNumbers = std::pair<std::int16_t, std::int16_t>;

const std::string Header = "KAVORIX ZAV CONFIGURATION FILE CREATED: 2026-03-01 12:30:00";

// Card 0 at C800; pods 1 to 8 of one type each, 9 a 7V that takes neither scan period nor
// integration time, 50 an 8S.
Connected station() {
    Connected connected{0, -14336, {}};
    connected.Ident.fill("NC          ");
    const char* const codes[] = {"7R", "7S", "7T", "7U", "8R", "8S", "7V", "7W"};
    for (std::size_t pod = 0; pod < 8; ++pod)
        connected.Ident[pod] = std::string(codes[pod]) + "JA 0F 1.00";
    connected.Ident[8] = "7VJB 0X 1.00";
    connected.Ident[49] = "8SJA 0F 1.00";
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

TEST(Header, DecidesWhetherAnythingHappens) {
    const std::pair<std::string, bool> cases[] = {
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

// A file of another kind is not read to its end, of whatever size; one with the header is.
TEST(Header, IsLookedForBeforeTheRestIsRead) {
    test::MemoryFiles files;
    const std::string rest(200000, 'x');
    for (const std::string& start : {std::string("no header\r\n"), std::string(40, 'x'),
                                     Header + "\r\n", " " + Header + "\n"}) {
        files.put("a.cfg", start + rest);
        const std::string content = read_config_file(files, "a.cfg");
        EXPECT_EQ(content == start + rest, start.find("KAVORIX") != std::string::npos) << start;
    }
}

TEST(LineEnds, AllKinds) {
    for (const std::string end : {"\r\n", "\n", "\r"})
        for (const std::string& last : {std::string(), end}) {
            const Loaded loaded =
                load_text(Header + end + "  IM07;7V;20; " + end + "SE;" + end + "UR500;" + last);
            EXPECT_EQ(loaded.messages, Lines{});
            EXPECT_EQ(loaded.configuration->ZavConfig[6].Setup, 1);
            EXPECT_EQ(loaded.configuration->Interface.PollRate, 500);
        }
    EXPECT_EQ(
        load_text(Header + "\rXX\n\nYY\r\r\nZZ").messages,
        (Lines{"2: Unknown command of XX", "3: Unknown command of ", "4: Unknown command of YY",
               "5: Unknown command of ", "6: Unknown command of ZZ"}));
}

// A file line by line: behind "<-" what is told of the line, several texts with "&" between them;
// "$" stands for the line itself. Of lines without it, several in a row with "/" between them,
// nothing is told.
const char* const File = R"(
SE;
KA;                                    <- Calibration not valid for  ZAV
CH01MO100;                             <- Channel number exceeds maximum 01
AD0;-14336;
AD1;-14336;                            <- The card handle does not match the handle currently in use (0).
AD0;-14080;                            <- The card address does not match the address currently in use(C800).
AD1;-14080;                            <- The card handle does not match the handle currently in use (0). & The card address does not match the address currently in use(C800).
ADx;what;                              <- Non-numeric Interface card handle x & Non-numeric Interface card address what
AD0;1;                                 <- Interface card address missing
AD                                     <- Non-numeric Interface card handle  & Interface card address missing
AD0;51200;                             <- The card address does not match the address currently in use(C800).
UR10000; / UR 1,000 ; / UR99.6;
UR2500;                                <- Invalid Poll Rate of: 2500
URfast;                                <- Non-Numeric Poll Rate: fast
UR;                                    <- Non-Numeric Poll Rate: 
UR                                     <- Non-Numeric Poll Rate: 
UR1E300;                               <- Invalid Poll Rate of: 1E300
PO1;
POx;                                   <- Non-Numeric Power On Setting: x
PO2;                                   <- Invalid Power On of: 2
XX;                                    <- Unknown command of XX
                                       <- Unknown command of 
se;                                    <- Unknown command of se
IM                                     <- Non-numeric ZAV number 
IMxx;7V;20;                            <- Non-numeric ZAV number xx
IM00;7V;20;                            <- Invalid ZAV number of 00
IM51;7V;20;                            <- Invalid ZAV number of 51
IM-1;7V;20;                            <- Invalid ZAV number of -1
IM10;7V;20;                            <- Configuration for ZAV number 10 has been found although an ZAV is not Connected.
IM01;7V;20;                            <- ZAV Types differ for ZAV number 1 Connected ZAV is 7R
IM01;7v;20;                            <- ZAV Types differ for ZAV number 1 Connected ZAV is 7R & Unknown ZAV type 7v
IM10;XX;20;                            <- Configuration for ZAV number 10 has been found although an ZAV is not Connected. & Unknown ZAV type XX
IM07;7V;xx;                            <- Non-numeric number of channels xx
IM07;7V;                               <- Non-numeric number of channels 
IM07;7V;34;                            <- Invalid number of channels 34
IM07;7V;-1;                            <- Invalid number of channels -1
IM07;7V;33; / IM01;7R;20; / IM07;7V;20;
IM77;8S;32;                            <- Invalid ZAV number of 77
HW1;                                   <- Hardware watchdog not valid for 8S ZAV
AM; / IM04;7U;20;
KA;                                    <- Calibration not valid for 7U ZAV
FR0;                                   <- Integration time not valid for 7U ZAV
UN1;                                   <- Temperature units not valid for 7U ZAV
AM;                                    <- Ambient temperature not valid for 7U ZAV
TE20;                                  <- External temperature not valid for 7U ZAV
TC1;                                   <- TC open not valid for 7U ZAV
HW0;                                   <- Hardware watchdog not valid for 7U ZAV
SW0;                                   <- Software watchdog not valid for 7U ZAV
IM02;7S;10; / KA; / FR0; / UN1;
AM;                                    <- Ambient temperature not valid for 7S ZAV
CH01MO104;'';'';{1;0}                  <- Unknown range of 4 for $
CH01GAx;                               <- Non-numeric Gauge factor x
CH01OFx;1;                             <- Non-numeric offset $
CH01OF1;                               <- Initial volt missing for $
CH01OF1                                <- Initial volt missing for $
CH01OF1;x;                             <- Non-numeric initial volt $
IM05;8R;20;
HW1;                                   <- Hardware watchdog not valid for 8R ZAV
KA;                                    <- Calibration not valid for 8R ZAV
CH01RAx;                               <- Non-numeric sample rate x
CH01RA5;                               <- Unknown sample rate 5
CH01TIx;                               <- Non-numeric timeout x
CH01TI3; / CH01TI6;
CH01TI4;                               <- Unknown timeout 4
CH19GO1,03,L;                          <- Alarm group not allowed in ZAV Type 8R channel 19
IM50;8S;32; / HW1; / SW5;
HWx;                                   <- Non-numeric HW watch x
HW2;                                   <- Unknown HW watch 2
SWx;                                   <- Non-numeric SW watch x
SW255;
SW256;                                 <- SW watch time out of range 256
SW-1;                                  <- SW watch time out of range -1
CH01TI99;
CH01TIx;                               <- Non-numeric timeout x
CH01MO801;'';'';{1;0} / IM09;7V;20; / SPlong; / SP1; / FRx; / FR9; / IM01;7R;20; / SP2500; / SP0;
SP2501;                                <- Unknown scan period 2501
SPlong;                                <- Non-numeric scan period long
FR5;
FR6;                                   <- Unknown integration time 6
FR-1;                                  <- Non-numeric integration time -
FRx;                                   <- Non-numeric integration time x
TE80; / TE-30;
TE80.5;                                <- External temperature out of range 80.5
TE-30.5;                               <- External temperature out of range -30.5
TEwarm;                                <- Non-numeric external temperature warm
UN1; / TE177; / TE-22;
TE178;                                 <- External temperature out of range 178
TE-23;                                 <- External temperature out of range -23
IM01;7R;20;
TE81;                                  <- External temperature out of range 81
UT1,1,2,3,4,5,6,7,8,9,10,11,12;
UT3,1,2,3,4,5,6,7,8,9,10,11,12;        <- Non-numeric user thermocouple number 3
UTx,1,2,3,4,5,6,7,8,9,10,11,12;        <- Non-numeric user thermocouple number x
UT1,1,2,3;                             <- Error in coefficients for user thermocouple number 1
UT2,1,2,3,4,5,6,7,8,9,10,11,12         <- Error in coefficients for user thermocouple number 2
UT2,1,2,x,y;                           <- Error in coefficients for user thermocouple number 2
UT1,1E39,2,3,4,5,6,7,8,9,10,11,12;     <- Error in coefficients for user thermocouple number 1
PL1,1,2,3,4,5,6;
PL0,1,2,3,4,5,6;                       <- Non-numeric post linearisation equation number 0
PL2,1,2,3,4,5;                         <- Error in coefficients for post linearisation equation number 2
CH01MOabc;                             <- Non-numeric channel mode/range abc
CH01MO110;'';'';{1;0}                  <- Unknown mode of 11, ZAV number 1 for $
CH01MO200;'';'';{1;0}                  <- Mode/ZAV type mismatch, mode 20 ZAV number 1 $
CH01MO104;'';'';{1;0}
CH01MO105;'';'';{1;0}                  <- Unknown range of 5 for $
CH01MO001;'';'';{1;0}                  <- Unknown range for $
CH01MO000;'';'';{1;0}
CH03HL,1,2;                            <- Trying to set high alarm level for an invalid channel - Chan: 3 ZAV Type = 7R
CH03LL,1,2;                            <- Trying to set low alarm level for an invalid channel - Chan: 3 ZAV Type = 7R
CH03UC,1,0,1;                          <- Unit Conversion not allowed in ZAV Type 7R channel 3 : $
CH03PL1;                               <- Post Linearisation not allowed in ZAV Type 7R channel 3 : $
IM07;7V;20;
CHxxMO100;                             <- Non-numeric channel number xx
CH21MO100;                             <- Channel number exceeds maximum 21
CH00MO100;                             <- Invalid channel number of 00
CH-1MO100;                             <- Invalid channel number of -1
CH01XX1;                               <- Unknown channel command. $
CH01                                   <- Unknown channel command. $
CH                                     <- Non-numeric channel number 
CH01MO-10;'';'';{1;0}                  <- Unknown mode of -1, ZAV number 7 for $
CH02MO200;'';'';{1;0} / CH01MO900;'';'';{1;0} / CH19MO702;'';'';{1;0}
CH01MO100;Flow';'l/s';{1;0}            <- Quote for label not in position 11 for $
CH01MO100                              <- Quote for label not in position 11 for $
CH01MO100;'Fl;ow';'l/s';{1;0}          <- Closing quote for label missing for $
CH01MO100;'Flow                        <- Closing quote for label missing for $
CH01MO100;'Flow'                       <- Format for channel command incorrect $
CH01MO100;'Flow';'                     <- Format for channel command incorrect $
CH01MO100;'Flow';'l                    <- Format for channel command incorrect $
CH01MO100;'Flow';l/s';{1;0}            <- Quote for unit not in correct position for $
CH01MO100;'It's';'l/s';{1;0}           <- Closing quote for unit missing for $
CH01MO100;'Flow';'l/s;{1;0}            <- Closing quote for unit missing for $
CH01MO100;'Flow';'l/s                  <- Closing quote for unit missing for $
CH01MO100;'Flow';'l/s';(1;0)           <- Brace({) for Mx+c not in correct position for $
CH01MO100;'Flow';'l/s'; / CH19TI5; / CH19TI6;
CH19TI7;                               <- Unknown timeout 7
CH05MO700;'';'';{1;0}
CH05HL,1,2;                            <- Trying to set high alarm level for an invalid channel - Chan: 5 ZAV Type = 7V
CH05LL,1,2;                            <- Trying to set low alarm level for an invalid channel - Chan: 5 ZAV Type = 7V
CH06HL,x,2;                            <- Invalid alarm limit for High Alarm on Chan: 6
CH06LL,x,2;                            <- Invalid alarm limit for Low Alarm on Chan: 6
CH06HL,1,x;                            <- Invalid Hysteresis Limit for High Alarm on Chan: 6
CH06LL,1;                              <- Invalid Hysteresis Limit for Low Alarm on Chan: 6
CH19GO1,03,L; / CH20GO2,03,X;
CH18GO1,03,L;                          <- Alarm group not allowed in ZAV Type 7V channel 18
CH19GO0;                               <- Non-numeric alarm output state  
CH19GOx,03,L;                          <- Non-numeric alarm output state  
CH19GO3,03,L;                          <- Invalid alarm output state  
CH19GO-1,03,L;                         <- Invalid alarm output state  
CH19GO1,xx,L,03,H;                     <- Non-numeric channel number (xx) in alarm group: $
CH19GO1,19,L,0,H;                      <- Channel number 19 is out of range for alarm group: $ & Channel number 0 is out of range for alarm group: $
CH20GO1,03,h,04,LL;                    <- Expecting 'H' or 'L' in alarm group channel 20 ZAV type 7V & Expecting 'H' or 'L' in alarm group channel 20 ZAV type 7V
CH19GO1,03;                            <- Expecting 'H' or 'L' in alarm group channel 19 ZAV type 7V
CH19GO1,03,L                           <- Expecting 'H' or 'L' in alarm group channel 19 ZAV type 7V
CH19GO1,xyz                            <- Non-numeric channel number (Error) in alarm group: $
CH03UC,2,0.5,1;
CH19UC,2,0.5,1;                        <- Unit Conversion not allowed in ZAV Type 7V channel 19 : $
CH03UC,x,y,1;                          <- M value must be a number: $ & C value must be a number: $
CH03UC,x,2,2;                          <- M value must be a number: $ & Unit conversion enable flag must be 1 or 0. $
CH03UC,1,2,x;                          <- Unit conversion enable flag must be 1 or 0. $
CH03UC,1,2;                            <- Unit conversion enable flag must be 1 or 0. $
CH03PL0;
CH20PL1;                               <- Post Linearisation not allowed in ZAV Type 7V channel 20 : $
CH03PLx;                               <- Equation specifier must be a number: $
CH03PL1                                <- Equation specifier must be a number: $
CH03PL3;                               <- Post Linearisation number must be 0,1 or 2: $
CH03PL-1;                              <- Post Linearisation number must be 0,1 or 2: $)";

TEST(Messages, TellWhatIsWrongWithEachLine) {
    Lines expected;
    std::string text = Header;
    std::istringstream lines(std::string(File).substr(1));
    int number = 1;
    for (std::string row; std::getline(lines, row);) {
        const auto mark = std::min(row.find("<- "), row.size());
        std::string statement;
        for (std::size_t at = 0; at <= mark; at += statement.size() + 3) {
            statement = row.substr(at, std::min(row.find(" / ", at), mark) - at);
            text += "\r\n" + statement;
            ++number;
        }
        statement.erase(statement.find_last_not_of(' ') + 1);
        for (std::size_t at = mark; at < row.size();) {
            const std::size_t end = std::min(row.find(" & ", at + 3), row.size());
            std::string told = row.substr(at + 3, end - at - 3);
            if (const auto self = told.find('$'); self != std::string::npos)
                told.replace(self, 1, statement);
            expected.push_back(std::to_string(number) + ": " + told);
            at = end;
        }
    }
    const Loaded loaded = load_text(text);
    EXPECT_EQ(loaded.outcome, LoadOutcome::Errors);
    for (std::size_t i = 0; i < std::max(loaded.messages.size(), expected.size()); ++i)
        ASSERT_EQ(i < loaded.messages.size() ? loaded.messages[i] : "nothing",
                  i < expected.size() ? expected[i] : "nothing");
    EXPECT_EQ(std::pair(loaded.configuration->Interface.PollRate,
                        loaded.configuration->Interface.PowerOn),
              PairOfNumbers(100, 1))
        << "these stay after a failed load";
}

// What statements bring about that are not written as the station itself writes them: the lines
// that the pod then has beyond those of its "IM" line alone.
struct Effect {
    const char* pod;
    std::string statements;
    std::string lines;
};

Lines written_of(const std::string& text) {
    const Loaded loaded = load_text(Header + text);
    EXPECT_EQ(loaded.messages, Lines{}) << text;
    Lines lines;
    std::istringstream all(config_text({}, loaded.configuration->ZavConfig, {}));
    for (std::string line; std::getline(all, line);)
        lines.push_back(line.substr(0, line.size() - 1));
    return lines;
}

TEST(Effects, OfStatementsInOtherForms) {
    const Effect effects[] = {
        {"IM07;7V;20;", "UN0;|TC0;|CO", "CO;|UN1;|TC1;|"},
        {"IM09;7V;20;", "SP750;|FR5;", ""},
        {"IM07;7V;20;", "TE21.6;|AM;", ""},
        {"IM50;8S;32;", "SW255;|SW0;", ""},
        {"IM50;8S;32;", "SW2.5;", "SW2;|"},  // halves to the even neighbour
        {"IM50;8S;32;", "CH01MO700;'';'';{1;0}|CH01TI3;", "CH01MO700;'';'';{1;0}|"},
        {"IM07;7V;20;", "CH19GO2,03,L;", ""},
        {"IM07;7V;20;", "CH03MO100;'';'';{3;4}|CH03UC,2,0.5,0;", "CH03MO100;'';'';{1;0}|"},
        {"IM07;7V;20;", "CH03MO100;'';'';{3;4}|CH03UC,2,0.5,1;",
         "CH03MO100;'';'';{2;0.5}|CH03UC,2,0.5,1;|"},
        {"IM07;7V;20;", "CH01MO102;'12345678901234567890';'12345678';{1;0}",
         "CH01MO102;'123456789012345';'12345';{1;0}|"},
        {"IM07;7V;20;", "CH01MO102;'Flow';'l/s'", "CH01MO102;'Flow';'l/s';{1;0}|"},
        {"IM07;7V;20;", "CH01MO102;'Flow';'l/s';{", "CH01MO102;'Flow';'l/s';{1;0}|"},
        {"IM01;7R;20;", "CH01MO102;'Flow';'l/s';{x;y}", "CH01MO102;'Flow';'l/s';{0;0}|"},
        {"IM01;7R;20;", "CH01MO102;'Flow';'l/s';{2.5 per litre;1e1}",
         "CH01MO102;'Flow';'l/s';{2.5;10}|"},
        {"IM01;7R;20;", "CH01MO102;'Flow';'l/s';{2}", "CH01MO102;'Flow';'l/s';{2;0}|"},
        {"IM01;7R;20;", "CH01MO102;'Flow';'l/s';{1E99;-1E99}",
         "CH01MO102;'Flow';'l/s';{3.402823E+38;-3.402823E+38}|"},
        {"IM01;7R;20;",
         "CH01MO102;'Gr\xF6\xDF"
         "e';'\xB5m';{1;0}",
         "CH01MO102;'Gr\xF6\xDF"
         "e';'\xB5m';{1;0}|"},
    };
    for (const Effect& effect : effects) {
        const std::string start = "|" + std::string(effect.pod) + "|";
        const auto text = [&](std::string lines) {
            std::replace(lines.begin(), lines.end(), '|', '\n');
            return lines;
        };
        const Lines before = written_of(text(start));
        std::string lines;
        for (const std::string& line : written_of(text(start + effect.statements)))
            if (std::find(before.begin(), before.end(), line) == before.end()) lines += line + "|";
        EXPECT_EQ(lines, effect.lines) << effect.statements;
    }
    const auto pod = load_text(Header + "\nIM07;7V;20;\nCH01MO102;' Flow ';' l ';{1;0}")
                         .configuration->ZavConfig[6];
    EXPECT_EQ(pod.Channel[0].Label + pod.Channel[0].Unit, " Flow  l ");
}

TEST(HostileInput, NulsAndLongLinesAreLinesLikeOthers) {
    const std::string nul(1, '\0');
    const std::string pod = Header + "\nIM07;7V;20;\n";
    const std::string long_line = "CH01MO100;'" + std::string(100000, 'x');
    const auto label = [](const std::string& text) {
        return load_text(text).configuration->ZavConfig[6].Channel[0].Label;
    };
    EXPECT_EQ(label(pod + "CH01MO100;'A" + nul + "B';'u';{1;0}"), "A" + nul + "B");
    EXPECT_EQ(label(pod + long_line + "';'l';{1;0}"), std::string(MaxLabel, 'x'));
    EXPECT_EQ(load_text(pod + "S" + nul + ";\n\t\n" + long_line).messages,
              (Lines{"3: Unknown command of S" + nul, "4: Unknown command of \t",
                     "5: Closing quote for label missing for " + long_line}));
}

// A load of `text` over a 7W as pod 7: what it ends with, and whether the configuration and its
// copy are what was before.
TEST(Outcome, WithoutAFullLoadTheConfigurationIsWhatItWas) {
    const auto all = [](const LoadMessage&) { return true; };
    const auto none = [](const LoadMessage&) { return false; };
    const auto fails = [](const LoadMessage&) -> bool { throw std::runtime_error("disk full"); };
    const std::string good = Header + "\r\nIM07;7V;20;\r\n";
    struct Row {
        std::string text;
        MessageSink sink;
        LoadOutcome outcome;
        std::string before, copy;
    };
    for (const Row& row : {Row{good, all, LoadOutcome::Loaded, "no", "yes"},
                           Row{good + "XX", all, LoadOutcome::Errors, "yes", "yes"},
                           Row{good + "XX\nYY", none, LoadOutcome::Stopped, "yes", "yes"},
                           Row{good + "XX", fails, LoadOutcome::Stopped, "yes", "yes"},
                           Row{"UR500;\r\n", all, LoadOutcome::NoHeader, "yes", "no"}}) {
        const auto configuration = std::make_unique<Configuration>();
        default_ZAV_config(configuration->ZavConfig[6], Type7W, 1);
        configuration->ZavConfig[6].Channel[0].HighAlarm = {0, 5, 6};
        configuration->ZavConfigCopy[5].TypeCode = 5;
        const PodConfigs before = configuration->ZavConfig;
        int messages = 0;
        const auto counting = [&](const LoadMessage& m) { return ++messages, row.sink(m); };
        try {
            EXPECT_EQ(load_configuration(row.text, station(), *configuration, counting),
                      row.outcome)
                << row.text;
        } catch (const std::runtime_error&) {
            EXPECT_EQ(row.outcome, LoadOutcome::Stopped);
        }
        EXPECT_LE(messages, 1) << "nothing is told after a stop";
        EXPECT_EQ(configuration->ZavConfig == before ? "yes" : "no", row.before) << row.text;
        EXPECT_EQ(configuration->ZavConfigCopy == before ? "yes" : "no", row.copy) << row.text;
        EXPECT_EQ(configuration->Interface.PollRate, 1000);
    }
}

TEST(AssumedStation, IsWhatTheFileNames) {
    const Connected assumed = assume_connected(Header +
                                               "\nAD3;-14080;\nAD1;-1;\nIM01;7V;20;\nIM01;8R;20;"
                                               "\nIM50;XX;1;\nIM51;7V;20;\nIM00;7V;20;\nIM");
    EXPECT_EQ(std::pair(assumed.CardHandle, assumed.CardAddress), PairOfNumbers(3, -14080));
    auto idents = Connected{}.Ident;
    idents.fill("NC          ");
    idents[0] = "7V A  F     ";
    idents[49] = "XX A  F     ";
    EXPECT_EQ(assumed.Ident, idents);
    const Connected nothing = assume_connected(Header + "\nADx;y;");
    EXPECT_EQ(std::pair(nothing.CardHandle, nothing.CardAddress), PairOfNumbers(0, 0));
}

}  // namespace
}  // namespace kavorix
