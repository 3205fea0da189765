#include "alarms/alarm_measures.h"

#include <algorithm>
#include <deque>
#include <map>

namespace kavorix {

namespace {

constexpr std::int64_t Minute = 60000;
constexpr std::int64_t TenMinutes = 10 * Minute;
constexpr std::int64_t Hour = 60 * Minute;
constexpr std::int64_t Day = 24 * Hour;
constexpr std::size_t FloodBegins = 10;  // more than so many in ten minutes
constexpr std::size_t FloodEnds = 5;     // fewer than so many
constexpr std::size_t BusyHour = 30;
constexpr std::size_t MostListed = 10;
constexpr std::size_t ChatterTimes = 3;

using Times = std::vector<std::int64_t>;

std::size_t most_within(const Times& times, std::int64_t span) {
    std::size_t most = 0, first = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        while (times[i] - times[first] >= span) ++first;
        most = std::max(most, i - first + 1);
    }
    return most;
}

// Share of the periods of `length` from `from` on that have more than `limit` of the times.
double share_above(const Times& times, std::int64_t from, std::int64_t to, std::int64_t length,
                   std::size_t limit) {
    std::map<std::int64_t, std::size_t> counts;
    for (const std::int64_t time : times) ++counts[(time - from) / length];
    const auto above = std::count_if(counts.begin(), counts.end(),
                                     [&](const auto& entry) { return entry.second > limit; });
    const std::int64_t periods = std::max<std::int64_t>((to - from + length - 1) / length, 1);
    return static_cast<double>(above) / static_cast<double>(periods);
}

std::vector<AlarmFlood> floods_in(const Times& times, std::int64_t to) {
    std::vector<AlarmFlood> floods;
    std::deque<std::int64_t> window;
    bool flooded = false;
    // Lets the alarms leave the window that are ten minutes old at `now`; a flood ends with the one
    // that leaves too few.
    const auto pass = [&](std::int64_t now) {
        while (!window.empty() && now - window.front() >= TenMinutes) {
            const std::int64_t left = window.front() + TenMinutes;
            window.pop_front();
            if (!flooded || window.size() >= FloodEnds) continue;
            floods.back().end_utc_ms = left;
            flooded = false;
        }
    };
    for (const std::int64_t time : times) {
        pass(time);
        window.push_back(time);
        if (!flooded && window.size() > FloodBegins) {
            flooded = true;
            floods.push_back({window.front(), 0, window.size() - 1, 0});
        }
        if (!flooded) continue;
        ++floods.back().count;
        floods.back().peak = std::max(floods.back().peak, window.size());
    }
    pass(to);
    if (flooded) floods.back().end_utc_ms = to;
    return floods;
}

struct Activation {
    std::int64_t came = 0;
    std::int64_t went = 0;
    bool over = false;
};

// Of each alarm, in order; those at the end that are not over last to `to`.
std::map<std::string, std::vector<Activation>> activations_in(std::span<const AlarmRecord> records,
                                                              std::int64_t to) {
    std::map<std::string, std::vector<Activation>> found;
    for (const AlarmRecord& record : records) {
        if (!record.of_alarm || record.utc_ms >= to) continue;
        std::vector<Activation>& of = found[alarm_id(record.rule)];
        const bool open = !of.empty() && !of.back().over;
        const std::int64_t came = record.since_utc_ms != 0 ? record.since_utc_ms : record.utc_ms;
        if (record.after.active() && !open)
            of.push_back({came, to, false});
        else if (!record.after.active() && open)
            of.back() = {of.back().came, record.utc_ms, true};
    }
    return found;
}

std::size_t bursts_in(const std::vector<Activation>& activations, std::int64_t from) {
    std::size_t bursts = 0;
    for (std::size_t i = 0; i + ChatterTimes <= activations.size();) {
        const Activation& last = activations[i + ChatterTimes - 1];
        const bool burst =
            activations[i].came >= from && last.over && last.went - activations[i].came <= Minute;
        bursts += burst ? 1 : 0;
        i += burst ? ChatterTimes : 1;
    }
    return bursts;
}

void sort_by_count(std::vector<AlarmMeasures::Frequent>& list) {
    std::stable_sort(list.begin(), list.end(),
                     [](const auto& a, const auto& b) { return a.count > b.count; });
    if (list.size() > MostListed) list.resize(MostListed);
}

}  // namespace

AlarmMeasures measure_alarms(std::span<const AlarmRecord> records,
                             std::optional<std::int64_t> from_utc_ms,
                             std::optional<std::int64_t> to_utc_ms) {
    AlarmMeasures measures;
    if (records.empty() && !(from_utc_ms && to_utc_ms)) return measures;
    const auto earlier = [](const AlarmRecord& a, const AlarmRecord& b) {
        return a.utc_ms < b.utc_ms;
    };
    const std::int64_t from =
        from_utc_ms ? *from_utc_ms
                    : std::min_element(records.begin(), records.end(), earlier)->utc_ms;
    const std::int64_t to =
        to_utc_ms ? *to_utc_ms
                  : std::max_element(records.begin(), records.end(), earlier)->utc_ms + 1;
    measures.from_utc_ms = from;
    measures.to_utc_ms = to;

    Times times;
    std::map<std::string, AlarmMeasures::Frequent> counts;
    std::map<std::string, std::string> labels;
    for (const AlarmRecord& record : records) {
        if (record.of_alarm) labels[alarm_id(record.rule)] = record.rule.label;
        if (!annunciates(record) || record.utc_ms < from || record.utc_ms >= to) continue;
        times.push_back(record.utc_ms);
        ++measures.by_severity[static_cast<std::size_t>(record.rule.severity)];
        AlarmMeasures::Frequent& of = counts[alarm_id(record.rule)];
        of = {alarm_id(record.rule), record.rule.label, of.count + 1};
    }
    std::sort(times.begin(), times.end());
    measures.annunciated = times.size();
    measures.most_in_an_hour = most_within(times, Hour);
    measures.most_in_10_min = most_within(times, TenMinutes);
    measures.hours_above_30 = share_above(times, from, to, Hour, BusyHour);
    measures.periods_above_10 = share_above(times, from, to, TenMinutes, FloodBegins);
    measures.floods = floods_in(times, to);
    std::int64_t flooded = 0;
    for (const AlarmFlood& flood : measures.floods)
        flooded += flood.end_utc_ms - flood.begin_utc_ms;
    measures.time_in_flood =
        to > from ? static_cast<double>(flooded) / static_cast<double>(to - from) : 0;
    for (const auto& [id, of] : counts) measures.most_frequent.push_back(of);
    sort_by_count(measures.most_frequent);
    for (const auto& [id, activations] : activations_in(records, to)) {
        if (const std::size_t bursts = bursts_in(activations, from); bursts > 0)
            measures.chattering.push_back({id, labels[id], bursts});
        for (const Activation& activation : activations)
            if (activation.went - activation.came > Day && activation.went > from)
                measures.stale.push_back({id, activation.came, activation.went});
    }
    sort_by_count(measures.chattering);
    return measures;
}

}  // namespace kavorix
