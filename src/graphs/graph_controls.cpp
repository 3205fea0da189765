#include "graphs/graph_controls.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/numbers.h"
#include "graphs/trend_csv.h"

namespace kavorix {

namespace {

constexpr double WheelZoom = 0.8;  // of the view's length a step
constexpr double KeyPan = 0.1;     // of the view
constexpr double PagePan = 0.8;
constexpr int PageRows = 10;

}  // namespace

void GraphControls::Form_Load() {
    frozen_.reset();
    hidden_.assign(plot_.picture().looks.size(), false);
    cursors_ = {};
    screen.chkPause.checked = false;
    screen.chkCursors.checked = false;
    for (CheckBox* box :
         {&screen.chkFollow, &screen.chkPause, &screen.chkCursors, &screen.chkClock})
        box->enabled = trend();
    cmdAll_Click();
}

TrendLimits GraphControls::limits() const {
    return trend_limits(data().range(), plot_.picture().span_s, plot_.picture().interval_s);
}

void GraphControls::refresh() {
    if (!plot_.drawn()) return;
    if (std::exchange(graph_seen_, plot_.graph_number()) != plot_.graph_number()) Form_Load();
    const std::uint64_t rows = plot_.picture().data.end_row();
    const bool changed = std::exchange(plot_seen_, plot_.revision()) != plot_.revision();
    const bool grown = std::exchange(rows_seen_, rows) != rows;
    if (changed || (grown && !paused()))
        show(trend() ? settled(view_, limits()) : view_);
    else if (grown)
        show_state();
}

// Whatever it shows, the picture is another one: there may be other rows in it.
void GraphControls::show(const TrendView& view) {
    view_ = view;
    ++revision_;
    show_state();
    show_cursors();
}

void GraphControls::show_state() {
    screen.chkFollow.checked = trend() && view_.following;
    screen.lblStatus.caption = status_text();
}

std::string GraphControls::status_text() const {
    const GraphPicture& picture = plot_.picture();
    if (!trend()) return picture.data.empty() ? "Waiting for values" : "";
    if (paused())
        return "Paused, " + std::to_string(picture.data.end_row() - frozen_->end_row()) +
               " rows behind";
    const std::string every = "a row every " + shortest(picture.interval_s) + " s";
    return (view_.following ? "Following, " : "Held, ") + every;
}

void GraphControls::chkFollow_Click() {
    if (!screen.chkFollow.checked) {
        // Holds where it is; the next row would make it follow again.
        view_.following = false;
        show(view_);
        return;
    }
    show(follow(view_, limits()));
}

void GraphControls::chkPause_Click() {
    if (!screen.chkPause.checked)
        frozen_.reset();
    else if (!frozen_)
        frozen_ = plot_.picture().data;
    show(settled(view_, limits()));
}

void GraphControls::chkCursors_Click() {
    cursors_.shown = screen.chkCursors.checked;
    if (cursors_.shown) place_missing_cursors();
    show_cursors();
}

// A cursor that stands nowhere, or outside the view, comes into it: A at a third, B at two.
void GraphControls::place_missing_cursors() {
    for (const Cursor cursor : {Cursor::B, Cursor::A}) {
        const double at_s = cursors_.time(cursor);
        if (cursors_.placed[static_cast<std::size_t>(cursor)] && at_s >= view_.time.begin &&
            at_s <= view_.time.end)
            continue;
        const double share = cursor == Cursor::A ? 1.0 / 3 : 2.0 / 3;
        const TimeRange rows = data().range();
        const double end = std::min(view_.time.end, rows.end);
        const double begin = std::min(std::max(view_.time.begin, rows.begin), end);
        cursors_ = with_cursor(cursors_, cursor, stepped(data(), begin + (end - begin) * share, 0));
    }
}

void GraphControls::chkClock_Click() {
    show(view_);
}

void GraphControls::cmdAll_Click() {
    const PlotScale& scale = plot_.picture().scale;
    view_.values = {scale.y_minimum, scale.y_maximum};
    show(trend() ? all_shown(view_, limits()) : view_);
}

void GraphControls::cmdAutoscale_Click() {
    const TrendData& rows = data();
    const std::vector<LineLook> lines = looks();
    double low = 0;
    double high = -1;
    const std::uint64_t first = trend() ? rows.row_at(view_.time.begin) : rows.first_row();
    for (std::uint64_t row = first; row < rows.end_row(); ++row) {
        if (trend() && rows.time(row) > view_.time.end) break;
        for (int channel = 0; channel < rows.channels(); ++channel) {
            const double value = static_cast<double>(rows.value(row, channel));
            if (!std::isfinite(value) || lines[static_cast<std::size_t>(channel)].hidden) continue;
            if (low > high) low = high = value;
            low = std::min(low, value);
            high = std::max(high, value);
        }
    }
    if (low > high) return;
    // Bars stand on zero.
    if (!trend()) {
        low = std::min(low, 0.0);
        high = std::max(high, 0.0);
    }
    view_.values = room_around(low, high);
    show(view_);
}

void GraphControls::legend_click(int line) {
    const auto index = static_cast<std::size_t>(line);
    if (index >= hidden_.size()) return;
    hidden_[index] = !hidden_[index];
    show(view_);
}

void GraphControls::wheel_time(double steps, double around_s) {
    if (trend()) show(time_zoomed(view_, std::pow(WheelZoom, steps), around_s, limits()));
}

void GraphControls::wheel_values(double steps, double around) {
    view_.values = values_zoomed(view_.values, std::pow(WheelZoom, steps), around);
    show(view_);
}

void GraphControls::drag_time(double by_s) {
    if (trend()) show(time_panned(view_, -by_s, limits()));
}

void GraphControls::drag_values(double by) {
    view_.values = values_panned(view_.values, -by);
    show(view_);
}

void GraphControls::show_area(const TimeRange& time, const ValueRange& values) {
    view_.values = values;
    show(trend() ? time_shown(view_, time, limits()) : view_);
}

void GraphControls::put_cursor(Cursor cursor, const TimeRange& column) {
    const auto row = row_for_cursor(data(), column, looks());
    if (!row) return;
    cursors_ = with_cursor(cursors_, cursor, data().time(*row));
    show_cursors();
}

void GraphControls::show_cursors() {
    screen.chkCursors.checked = cursors_.shown;
    screen.fraCursors.visible = cursors_.shown;
    if (cursors_.shown)
        screen.grdCursors = cursor_table(data(), cursors_, plot_.picture().legend, by_clock());
    ++cursor_revision_;
}

void GraphControls::move_cursor(int steps) {
    const double to_s = stepped(data(), cursors_.time(cursors_.active), steps);
    cursors_ = with_cursor(cursors_, cursors_.active, to_s);
    show_cursors();
}

void GraphControls::pan_by_share(double share) {
    if (trend()) show(time_panned(view_, share * view_.time.length(), limits()));
}

void GraphControls::key(GraphKey key) {
    const double middle_s = (view_.time.begin + view_.time.end) / 2;
    const double step = view_.values.length() * KeyPan;
    switch (key) {
        case GraphKey::Left:
        case GraphKey::Right: {
            const int direction = key == GraphKey::Left ? -1 : 1;
            if (cursors_.shown)
                move_cursor(direction);
            else
                pan_by_share(direction * KeyPan);
            break;
        }
        case GraphKey::PageLeft:
        case GraphKey::PageRight: {
            const int direction = key == GraphKey::PageLeft ? -1 : 1;
            if (cursors_.shown)
                move_cursor(direction * PageRows);
            else
                pan_by_share(direction * PagePan);
            break;
        }
        case GraphKey::Up:
            drag_values(-step);
            break;
        case GraphKey::Down:
            drag_values(step);
            break;
        case GraphKey::ZoomIn:
            wheel_time(1, middle_s);
            break;
        case GraphKey::ZoomOut:
            wheel_time(-1, middle_s);
            break;
        case GraphKey::Follow:
            if (trend()) show(follow(view_, limits()));
            break;
        case GraphKey::Pause:
            if (!trend()) break;
            screen.chkPause.checked = !screen.chkPause.checked;
            chkPause_Click();
            break;
        case GraphKey::All:
            cmdAll_Click();
            break;
        case GraphKey::OtherCursor:
            cursors_.active = cursors_.active == Cursor::A ? Cursor::B : Cursor::A;
            show_cursors();
            break;
    }
}

std::vector<LineLook> GraphControls::looks() const {
    std::vector<LineLook> lines = plot_.picture().looks;
    for (std::size_t line = 0; line < lines.size() && line < hidden_.size(); ++line)
        lines[line].hidden = hidden_[line];
    return lines;
}

std::string GraphControls::csv() const {
    const TimeRange rows = data().range();
    return trend_csv(data(), trend() ? view_.time : rows, plot_.picture().legend);
}

}  // namespace kavorix
