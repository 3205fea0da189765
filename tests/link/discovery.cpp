#include "link/discovery.h"

#include <gtest/gtest.h>

#include "model/catalogue.h"
#include "support/rig.h"

namespace kavorix {
namespace {

using test::C800;
using test::Lines;
using test::pods_with;
using test::Rig;
using Boxes = std::vector<test::ShownBox>;
using Pods = std::vector<int>;

constexpr std::int16_t address_of(int hexadecimal) {
    return static_cast<std::int16_t>(hexadecimal);
}

class DiscoveryTest : public testing::Test, protected Rig {
  protected:
    LinkState& state() { return run_time.Link; }
    void load() { discovery.Form_Load(files, "/station/KAVORIX.INI"); }
    test::ShownBox connected(const char* address) const {
        return {std::string("Connected to Interface Card at Address: ") + address, 64, "KAVORIX"};
    }
};

TEST_F(DiscoveryTest, StartUpGoesThroughItsStepsInOrder) {
    driver.cards[C800] = 7;
    driver.add_pod(3, "7RJA 0F 1.00");
    driver.add_pod(50, "8SFN 0F 2.10");
    load();
    EXPECT_EQ(driver.recorded(),
              (Lines{"DLLVersion", "Connect C800", "Init 7 probing 50", "Disconnect 0",
                     "Tx 3 RE;ST", "Tx 50 RE;ST", "String 3/3 12", "String 50/3 12"}));
    EXPECT_EQ(main_window.calls, (Lines{"ClearScreen", "StatusRefresh", "CheckItems", "ClearScreen",
                                        "StatusRefresh", "CheckItems", "CheckItems"}));
    EXPECT_EQ(dialogs.boxes, (Boxes{connected("C800")}));
    EXPECT_EQ(dialogs.wait_texts,
              (Lines{" Searching for Interface Card and Connected ZAV(s).   Please wait...", ""}));
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
    EXPECT_EQ(log_text(), test::LogHeader);
    EXPECT_EQ(std::string(state().DllVersion.data()), "Scripted driver 1.0");
    EXPECT_EQ(configuration.Interface.PollRate, 1000);
    EXPECT_EQ(configuration.Interface.CardAddress, C800);
    EXPECT_EQ(configuration.Interface.CardHandle, 7);
    EXPECT_EQ(state().PollTick, 100);
    EXPECT_EQ(pods_with(state().PollTable.InPollTable), (Pods{3, 50}));
    EXPECT_EQ(state().PollTable.NumInPoll, 2);
    EXPECT_EQ(pods_with(state().ZavSelected), (Pods{}));
    EXPECT_EQ(state().NumSelected, 0);
    EXPECT_EQ(state().OperationsEnabled, 1);
    EXPECT_FALSE(tmrPoll->running());
    EXPECT_EQ(screen.img_4A.visible, true);
    EXPECT_EQ(screen.img_4A.picture, Picture::img14A);
    EXPECT_EQ(screen.picZAVNum1.front() + screen.picZAVNum1.back(), "0125");
    EXPECT_EQ(screen.picZAVNum2.front() + screen.picZAVNum2.back(), "2650");
}

TEST_F(DiscoveryTest, ExcludedAddressesAreNotTried) {
    files.put("/station/KAVORIX.INI", "[Exclude Addresses]\nAddress=C800,CA00\n");
    driver.cards[C800] = 0;
    driver.cards[address_of(0xCB00)] = 0;
    driver.add_pod(1, "7RJA 0F 1.00");
    load();
    EXPECT_EQ(driver.recorded("Connect"), (Lines{"Connect C900", "Connect CB00"}));
    EXPECT_EQ(dialogs.boxes, (Boxes{connected("CB00")}));
    EXPECT_EQ(configuration.Interface.CardAddress, address_of(0xCB00));
}

TEST_F(DiscoveryTest, WithoutACardTheWholeRangeIsTriedOnce) {
    load();
    const Lines tried = driver.recorded("Connect");
    ASSERT_EQ(tried.size(), 24u);
    EXPECT_EQ(tried.front(), "Connect C800");
    EXPECT_EQ(tried.back(), "Connect DF00");
    EXPECT_EQ(dialogs.boxes, (Boxes{{"No Interface Cards were found", 48, "KAVORIX"}}));
    EXPECT_EQ(dialogs.beeps, 1);
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
    EXPECT_EQ(main_window.calls.back(), "ConfigItems 0");
    EXPECT_EQ(state().OperationsEnabled, 0);
    EXPECT_EQ(state().PollTable.NumInPoll, 0);
    EXPECT_EQ(status(1).ident(), "NC          ");
    EXPECT_FALSE(screen.img_4A.visible);
}

TEST_F(DiscoveryTest, ACardWhoseNetworkDoesNotStartIsClosedAndPassedOver) {
    driver.cards[C800] = 0;
    driver.cards[address_of(0xDF00)] = 4;
    driver.init_status = -3;
    driver.present_mark = 1;
    state().PollTable.InPollTable[8] = 1;
    std::int16_t address = address_of(0xDE00);
    EXPECT_EQ(discovery.ConnectToCard(address, 250, 0), 0);
    EXPECT_EQ(driver.recorded(),
              (Lines{"Connect DE00", "Connect DF00", "Init 4 probing 50", "Disconnect 4"}));
    EXPECT_EQ(address, address_of(0xE000));
    EXPECT_EQ(pods_with(state().PollTable.InPollTable), (Pods{9}));
}

TEST_F(DiscoveryTest, ASingleAddressWithoutACardChangesNothing) {
    station({{3, "7RJA 0F 1.00"}});
    select({3});
    configuration.Interface.PollRate = 500;
    std::int16_t address = address_of(0xD000);
    EXPECT_EQ(discovery.ConnectToCard(address, 250, 1), 0);
    EXPECT_EQ(driver.recorded(), (Lines{"Connect D000"}));
    EXPECT_EQ(dialogs.boxes, (Boxes{{"No Interface Card found at Address: D000", 48, "KAVORIX"}}));
    EXPECT_EQ(configuration.Interface.PollRate, 500);
    EXPECT_EQ(configuration.Interface.CardAddress, C800);
    EXPECT_EQ(pods_with(state().PollTable.InPollTable), (Pods{3}));
    EXPECT_EQ(pods_with(state().ZavSelected), (Pods{3}));
    EXPECT_EQ(main_window.calls, Lines{});
}

TEST_F(DiscoveryTest, AnotherCardTakesOverWithItsPollRate) {
    driver.cards[address_of(0xD000)] = 5;
    station({{3, "7RJA 0F 1.00"}});
    tmrPoll->start(100);
    std::int16_t address = address_of(0xD000);
    EXPECT_EQ(discovery.ConnectToCard(address, 250, 1), 1);
    EXPECT_EQ(driver.recorded(), (Lines{"Connect D000", "Init 5 probing 50", "Disconnect 0"}));
    EXPECT_EQ(configuration.Interface.CardHandle, 5);
    EXPECT_EQ(configuration.Interface.CardAddress, address_of(0xD000));
    EXPECT_EQ(configuration.Interface.PollRate, 250);
    EXPECT_FALSE(tmrPoll->running());
    EXPECT_EQ(dialogs.boxes, (Boxes{connected("D000")}));
}

TEST_F(DiscoveryTest, AHandleOfZeroReleasesNoOtherCard) {
    driver.cards[C800] = 0;
    EXPECT_EQ(discovery.LocateCard(C800), 1);
    EXPECT_EQ(driver.recorded("Disconnect"), Lines{});
}

TEST_F(DiscoveryTest, OnlyAOneMarksAPodAsPresent) {
    for (const int mark : {-1, 2, 32767, -32768}) {
        SCOPED_TRACE(mark);
        Rig rig;
        rig.driver.present_mark = static_cast<std::int16_t>(mark);
        rig.station({{7, "7RJA 0F 1.00"}});
        EXPECT_EQ(rig.run_time.Link.PollTable.NumInPoll, 1);
        EXPECT_EQ(pods_with(rig.run_time.Link.PollTable.InPollTable), (Pods{7}));
        EXPECT_TRUE(rig.screen.img_ZAV[6].visible);
        EXPECT_FALSE(rig.screen.img_ZAV[0].visible);
    }
}

TEST_F(DiscoveryTest, ACardWithoutPodsSaysSo) {
    driver.cards[C800] = 0;
    load();
    EXPECT_EQ(
        dialogs.boxes,
        (Boxes{connected("C800"),
               {"KAVORIX could not find any ZAV(s) Connected to Interface Card", 64, "KAVORIX"}}));
    EXPECT_EQ(state().OperationsEnabled, 0);
    EXPECT_EQ(loop.elapsed_ms(), 0);
}

TEST_F(DiscoveryTest, APodThatDoesNotAnswerIsAReceiveErrorAfterItsTime) {
    driver.cards[C800] = 0;
    driver.add_pod(1, "7RJA 0F 1.00");
    driver.add_pod(2, "");
    driver.add_pod(3, "8SFN 0F 2.10").reply_ms = 1400;
    load();
    EXPECT_EQ(loop.elapsed_ms(), 1500);
    EXPECT_EQ(status(1).ident(), "7RJA 0F 1.00");
    EXPECT_EQ(status(2).ident(), "NC          ");
    EXPECT_EQ(status(3).ident(), "8SFN 0F 2.10");
    EXPECT_EQ(status(2).Channels, 0);
    EXPECT_EQ(screen.lblMsg, (Label{" ERROR! - Receive Error (ZAV:02)", Colour::Red}));
    EXPECT_EQ(log_text(), test::LogHeader + " ERROR! - Receive Error (ZAV:02  Interface:C800)\r\n");
    EXPECT_EQ(screen.pnlErr.caption, "Rx ERROR");
    EXPECT_EQ(state().SessionErrorCount, 1);
    EXPECT_EQ(pods_with(state().PollTable.InPollTable), (Pods{1, 2, 3}));
    EXPECT_EQ(screen.img_ZAV[1].picture, Picture::img1ZAV_E);
    EXPECT_FALSE(screen.lblZAVType[1].visible);
    EXPECT_EQ(state().NumSelected, 0);
}

TEST_F(DiscoveryTest, APodThatRefusesTheStatusCommandIsATransmitErrorAndNotWaitedFor) {
    driver.cards[C800] = 0;
    driver.add_pod(1, "7RJA 0F 1.00").tx_status = 1;
    driver.add_pod(2, "7RJA 0F 1.00").tx_status = 9;  // neither sent nor an error
    load();
    EXPECT_EQ(loop.elapsed_ms(), 0);
    EXPECT_EQ(driver.recorded("String"), Lines{});
    EXPECT_EQ(log_text(),
              test::LogHeader + " ERROR! - Transmit Error (ZAV:01  Interface:C800)\r\n");
    EXPECT_EQ(pods_with(state().PollTable.InPollTable), (Pods{1, 2}));
    EXPECT_EQ(status(2).ErrorFlag, 0);
}

TEST_F(DiscoveryTest, AQueryOfTheSelectedPodsAloneSendsStatusWithoutReset) {
    station({{1, "7RJA 0F 1.00"}, {2, "7SJA 0F 1.00"}});
    select({2});
    driver.pod(2).ident = "7SJA 0F 9.99";
    discovery.GetStatus(1);
    EXPECT_EQ(driver.recorded(), (Lines{"Tx 2 ST", "String 2/3 12"}));
    EXPECT_EQ(status(2).ident(), "7SJA 0F 9.99");
}

TEST_F(DiscoveryTest, APodThatFailsAStatusQueryIsShownDeselected) {
    station({{1, "7RJA 0F 1.00"}});
    select({1});
    driver.pod(1).ident = "";
    discovery.GetStatus(1);
    EXPECT_EQ(pods_with(state().ZavSelected), Pods{});
    EXPECT_EQ(main_window.calls, (Lines{"IconReverse 0", "CheckItems"}));
}

TEST_F(DiscoveryTest, ATickDuringAStatusQueryLeavesTheReplyAlone) {
    station({{1, "7RJA 0F 1.00"}, {2, "7RJA 0F 1.00"}});
    select({1, 2});
    driver.pod(1).reply_ms = 99;  // arrives right before the poll tick
    driver.pod(2).reply_ms = 300;
    start_polling();
    discovery.GetStatus(1);
    EXPECT_EQ(loop.elapsed_ms(), 300);
    EXPECT_EQ(state().SessionErrorCount, 0);
    EXPECT_EQ(pods_with(state().ZavSelected), (Pods{1, 2}));
    loop.run_for(100);
    EXPECT_NE(driver.timed("Test 1/3"), Lines{});  // the text stream is polled again
}

struct TypeRow {
    const char* ident;
    std::int16_t type;
    int channels;
    const char* label;
    Colour back;
    Picture picture;
};

TEST_F(DiscoveryTest, PodsAreShownByTheirType) {
    constexpr Picture Normal = Picture::img1ZAV;
    const TypeRow rows[] = {
        {"7RJA 0F 1.00", Type7R, 20, "7R", Colour::Silver, Normal},
        {"7SJA 0F 1.00", Type7S, 10, "7S", Colour::Silver, Normal},
        {"7TJA 0F 1.00", Type7T, 20, "7T", Colour::Silver, Normal},
        {"7UJA 0F 1.00", Type7U, 20, "7U", Colour::Silver, Normal},
        {"7VJA 0F 1.00", Type7V, 20, "7V", Colour::White, Normal},
        {"7WJA 0F 1.00", Type7W, 20, "7W", Colour::White, Normal},
        {"8RCN 0F 1.00", Type8R, 20, "8R", Colour::LightGrey, Normal},
        {"8SFN 0F 1.00", Type8S, 32, "8S", Colour::LightGrey, Normal},
        {"7XJA 0F 1.00", NoDevice, 20, "7X", Colour::Silver, Picture::img1ZAV_E},
        {"7YJA 0F 1.00", NoDevice, 20, "7Y", Colour::Silver, Picture::img1ZAV_E},
        {"\x01\xFF..........", NoDevice, 20, "\x01\xFF", Colour::Silver, Normal},
    };
    for (const TypeRow& row : rows) {
        SCOPED_TRACE(row.ident);
        Rig rig;
        rig.station({{26, row.ident}});
        EXPECT_EQ(rig.config(26).TypeCode, row.type);
        EXPECT_EQ(rig.config(26).NumChannels, channel_count(row.type));
        EXPECT_EQ(rig.config(26).Channel[0].Mode, 0);
        EXPECT_EQ(rig.status(26).Channels, row.channels);
        EXPECT_EQ(rig.screen.lblZAVType[25].caption, row.label);
        EXPECT_TRUE(rig.screen.lblZAVType[25].visible);
        EXPECT_EQ(rig.screen.lblZAVType[25].back, row.back);
        EXPECT_EQ(rig.screen.img_ZAV[25].picture, row.picture);
        EXPECT_TRUE(rig.screen.img_ZAV[25].visible);
    }
}

TEST_F(DiscoveryTest, AShortReplyLeavesTheRestOfTheIdentification) {
    station({{1, "7S"}});
    EXPECT_EQ(status(1).ident(), "7S          ");
    EXPECT_EQ(status(1).Channels, 10);
}

TEST_F(DiscoveryTest, InitialiseForgetsTheLastNetwork) {
    station({{3, "7RJA 0F 1.00"}});
    start_polling();
    LinkState& link_state = state();
    link_state.ZavSelected.fill(1);
    link_state.NumSelected = 9;
    link_state.InterfaceSelected = link_state.AllSelected = link_state.ContScanning = 1;
    link_state.Triggered.fill(1);
    link_state.ScanState.fill(2);
    link_state.ErrorCount = link_state.SessionErrorCount = 4;
    link_state.StreamRequests[2] = "ME3;";
    status(3).Reading[0] = 5;
    status(3).PeakMax[31] = 5;
    status(3).StreamSeen.fill(1);
    config(3).Channel[0].Label = "Oven";
    run_time.Graph.Settings.Title = "Mine";
    run_time.Graph.Settings.YMaximum = 50;
    discovery.Initialise();

    EXPECT_FALSE(tmrPoll->running());
    EXPECT_EQ(link_state.ZavSelected, PodFlags{});
    EXPECT_EQ(link_state.NumSelected, 0);
    EXPECT_EQ(link_state.InterfaceSelected + link_state.AllSelected + link_state.ContScanning, 0);
    EXPECT_EQ(link_state.Triggered, PodFlags{});
    EXPECT_EQ(link_state.ScanState, PodFlags{});
    EXPECT_EQ(link_state.PollTable.NumInPoll, 0);
    EXPECT_EQ(pods_with(link_state.PollTable.InPollTable), (Pods{3}));  // left as found
    EXPECT_EQ(link_state.ErrorCount, 0);
    EXPECT_EQ(link_state.SessionErrorCount, 4);
    EXPECT_EQ(link_state.StreamRequests[2], "");
    EXPECT_EQ(status(3).ident(), "NC          ");
    EXPECT_EQ(status(3).Reading[0], 0);
    EXPECT_EQ(status(3).PeakMax[31], -3.4E38F);
    EXPECT_EQ(status(50).PeakMin[0], 3.4E38F);
    EXPECT_EQ(status(3).StreamSeen[0], 0);
    EXPECT_EQ(config(3), [] {
        PodConfig empty;
        default_ZAV_config(empty, NoDevice, 0);
        return empty;
    }());
    EXPECT_EQ(run_time.Graph.Settings.Title, "Trend Graph");
    EXPECT_EQ(run_time.Graph.Settings.YMaximum, 2.0);
    EXPECT_EQ(link_state.OperationsEnabled, 0);
}

TEST_F(DiscoveryTest, AnUnexpectedFailureNamesItsProcedure) {
    driver.cards[C800] = 0;
    files.refuse("/station/ERR_LOG.TXT");
    EXPECT_THROW(load(), ProgramEnded);
    EXPECT_EQ(dialogs.boxes,
              (Boxes{{"A serious error has occurred in KAVORIX at frmMain/Form_Load\n\nError code "
                      ": 13, Creating \"/station/ERR_LOG.TXT\": Permission denied\n\r\n"
                      "KAVORIX will stop",
                      16, "KAVORIX"}}));
}

}  // namespace
}  // namespace kavorix
