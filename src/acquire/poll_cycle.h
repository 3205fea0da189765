#pragma once

// The poll cycle: the handler of the poll timer, the main loop of a running station.

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "acquire/stream_decoder.h"

namespace kavorix {

// Who takes what the poll cycle brings. None of the calls may wait for events.
class PollConsumers {
  public:
    virtual ~PollConsumers() = default;

    // At a poll boundary, while the view is open.
    virtual void refresh_stream0() = 0;
    virtual void refresh_stream1() = 0;
    virtual void refresh_stream3() {}

    // New events of the pod that the stream-2 view shows.
    virtual void show_events() = 0;

    // Adds a record (kind 0 = scan, 1 = event) at tick count `time`.
    virtual void Write_Log_File(std::int16_t kind, std::int16_t flush, std::int32_t time) = 0;

    // Whether the graph exists, and one row of samples for it, in pod and channel order.
    virtual bool graph_exists() = 0;
    virtual void WRUpdateData(std::span<const float> samples) = 0;
};

class PollCycle {
  public:
    PollCycle(const CommandLink::Surroundings& surroundings, CommandLink& link,
              StreamDecoder& decoder, PollConsumers& consumers)
        : with_(surroundings), link_(link), decoder_(decoder), consumers_(consumers) {}

    // One tick of the poll timer.
    void tmrPoll_Timer();

  private:
    void tick();
    void correct_timing(std::int32_t elapsed_ms);
    void show_load(std::int32_t elapsed_ms);
    void indicator_pass();
    void stream_pass();
    bool visit_stream(int pod, std::int16_t stream);
    void note_data(int pod, std::int16_t stream);
    void drain_stream1(int pod);
    void poll_boundary(std::uint32_t now);
    void pass_events_on(std::uint32_t now);
    void trend_sample();
    bool logs_running() const;
    void set_icon_state(int pod, std::int16_t state);

    CommandLink::Surroundings with_;
    CommandLink& link_;
    StreamDecoder& decoder_;
    PollConsumers& consumers_;
    std::vector<float> samples_;
};

// The picture of a pod in an icon state.
Picture picture_of(std::int16_t icon_state);

}  // namespace kavorix
