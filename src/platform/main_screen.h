#pragma once

// The control record of the main window `frmMain`. Pod controls have the index pod number - 1.

#include <array>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/driver.h"

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

using PodLabels = std::array<Label, MaxZavs>;

inline constexpr std::string_view MainCaption = "KAVORIXER";

struct MainScreen {
    // With the configuration file, and a "*" while it has changes that were not saved.
    std::string caption{MainCaption};

    Label lblMsg;

    // Pod display: the numbers of the strips 01..25 and 26..50, the icons with their type labels,
    // the interface icon.
    std::array<std::string, 25> picZAVNum1;
    std::array<std::string, 25> picZAVNum2;
    std::array<Icon, MaxZavs> img_ZAV;
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

    // Command buttons.
    Button cmdTrig{"&Trigger", "Start measurement"};
    Button cmdHalt{"&Halt", "Stop measurement"};
    Button cmdTransmit{"T&ransmit", "Transmit Zav configuration"};
    Button cmdConfig{"Co&nfig...", "Configure the Zav"};
    Button cmdDefault{"&Default/Expand", ""};
    Button cmdSelectAll{"&Select/De-Select All", ""};
    Button cmdClear{"Cl&ear", ""};

    // Menus, items under their index; an index that the menu table does not name is a separator.
    MenuItem mnuConfig{"&Config"};
    std::array<MenuItem, 14> mnuConfigItem;
    MenuItem mnuOperate{"&Operate"};
    std::array<MenuItem, 8> mnuOperateItem;
    MenuItem mnuView{"&View"};
    std::array<MenuItem, 2> mnuViewItem;  // "View Data" (a submenu), "View Status..."
    std::array<MenuItem, StreamCount> mnuViewDataItem;
    MenuItem mnuLogging{"&Logging"};
    std::array<MenuItem, 3> mnuLoggingItem;  // the submenus set-up, start, stop
    std::array<MenuItem, 2> mnuLoggingItemSetup;
    std::array<MenuItem, 3> mnuLoggingItemStart;
    std::array<MenuItem, 3> mnuLoggingItemStop;
    MenuItem mnuTrend{"&Graph"};
    std::array<MenuItem, 2> mnuTrendItem;
    MenuItem mnuOptions{"O&ptions"};
    std::array<MenuItem, 6> mnuOptionsItem;
    MenuItem mnuTransmitRem;
    MenuItem mnuUtilities{"&Utilities"};
    std::array<MenuItem, 2> mnuUtilitiesItem;
    MenuItem mnuHelp{"&Help"};
    MenuItem mnuGuide;
    MenuItem mnuKeys;
    MenuItem mnuAbout;

    PodLabels& lblStrm(int stream) {
        PodLabels* const rows[] = {&lblStrm0, &lblStrm1, &lblStrm2, &lblStrm3};
        return *rows[stream];
    }
    const PodLabels& lblStrm(int stream) const {
        return const_cast<MainScreen*>(this)->lblStrm(stream);
    }
};

}  // namespace kavorix
