#pragma once

#include "model/runtime.h"
#include "platform/event_loop.h"

namespace kavorix {

// The switch of the poll cycle. The first transmission to a network starts it.
class Polling {
  public:
    // `tmrPoll` calls the poll cycle's handler. All of it outlives this.
    Polling(Timer& tmrPoll, PollState& poll, const LinkState& link)
        : tmrPoll_(tmrPoll), poll_(poll), link_(link) {}

    // Nothing happens when it runs already.
    void start() {
        if (tmrPoll_.running()) return;
        poll_.PollStarted = false;
        tmrPoll_.start(link_.PollTick);
    }
    void stop() { tmrPoll_.stop(); }

  private:
    Timer& tmrPoll_;
    PollState& poll_;
    const LinkState& link_;
};

}  // namespace kavorix
