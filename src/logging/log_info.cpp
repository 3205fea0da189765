#include "logging/log_info.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"
#include "model/runtime.h"

namespace kavorix {

namespace {

constexpr std::size_t GapsListed = 20;
constexpr std::size_t IntervalsLearnt = 100;  // the usual interval is the median of the first ones
constexpr std::int64_t Day_ms = 24 * 60 * 60 * 1000;

std::int64_t ms_of_day(float time) {
    const auto digits = static_cast<std::int64_t>(time);
    return ((digits / 10000000 * 60 + digits / 100000 % 100) * 60 + digits / 1000 % 100) * 1000 +
           digits % 1000;
}

// Follows the times of one run's records, over midnight too. Counted in ms from the beginning of
// the run's first day.
class RunTimes {
  public:
    void begin(RunInfo& run) {
        run_ = &run;
        const std::int32_t date = run.Header.Date;
        const WallTime day{date / 10000, date / 100 % 100, date % 100};
        day_ = is_date(day) ? std::optional(day) : std::nullopt;
        last_.reset();
        midnights_ = 0;
        early_.clear();
    }

    void add(float time) {
        if (!run_ || !(time >= 0 && time < 1E9F)) return;
        std::int64_t now = ms_of_day(time) + midnights_ * Day_ms;
        if (last_ && now < *last_) {
            ++midnights_;
            now += Day_ms;
        }
        if (day_) run_->Last = moment(now);
        if (!run_->First) run_->First = run_->Last;
        if (last_ && run_->Header.Kind == ScanLog) add_interval(*last_, now);
        last_ = now;
    }

    void end() {
        if (run_ && !early_.empty()) learn();
        run_ = nullptr;
    }

  private:
    struct Interval {
        std::int64_t from = 0;
        std::int64_t to = 0;
        std::int64_t length() const { return to - from; }
    };

    WallTime moment(std::int64_t ms) const { return add_milliseconds(*day_, ms); }

    void add_interval(std::int64_t from, std::int64_t to) {
        if (run_->UsualInterval_ms > 0) {
            check({from, to});
            return;
        }
        early_.push_back({from, to});
        if (early_.size() == IntervalsLearnt) learn();
    }

    void learn() {
        std::vector<Interval> sorted = early_;
        const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
        std::nth_element(
            sorted.begin(), middle, sorted.end(),
            [](const Interval& a, const Interval& b) { return a.length() < b.length(); });
        run_->UsualInterval_ms = std::max<std::int64_t>(middle->length(), 1);
        for (const Interval& interval : early_) check(interval);
        early_.clear();
    }

    void check(const Interval& interval) {
        // Times of day are only as exact as a single: up to 16 ms.
        constexpr std::int64_t Inexact_ms = 32;
        if (interval.length() <= 2 * run_->UsualInterval_ms + Inexact_ms) return;
        ++run_->GapCount;
        if (day_ && run_->Gaps.size() < GapsListed)
            run_->Gaps.push_back({moment(interval.from), moment(interval.to)});
    }

    RunInfo* run_ = nullptr;
    std::optional<WallTime> day_;
    std::optional<std::int64_t> last_;
    std::int64_t midnights_ = 0;
    std::vector<Interval> early_;
};

// Events in a record of an event log.
std::uint64_t count_events(const char* values, int count) {
    std::uint64_t events = 0;
    for (int read = 0; read < count;) {
        const auto last = read_field<float>(values + at(read + 1) * EntrySize);
        const int of_pod = last >= 0 ? static_cast<int>(last) + 1 : 0;
        events += static_cast<std::uint64_t>(of_pod);
        read += 2 + of_pod * EventEntries;
    }
    return events;
}

std::string time_text(const WallTime& time) {
    return general_date(time) + "." + padded(time.millisecond, 3);
}

std::string date_text(std::int32_t date) {
    const std::string digits = padded(date, 8);
    return digits.substr(0, 4) + "-" + digits.substr(4, 2) + "-" + digits.substr(6);
}

std::string seconds_text(std::int64_t ms) {
    return general(static_cast<float>(ms) / 1000.0F) + " s";
}

std::string counted(std::uint64_t count, std::string_view thing) {
    return std::to_string(count) + " " + std::string(thing) + (count == 1 ? "" : "s");
}

std::string pod_text(const LoggedPod& pod) {
    std::string text = "  pod " + std::to_string(pod.Number) + ", type " + pod.TypeCode + ", " +
                       counted(pod.Channels.size(), "channel") + "\n";
    for (std::size_t i = 0; i < pod.Channels.size(); ++i) {
        const std::string_view label = trim(pod.Channels[i].Label);
        const std::string_view unit = trim(pod.Channels[i].Unit);
        if (label.empty() && unit.empty()) continue;
        text += "    " + std::to_string(i + 1);
        if (!label.empty()) text += " " + std::string(label);
        if (!unit.empty()) text += " [" + std::string(unit) + "]";
        text += "\n";
    }
    return text;
}

std::string records_text(const RunInfo& run) {
    std::string text = "  " + counted(run.Records, "record");
    if (run.Header.Kind != ScanLog) text += " with " + counted(run.Events, "event");
    if (run.First) text += " from " + time_text(*run.First) + " to " + time_text(*run.Last);
    if (run.UsualInterval_ms > 0) text += ", usually every " + seconds_text(run.UsualInterval_ms);
    text += "\n";
    if (run.GapCount > 0) text += "  " + counted(run.GapCount, "gap") + "\n";
    for (const LogGap& gap : run.Gaps)
        text += "    from " + time_text(gap.From) + " to " + time_text(gap.To) + "\n";
    if (run.GapCount > run.Gaps.size() && !run.Gaps.empty()) text += "    ...\n";
    return text;
}

std::string run_text(const RunInfo& run, std::size_t number) {
    std::string text = "Run " + std::to_string(number) + ", ";
    text += run.Header.Kind == ScanLog ? "scan log" : "event log";
    text += ", begun " + date_text(run.Header.Date) + ", at byte " + std::to_string(run.Position);
    if (!trim(run.Header.Comment).empty()) text += ": " + std::string(trim(run.Header.Comment));
    text += "\n";
    for (const LoggedPod& pod : run.Header.Pods) text += pod_text(pod);
    return text + records_text(run);
}

std::string damage_text(const LogDamage& damage) {
    const std::string place = std::to_string(damage.Position);
    std::string text = "Damage: ";
    if (damage.Item == DatItem::CutShort)
        text += "the file ends inside the record at byte " + place;
    else if (damage.Item == DatItem::Corrupt)
        text += "the record at byte " + place + " does not add up";
    else
        text += "what stands at byte " + place + " is no record";
    return text + "; " + counted(damage.Skipped, "byte") + " passed over.\n";
}

// Gathers what the items of a log tell.
class InfoReader {
  public:
    InfoReader(File& file, File* sums) : reader_(file), verifier_(sums) {
        info_.Size = file.size();
    }

    LogInfo read() {
        DatItem item{};
        do {
            item = reader_.next();
            verifier_.take(item, reader_);
            if (item == DatItem::Header) run_position_ = reader_.item_position();
            if (item == DatItem::Configuration) begin_run();
            if (item == DatItem::Data && run_) add_record();
            if (is_damage(item)) pass_over(item);
        } while (item != DatItem::End);
        end_run();
        info_.Unfinished = reader_.saw_unfinished();
        info_.Check = verifier_.result();
        return info_;
    }

  private:
    void begin_run() {
        end_run();
        ++info_.RunCount;
        run_.emplace();
        run_->Header = reader_.header();
        run_->Position = run_position_;
        times_.begin(*run_);
    }
    void end_run() {
        times_.end();
        if (run_ && info_.Runs.size() < LogInfo::MostRuns) info_.Runs.push_back(std::move(*run_));
        run_.reset();
    }
    void add_record() {
        ++run_->Records;
        if (run_->Header.Kind != ScanLog)
            run_->Events += count_events(reader_.values(), reader_.count());
        times_.add(reader_.time());
    }
    void pass_over(DatItem item) {
        const std::uint64_t place = reader_.item_position();
        const std::uint64_t skipped = reader_.resume();
        info_.Skipped += skipped;
        ++info_.DamageCount;
        if (info_.Damages.size() < LogInfo::MostDamages)
            info_.Damages.push_back({item, place, skipped});
    }

    DatReader reader_;
    LogVerifier verifier_;
    RunTimes times_;
    LogInfo info_;
    std::optional<RunInfo> run_;
    std::uint64_t run_position_ = 0;
};

}  // namespace

LogInfo read_log_info(File& file, File* sums) {
    return InfoReader(file, sums).read();
}

std::string log_info_text(const LogInfo& info) {
    std::string text = counted(info.RunCount, "run") + ", " + counted(info.Size, "byte") + "\n";
    for (std::size_t i = 0; i < info.Runs.size(); ++i) text += run_text(info.Runs[i], i + 1);
    if (info.RunCount > info.Runs.size()) text += "...\n";
    if (info.Unfinished)
        text += "A run was ended while a record was being written; that record does not count.\n";
    for (const LogDamage& damage : info.Damages) text += damage_text(damage);
    if (info.DamageCount > info.Damages.size())
        text += "... " + counted(info.DamageCount, "damaged place") + ", " +
                counted(info.Skipped, "byte") + " passed over in all.\n";
    return text + info.Check.text();
}

}  // namespace kavorix
