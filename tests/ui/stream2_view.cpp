#include "ui/streams/stream2_view.h"

#include <gtest/gtest.h>

#include "support/ui_rig.h"

namespace kavorix::test {
namespace {

class Stream2Test : public testing::Test, public UiRig {
  protected:
    Stream2Test() {
        station({{3, "7VJA 0F 1.00"}, {8, "8SFN 0F 1.00"}, {9, "7RAA 0F 1.00"}});
        click({3, 8});
        run_time.Poll.ViewedZav = Pod::at_index(7);
    }
    // The pod's event table after a read of stream 2.
    void report(int pod, const std::vector<EventEntry>& events) {
        auto& poll = run_time.Poll;
        std::copy(events.begin(), events.end(), poll.Events[at(pod - 1)].begin());
        poll.LastEvent[at(pod - 1)] = static_cast<std::int16_t>(events.size() - 1);
        status(pod).StreamSeen[EventStream] = 1;
    }
    static EventEntry event(int channel, int second, bool state, bool level = false) {
        EventEntry entry;
        entry.EvChannel = static_cast<std::int16_t>(channel);
        entry.EvDay = 5;
        entry.EvMonth = 1;
        entry.EvHour = 13;
        entry.EvMinute = 4;
        entry.EvSecond = static_cast<std::int16_t>(second);
        entry.EvMillisecond = 7;
        entry.EvState = state ? 1 : 0;
        entry.EvLevel = level ? 1 : 0;
        return entry;
    }
    Lines texts() const {
        Lines lines;
        for (int row = 0; row < view.row_count(); ++row) {
            std::string line;
            for (int column = 0; column < 4; ++column) line += view.cell(row, column).text + "|";
            lines.push_back(line);
        }
        return lines;
    }
    Stream2View view{run_time, loop};
};

TEST_F(Stream2Test, ShowsTheViewedPodAndItsEvents) {
    report(8, {event(1, 9, true, true), event(12, 10, false)});
    view.load();
    EXPECT_EQ(view.screen.lblZAVNo.caption, "ZAV: 08");
    EXPECT_EQ(view.screen.lblZAVType.caption, "Type: 8S Switch I/O");
    EXPECT_EQ(view.headings(), (Lines{"Date", "Time", "Chan", "Event"}));
    EXPECT_EQ(texts(), (Lines{"5 Jan|13:04:09:007|1|High|", "5 Jan|13:04:10:007|12|Hi to Lo|"}));
    EXPECT_EQ(view.screen.lblLstChan1.caption, "12");
    EXPECT_EQ(view.screen.lblLstEvent1.caption, "Hi to Lo");
    EXPECT_EQ(view.screen.lblLstTime1.caption, "13:04:10:007");
    EXPECT_EQ(view.screen.lblLstDate1.caption, "5 Jan");
    EXPECT_EQ(status(8).StreamSeen[EventStream], 0);
    EXPECT_EQ(run_time.Poll.ViewOpen, (StreamFlags{0, 0, 1, 0}));
}

TEST_F(Stream2Test, WithoutEventsTheLabelsAreEmpty) {
    view.load();
    EXPECT_EQ(view.row_count(), 0);
    EXPECT_EQ(view.screen.lblLstChan1.caption + view.screen.lblLstEvent1.caption +
                  view.screen.lblLstTime1.caption + view.screen.lblLstDate1.caption,
              "");
}

TEST_F(Stream2Test, KeepsTheEventsThatCameBefore) {
    report(8, {event(1, 1, true)});
    view.load();
    report(8, {event(2, 2, true), event(3, 3, false)});
    view.show_events();
    EXPECT_EQ(texts(), (Lines{"5 Jan|13:04:01:007|1|Lo to Hi|", "5 Jan|13:04:02:007|2|Lo to Hi|",
                              "5 Jan|13:04:03:007|3|Hi to Lo|"}));
    EXPECT_EQ(view.screen.lblLstChan1.caption, "3");
}

TEST_F(Stream2Test, TheOldestEventsGoFirst) {
    view.load();
    for (std::size_t i = 0; i <= Stream2View::MostRows; ++i) {
        report(8, {event(static_cast<int>(i % 32), 0, true)});
        view.show_events();
    }
    EXPECT_EQ(view.row_count(), static_cast<int>(Stream2View::KeptRows));
    // The events were numbered 0 to MostRows, modulo 32.
    EXPECT_EQ(view.cell(0, 2).text, "21");
    EXPECT_EQ(view.screen.lblLstChan1.caption, "4");
}

TEST_F(Stream2Test, AnotherPodCanBeChosen) {
    report(3, {event(19, 30, true)});
    report(8, {event(1, 1, true)});
    view.load();
    EXPECT_EQ(view.screen.cboView.entries,
              (std::vector<ListEntry>{{"03 - 7V", 2}, {"08 - 8S", 7}}));
    EXPECT_EQ(view.screen.cboView.index, 1);
    view.cboView_Click(0);
    EXPECT_EQ(run_time.Poll.ViewedZav, Pod::at_index(2));
    EXPECT_EQ(view.screen.lblZAVNo.caption, "ZAV: 03");
    EXPECT_EQ(texts(), Lines{"5 Jan|13:04:30:007|19|Lo to Hi|"});
}

TEST_F(Stream2Test, FollowsThePodThatAnotherViewChose) {
    view.load();
    run_time.Poll.ViewedZav = Pod::at_index(2);
    loop.run_for(1000);
    EXPECT_EQ(view.screen.lblZAVNo.caption, "ZAV: 03");
    EXPECT_EQ(view.screen.cboView.index, 0);
}

TEST_F(Stream2Test, TakesASelectedPodWhenTheViewedOneIsNot) {
    run_time.Poll.ViewedZav = Pod::at_index(40);
    view.load();
    EXPECT_EQ(view.screen.lblZAVNo.caption, "ZAV: 03");
    EXPECT_EQ(view.screen.cboView.index, 0);
}

TEST_F(Stream2Test, TheClockGoes) {
    loop.set_wall_time({2026, 1, 5, 23, 59, 58, 400});
    view.load();
    EXPECT_EQ(view.screen.picTime.caption, "23:59:58   05-Jan-2026");
    EXPECT_EQ(view.screen.lblDate.caption, "05 Jan 2026");
    loop.run_for(600);  // on the second
    EXPECT_EQ(view.screen.picTime.caption, "23:59:59   05-Jan-2026");
    loop.run_for(1000);
    EXPECT_EQ(view.screen.picTime.caption, "00:00:00   06-Jan-2026");
    EXPECT_EQ(view.screen.lblDate.caption, "06 Jan 2026");
    view.unload();
    loop.run_for(5000);
    EXPECT_EQ(view.screen.picTime.caption, "00:00:00   06-Jan-2026");
    EXPECT_EQ(run_time.Poll.ViewOpen[EventStream], 0);
}

}  // namespace
}  // namespace kavorix::test
