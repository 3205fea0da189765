#pragma once

// What the main window does: every button, menu item, icon click and panel double-click, as far as
// no toolkit is needed.

#include <cstdint>
#include <functional>
#include <string>

#include "link/command_link.h"
#include "link/discovery.h"
#include "ui/commands.h"

namespace kavorix {

// The About box `frmAbout`.
struct AboutBox {
    std::string title;  // "About KAVORIX"
    std::string program;
    std::string model;
    std::string version;
    std::string lblDLLVers;
};

// The windows that operations open. Each call returns when a modal window is closed, at once for a
// view.
class Windows {
  public:
    virtual ~Windows() = default;
    virtual void show_about(const AboutBox& about) = 0;
    virtual void show_stream0() = 0;
};

class Operations : public MainWindow {
  public:
    struct Surroundings {
        CommandLink::Surroundings link;
        Configuration& configuration;
        CommandLink& command_link;
        Discovery& discovery;
        Windows& windows;
        std::function<void()> transmit_config;  // each selected pod its configuration
        std::function<void()> exit;             // ExitKAVORIX
    };
    explicit Operations(const Surroundings& surroundings);

    // Runs a menu command. Nothing happens when its item is disabled.
    void run(Command command);

    void cmdTrig_Click();
    void cmdHalt_Click();
    void cmdTransmit_Click();
    void cmdConfig_Click();
    void cmdDefault_Click();
    void cmdSelectAll_Click();
    void cmdClear_Click();
    void img_ZAV_Click(int pod);
    void img_4A_Click();
    void pnlErr_DblClick();
    void pnlButton_DblClick(int stream);
    void mnuOperate_Click();  // the menu is about to open
    void unload_request();    // the window is asked to close; it stays open until the program ends

    void ConfigItems(std::int16_t mode) override;
    void CheckItems() override;
    void ClearScreen() override;
    void StatusRefresh() override;
};

}  // namespace kavorix
