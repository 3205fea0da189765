#include "ui/streams/select_channels.h"

#include <gtest/gtest.h>

#include "support/ui_rig.h"
#include "ui/main/event_counters.h"

namespace kavorix::test {
namespace {

ChannelFlags flags(const std::vector<int>& channels) {
    ChannelFlags result{};
    for (const int channel : channels) result[at(channel - 1)] = 1;
    return result;
}

std::vector<int> checked(const SelectChannelsDialog& dialog) {
    std::vector<int> channels;
    for (int channel = 1; channel <= MaxChannels; ++channel)
        if (dialog.screen.chkChan[at(channel - 1)].checked) channels.push_back(channel);
    return channels;
}

int visible(const SelectChannelsDialog& dialog) {
    return static_cast<int>(std::count_if(dialog.screen.chkChan.begin(),
                                          dialog.screen.chkChan.end(),
                                          [](const CheckBox& box) { return box.visible; }));
}

void check(SelectChannelsDialog& dialog, const std::vector<int>& channels, bool on = true) {
    for (const int channel : channels) {
        dialog.screen.chkChan[at(channel - 1)].checked = on;
        dialog.chkChan_Click(channel - 1);
    }
}

class SelectChannelsTest : public testing::Test {
  protected:
    SelectChannelsDialog make(std::vector<ChannelChoice::Set> sets) {
        ChannelChoice choice;
        choice.prompt = "Which?";
        choice.sets = std::move(sets);
        choice.complaint = [this](const auto&) { return complaint; };
        return {choice, dialogs, failures};
    }

    std::string complaint;
    ScriptedDialogs dialogs;
    VirtualEventLoop loop;
    MemoryFiles files;
    ErrorLog log{files, loop, "/station"};
    ErrorReporter failures{log, dialogs};
};

TEST_F(SelectChannelsTest, OffersTheChannelsThatThereAre) {
    auto dialog = make({{"", 20, flags({3, 19, 25})}});
    EXPECT_EQ(dialog.screen.lblPrompt.caption, "Which?");
    EXPECT_FALSE(dialog.screen.cboZav.visible);
    EXPECT_EQ(visible(dialog), 20);
    EXPECT_EQ(checked(dialog), (std::vector{3, 19}));
    EXPECT_EQ(dialog.screen.chkChan[8].caption, "09");
}

TEST_F(SelectChannelsTest, AcceptsOnlyAChoice) {
    auto dialog = make({{"", 20, {}}});
    EXPECT_FALSE(dialog.screen.cmdOK.enabled);
    check(dialog, {5});
    EXPECT_TRUE(dialog.screen.cmdOK.enabled);
    check(dialog, {5}, false);
    EXPECT_FALSE(dialog.screen.cmdOK.enabled);
}

TEST_F(SelectChannelsTest, AllAndNone) {
    auto dialog = make({{"", 10, {}}});
    dialog.cmdAll_Click();
    EXPECT_EQ(checked(dialog).size(), 10U);
    dialog.cmdOK_Click();
    EXPECT_EQ(dialog.sets()[0].chosen, flags({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    dialog.cmdNone_Click();
    EXPECT_TRUE(checked(dialog).empty());
}

TEST_F(SelectChannelsTest, SeveralPodsInTurnOrTogether) {
    auto dialog = make({{"03 - 7V", 20, flags({1, 2})}, {"08 - 7S", 10, flags({2, 3})}});
    EXPECT_TRUE(dialog.screen.cboZav.visible);
    EXPECT_EQ(checked(dialog), std::vector{2});  // what all of them have
    check(dialog, {5, 15});
    dialog.cboZav_Click(2);
    EXPECT_EQ(visible(dialog), 10);
    EXPECT_EQ(checked(dialog), (std::vector{2, 3, 5}));
    check(dialog, {2}, false);
    dialog.cboZav_Click(1);
    EXPECT_EQ(checked(dialog), (std::vector{1, 2, 5, 15}));
    dialog.cmdOK_Click();
    EXPECT_EQ(dialog.sets()[0].chosen, flags({1, 2, 5, 15}));
    EXPECT_EQ(dialog.sets()[1].chosen, flags({3, 5}));
}

TEST_F(SelectChannelsTest, AComplaintKeepsItOpen) {
    auto dialog = make({{"", 20, flags({4})}});
    complaint = "Not these";
    dialog.cmdOK_Click();
    EXPECT_EQ(dialogs.take_boxes(), (std::vector<ShownBox>{{"Not these", 48, "KAVORIX"}}));
    EXPECT_EQ(dialogs.beeps, 1);
    EXPECT_FALSE(dialog.closed());
    EXPECT_FALSE(dialog.accepted());
    complaint.clear();
    dialog.cmdOK_Click();
    EXPECT_TRUE(dialog.closed());
    EXPECT_TRUE(dialog.accepted());
}

class ClearEventCounter : public testing::Test, public UiRig {
  protected:
    ClearEventCounter() {
        station({{3, "7VJA 0F 1.00"}, {8, "8RCA 0F 1.00"}, {9, "7RAA 0F 1.00"}});
        main_window.on(Command::ClearEventCounter,
                       [this] { clear_event_counters(commands, run_time, choose_channels()); });
    }
    void choose(const std::vector<int>& channels) {
        windows.at_select = [channels](SelectChannelsDialog& dialog) {
            EXPECT_EQ(dialog.screen.lblPrompt.caption, "Select Event Totalise Channels to Clear:");
            check(dialog, channels);
            dialog.cmdOK_Click();
        };
    }
};

TEST_F(ClearEventCounter, SendsAStatementForEachChannel) {
    click({8});
    choose({19, 3});
    main_window.run(Command::ClearEventCounter);
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 8 CL3", "Tx 8 CL19"}));
    EXPECT_EQ(run_time.Link.CommandString, "CL3;CL19;");
}

TEST_F(ClearEventCounter, CancelSendsNothing) {
    click({8});
    main_window.run(Command::ClearEventCounter);
    EXPECT_TRUE(driver.recorded("Tx").empty());
}

TEST_F(ClearEventCounter, UniversalPodsTakeTheirTwoDigitalChannelsOnly) {
    click({3, 8});
    choose({3, 19});
    main_window.run(Command::ClearEventCounter);
    EXPECT_EQ(
        dialogs.take_boxes(),
        (std::vector<ShownBox>{
            {"Channels other than 19 and 20 do not apply to ZAV types 7V and 7W", 48, "KAVORIX"}}));
    EXPECT_TRUE(driver.recorded("Tx").empty());
    choose({19, 20});
    main_window.run(Command::ClearEventCounter);
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 3 CL19", "Tx 8 CL19", "Tx 3 CL20", "Tx 8 CL20"}));
}

TEST_F(ClearEventCounter, IsNotOfferedForPodsWithoutCounters) {
    click({8, 9});
    choose({3});
    main_window.run(Command::ClearEventCounter);
    EXPECT_TRUE(driver.recorded("Tx").empty());
}

}  // namespace
}  // namespace kavorix::test
