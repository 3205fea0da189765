#include "base/trap.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <system_error>

namespace kavorix {
namespace {

struct Reported {};

// Remembers the last report and leaves by an exception, as the product's reporter does.
class RememberingReporter : public FailureReporter {
  public:
    int reports = 0;
    std::int16_t number = 0;
    std::string description;
    std::string location;

    [[noreturn]] void ReportError(std::int16_t n, std::string_view text,
                                  std::string_view where) override {
        ++reports;
        number = n;
        description = text;
        location = where;
        throw Reported{};
    }
};

template <class Failure>
RememberingReporter report_of(const Failure& failure) {
    RememberingReporter reporter;
    EXPECT_THROW(trapped(reporter, "TX/TXString", [&] { throw failure; }), Reported);
    EXPECT_EQ(reporter.reports, 1);
    EXPECT_EQ(reporter.location, "TX/TXString");
    return reporter;
}

TEST(Trapped, GivesBackWhatTheBodyReturns) {
    RememberingReporter reporter;
    EXPECT_EQ(trapped(reporter, "TX/TXString", [] { return 7; }), 7);
    int target = 1;
    trapped(reporter, "TX/TXString", [&]() -> int& { return target; }) = 2;
    EXPECT_EQ(target, 2);
    EXPECT_EQ(reporter.reports, 0);
}

TEST(Trapped, ASystemErrorIsReportedWithItsNumberAndText) {
    const std::system_error failure(ENOSPC, std::generic_category(), "Writing \"a\"");
    const auto report = report_of(failure);
    EXPECT_EQ(report.number, ENOSPC);
    EXPECT_EQ(report.description, failure.what());
}

TEST(Trapped, TheNumberIsCutToItsLow16Bits) {
    EXPECT_EQ(report_of(std::system_error(0x12345, std::generic_category())).number, 0x2345);
}

TEST(Trapped, MemoryThatRanOutHasItsNumberToo) {
    EXPECT_EQ(report_of(std::bad_alloc()).number, ENOMEM);
}

TEST(Trapped, AnyOtherFailureHasNumberZero) {
    const auto report = report_of(std::out_of_range("no such pod"));
    EXPECT_EQ(report.number, 0);
    EXPECT_EQ(report.description, "no such pod");
}

TEST(Trapped, TheEndOfTheProgramPassesUnreported) {
    RememberingReporter reporter;
    try {
        trapped(reporter, "outer",
                [&] { trapped(reporter, "inner", [] { throw ProgramEnded{3}; }); });
        FAIL() << "passed nothing on";
    } catch (const ProgramEnded& end) {
        EXPECT_EQ(end.exit_code, 3);
    }
    EXPECT_EQ(reporter.reports, 0);
}

TEST(Trapped, AFailureIsReportedByTheInnermostProcedureOnly) {
    RememberingReporter reporter;
    EXPECT_THROW(
        trapped(reporter, "outer",
                [&] { trapped(reporter, "inner", [] { throw std::runtime_error("x"); }); }),
        Reported);
    EXPECT_EQ(reporter.reports, 1);
    EXPECT_EQ(reporter.location, "inner");
}

}  // namespace
}  // namespace kavorix
