#include "ui/streams/stream2_view.h"

#include <algorithm>

#include "base/text.h"

namespace kavorix {

namespace {

enum Column { DateColumn, TimeColumn, ChannelColumn, EventColumn };

// "05 Jan 2026" with a blank, "05-Jan-2026" with a hyphen.
std::string date_text(const WallTime& time, const std::string& separator) {
    return two_digits(time.day) + separator + month_name(time.month) + separator +
           std::to_string(time.year);
}

std::string time_text(const WallTime& time) {
    return two_digits(time.hour) + ":" + two_digits(time.minute) + ":" + two_digits(time.second);
}

}  // namespace

Stream2View::Stream2View(RunTime& run_time, EventLoop& loop)
    : run_time_(run_time),
      loop_(loop),
      tmrTimeNow_(loop.make_timer([this] { tmrTimeNow_Timer(); })) {}

void Stream2View::load() {
    const auto pods = selected_pods(run_time_.Link);
    screen.cboView.entries = pod_entries(pods, run_time_.Status);
    screen.cboView.index = -1;
    if (!screen.cboView.select_code(run_time_.Poll.ViewedZav.index()) && !pods.empty())
        run_time_.Poll.ViewedZav = pods.front();
    run_time_.Poll.ViewOpen[EventStream] = true;
    start_anew();
    tmrTimeNow_Timer();
}

void Stream2View::unload() {
    run_time_.Poll.ViewOpen[EventStream] = false;
    tmrTimeNow_->stop();
}

void Stream2View::cboView_Click(int list_index) {
    screen.cboView.index = list_index;
    run_time_.Poll.ViewedZav = Pod::at_index(screen.cboView.code(run_time_.Poll.ViewedZav.index()));
    start_anew();
}

void Stream2View::tmrTimeNow_Timer() {
    constexpr int Second_ms = 1000;
    const WallTime now = loop_.wall_time();
    screen.lblDate.caption = date_text(now, " ");
    screen.picTime.caption = time_text(now) + "   " + date_text(now, "-");
    tmrTimeNow_->start(Second_ms - now.millisecond % Second_ms);
    if (pod_ != run_time_.Poll.ViewedZav) start_anew();
}

// The viewed pod is another one, or the view has just been opened.
void Stream2View::start_anew() {
    pod_ = run_time_.Poll.ViewedZav;
    screen.cboView.select_code(pod_.index());
    screen.lblZAVNo.caption = "ZAV: " + two_digits(pod_.number());
    screen.lblZAVType.caption = "Type: " + type_name(run_time_.Status[pod_]);
    events_.clear();
    ++layout_;
    show_events();
}

void Stream2View::show_events() {
    if (pod_ != run_time_.Poll.ViewedZav) {
        start_anew();
        return;
    }
    for (EventTexts& event : DisplayStream2(run_time_, pod_)) events_.push_back(std::move(event));
    if (events_.size() > MostRows) {
        events_.erase(events_.begin(), events_.end() - static_cast<std::ptrdiff_t>(KeptRows));
        ++layout_;
    }
    show_last_event();
}

void Stream2View::show_last_event() {
    const EventTexts last = events_.empty() ? EventTexts{} : events_.back();
    screen.lblLstChan1.caption = last.channel;
    screen.lblLstEvent1.caption = last.event;
    screen.lblLstTime1.caption = last.time;
    screen.lblLstDate1.caption = last.date;
}

GridCell Stream2View::cell(int row, int column) const {
    const EventTexts& event = events_[at(row)];
    switch (column) {
        case DateColumn:
            return {event.date};
        case TimeColumn:
            return {event.time};
        case ChannelColumn:
            return {event.channel};
        default:
            return {event.event};
    }
}

}  // namespace kavorix
