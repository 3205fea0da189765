#pragma once

// The stream-2 view `frmStrm2`: digital events of one pod, the last one apart, and a clock.

#include <memory>
#include <string>
#include <vector>

#include "acquire/stream_texts.h"
#include "platform/controls.h"
#include "platform/event_loop.h"
#include "platform/grid_source.h"
#include "ui/streams/pod_rows.h"

namespace kavorix {

struct Stream2Screen {
    std::string caption = "Stream 2";
    ListBox cboView;  // the pods that can be viewed; codes are pod indices
    Label lblZAVNo;
    Label lblZAVType;
    Label lblLstChan1;  // the last event
    Label lblLstEvent1;
    Label lblLstTime1;
    Label lblLstDate1;
    Label lblDate;  // today
    Label picTime;  // time and date now
    Button cmdOK{"OK", "Close this view"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("cboView", cboView);
        visit("lblZAVNo", lblZAVNo);
        visit("lblZAVType", lblZAVType);
        visit("lblLstChan1", lblLstChan1);
        visit("lblLstEvent1", lblLstEvent1);
        visit("lblLstTime1", lblLstTime1);
        visit("lblLstDate1", lblLstDate1);
        visit("lblDate", lblDate);
        visit("picTime", picTime);
        visit("cmdOK", cmdOK);
    }
};

// Shows the pod of ViewedZav, which the stream-0 view may change too. The table keeps the events
// that came while the view was open, oldest first.
class Stream2View : public GridSource {
  public:
    // Beyond MostRows the oldest ones go, until KeptRows are left.
    static constexpr std::size_t MostRows = 2500;
    static constexpr std::size_t KeptRows = 2000;

    Stream2View(RunTime& run_time, EventLoop& loop);

    Stream2Screen screen;

    // The window opens (its flag in ViewOpen is set, the clock runs) or closes.
    void load();
    void unload();

    // A pod of the list was chosen: the index of the list entry.
    void cboView_Click(int list_index);

    // New events of the viewed pod are there.
    void show_events();

    int row_count() const override { return static_cast<int>(events_.size()); }
    const std::vector<std::string>& headings() const override { return headings_; }
    GridCell cell(int row, int column) const override;
    std::uint64_t layout() const override { return layout_; }
    const std::vector<int>& take_changed_rows() override { return none_; }

  private:
    void tmrTimeNow_Timer();
    void start_anew();
    void show_last_event();

    RunTime& run_time_;
    EventLoop& loop_;
    std::unique_ptr<Timer> tmrTimeNow_;
    Pod pod_ = Pod::at_index(0);      // whose events are shown
    std::vector<EventTexts> events_;  // oldest first
    const std::vector<int> none_;     // an event stays as it came
    std::vector<std::string> headings_{"Date", "Time", "Chan", "Event"};
    std::uint64_t layout_ = 0;
};

}  // namespace kavorix
