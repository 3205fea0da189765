#pragma once

// Every operation that the operator can start from the main window, and the menus as one table.

#include <span>
#include <string_view>

#include "platform/main_screen.h"

namespace kavorix {

enum class Command {
    None,  // a separator, or a submenu's own line
    InterfaceCard,
    ZavSetup,
    OpenFile,
    Save,
    SaveAs,
    TransmitConfig,
    Delete,
    DefaultContScan,
    Exit,
    Trigger,
    Halt,
    ClearEventCounter,
    EventCaptureOn,
    EventCaptureOff,
    TxCommand,
    ViewStream0,
    ViewStream1,
    ViewStream2,
    ViewStream3,
    ViewStatus,
    SetupScanLog,
    SetupEventLog,
    StartScanLog,
    StartEventLog,
    StartBothLogs,
    StopScanLog,
    StopEventLog,
    StopBothLogs,
    GraphSetup,
    ViewGraph,
    DefaultScreen,
    ExpandScreen,
    SelectAll,
    Stream3AutoClear,
    TransmitReminder,
    ConvertLogFile,
    PrinterSetup,
    Guide,
    Keys,
    About,
    // Buttons without a menu item.
    Configure,
    DefaultExpand,
    ClearErrors
};

inline constexpr Command LastCommand = Command::ClearErrors;

// A command button of the main window.
struct ButtonEntry {
    std::string_view name;  // control name
    Command command = Command::None;
    Button MainScreen::*button = nullptr;
};

struct MenuEntry {
    std::string_view name;  // control name, for example "mnuConfigItem(3)"; empty for a separator
    std::string_view caption;
    std::string_view tool_tip;
    Command command = Command::None;
    MenuItem& (*item)(MainScreen&) = nullptr;  // its record; null for a separator
    std::span<const MenuEntry> children = {};  // of a submenu
    bool checkable = false;

    constexpr bool separator() const { return item == nullptr; }
};

// The menu bar from left to right; the children are the items from top to bottom.
std::span<const MenuEntry> menu_bar();

// The command buttons.
std::span<const ButtonEntry> buttons();

// Puts the captions of the table into the record.
void fill_menu_captions(MainScreen& screen);

}  // namespace kavorix
