#include "graphs/trace.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kavorix {

namespace {

constexpr double DashLength = 8;  // unscaled pixels
constexpr double DashGap = 4;
constexpr double FarAway = 8;  // heights

// Puts points together to pieces; dashes cut them.
class Tracer {
  public:
    Tracer(const PixelMapping& mapping, Dash dash) : mapping_(mapping), dash_(dash) {}

    void move_to(PlotPoint point) {
        finish();
        piece_.push_back(point);
    }

    void line_to(PlotPoint point) {
        if (dash_ == Dash::Solid || steep(piece_.back(), point)) {
            extend(point);
            return;
        }
        // Dashes where they can be seen, however far the ends are away.
        const PlotPoint from = piece_.back();
        const double rise = (point.y - from.y) / (point.x - from.x);
        const double end = std::min(point.x, static_cast<double>(mapping_.width));
        for (double x = std::max(from.x, 0.0); x < end; x = next_change(x))
            if (x > from.x) pass({x, from.y + rise * (x - from.x)});
        pass(point);
    }

    bool drawing() const { return !piece_.empty(); }

    void finish() {
        if (piece_.size() > 1 || (piece_.size() == 1 && !pausing_)) pieces_.push_back(piece_);
        piece_.clear();
        pausing_ = false;
    }

    std::vector<Polyline> take() {
        finish();
        return std::move(pieces_);
    }

  private:
    bool steep(PlotPoint from, PlotPoint to) const {
        return std::abs(to.y - from.y) >
               SteepestGap * std::max(mapping_.pixel_scale, to.x - from.x);
    }

    std::int64_t column(double x) const {
        return mapping_.first_column + static_cast<std::int64_t>(std::floor(x));
    }

    // The x behind this one where a dash begins or ends.
    double next_change(double x) const {
        const std::int64_t here = column(x);
        const bool gap = in_dash_gap(here, mapping_.pixel_scale);
        std::int64_t next = here + 1;
        while (in_dash_gap(next, mapping_.pixel_scale) == gap) ++next;
        return static_cast<double>(next - mapping_.first_column);
    }

    // Goes on to a point between two changes.
    void pass(PlotPoint point) {
        const double middle = (piece_.back().x + point.x) / 2;
        if (in_dash_gap(column(middle), mapping_.pixel_scale))
            skip_to(point);
        else
            extend(point);
    }

    void extend(PlotPoint point) {
        piece_.push_back(point);
        pausing_ = false;
    }

    // The next piece begins here.
    void skip_to(PlotPoint point) {
        finish();
        piece_.push_back(point);
        pausing_ = true;
    }

    const PixelMapping& mapping_;
    Dash dash_;
    Polyline piece_;
    bool pausing_ = false;  // the piece is but the end of a pause
    std::vector<Polyline> pieces_;
};

}  // namespace

double PixelMapping::y(float value) const {
    const double share = (y_maximum - static_cast<double>(value)) / (y_maximum - y_minimum);
    return std::clamp(share, -FarAway, FarAway) * height;
}

bool in_dash_gap(std::int64_t column, double pixel_scale) {
    const double period = (DashLength + DashGap) * pixel_scale;
    const double position = std::fmod(static_cast<double>(column), period);
    return (position < 0 ? position + period : position) >= DashLength * pixel_scale;
}

std::vector<Polyline> trace(const TrendColumns& columns, int channel, const PixelMapping& mapping,
                            Dash dash) {
    Tracer tracer(mapping, dash);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Extremes& extremes = columns.extremes(i, channel);
        if (std::isnan(extremes.first)) tracer.finish();
        if (!extremes.any()) continue;
        const double x = mapping.x(columns.time(i), columns.width_s());
        const auto to = [&](float value) {
            const PlotPoint point{x, mapping.y(value)};
            if (tracer.drawing())
                tracer.line_to(point);
            else
                tracer.move_to(point);
        };
        if (!std::isnan(extremes.first)) to(extremes.first);
        if (extremes.minimum < extremes.maximum) {
            to(extremes.minimum);
            to(extremes.maximum);
        }
        if (std::isnan(extremes.last))
            tracer.finish();
        else if (extremes.minimum < extremes.maximum)
            to(extremes.last);
    }
    return tracer.take();
}

}  // namespace kavorix
