#pragma once

// Trends made of everything that lines have to survive: smooth stretches, noise, spikes, steps,
// gaps and values of any size.

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "graphs/trend_data.h"

namespace kavorix::test {

class RandomTrend {
  public:
    RandomTrend(unsigned seed, int channels) : random_(seed), channels_(channels) {}

    // The next row.
    std::vector<float> row() {
        std::vector<float> values;
        for (int channel = 0; channel < channels_; ++channel) values.push_back(value(channel));
        ++row_;
        return values;
    }

    // Appends `count` rows `interval_s` apart.
    void append(TrendData& data, int count, double interval_s) {
        for (int i = 0; i < count; ++i)
            data.append(static_cast<double>(data.end_row()) * interval_s, {}, row());
    }

    int whole(int low, int high) { return std::uniform_int_distribution(low, high)(random_); }

  private:
    float value(int channel) {
        const int kind = whole(0, 199);
        if (kind == 0) return std::numeric_limits<float>::quiet_NaN();
        if (kind == 1) return std::numeric_limits<float>::infinity();
        if (kind == 2) return 3.0E38F;
        if (kind < 8) return static_cast<float>(whole(-1000, 1000)) / 100;
        const double smooth = std::sin(row_ * 0.01 * (channel + 1));
        return static_cast<float>(smooth + (channel % 2 == 0 ? 0 : whole(-50, 50) / 100.0));
    }

    std::mt19937 random_;
    int channels_;
    int row_ = 0;
};

}  // namespace kavorix::test
