#include "graphs/graph_controls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <sstream>

#include "graphs/live_graph.h"
#include "platform/virtual_event_loop.h"

namespace kavorix::test {
namespace {

// In the order of GraphKey.
const std::vector<std::string> Keys = {"left", "right", "page-left", "page-right", "up",  "down",
                                       "in",   "out",   "follow",    "pause",      "all", "other"};

// A graph of two channels, "One" and "Two", over 60 s and -2..2, with a row a second: what an
// operator does with it, the questions with what they find behind them. Channel One counts the
// rows.
//     rows 5 0.5              five rows come, Two is 0.5 in them
//     key left                one of the keys above
//     tick Follow             clicks the box of that name
//     mark 50 60 0 1          marks that time and that range of values
//     cursor A 15 25          clicks with a cursor into a pixel column of that time
//     wheel 4 45, turn 1 0    the wheel over a time, over a value
//     drag 2, lift 0.25, legend 1, all, autoscale, new trend, new bars
//     view?   status?   cursors?   hidden?   boxes?   drawn? (whether there was something to draw)
class GraphScene {
  public:
    GraphScene() { build(false); }

    // The scene with the answers that were found behind its questions.
    std::string play(const std::string& scene) {
        std::string told;
        std::istringstream steps(scene);
        for (std::string step; std::getline(steps >> std::ws, step, ';');) {
            std::istringstream words(step);
            std::string verb;
            words >> verb;
            if (verb.ends_with('?'))
                step = verb + " " + tell(verb);
            else
                perform(verb, words);
            told += (told.empty() ? "" : "; ") + step.substr(0, step.find_last_not_of(' ') + 1);
        }
        return told;
    }

    GraphControls& controls() { return controls_; }
    void row(float one, float two) {
        plot_.WRUpdateData(set_, std::vector<float>{one, two});
        loop_.advance(1000);
        controls_.refresh();
    }

  private:
    void build(bool bars) {
        const PlotHandle page = plot_.WGCreatePage("PAGE1");
        const PlotHandle graph = plot_.WGCreateGraph(page);
        plot_.WGScalePlotArea(graph, {0, 60, -2, 2});
        for (int line = 0; line < 2; ++line) plot_.WGSetLineStyle(graph, line, 0, Dash::Solid);
        set_ = plot_.WRDefineDynDataSet(graph, "Data", 2, 1, bars ? 0 : 60);
        plot_.WRDynLegendPtr(graph, set_, legend_entry("One", {}) + legend_entry("Two", {}), {});
        bars ? plot_.WRSetBargraph(graph, set_) : plot_.WRSetScrollGraph(graph, set_);
        plot_.WGUpdatePage(page);
        controls_.refresh();
    }

    void perform(const std::string& verb, std::istringstream& words) {
        std::string name;
        double a = 0, b = 0, c = 0, d = 0;
        if (verb == "key" || verb == "tick" || verb == "cursor" || verb == "new") words >> name;
        words >> a >> b >> c >> d;
        GraphScreen& screen = controls_.screen;
        const std::map<std::string, std::pair<CheckBox*, std::function<void()>>> boxes = {
            {"Follow", {&screen.chkFollow, [&] { controls_.chkFollow_Click(); }}},
            {"Pause", {&screen.chkPause, [&] { controls_.chkPause_Click(); }}},
            {"Cursors", {&screen.chkCursors, [&] { controls_.chkCursors_Click(); }}},
            {"Clock", {&screen.chkClock, [&] { controls_.chkClock_Click(); }}}};
        if (verb == "tick") {
            const auto& [box, click] = boxes.at(name);
            box->checked = !box->checked;
            return click();
        }
        const std::map<std::string, std::function<void()>> verbs = {
            {"rows",
             [&] {
                 for (int i = 0; i < a; ++i)
                     row(static_cast<float>(plot_.picture().data.end_row()), static_cast<float>(b));
             }},
            {"key",
             [&] {
                 controls_.key(static_cast<GraphKey>(std::find(Keys.begin(), Keys.end(), name) -
                                                     Keys.begin()));
             }},
            {"mark",
             [&] {
                 controls_.show_area({a, b}, {c, d});
             }},
            {"cursor",
             [&] {
                 controls_.put_cursor(name == "A" ? Cursor::A : Cursor::B, {a, b});
             }},
            {"wheel", [&] { controls_.wheel_time(a, b); }},
            {"turn", [&] { controls_.wheel_values(a, b); }},
            {"drag", [&] { controls_.drag_time(a); }},
            {"lift", [&] { controls_.drag_values(a); }},
            {"legend", [&] { controls_.legend_click(static_cast<int>(a)); }},
            {"all", [&] { controls_.cmdAll_Click(); }},
            {"autoscale", [&] { controls_.cmdAutoscale_Click(); }},
            {"new", [&] { build(name == "bars"); }}};
        verbs.at(verb)();
    }

    std::string tell(const std::string& question) {
        const GraphScreen& screen = controls_.screen;
        const TrendView& view = controls_.view();
        std::ostringstream told;
        if (question == "view?")
            told << view.time.begin << ".." << view.time.end << " s, " << view.values.low << ".."
                 << view.values.high << (screen.chkFollow.checked ? ", following" : "");
        if (question == "status?") told << screen.lblStatus.caption;
        if (question == "hidden?")
            for (const LineLook& look : controls_.looks()) told << (look.hidden ? "yes " : "no ");
        if (question == "boxes?")
            for (const CheckBox* box :
                 {&screen.chkFollow, &screen.chkPause, &screen.chkCursors, &screen.chkClock})
                told << (box->enabled ? (box->checked ? "x" : "o") : "-");
        if (question == "drawn?")
            told << (std::exchange(seen_, controls_.revision()) != seen_ ? "yes" : "no");
        if (question == "cursors?" && !screen.fraCursors.visible) told << "none";
        if (question == "cursors?" && screen.fraCursors.visible)
            for (const auto& row : screen.grdCursors.rows) {
                for (const GridCell& cell : row) told << cell.text << "|";
                told << " ";
            }
        return told.str();
    }

    VirtualEventLoop loop_;
    PagePlot plot_{loop_};
    PlotHandle set_ = NoPlotHandle;
    GraphControls controls_{plot_};
    std::uint64_t seen_ = 0;
};

struct Scene {
    const char* what;
    const char* steps;
};

const Scene Scenes[] = {
    {"it follows the newest row",
     "view? 0..60 s, -2..2, following; rows 100; view? 39..99 s, -2..2, following; boxes? xooo; "
     "status? Following, a row every 1 s"},
    {"the wheel zooms to four fifths a step around the pointer",
     "rows 100; wheel 1 49; view? 41..89 s, -2..2; wheel -1 49; view? 39..99 s, -2..2, following"},
    {"around the newest row it goes on following",
     "rows 100; wheel 1 99; rows 1; view? 52..100 s, -2..2, following"},
    {"one key follows again in the same width",
     "rows 100; wheel 1 49; status? Held, a row every 1 s; key follow; view? 51..99 s, -2..2, "
     "following; boxes? xooo"},
    {"a held view stays while rows come",
     "rows 30; tick Follow; rows 10; view? 0..60 s, -2..2; boxes? oooo"},
    {"and follows when told",
     "rows 30; tick Follow; rows 50; tick Follow; view? 19..79 s, -2..2, following"},
    {"a pause loses nothing and draws nothing",
     "rows 50; key pause; boxes? xxoo; drawn? yes; rows 200; drawn? no; status? Paused, 200 rows "
     "behind; key pause; drawn? yes; view? 189..249 s, -2..2, following; boxes? xooo"},
    {"a paused graph can be zoomed; it follows as long as it reaches its newest row",
     "rows 50; tick Pause; rows 500; wheel 1 20; view? 4..52 s, -2..2, following"},
    {"the range fits what is visible and not hidden, 5 % more at either end; a flat line gets 5 % "
     "of itself",
     "rows 40 7; mark 10 20 -2 2; autoscale; view? 10..20 s, 6.35..20.65; legend 0; hidden? yes "
     "no; autoscale; view? 10..20 s, 6.65..7.35; legend 1; autoscale; view? 10..20 s, 6.65..7.35"},
    {"the whole span goes back to the settings",
     "rows 100; mark 50 60 0 1; view? 50..60 s, 0..1; all; view? 39..99 s, -2..2, following"},
    {"dragging takes the graph along",
     "rows 100; mark 50 60 0 1; drag 2; lift 0.25; view? 48..58 s, -0.25..0.75"},
    {"the wheel zooms values",
     "drawn? yes; turn 1 -2; view? 0..60 s, -2..1.2, following; drawn? yes; lift 1; drawn? yes"},
    {"keys move it by a tenth, by four fifths",
     "rows 100; mark 50 60 0 10; key left; view? 49..59 s, 0..10; key right; key page-right; view? "
     "58..68 s, 0..10; key page-left; key up; view? 50..60 s, 1..11; key down; key down; view? "
     "50..60 s, -1..9"},
    {"keys zoom around the middle",
     "rows 100; mark 50 60 0 1; key in; view? 51..59 s, 0..1; key out; view? 50..60 s, 0..1; key "
     "all; view? 39..99 s, -2..2, following"},
    {"the legend hides and shows",
     "legend 1; hidden? no yes; drawn? yes; legend 1; hidden? no no; drawn? yes; legend 7; hidden? "
     "no no; drawn? no"},
    {"cursors come into the view at its thirds, and read every channel",
     "cursors? none; rows 31 0.5; tick Cursors; cursors? Time|0:00:10.0|0:00:20.0|10 s| "
     "One|10|20|10| Two|0.5|0.5|0|; tick Cursors; cursors? none"},
    {"by the clock too",
     "rows 31; drawn? yes; tick Clock; drawn? yes; tick Cursors; cursors? "
     "Clock|08:00:10.0|08:00:20.0|10 s| One|10|20|10| Two|0|0|0|"},
    {"one outside the view comes back into it",
     "rows 100; tick Cursors; tick Cursors; mark 40 52 0 1; tick Cursors; cursors? "
     "Time|0:00:44.0|0:00:48.0|4 s| One|44|48|4| Two|0|0|0|"},
    {"the one that was put is the active one",
     "rows 31; tick Cursors; cursor B 5 6; key right; cursors? Time|0:00:10.0|0:00:06.0|-4 s| "
     "One|10|6|-4| Two|0|0|0|"},
    {"told to follow, it does so in its width",
     "rows 100; mark 50 60 0 1; tick Follow; view? 89..99 s, 0..1, following"},
    {"one inside it stays",
     "rows 31; tick Cursors; cursor A 3 4; tick Cursors; tick Cursors; cursors? "
     "Time|0:00:03.0|0:00:20.0|17 s| One|3|20|17| Two|0|0|0|"},
    {"keys move the active cursor row by row, by ten",
     "rows 31; tick Cursors; key right; key page-right; key other; key left; cursors? "
     "Time|0:00:21.0|0:00:19.0|-2 s| One|21|19|-2| Two|0|0|0|; view? 0..60 s, -2..2, following"},
    {"not beyond the rows",
     "rows 31; tick Cursors; key page-left; key page-left; key other; key page-right; key "
     "page-right; cursors? Time|0:00:00.0|0:00:30.0|30 s| One|0|30|30| Two|0|0|0|"},
    {"in a column a cursor stands on the spike of the lines that are not hidden, else on the "
     "nearest row",
     "rows 20; rows 1 1.75; rows 20; legend 0; tick Cursors; cursor A 15 25; cursor B 15.2 15.4; "
     "cursors? Time|0:00:20.0|0:00:15.0|-5 s| One|20|15|-5| Two|1.75|0|-1.75|"},
    {"on the first of two as high",
     "rows 20; rows 3 1.75; legend 0; tick Cursors; cursor A 15 25; cursor B 1 2; cursors? "
     "Time|0:00:20.0|0:00:01.0|-19 s| One|20|1|-19| Two|1.75|0|-1.75|"},
    {"a hidden line does not count",
     "rows 30 9; rows 1; legend 1; tick Cursors; cursor A 25 35; cursor B 1 2; cursors? "
     "Time|0:00:30.0|0:00:01.0|-29 s| One|30|1|-29| Two|0|9|9|"},
    {"the whole span leaves the cursors",
     "rows 31; tick Cursors; key all; key right; cursors? Time|0:00:11.0|0:00:20.0|9 s| "
     "One|11|20|9| Two|0|0|0|"},
    {"no row but those shown counts for the range",
     "rows 100; mark 89 99 0 1; legend 1; autoscale; view? 89..99 s, 88.5..99.5, following"},
    {"its values end with its row",
     "rows 10; tick Cursors; cursor A 3 4; rows 56; cursors? Time||0:00:06.0|| One||6|| Two||0||"},
    {"a new graph starts afresh",
     "rows 100; legend 0; tick Cursors; key pause; mark 50 60 0 1; new trend; view? 0..60 s, "
     "-2..2, following; hidden? no no; boxes? xooo; cursors? none"},
    {"bars have no time, only a range, which begins at 0",
     "new bars; status? Waiting for values; rows 3 5; status?; boxes? ----; wheel 1 0; drag 5; key "
     "pause; key left; view? 0..60 s, -2..2; autoscale; view? 0..60 s, -0.25..5.25; boxes? ----"},
};

TEST(GraphControls, WhatAnOperatorDoesWithTheGraph) {
    for (const Scene& scene : Scenes)
        EXPECT_EQ(GraphScene().play(scene.steps), scene.steps) << scene.what;
}

TEST(GraphControls, TheCsvHoldsTheVisibleRows) {
    GraphScene scene;
    scene.play("rows 4 0.25");
    scene.row(std::numeric_limits<float>::quiet_NaN(), -1);
    scene.play("mark 2 7 0 1");
    EXPECT_EQ(scene.controls().csv(),
              "Time (s),Date,Clock,One,Two\r\n"
              "2,2026-01-05,08:00:02.000,2,0.25\r\n"
              "3,2026-01-05,08:00:03.000,3,0.25\r\n"
              "4,2026-01-05,08:00:04.000,,-1\r\n");
}

}  // namespace
}  // namespace kavorix::test
