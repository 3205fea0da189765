#pragma once

// The channels of the edited pod at a glance: a row per channel with mode, range, label and unit.

#include <functional>

#include "model/records.h"
#include "platform/grid_source.h"

namespace kavorix {

class ChannelOverview : public GridSource {
  public:
    // `pod`: the record to show now; it may be another one at every call.
    explicit ChannelOverview(std::function<const PodConfig&()> pod);

    int row_count() const override { return pod_().NumChannels; }
    const std::vector<std::string>& headings() const override { return headings_; }
    GridCell cell(int row, int column) const override;
    std::uint64_t layout() const override;
    const std::vector<int>& take_changed_rows() override;

    // Whether a channel is in use; the rows of the others stand back.
    bool in_use(int row) const;

  private:
    std::function<const PodConfig&()> pod_;
    std::vector<std::string> headings_{"Chan", "Mode", "Range", "Label", "Unit"};
    PodConfig shown_;
    mutable std::int16_t type_ = 0;
    mutable std::int16_t channels_ = 0;
    mutable std::uint64_t layout_ = 0;
    std::vector<int> changed_;
};

}  // namespace kavorix
