#include "ui/streams/stream3_view.h"

#include <gtest/gtest.h>

#include "support/ui_rig.h"

namespace kavorix::test {
namespace {

class Stream3Test : public testing::Test, public UiRig {
  protected:
    Stream3Test() {
        station({{3, "7VJA 0F 1.00"}, {8, "8SFN 0F 1.00"}, {9, "7RAA 0F 1.00"}});
        click({3, 8});
    }
    void say(int pod, const std::string& text) {
        auto& buffer = status(pod).Stream3Text;
        buffer.fill(' ');
        std::copy(text.begin(), text.end(), buffer.begin());
    }
    Lines texts() const {
        Lines lines;
        for (int row = 0; row < view.row_count(); ++row)
            lines.push_back(view.cell(row, 0).text + "|" + view.cell(row, 1).text + "|" +
                            view.cell(row, 2).text);
        return lines;
    }
    Stream3View view{run_time};
};

TEST_F(Stream3Test, ShowsTheTextsOfTheSelectedPods) {
    say(3, "C12");
    say(9, "not selected");
    view.load();
    EXPECT_EQ(view.headings(), (Lines{"ZAV", "Type", "Data"}));
    EXPECT_EQ(texts(), (Lines{"03|7V Universal ZAV|C12", "08|8S Switch I/O|"}));
    EXPECT_EQ(run_time.Poll.ViewOpen, (StreamFlags{0, 0, 0, 1}));
}

TEST_F(Stream3Test, OpeningCountsAllTextsAsSeen) {
    status(3).StreamSeen[TextStream] = 1;
    status(9).StreamSeen[TextStream] = 1;
    view.load();
    EXPECT_EQ(status(3).StreamSeen[TextStream], 0);
    EXPECT_EQ(status(9).StreamSeen[TextStream], 0);
}

TEST_F(Stream3Test, RefreshFindsWhatChanged) {
    say(3, "C12");
    view.load();
    const auto layout = view.layout();
    view.refresh();
    EXPECT_TRUE(view.take_changed_rows().empty());
    say(8, "H");
    view.refresh();
    view.refresh();
    EXPECT_EQ(view.take_changed_rows(), std::vector{1});
    EXPECT_TRUE(view.take_changed_rows().empty());
    EXPECT_EQ(texts()[1], "08|8S Switch I/O|H");
    EXPECT_EQ(view.layout(), layout);
}

TEST_F(Stream3Test, WhatCannotBePrintedBecomesAPoint) {
    say(3, std::string("A\x01\x1F\x7F\xE9 Z", 7));
    view.load();
    EXPECT_EQ(view.cell(0, 2).text, "A...\xE9 Z");
    say(3, std::string("AB\0CD", 5));
    view.refresh();
    EXPECT_EQ(view.cell(0, 2).text, "AB");
}

TEST_F(Stream3Test, ClosingClearsItsFlag) {
    view.load();
    view.unload();
    EXPECT_EQ(run_time.Poll.ViewOpen[TextStream], 0);
}

TEST_F(Stream3Test, TheSelectionWhenItOpensCounts) {
    view.load();
    const auto layout = view.layout();
    click({9});
    view.refresh();
    EXPECT_EQ(view.row_count(), 2);
    view.load();
    EXPECT_EQ(view.row_count(), 3);
    EXPECT_NE(view.layout(), layout);
}

}  // namespace
}  // namespace kavorix::test
