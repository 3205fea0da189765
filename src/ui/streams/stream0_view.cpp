#include "ui/streams/stream0_view.h"

#include <bit>
#include <utility>

#include "acquire/result_codes.h"
#include "base/text.h"

namespace kavorix {

namespace {

enum Column { ChannelColumn, ValueColumn, LabelColumn, UnitColumn, PeakMinColumn, PeakMaxColumn };

bool same_bits(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

// Rows of a pod: as many as its last record had, before the first one as many as its type has.
int channels_shown(const PodStatus& status) {
    return status.ChannelCount > 0 ? status.usable_channels() : status.Channels;
}

}  // namespace

Stream0View::Stream0View(RunTime& run_time, const Configuration& configuration,
                         ChooseChannels choose)
    : run_time_(run_time), configuration_(configuration), choose_(std::move(choose)) {}

void Stream0View::load() {
    pods_ = selected_pods(run_time_.Link);
    screen.cboView.entries = pod_entries(pods_, run_time_.Status);
    screen.cboView.index = -1;
    // The multi view starts with every channel of a pod for which none was chosen.
    for (const Pod pod : pods_) {
        ChannelFlags& channels = run_time_.Status[pod].ViewChannel;
        if (channels == ChannelFlags{}) channels.fill(true);
    }
    if (!screen.cboView.select_code(run_time_.Poll.ViewedZav.index()) && !pods_.empty()) {
        screen.cboView.index = 0;
        run_time_.Poll.ViewedZav = pods_.front();
    }
    run_time_.Poll.ViewOpen[ReadingStream] = true;
    rebuild();
    refresh();
}

void Stream0View::unload() {
    run_time_.Poll.ViewOpen[ReadingStream] = false;
}

void Stream0View::cboView_Click(int list_index) {
    if (list_index < 0 || list_index >= static_cast<int>(pods_.size())) return;
    screen.cboView.index = list_index;
    run_time_.Poll.ViewedZav = pods_[at(list_index)];
    rebuild();
}

void Stream0View::cmdToggle_Click() {
    multi_view_ = !multi_view_;
    rebuild();
}

void Stream0View::cmdMin_Click() {
    reset_peaks(false);
}

void Stream0View::cmdMax_Click() {
    reset_peaks(true);
}

// The channels of the multi view, pod by pod or of all pods at once.
void Stream0View::cmdSelChan_Click() {
    if (!choose_) return;
    ChannelChoice choice;
    choice.prompt = "Select Channels of the Multi View:";
    for (std::size_t i = 0; i < pods_.size(); ++i) {
        const PodStatus& status = run_time_.Status[pods_[i]];
        choice.sets.push_back(
            {screen.cboView.entries[i].text, status.Channels, status.ViewChannel});
    }
    if (!choose_(choice)) return;
    for (std::size_t i = 0; i < pods_.size(); ++i)
        run_time_.Status[pods_[i]].ViewChannel = choice.sets[i].chosen;
    rebuild();
}

void Stream0View::reset_peaks(bool maximum) {
    PodStatus& status = run_time_.Status[run_time_.Poll.ViewedZav];
    (maximum ? status.PeakMax : status.PeakMin).fill(maximum ? NoPeakMax : NoPeakMin);
    (maximum ? status.MaxChanged : status.MinChanged).fill(false);
    refresh();
}

// Every row that the view has now, in order, until `visit` returns false.
template <class Visit>
void Stream0View::each_row(Visit&& visit) const {
    for (const Pod pod : pods_) {
        if (!multi_view_ && pod != run_time_.Poll.ViewedZav) continue;
        const PodStatus& status = run_time_.Status[pod];
        for (int channel = 0; channel < channels_shown(status); ++channel) {
            if (multi_view_ && !status.ViewChannel[at(channel)]) continue;
            if (!visit(Row{pod, static_cast<std::int16_t>(channel)})) return;
        }
    }
}

void Stream0View::rebuild() {
    // Another view may have changed the pod.
    screen.cboView.select_code(run_time_.Poll.ViewedZav.index());
    show_heading();
    rows_.clear();
    each_row([&](const Row& row) {
        rows_.push_back(row);
        shown(row) = current(row);
        return true;
    });
    changed_.start(rows_.size());
    ++layout_;
}

void Stream0View::show_heading() {
    const Pod pod = run_time_.Poll.ViewedZav;
    screen.lblZAV.caption = multi_view_ ? " Multi View:" : "Viewing ZAV:";
    screen.lblNum.caption = multi_view_ ? "ON" : two_digits(pod.number());
    screen.lblType1.caption = multi_view_ ? "" : type_name(run_time_.Status[pod]);
    screen.cmdToggle.caption = multi_view_ ? "&Single View <--" : "--> &Multi View";
    screen.cmdToggle.tool_tip = multi_view_ ? "Show one pod" : "Show all selected pods";
    screen.cboView.enabled = !multi_view_;
    screen.cmdSelChan.enabled = choose_ && multi_view_ && !pods_.empty();
    headings_ = {
        multi_view_ ? "ZAV  Chan" : "Chan", "Value", "Label", "Unit", "Peak Min", "Peak Max"};
}

Stream0View::Shown& Stream0View::shown(const Row& row) {
    return shown_[row.pod][at(row.channel)];
}

Stream0View::Shown Stream0View::current(const Row& row) const {
    const PodStatus& status = run_time_.Status[row.pod];
    const auto channel = at(row.channel);
    return {status.Reading[channel], status.PeakMin[channel], status.PeakMax[channel],
            status.ResultCode[channel], row.channel < status.usable_channels()};
}

bool Stream0View::Shown::same_as(const Shown& other) const {
    return same_bits(reading, other.reading) && same_bits(peak_min, other.peak_min) &&
           same_bits(peak_max, other.peak_max) && code == other.code && known == other.known;
}

bool Stream0View::rows_outdated() const {
    std::size_t matching = 0;
    bool same = true;
    each_row([&](const Row& row) {
        same = matching < rows_.size() && rows_[matching].names(row);
        if (same) ++matching;
        return same;
    });
    return !same || matching != rows_.size();
}

void Stream0View::refresh() {
    screen.lblUpdateNum.caption = std::to_string(run_time_.Poll.PollCount);
    if (rows_outdated()) {
        rebuild();
        return;
    }
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const Row& row = rows_[i];
        const Shown now = current(row);
        if (shown(row).same_as(now)) continue;
        shown(row) = now;
        changed_.add(i);
    }
}

GridCell Stream0View::cell(int row_index, int column) const {
    const Row& row = rows_[at(row_index)];
    const PodStatus& status = run_time_.Status[row.pod];
    const ChannelConfig& config = configuration_.ZavConfig[row.pod].Channel[at(row.channel)];
    const Shown& shown = shown_[row.pod][at(row.channel)];
    const std::int16_t decimals = decimals_of(status.type_code(), row.channel + 1);
    switch (column) {
        case ChannelColumn:
            return {multi_view_ ? two_digits(row.pod.number()) + "   " + two_digits(row.channel + 1)
                                : two_digits(row.channel + 1)};
        case ValueColumn:
            if (!shown.known) return {};
            if (shown.code > HighestValidCode)
                return {std::string(
                            DispZAVErr(static_cast<std::int16_t>(shown.code - HighestValidCode))),
                        true};
            return {FormatValue(shown.reading, decimals)};
        case LabelColumn:
            return {config.Label};
        case UnitColumn:
            return {config.Unit};
        // A peak that was reset is empty until the next reading.
        case PeakMinColumn:
            if (shown.peak_min == NoPeakMin) return {};
            return {FormatValue(shown.peak_min, decimals)};
        case PeakMaxColumn:
            if (shown.peak_max == NoPeakMax) return {};
            return {FormatValue(shown.peak_max, decimals)};
        default:
            return {};
    }
}

}  // namespace kavorix
