#include "base/trap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "support/recording_failures.h"

namespace kavorix {
namespace {

using test::RecordingFailures;
using testing::ElementsAre;

// What a body that throws `failure` is reported as.
template <class Failure>
std::vector<std::string> reports_of(const Failure& failure) {
    RecordingFailures failures;
    EXPECT_THROW(trapped(failures, "TX/TXString", [&] { throw failure; }), ProgramEnded);
    return failures.reports;
}

TEST(Trapped, GivesBackWhatTheBodyReturns) {
    RecordingFailures failures;
    EXPECT_EQ(trapped(failures, "TX/TXString", [] { return 7; }), 7);
    int target = 1;
    trapped(failures, "TX/TXString", [&]() -> int& { return target; }) = 2;
    EXPECT_EQ(target, 2);
    EXPECT_THAT(failures.reports, testing::IsEmpty());
}

TEST(Trapped, AFailureIsReportedWithItsNumberAndText) {
    const std::system_error full(ENOSPC, std::generic_category(), "Writing \"a\"");
    EXPECT_THAT(reports_of(full), ElementsAre("28 TX/TXString: " + std::string(full.what())));
    const std::bad_alloc no_memory;
    EXPECT_THAT(reports_of(no_memory),
                ElementsAre("12 TX/TXString: " + std::string(no_memory.what())));
    EXPECT_THAT(reports_of(std::out_of_range("no such pod")),
                ElementsAre("0 TX/TXString: no such pod"));
}

TEST(Trapped, TheNumberIsCutToItsLow16Bits) {
    const std::system_error failure(0x12345, std::generic_category());
    EXPECT_THAT(reports_of(failure), ElementsAre(testing::StartsWith("9029 ")));
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
    EXPECT_THAT(failures.reports, testing::IsEmpty());
}

TEST(Trapped, AFailureIsReportedByTheInnermostProcedureOnly) {
    RecordingFailures failures;
    EXPECT_THROW(
        trapped(failures, "outer",
                [&] { trapped(failures, "inner", [] { throw std::runtime_error("x"); }); }),
        ProgramEnded);
    EXPECT_THAT(failures.reports, ElementsAre("0 inner: x"));
}

}  // namespace
}  // namespace kavorix
