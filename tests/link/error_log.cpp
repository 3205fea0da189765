#include "link/error_log.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <system_error>

#include "support/rig.h"

namespace kavorix {
namespace {

using test::LogHeader;
using test::Rig;
using Boxes = std::vector<test::ShownBox>;

class ErrorLogTest : public testing::Test, protected Rig {};

TEST_F(ErrorLogTest, AFreshLogHasItsHeaderAndTakesLinesAtOnce) {
    files.put("/station/ERR_LOG.TXT", "of the last run\r\n");
    error_log.open();
    EXPECT_EQ(log_text(), "2026-01-05 08:00:00\r\n\r\n---- KAVORIX Error file ----\r\n\r\n");
    error_log.write_line(" first");
    error_log.write_line("");
    EXPECT_EQ(log_text(), LogHeader + " first\r\n\r\n");
}

TEST_F(ErrorLogTest, NothingIsWrittenToALogThatIsNotOpen) {
    error_log.write_line("before");
    EXPECT_FALSE(files.has("/station/ERR_LOG.TXT"));
    error_log.open();
    error_log.close();
    error_log.write_line("after");
    error_log.close();
    EXPECT_EQ(log_text(), LogHeader);
}

TEST_F(ErrorLogTest, RemovingALogThatIsGoneIsNoFailure) {
    error_log.open();
    error_log.close();
    files.remove("/station/ERR_LOG.TXT");
    EXPECT_NO_THROW(error_log.remove());
}

TEST_F(ErrorLogTest, ARunThatKeepsNoLogLeavesNoFile) {
    ErrorLog none(files, loop, "/station", false);
    none.open();
    none.write_line("line");
    none.append_last_words("last");
    none.remove();
    EXPECT_EQ(files.paths(), test::Lines{});
}

struct ReportRow {
    std::int16_t number;
    const char* description;
    const char* location;
    const char* shown;
    const char* logged;
};

TEST_F(ErrorLogTest, AFailureIsShownThenLoggedThenTheProgramEnds) {
    const ReportRow rows[] = {
        {28, "No space left on device", "TX/TXString",
         "A serious error has occurred in KAVORIX at TX/TXString\n\n"
         "Error code : 28, No space left on device\n\r\nKAVORIX will stop",
         "A serious error has occurred in KAVORIX at TX/TXString\r\n\r\n"
         "Error code : 28, No space left on device\r\n\r\nKAVORIX will stop\r\n"},
        {-7, "", "  frmMain/Form_Load ",
         "A serious error has occurred in KAVORIX at frmMain/Form_Load\n\n"
         "Error code : -7, \n\r\nKAVORIX will stop",
         "A serious error has occurred in KAVORIX at frmMain/Form_Load\r\n\r\n"
         "Error code : -7, \r\n\r\nKAVORIX will stop\r\n"},
        {0, "why", "",
         "A serious error has occurred in KAVORIX.\n\nError code : 0, why\n\r\nKAVORIX will stop",
         "A serious error has occurred in KAVORIX.\r\n\r\nError code : 0, why\r\n\r\n"
         "KAVORIX will stop\r\n"},
        // A description comes as UTF-8 and is shown in the program's code page.
        {2, "f\xC3\xBCr \xE4\xB8\xAD", "   ",
         "A serious error has occurred in KAVORIX.\n\nError code : 2, f\xFCr ?\n\r\n"
         "KAVORIX will stop",
         "A serious error has occurred in KAVORIX.\r\n\r\nError code : 2, f\xFCr ?\r\n\r\n"
         "KAVORIX will stop\r\n"},
    };
    for (const ReportRow& row : rows) {
        SCOPED_TRACE(row.location);
        Rig rig;
        rig.error_log.open();
        rig.error_log.write_line(" an error before");
        rig.dialogs.pointer = Pointer::Busy;
        rig.dialogs.at_box([&](const test::ShownBox&) {
            EXPECT_EQ(rig.log_text(), LogHeader + " an error before\r\n");
            EXPECT_EQ(rig.dialogs.pointer, Pointer::Default);
        });
        try {
            rig.failures.ReportError(row.number, row.description, row.location);
        } catch (const ProgramEnded& ended) {
            EXPECT_EQ(ended.exit_code, 1);
        }
        EXPECT_EQ(rig.dialogs.boxes, (Boxes{{row.shown, 16, "KAVORIX"}}));
        EXPECT_EQ(rig.log_text(), LogHeader + " an error before\r\n" + row.logged);
        EXPECT_EQ(rig.driver.recorded(), test::Lines{});
        rig.error_log.write_line("too late");
        EXPECT_EQ(rig.log_text(), LogHeader + " an error before\r\n" + row.logged);
    }
}

TEST_F(ErrorLogTest, ALogThatCannotBeWrittenDoesNotHideTheFailure) {
    error_log.open();
    files.refuse("/station/ERR_LOG.TXT");
    EXPECT_THROW(failures.ReportError(5, "why", "A/b"), ProgramEnded);
    EXPECT_EQ(dialogs.boxes.size(), 1u);
}

TEST_F(ErrorLogTest, TrappedFailuresAreReportedWithTheirNumbers) {
    const auto thrown = [&](auto throwing) {
        EXPECT_THROW(trapped(failures, "M/p", throwing), ProgramEnded);
        const std::string text = dialogs.take_boxes().at(0).text;
        return text.substr(0, text.find("\n\r\n"));
    };
    const std::string start = "A serious error has occurred in KAVORIX at M/p\n\nError code : ";
    EXPECT_EQ(thrown([] { throw std::system_error(EACCES, std::generic_category(), "Opening"); }),
              start + "13, Opening: Permission denied");
    EXPECT_EQ(thrown([] { throw std::logic_error("impossible"); }), start + "0, impossible");
}

}  // namespace
}  // namespace kavorix
