#include "app/command_line.h"

#include <gtest/gtest.h>

#include "app/output.h"
#include "app/terminal_run.h"

namespace kavorix::test {

namespace {

constexpr const char* Header = "KAVORIX ZAV CONFIGURATION FILE CREATED: 2026-01-05 08:00:00\r\n";

// A file that fits TwoPods.
const std::string Fitting =
    std::string(Header) +
    "AD2;-13824;\r\nUR500;\r\nPO0;\r\nIM03;7V;20;\r\nSP0;\r\nFR0;\r\nAM;\r\n"
    "HW0;\r\nSW0;\r\nCH01MO101;'Flow';'l/s';{2;0.5}\r\nCH01UC,2,0.5,1;\r\n";

}  // namespace

TEST(Program, WithoutACommandOpensTheWindow) {
    EXPECT_EQ(TerminalRun()({}).exit_code, -1);
}

TEST(Program, WrongUsageIsExitCodeTwo) {
    const TerminalRun run;
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"bogus"},
                                                      {"check"},
                                                      {"discover", "--bogus"},
                                                      {"watch", "x"},
                                                      {"--theme", "pink"}}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exit_code, ExitUsage) << arguments.front();
        EXPECT_FALSE(outcome.messages.empty()) << arguments.front();
    }
}

TEST(Discover, ListsCardAndPods) {
    const TerminalRun run;
    const Outcome outcome = run({"discover", "--network", run.file("two.toml", TwoPods)});
    EXPECT_EQ(outcome.exit_code, ExitDone);
    EXPECT_EQ(outcome.out,
              "Card at CA00, handle 2, Test network\n\n"
              "Pod  Ident         Type                    Channels\n"
              "03   7VJA 0F 1.00  7V Universal ZAV        20\n"
              "07   8RCA 0F 1.00  8R Digital I/O          20\n");
    EXPECT_FALSE(run.exists("ERR_LOG.TXT"));
}

TEST(Discover, WithoutACardFails) {
    const TerminalRun run;
    const Outcome outcome = run({"discover", "--network", run.file("none.toml", "")});
    EXPECT_EQ(outcome.exit_code, ExitFailed);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.messages, "No Interface Cards were found\n");
}

TEST(Discover, LeavesOutExcludedAddresses) {
    const TerminalRun run;
    run.file("KAVORIX.INI", "[Exclude Addresses]\r\nAddress=CA00\r\n");
    EXPECT_EQ(run({"discover", "--network", run.file("two.toml", TwoPods)}).exit_code, ExitFailed);
}

TEST(Discover, EndsAtAMalformedSettingsFile) {
    const TerminalRun run;
    run.file("KAVORIX.INI", "[Exclude Addresses]\nAddress=C80,D000\n");
    const Outcome outcome = run({"discover", "--network", run.file("two.toml", TwoPods)});
    EXPECT_EQ(outcome.exit_code, ExitFailed);
    EXPECT_EQ(outcome.messages, "Error reading 'KAVORIX.INI' file. *** Exiting *** \n");
}

TEST(Network, ThatCannotBeReadIsExitCodeTwo) {
    const TerminalRun run;
    EXPECT_EQ(run({"discover", "--network", run.path("missing.toml")}).exit_code, ExitUsage);
    const Outcome outcome =
        run({"discover", "--network", run.file("bad.toml", "[card]\naddres = \"C800\"\n")});
    EXPECT_EQ(outcome.exit_code, ExitUsage);
    EXPECT_TRUE(outcome.messages.find("bad.toml:2:1: ") != std::string::npos) << outcome.messages;
}

TEST(Watch, PrintsEveryPollAndEndsWhenItsTimeIsOver) {
    const TerminalRun run;
    const Outcome outcome = run(
        {"watch", "--network", run.file("two.toml", TwoPods), "--pods", "3", "--duration", "10s"});
    EXPECT_EQ(outcome.exit_code, ExitDone);
    std::istringstream lines(outcome.out);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_TRUE(line.find(" 03 7V 1=1.5") != std::string::npos) << line;
    EXPECT_GE(count, 9);
    EXPECT_LE(count, 12);
}

TEST(Watch, RefusesPodsThatDoNotAnswer) {
    const TerminalRun run;
    const Outcome outcome =
        run({"watch", "--network", run.file("two.toml", TwoPods), "--pods", "3-4"});
    EXPECT_EQ(outcome.exit_code, ExitUsage);
    EXPECT_TRUE(outcome.messages.ends_with("No pod answers at number 4\n")) << outcome.messages;
}

TEST(Check, AcceptsAFileThatFits) {
    const TerminalRun run;
    const std::string file = run.file("good.CFG", Fitting);
    EXPECT_EQ(run({"check", file}).exit_code, ExitDone);
    const Outcome outcome = run({"check", file, "--network", run.file("two.toml", TwoPods)});
    EXPECT_EQ(outcome.exit_code, ExitDone);
    EXPECT_EQ(outcome.out, "");
}

TEST(Check, ListsProblemsInOrder) {
    const TerminalRun run;
    const std::string file = run.file(
        "bad.CFG", std::string(Header) + "AD0;-14336;\r\nUR2500;\r\nIM04;7V;20;\r\nXX;\r\n");
    const std::string network = run.file("two.toml", TwoPods);
    const Outcome outcome = run({"check", file, "--network", network});
    EXPECT_EQ(outcome.exit_code, ExitFailed);
    EXPECT_EQ(outcome.out,
              "The card handle does not match the handle currently in use (2).\n"
              "The card address does not match the address currently in use(CA00).\n"
              "Invalid Poll Rate of: 2500\n"
              "Configuration for ZAV number 4 has been found although an ZAV is not Connected.\n"
              "Unknown command of XX\n");
    EXPECT_FALSE(run.exists("bad.L00"));
}

TEST(Check, LocatesAndLogsOnDemand) {
    const TerminalRun run;
    const std::string file = run.file("bad.CFG", std::string(Header) + "UR2500;\r\n");
    const Outcome outcome = run({"check", file, "--locate", "--log"});
    EXPECT_EQ(outcome.out, file + ":2: Invalid Poll Rate of: 2500\n");
    const std::string log = run.read("bad.L00");
    EXPECT_TRUE(log.starts_with("KAVORIX ZAV CONFIGURATION FILE ERROR LOG FOR " + file + " "));
    EXPECT_TRUE(log.ends_with("\r\n\r\nInvalid Poll Rate of: 2500\r\n\r\n")) << log;
}

TEST(Check, AFileWithoutHeaderOrNoFileIsExitCodeTwo) {
    const TerminalRun run;
    EXPECT_EQ(run({"check", run.file("x.CFG", "AD0;-14336;\r\n")}).exit_code, ExitUsage);
    EXPECT_EQ(run({"check", run.path("missing.CFG")}).exit_code, ExitUsage);
    EXPECT_EQ(run({"check", run.path(".")}).exit_code, ExitUsage);
}

TEST(Statements, PrintsACommandStringForEachPod) {
    const TerminalRun run;
    const std::string file =
        run.file("digital.CFG",
                 std::string(Header) + "AD0;-14336;\r\nIM05;8S;01;\r\nCH01MO760;'a';'b';{1;0}\r\n");
    const Outcome outcome = run({"statements", file});
    EXPECT_EQ(outcome.exit_code, ExitDone);
    EXPECT_EQ(outcome.out, "05\tSP'0';CH1MO760;\n");
}

TEST(Rewrite, WritesTheCanonicalForm) {
    const TerminalRun run;
    const std::string file = run.file("in.CFG", Fitting);
    EXPECT_EQ(run({"rewrite", file, run.path("out.CFG")}).exit_code, ExitDone);
    const auto body = [](const std::string& text) { return text.substr(text.find('\n') + 1); };
    EXPECT_EQ(body(run.read("out.CFG")), body(Fitting));
}

TEST(Rewrite, OfAFileWithProblemsWritesNothing) {
    const TerminalRun run;
    const std::string file = run.file("in.CFG", std::string(Header) + "UR7;\r\n");
    const Outcome outcome = run({"rewrite", file, run.path("out.CFG")});
    EXPECT_EQ(outcome.exit_code, ExitFailed);
    EXPECT_EQ(outcome.messages, file + ":2: Invalid Poll Rate of: 7\n");
    EXPECT_FALSE(run.exists("out.CFG"));
}

// Every kind of column that a type adds; labels take one character each, whatever UTF-8 makes of
// them.
TEST(Show, PrintsTheChannelsOfEachPodAsATable) {
    const TerminalRun run;
    const std::string file =
        run.file("plant.CFG", std::string(Header) +
                                  "AD0;-14336;\r\n"
                                  "IM05;8S;02;\r\nCH01MO760;'Gate';'';{1;0}\r\n"
                                  "IM09;7S;02;\r\nCH02MO641;'Beam';'\xb5m';{2.5;-1}\r\n"
                                  "CH02GA2.1;\r\nCH02OF0.5;0.25;\r\n"
                                  "IM12;7V;03;\r\nCH01MO203;'';'Ohm';{1;0}\r\n");
    const Outcome all = run({"show", file});
    EXPECT_EQ(all.exit_code, ExitDone) << all.messages;
    const std::string strain =
        "ZAV 09 - 7S Solid State 6 Pole\n"
        "Chan  Mode                    Range  Label  Units  Mx+c     Gauge Factor  Offset     "
        "Initial Volt\n"
        "01    Skip\n"
        "02    Strain Full Bridge 8mA  20mV   Beam   \u00b5m     2.5x+-1  02.100000     00.500000  "
        "00.250000\n";
    EXPECT_EQ(all.out,
              "ZAV 05 - 8S Switch I/O\n"
              "Chan  Mode           Range           Label  Units  Mx+c\n"
              "01    Event Capture  -ve going edge  Gate          1x+0\n"
              "02    Skip\n\n" +
                  strain +
                  "\nZAV 12 - 7V Universal ZAV\n"
                  "Chan  Mode               Range              Label  Units  Mx+c  Sample Rate  "
                  "Time Out\n"
                  "01    Resistance 4 Term  2k5 Ohm                   Ohm    1x+0\n"
                  "02    Skip               6 Pole with Ch. 1\n"
                  "03    Skip\n");
    EXPECT_EQ(run({"show", file, "--pod", "9"}).out, strain);
}

TEST(Show, OfNothingSaysSo) {
    const TerminalRun run;
    const std::string file = run.file("in.CFG", Fitting);
    for (const auto& [arguments, complaint] :
         {std::pair<std::vector<std::string>, std::string>{{"show", file, "--pod", "4"},
                                                           file + " configures no ZAV 4\n"},
          {{"show", run.file("none.CFG", Header)},
           run.path("none.CFG") + " configures no ZAV\n"}}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exit_code, ExitUsage);
        EXPECT_EQ(outcome.messages, complaint);
    }
    EXPECT_EQ(run({"show", run.file("bad.CFG", std::string(Header) + "UR7;\r\n")}).exit_code,
              ExitFailed);
}

TEST(DriverOption, NamesWhatIsNoDriverLibrary) {
    const TerminalRun run;
    const std::string file = run.file("no.so", "nothing");
    const Outcome outcome = run({"discover", "--driver", file});
    EXPECT_EQ(outcome.exit_code, ExitUsage);
    EXPECT_TRUE(outcome.messages.find(file) != std::string::npos) << outcome.messages;
}

TEST(DriverOption, ALibraryGivesTheSameAsTheBuiltInNetwork) {
    TerminalRun run;
    run.real_time = true;
    const auto pods_of = [](const std::string& text) {
        return text.substr(0, text.find("Memory"));
    };
    for (const char* command : {"discover", "status"}) {
        const Outcome built_in = run({command});
        const Outcome library =
            run({command, "--driver", std::string(KAVORIX_BINARY_DIR) + "/libzavdrvr-sim.so"});
        EXPECT_EQ(library.exit_code, ExitDone) << library.messages;
        EXPECT_EQ(pods_of(library.out), pods_of(built_in.out));
    }
}

TEST(Verify, FindsPodsThatHoldWhatWasConfigured) {
    const TerminalRun run;
    const Outcome outcome =
        run({"verify", run.file("good.CFG", Fitting), "--network", run.file("two.toml", TwoPods)});
    EXPECT_EQ(outcome.exit_code, ExitDone) << outcome.messages;
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(outcome.messages.ends_with("1 pod compared, 0 differences\n"));
}

TEST(Log, ADayRepeatsByteForByte) {
    const TerminalRun run;
    const std::string network = run.file("two.toml", TwoPods);
    for (const char* name : {"a.DAT", "b.DAT"})
        EXPECT_EQ(run({"log", "--network", network, "--scans", run.path(name), "--duration", "1d",
                       "--interval", "1m", "--speed", "max"})
                      .exit_code,
                  ExitDone);
    EXPECT_EQ(run.read("a.DAT"), run.read("b.DAT"));
    const Outcome info = run({"info", run.path("a.DAT")});
    EXPECT_EQ(info.exit_code, ExitDone);
    EXPECT_TRUE(info.out.find("1440 records") != std::string::npos) << info.out;
    EXPECT_FALSE(run.exists("ERR_LOG.TXT")) << "a run without errors leaves no error log";
}

TEST(Log, RefusesWhatCannotBeLogged) {
    const TerminalRun run;
    const std::string network = run.file("two.toml", TwoPods);
    struct Case {
        std::vector<std::string> arguments;
        const char* complaint;
    };
    for (const Case& c :
         {Case{{"--duration", "1h"}, "Neither --scans nor --events names a file to log to\n"},
          Case{{"--duration", "1h", "--scans", run.path("x.DAT"), "--events", run.path("x.DAT")},
               "Scans and events cannot go to the same file\n"},
          Case{{"--duration", "x", "--scans", run.path("x.DAT")},
               "\"x\" is not a duration such as 90, 15m or 2h (24d at most)\n"},
          Case{{"--duration", "1h", "--scans", run.path("x.DAT"), "--interval", "1500ms"},
               "The interval 1500ms is no multiple of the poll rate, 1000 ms\n"}}) {
        std::vector<std::string> arguments = {"log", "--network", network, "--speed", "max"};
        arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exit_code, ExitUsage);
        EXPECT_TRUE(outcome.messages.ends_with(c.complaint)) << outcome.messages;
        EXPECT_FALSE(run.exists("x.DAT"));
    }
}

TEST(Convert, WritesTheChosenColumns) {
    const TerminalRun run;
    const std::string log = run.path("s.DAT");
    run({"log", "--network", run.file("two.toml", TwoPods), "--scans", log, "--comment", "Test",
         "--duration", "3s", "--speed", "max"});
    const Outcome outcome = run({"convert", log, "--channels", "3/1"});
    EXPECT_EQ(outcome.exit_code, ExitDone) << outcome.messages;
    const std::string header = "\"" + run.path("s.CSV") +
                               "\"\r\n\"Test\"\r\n"
                               "\"DATE\",\"TIME\",\"MILLISECOND\",\"ZAV3/Ch1\"\r\n"
                               ",,,\"\"\r\n,,,\"\"\r\n";
    EXPECT_EQ(run.read("s.CSV").substr(0, header.size()), header);
    EXPECT_TRUE(run.read("s.CSV").ends_with(",1.5\r\n")) << run.read("s.CSV");
}

TEST(Convert, AsksForForceAndForFewerColumns) {
    const TerminalRun run;
    const std::string log = run.path("s.DAT");
    run({"log", "--network", run.file("two.toml", TwoPods), "--scans", log, "--duration", "3s",
         "--speed", "max"});
    EXPECT_EQ(run({"convert", log}).exit_code, ExitDone);
    const Outcome again = run({"convert", log});
    EXPECT_EQ(again.exit_code, ExitUsage);
    EXPECT_EQ(again.messages,
              "The file " + run.path("s.CSV") + " exists. --force overwrites it.\n");
    EXPECT_EQ(run({"convert", log, "--force"}).exit_code, ExitDone);
    EXPECT_EQ(run({"convert", log, "--force", "--channels", "9/1"}).exit_code, ExitUsage);
    EXPECT_EQ(run({"convert", run.file("no.DAT", "nothing")}).exit_code, ExitUsage);
    EXPECT_EQ(run({"convert", run.path("missing.DAT")}).exit_code, ExitUsage);
}

// A log is verified, salvaged and mended; nothing harms it, whatever the text is called.
TEST(Convert, AndInfoAndRepairKeepTheLogAndNameItsDamage) {
    const TerminalRun run;
    const std::string log = run.path("a.DAT");
    run({"log", "--network", run.file("two.toml", TwoPods), "--pods", "3", "--scans", log,
         "--comment", "Kiln \x1B", "--duration", "10s", "--speed", "max"});
    const std::string whole = run.read("a.DAT");
    EXPECT_NE(run({"convert", log}).messages.find("records verified"), std::string::npos);
    const Outcome info = run({"info", log});
    EXPECT_EQ(info.exit_code, ExitDone);
    EXPECT_NE(info.out.find(": Kiln ?\n"), std::string::npos) << info.out;
    std::filesystem::create_symlink("a.DAT", run.path("link.CSV"));
    EXPECT_EQ(run({"convert", log, "-o", run.path("link.CSV"), "--force"}).exit_code, ExitUsage);
    EXPECT_EQ(run.read("a.DAT"), whole);
    EXPECT_EQ(run({"repair", log}).out, "There is nothing to mend.\n");

    std::string damaged = whole;
    const std::size_t count = damaged.find(std::string("\x00\x00\xA8\x41", 4));  // 21 singles
    ASSERT_NE(count, std::string::npos);
    damaged[count + 3] = 'x';
    run.file("a.DAT", damaged);
    EXPECT_EQ(run({"info", log}).exit_code, ExitFailed);
    EXPECT_EQ(run({"convert", log, "--force"}).exit_code, ExitFailed);
    EXPECT_NE(run({"convert", log, "--force", "--salvage"}).messages.find("is damaged in 1 place"),
              std::string::npos);
    const Outcome mended = run({"repair", log});
    EXPECT_EQ(mended.exit_code, ExitDone);
    EXPECT_EQ(mended.out.find("The log as it was: " + log + ".damaged\n"), 0u) << mended.out;
    EXPECT_EQ(run.read("a.DAT.damaged"), damaged);
    EXPECT_EQ(run({"info", log}).exit_code, ExitDone);
}

TEST(Output, ShowsNoControlCharactersAndTellsWhatCouldNotBeWritten) {
    EXPECT_EQ(for_terminal("a\tb\n\x1B[2J\x7F\x9B\xC2\x9B|\xC3\xA4|\xE2\x82\xAC|\xE2\x82"),
              "a\tb\n?[2J???|\xC3\xA4|\xE2\x82\xAC|??");
    std::ostringstream out;
    std::ostringstream messages;
    for (const int code : {ExitDone, ExitFailed, ExitUsage})
        EXPECT_EQ(after_output(out, messages, code), code);
    EXPECT_EQ(messages.str(), "");
    out.setstate(std::ios::badbit);
    EXPECT_EQ(after_output(out, messages, ExitDone), ExitFailed);
    EXPECT_EQ(after_output(out, messages, ExitUsage), ExitUsage);
    EXPECT_NE(messages.str(), "");
}

}  // namespace kavorix::test
