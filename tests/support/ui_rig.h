#pragma once

// A Rig with the main window's commands, the transmission of configurations and the way out, for
// the test programs that know the ui room.

#include <string>
#include <vector>

#include "link/program_exit.h"
#include "support/rig.h"
#include "ui/main/main_window.h"
#include "ui/streams/select_channels.h"

namespace kavorix::test {

// Windows that nobody sees.
class QuietWindows : public Windows {
  public:
    void show_about(const AboutBox&) override {}
    void show_guide(std::string_view) override {}
    void show_stream0(Stream0View&) override {}
    void show_stream1(Stream1View&) override {}
    void show_stream2(Stream2View&) override {}
    void show_stream3(Stream3View&) override {}
    void show_interface_settings(InterfaceSettingsDialog&) override {}
    void show_status(StatusView&) override {}
    void show_tx_command(TxCommandDialog&) override {}
    void show_select_channels(SelectChannelsDialog& dialog) override { at_select(dialog); }
    void show_log_setup(LogSetup&) override {}
    void show_csv_conversion(CsvDialog&) override {}
    void show_graph_setup(GraphSetup&) override {}
    void show_csv_progress(CsvProgress&, bool) override {}
    void show_graph() override {}
    void close_graph() override {}

    // Lever: what the operator does in the channel selection.
    std::function<void(SelectChannelsDialog&)> at_select = [](SelectChannelsDialog& dialog) {
        dialog.cmdCancel_Click();
    };
};

class UiRig : public Rig {
  public:
    using Rig::Rig;

    // Lever: what saving the configuration does and returns (1 = abandoned).
    std::function<std::int16_t(std::int16_t)> save_file = [this](std::int16_t) {
        configuration.ConfigChanged = 0;
        return std::int16_t{0};
    };
    SentConfigurations sent{configuration.ZavConfig};
    Transmission transmission{
        {configuration, run_time.Status, run_time.Link, link, dialogs, failures, sent}};
    QuietWindows windows;
    PodCommands commands{
        {link, transmission, sent, driver, dialogs, message_line, configuration, run_time}};
    ProgramExit program_exit{{driver, dialogs, error_log, failures, polling, configuration,
                              run_time, [this](std::int16_t as) { return save_file(as); }}};
    MainWindow main_window{{commands, dialogs, failures, configuration, run_time,
                            [this] { program_exit.ExitKAVORIX(); }}};
    ChooseChannels choose_channels() { return choose_in_window(windows, dialogs, failures); }

    // What the main window shows now.
    MainScreen screen() const { return main_window.screen(); }

    // Clicks on pod icons.
    void click(const std::vector<int>& numbers) {
        for (const int pod : numbers) main_window.img_ZAV_Click(Pod::numbered(pod));
    }
};

}  // namespace kavorix::test
