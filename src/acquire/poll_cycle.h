#pragma once

// The poll cycle: the handler of the poll timer, the main loop of a running station.

#include <cstdint>
#include <span>
#include <vector>

#include "acquire/stream_decoder.h"
#include "base/signal.h"
#include "base/trap.h"
#include "link/link_errors.h"
#include "platform/event_loop.h"

namespace kavorix {

class PollCycle {
  public:
    // What it works with; all of it outlives this.
    struct Surroundings {
        Driver& driver;
        const EventLoop& loop;
        Timer& tmrPoll;
        LinkErrors& errors;
        FailureReporter& failures;
        StreamDecoder& decoder;
        const Configuration& configuration;
        RunTime& run_time;
    };
    explicit PollCycle(const Surroundings& surroundings);

    // What the cycle tells while it runs, within the tick. No listener may wait for events.
    //
    // A stream-0 record of a pod was read and stored.
    Signal<Pod, const Moment&> reading;
    // A poll rate has passed: PollCount is the new one.
    Signal<const Moment&> boundary;
    // Events wait to be shown or logged; who takes them says so by take_events().
    Signal<const Moment&> events;
    // A row of samples for the graph, in pod and channel order.
    Signal<std::span<const float>> sample;

    // One tick of the poll timer.
    void tmrPoll_Timer();

    // To be called by a listener of `events`: they need not be told again.
    void take_events() { poll_.EventPending = false; }

  private:
    void tick();
    void correct_timing(std::int32_t elapsed_ms);
    void measure_load(std::int32_t elapsed_ms);
    void indicator_pass();
    void stream_pass(const Moment& now);
    bool visit_stream(Pod pod, std::int16_t stream, const Moment& now);
    bool data_waits(Pod pod, std::int16_t stream);
    void note_data(Pod pod, std::int16_t stream);
    void read(Pod pod, std::int16_t stream, const Moment& now);
    void drain_stream1(Pod pod, const Moment& now);
    void receive_error(Pod pod);
    void poll_boundary(const Moment& now);
    void trend_sample();

    Surroundings with_;
    PollState& poll_;
    LinkState& link_;
    PodStatuses& status_;
    std::vector<float> samples_;
};

}  // namespace kavorix
