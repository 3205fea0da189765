#include "ui/card/status_view.h"

#include <gtest/gtest.h>

#include "support/ui_rig.h"

namespace kavorix::test {
namespace {

class FixedMemory : public SystemInfo {
  public:
    std::uint64_t available_memory() const override { return 8123456789; }
};

PodStatus answering(const std::string& ident) {
    PodStatus status;
    std::copy(ident.begin(), ident.end(), status.Ident.begin());
    return status;
}

// What stands under a word of the header, up to the next word.
std::string under(const std::string& line, std::string_view word, std::string_view next_word) {
    const auto first = StatusHeader.find(word);
    return line.substr(first, StatusHeader.find(next_word) - first);
}

TEST(PodStatusLine, StandsUnderItsHeader) {
    const std::string header(StatusHeader);
    const std::string line = pod_status_line(Pod::at_index(2), answering("7SAA12F41.02"), true);
    EXPECT_EQ(header,
              "ZAV         ZAV Type                            Connector             SP          "
              "FR          Software      Retries");
    EXPECT_EQ(line,
              "03          7S Solid State 6 Pole               Thermocouple          Yes         "
              "Yes         1.02              2");
}

struct TypeText {
    std::string code;
    std::string text;
};

TEST(PodStatusLine, NamesTheType) {
    for (const auto& [code, text] : std::vector<TypeText>{{"7R", "7R Solid State 3 Pole"},
                                                          {"7S", "7S Solid State 6 Pole"},
                                                          {"7T", "7T Reed Relay 3 Pole"},
                                                          {"7U", "7U Reed Relay 500V"},
                                                          {"7V", "7V Universal ZAV"},
                                                          {"7W", "7W Universal ZAV 500V"},
                                                          {"8R", "8R Digital I/O"},
                                                          {"8S", "8S Switch I/O"},
                                                          {"7X", "Unknown ZAV  "},
                                                          {"NC", "Unknown ZAV  "},
                                                          {"7v", "Unknown ZAV  "}}) {
        std::string padded = text;
        padded.resize(36, ' ');
        EXPECT_EQ(under(pod_status_line(Pod::at_index(0), answering(code + "J  0F  1.0"), true),
                        "ZAV Type", "Connector"),
                  padded);
    }
}

TEST(PodStatusLine, NamesTheConnector) {
    const std::vector<std::pair<char, std::string>> texts = {
        {'A', "Thermocouple"}, {'B', "Strain Gage"}, {'C', "Digital"},        {'D', "Reed Relay"},
        {'E', "Analog Out"},   {'F', "Switch"},      {'J', "Universal "},     {'W', "Calibration"},
        {'X', "Calibration"},  {'Z', "Calibration"}, {'Y', "Analog Out Cal"}, {'G', "Unknown..."},
        {'a', "Unknown..."},   {' ', "Unknown..."}};
    for (const auto& [letter, text] : texts) {
        std::string padded = text;
        padded.resize(22, ' ');
        EXPECT_EQ(under(pod_status_line(Pod::at_index(0),
                                        answering(std::string("7V") + letter + "  0F  1.0"), true),
                        "Connector", "SP"),
                  padded);
    }
}

TEST(PodStatusLine, ReadsTheCapabilityLetters) {
    EXPECT_EQ(under(pod_status_line(Pod::at_index(0), answering("7VJA 0F 1.00"), true), "SP", "FR"),
              "Yes         ");
    EXPECT_EQ(under(pod_status_line(Pod::at_index(0), answering("7VJB 0F 1.00"), true), "SP", "FR"),
              "No          ");
    EXPECT_EQ(
        under(pod_status_line(Pod::at_index(0), answering("7VJA 0F 1.00"), true), "FR", "Software"),
        "Yes         ");
    EXPECT_EQ(
        under(pod_status_line(Pod::at_index(0), answering("7VJA 0S 1.00"), true), "FR", "Software"),
        "No          ");
}

TEST(PodStatusLine, TellsOfARemovedPodUnlessItIsSelected) {
    PodStatus failed = answering("7VJA 0F 1.00");
    failed.ErrorFlag = true;
    EXPECT_EQ(pod_status_line(Pod::at_index(8), failed, false),
              "09          ERROR - ZAV Removed from Poll Table");
    EXPECT_EQ(under(pod_status_line(Pod::at_index(8), failed, true), "ZAV Type", "Connector"),
              "7V Universal ZAV                    ");
}

TEST(MemoryText, GroupsThousands) {
    for (const auto& [bytes, text] : std::vector<std::pair<std::uint64_t, std::string>>{
             {0, "Memory:  000 KB Free"},
             {7499, "Memory:  007 KB Free"},
             {7500, "Memory:  008 KB Free"},
             {999499, "Memory:  999 KB Free"},
             {1000000, "Memory:  1,000 KB Free"},
             {8123456789, "Memory:  8,123,457 KB Free"}})
        EXPECT_EQ(memory_text(bytes), text);
}

TEST(HostMemory, IsThere) {
    EXPECT_GT(make_host_system_info()->available_memory(), 1000000U);
}

class StatusViewTest : public testing::Test, public UiRig {
  protected:
    StatusViewTest() { station({{3, "7VJA 0F 1.00"}, {8, "8RCA 0F 1.00"}, {9, "7RAA 0F 1.00"}}); }
    FixedMemory memory;
    StatusView view{{discovery, message_line, failures, memory, configuration, run_time, {}}};
};

TEST_F(StatusViewTest, AsksTheSelectedPodsAnew) {
    click({3, 8});
    driver.pod(8).ident = "8RCA 3F 1.01";
    view.Form_Load();
    EXPECT_EQ(driver.recorded("Tx"), (Lines{"Tx 3 ST", "Tx 8 ST"}));
    EXPECT_EQ(view.screen.txtZAVStat.text,
              "03          7V Universal ZAV                    Universal             Yes         "
              "Yes         1.00              0\n"
              "08          8R Digital I/O                      Digital               Yes         "
              "Yes         1.01              3\n");
    EXPECT_EQ(view.screen.lblSysInfo.caption, "Memory:  8,123,457 KB Free");
    EXPECT_TRUE(view.screen.fraZAV.visible);
    EXPECT_FALSE(view.screen.fraAdap.visible);
    EXPECT_EQ(run_time.Reports.Message.Text, "");
}

TEST_F(StatusViewTest, ShowsTheInterfaceWhenItIsSelected) {
    main_window.img_4A_Click();
    configuration.Interface.PollRate = 250;
    run_time.Link.ErrorCount = 12;
    view.Form_Load();
    EXPECT_TRUE(driver.recorded("Tx").empty());
    EXPECT_FALSE(view.screen.fraZAV.visible);
    EXPECT_TRUE(view.screen.fraAdap.visible);
    EXPECT_EQ(view.screen.txtAdapStat.text,
              " Address:         C800\n"
              "Poll Rate:        250ms\n"
              "Rx/Tx Errors:     12\n"
              "ZAVS Connected:   3\n");
}

TEST_F(StatusViewTest, TellsOfAPodThatDoesNotAnswer) {
    click({3, 8});
    driver.pod(8).ident.clear();
    view.Form_Load();
    EXPECT_TRUE(view.screen.txtZAVStat.text.ends_with(
        "\n08          ERROR - ZAV Removed from Poll Table\n"))
        << view.screen.txtZAVStat.text;
    // The message of the failure stays on the line.
    EXPECT_EQ(run_time.Reports.Message.Text, " ERROR! - Receive Error (ZAV:08)");
}

TEST_F(StatusViewTest, TellsWhenTheOnlySelectedPodDoesNotAnswer) {
    click({8});
    driver.pod(8).ident.clear();
    view.Form_Load();
    EXPECT_TRUE(view.screen.fraZAV.visible);
    EXPECT_EQ(view.screen.txtZAVStat.text, "08          ERROR - ZAV Removed from Poll Table\n");
}

TEST_F(StatusViewTest, NothingElseIsSentMeanwhile) {
    click({3});
    driver.pod(3).reply_ms = 200;
    loop.call_later(50, [&] { main_window.run(Command::Trigger); });
    view.Form_Load();
    EXPECT_EQ(driver.recorded("Tx"), Lines{"Tx 3 ST"});
    EXPECT_TRUE(main_window.available(Command::Trigger));
}

TEST_F(StatusViewTest, ComparesTheSelectedPodsWithWhatTheyHold) {
    PodSet asked;
    std::vector<std::string> found = {"ZAV 08 arm: configured on, held off"};
    StatusView comparing({discovery, message_line, failures, memory, configuration, run_time,
                          [&](const PodSet& pods) {
                              asked = pods;
                              return found;
                          }});
    click({8, 9});
    comparing.Form_Load();
    EXPECT_TRUE(comparing.screen.cmdCompare.visible);
    EXPECT_FALSE(comparing.screen.fraHeld.visible);
    comparing.cmdCompare_Click();
    EXPECT_EQ(pods_with(asked), (std::vector{8, 9}));
    EXPECT_EQ(comparing.screen.txtHeld.text, "ZAV 08 arm: configured on, held off\n");
    EXPECT_TRUE(comparing.screen.fraHeld.visible);
    found.clear();
    comparing.cmdCompare_Click();
    EXPECT_EQ(comparing.screen.txtHeld.text, "No differences\n");
}

TEST_F(StatusViewTest, OffersNoComparisonWithoutOneOrWithoutAPod) {
    click({8});
    view.Form_Load();
    EXPECT_FALSE(view.screen.cmdCompare.visible);
    click({8});
    StatusView nothing_selected({discovery, message_line, failures, memory, configuration, run_time,
                                 [](const PodSet&) { return std::vector<std::string>{}; }});
    nothing_selected.Form_Load();
    EXPECT_FALSE(nothing_selected.screen.cmdCompare.visible);
}

TEST_F(StatusViewTest, OkCloses) {
    view.Form_Load();
    EXPECT_FALSE(view.closed());
    view.cmdOK_Click();
    EXPECT_TRUE(view.closed());
}

}  // namespace
}  // namespace kavorix::test
