#include "ui/main/commands.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace kavorix {
namespace {

using Lines = std::vector<std::string>;

void list(const MenuRow& menu, Lines& lines) {
    lines.push_back(std::string(menu.name) + " " + std::string(menu.caption));
    for (const MenuLine& line : menu.lines) {
        if (line.submenu != nullptr)
            list(*line.submenu, lines);
        else if (line.separator())
            lines.push_back("-");
        else
            lines.push_back(std::string(command_row(line.command).name) + " " +
                            std::string(command_row(line.command).caption));
    }
}

TEST(MenuBar, HasItsItemsUnderTheirNames) {
    Lines lines;
    for (const MenuRow& menu : menu_bar()) list(menu, lines);
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

TEST(MenuBar, EveryCommandWithANameStandsInItOnceAndHasATip) {
    std::map<Command, int> times;
    const auto count = [&](auto&& self, const MenuRow& menu) -> void {
        for (const MenuLine& line : menu.lines) {
            ++times[line.command];
            if (line.submenu != nullptr) self(self, *line.submenu);
        }
    };
    for (const MenuRow& menu : menu_bar()) count(count, menu);
    for (const CommandRow& row : command_rows()) {
        EXPECT_EQ(times[row.id], row.name.empty() ? 0 : 1) << row.name;
        EXPECT_EQ(row.tip.empty(), row.name.empty()) << row.name;
    }
}

TEST(CommandButtons, HaveTheirCaptionsAndTips) {
    Lines lines;
    for (const ButtonRow& row : buttons())
        lines.push_back(std::string(row.name) + " " + std::string(row.caption) + " " +
                        std::string(row.tip));
    EXPECT_EQ(lines, (Lines{"cmdTrig &Trigger Start measurement", "cmdHalt &Halt Stop measurement",
                            "cmdTransmit T&ransmit Transmit Zav configuration",
                            "cmdConfig Co&nfig... Configure the Zav",
                            "cmdDefault &Default/Expand Hide or show the stream indicators",
                            "cmdSelectAll &Select/De-Select All Select all pods, or none",
                            "cmdClear Cl&ear Put pods with errors back into service"}));
}

}  // namespace
}  // namespace kavorix
