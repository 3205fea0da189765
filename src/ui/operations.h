#pragma once

// What the main window does: every button, menu item, icon click and panel double-click, as far as
// no toolkit is needed.

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "config/sent_configurations.h"
#include "graphs/live_graph.h"
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

class CsvDialog;
class CsvProgress;
class GraphSetup;
class InterfaceSettingsDialog;
class LogSetup;
class SelectChannelsDialog;
class StatusView;
class Stream1View;
class Stream2View;
class Stream3View;
class TxCommandDialog;

// The windows that operations open. Each call returns when a modal window is closed, at once for a
// view. A surrounding without windows leaves out those that it has no use for.
class Windows : public GraphWindow {
  public:
    virtual void show_about(const AboutBox& about) = 0;

    // A page of the guide, "index" the first.
    virtual void show_guide(std::string_view) {}

    // The stream views: opened, or brought to the front, on the pods that are selected now.
    virtual void show_stream0() = 0;
    virtual void show_stream1(Stream1View&) {}
    virtual void show_stream2(Stream2View&) {}
    virtual void show_stream3(Stream3View&) {}

    // Modal; loaded by the caller, closed when their rules say so.
    virtual void show_interface_settings(InterfaceSettingsDialog&) {}
    virtual void show_status(StatusView&) {}
    virtual void show_tx_command(TxCommandDialog&) {}
    virtual void show_select_channels(SelectChannelsDialog&) {}
    virtual void show_log_setup(LogSetup&) {}
    virtual void show_csv_conversion(CsvDialog&) {}
    virtual void show_graph_setup(GraphSetup&) {}

    // The graph window: opened, or brought to the front, and closed.
    void show_graph() override {}
    void close_graph() override {}

    // The progress window of a conversion under way: opened, true, and closed; returns at once.
    virtual void show_csv_progress(CsvProgress&, bool) {}
};

class Operations : public MainWindow {
  public:
    struct Surroundings {
        CommandLink::Surroundings link;
        Configuration& configuration;
        CommandLink& command_link;
        Windows& windows;
        SentConfigurations& sent;
        std::string version;  // of the program, for the About box
        // Sends each selected pod its configuration, but for those that are marked meanwhile.
        std::function<void(const PodFlags& withdrawn)> transmit_config;
        std::function<void()> exit;  // leaves the program, or returns when the operator stays
    };
    explicit Operations(const Surroundings& surroundings);

    // Gives a command what it does, for the commands that other parts of the station carry out. A
    // command that was given nothing is never available.
    void on(Command command, std::function<void()> action);

    // Runs a menu command; nothing happens while it is not available.
    void run(Command command);

    // The same with another way to do it, such as with a file that is already chosen.
    void run(Command command, const std::function<void()>& action);

    void cmdTrig_Click() { run(Command::Trigger); }
    void cmdHalt_Click() { run(Command::Halt); }
    void cmdTransmit_Click() { run(Command::TransmitConfig); }
    void cmdConfig_Click();
    void cmdDefault_Click();
    void cmdSelectAll_Click() { run(Command::SelectAll); }
    void cmdClear_Click();
    void img_ZAV_Click(int pod);  // index 0..49
    void img_4A_Click();

    // A menu of what can be done with a pod (index 0..49) is about to open: a pod that is not
    // selected becomes the only one that is.
    void select_for_menu(int pod);
    void pnlErr_DblClick();
    void pnlButton_DblClick(int stream);
    void unload_request();  // the window is asked to close; it stays until the program ends

    // Shows the pods that a running log records in their logging pictures.
    void show_logged_pods();
    void mnuOperate_Click();  // the menu is about to open

    // Sends a command string to the selected pods. Nothing else that sends can be used meanwhile.
    void send(std::string command_string);

    // The same for any other work that talks to the pods.
    void while_sending(const std::function<void()>& work);

    // Whether such work is under way.
    bool sending() const { return sending_ || with_.command_link.transmitting(); }

    // Stream-0 results are awaited of the pods that got the last command string.
    void mark_triggered();

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
    void trigger();
    void halt();
    void transmit_config();
    void delete_configurations();
    void default_cont_scan();
    void clear_event_counter();
    void select_all();
    void show_screen(bool expanded);
    void toggle_stream3_auto_clear();
    void show_about();
    bool selection_locked();
    void set_selected(int pod, bool selected);
    void configure();
    void clear_errors();
    void clear_pod_error(int pod);
    bool confirmed(std::string_view text);
    StationState state() const;
    void show_availability();
    void show_changes();
    bool available(Command command, const StationState& now) const;
    void show_menu(std::span<const MenuEntry> entries, const StationState& now);
    template <class Action>
    void handler(std::string_view name, Action&& action);

    Surroundings with_;
    RunTime& run_time_;
    MainScreen& screen_;
    std::array<std::function<void()>, static_cast<std::size_t>(LastCommand) + 1> actions_;
    bool config_commands_ = true;
    bool sending_ = false;
    bool sending_config_ = false;
    PodFlags cleared_{};  // pods that Clear deselected while their configuration was on its way
};

}  // namespace kavorix
