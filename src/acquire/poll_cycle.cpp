#include "acquire/poll_cycle.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "base/numbers.h"

namespace kavorix {

namespace {

constexpr std::int16_t LoadTicksShown = 10;
constexpr int MostBars = 11;

// A pod that always has another answer on stream 1 must not hold up the rest: the next tick goes on
// with it.
constexpr int MostAnswersPerTick = 1000;

// Assigns only what differs: nothing is allocated while nothing changes.
void show(Label& label, std::string_view text) {
    if (label.caption != text) label.caption = text;
}

}  // namespace

Picture picture_of(std::int16_t icon_state) {
    constexpr std::array Pictures = {Picture::img1ZAV,  Picture::imgZAV,    Picture::img1ZAV_D,
                                     Picture::imgZAV_D, Picture::img1ZAV_E, Picture::img1LOG,
                                     Picture::imgLOG,   Picture::img1LOG_D, Picture::imgLOG_D};
    return Pictures[static_cast<std::size_t>(icon_state)];
}

void PollCycle::tmrPoll_Timer() {
    trapped(with_.failures, "frmMain/tmrPoll_Timer", [&] { tick(); });
}

void PollCycle::tick() {
    PollState& poll = with_.run_time.Poll;
    const std::uint32_t now = with_.loop.tick_count();
    if (poll.PollStarted == 0) {
        poll.PollStarted = 1;
        poll.PollCount = 0;
        poll.PollElapsed = 0;
        poll.TrendElapsed = 0;
        poll.LoadTicks = 0;
        poll.LoadAccum = 0;
    } else {
        const auto elapsed_ms = static_cast<std::int32_t>(now - poll.LastTickTime);
        correct_timing(elapsed_ms);
        show_load(elapsed_ms);
    }
    poll.LastTickTime = now;
    std::array<char, 12> digits{};
    const char* end = std::to_chars(digits.begin(), digits.end(), poll.PollCount).ptr;
    show(with_.screen.pnlPollCnt, {digits.data(), static_cast<std::size_t>(end - digits.data())});
    indicator_pass();
    stream_pass();
    if (poll.PollElapsed >= with_.configuration.Interface.PollRate) poll_boundary(now);
    if (poll.EventPending == 1) pass_events_on(now);
    trend_sample();
}

void PollCycle::correct_timing(std::int32_t elapsed_ms) {
    PollState& poll = with_.run_time.Poll;
    const std::int32_t late = elapsed_ms - with_.run_time.Link.PollTick;
    poll.PollElapsed += elapsed_ms;
    if (with_.run_time.Graph.TrendRunning == 1) poll.TrendElapsed += elapsed_ms;
    ++poll.LoadTicks;

    const std::int32_t before = with_.tmrPoll.interval_ms();
    std::int32_t interval = before;
    if (late > 0)
        interval = std::max(interval - late, 1);
    else if (late < 0)
        interval -= late;
    const std::int32_t to_boundary = with_.configuration.Interface.PollRate - poll.PollElapsed;
    if (to_boundary > 0 && to_boundary < interval) interval = to_boundary;
    if (interval != before) with_.tmrPoll.start(interval);
}

void PollCycle::show_load(std::int32_t elapsed_ms) {
    PollState& poll = with_.run_time.Poll;
    poll.LoadAccum += elapsed_ms;
    if (poll.LoadTicks < LoadTicksShown) return;
    const double percent = std::round(static_cast<double>(poll.LoadAccum) / LoadTicksShown /
                                      with_.configuration.Interface.PollRate * 100);
    Label& panel = with_.screen.pnlBars;
    panel.fore = percent >= 90 ? Colour::Red : percent >= 75 ? Colour::Yellow : Colour::Black;
    const int bars = std::clamp(round_half_even(percent / 10), 0, MostBars);
    show(panel, fixed(percent, 0) + "% " + std::string(static_cast<std::size_t>(bars), '|'));
    poll.LoadTicks = 0;
    poll.LoadAccum = 0;
}

bool PollCycle::logs_running() const {
    return with_.run_time.Log.ScanLogging == 1 || with_.run_time.Log.EventLogging == 1;
}

void PollCycle::set_icon_state(int pod, std::int16_t state) {
    with_.run_time.Status[at(pod)].IconState = state;
    with_.screen.img_ZAV[at(pod)].picture = picture_of(state);
}

void PollCycle::indicator_pass() {
    for (int stream = 0; stream < StreamCount; ++stream) {
        PodLabels& labels = with_.screen.lblStrm(stream);
        for (int pod = 0; pod < MaxZavs; ++pod)
            if (with_.run_time.Status[at(pod)].StreamSeen[at(stream)] != 1)
                show(labels[at(pod)], "-");
    }
    for (int pod = 0; pod < MaxZavs; ++pod) {
        const PodStatus& status = with_.run_time.Status[at(pod)];
        if (std::count(status.StreamSeen.begin(), status.StreamSeen.end(), 1) > 0) continue;
        const bool logged = logs_running() && (status.LogScan == 1 || status.LogEvents == 1);
        switch (status.IconState) {
            case DataArrived:
                if (!logged) set_icon_state(pod, Resting);
                break;
            case SelectedDataArrived:
                if (!logged) set_icon_state(pod, SelectedResting);
                break;
            case LoggingDataArrived:
                set_icon_state(pod, LoggingResting);
                break;
            case SelectedLoggingDataArrived:
                set_icon_state(pod, SelectedLoggingResting);
                break;
            default:
                break;
        }
    }
}

void PollCycle::stream_pass() {
    const PodFlags& in_table = with_.run_time.Link.PollTable.InPollTable;
    for (int pod = 0; pod < MaxZavs; ++pod)
        for (std::int16_t stream = 0; stream < StreamCount; ++stream) {
            // A status reply comes on the text stream too and belongs to who asked for it.
            if (stream == TextStream && with_.run_time.Link.AwaitingReply[at(pod)] == 1) break;
            // Asked anew for every stream: a failed read takes the pod out of the table.
            if (in_table[at(pod)] != 1 || !visit_stream(pod, stream)) break;
        }
}

// False when the pod does not answer.
bool PollCycle::visit_stream(int pod, std::int16_t stream) {
    const auto result = with_.driver.Zav_Test(static_cast<std::int16_t>(pod + 1), stream,
                                              with_.configuration.Interface.CardHandle);
    if (result == -1) {
        link_.RxTxErr(pod, 1, 1);
        return false;
    }
    if (result != 1) return true;
    note_data(pod, stream);
    switch (stream) {
        case ReadingStream:
            if (with_.run_time.Link.Triggered[at(pod)] == 1) decoder_.read_stream0(pod);
            break;
        case RequestStream:
            drain_stream1(pod);
            break;
        case EventStream:
            decoder_.read_stream2(pod);
            break;
        default:
            decoder_.read_stream3(pod);
            break;
    }
    return true;
}

void PollCycle::note_data(int pod, std::int16_t stream) {
    PodStatus& status = with_.run_time.Status[at(pod)];
    const bool selected = with_.run_time.Link.ZavSelected[at(pod)] == 1;
    const bool logged = logs_running() && (status.LogScan == 1 || status.LogEvents == 1);
    set_icon_state(pod, logged     ? selected ? SelectedLoggingDataArrived : LoggingDataArrived
                        : selected ? SelectedDataArrived
                                   : DataArrived);
    if (stream != RequestStream) {
        const char digit = static_cast<char>('0' + stream);
        show(with_.screen.lblStrm(stream)[at(pod)], {&digit, 1});
    }
    const bool text = stream == TextStream;
    if (!text || with_.run_time.Poll.Stream3AutoClear == 0) status.StreamSeen[at(stream)] = 1;
    if (!text) status.StreamNew[at(stream)] = 1;
}

void PollCycle::drain_stream1(int pod) {
    for (int answers = 0; answers < MostAnswersPerTick; ++answers) {
        decoder_.read_stream1(pod);
        if (with_.run_time.Link.PollTable.InPollTable[at(pod)] != 1) return;
        const auto result = with_.driver.Zav_Test(static_cast<std::int16_t>(pod + 1), RequestStream,
                                                  with_.configuration.Interface.CardHandle);
        if (result == -1) link_.RxTxErr(pod, 1, 1);
        if (result != 1) return;
    }
}

void PollCycle::poll_boundary(std::uint32_t now) {
    PollState& poll = with_.run_time.Poll;
    const LogState& log = with_.run_time.Log;
    ++poll.PollCount;
    poll.PollElapsed -= with_.configuration.Interface.PollRate;
    if (poll.ViewOpen[ReadingStream] == 1) consumers_.refresh_stream0();
    if (poll.ViewOpen[RequestStream] == 1 && poll.Stream1Arrived == 1) {
        consumers_.refresh_stream1();
        poll.Stream1Arrived = 0;
    }
    if (poll.ViewOpen[TextStream] == 1) consumers_.refresh_stream3();
    // Unsigned: half the range of the tick count away from the last record is late too, not early.
    const auto due_ms =
        static_cast<std::uint32_t>(std::max(log.ScanLogInterval - with_.run_time.Link.PollTick, 0));
    if (log.ScanLogging == 1 && now - poll.LastScanLogTime >= due_ms) {
        poll.LastScanLogTime = now;
        consumers_.Write_Log_File(0, 0, static_cast<std::int32_t>(now));
    }
}

void PollCycle::pass_events_on(std::uint32_t now) {
    PollState& poll = with_.run_time.Poll;
    if (poll.ViewOpen[EventStream] == 1 &&
        with_.run_time.Status[at(poll.ViewedZav)].StreamSeen[EventStream] == 1) {
        poll.EventPending = 0;
        consumers_.show_events();
    }
    if (with_.run_time.Log.EventLogging == 1) {
        poll.EventPending = 0;
        consumers_.Write_Log_File(1, 0, static_cast<std::int32_t>(now));
    }
}

void PollCycle::trend_sample() {
    PollState& poll = with_.run_time.Poll;
    GraphState& graph = with_.run_time.Graph;
    const double interval_ms = graph.TrendInterval * 1000;
    if (poll.TrendElapsed < interval_ms) return;
    poll.TrendElapsed -= interval_ms;
    if (graph.TrendRunning != 1 || !consumers_.graph_exists()) return;
    samples_.clear();
    for (int pod = 0; pod < MaxZavs; ++pod)
        for (std::size_t channel = 0; channel < MaxChannels; ++channel) {
            if (graph.TrendSelected[at(pod)][channel] != 1) continue;
            const float peak = graph.TrendPeak[at(pod)][channel];
            samples_.push_back(peak);
            graph.TrendRef[at(pod)][channel] = peak;
            graph.TrendDev[at(pod)][channel] = 0;
        }
    const double missed = std::trunc(poll.TrendElapsed / interval_ms);
    for (double i = 0; i <= missed; ++i) consumers_.WRUpdateData(samples_);
    poll.TrendElapsed -= missed * interval_ms;
}

}  // namespace kavorix
