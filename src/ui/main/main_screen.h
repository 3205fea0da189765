#pragma once

// The control record of the main window `frmMain`, computed from what the station knows.

#include <array>
#include <string>
#include <string_view>

#include "model/runtime.h"
#include "platform/controls.h"
#include "ui/main/commands.h"

namespace kavorix {

// The pictures of the pod icons and of the interface icon. "1" in a name: not selected; D: data
// arrived; E: in error; LOG: logging.
enum class Picture {
    img1ZAV,
    imgZAV,
    img1ZAV_D,
    imgZAV_D,
    img1ZAV_E,
    img1LOG,
    imgLOG,
    img1LOG_D,
    imgLOG_D,
    img14A,  // interface, not selected
    img4A    // interface, selected
};

struct Icon {
    Picture picture = Picture::img1ZAV;
    bool visible = false;
    std::string tool_tip;
    bool differs = false;  // of a pod: its configuration has changed since it was transmitted
    bool operator==(const Icon&) const = default;
};

using PodLabels = PodArray<Label>;

inline constexpr std::string_view MainCaption = "KAVORIXER";

struct MainScreen {
    // With the configuration file, and a "*" while it has changes that were not saved.
    std::string caption{MainCaption};

    Label lblMsg;

    // Pod display: the numbers of the strips 01..25 and 26..50, the icons with their type labels,
    // the interface icon.
    std::array<std::string, 25> picZAVNum1;
    std::array<std::string, 25> picZAVNum2;
    PodArray<Icon> img_ZAV;
    PodLabels lblZAVType;
    Icon img_4A{Picture::img14A, false, {}};

    // Stream indicator rows of the expanded screen: the row names of the two strips and a label per
    // pod and stream.
    bool expanded = false;
    std::array<Label, StreamCount> lbl1Strm;
    std::array<Label, StreamCount> lbl2Strm;
    PodLabels lblStrm0;
    PodLabels lblStrm1;
    PodLabels lblStrm2;
    PodLabels lblStrm3;

    // Status panels.
    Label pnlStatus;
    Label pnlContScan;
    Label pnlErr;
    Label pnlPollCnt;
    Label pnlBars;
    std::array<Label, StreamCount> pnlButton;

    // Commands, in menus and on buttons, and the menus of the bar.
    struct CommandState {
        bool enabled = false;
        bool checked = false;
        bool operator==(const CommandState&) const = default;
    };
    std::array<CommandState, CommandCount> Commands{};
    std::array<bool, MenuCount> Menus{};

    CommandState& command(Command id) { return Commands[static_cast<std::size_t>(id)]; }
    const CommandState& command(Command id) const { return Commands[static_cast<std::size_t>(id)]; }

    PodLabels& lblStrm(int stream) {
        PodLabels* const rows[] = {&lblStrm0, &lblStrm1, &lblStrm2, &lblStrm3};
        return *rows[stream];
    }
    const PodLabels& lblStrm(int stream) const {
        return const_cast<MainScreen*>(this)->lblStrm(stream);
    }
};

// `IconState` of a pod.
enum class IconState {
    Resting,
    SelectedResting,
    DataArrived,
    SelectedDataArrived,
    Removed,
    LoggingResting,
    SelectedLoggingResting,
    LoggingDataArrived,
    SelectedLoggingDataArrived
};
IconState icon_state(const RunTime& run_time, Pod pod);

// What the main window shows of a station in this state.
MainScreen main_screen(const RunTime& run_time, const Configuration& configuration);

}  // namespace kavorix
