#include "base/trap.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <system_error>

#include "support/recording_failures.h"

namespace kavorix {
namespace {

using test::RecordingFailures;

TEST(Trapped, GivesBackWhatTheBodyReturns) {
    RecordingFailures failures;
    EXPECT_EQ(trapped(failures, "TX/TXString", [] { return 7; }), 7);
    int target = 1;
    trapped(failures, "TX/TXString", [&]() -> int& { return target; }) = 2;
    EXPECT_EQ(target, 2);
    EXPECT_TRUE(failures.reports.empty());
}

// What is told of a failure inside two procedures: the inner one tells it, the program ends.
template <class Failure>
std::string told_of(const Failure& failure) {
    RecordingFailures failures;
    EXPECT_THROW(trapped(failures, "outer",
                         [&] { trapped(failures, "TX/TXString", [&] { throw failure; }); }),
                 ProgramEnded);
    EXPECT_EQ(failures.reports.size(), 1U);
    return failures.reports.at(0);
}

TEST(Trapped, AFailureIsReportedOnceWithItsNumberAndText) {
    const std::system_error full(ENOSPC, std::generic_category(), "Writing \"a\"");
    EXPECT_EQ(told_of(full), "28 TX/TXString: " + std::string(full.what()));
    EXPECT_EQ(told_of(std::bad_alloc()), "12 TX/TXString: " + std::string(std::bad_alloc().what()));
    EXPECT_EQ(told_of(std::out_of_range("no such pod")), "0 TX/TXString: no such pod");
    const std::system_error far(0x12345, std::generic_category());
    EXPECT_TRUE(told_of(far).starts_with("9029 ")) << "the low 16 bits of the number";
}

TEST(Trapped, TheEndOfTheProgramPassesUnreported) {
    RecordingFailures failures;
    try {
        trapped(failures, "outer",
                [&] { trapped(failures, "inner", [] { throw ProgramEnded{3}; }); });
        FAIL() << "passed nothing on";
    } catch (const ProgramEnded& end) {
        EXPECT_EQ(end.exit_code, 3);
    }
    EXPECT_TRUE(failures.reports.empty());
}

}  // namespace
}  // namespace kavorix
