#include "link/error_log.h"

#include <gtest/gtest.h>

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

TEST(FailureReport, IsShownThenLoggedThenTheProgramEnds) {
    struct Row {
        std::int16_t number;
        const char* description;
        const char* location;
        const char* where;
        const char* error;
    };
    const Row rows[] = {
        {28, "No space left", "TX/TXString", " at TX/TXString\n", "28, No space left"},
        {-7, "", "  frmMain/Form_Load ", " at frmMain/Form_Load\n", "-7, "},
        {0, "why", "", ".\n", "0, why"},
        // A description comes as UTF-8 and is shown in the program's code page.
        {2, "f\xC3\xBCr \xE4\xB8\xAD", "   ", ".\n", "2, f\xFCr ?"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.location);
        const std::string head = std::string("A serious error has occurred in KAVORIX") + row.where;
        const std::string error = std::string("Error code : ") + row.error;
        const std::string before = LogHeader + " an error before\r\n";
        Rig rig;
        rig.error_log.open();
        rig.error_log.write_line(" an error before");
        rig.dialogs.pointer = Pointer::Busy;
        rig.dialogs.at_box([&](const test::ShownBox&) {
            EXPECT_EQ(rig.log_text(), before);
            EXPECT_EQ(rig.dialogs.pointer, Pointer::Default);
        });
        try {
            rig.failures.ReportError(row.number, row.description, row.location);
        } catch (const ProgramEnded& ended) {
            EXPECT_EQ(ended.exit_code, 1);
        }
        rig.error_log.write_line("too late");
        EXPECT_EQ(rig.dialogs.boxes,
                  (Boxes{{head + "\n" + error + "\n\r\nKAVORIX will stop", 16, "KAVORIX"}}));
        EXPECT_EQ(rig.log_text(), before + head.substr(0, head.size() - 1) + "\r\n\r\n" + error +
                                      "\r\n\r\nKAVORIX will stop\r\n");
        EXPECT_EQ(rig.driver.recorded(), test::Lines{});
    }
}

TEST_F(ErrorLogTest, ALogThatCannotBeWrittenDoesNotHideTheFailure) {
    error_log.open();
    files.refuse("/station/ERR_LOG.TXT");
    EXPECT_THROW(failures.ReportError(5, "why", "A/b"), ProgramEnded);
    EXPECT_EQ(dialogs.boxes.size(), 1u);
}

}  // namespace
}  // namespace kavorix
