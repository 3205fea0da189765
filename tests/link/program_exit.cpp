#include "link/program_exit.h"

#include <gtest/gtest.h>

#include "support/rig.h"

namespace kavorix {
namespace {

using test::Lines;
using test::LogHeader;
using test::Rig;
using test::ShownBox;
using Boxes = std::vector<ShownBox>;

const ShownBox Refused{"Cannot Exit:   Continuous Scanning/Logging in Progress", 48, "KAVORIX"};
const ShownBox Unsaved{"Configuration changes made but not saved.\n\nSave changes?", 35, "KAVORIX"};
const ShownBox Sure{"Are you sure you wish to Exit KAVORIX", 33, "KAVORIX"};
const ShownBox TwoErrors{
    "2  ERRORS Occurred during KAVORIX Operation.\n\nWould you like to View the Error Log File?",
    36, "KAVORIX"};

// A running station with pod 5, asked to end. `saved_as` records how it was asked to save.
struct Leaving : Rig {
    Leaving() {
        station({{5, "7RJA 0F 1.00"}});
        start_polling();
    }

    std::int16_t save_result = 0;
    bool saving_clears = true;
    std::vector<int> saved_as;
    ProgramExit program_exit{{driver, dialogs, error_log, failures, polling, configuration,
                              run_time, [this](std::int16_t save_as) {
                                  saved_as.push_back(save_as);
                                  if (saving_clears) configuration.ConfigChanged = 0;
                                  return save_result;
                              }}};

    // Whether the program ended, with exit code 0.
    bool ends() {
        try {
            program_exit.ExitKAVORIX();
        } catch (const ProgramEnded& ended) {
            EXPECT_EQ(ended.exit_code, 0);
            return true;
        }
        return false;
    }
    bool has_log() const { return files.has("/station/ERR_LOG.TXT"); }
    void fail() { errors.RxTxErr(Pod::numbered(5), LinkFault::Transmit, AfterFault::Polled); }
};

TEST(ProgramExit, IsRefusedWhileScanningOrLoggingRuns) {
    for (int running = 0; running < 3; ++running) {
        Leaving rig;
        rig.configuration.ConfigChanged = 1;
        (running == 0   ? rig.run_time.Link.ContScanning
         : running == 1 ? rig.run_time.Log.ScanLogging
                        : rig.run_time.Log.EventLogging) = true;
        EXPECT_FALSE(rig.ends());
        EXPECT_EQ(rig.dialogs.boxes, Boxes{Refused});
        EXPECT_TRUE(rig.tmrPoll->running());
        EXPECT_EQ(rig.driver.recorded(), Lines{});
    }
}

TEST(ProgramExit, AsksAboutUnsavedChangesAndForConfirmation) {
    constexpr auto Yes = Answer::Yes, No = Answer::No, Ok = Answer::Ok, Cancel = Answer::Cancel;
    enum Saving { Works, Abandoned, LeavesTheChanges };
    struct Row {
        const char* what;
        std::int16_t changed;
        std::vector<Answer> answers;
        Saving saving;
        Boxes boxes;
        std::vector<int> saved_as;
        bool ends;
    };
    const Row rows[] = {
        {"nothing changed, sure", 0, {Ok}, Works, {Sure}, {}, true},
        {"nothing changed, not sure", 0, {Cancel}, Works, {Sure}, {}, false},
        {"cancelled", 1, {Cancel}, Works, {Unsaved}, {}, false},
        {"not saved, sure", 1, {No, Ok}, Works, {Unsaved, Sure}, {}, true},
        {"not saved, not sure", 1, {No, Cancel}, Works, {Unsaved, Sure}, {}, false},
        {"saved, sure", 1, {Yes, Ok}, Works, {Unsaved, Sure}, {0}, true},
        {"saved, not sure", 1, {Yes, Cancel}, Works, {Unsaved, Sure}, {0}, false},
        {"saving is abandoned", 1, {Yes}, Abandoned, {Unsaved}, {0}, false},
        {"the file dialog is cancelled", 1, {Yes}, LeavesTheChanges, {Unsaved}, {0}, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        Leaving rig;
        rig.configuration.ConfigChanged = row.changed;
        rig.save_result = row.saving == Abandoned ? 1 : 0;
        rig.saving_clears = row.saving != LeavesTheChanges;
        for (const Answer answer : row.answers) rig.dialogs.answer(answer);
        EXPECT_EQ(rig.ends(), row.ends);
        EXPECT_EQ(rig.dialogs.boxes, row.boxes);
        EXPECT_EQ(rig.saved_as, row.saved_as);
        EXPECT_EQ(rig.has_log(), !row.ends);
        EXPECT_EQ(rig.tmrPoll->running(), !row.ends);
        EXPECT_EQ(rig.driver.recorded(), row.ends ? Lines{"Disconnect 0"} : Lines{});
        EXPECT_EQ(rig.dialogs.unloads, row.ends ? 1 : 0);
    }
}

TEST(ProgramExit, GoesThroughItsStepsInOrder) {
    for (const bool wants_the_log : {true, false}) {
        Leaving rig;
        rig.configuration.Interface.CardHandle = 12;
        rig.configuration.Interface.PowerOn = 1;
        rig.fail();
        rig.fail();
        rig.run_time.Link.ErrorCount = 0;  // a new connection forgets them, the run does not
        rig.dialogs.answer(Answer::Ok);
        rig.dialogs.answer(wants_the_log ? Answer::Yes : Answer::No);
        rig.driver.at_call([&](const test::DriverCall&) {
            EXPECT_FALSE(rig.tmrPoll->running());
            EXPECT_EQ(rig.dialogs.unloads, 0);
        });
        rig.dialogs.at_box([&](const ShownBox& shown) {
            const bool last = shown == TwoErrors;
            EXPECT_EQ(rig.driver.recorded(),
                      last ? (Lines{"PowerOff 12", "Disconnect 12"}) : Lines{});
            EXPECT_EQ(rig.dialogs.unloads, last ? 1 : 0);
        });
        EXPECT_TRUE(rig.ends());
        EXPECT_EQ(rig.dialogs.boxes, (Boxes{Sure, TwoErrors}));
        EXPECT_EQ(rig.log_text(), LogHeader +
                                      " ERROR! - Transmit Error (ZAV:05  Interface:C800)\r\n"
                                      " ERROR! - Transmit Error (ZAV:05  Interface:C800)\r\n");
        EXPECT_EQ(rig.dialogs.edited, wants_the_log ? Lines{"/station/ERR_LOG.TXT"} : Lines{});
    }
}

TEST(ProgramExit, ALogWithoutErrorsIsDeletedBeforeTheCardIsLeft) {
    Leaving rig;
    rig.dialogs.answer(Answer::Ok);
    rig.driver.at_call([&](const test::DriverCall&) { EXPECT_FALSE(rig.has_log()); });
    EXPECT_TRUE(rig.ends());
}

TEST(ProgramExit, StayingKeepsTheLogOpen) {
    Leaving rig;
    rig.dialogs.answer(Answer::Cancel);
    EXPECT_FALSE(rig.ends());
    rig.fail();
    EXPECT_EQ(rig.log_text(), LogHeader + " ERROR! - Transmit Error (ZAV:05  Interface:C800)\r\n");
}

TEST(ProgramExit, AskedAgainWhileItAsksItDoesNothing) {
    Leaving rig;
    rig.dialogs.answer(Answer::Cancel);
    bool nested_ended = false;
    rig.dialogs.at_box([&](const ShownBox&) { nested_ended = rig.ends(); });
    EXPECT_FALSE(rig.ends());
    EXPECT_FALSE(nested_ended);
    EXPECT_EQ(rig.dialogs.boxes, (Boxes{Sure}));

    rig.dialogs.at_box(nullptr);
    rig.dialogs.answer(Answer::Ok);
    EXPECT_TRUE(rig.ends());
}

TEST(ProgramExit, ItsOwnFailureIsReportedUnderItsTraceName) {
    Leaving rig;
    rig.dialogs.answer(Answer::Ok);
    rig.files.refuse("/station/ERR_LOG.TXT");
    EXPECT_THROW(rig.program_exit.ExitKAVORIX(), ProgramEnded);
    EXPECT_EQ(rig.dialogs.boxes.at(1),
              (ShownBox{"A serious error has occurred in KAVORIX at KAVORIX/ExitKAVORIX\n\n"
                        "Error code : 13, Deleting \"/station/ERR_LOG.TXT\": Permission denied"
                        "\n\r\nKAVORIX will stop",
                        16, "KAVORIX"}));
}

}  // namespace
}  // namespace kavorix
