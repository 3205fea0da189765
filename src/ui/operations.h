#pragma once

// What the main window does: every button, menu item, icon click and panel double-click, as far as
// no toolkit is needed.

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "link/command_link.h"
#include "ui/availability.h"
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
        Windows& windows;
        std::string version;                    // of the program, for the About box
        std::function<void()> transmit_config;  // sends each selected pod its configuration
        std::function<void()> exit;  // leaves the program, or returns when the operator stays
    };
    explicit Operations(const Surroundings& surroundings);

    // Gives a command what it does, for the commands that other parts of the station carry out. A
    // command that was given nothing is never available.
    void on(Command command, std::function<void()> action);

    // Runs a menu command; nothing happens while it is not available.
    void run(Command command);

    void cmdTrig_Click() { run(Command::Trigger); }
    void cmdHalt_Click() { run(Command::Halt); }
    void cmdTransmit_Click() { run(Command::TransmitConfig); }
    void cmdConfig_Click();
    void cmdDefault_Click();
    void cmdSelectAll_Click() { run(Command::SelectAll); }
    void cmdClear_Click();
    void img_ZAV_Click(int pod);  // index 0..49
    void img_4A_Click();
    void pnlErr_DblClick();
    void pnlButton_DblClick(int stream);
    void unload_request();  // the window is asked to close; it stays until the program ends

    // Shows the pods that a running log records in their logging pictures.
    void show_logged_pods();

    // Whether a command can be used now.
    bool available(Command command) const;

    void ConfigItems(std::int16_t mode) override;
    void CheckItems() override;
    void IconReverse(int pod) override;  // whatever else the pod's state is
    void ClearScreen() override;
    void StatusRefresh() override;

  private:
    class Sending;

    void register_own_commands();
    void send(std::string command_string);
    void trigger();
    void halt();
    void transmit_config();
    void delete_configurations();
    void default_cont_scan();
    void select_all();
    void show_screen(bool expanded);
    void toggle_stream3_auto_clear();
    void show_about();
    bool selection_locked();
    void set_selected(int pod, bool selected);
    void clear_pod_error(int pod);
    bool confirmed(std::string_view text);
    StationState state() const;
    void show_availability();
    void show_menu(std::span<const MenuEntry> entries);
    template <class Action>
    void handler(std::string_view name, Action&& action);

    Surroundings with_;
    RunTime& run_time_;
    MainScreen& screen_;
    std::array<std::function<void()>, static_cast<std::size_t>(Command::About) + 1> actions_;
    bool config_commands_ = true;
    bool sending_ = false;
    bool sending_config_ = false;
    PodFlags cleared_{};  // pods that Clear deselected while their configuration was on its way
};

}  // namespace kavorix
