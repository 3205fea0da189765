#include "app/log_trend.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

#include "base/text.h"
#include "logging/dat_reader.h"

namespace kavorix {

namespace {

constexpr float None = std::numeric_limits<float>::quiet_NaN();
constexpr double BeforeRun = 0.001;  // s: where the gap before a run's first record stands

// Collects rows from the items of a log.
class TrendReader {
  public:
    explicit TrendReader(LogTrend& trend) : trend_(trend), latest_(trend.Columns.size(), None) {
        for (auto& channels : column_) channels.fill(-1);
        for (std::size_t i = 0; i < trend.Columns.size(); ++i)
            column_[at(trend.Columns[i].Pod - 1)][at(trend.Columns[i].Channel - 1)] =
                static_cast<int>(i);
    }

    void begin_run(const DatReader& reader) {
        const std::int32_t date = reader.date();
        const WallTime day{date / 10000, date / 100 % 100, date % 100};
        if (is_date(day)) day_ = day;
        pods_ = reader.pods();
        previous_ms_ = -1;
        std::fill(latest_.begin(), latest_.end(), None);
        gap_pending_ = !trend_.Rows.empty();
        for (const LoggedPod& pod : pods_) take_names(pod);
    }

    void add(const DatReader& reader) {
        const long long time_ms = ms_of_day(reader.time());
        if (time_ms < previous_ms_) day_ = add_days(day_, 1);
        previous_ms_ = time_ms;
        take_values(reader.values(), reader.count());
        append(add_milliseconds(day_, time_ms));
    }

  private:
    // Of a time written as hhmmssmmm.
    static long long ms_of_day(float time) {
        const auto digits = static_cast<long long>(std::clamp(time, 0.0F, 235959999.0F));
        const long long minutes = digits / 10000000 * 60 + digits / 100000 % 100;
        return minutes * 60000 + digits / 1000 % 100 * 1000 + digits % 1000;
    }

    void take_names(const LoggedPod& pod) {
        for (std::size_t channel = 0; channel < pod.Channels.size(); ++channel) {
            const int column = column_[at(pod.Number - 1)][channel];
            if (column < 0) continue;
            std::string& name = trend_.Names[at(column)];
            if (name.empty()) name = trim(pod.Channels[channel].Label);
            units_.push_back(std::string(trim(pod.Channels[channel].Unit)));
            trend_.Unit = std::count(units_.begin(), units_.end(), units_.front()) ==
                                  static_cast<std::ptrdiff_t>(units_.size())
                              ? units_.front()
                              : "";
        }
    }

    void take_values(const char* values, int count) {
        int read = 0;
        for (const LoggedPod& pod : pods_) {
            const int channels = static_cast<int>(pod.Channels.size());
            if (count - read <= channels) return;
            if (read_field<float>(values + at(read) * EntrySize) != static_cast<float>(pod.Number))
                continue;
            for (int channel = 0; channel < channels; ++channel)
                take(pod.Number, channel, values + at(read + 1 + channel) * EntrySize);
            read += 1 + channels;
        }
    }

    void take(int pod, int channel, const char* value) {
        const int column = column_[at(pod - 1)][at(channel)];
        if (column < 0) return;
        const bool error = read_field<std::uint32_t>(value) == ErrorReadingBits;
        latest_[at(column)] = error ? None : read_field<float>(value);
    }

    void append(const WallTime& wall) {
        if (!begin_) begin_ = wall;
        double time_s = static_cast<double>(milliseconds_between(*begin_, wall)) / 1000;
        if (!trend_.Rows.empty())
            // A clock that was set back does not turn the axis round.
            time_s = std::max(time_s, trend_.Rows.back().time_s + 2 * BeforeRun);
        if (gap_pending_) {
            trend_.Rows.push_back({time_s - BeforeRun, wall});
            trend_.Values.insert(trend_.Values.end(), latest_.size(), None);
            gap_pending_ = false;
        }
        trend_.Rows.push_back({time_s, wall});
        trend_.Values.insert(trend_.Values.end(), latest_.begin(), latest_.end());
    }

    LogTrend& trend_;
    std::array<std::array<int, MaxChannels>, MaxZavs> column_{};  // -1: not asked for
    std::vector<float> latest_;
    std::vector<LoggedPod> pods_;
    std::vector<std::string> units_;
    WallTime day_;
    long long previous_ms_ = -1;
    std::optional<WallTime> begin_;
    bool gap_pending_ = false;
};

void name_the_unnamed(LogTrend& trend) {
    for (std::size_t i = 0; i < trend.Names.size(); ++i)
        if (trend.Names[i].empty())
            trend.Names[i] = legend_entries(
                legend_entry("", {trend.Columns[i].Pod - 1, trend.Columns[i].Channel - 1}))[0];
}

}  // namespace

LogTrend read_log_trend(File& file, const std::vector<CsvColumn>& columns) {
    LogTrend trend;
    trend.Columns = columns;
    trend.Names.resize(columns.size());
    TrendReader rows(trend);
    DatReader reader(file);
    DatItem item = DatItem::Header;
    while (!is_last(item)) {
        item = reader.next();
        if (item == DatItem::Header && trend.Comment.empty()) trend.Comment = reader.comment();
        if (item == DatItem::Configuration) rows.begin_run(reader);
        if (item == DatItem::Data) rows.add(reader);
    }
    if (item != DatItem::End)
        trend.Damage = (item == DatItem::CutShort ? "ends inside" : "is damaged in") +
                       std::string(" the record at byte ") + std::to_string(reader.item_position());
    name_the_unnamed(trend);
    return trend;
}

}  // namespace kavorix
