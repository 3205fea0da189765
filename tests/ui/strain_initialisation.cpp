#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "pod_setup_rig.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const ShownBox ReceiveError =
    refusal("Receive Error from ZAV. 'Initial volt' and 'offset' not set");

class StrainTest : public testing::Test, public PodSetupRig {
  protected:
    void SetUp() override {
        open(Type7S);
        set_channel(7, 62);
        driver.calls.clear();
    }
    // The pod answers the request with `reply`.
    void on_request(const Reply& reply) {
        driver.at_call([=, this](const DriverCall& call) {
            if (call.text == "Tx 3 IN07") driver.pod(3).waiting[RequestStream].push_back(reply);
        });
    }
    void expect_untouched() const {
        EXPECT_EQ(configuration.ZavConfigCopy[2].Strain[6], StrainSettings{});
        EXPECT_EQ(form.txtOffset.text, "00.000000");
    }
};

TEST_F(StrainTest, StoresAndShowsWhatThePodMeasured) {
    on_request(single(-0.25F, 1.5F));
    dialog.cmdInitialise_Click();
    EXPECT_EQ(edited().Strain[6], (StrainSettings{0, -0.25F, 1.5F}));
    EXPECT_EQ(form.txtOffset.text, "-00.250000");
    EXPECT_EQ(form.txtInitialVolt.text, "01.500000");
    EXPECT_TRUE(changed());
    EXPECT_THAT(dialogs.boxes, IsEmpty());
    EXPECT_THAT(driver.recorded(),
                ElementsAre("Test 3/1", "Tx 3 IN07", "DLLDelay 100", "Test 3/1", "Numeric 3/1 2"));
}

TEST_F(StrainTest, PendingRepliesAreDiscardedWithTheirRequests) {
    driver.pod(3).waiting[RequestStream] = {single(9, 9), single(8, 8)};
    run_time.Link.StreamRequests[2] = "ME01;ME02;ME03;";
    on_request(single(1, 2));
    dialog.cmdInitialise_Click();
    EXPECT_EQ(edited().Strain[6], (StrainSettings{0, 1, 2}));
    EXPECT_EQ(run_time.Link.StreamRequests[2], "ME03;");
}

TEST_F(StrainTest, ThePodMustBeA7S) {
    const std::string_view ident = "7RJA 0F 1.00";
    std::copy(ident.begin(), ident.end(), run_time.Status[2].Ident.begin());
    dialog.cmdInitialise_Click();
    EXPECT_THAT(dialogs.boxes, ElementsAre(refusal("The ZAV connected is not of type '7S'.")));
    EXPECT_EQ(dialogs.beeps, 1);
    EXPECT_THAT(driver.calls, IsEmpty());
}

TEST_F(StrainTest, ASilentPodIsTriedFiveTimes) {
    dialog.cmdInitialise_Click();
    EXPECT_EQ(driver.recorded("DLLDelay 100").size(), 5u);
    EXPECT_EQ(driver.recorded("Test").size(), 6u);
    EXPECT_THAT(dialogs.boxes,
                ElementsAre(refusal("ZAV not responding. 'Initial volt' and 'offset' not set")));
    expect_untouched();
}

TEST_F(StrainTest, ATransmitErrorStops) {
    driver.pod(3).tx_status = 1;
    dialog.cmdInitialise_Click();
    EXPECT_THAT(dialogs.boxes,
                ElementsAre(refusal("Transmit Error. 'Initial volt' and 'offset' not set")));
    EXPECT_THAT(driver.recorded("DLLDelay"), IsEmpty());
    expect_untouched();
}

TEST_F(StrainTest, ReceiveErrorsOfEveryStep) {
    const std::vector<std::function<void()>> failures_of_the_pod = {
        [&] { driver.pod(3).test[RequestStream] = -1; },
        [&] { on_request(failure()); },
        [&] {
            driver.at_call([&](const DriverCall& call) {
                if (call.text == "DLLDelay 100") driver.pod(3).test[RequestStream] = -1;
            });
        },
        [&] {
            driver.pod(3).feed[RequestStream] = Feed{0, single(1, 1), 0};
        },  // never ends
        [&] { on_request(single(1, 1, 129)); },
        [&] { on_request(single(std::numeric_limits<float>::infinity(), 1)); }};
    for (std::size_t i = 0; i < failures_of_the_pod.size(); ++i) {
        driver.pod(3).test = {};
        driver.pod(3).feed = {};
        driver.pod(3).waiting = {};
        driver.at_call([](const DriverCall&) {});
        failures_of_the_pod[i]();
        dialog.cmdInitialise_Click();
        EXPECT_THAT(dialogs.take_boxes(), ElementsAre(ReceiveError)) << i;
        expect_untouched();
    }
}

}  // namespace
}  // namespace kavorix::test
