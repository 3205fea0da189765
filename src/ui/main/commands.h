#pragma once

// Every operation that the operator can start from the main window: a row each, and where menus and
// buttons show them.

#include <array>
#include <span>
#include <string_view>

#include "ui/main/availability.h"

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

inline constexpr std::size_t CommandCount = static_cast<std::size_t>(LastCommand) + 1;

// What a command needs; null behind the last.
using Needs = std::array<const Condition*, 5>;

// A command, as a menu shows it. The name is its control's, for example "mnuConfigItem(3)"; empty
// for a command that only a button has. Failures of its handler are reported under `trace`.
struct CommandRow {
    Command id = Command::None;
    std::string_view name;
    std::string_view caption;  // "&" marks the accelerator
    std::string_view tip;
    std::string_view trace;
    Needs needs{};
    bool (*checked)(const RunTime&) = nullptr;  // of an item that can be checked

    Conditions conditions() const;
};

enum class Glyph {
    Trigger,
    Halt,
    Transmit,
    Configure,
    Layout,
    SelectAll,
    Clear,
    Warning,      // a red triangle with an exclamation mark
    Caution,      // the same in amber
    Information,  // a disc with an i
    Question,     // a disc with a question mark
    Stop,         // a disc with a cross
    Cycle         // an arrow going round
};

// A command button.
struct ButtonRow {
    Command id = Command::None;
    std::string_view name;
    std::string_view caption;
    std::string_view tip;
    std::string_view trace;
    kavorix::Glyph glyph;
};

// A command, a submenu, or neither: a separator.
struct MenuLine {
    Command command = Command::None;
    const struct MenuRow* submenu = nullptr;

    constexpr MenuLine() = default;
    constexpr explicit MenuLine(Command id) : command(id) {}
    constexpr explicit MenuLine(const MenuRow& menu) : submenu(&menu) {}
    constexpr bool separator() const { return command == Command::None && submenu == nullptr; }
};

// A menu of the bar, or a submenu, from top to bottom; what it needs to be opened.
struct MenuRow {
    std::string_view name;
    std::string_view caption;
    std::span<const MenuLine> lines;
    Needs needs{};

    Conditions conditions() const;
};

inline constexpr std::size_t MenuCount = 8;

std::span<const CommandRow> command_rows();  // all of them
const CommandRow& command_row(Command command);
std::span<const MenuRow, MenuCount> menu_bar();  // from left to right
std::span<const MenuLine> pod_menu();            // what can be done with a pod
std::span<const ButtonRow> buttons();

// False for Command::None.
bool is_available(Command command, const StationState& state);

}  // namespace kavorix
