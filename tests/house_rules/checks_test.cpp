#include "house_rules/checks.h"

#include <gtest/gtest.h>

namespace kavorix::test {
namespace {

// The checks themselves, on texts made up to break the rules. Words that the tree must not hold are
// put together here as well.
const std::string Forbidden = std::string("sp") + "ec";
const std::string ToDo = std::string("TO") + "DO";

Breaches all(const std::string& path, const std::string& text) {
    return check_file({path, text}, house_arrows());
}

TEST(CheckArrows, IncludesReachTheRoomsBelow) {
    const std::string all_below =
        "#include \"link/command_link.h\"\n#include \"model/records.h\"\n"
        "#include \"platform/driver.h\"\n#include \"base/text.h\"\n#include <vector>\n";
    EXPECT_EQ(all("src/link/a.cpp", all_below), Breaches{});
    EXPECT_EQ(all("src/app/a.cpp", all_below + "#include \"ui/qt/x.h\"\n#include \"sim/y.h\"\n"),
              Breaches{});
    EXPECT_EQ(
        all("src/sim/a.cpp", "#include \"base/text.h\"\n\n  #  include \"model/records.h\"\n"),
        (Breaches{"src/sim/a.cpp:3: sim must not know model"}));
    EXPECT_EQ(all("src/link/a.cpp", "#include \"config/statements.h\"\n"),
              (Breaches{"src/link/a.cpp:1: link must not know config"}));
    EXPECT_EQ(all("src/ui/a.cpp", "#include \"ui/qt/mirrors.h\"\n"),
              (Breaches{"src/ui/a.cpp:1: ui must not know ui/qt"}));
    EXPECT_EQ(all("src/config/a.cpp", "#include \"acquire/poll_cycle.h\"\n"),
              (Breaches{"src/config/a.cpp:1: config must not know acquire"}));
    EXPECT_EQ(all("src/base/a.cpp", "#include \"support/rig.h\"\n#include \"text.h\"\n"),
              (Breaches{"src/base/a.cpp:1: includes no room: support/rig.h",
                        "src/base/a.cpp:2: includes no room: text.h"}));
    EXPECT_EQ(all("src/ui/qt/a.cpp", "#include \"ui_frmMain.h\"\n"), Breaches{});
    EXPECT_EQ(all("src/cellar/a.cpp", ""), (Breaches{"src/cellar/a.cpp:1: is in no room"}));
    EXPECT_EQ(all("src/a.cpp", ""), (Breaches{"src/a.cpp:1: is in no room"}));
    EXPECT_EQ(all("tests/link/a.cpp", "#include \"ui/operations.h\"\n"), Breaches{});
    EXPECT_EQ(all("src/sim/library/a.cpp",
                  "#include \"sim/library/b.h\"\n#include \"model/records.h\"\n"),
              (Breaches{"src/sim/library/a.cpp:2: sim must not know model"}));
}

TEST(CheckArrows, TheTableIsReadFromABuildDescription) {
    EXPECT_EQ(arrows_in("include(x)\nkavorix_room(base)\nkavorix_room(ui/qt ui base)\n"),
              (Arrows{{"base", {}}, {"ui/qt", {"ui", "base"}}}));
}

TEST(CheckToolkit, StaysInItsRooms) {
    EXPECT_EQ(all("src/ui/a.h", "#pragma once\n#include <QString>\n"),
              (Breaches{"src/ui/a.h:2: the toolkit outside ui/qt: QString"}));
    EXPECT_EQ(all("src/graphs/a.cpp", "#include <qcustomplot.h>\n"),
              (Breaches{"src/graphs/a.cpp:1: the toolkit outside ui/qt: qcustomplot.h"}));
    EXPECT_EQ(all("src/ui/qt/a.cpp", "#include <QString>\n"), Breaches{});
    EXPECT_EQ(all("src/app/a.cpp", "#include <QString>\n"), Breaches{});
}

TEST(CheckClocks, StayInTheEventLoops) {
    const std::string clock = "auto now = std::chrono::steady_clock::now();\n";
    EXPECT_EQ(all("src/acquire/a.cpp", "\n" + clock),
              (Breaches{"src/acquire/a.cpp:2: a clock outside the event loops: steady_clock"}));
    EXPECT_EQ(all("tests/acquire/a.cpp", "std::this_thread::sleep_for(1ms);\n"),
              (Breaches{"tests/acquire/a.cpp:1: a clock outside the event loops: sleep_for"}));
    for (const char* call :
         {"time(nullptr);", "std::time(&t);", "usleep(5);", "sleep(1);", "x = ::time(0);",
          "localtime(&t);", "gettimeofday(&t, nullptr);", "QTimer timer;"})
        EXPECT_GE(all("src/link/a.cpp", std::string(call) + "\n").size(), 1u) << call;
    for (const char* path :
         {"src/platform/host_event_loop.cpp", "src/ui/qt/qt_event_loop.cpp", "bench/poll_tick.cpp"})
        EXPECT_EQ(all(path, clock), Breaches{});
    for (const char* harmless :
         {"loop.wall_time();", "// sleep well", "\"sleep\";", "int sleeps = 0;", "runtime(0);",
          "double TrendColumns::time(int i);", "x.time(0);"})
        EXPECT_EQ(all("src/link/a.cpp", std::string(harmless) + "\n"), Breaches{}) << harmless;
}

TEST(CheckFileCalls, StayInThePlatform) {
    for (const char* call : {"std::ifstream in(path);", "fopen(path, \"r\");", "::open(path, 0);",
                             "std::filesystem::exists(path);", "std::fstream f;"})
        EXPECT_EQ(all("src/sim/a.cpp", std::string(call) + "\n").size(), 1u) << call;
    EXPECT_EQ(all("src/link/a.cpp", "int f = ::open(path, 0);\n"),
              (Breaches{"src/link/a.cpp:1: a file call outside the platform: ::open"}));
    EXPECT_EQ(all("src/link/a.cpp", "files.open(p, m);\nvoid ErrorLog::open() {}\n"), Breaches{});
    EXPECT_EQ(all("src/platform/host_files.cpp", "::open(path, 0);\n"), Breaches{});
    EXPECT_EQ(all("tests/link/a.cpp", "std::ifstream in(path);\n"), Breaches{});
}

TEST(CheckLocale, NumbersDoNotFollowIt) {
    EXPECT_EQ(all("src/base/a.cpp", "double d = std::stod(text);\n"),
              (Breaches{"src/base/a.cpp:1: a number by the locale: stod"}));
    EXPECT_EQ(all("src/base/a.cpp", "std::snprintf(b, 9, \"%f\", d);\n").size(), 1u);
}

TEST(CheckWords, FindsThemInAnyText) {
    EXPECT_EQ(all("README.md", "Fine.\nSee the " + Forbidden + " for more.\n"),
              (Breaches{"README.md:2: a word without a place here: " + Forbidden}));
    EXPECT_EQ(all("docs/a.md",
                  "as in Part "
                  "3.1\n")
                  .size(),
              1u);
    EXPECT_EQ(all("src/base/a.cpp",
                  "// see (part "
                  "12.4)\n")
                  .size(),
              0u);  // two digits: no chapter
    EXPECT_EQ(all("docs/a.md", "in part 3 of 4, counterpart 3.1\n"), Breaches{});
    EXPECT_EQ(all("src/base/a.cpp", "// special inspection of a " + Forbidden + "trum\n"),
              Breaches{});
    EXPECT_EQ(all("docs/a.md", "The " + std::string(1, 'S') + "PEC says\n").size(), 1u);
}

TEST(CheckLeftovers, FindsNotesAndUnmergedText) {
    EXPECT_EQ(all("src/base/a.cpp", "int a;\nint b;  // " + ToDo + ": later\n"),
              (Breaches{"src/base/a.cpp:2: a leftover: " + ToDo}));
    EXPECT_EQ(all("README.md", std::string(7, '<') + " HEAD\n").size(), 1u);
    EXPECT_EQ(all("README.md", std::string(7, '=') + "\n" + ToDo + "S\n"), Breaches{});
}

TEST(CheckLength, FilesEndInTime) {
    std::string text;
    for (int line = 0; line < MostLines; ++line) text += "\n";
    EXPECT_EQ(all("src/base/a.cpp", text), Breaches{});
    EXPECT_EQ(all("src/base/a.cpp", text + "\n"),
              (Breaches{"src/base/a.cpp:601: 601 lines, more than 600"}));
    EXPECT_EQ(all("docs/a.md", text + "\n"), Breaches{});
}

TEST(CheckHeader, IsGuarded) {
    EXPECT_EQ(all("src/base/a.h", "int a;\n"),
              (Breaches{"src/base/a.h:1: a header without #pragma once"}));
    EXPECT_EQ(all("src/base/a.h", "// #pragma once\n").size(), 1u);
    EXPECT_EQ(all("src/base/a.h", "\n#pragma once\n"), Breaches{});
    EXPECT_EQ(all("src/base/a.h", "#ifndef A_H\n").size(), 1u);
    EXPECT_EQ(all("src/base/a.h", "#ifndef A_H\nextern \"C\" {}\n"), Breaches{});
}

struct CodeRow {
    const char* text;
    const char* code;
};

TEST(CodeOnly, BlanksCommentsAndLiterals) {
    const CodeRow rows[] = {
        {"a; // b\nc", "a;     \nc"},           {"a /* b\nc */ d", "a     \n     d"},
        {"f(\"x // y\") z", "f(        ) z"},   {"\"a\\\"b\" c", "       c"},
        {"c = '\"'; d", "c =    ; d"},          {"n = 36'000'000; // x", "n = 36'000'000;     "},
        {"R\"(a\"b)\" c", "         c"},        {"R\"x(a)\")x\" c", "           c"},
        {"/* never closed", "               "}, {"\"never closed\nnext", "             \nnext"},
    };
    for (const CodeRow& row : rows) EXPECT_EQ(code_only(row.text), row.code) << row.text;
}

}  // namespace
}  // namespace kavorix::test
