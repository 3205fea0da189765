#pragma once

// What operator commands do with pods; the same in the window and in the terminal.

#include <string_view>

#include "config/transmission.h"
#include "link/command_link.h"

namespace kavorix {

class PodCommands {
  public:
    // What it works with; all of it outlives this.
    struct Surroundings {
        CommandLink& command_link;
        Transmission& transmission;
        SentConfigurations& sent;
        Driver& driver;
        Dialogs& dialogs;
        MessageLine& message_line;
        Configuration& configuration;
        RunTime& run_time;
    };
    explicit PodCommands(const Surroundings& surroundings)
        : with_(surroundings), link_(with_.run_time.Link), status_(with_.run_time.Status) {}

    // All of these are about the selected pods. Those that send return when the pods have it.

    // Returns the pods that got the whole command string.
    PodSet send(std::string_view command_string);
    // The same, and stream-0 results are awaited of the pods that got it.
    void send_and_await(std::string_view command_string);
    void trigger() { send_and_await("TR;"); }
    void halt();
    void transmit_config();
    void capture_events(bool on) { send(on ? "EV1;" : "EV0;"); }

    // Both ask first.
    void delete_configurations();
    void default_cont_scan();

    // All pods with errors, selected or not, are polled again; what was reported is taken note of.
    void clear_errors();

    // Looks anew which pods are configured otherwise than they were last sent.
    void look_for_changes();

  private:
    void clear_pod_error(Pod pod);
    void set_default_config(Pod pod, std::int16_t setModes);
    bool confirmed(std::string_view text);

    Surroundings with_;
    LinkState& link_;
    PodStatuses& status_;
};

}  // namespace kavorix
