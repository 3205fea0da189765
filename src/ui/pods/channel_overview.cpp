#include "ui/pods/channel_overview.h"

#include "model/runtime.h"
#include "ui/pods/channel_view.h"

namespace kavorix {

ChannelOverview::ChannelOverview(std::function<const PodConfig&()> pod) : pod_(std::move(pod)) {}

GridCell ChannelOverview::cell(int row, int column) const {
    const ChannelTexts texts = channel_texts(pod_(), row);
    const std::string* const cells[] = {&texts.number, &texts.mode, &texts.range, &texts.label,
                                        &texts.unit};
    return {*cells[column]};
}

bool ChannelOverview::in_use(int row) const {
    return pod_().Channel[at(row)].Mode != 0;
}

std::uint64_t ChannelOverview::layout() const {
    const PodConfig& pod = pod_();
    if (type_ != pod.TypeCode || channels_ != pod.NumChannels) ++layout_;
    type_ = pod.TypeCode;
    channels_ = pod.NumChannels;
    return layout_;
}

const std::vector<int>& ChannelOverview::take_changed_rows() {
    const PodConfig& pod = pod_();
    changed_.clear();
    for (int slot = 0; slot < pod.NumChannels; ++slot) {
        const bool paired_now = slot > 0 && pod.SixPole[at(slot - 1)] == 1;
        const bool paired_then = slot > 0 && shown_.SixPole[at(slot - 1)] == 1;
        if (pod.Channel[at(slot)] != shown_.Channel[at(slot)] || paired_now != paired_then)
            changed_.push_back(slot);
    }
    if (!changed_.empty()) shown_ = pod;
    return changed_;
}

}  // namespace kavorix
