#pragma once

// The stream-0 view `frmStrm0`: scan results of one pod, or of several pods side by side.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "model/runtime.h"
#include "platform/controls.h"
#include "platform/grid_source.h"
#include "ui/streams/pod_rows.h"
#include "ui/streams/select_channels.h"

namespace kavorix {

// What the window shows beside its table.
struct Stream0Screen {
    std::string caption = "Stream 0";
    ListBox cboView;  // the pods that can be viewed; codes are pod indices
    Button cmdToggle;
    Button cmdMin{"Reset Mi&n", "Start the peak minimum anew"};
    Button cmdMax{"Reset M&ax", "Start the peak maximum anew"};
    Button cmdSelChan{"Select &Channels...", "Choose the channels of the multi view"};
    Button cmdExit{"E&xit", "Close this view"};
    Label lblZAV;
    Label lblNum;
    Label lblType1;
    Label lblUpdateNum;

    template <class Visit>
    void each(Visit&& visit) {
        visit("cboView", cboView);
        visit("cmdToggle", cmdToggle);
        visit("cmdMin", cmdMin);
        visit("cmdMax", cmdMax);
        visit("cmdSelChan", cmdSelChan);
        visit("cmdExit", cmdExit);
        visit("lblZAV", lblZAV);
        visit("lblNum", lblNum);
        visit("lblType1", lblType1);
        visit("lblUpdateNum", lblUpdateNum);
    }
};

// The rules of the view. In single view it has a row per channel 1..ChannelCount of the viewed pod;
// in multi view a row per chosen channel (ViewChannel) of every pod that was selected when the view
// was opened.
class Stream0View : public GridSource {
  public:
    // Without `choose` the channels of the multi view cannot be chosen.
    Stream0View(RunTime& run_time, const Configuration& configuration, ChooseChannels choose = {});

    Stream0Screen screen;

    // The window opens (its flag in ViewOpen is set) or closes.
    void load();
    void unload();

    // A pod of the list was chosen: the index of the list entry.
    void cboView_Click(int list_index);
    void cmdToggle_Click();
    void cmdMin_Click();
    void cmdMax_Click();
    void cmdSelChan_Click();

    bool multi_view() const { return multi_view_; }

    // Labels or units of the configuration have changed.
    void configuration_changed() { ++layout_; }

    // At the poll boundary: finds the rows that changed.
    void refresh();

    int row_count() const override { return static_cast<int>(rows_.size()); }
    const std::vector<std::string>& headings() const override { return headings_; }
    GridCell cell(int row, int column) const override;
    std::uint64_t layout() const override { return layout_; }
    const std::vector<int>& take_changed_rows() override { return changed_.take(); }

  private:
    struct Row {
        Pod pod;
        std::int16_t channel = 0;
        bool names(const Row& other) const { return pod == other.pod && channel == other.channel; }
    };
    // What the view last showed of a channel.
    struct Shown {
        float reading = 0;
        float peak_min = 0;
        float peak_max = 0;
        std::int16_t code = 0;
        bool known = false;  // a scan result has come
        bool same_as(const Shown& other) const;
    };

    void rebuild();
    void show_heading();
    bool rows_outdated() const;
    template <class Visit>
    void each_row(Visit&& visit) const;
    Shown& shown(const Row& row);
    Shown current(const Row& row) const;
    void reset_peaks(bool maximum);

    RunTime& run_time_;
    const Configuration& configuration_;
    ChooseChannels choose_;
    bool multi_view_ = false;
    std::vector<Pod> pods_;  // pods of the list
    std::vector<Row> rows_;
    ChangedRows changed_;
    std::vector<std::string> headings_;
    std::uint64_t layout_ = 0;
    PodArray<std::array<Shown, MaxChannels>> shown_;
};

}  // namespace kavorix
