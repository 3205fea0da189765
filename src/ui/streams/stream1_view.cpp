#include "ui/streams/stream1_view.h"

#include <algorithm>
#include <utility>

#include "acquire/stream_texts.h"
#include "base/numbers.h"
#include "base/text.h"

namespace kavorix {

namespace {

enum Column { PodColumn, ChannelColumn, DataColumn, LabelColumn };

constexpr int FollowUp_ms = 200;
// Requests without any answer for this long count as lost: longer than the longest time-out of a
// channel.
constexpr std::uint32_t Lost_ms = 150000;

std::string token_of(const SingleRequest& request) {
    return (request.initialise ? "IN" : "ME") + two_digits(request.channel) + ";";
}

bool contains(const std::vector<SingleRequest>& requests, int channel) {
    return std::any_of(requests.begin(), requests.end(),
                       [&](const SingleRequest& r) { return r.channel == channel; });
}

}  // namespace

std::vector<SingleRequest> single_requests(std::string_view command_string) {
    std::vector<SingleRequest> requests;
    for (auto end = command_string.find(';'); end != std::string_view::npos;
         end = command_string.find(';')) {
        const std::string_view token = trim(command_string.substr(0, end));
        command_string.remove_prefix(end + 1);
        const bool initialise = token.starts_with("IN");
        if (!initialise && !token.starts_with("ME")) continue;
        const double channel = leading_value(middle(token, 3));
        if (channel >= 1 && channel < MaxChannels + 1)
            requests.push_back({static_cast<int>(channel), initialise});
    }
    return requests;
}

Stream1View::Stream1View(const Surroundings& surroundings)
    : with_(surroundings),
      run_time_(surroundings.run_time),
      tmrFollowUp_(surroundings.loop.make_timer(
          [this] { trapped(with_.failures, "frmStrm1/tmrFollowUp_Timer", [&] { follow_up(); }); })),
      answers_(std::make_unique<PodArray<Answers>>()) {
    headings_ = {screen.lblZAV.caption, screen.lblChan.caption, screen.lblData.caption,
                 screen.lblLabel.caption, screen.lblUnits.caption};
    store({});
}

void Stream1View::load() {
    run_time_.Poll.ViewOpen[RequestStream] = true;
    pods_ = selected_pods(run_time_.Link);
    rebuild();
    refresh();
    if (outstanding()) tmrFollowUp_->start(FollowUp_ms);
}

void Stream1View::unload() {
    run_time_.Poll.ViewOpen[RequestStream] = false;
    queue_.clear();
    tmrFollowUp_->stop();
}

void Stream1View::store(std::vector<SingleRequest> requests) {
    stored_ = std::move(requests);
    std::string text;
    for (const SingleRequest& request : stored_) text += token_of(request);
    screen.lblRequest.caption = text.empty() ? "No channels requested yet." : "Requests:  " + text;
    screen.cmdMeasure.enabled = !stored_.empty();
}

bool Stream1View::any_pod_selected() {
    if (run_time_.Link.NumSelected() > 0) return true;
    with_.message_line.DispMsg(" No ZAV Selected - Command not Sent", Severity::Error);
    return false;
}

void Stream1View::cmdSelChan_Click() {
    trapped(with_.failures, "frmStrm1/cmdSelChan_Click", [&] {
        if (!any_pod_selected()) return;
        ChannelChoice choice;
        choice.prompt = "Select Channels to Measure:";
        choice.sets = {{"", 0, {}}};
        ChannelChoice::Set& set = choice.sets.front();
        for (const Pod pod : selected_pods(run_time_.Link))
            set.channels = std::max<int>(set.channels, run_time_.Status[pod].Channels);
        for (const SingleRequest& request : stored_)
            if (request.channel <= set.channels) set.chosen[at(request.channel - 1)] = 1;
        if (!with_.choose(choice)) return;
        store(requests_for(choice.sets.front().chosen));
        measure();
    });
}

std::vector<SingleRequest> Stream1View::requests_for(const ChannelFlags& channels) const {
    std::vector<SingleRequest> requests;
    for (int channel = 0; channel < MaxChannels; ++channel)
        if (channels[at(channel)] == 1)
            requests.push_back({channel + 1, screen.chkInit.checked && initialises(channel)});
    return requests;
}

// Every selected pod gets the same requests: a channel is initialised only when it is a strain
// gauge on all of them that have it.
bool Stream1View::initialises(int channel) const {
    bool any = false;
    for (const Pod pod : selected_pods(run_time_.Link)) {
        if (channel >= run_time_.Status[pod].Channels) continue;
        if (!is_strain_mode(with_.configuration.ZavConfig[pod].Channel[at(channel)].Mode))
            return false;
        any = true;
    }
    return any;
}

void Stream1View::cmdMeasure_Click() {
    trapped(with_.failures, "frmStrm1/cmdMeasure_Click", [&] { measure(); });
}

void Stream1View::measure() {
    if (!any_pod_selected()) return;
    std::string measurements;
    std::string initialisations;
    for (const SingleRequest& request : stored_)
        (request.initialise ? initialisations : measurements) += token_of(request);
    queue_.clear();
    for (const std::string& requests : {measurements, initialisations})
        if (!requests.empty()) queue_.push_back(requests);
    pods_ = selected_pods(run_time_.Link);
    rebuild();
    if (with_.loop.tick_count() - last_progress_ms_ > Lost_ms) forget_outstanding();
    follow_up();
}

// Goes on with the queue once everything asked for has been answered and the link is free.
void Stream1View::follow_up() {
    mark_pending_rows();
    if (!queue_.empty() && !outstanding() && may_send()) send_next();
    const bool done = queue_.empty() && !outstanding();
    if (done || !run_time_.Poll.ViewOpen[RequestStream])
        tmrFollowUp_->stop();
    else if (!tmrFollowUp_->running())
        tmrFollowUp_->start(FollowUp_ms);
}

void Stream1View::send_next() {
    refresh();  // a transmission of requests forgets the answers that were not shown yet
    const std::string requests = queue_.front();
    queue_.erase(queue_.begin());
    last_progress_ms_ = with_.loop.tick_count();
    with_.pods.send(requests);
    mark_pending_rows();
}

bool Stream1View::may_send() const {
    const LinkState& link = run_time_.Link;
    return link.OperationsEnabled && link.NumSelected() > 0 && link.Sending == 0;
}

bool Stream1View::outstanding() const {
    for (const Pod pod : run_time_.Link.PollTable.InPollTable)
        if (!run_time_.Link.StreamRequests[pod].empty()) return true;
    return false;
}

void Stream1View::forget_outstanding() {
    for (std::string& requests : run_time_.Link.StreamRequests) requests.clear();
}

void Stream1View::note_sent(std::string_view command_string) {
    auto requests = single_requests(command_string);
    if (requests.empty()) return;
    store(std::move(requests));
    last_progress_ms_ = with_.loop.tick_count();
    if (!run_time_.Poll.ViewOpen[RequestStream]) return;
    pods_ = selected_pods(run_time_.Link);
    rebuild();
    follow_up();
}

void Stream1View::refresh() {
    for (const Pod pod : all_pods())
        for (SingleResultText& result : take_single_results(run_time_, pod)) {
            (*answers_)[pod][at(result.channel)] = {std::move(result.text), result.error};
            const Row row{pod, static_cast<std::int16_t>(result.channel)};
            const auto found = std::lower_bound(rows_.begin(), rows_.end(), row);
            if (found != rows_.end() && *found == row)
                changed_.add(static_cast<std::size_t>(found - rows_.begin()));
            last_progress_ms_ = with_.loop.tick_count();
        }
}

void Stream1View::rebuild() {
    rows_.clear();
    for (const Pod pod : pods_)
        for (std::int16_t channel = 0; channel < run_time_.Status[pod].Channels; ++channel)
            if (!screen.chkRequested.checked || contains(stored_, channel + 1))
                rows_.push_back({pod, channel});
    changed_.start(rows_.size());
    ++layout_;
}

void Stream1View::mark_pending_rows() {
    for (std::size_t row = 0; row < rows_.size(); ++row)
        if (run_time_.Status[rows_[row].pod].SinglePending[at(rows_[row].channel)])
            changed_.add(row);
}

GridCell Stream1View::data_cell(const Row& row) const {
    if (!run_time_.Status[row.pod].SinglePending[at(row.channel)])
        return (*answers_)[row.pod][at(row.channel)];
    if (!run_time_.Link.PollTable.InPollTable.has(row.pod)) return {"No answer", true};
    const auto initialised = single_requests(run_time_.Link.FirstPodInputRequests);
    return {contains(initialised, row.channel + 1) ? "Initialising..." : "Measuring..."};
}

GridCell Stream1View::cell(int row_index, int column) const {
    const Row& row = rows_[at(row_index)];
    const ChannelConfig& config = with_.configuration.ZavConfig[row.pod].Channel[at(row.channel)];
    switch (column) {
        case PodColumn:
            return {two_digits(row.pod.number())};
        case ChannelColumn:
            return {two_digits(row.channel + 1)};
        case DataColumn:
            return data_cell(row);
        case LabelColumn:
            return {config.Label};
        default:
            return {config.Unit};
    }
}

}  // namespace kavorix
