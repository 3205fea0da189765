#include "ui/card/interface_settings.h"

#include <gtest/gtest.h>

#include <sstream>

#include "base/text.h"
#include "support/ui_rig.h"

namespace kavorix::test {
namespace {

constexpr auto CA00 = static_cast<std::int16_t>(0xCA00);
constexpr auto DF00 = static_cast<std::int16_t>(0xDF00);

const ShownBox SaveQuestion{
    "Changes to the Configuration made but not Saved.\n\n"
    "Save Changes before Connecting to new Interface?",
    35, "KAVORIX"};

class InterfaceSettingsTest : public testing::Test, public UiRig {
  protected:
    InterfaceSettingsTest() {
        station({{3, "7VJA 0F 1.00"}, {8, "8RCA 0F 1.00"}});
        dialog.Form_Load();
    }
    void choose_address(std::int16_t address) {
        ASSERT_TRUE(dialog.screen.cboBaseAddr.select_code(address));
    }
    void choose_rate(int rate) { ASSERT_TRUE(dialog.screen.cboUserPollRate.select_code(rate)); }

    // Everything that a connection that does not come about has to leave alone.
    std::string connection() const {
        std::ostringstream text;
        text << hex16(configuration.Interface.CardAddress) << " "
             << configuration.Interface.CardHandle << " " << configuration.Interface.PollRate << " "
             << run_time.Link.PollTable.NumInPoll() << " " << run_time.Link.OperationsEnabled << " "
             << configuration.ZavConfig[2].TypeCode << " " << run_time.Status[2].ident() << " "
             << run_time.Link.NumSelected();
        for (const int pod : pods_with(run_time.Link.PollTable.InPollTable)) text << " " << pod;
        return text.str();
    }

    InterfaceSettingsDialog dialog{{discovery, dialogs, message_line, failures, configuration,
                                    run_time, [this](std::int16_t as) { return save_file(as); }}};
};

TEST_F(InterfaceSettingsTest, ListsAddressesAndRatesWithTheCurrentOnesChosen) {
    const auto texts = [](const ListBox& list) {
        std::string all;
        for (const ListEntry& entry : list.entries) all += entry.text + " ";
        return all;
    };
    EXPECT_EQ(texts(dialog.screen.cboBaseAddr), "C800 CA00 CB00 CC00 CD00 CE00 CF00 D000 DF00 ");
    EXPECT_EQ(texts(dialog.screen.cboUserPollRate),
              "100 250 500 750 1000 1500 2000 3000 5000 10000 ");
    EXPECT_EQ(dialog.screen.cboBaseAddr.index, 0);
    EXPECT_EQ(dialog.screen.cboUserPollRate.index, 4);
    EXPECT_FALSE(dialog.screen.chkPower.checked);
}

TEST_F(InterfaceSettingsTest, ACardElsewhereIsNotInTheListAndStays) {
    configuration.Interface.CardAddress = static_cast<std::int16_t>(0xC900);
    configuration.Interface.PowerOn = 1;
    InterfaceSettingsDialog other(
        {discovery, dialogs, message_line, failures, configuration, run_time, save_file});
    other.Form_Load();
    EXPECT_EQ(other.screen.cboBaseAddr.index, -1);
    EXPECT_TRUE(other.screen.chkPower.checked);
    other.cmdOK_Click();
    EXPECT_TRUE(other.closed());
    EXPECT_TRUE(driver.recorded("Connect").empty());
    EXPECT_EQ(hex16(configuration.Interface.CardAddress), "C900");
}

TEST_F(InterfaceSettingsTest, TheSameAddressChangesRateAndPowerOnly) {
    choose_rate(250);
    dialog.screen.chkPower.checked = true;
    configuration.ConfigChanged = 1;
    dialog.cmdOK_Click();
    EXPECT_EQ(configuration.Interface.PollRate, 250);
    EXPECT_EQ(configuration.Interface.PowerOn, 1);
    EXPECT_TRUE(driver.calls.empty());
    EXPECT_TRUE(dialogs.boxes.empty());
    EXPECT_TRUE(dialog.closed());
}

TEST_F(InterfaceSettingsTest, AnExcludedAddressIsRefusedAndNothingChanges) {
    driver.cards[CA00] = 5;
    run_time.Link.ExcludeAddresses = {CA00};
    choose_address(CA00);
    choose_rate(250);
    dialog.screen.chkPower.checked = true;
    const std::string before = connection();
    dialog.cmdOK_Click();
    EXPECT_EQ(dialogs.take_boxes(),
              (std::vector<ShownBox>{
                  {"Cannot Connect:   Address CA00 is excluded in KAVORIX.INI", 48, "KAVORIX"}}));
    EXPECT_TRUE(driver.recorded("Connect").empty());
    EXPECT_EQ(connection(), before);
    EXPECT_EQ(configuration.Interface.PowerOn, 0);
    EXPECT_FALSE(dialog.closed());
}

// However often it is tried: the interval follows a rate that has come about.
TEST_F(InterfaceSettingsTest, AFailedConnectionLeavesTheLogIntervalAlone) {
    run_time.Log.ScanIntervalChoice = 2000;
    choose_address(CA00);
    choose_rate(500);
    for (int tries = 0; tries < 2; ++tries) {
        dialog.cmdOK_Click();
        EXPECT_EQ(run_time.Log.ScanIntervalChoice, 2000);
    }
}

TEST_F(InterfaceSettingsTest, CancelChangesNothing) {
    choose_rate(250);
    choose_address(CA00);
    dialog.screen.chkPower.checked = true;
    dialog.cmdCancel_Click();
    EXPECT_TRUE(dialog.closed());
    EXPECT_EQ(configuration.Interface.PollRate, 1000);
    EXPECT_EQ(configuration.Interface.PowerOn, 0);
    EXPECT_TRUE(driver.calls.empty());
}

struct Derivation {
    int old_rate, rate;
    std::int32_t interval_ms, derived_ms;
    std::string message;
};

const std::string NotDerived =
    "A new interval for logging scans can not be derived from the new Poll Rate.\n"
    "Log interval set to Poll Rate.";

std::string changed_to(const std::string& interval) {
    return "Interval for logging scans has been changed to " + interval + ".";
}

class LogIntervalTest : public InterfaceSettingsTest,
                        public testing::WithParamInterface<Derivation> {};

TEST_P(LogIntervalTest, FollowsThePollRate) {
    const Derivation& c = GetParam();
    configuration.Interface.PollRate = static_cast<std::int16_t>(c.old_rate);
    run_time.Log.ScanIntervalChoice = c.interval_ms;
    choose_rate(c.rate);
    dialog.cmdOK_Click();
    EXPECT_EQ(run_time.Log.ScanIntervalChoice, c.derived_ms);
    EXPECT_EQ(configuration.Interface.PollRate, c.rate);
    std::vector<ShownBox> expected;
    if (!c.message.empty()) expected.push_back({c.message, c.derived_ms == 0 ? 48 : 64, "KAVORIX"});
    EXPECT_EQ(dialogs.take_boxes(), expected);
}

INSTANTIATE_TEST_SUITE_P(
    All, LogIntervalTest,
    testing::Values(Derivation{1000, 500, 2000, 1000, changed_to("1 second")},
                    Derivation{1000, 750, 1000, 0, NotDerived},
                    Derivation{1000, 2000, 1800000, 3600000, changed_to("1 hour")},
                    Derivation{500, 1000, 1000, 2000, changed_to("2 seconds")},
                    Derivation{1000, 2000, 30000, 60000, changed_to("1 minute")},
                    Derivation{1000, 3000, 300000, 900000, changed_to("15 minutes")},
                    Derivation{1000, 500, 1000, 0, NotDerived},      // half a second
                    Derivation{1000, 2000, 3600000, 0, NotDerived},  // two hours
                    Derivation{10000, 5000, 5000, 0,
                               NotDerived},  // half a poll: to the even number
                    Derivation{2000, 5000, 5000, 10000, changed_to("10 seconds")},  // 2.5 polls: 2
                    Derivation{10000, 100, 3600000, 0, NotDerived},                 // 36 s
                    Derivation{100, 10000, 3600000, 0, NotDerived},                 // 100 hours
                    Derivation{1000, 1000, 2000, 2000, ""},                         // the same rate
                    Derivation{1000, 500, 0, 0, ""}));  // logged at every poll

TEST_F(InterfaceSettingsTest, ConnectsToAnotherCard) {
    driver.cards[CA00] = 5;
    driver.pod(8).present = false;
    driver.add_pod(20, "7RAA 0F 1.00");
    click({3});
    send("EN;");  // polling runs
    driver.calls.clear();
    choose_address(CA00);
    choose_rate(500);
    dialog.cmdOK_Click();

    EXPECT_TRUE(dialog.closed());
    EXPECT_EQ(connection(), "CA00 5 500 2 1 7 7VJA 0F 1.00 0 3 20");
    EXPECT_EQ(configuration.ZavConfig[19].TypeCode, Type7R);
    EXPECT_EQ(configuration.ZavConfig[7].TypeCode, NoDevice);
    EXPECT_EQ(
        dialogs.take_boxes(),
        (std::vector<ShownBox>{{"Connected to Interface Card at Address: CA00", 64, "KAVORIX"}}));
    EXPECT_EQ(driver.recorded("Connect"), Lines{"Connect CA00"});
    EXPECT_EQ(driver.recorded("Disconnect"), Lines{"Disconnect 0"});
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 3 RE;ST", "Tx 20 RE;ST"}));
    EXPECT_EQ(run_time.Reports.Message.Text, " Polling Stopped");
    EXPECT_EQ(run_time.Reports.Message.Severity, Severity::Progress);
    EXPECT_FALSE(tmrPoll->running());
    EXPECT_TRUE(status(20).Found);
    EXPECT_FALSE(status(8).Found);
    EXPECT_FALSE(status(3).OutOfOrder);
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
}

TEST_F(InterfaceSettingsTest, AFailedConnectionLeavesTheOldOneInUse) {
    click({3});
    const std::string before = connection();
    choose_address(CA00);
    choose_rate(500);
    dialog.cmdOK_Click();
    EXPECT_EQ(connection(), before);
    EXPECT_EQ(dialogs.take_boxes(),
              (std::vector<ShownBox>{{"No Interface Card found at Address: CA00", 48, "KAVORIX"}}));
    EXPECT_FALSE(dialog.closed());
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
    driver.calls.clear();
    main_window.run(Command::Trigger);
    EXPECT_EQ(driver.recorded("Tx"), Lines{"Tx 3 TR"});
}

TEST_F(InterfaceSettingsTest, ACardThatDoesNotStartIsLetGo) {
    driver.cards[CA00] = 5;
    driver.init_status = 1;
    const std::string before = connection();
    choose_address(CA00);
    dialog.cmdOK_Click();
    EXPECT_EQ(connection(), before);
    EXPECT_EQ(driver.recorded("Disconnect"), Lines{"Disconnect 5"});
}

TEST_F(InterfaceSettingsTest, ConnectsAfterAStartWithoutACard) {
    Rig* const rig = this;
    discovery.Initialise();
    run_time.Link.Card = CardSearch::NoneFound;
    configuration.Interface.CardAddress = 0;
    InterfaceSettingsDialog other(
        {discovery, dialogs, message_line, failures, configuration, run_time, save_file});
    other.Form_Load();
    EXPECT_EQ(other.screen.cboBaseAddr.index, -1);
    ASSERT_TRUE(other.screen.cboBaseAddr.select_code(C800));
    other.cmdOK_Click();
    EXPECT_TRUE(other.closed());
    EXPECT_EQ(pods_with(rig->run_time.Link.PollTable.InPollTable), (std::vector{3, 8}));
    EXPECT_TRUE(main_window.available(Command::SelectAll));
    EXPECT_TRUE(main_window.available(Command::Delete) == false);  // nothing is selected
    click({3});
    EXPECT_TRUE(main_window.available(Command::Delete));
}

struct SaveCase {
    std::string name;
    Answer answer;
    std::int16_t save_result;
    bool saves;
    std::int16_t changed_after;
    bool connects;
};

class SaveQuestionTest : public InterfaceSettingsTest,
                         public testing::WithParamInterface<SaveCase> {};

TEST_P(SaveQuestionTest, DecidesAboutTheConnection) {
    const SaveCase& c = GetParam();
    driver.cards[CA00] = 5;
    configuration.ConfigChanged = 1;
    int saved = 0;
    save_file = [&](std::int16_t saveAs) {
        EXPECT_EQ(saveAs, 0);
        ++saved;
        configuration.ConfigChanged = c.changed_after;
        return c.save_result;
    };
    choose_address(CA00);
    dialogs.answer(c.answer);
    dialog.cmdOK_Click();
    const auto boxes = dialogs.take_boxes();
    ASSERT_FALSE(boxes.empty());
    EXPECT_EQ(boxes.front(), SaveQuestion);
    EXPECT_EQ(saved, c.saves ? 1 : 0);
    EXPECT_EQ(configuration.ConfigChanged, c.changed_after);
    EXPECT_EQ(driver.recorded("Connect").size(), c.connects ? 1U : 0U);
    EXPECT_EQ(dialog.closed(), c.connects);
}

INSTANTIATE_TEST_SUITE_P(All, SaveQuestionTest,
                         testing::Values(SaveCase{"Saved", Answer::Yes, 0, true, 0, true},
                                         SaveCase{"Abandoned", Answer::Yes, 1, true, 1, false},
                                         SaveCase{"FileDialogLeft", Answer::Yes, 0, true, 1, false},
                                         SaveCase{"GivenUp", Answer::No, 0, false, 0, true},
                                         SaveCase{"Cancelled", Answer::Cancel, 0, false, 1, false}),
                         [](const auto& c) { return c.param.name; });

TEST_F(InterfaceSettingsTest, DoesNotConnectWhileSomethingUsesTheConnection) {
    driver.cards[DF00] = 5;
    choose_address(DF00);
    const std::string busy = "Cannot Connect:   Continuous Scanning/Logging in Progress";
    for (bool* flag :
         {&run_time.Link.ContScanning, &run_time.Log.ScanLogging, &run_time.Log.EventLogging}) {
        *flag = true;
        dialog.cmdOK_Click();
        EXPECT_EQ(dialogs.take_boxes(), (std::vector<ShownBox>{{busy, 48, "KAVORIX"}}));
        *flag = false;
    }
    click({3});
    loop.call_later(100, [&] { dialog.cmdOK_Click(); });
    commands.send("RE;");
    EXPECT_EQ(
        dialogs.take_boxes(),
        (std::vector<ShownBox>{{"Cannot Connect:   Transmission in Progress", 48, "KAVORIX"}}));
    EXPECT_TRUE(driver.recorded("Connect").empty());
    EXPECT_FALSE(dialog.closed());
}

TEST_F(InterfaceSettingsTest, NothingIsSentWhileItConnects) {
    driver.cards[CA00] = 5;
    driver.pod(3).reply_ms = 300;
    choose_address(CA00);
    loop.call_later(100, [&] {
        EXPECT_FALSE(main_window.available(Command::InterfaceCard));
        click({3});
        main_window.run(Command::Trigger);
    });
    dialog.cmdOK_Click();
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 3 RE;ST", "Tx 8 RE;ST"}));
    EXPECT_EQ(run_time.Link.NumSelected(), 0);
}

}  // namespace
}  // namespace kavorix::test
