#include "ui/commands.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

namespace kavorix {
namespace {

using Lines = std::vector<std::string>;

void list(std::span<const MenuEntry> entries, Lines& lines) {
    for (const MenuEntry& entry : entries) {
        if (entry.separator()) {
            lines.push_back("-");
            continue;
        }
        lines.push_back(std::string(entry.name) + " " + std::string(entry.caption));
        list(entry.children, lines);
    }
}

TEST(MenuBar, HasItsItemsUnderTheirNames) {
    Lines lines;
    list(menu_bar(), lines);
    EXPECT_EQ(lines, (Lines{"mnuConfig &Config",
                            "mnuConfigItem(0) I&nterface Card...",
                            "mnuConfigItem(1) &ZAV Setup...",
                            "-",
                            "mnuConfigItem(3) &Open File...",
                            "mnuConfigItem(4) &Save",
                            "mnuConfigItem(5) Sa&ve As...",
                            "-",
                            "mnuConfigItem(7) &Transmit Config",
                            "-",
                            "mnuConfigItem(9) &Delete",
                            "-",
                            "mnuConfigItem(11) Default &Cont Scan",
                            "-",
                            "mnuConfigItem(13) E&xit KAVORIXER.",
                            "mnuOperate &Operate",
                            "mnuOperateItem(0) &Trigger",
                            "mnuOperateItem(1) &Halt",
                            "-",
                            "mnuOperateItem(3) &Clear Event Counter...",
                            "mnuOperateItem(4) Event Capture O&N",
                            "mnuOperateItem(5) Event Capture O&FF",
                            "-",
                            "mnuOperateItem(7) T&x Command...",
                            "mnuView &View",
                            "mnuViewItem(0) View &Data",
                            "mnuViewDataItem(0) Stream &0...",
                            "mnuViewDataItem(1) Stream &1...",
                            "mnuViewDataItem(2) Stream &2...",
                            "mnuViewDataItem(3) Stream &3...",
                            "mnuViewItem(1) View &Status...",
                            "mnuLogging &Logging",
                            "mnuLoggingItem(0) &Setup Log File",
                            "mnuLoggingItemSetup(0) &Scans...",
                            "mnuLoggingItemSetup(1) &Events...",
                            "mnuLoggingItem(1) S&tart Logging",
                            "mnuLoggingItemStart(0) &Scans",
                            "mnuLoggingItemStart(1) &Events",
                            "mnuLoggingItemStart(2) &Both",
                            "mnuLoggingItem(2) St&op Logging",
                            "mnuLoggingItemStop(0) &Scans",
                            "mnuLoggingItemStop(1) &Events",
                            "mnuLoggingItemStop(2) &Both",
                            "mnuTrend &Graph",
                            "mnuTrendItem(0) &Setup...",
                            "mnuTrendItem(1) &View Graph...",
                            "mnuOptions O&ptions",
                            "mnuOptionsItem(0) &Default Screen",
                            "mnuOptionsItem(1) &Expand Screen",
                            "-",
                            "mnuOptionsItem(3) &Select / De-Select All",
                            "-",
                            "mnuOptionsItem(5) Stream 3 &AutoClear",
                            "mnuTransmitRem &Transmit Config Reminder",
                            "mnuUtilities &Utilities",
                            "mnuUtilitiesItem(0) &Convert Log File to ASCII(.CSV) File...",
                            "mnuUtilitiesItem(1) &Printer Setup...",
                            "mnuHelp &Help",
                            "mnuGuide &Guide",
                            "mnuKeys &Keyboard Short Cuts",
                            "mnuAbout &About KAVORIXER."}));
}

TEST(MenuBar, EveryCommandStandsInItOnceAndEveryEntryHasItsOwnRecord) {
    std::map<Command, int> commands;
    std::set<const MenuItem*> records;
    MainScreen screen;
    fill_menu_captions(screen);
    const auto visit = [&](auto&& self, std::span<const MenuEntry> entries) -> void {
        for (const MenuEntry& entry : entries) {
            if (entry.separator()) continue;
            if (entry.command != Command::None) {
                ++commands[entry.command];
                EXPECT_FALSE(entry.tool_tip.empty()) << entry.name;
            }
            EXPECT_TRUE(records.insert(&entry.item(screen)).second) << entry.name;
            EXPECT_EQ(entry.item(screen).caption, entry.caption);
            self(self, entry.children);
        }
    };
    visit(visit, menu_bar());
    for (int i = 1; i <= static_cast<int>(Command::About); ++i)
        EXPECT_EQ(commands[static_cast<Command>(i)], 1) << i;
}

TEST(MainScreen, StartsWithItsCaptionsAndToolTips) {
    const MainScreen screen;
    EXPECT_EQ(screen.caption, "KAVORIXER");
    EXPECT_EQ(screen.cmdTrig, (Button{"&Trigger", "Start measurement"}));
    EXPECT_EQ(screen.cmdHalt, (Button{"&Halt", "Stop measurement"}));
    EXPECT_EQ(screen.cmdTransmit, (Button{"T&ransmit", "Transmit Zav configuration"}));
    EXPECT_EQ(screen.cmdConfig, (Button{"Co&nfig...", "Configure the Zav"}));
    EXPECT_EQ(screen.cmdDefault.caption, "&Default/Expand");
    EXPECT_EQ(screen.cmdSelectAll.caption, "&Select/De-Select All");
    EXPECT_EQ(screen.cmdClear.caption, "Cl&ear");
}

}  // namespace
}  // namespace kavorix
