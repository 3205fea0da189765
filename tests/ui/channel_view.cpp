#include "ui/pods/channel_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/catalogue.h"
#include "model/runtime.h"
#include "ui/pods/channel_overview.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string row_text(const ChannelView& view, int number) {
    std::string text;
    for (const GridCell& cell : view.screen.grdChannel.rows[at(number - 1)])
        text += (text.empty() ? "" : "|") + cell.text;
    return text;
}

class ChannelViewTest : public testing::Test {
  protected:
    PodConfig pod;
    void of_type(std::int16_t type) { default_ZAV_config(pod, type, 1); }
    std::string row(int number) { return row_text(ChannelView(pod, 3), number); }
};

TEST_F(ChannelViewTest, HeadingsFollowTheType) {
    of_type(Type7S);
    const ChannelView strain(pod, 3);
    EXPECT_EQ(strain.screen.caption, "ZAV 03 - 7S Solid State 6 Pole");
    EXPECT_THAT(strain.screen.grdChannel.headings,
                ElementsAre("Chan", "Mode", "Range", "Label", "Units", "Mx+c", "Gauge\nFactor",
                            "Offset", "Initial\nVolt"));
    EXPECT_EQ(strain.screen.grdChannel.rows.size(), 10u);
    of_type(Type8R);
    EXPECT_EQ(ChannelView(pod, 3).screen.grdChannel.headings[6], "Sample\nRate");
    EXPECT_EQ(ChannelView(pod, 3).screen.grdChannel.headings[7], "Time\nOut");
    of_type(Type8S);
    EXPECT_EQ(ChannelView(pod, 3).screen.grdChannel.headings[6], "");
    EXPECT_EQ(ChannelView(pod, 3).screen.grdChannel.rows.size(), 32u);
}

TEST_F(ChannelViewTest, AnalogAndStrainChannels) {
    of_type(Type7S);
    pod.Channel[1] = {64, 1, " Beam ", "uE", 2.5F, -1.0F, 0, {}, {}};
    pod.Strain[1] = {2.1F, 0.5F, -0.25F};
    EXPECT_EQ(row(1), "01|Volts DC|Autorange|||1x+0|||");
    EXPECT_EQ(row(2),
              "02|Strain Full Bridge 8mA|20mV|Beam|uE|2.5x+-1|02.100000|00.500000|-00.250000");
    pod.Channel[2].Mode = 0;
    EXPECT_EQ(row(3), "03|Skip|||||||");
}

TEST_F(ChannelViewTest, DigitalChannels) {
    of_type(Type8R);
    struct Row {
        std::int16_t mode;
        std::int16_t range;
        std::int16_t rate;
        std::int16_t timeout;
        const char* text;
    };
    for (const Row& r :
         {Row{70, 0, 0, 6, "01|Digital Status|TTL Logic|||1x+0|Default|Default|"},
          Row{74, 1, 2, 0, "01|Event Totalise|+ve going edge|||1x+0|1KHz|200ms|"},
          Row{90, 0, 0, 1, "01|Frequency|10ms|||1x+0|10ms|2s|"},
          Row{90, 3, 0, 2, "01|Frequency|10s|||1x+0|10s|20s|"},
          Row{90, 3, 4, 3, "01|Frequency|10s|||1x+0|100KHz|50s|"},
          Row{91, 0, 0, 3, "01|Multiple Periods|1 period|||1x+0|1 prd|50s|"},
          Row{91, 3, 0, 3, "01|Multiple Periods|1000 periods|||1x+0|1000 prds|50s|"}}) {
        pod.Channel[0].Mode = r.mode;
        pod.Channel[0].Range = r.range;
        pod.SampleRate[0] = r.rate;
        pod.Timeout[0] = r.timeout;
        EXPECT_EQ(row(1), r.text);
    }
}

TEST_F(ChannelViewTest, UniversalPodsShowPairsAndDigitalSettings) {
    of_type(Type7V);
    pod.Channel[2].Mode = 20;
    pod.Channel[2].Range = 3;
    pod.Channel[3].Mode = 0;
    pod.Timeout[19] = 5;
    EXPECT_EQ(row(3), "03|Resistance 4 Term|2k5 Ohm|||1x+0|||");
    EXPECT_EQ(row(4), "04|Skip|6 Pole with Ch. 3||||||");
    EXPECT_EQ(row(5), "05|Volts DC|Autorange|||1x+0|||");
    EXPECT_EQ(row(20), "20|Digital Status|(Hardware Sel.)|||1x+0|Default|130s|");
}

TEST_F(ChannelViewTest, APodWithoutTypeHasNoRows) {
    of_type(NoDevice);
    EXPECT_THAT(ChannelView(pod, 9).screen.grdChannel.rows, IsEmpty());
}

TEST_F(ChannelViewTest, TheOverviewTellsWhichRowsChanged) {
    of_type(Type7V);
    ChannelOverview overview([this]() -> const PodConfig& { return pod; });
    EXPECT_EQ(overview.row_count(), 20);
    const auto layout = overview.layout();
    overview.take_changed_rows();
    EXPECT_THAT(overview.take_changed_rows(), IsEmpty());
    pod.Channel[5].Label = "Flow";
    pod.Channel[6].Mode = 20;
    pod.Channel[7].Mode = 0;
    EXPECT_THAT(overview.take_changed_rows(), ElementsAre(5, 6, 7));
    pod.SixPole[6] = 1;
    EXPECT_THAT(overview.take_changed_rows(), ElementsAre(7)) << "it is now in use by channel 7";
    EXPECT_EQ(overview.cell(7, 2).text, "6 Pole with Ch. 7");
    EXPECT_EQ(overview.cell(5, 3).text, "Flow");
    EXPECT_FALSE(overview.in_use(7));
    EXPECT_EQ(overview.layout(), layout);
    of_type(Type8S);
    EXPECT_NE(overview.layout(), layout);
}

}  // namespace
}  // namespace kavorix::test
