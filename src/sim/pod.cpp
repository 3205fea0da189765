#include "sim/pod.h"

#include <algorithm>
#include <cmath>

namespace kavorix::sim {

namespace {

// A scan takes at least this long, whatever it measures.
constexpr std::int64_t ShortestScan = 10;
// Unread texts beyond this number are lost.
constexpr std::size_t MostTexts = 16;

std::int64_t milliseconds(double seconds_) {
    return static_cast<std::int64_t>(std::ceil(seconds_ * 1000.0 - 1e-9));
}

}  // namespace

Pod::Pod(const PodSettings& settings, SimClock& clock, const RandomSource& random)
    : settings_(settings),
      clock_(clock),
      family_(pod_family(std::string_view(settings.ident).substr(0, 2))),
      channels_(channels_of(family_)),
      analog_(settings, random.child(1)),
      digital_(settings, random.child(1)) {
    for (const PodText& text : settings.texts) next_text_ms_.push_back(milliseconds(text.at_s));
    reset();
}

void Pod::reset() {
    held_ = {};
    running_.reset();
    finished_.reset();
    answers_.clear();
    events_.clear();
    texts_.clear();
    refused_ = 0;
    busy_until_ms_ = 0;
    set_default_modes();
}

void Pod::set_default_modes() {
    for (int channel = 1; channel <= channels_; ++channel) {
        const auto index = static_cast<std::size_t>(channel - 1);
        HeldChannel& set = held_.channels.at(index);
        set = {};
        set.mode =
            settings_.channels.at(index).default_mode.value_or(default_mode(family_, channel));
        digital_.configure(channel, set, seconds(now_ms_));
    }
}

void Pod::advance() {
    now_ms_ = clock_.now_ms();
    finish_scans();
    capture_events();
    send_due_texts();
}

void Pod::start_scan(std::int64_t start_ms) {
    Scan scan;
    scan.start_ms = start_ms;
    double time_s = seconds(start_ms);
    for (int channel = 1; channel <= channels_; ++channel) {
        Reading& reading = scan.readings.at(static_cast<std::size_t>(channel - 1));
        reading = measure(channel, time_s);
        time_s += reading.duration_s;
    }
    scan.end_ms = std::max(milliseconds(time_s), start_ms + ShortestScan);
    running_ = scan;
}

void Pod::finish_scans() {
    while (running_ && running_->end_ms <= now_ms_) {
        finished_ = running_;
        running_.reset();
        if (!held_.continuous) break;
        const auto period = static_cast<std::int64_t>(held_.scan_period_ms);
        const std::int64_t cycle = std::max(period, finished_->end_ms - finished_->start_ms);
        // After a long silence only the last scans matter.
        const std::int64_t missed = (now_ms_ - finished_->start_ms) / cycle - 2;
        start_scan(finished_->start_ms + cycle * std::max<std::int64_t>(missed, 1));
    }
}

Reading Pod::measure(int channel, double time_s) {
    const auto index = static_cast<std::size_t>(channel - 1);
    const HeldChannel& set = held_.channels.at(index);
    if (set.mode == 0) return failed(Fail::NotMeasured);
    if (settings_.channels.at(index).signal.kind == SignalKind::Absent)
        return failed(Fail::ChannelRange);
    if (!accepts_mode(family_, channel, set.mode) ||
        !accepts_range(family_, channel, set.mode, set.range))
        return failed(Fail::UnknownMode);
    if (set.mode == 80) return {set.range == 1 ? 1.0F : 0.0F, 0, 0.001};
    if (set.mode >= 70) return digital_.measure(set, channel, time_s);
    return analog_.measure(held_, channel, time_s);
}

void Pod::capture_events() {
    const double until_s = seconds(now_ms_);
    if (!held_.event_capture) {
        captured_to_ms_ = now_ms_;
        return;
    }
    struct Edge {
        double time_s;
        int channel;
        bool rising;
    };
    std::vector<Edge> edges;
    for (int channel = 1; channel <= channels_; ++channel) {
        const HeldChannel& set = held_.channels.at(static_cast<std::size_t>(channel - 1));
        if (set.mode != 76) continue;
        const LogicInput& input = digital_.input(channel);
        double time_s = seconds(captured_to_ms_);
        std::size_t taken = 0;
        while (taken < EventQueue::Capacity) {
            const auto change = input.next_change(time_s, until_s);
            if (!change) break;
            time_s = *change;
            const bool rising = input.level(time_s);
            if (set.range == 2 || rising == (set.range == 1)) {
                edges.push_back({time_s, channel, rising});
                ++taken;
            }
        }
    }
    captured_to_ms_ = now_ms_;
    std::stable_sort(edges.begin(), edges.end(),
                     [](const Edge& a, const Edge& b) { return a.time_s < b.time_s; });
    const int first = family_ == PodFamily::Switch ? 1 : 0;  // 8S counts its channels from 0
    for (const Edge& edge : edges)
        events_.push({clock_.wall_at(static_cast<std::int64_t>(edge.time_s * 1000.0)),
                      edge.channel - first, edge.rising, false});
}

void Pod::report_levels() {
    const int first = family_ == PodFamily::Switch ? 1 : 0;
    for (int channel = 1; channel <= channels_; ++channel)
        if (held_.channels.at(static_cast<std::size_t>(channel - 1)).mode == 76)
            events_.push({clock_.wall_at(now_ms_), channel - first,
                          digital_.input(channel).level(seconds(now_ms_)), true});
}

void Pod::send_due_texts() {
    for (std::size_t i = 0; i < next_text_ms_.size(); ++i) {
        std::int64_t& next = next_text_ms_[i];
        const PodText& text = settings_.texts[i];
        if (next < 0 || next > now_ms_) continue;
        push_text(text.text);
        const std::int64_t every = milliseconds(text.every_s);
        next = every > 0 ? next + ((now_ms_ - next) / every + 1) * every : -1;
    }
}

void Pod::push_text(std::string text) {
    if (texts_.size() < MostTexts)
        texts_.push_back({now_ms_ + settings_.answer_ms, std::move(text)});
}

bool Pod::waiting(int stream) {
    advance();
    switch (stream) {
        case 0:
            return finished_.has_value();
        case 1:
            return !answers_.empty() && answers_.front().ready_ms <= now_ms_;
        case 2:
            return !events_.empty();
        case 3:
            return !texts_.empty() && texts_.front().ready_ms <= now_ms_;
        default:
            return false;
    }
}

bool Pod::take_scan(std::span<float> values, std::span<std::int16_t> codes) {
    if (!waiting(0)) return false;
    const auto count = static_cast<std::size_t>(channels_);
    for (std::size_t i = 0; i < std::min(count, values.size()); ++i)
        values[i] = finished_->readings.at(i).value;
    for (std::size_t i = 0; i < std::min(count, codes.size()); ++i)
        codes[i] = finished_->readings.at(i).code;
    finished_.reset();
    return true;
}

std::optional<Pod::Answer> Pod::take_answer() {
    if (!waiting(1)) return std::nullopt;
    const Answer answer = answers_.front();
    answers_.pop_front();
    return answer;
}

bool Pod::take_events(std::span<char> buffer) {
    if (!waiting(2)) return false;
    events_.write(buffer);
    return true;
}

bool Pod::take_text(std::span<char> buffer) {
    if (!waiting(3)) return false;
    const std::string& text = texts_.front().text;
    std::copy_n(text.begin(), std::min(text.size(), buffer.size()), buffer.begin());
    texts_.pop_front();
    return true;
}

void Pod::command(std::string_view bytes, bool answers_status) {
    advance();
    for (const Statement& statement : read_command(bytes)) {
        if (statement.verb == Verb::Status && statement.refusal == Refusal::None) {
            texts_.clear();  // the reply to the status request comes first
            if (answers_status) push_text(settings_.ident);
        } else {
            apply(statement);
        }
    }
}

void Pod::apply(const Statement& statement) {
    // Requests are answered in any case, so that answers and requests stay in step.
    if (statement.mnemonic == "ME" || statement.mnemonic == "IN") {
        answer_request(statement);
        return;
    }
    Refusal refusal = statement.refusal;
    if (refusal == Refusal::None)
        refusal = statement.channel > 0 ? apply_channel(statement) : apply_pod(statement);
    if (refusal != Refusal::None) refuse(statement, refusal);
}

}  // namespace kavorix::sim
