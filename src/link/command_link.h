#pragma once

// The one way to send commands to pods.

#include <memory>
#include <string>
#include <string_view>

#include "base/trap.h"
#include "link/link_errors.h"
#include "link/polling.h"
#include "platform/driver.h"
#include "platform/event_loop.h"

namespace kavorix {

// Sends command strings: tokens ended by ";", numbers in single quotes sent as four bytes.
class CommandLink {
  public:
    // What the link works with; all of it outlives the link.
    struct Surroundings {
        Driver& driver;
        EventLoop& loop;
        Dialogs& dialogs;
        MessageLine& message_line;
        LinkErrors& errors;
        FailureReporter& failures;
        Polling& polling;
        const Configuration& configuration;
        RunTime& run_time;
    };
    explicit CommandLink(const Surroundings& surroundings);

    // Sends `text` to the pods, token by token, and waits after each one while events flow: 10 ms,
    // or 1000 ms after a "TR" to a pod in continuous mode, 3000 ms after "HA", 500 ms after "RE".
    // Returns the pods that got all of it; one that fails or is cleared meanwhile gets none of the
    // tokens that follow. While another transmission is under way nothing is sent to anybody.
    PodSet send(std::string_view text, const PodSet& pods);

    // Sends LinkState::CommandString to the selected pods.
    PodSet TXString();

    // Whether a transmission is under way.
    bool transmitting() const { return transmitting_; }

  private:
    struct Call;  // what one call of send() remembers

    PodSet transmit(const std::string& text, const PodSet& pods);
    void command_continuous_mode(const PodSet& pods);
    void send_token(const std::string& token, Call& call);
    int note_sent(Pod pod, const std::string& token, Call& call);
    void note_request(Pod pod, const std::string& token, Call& call);
    void wait_transmit_delay(int delay_ms);
    std::int16_t card_handle() const { return with_.configuration.Interface.CardHandle; }

    Surroundings with_;
    LinkState& link_;
    PodStatuses& status_;
    std::unique_ptr<Timer> tmrTransmit_;
    bool transmitting_ = false;
};

}  // namespace kavorix
