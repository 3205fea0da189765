#include "ui/commands.h"

#include <array>

namespace kavorix {

namespace {

using Item = MenuItem& (*)(MainScreen&);

template <auto Member>
constexpr Item single = [](MainScreen& screen) -> MenuItem& { return screen.*Member; };

template <auto Member, std::size_t Index>
constexpr Item indexed = [](MainScreen& screen) -> MenuItem& { return (screen.*Member)[Index]; };

constexpr MenuEntry Separator = {};

template <std::size_t I>
constexpr Item config = indexed<&MainScreen::mnuConfigItem, I>;
constexpr std::array ConfigItems = {
    MenuEntry{"mnuConfigItem(0)", "I&nterface Card...", "Card address, poll rate and power",
              Command::InterfaceCard, config<0>},
    MenuEntry{"mnuConfigItem(1)", "&ZAV Setup...", "Configure a pod and its channels",
              Command::ZavSetup, config<1>},
    Separator,
    MenuEntry{"mnuConfigItem(3)", "&Open File...", "Load a configuration file", Command::OpenFile,
              config<3>},
    MenuEntry{"mnuConfigItem(4)", "&Save", "Save the configuration", Command::Save, config<4>},
    MenuEntry{"mnuConfigItem(5)", "Sa&ve As...", "Save the configuration under another name",
              Command::SaveAs, config<5>},
    Separator,
    MenuEntry{"mnuConfigItem(7)", "&Transmit Config", "Send each selected pod its configuration",
              Command::TransmitConfig, config<7>},
    Separator,
    MenuEntry{"mnuConfigItem(9)", "&Delete", "Reset the configuration of the selected pods",
              Command::Delete, config<9>},
    Separator,
    MenuEntry{"mnuConfigItem(11)", "Default &Cont Scan",
              "Give the selected pods their defaults and scan continuously",
              Command::DefaultContScan, config<11>},
    Separator,
    MenuEntry{"mnuConfigItem(13)", "E&xit KAVORIXER.", "End the program", Command::Exit,
              config<13>},
};

template <std::size_t I>
constexpr Item operate = indexed<&MainScreen::mnuOperateItem, I>;
constexpr std::array OperateItems = {
    MenuEntry{"mnuOperateItem(0)", "&Trigger", "Start measurement", Command::Trigger, operate<0>},
    MenuEntry{"mnuOperateItem(1)", "&Halt", "Stop measurement", Command::Halt, operate<1>},
    Separator,
    MenuEntry{"mnuOperateItem(3)", "&Clear Event Counter...", "Set totalising channels to zero",
              Command::ClearEventCounter, operate<3>},
    MenuEntry{"mnuOperateItem(4)", "Event Capture O&N", "Selected pods report digital events",
              Command::EventCaptureOn, operate<4>},
    MenuEntry{"mnuOperateItem(5)", "Event Capture O&FF", "Selected pods report no events",
              Command::EventCaptureOff, operate<5>},
    Separator,
    MenuEntry{"mnuOperateItem(7)", "T&x Command...", "Send a typed command string",
              Command::TxCommand, operate<7>},
};

template <std::size_t I>
constexpr Item view_data = indexed<&MainScreen::mnuViewDataItem, I>;
constexpr std::array ViewDataItems = {
    MenuEntry{"mnuViewDataItem(0)", "Stream &0...", "Scan results", Command::ViewStream0,
              view_data<0>},
    MenuEntry{"mnuViewDataItem(1)", "Stream &1...", "Single-channel measurements",
              Command::ViewStream1, view_data<1>},
    MenuEntry{"mnuViewDataItem(2)", "Stream &2...", "Digital events", Command::ViewStream2,
              view_data<2>},
    MenuEntry{"mnuViewDataItem(3)", "Stream &3...", "Texts of the pods", Command::ViewStream3,
              view_data<3>},
};
constexpr std::array ViewItems = {
    MenuEntry{"mnuViewItem(0)", "View &Data", "", Command::None,
              indexed<&MainScreen::mnuViewItem, 0>, ViewDataItems},
    MenuEntry{"mnuViewItem(1)", "View &Status...", "Status of the selected pods and the interface",
              Command::ViewStatus, indexed<&MainScreen::mnuViewItem, 1>},
};

constexpr std::array LogSetupItems = {
    MenuEntry{"mnuLoggingItemSetup(0)", "&Scans...", "File and interval of the scan log",
              Command::SetupScanLog, indexed<&MainScreen::mnuLoggingItemSetup, 0>},
    MenuEntry{"mnuLoggingItemSetup(1)", "&Events...", "File of the event log",
              Command::SetupEventLog, indexed<&MainScreen::mnuLoggingItemSetup, 1>},
};
constexpr std::array LogStartItems = {
    MenuEntry{"mnuLoggingItemStart(0)", "&Scans", "Start the scan log", Command::StartScanLog,
              indexed<&MainScreen::mnuLoggingItemStart, 0>},
    MenuEntry{"mnuLoggingItemStart(1)", "&Events", "Start the event log", Command::StartEventLog,
              indexed<&MainScreen::mnuLoggingItemStart, 1>},
    MenuEntry{"mnuLoggingItemStart(2)", "&Both", "Start both logs", Command::StartBothLogs,
              indexed<&MainScreen::mnuLoggingItemStart, 2>},
};
constexpr std::array LogStopItems = {
    MenuEntry{"mnuLoggingItemStop(0)", "&Scans", "Stop the scan log", Command::StopScanLog,
              indexed<&MainScreen::mnuLoggingItemStop, 0>},
    MenuEntry{"mnuLoggingItemStop(1)", "&Events", "Stop the event log", Command::StopEventLog,
              indexed<&MainScreen::mnuLoggingItemStop, 1>},
    MenuEntry{"mnuLoggingItemStop(2)", "&Both", "Stop both logs", Command::StopBothLogs,
              indexed<&MainScreen::mnuLoggingItemStop, 2>},
};
constexpr std::array LoggingItems = {
    MenuEntry{"mnuLoggingItem(0)", "&Setup Log File", "", Command::None,
              indexed<&MainScreen::mnuLoggingItem, 0>, LogSetupItems},
    MenuEntry{"mnuLoggingItem(1)", "S&tart Logging", "", Command::None,
              indexed<&MainScreen::mnuLoggingItem, 1>, LogStartItems},
    MenuEntry{"mnuLoggingItem(2)", "St&op Logging", "", Command::None,
              indexed<&MainScreen::mnuLoggingItem, 2>, LogStopItems},
};

constexpr std::array TrendItems = {
    MenuEntry{"mnuTrendItem(0)", "&Setup...", "Channels, range and titles of the graph",
              Command::GraphSetup, indexed<&MainScreen::mnuTrendItem, 0>},
    MenuEntry{"mnuTrendItem(1)", "&View Graph...", "Show the graph", Command::ViewGraph,
              indexed<&MainScreen::mnuTrendItem, 1>},
};

template <std::size_t I>
constexpr Item options = indexed<&MainScreen::mnuOptionsItem, I>;
constexpr bool Checkable = true;
constexpr std::array OptionsItems = {
    MenuEntry{"mnuOptionsItem(0)",
              "&Default Screen",
              "Pod icons only",
              Command::DefaultScreen,
              options<0>,
              {},
              Checkable},
    MenuEntry{"mnuOptionsItem(1)",
              "&Expand Screen",
              "Pod icons with their stream indicators",
              Command::ExpandScreen,
              options<1>,
              {},
              Checkable},
    Separator,
    MenuEntry{"mnuOptionsItem(3)", "&Select / De-Select All", "Select all pods, or none",
              Command::SelectAll, options<3>},
    Separator,
    MenuEntry{"mnuOptionsItem(5)",
              "Stream 3 &AutoClear",
              "Leave pod texts as received",
              Command::Stream3AutoClear,
              options<5>,
              {},
              Checkable},
    MenuEntry{"mnuTransmitRem",
              "&Transmit Config Reminder",
              "Remind to transmit after a configuration change",
              Command::TransmitReminder,
              single<&MainScreen::mnuTransmitRem>,
              {},
              Checkable},
};

constexpr std::array UtilitiesItems = {
    MenuEntry{"mnuUtilitiesItem(0)", "&Convert Log File to ASCII(.CSV) File...",
              "Make a comma-separated text of a log file", Command::ConvertLogFile,
              indexed<&MainScreen::mnuUtilitiesItem, 0>},
    MenuEntry{"mnuUtilitiesItem(1)", "&Printer Setup...", "Printer and paper of the graphs",
              Command::PrinterSetup, indexed<&MainScreen::mnuUtilitiesItem, 1>},
};

constexpr std::array HelpItems = {
    MenuEntry{"mnuGuide", "&Guide", "How to work with the station; F1 tells about a window",
              Command::Guide, single<&MainScreen::mnuGuide>},
    MenuEntry{"mnuKeys", "&Keyboard Short Cuts", "What every key does", Command::Keys,
              single<&MainScreen::mnuKeys>},
    MenuEntry{"mnuAbout", "&About KAVORIXER.", "Program and driver version", Command::About,
              single<&MainScreen::mnuAbout>},
};

constexpr std::array Bar = {
    MenuEntry{"mnuConfig", "&Config", "", Command::None, single<&MainScreen::mnuConfig>,
              ConfigItems},
    MenuEntry{"mnuOperate", "&Operate", "", Command::None, single<&MainScreen::mnuOperate>,
              OperateItems},
    MenuEntry{"mnuView", "&View", "", Command::None, single<&MainScreen::mnuView>, ViewItems},
    MenuEntry{"mnuLogging", "&Logging", "", Command::None, single<&MainScreen::mnuLogging>,
              LoggingItems},
    MenuEntry{"mnuTrend", "&Graph", "", Command::None, single<&MainScreen::mnuTrend>, TrendItems},
    MenuEntry{"mnuOptions", "O&ptions", "", Command::None, single<&MainScreen::mnuOptions>,
              OptionsItems},
    MenuEntry{"mnuUtilities", "&Utilities", "", Command::None, single<&MainScreen::mnuUtilities>,
              UtilitiesItems},
    MenuEntry{"mnuHelp", "&Help", "", Command::None, single<&MainScreen::mnuHelp>, HelpItems},
};

constexpr std::array Buttons = {
    ButtonEntry{"cmdTrig", Command::Trigger, &MainScreen::cmdTrig},
    ButtonEntry{"cmdHalt", Command::Halt, &MainScreen::cmdHalt},
    ButtonEntry{"cmdTransmit", Command::TransmitConfig, &MainScreen::cmdTransmit},
    ButtonEntry{"cmdConfig", Command::Configure, &MainScreen::cmdConfig},
    ButtonEntry{"cmdDefault", Command::DefaultExpand, &MainScreen::cmdDefault},
    ButtonEntry{"cmdSelectAll", Command::SelectAll, &MainScreen::cmdSelectAll},
    ButtonEntry{"cmdClear", Command::ClearErrors, &MainScreen::cmdClear},
};

void fill(std::span<const MenuEntry> entries, MainScreen& screen) {
    for (const MenuEntry& entry : entries) {
        if (entry.separator()) continue;
        entry.item(screen).caption = entry.caption;
        fill(entry.children, screen);
    }
}

}  // namespace

std::span<const MenuEntry> menu_bar() {
    return Bar;
}

std::span<const ButtonEntry> buttons() {
    return Buttons;
}

void fill_menu_captions(MainScreen& screen) {
    fill(Bar, screen);
}

}  // namespace kavorix
