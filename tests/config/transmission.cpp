#include "config/transmission.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/recording_failures.h"
#include "support/scripted_dialogs.h"

namespace kavorix {
namespace {

// A station with five connected pods, of which some are selected. What TXString would send is
// recorded as "pod number: command string".
class TransmissionTest : public testing::Test {
  protected:
    TransmissionTest() {
        for (auto& status : status_) set_ident(status, "NC          ");
        connect(3, "7UJA 0F 1.00", Type7U);
        connect(7, "7UJA 0F 1.00", Type7U);
        connect(12, "8SJA 0F 1.00", Type8S);
    }

    static void set_ident(PodStatus& status, const std::string& ident) {
        std::copy(ident.begin(), ident.end(), status.Ident.begin());
    }

    void connect(int pod, const std::string& ident, std::int16_t configured) {
        set_ident(status_[at(pod - 1)], ident);
        default_ZAV_config(configuration_.ZavConfig[at(pod - 1)], configured, 0);
        configuration_.ZavConfig[at(pod - 1)].NumChannels = 1;
        link_.PollTable.InPollTable[at(pod - 1)] = 1;
    }

    void select(const std::vector<int>& pods) {
        for (const int pod : pods) link_.ZavSelected[at(pod - 1)] = 1;
        link_.NumSelected = static_cast<std::int16_t>(pods.size());
    }

    std::vector<int> selected() const {
        std::vector<int> pods;
        for (int pod = 1; pod <= MaxZavs; ++pod)
            if (link_.ZavSelected[at(pod - 1)] == 1) pods.push_back(pod);
        return pods;
    }

    // What the link does to a pod that fails.
    void remove(int pod) {
        link_.PollTable.InPollTable[at(pod - 1)] = 0;
        if (link_.ZavSelected[at(pod - 1)] == 1) {
            link_.ZavSelected[at(pod - 1)] = 0;
            --link_.NumSelected;
        }
    }

    void send() {
        std::string pods;
        for (const int pod : selected()) pods += std::to_string(pod) + ": ";
        sent_.push_back(pods + link_.CommandString);
        if (during_send_) during_send_();
    }

    Configuration configuration_;
    PodStatuses status_;
    LinkState link_;
    test::ScriptedDialogs dialogs_;
    test::RecordingFailures failures_;
    std::vector<std::string> sent_;
    std::function<void()> during_send_;
    SentConfigurations held_{configuration_.ZavConfig};
    Transmission transmission_{configuration_, status_,           link_, dialogs_, failures_,
                               held_,          [this] { send(); }};
};

using Sent = std::vector<std::string>;
using Pods = std::vector<int>;

TEST_F(TransmissionTest, EverySelectedPodGetsItsOwnString) {
    configuration_.ZavConfig[6].ScanPeriod = 500;
    select({3, 7, 12});
    transmission_.transmit_config();
    EXPECT_EQ(sent_, (Sent{"3: SP'0';CH1MO000;", "7: SP'500';CH1MO000;", "12: SP'0';CH1MO000;"}));
    EXPECT_EQ(selected(), (Pods{3, 7, 12}));
    EXPECT_EQ(link_.NumSelected, 3);
}

TEST_F(TransmissionTest, NothingSelectedSendsNothing) {
    transmission_.transmit_config();
    EXPECT_EQ(sent_, Sent{});
    EXPECT_EQ(link_.NumSelected, 0);
}

TEST_F(TransmissionTest, AnotherTypeConnectedIsToldAndSkipped) {
    set_ident(status_[6], "7VJA 0F 1.00");
    select({3, 7, 12});
    transmission_.transmit_config();
    EXPECT_EQ(sent_, (Sent{"3: SP'0';CH1MO000;", "7: ", "12: SP'0';CH1MO000;"}));
    EXPECT_EQ(dialogs_.boxes,
              (std::vector<test::ShownBox>{
                  {"ZAV type does not match the configuration ZAV type for ZAV number 07.\n\n"
                   "Configuration for this ZAV will not be transmitted.",
                   box::Exclamation, "KAVORIX"}}));
    EXPECT_EQ(selected(), (Pods{3, 7, 12}));
}

TEST_F(TransmissionTest, UnconnectedPodWithoutTypePassesTheCheck) {
    EXPECT_EQ(transmission_.load_config(20), "SP'0';");
    EXPECT_EQ(dialogs_.boxes.size(), 0u);
}

TEST_F(TransmissionTest, UnconnectedPodWithATypeDoesNotPass) {
    set_ident(status_[2], "NC          ");
    EXPECT_EQ(transmission_.load_config(2), "");
    EXPECT_EQ(dialogs_.boxes.size(), 1u);
}

TEST_F(TransmissionTest, PodThatFailsItsTransmissionStaysDeselected) {
    select({3, 7, 12});
    during_send_ = [&] {
        if (link_.ZavSelected[6] == 1) remove(7);
    };
    transmission_.transmit_config();
    EXPECT_EQ(sent_.size(), 3u);
    EXPECT_EQ(selected(), (Pods{3, 12}));
    EXPECT_EQ(link_.NumSelected, 2);
}

TEST_F(TransmissionTest, WhatAPodWasSentDiffersFromWhatIsConfiguredSince) {
    PodConfig& pod = configuration_.ZavConfig[6];
    EXPECT_FALSE(held_.differs(6)) << "nothing is known of it";
    held_.note(6);
    pod.Channel[0].Label = "Oven";
    EXPECT_FALSE(held_.differs(6)) << "labels are not sent";
    pod.ScanPeriod = 500;
    EXPECT_TRUE(held_.differs(6));
    select({3, 7});
    during_send_ = [&] { remove(7); };
    transmission_.transmit_config();
    EXPECT_TRUE(held_.differs(6)) << "it did not come through";
    link_.PollTable.InPollTable[6] = 1;
    during_send_ = nullptr;
    select({7});
    transmission_.transmit_config();
    EXPECT_FALSE(held_.differs(6));
    held_.forget(6);
    EXPECT_TRUE(held_.differs(6));
    pod.TypeCode = NoDevice;
    EXPECT_FALSE(held_.differs(6)) << "nothing would be sent";
}

TEST_F(TransmissionTest, PodRemovedWhileAnotherIsSentToStaysDeselected) {
    select({3, 7, 12});
    during_send_ = [&] {
        if (link_.ZavSelected[11] == 1) remove(3);
    };
    transmission_.transmit_config();
    EXPECT_EQ(selected(), (Pods{7, 12}));
    EXPECT_EQ(link_.NumSelected, 2);
}

TEST_F(TransmissionTest, PodOutsideThePollTableKeepsItsSelection) {
    remove(7);
    select({7, 12});
    transmission_.transmit_config();
    EXPECT_EQ(selected(), (Pods{7, 12}));
    EXPECT_EQ(link_.NumSelected, 2);
}

TEST_F(TransmissionTest, SelectionMadeMeanwhileNeverSharesAString) {
    select({3, 12});
    during_send_ = [&] { link_.ZavSelected[6] = 1; };
    transmission_.transmit_config();
    EXPECT_EQ(sent_, (Sent{"3: SP'0';CH1MO000;", "12: SP'0';CH1MO000;"}));
    EXPECT_EQ(selected(), (Pods{3, 12}));
}

TEST_F(TransmissionTest, SecondOneInsideTheFirstDoesNothing) {
    select({3, 12});
    during_send_ = [&] {
        EXPECT_TRUE(transmission_.transmitting());
        transmission_.transmit_config();
    };
    transmission_.transmit_config();
    EXPECT_EQ(sent_.size(), 2u);
    EXPECT_EQ(selected(), (Pods{3, 12}));
    EXPECT_FALSE(transmission_.transmitting());
}

TEST_F(TransmissionTest, UnexpectedFailureIsReported) {
    set_ident(status_[2], "NC          ");
    dialogs_.at_box([](const test::ShownBox&) { throw std::runtime_error("no display"); });
    EXPECT_THROW(transmission_.load_config(2), ProgramEnded);
    EXPECT_EQ(failures_.reports, (std::vector<std::string>{"0 confact/load_config: no display"}));
}

}  // namespace
}  // namespace kavorix
