#pragma once

// A Rig with the main window's commands, the transmission of configurations and the way out, for
// the test programs that know the ui room.

#include <string>
#include <vector>

#include "link/program_exit.h"
#include "support/rig.h"
#include "ui/main_window.h"

namespace kavorix::test {

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
    PodCommands pods{
        {link, transmission, sent, driver, dialogs, message_line, configuration, run_time}};
    ProgramExit program_exit{{driver, dialogs, error_log, failures, polling, configuration,
                              run_time, [this](std::int16_t as) { return save_file(as); }}};
    MainWindow main_window{
        {pods, dialogs, failures, configuration, run_time, [this] { program_exit.ExitKAVORIX(); }}};

    // What the main window shows now.
    MainScreen screen() const { return main_window.screen(); }

    // Clicks on pod icons.
    void click(const std::vector<int>& numbers) {
        for (const int pod : numbers) main_window.img_ZAV_Click(Pod::numbered(pod));
    }
};

}  // namespace kavorix::test
