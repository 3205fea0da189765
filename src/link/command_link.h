#pragma once

// The one way to send commands to the selected pods.

#include <cstdint>
#include <functional>
#include <memory>

#include "base/trap.h"
#include "link/error_log.h"
#include "link/message_line.h"
#include "model/runtime.h"
#include "platform/driver.h"
#include "platform/event_loop.h"

namespace kavorix {

// What the link asks of the main window's operations.
class MainWindow {
  public:
    virtual ~MainWindow() = default;

    // Disables (0) or enables (1) the configuration commands.
    virtual void ConfigItems(std::int16_t mode) = 0;
    // Recomputes which commands are available.
    virtual void CheckItems() = 0;
    // Shows a pod (index 0..49) in its selected or unselected picture.
    virtual void IconReverse(int pod) = 0;
    // Empties the pod display.
    virtual void ClearScreen() = 0;
    // Empties the status panels.
    virtual void StatusRefresh() = 0;
};

// Sends the text of LinkState::CommandString: tokens ended by ";", numbers in single quotes sent as
// four bytes.
class CommandLink {
  public:
    // What the link works with; all of it outlives the link.
    struct Surroundings {
        Driver& driver;
        EventLoop& loop;
        Dialogs& dialogs;
        MainScreen& screen;
        MessageLine& message_line;
        ErrorLog& error_log;
        FailureReporter& failures;
        MainWindow& main_window;
        const Configuration& configuration;
        RunTime& run_time;
        Timer& tmrPoll;  // started by the first transmission
    };
    explicit CommandLink(const Surroundings& surroundings);

    // Sends CommandString to every selected pod, token by token, and waits after each one while
    // events flow: 10 ms, or 1000 ms after a "TR" to a pod in continuous mode, 3000 ms after "HA",
    // 500 ms after "RE". A pod that is selected while the call waits gets none of the tokens that
    // follow, for it missed those before. A transmission asked for while one is under way is
    // refused: it returns without sending anything.
    void TXString();

    // The pods that the last TXString() sent its whole command string: selected from beginning to
    // end, and without a failure.
    const PodFlags& reached() const { return reached_; }

    // Whether a transmission is under way.
    bool transmitting() const { return transmitting_; }

    // Records a failed transmission (kind 0) or reception (kind 1; other kinds: count only) of one
    // pod; `remove` 1 takes it out of the poll table.
    void RxTxErr(int podIndex, std::int16_t kind, std::int16_t remove);

    // ContScanning from ScanState.
    void update_cont_scanning();

  private:
    struct Call;  // what one TXString call remembers

    void transmit();
    void send_token(const std::string& token, Call& call);
    void note_request(int pod, const std::string& token, Call& call);
    void wait_transmit_delay(int delay_ms);

    Surroundings with_;
    std::unique_ptr<Timer> tmrTransmit_;
    bool transmitting_ = false;
    PodFlags reached_{};
};

}  // namespace kavorix
