#pragma once

// A desk on files in memory, at a moment that the test moves on. rule("4/1/high", 2.0) is a rule in
// short; scan(4, {1.5}) a reading of pod 4; told collects "4/1/high comes unacknowledged".

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "alarms/alarm_desk.h"
#include "support/memory_files.h"

namespace kavorix::test {

inline AlarmRule rule(const std::string& id, double limit = 0) {
    AlarmRule made;
    const auto kind_at = id.rfind('/');
    const auto channel_at = id.find('/');
    for (const AlarmKindRow& row : AlarmKinds)
        if (row.name == id.substr(kind_at + 1)) made.kind = row.kind;
    if (kind_at != std::string::npos) made.pod = std::stoi(id);
    if (channel_at != kind_at) made.channel = std::stoi(id.substr(channel_at + 1));
    made.limit = limit;
    made.severity = alarm_kind(made.kind).severity;
    return made;
}

// The same with what else a rule says.
template <class Change>
AlarmRule rule(const std::string& id, double limit, Change&& change) {
    AlarmRule made = rule(id, limit);
    change(made);
    return made;
}

struct DeskRig {
    explicit DeskRig(std::vector<AlarmRule> with_rules, std::uint64_t most_bytes = 4 << 20)
        : rules(std::move(with_rules)) {
        place.directory = "dir";
        place.most_bytes = most_bytes;
        files.keep_log = false;
        start();
    }

    // A new program on the files that there are.
    void start() { start_on(files); }
    void start_on(Files& on) {
        desk.emplace(on, place, now);
        desk->on_transition([this](const AlarmRecord& record) {
            if (!record.of_alarm) return;
            records.push_back(record);
            told.push_back(alarm_id(record.rule) + " " + std::string(event_name(record.event)) +
                           " " + state_name(record.after));
        });
        desk->set_rules(rules, now);
    }

    void pass(std::int64_t ms) {
        now.tick_ms += static_cast<std::uint32_t>(ms);
        now.utc_ms += ms;
        desk->tick(now);
    }
    // A second later.
    void scan(int pod, const std::vector<float>& values, std::vector<std::int16_t> codes = {}) {
        pass(1000);
        codes.resize(values.size());
        desk->reading(pod - 1, values, codes, now);
    }
    std::vector<std::string> take_told() { return std::exchange(told, {}); }
    std::string state(const std::string& id) const { return state_name(desk->find(id)->state); }
    std::vector<std::string> ids(AlarmList which) const {
        std::vector<std::string> found;
        for (const Alarm* alarm : desk->list(which)) found.push_back(alarm->id);
        return found;
    }
    JournalContents journal() { return read_journal(files, place, place.files); }

    MemoryFiles files;
    JournalPlace place;
    AlarmMoment now{1000, 1'800'000'000'000, 60};
    std::vector<AlarmRule> rules;
    std::vector<AlarmRecord> records;
    std::vector<std::string> told;
    std::optional<AlarmDesk> desk;
    const OperatorNote ann{"Ann", "seen"};
};

}  // namespace kavorix::test
