#pragma once

// A Rig with the main window's operations, the transmission of configurations and the way out, for
// the test programs that know the ui room.

#include <string>
#include <vector>

#include "config/transmission.h"
#include "link/program_exit.h"
#include "support/rig.h"
#include "ui/operations.h"
#include "ui/select_channels.h"

namespace kavorix::test {

class RecordingWindows : public Windows {
  public:
    void show_about(const AboutBox& about) override { abouts.push_back(about); }
    void show_stream0() override { ++stream0_shown; }
    void show_select_channels(SelectChannelsDialog& dialog) override { at_select(dialog); }

    // Lever: what the operator does in the channel selection.
    std::function<void(SelectChannelsDialog&)> at_select = [](SelectChannelsDialog& dialog) {
        dialog.cmdCancel_Click();
    };

    std::vector<AboutBox> abouts;
    int stream0_shown = 0;
};

class UiRig : public Rig {
  public:
    explicit UiRig(std::uint32_t first_tick = 0) : Rig(first_tick) {
        main_window.target = &operations;
    }

    RecordingWindows windows;
    // Lever: what saving the configuration does and returns (1 = abandoned).
    std::function<std::int16_t(std::int16_t)> save_file = [this](std::int16_t) {
        configuration.ConfigChanged = 0;
        return std::int16_t{0};
    };
    SentConfigurations sent{configuration.ZavConfig};
    Transmission transmission{
        configuration, run_time.Status, run_time.Link, dialogs, failures, sent, [this] {
            link.TXString();
        }};
    ProgramExit program_exit{surroundings, [this](std::int16_t as) { return save_file(as); }};
    Operations operations{
        {surroundings, configuration, link, windows, sent, "1.2",
         [this](const PodFlags& withdrawn) { transmission.transmit_config(withdrawn); },
         [this] { program_exit.ExitKAVORIX(); }}};

    // Clicks on pod icons.
    void click(const std::vector<int>& pods) {
        for (const int pod : pods) operations.img_ZAV_Click(pod - 1);
    }
};

}  // namespace kavorix::test
