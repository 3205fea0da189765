#include "acquire/poll_cycle.h"

#include <algorithm>
#include <cmath>

namespace kavorix {

namespace {

constexpr int LoadTicksMeasured = 10;

// A pod that always has another answer on stream 1 must not hold up the rest: the next tick goes on
// with it.
constexpr int MostAnswersPerTick = 1000;

bool any(const StreamFlags& flags) {
    return std::find(flags.begin(), flags.end(), true) != flags.end();
}

}  // namespace

PollCycle::PollCycle(const Surroundings& surroundings)
    : with_(surroundings),
      poll_(with_.run_time.Poll),
      link_(with_.run_time.Link),
      status_(with_.run_time.Status) {}

void PollCycle::tmrPoll_Timer() {
    trapped(with_.failures, "frmMain/tmrPoll_Timer", [&] { tick(); });
}

void PollCycle::tick() {
    const Moment now{with_.loop.tick_count(), with_.loop.utc_ms()};
    if (!poll_.PollStarted) {
        poll_.PollStarted = true;
        poll_.PollCount = 0;
        poll_.PollElapsed = 0;
        poll_.TrendElapsed = 0;
        poll_.LoadTicks = 0;
        poll_.LoadAccum = 0;
    } else {
        const auto elapsed_ms = static_cast<std::int32_t>(now.Ticks - poll_.LastTickTime);
        correct_timing(elapsed_ms);
        measure_load(elapsed_ms);
    }
    poll_.LastTickTime = now.Ticks;
    indicator_pass();
    stream_pass(now);
    if (poll_.PollElapsed >= with_.configuration.Interface.PollRate) poll_boundary(now);
    if (poll_.EventPending) events(now);
    trend_sample();
}

void PollCycle::correct_timing(std::int32_t elapsed_ms) {
    const std::int32_t late = elapsed_ms - link_.PollTick;
    poll_.PollElapsed += elapsed_ms;
    if (with_.run_time.Graph.TrendRunning) poll_.TrendElapsed += elapsed_ms;
    ++poll_.LoadTicks;

    const std::int32_t before = with_.tmrPoll.interval_ms();
    std::int32_t interval = before;
    if (late > 0)
        interval = std::max(interval - late, 1);
    else if (late < 0)
        interval -= late;
    const std::int32_t to_boundary = with_.configuration.Interface.PollRate - poll_.PollElapsed;
    if (to_boundary > 0 && to_boundary < interval) interval = to_boundary;
    if (interval != before) with_.tmrPoll.start(interval);
}

void PollCycle::measure_load(std::int32_t elapsed_ms) {
    poll_.LoadAccum += elapsed_ms;
    if (poll_.LoadTicks < LoadTicksMeasured) return;
    poll_.LoadPercent = std::round(static_cast<double>(poll_.LoadAccum) / LoadTicksMeasured /
                                   with_.configuration.Interface.PollRate * 100);
    poll_.LoadTicks = 0;
    poll_.LoadAccum = 0;
}

void PollCycle::indicator_pass() {
    for (PodStatus& status : status_) {
        for (std::size_t s = 0; s < StreamCount; ++s)
            status.StreamMarked[s] = status.StreamMarked[s] && status.StreamSeen[s];
        status.DataArrived = status.DataArrived && any(status.StreamSeen);
    }
}

void PollCycle::stream_pass(const Moment& now) {
    for (const Pod pod : link_.PollTable.InPollTable)
        for (std::int16_t stream = 0; stream < StreamCount; ++stream) {
            // A status reply comes on the text stream too and belongs to who asked for it.
            if (stream == TextStream && link_.AwaitingReply.has(pod)) break;
            // Asked anew for every stream: a failed read takes the pod out of the table.
            if (!link_.PollTable.InPollTable.has(pod) || !visit_stream(pod, stream, now)) break;
        }
}

// False when the pod does not answer.
bool PollCycle::visit_stream(Pod pod, std::int16_t stream, const Moment& now) {
    if (!data_waits(pod, stream)) return link_.PollTable.InPollTable.has(pod);
    note_data(pod, stream);
    if (stream == RequestStream)
        drain_stream1(pod, now);
    else if (stream != ReadingStream || link_.Triggered.has(pod))
        read(pod, stream, now);
    return true;
}

bool PollCycle::data_waits(Pod pod, std::int16_t stream) {
    const auto result =
        with_.driver.Zav_Test(pod.number(), stream, with_.configuration.Interface.CardHandle);
    if (result == -1) receive_error(pod);
    return result == 1;
}

void PollCycle::note_data(Pod pod, std::int16_t stream) {
    PodStatus& status = status_[pod];
    const auto s = static_cast<std::size_t>(stream);
    status.DataArrived = true;
    if (stream != RequestStream) status.StreamMarked[s] = true;
    const bool text = stream == TextStream;
    if (!text || !poll_.Stream3AutoClear) status.StreamSeen[s] = true;
    if (!text) status.StreamNew[s] = true;
}

void PollCycle::read(Pod pod, std::int16_t stream, const Moment& now) {
    const Decoded decoded = with_.decoder.read(pod, stream, now);
    if (decoded == Decoded::Failed) receive_error(pod);
    if (decoded == Decoded::Done && stream == ReadingStream) reading(pod, now);
}

void PollCycle::drain_stream1(Pod pod, const Moment& now) {
    for (int answers = 0; answers < MostAnswersPerTick; ++answers) {
        read(pod, RequestStream, now);
        if (!link_.PollTable.InPollTable.has(pod) || !data_waits(pod, RequestStream)) return;
    }
}

void PollCycle::receive_error(Pod pod) {
    with_.errors.RxTxErr(pod, LinkFault::Receive, AfterFault::Removed);
}

void PollCycle::poll_boundary(const Moment& now) {
    ++poll_.PollCount;
    poll_.PollElapsed -= with_.configuration.Interface.PollRate;
    boundary(now);
}

void PollCycle::trend_sample() {
    GraphState& graph = with_.run_time.Graph;
    const double interval_ms = graph.TrendInterval * 1000;
    if (poll_.TrendElapsed < interval_ms) return;
    poll_.TrendElapsed -= interval_ms;
    if (!graph.TrendRunning) return;
    samples_.clear();
    for (const Pod pod : all_pods())
        for (std::size_t channel = 0; channel < MaxChannels; ++channel) {
            if (!graph.TrendSelected[pod][channel]) continue;
            const float peak = graph.TrendPeak[pod][channel];
            samples_.push_back(peak);
            graph.TrendRef[pod][channel] = peak;
            graph.TrendDev[pod][channel] = 0;
        }
    const double missed = std::trunc(poll_.TrendElapsed / interval_ms);
    for (double i = 0; i <= missed; ++i) sample(samples_);
    poll_.TrendElapsed -= missed * interval_ms;
}

}  // namespace kavorix
