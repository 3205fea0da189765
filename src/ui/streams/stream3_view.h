#pragma once

// The stream-3 view `frmStrm3`: the last text of each pod.

#include <string>
#include <vector>

#include "platform/controls.h"
#include "platform/grid_source.h"
#include "ui/streams/pod_rows.h"

namespace kavorix {

struct Stream3Screen {
    std::string caption = "Stream 3";
    Button cmdOK{"OK", "Close this view"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("cmdOK", cmdOK);
    }
};

// A stream-3 text as it can be shown: up to its end, without what cannot be printed.
std::string printable_text(const PodStatus& status);

// A row per pod that was selected when the view was opened.
class Stream3View : public GridSource {
  public:
    explicit Stream3View(RunTime& run_time) : run_time_(run_time) {}

    Stream3Screen screen;

    // The window opens (its flag in ViewOpen is set and the texts count as seen) or closes.
    void load();
    void unload();

    // At the poll boundary: finds the texts that changed.
    void refresh();

    int row_count() const override { return static_cast<int>(pods_.size()); }
    const std::vector<std::string>& headings() const override { return headings_; }
    GridCell cell(int row, int column) const override;
    std::uint64_t layout() const override { return layout_; }
    const std::vector<int>& take_changed_rows() override { return changed_.take(); }

  private:
    RunTime& run_time_;
    std::vector<Pod> pods_;
    std::vector<std::string> shown_;  // text per row
    std::vector<std::string> headings_{"ZAV", "Type", "Data"};
    std::uint64_t layout_ = 0;
    ChangedRows changed_;
};

}  // namespace kavorix
