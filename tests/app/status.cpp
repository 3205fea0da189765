#include <gtest/gtest.h>

#include "app/terminal_run.h"
#include "ui/card/status_view.h"

namespace kavorix::test {
namespace {

TEST(Status, PrintsTheViewAsText) {
    const TerminalRun run;
    const Outcome outcome = run({"status", "--network", run.file("two.toml", TwoPods)});
    EXPECT_EQ(outcome.exit_code, ExitDone);
    const auto memory = outcome.out.find("Memory:  ");
    ASSERT_NE(memory, std::string::npos);
    EXPECT_EQ(outcome.out.substr(0, memory),
              std::string(StatusHeader) +
                  "\n"
                  "03          7V Universal ZAV                    Universal             Yes     "
                  "    Yes         1.00              0\n"
                  "07          8R Digital I/O                      Digital               Yes     "
                  "    Yes         1.00              0\n\n"
                  " Address:         CA00\n"
                  "Poll Rate:        1000ms\n"
                  "Rx/Tx Errors:     0\n"
                  "ZAVS Connected:   2\n\n");
    EXPECT_TRUE(outcome.out.ends_with(" KB Free\n"));
    EXPECT_FALSE(run.exists("ERR_LOG.TXT"));
}

TEST(Status, OfSomePods) {
    const TerminalRun run;
    const std::string network = run.file("two.toml", TwoPods);
    const Outcome outcome = run({"status", "--network", network, "--pods", "7"});
    EXPECT_EQ(outcome.exit_code, ExitDone);
    EXPECT_EQ(outcome.out.find("\n03 "), std::string::npos);
    EXPECT_NE(outcome.out.find("\n07 "), std::string::npos);
    EXPECT_EQ(run({"status", "--network", network, "--pods", "8"}).exit_code, ExitUsage);
}

TEST(Status, TellsOfAPodThatDoesNotAnswer) {
    const TerminalRun run;
    const std::string network = run.file(
        "faulty.toml", std::string(TwoPods) + "[[pod.fault]]\nkind = \"no_status\"\nfrom_s = 0\n");
    const Outcome outcome = run({"status", "--network", network});
    EXPECT_EQ(outcome.exit_code, ExitFailed);
    EXPECT_NE(outcome.out.find("\n07          ERROR - ZAV Removed from Poll Table\n"),
              std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.messages.find("ERROR! - Receive Error (ZAV:07)"), std::string::npos);
}

TEST(Status, WithoutACardFails) {
    const TerminalRun run;
    const Outcome outcome = run({"status", "--network", run.file("none.toml", "")});
    EXPECT_EQ(outcome.exit_code, ExitFailed);
    EXPECT_EQ(outcome.out, "");
}

}  // namespace
}  // namespace kavorix::test
