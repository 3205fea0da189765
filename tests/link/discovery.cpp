// Start-up of the link: the search for a card, the pods behind it and their status replies.

#include "link/discovery.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "model/catalogue.h"
#include "support/facts.h"
#include "support/rig.h"

namespace kavorix {
namespace {

using test::C800;
using test::facts;
using test::Lines;
using test::pods_with;
using test::Rig;
using test::ShownBox;
using Boxes = std::vector<ShownBox>;
using Pods = std::vector<int>;

constexpr std::int16_t address_of(int hexadecimal) {
    return static_cast<std::int16_t>(hexadecimal);
}

ShownBox connected(const std::string& address) {
    return {"Connected to Interface Card at Address: " + address, 64, "KAVORIX"};
}

struct DiscoveryTest : testing::Test, Rig {
    LinkState& state = run_time.Link;
    void load() { discovery.Form_Load(files, "/station/KAVORIX.INI"); }
    std::int16_t connect(int address, std::int16_t single) {
        std::int16_t where = address_of(address);
        const auto result = discovery.ConnectToCard(where, 250, single);
        stopped_at = hex16(where);
        return result;
    }
    std::string stopped_at;
};

TEST_F(DiscoveryTest, StartUpGoesThroughItsStepsInOrder) {
    driver.cards[C800] = 7;
    driver.add_pod(1, "7RJA 0F 1.00");
    driver.add_pod(50, "8SFN 0F 2.10");
    load();
    EXPECT_EQ(driver.recorded(),
              (Lines{"DLLVersion", "Connect C800", "Init 7 probing 50", "Disconnect 0",
                     "Tx 1 RE;ST", "Tx 50 RE;ST", "String 1/3 12", "String 50/3 12"}));
    EXPECT_EQ(dialogs.boxes, Boxes{connected("C800")});
    EXPECT_EQ(dialogs.wait_texts,
              (Lines{" Searching for Interface Card and Connected ZAV(s).   Please wait...", ""}));
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
    EXPECT_EQ(log_text(), test::LogHeader);
    EXPECT_EQ(std::string(state.DllVersion.data()), "Scripted driver 1.0");
    EXPECT_EQ(configuration.Interface.PollRate, 1000);
    EXPECT_EQ(configuration.Interface.CardAddress, C800);
    EXPECT_EQ(configuration.Interface.CardHandle, 7);
    EXPECT_EQ(state.PollTick, 100);
    EXPECT_EQ(facts(run_time), "polled: 1 50");
    EXPECT_TRUE(state.OperationsEnabled);
    EXPECT_EQ(state.Card, CardSearch::Found);
    EXPECT_FALSE(tmrPoll->running());
}

TEST_F(DiscoveryTest, ExcludedAddressesAreNotTried) {
    files.put("/station/KAVORIX.INI", "[Exclude Addresses]\nAddress=C800,CA00\n");
    driver.cards[C800] = 0;
    driver.cards[address_of(0xCB00)] = 0;
    driver.add_pod(1, "7RJA 0F 1.00");
    load();
    EXPECT_EQ(driver.recorded("Connect"), (Lines{"Connect C900", "Connect CB00"}));
    EXPECT_EQ(dialogs.boxes, Boxes{connected("CB00")});
    EXPECT_EQ(configuration.Interface.CardAddress, address_of(0xCB00));
}

TEST_F(DiscoveryTest, WithoutACardTheWholeRangeIsTriedOnce) {
    load();
    const Lines tried = driver.recorded("Connect");
    ASSERT_EQ(tried.size(), 24u);
    EXPECT_EQ(tried.front() + tried.back(), "Connect C800Connect DF00");
    EXPECT_EQ(dialogs.boxes, (Boxes{{"No Interface Cards were found", 48, "KAVORIX"}}));
    EXPECT_EQ(dialogs.beeps, 1);
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
    EXPECT_EQ(state.Card, CardSearch::NoneFound);
    EXPECT_FALSE(state.OperationsEnabled);
    EXPECT_EQ(status(1).ident(), "NC          ");
}

TEST_F(DiscoveryTest, ACardWhoseNetworkDoesNotStartIsClosedAndPassedOver) {
    driver.cards[address_of(0xDF00)] = 4;
    driver.init_status = -3;
    driver.present_mark = 1;
    state.PollTable.InPollTable = {Pod::numbered(9)};
    EXPECT_EQ(connect(0xDE00, 0), 0);
    EXPECT_EQ(driver.recorded(),
              (Lines{"Connect DE00", "Connect DF00", "Init 4 probing 50", "Disconnect 4"}));
    EXPECT_EQ(stopped_at, "E000");
    EXPECT_EQ(facts(run_time), "polled: 9");
}

TEST_F(DiscoveryTest, ASingleAddressWithoutACardChangesNothing) {
    station({{5, "7RJA 0F 1.00"}});
    select({5});
    EXPECT_EQ(connect(0xD000, 1), 0);
    EXPECT_EQ(driver.recorded(), Lines{"Connect D000"});
    EXPECT_EQ(dialogs.boxes, (Boxes{{"No Interface Card found at Address: D000", 48, "KAVORIX"}}));
    EXPECT_EQ(configuration.Interface.PollRate, 1000);
    EXPECT_EQ(configuration.Interface.CardAddress, C800);
    EXPECT_EQ(facts(run_time), "polled: 5; selected: 5");
    EXPECT_TRUE(state.OperationsEnabled);
    EXPECT_EQ(state.Card, CardSearch::Found);
}

TEST_F(DiscoveryTest, AnotherCardTakesOverWithItsPollRate) {
    driver.cards[address_of(0xD000)] = 5;
    station({{5, "7RJA 0F 1.00"}});
    start_polling();
    EXPECT_EQ(connect(0xD000, 1), 1);
    EXPECT_EQ(driver.recorded(), (Lines{"Connect D000", "Init 5 probing 50", "Disconnect 0"}));
    EXPECT_EQ(configuration.Interface.CardHandle, 5);
    EXPECT_EQ(configuration.Interface.CardAddress, address_of(0xD000));
    EXPECT_EQ(configuration.Interface.PollRate, 250);
    EXPECT_EQ(dialogs.boxes, Boxes{connected("D000")});
    EXPECT_FALSE(tmrPoll->running());
}

TEST_F(DiscoveryTest, AHandleOfZeroReleasesNoOtherCard) {
    driver.cards[C800] = 0;
    EXPECT_EQ(discovery.LocateCard(C800), 1);
    EXPECT_EQ(driver.recorded("Disconnect"), Lines{});
}

TEST(Discovery, OnlyAOneMarksAPodAsPresent) {
    for (const int mark : {-1, 2, 32767, -32768}) {
        Rig rig;
        rig.driver.present_mark = static_cast<std::int16_t>(mark);
        rig.station({{5, "7RJA 0F 1.00"}});
        EXPECT_EQ(facts(rig.run_time), "polled: 5") << mark;
        EXPECT_TRUE(rig.status(5).Found);
        EXPECT_FALSE(rig.status(1).Found);
    }
}

TEST_F(DiscoveryTest, ACardWithoutPodsSaysSo) {
    driver.cards[C800] = 0;
    load();
    EXPECT_EQ(
        dialogs.boxes,
        (Boxes{connected("C800"),
               {"KAVORIX could not find any ZAV(s) Connected to Interface Card", 64, "KAVORIX"}}));
    EXPECT_FALSE(state.OperationsEnabled);
    EXPECT_EQ(loop.elapsed_ms(), 0);
}

TEST_F(DiscoveryTest, PodsThatDoNotAnswerInTimeAreInError) {
    driver.cards[C800] = 0;
    driver.add_pod(1, "7RJA 0F 1.00");
    driver.add_pod(2, "");
    driver.add_pod(3, "7RJA 0F 1.00").tx_status = 1;  // not waited for
    driver.add_pod(4, "7RJA 0F 1.00").tx_status = 9;  // neither sent nor an error
    driver.add_pod(50, "8SFN 0F 2.10").reply_ms = 1400;
    load();
    EXPECT_EQ(loop.elapsed_ms(), 1500);  // 500 ms a pod
    EXPECT_EQ(status(50).ident(), "8SFN 0F 2.10");
    EXPECT_EQ(status(2).ident(), "NC          ");
    EXPECT_EQ(status(2).Channels, 0);
    EXPECT_EQ(log_text(), test::LogHeader +
                              " ERROR! - Transmit Error (ZAV:03  Interface:C800)\r\n"
                              " ERROR! - Receive Error (ZAV:02  Interface:C800)\r\n");
    EXPECT_EQ(facts(run_time),
              "polled: 1 2 3 4 50; out of order: 2 3; in error: 2 3; "
              "message: ERROR! - Receive Error (ZAV:02); fault: receive; errors: 2");
}

TEST_F(DiscoveryTest, AStatusQueryTellsWhoReplied) {
    station({{1, "7RJA 0F 1.00"}, {5, "7SJA 0F 1.00"}, {50, "7RJA 0F 1.00"}});
    select({5, 50});
    driver.pod(5).ident = "8SJA 0F 9.99";
    driver.pod(50).ident = "";
    driver.at_call([&](const test::DriverCall&) { EXPECT_EQ(state.Sending, 1); });
    const PodSet replied = discovery.GetStatus(1, {Pod::numbered(5), Pod::numbered(50)});
    EXPECT_EQ(pods_with(replied), Pods{5});
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 5 ST", "Tx 50 ST"}));
    EXPECT_EQ(loop.elapsed_ms(), 1000);
    EXPECT_EQ(status(5).ident(), "8SJA 0F 9.99");
    EXPECT_EQ(status(5).Channels, 32);
    EXPECT_EQ(pods_with(state.ZavSelected), Pods{5});
    EXPECT_EQ(state.Sending, 0);
    EXPECT_EQ(state.AwaitingReply, PodSet{});
}

TEST_F(DiscoveryTest, AReplyThatCameWhileSomethingElseWaitedCounts) {
    station({{1, "7RJA 0F 1.00"}, {5, "7RJA 0F 1.00"}});
    driver.pod(1).reply_ms = 200;
    driver.pod(5).ident = "";
    loop.call_later(100, [&] { link.send("HA;", {Pod::numbered(1)}); });  // 3000 ms
    const PodSet replied = discovery.GetStatus(1, {Pod::numbered(1), Pod::numbered(5)});
    EXPECT_EQ(pods_with(replied), Pods{1});
    EXPECT_EQ(run_time.Link.SessionErrorCount, 1);
}

TEST_F(DiscoveryTest, ATickDuringAStatusQueryLeavesTheReplyAlone) {
    station({{1, "7RJA 0F 1.00"}, {5, "7RJA 0F 1.00"}});
    driver.pod(1).reply_ms = 99;  // arrives right before the poll tick
    driver.pod(5).reply_ms = 300;
    start_polling();
    discovery.GetStatus(1, {Pod::numbered(1), Pod::numbered(5)});
    EXPECT_EQ(loop.elapsed_ms(), 300);
    EXPECT_EQ(facts(run_time), "polled: 1 5");
    loop.run_for(100);
    EXPECT_NE(driver.recorded("Test 1/3"), Lines{});  // the text stream is polled again
}

TEST(Discovery, PodsAreConfiguredByTheirType) {
    struct Row {
        const char* ident;
        std::int16_t type;
        int channels;
        const char* facts;
    };
    const Row rows[] = {
        {"7RJA 0F 1.00", Type7R, 20, "polled: 26"},
        {"7SJA 0F 1.00", Type7S, 10, "polled: 26"},
        {"7TJA 0F 1.00", Type7T, 20, "polled: 26"},
        {"7UJA 0F 1.00", Type7U, 20, "polled: 26"},
        {"7VJA 0F 1.00", Type7V, 20, "polled: 26"},
        {"7WJA 0F 1.00", Type7W, 20, "polled: 26"},
        {"8RCN 0F 1.00", Type8R, 20, "polled: 26"},
        {"8SFN 0F 1.00", Type8S, 32, "polled: 26"},
        {"7XJA 0F 1.00", NoDevice, 20, "polled: 26; out of order: 26"},
        {"7YJA 0F 1.00", NoDevice, 20, "polled: 26; out of order: 26"},
        {"\x01\xFF..........", NoDevice, 20, "polled: 26"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.ident);
        Rig rig;
        rig.station({{26, row.ident}});
        PodConfig expected;
        default_ZAV_config(expected, row.type, 0);
        EXPECT_EQ(rig.config(26), expected);
        EXPECT_EQ(rig.status(26).Channels, row.channels);
        EXPECT_EQ(facts(rig.run_time), row.facts);
    }
}

TEST_F(DiscoveryTest, AShortReplyLeavesTheRestOfTheIdentification) {
    station({{1, "7S"}});
    EXPECT_EQ(status(1).ident(), "7S          ");
    EXPECT_EQ(status(1).Channels, 10);
}

TEST_F(DiscoveryTest, InitialiseForgetsTheLastNetwork) {
    const Pod five = Pod::numbered(5);
    station({{5, "7RJA 0F 1.00"}});
    start_polling();
    state.ZavSelected = state.Triggered = PodSet::all();
    state.InterfaceSelected = state.AllSelected = state.ContScanning = true;
    state.ScanState.fill(ScanState::ContinuouslyScanning);
    state.ErrorCount = state.SessionErrorCount = 4;
    state.StreamRequests[five] = "ME3;";
    state.RequestKinds[five] = "0";
    status(5).Reading[0] = status(5).PeakMax[31] = 5;
    status(5).ErrorFlag = true;
    run_time.Reports.LastFault = Fault::Pod;
    run_time.Poll.LastEvent[five] = 3;
    run_time.Poll.EventPending = run_time.Poll.PollStarted = true;
    run_time.Poll.LoadPercent = 10;
    run_time.Graph.Settings.Title = "Mine";
    config(5).Channel[0].Label = "Oven";
    const StandingPods before({five}, state);
    discovery.Initialise();

    EXPECT_EQ(facts(run_time), "polled: 5; errors: 4");  // the run's errors, and what was found
    EXPECT_FALSE(before.has(five));
    EXPECT_FALSE(state.InterfaceSelected || state.AllSelected || state.OperationsEnabled);
    EXPECT_EQ(state.ErrorCount, 0);
    EXPECT_EQ(state.StreamRequests[five] + state.RequestKinds[five], "");
    EXPECT_EQ(status(5).ident(), "NC          ");
    EXPECT_EQ(status(5).Reading[0], 0);
    EXPECT_EQ(status(5).PeakMax[31], -3.4E38F);
    EXPECT_EQ(status(50).PeakMin[0], 3.4E38F);
    EXPECT_FALSE(status(5).Found);
    EXPECT_EQ(run_time.Poll.LastEvent[five], -1);
    EXPECT_FALSE(run_time.Poll.EventPending || run_time.Poll.PollStarted);
    EXPECT_EQ(run_time.Poll.LoadPercent, std::nullopt);
    EXPECT_EQ(run_time.Graph.Settings.Title, "Trend Graph");
    PodConfig unconfigured;
    default_ZAV_config(unconfigured, NoDevice, 0);
    EXPECT_EQ(config(5), unconfigured);
    EXPECT_FALSE(tmrPoll->running());
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
