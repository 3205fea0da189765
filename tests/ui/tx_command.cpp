#include "ui/card/tx_command.h"

#include <gtest/gtest.h>

#include "support/ui_rig.h"

namespace kavorix::test {
namespace {

TEST(CommandHistory, GoesBackAndForthAndReturnsToTheLineThatWasLeft) {
    CommandHistory history;
    for (const char* command : {"TR", "HA", "ME5"}) history.add(command);
    EXPECT_EQ(history.older("X"), "ME5");
    EXPECT_EQ(history.older("ME5"), "HA");
    EXPECT_EQ(history.older("HA"), "TR");
    EXPECT_EQ(history.older("TR"), "TR");  // the oldest stays
    EXPECT_EQ(history.newer("TR"), "HA");
    EXPECT_EQ(history.newer("HA"), "ME5");
    EXPECT_EQ(history.newer("ME5"), "X");
    EXPECT_EQ(history.newer("X"), "X");
}

TEST(CommandHistory, HoldsARepeatedCommandOnce) {
    CommandHistory history;
    for (const char* command : {"ST", "TR", "TR"}) history.add(command);
    EXPECT_EQ(history.older(""), "TR");
    EXPECT_EQ(history.older("TR"), "ST");
}

TEST(CommandHistory, DropsTheOldestBeyondItsSize) {
    CommandHistory history;
    for (std::size_t i = 0; i <= CommandHistory::MostEntries; ++i)
        history.add("ME" + std::to_string(i));
    std::string line;
    for (std::size_t i = 0; i < 2 * CommandHistory::MostEntries; ++i) line = history.older(line);
    EXPECT_EQ(line, "ME1");
}

TEST(CommandHistory, WithoutEntriesLeavesTheLine) {
    CommandHistory history;
    EXPECT_EQ(history.older("A"), "A");
    EXPECT_EQ(history.newer("A"), "A");
}

class TxCommandTest : public testing::Test, public UiRig {
  protected:
    TxCommandTest() {
        station({{3, "7VJA 0F 1.00"}, {8, "8RCA 0F 1.00"}});
        click({3});
    }
    void type(const std::string& text) {
        dialog.screen.txtTxCmd.text = text;
        dialog.txtTxCmd_Change();
    }

    CommandHistory history;
    Lines sent;
    TxCommandDialog dialog{{commands, link, history, dialogs, failures,
                            [this](std::string_view text) { sent.emplace_back(text); }}};
};

TEST_F(TxCommandTest, TypedCharactersBecomeUpperCase) {
    type("ch1mo10'2.5'");
    EXPECT_EQ(dialog.screen.txtTxCmd.text, "CH1MO10'2.5'");
}

TEST_F(TxCommandTest, SendsTheTextWithASemicolonAndAwaitsResults) {
    type("en;tr");
    dialog.cmdSend_Click();
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 3 EN", "Tx 3 TR"}));
    EXPECT_EQ(pods_with(run_time.Link.Triggered), std::vector{3});
    EXPECT_EQ(dialog.screen.txtTxCmd.text, "");
    EXPECT_EQ(sent, Lines{"EN;TR;"});
    EXPECT_FALSE(dialog.closed());
}

TEST_F(TxCommandTest, APodThatFailsIsNotAwaited) {
    click({8});
    driver.pod(8).tx_status = 1;
    type("TR");
    dialog.cmdSend_Click();
    EXPECT_EQ(pods_with(run_time.Link.Triggered), std::vector{3});
}

TEST_F(TxCommandTest, RefusesAnEmptyText) {
    dialog.cmdSend_Click();
    EXPECT_EQ(dialogs.take_boxes(),
              (std::vector<ShownBox>{{"No Command String was Entered!", 64, "KAVORIX"}}));
    EXPECT_EQ(dialogs.beeps, 1);
    EXPECT_TRUE(driver.recorded("Tx").empty());
    EXPECT_TRUE(pods_with(run_time.Link.Triggered).empty());
}

TEST_F(TxCommandTest, CannotSendTwiceAtOnce) {
    type("RE");
    loop.call_later(100, [&] {
        EXPECT_FALSE(dialog.screen.cmdSend.enabled);
        type("TR");
        dialog.cmdSend_Click();
    });
    dialog.cmdSend_Click();
    EXPECT_EQ(driver.recorded("Tx"), Lines{"Tx 3 RE"});
    EXPECT_EQ(dialog.screen.txtTxCmd.text, "TR");  // still there for another try
    EXPECT_TRUE(dialog.screen.cmdSend.enabled);
    EXPECT_EQ(sent, Lines{"RE;"});
}

TEST_F(TxCommandTest, ArrowKeysCallUpWhatWasSent) {
    for (const char* command : {"EN", "AR"}) {
        type(command);
        dialog.cmdSend_Click();
    }
    type("S");
    dialog.history_older();
    EXPECT_EQ(dialog.screen.txtTxCmd.text, "AR");
    dialog.history_older();
    EXPECT_EQ(dialog.screen.txtTxCmd.text, "EN");
    dialog.history_newer();
    dialog.history_newer();
    EXPECT_EQ(dialog.screen.txtTxCmd.text, "S");
}

TEST_F(TxCommandTest, CancelSendsNothing) {
    type("TR");
    dialog.cmdCancel_Click();
    EXPECT_TRUE(dialog.closed());
    EXPECT_TRUE(driver.recorded("Tx").empty());
}

}  // namespace
}  // namespace kavorix::test
