// What the desk writes to its journal, and what it has from it at a start.

#include <algorithm>
#include <system_error>
#include <utility>

#include "alarms/alarm_desk.h"

namespace kavorix {

namespace {

constexpr int FilesToRestore = 2;  // the last one has everything unless a kill came at its head

}  // namespace

void AlarmDesk::restore(Files& files, const JournalPlace& place) {
    JournalContents contents;
    try {
        contents = read_journal(files, place, FilesToRestore);
    } catch (const std::system_error& failure) {
        journal_damage_.push_back(failure.what());
    }
    for (std::string& line : contents.damage) journal_damage_.push_back(std::move(line));
    for (AlarmRecord& record : contents.records) {
        next_number_ = std::max(next_number_, record.number + 1);
        if (record.of_alarm) restored_.insert_or_assign(alarm_id(record.rule), std::move(record));
    }
    std::erase_if(restored_, [](const auto& entry) { return entry.second.after.idle(); });
}

void AlarmDesk::restore_into(Alarm& alarm) {
    const auto found = restored_.find(alarm.id);
    if (found == restored_.end()) return;
    const AlarmRecord last = std::move(found->second);
    restored_.erase(found);
    alarm.state = last.after;
    alarm.value = last.value;
    alarm.occurrence = last.occurrence;
    alarm.since_utc_ms = last.since_utc_ms;
    alarm.shelf_utc_ms = last.shelf_utc_ms;
    alarm.comment = last.comment;
    if (alarm.shelf_utc_ms > 0) {
        // A clock that was set back meanwhile does not make a shelf longer than it was.
        const std::int64_t left =
            std::min(alarm.shelf_utc_ms - now_.utc_ms, alarm.shelf_utc_ms - last.utc_ms);
        alarm.shelf_end_ms = now_ms_ + left;
    }
    if (alarm.state.life == AlarmLife::Acknowledged && alarm.rule.realarm_s > 0)
        alarm.realarm_ms = now_ms_ + rule_ms(alarm.rule.realarm_s);
    if (same_condition(last.rule, alarm.rule)) return;
    const AlarmState was = alarm.state;
    alarm.state.life = AlarmLife::Normal;
    if (!(was == alarm.state)) record(alarm, RecordEvent::RuleChanged, was, {});
}

// Restored states whose pod has its rules, but none for them.
void AlarmDesk::end_orphans() {
    std::array<bool, MaxZavs + 1> ruled{true};
    for (const Alarm& alarm : alarms_) ruled[static_cast<std::size_t>(alarm.rule.pod)] = true;
    std::erase_if(restored_, [&](const auto& entry) {
        if (!ruled[static_cast<std::size_t>(entry.second.rule.pod)]) return false;
        Alarm alarm;
        alarm.rule = entry.second.rule;
        alarm.occurrence = entry.second.occurrence;
        alarm.since_utc_ms = entry.second.since_utc_ms;
        record(alarm, RecordEvent::RuleRemoved, entry.second.after, {});
        return true;
    });
}

AlarmRecord AlarmDesk::entry(RecordEvent event, const OperatorNote& note) {
    AlarmRecord made;
    made.number = next_number_++;
    made.utc_ms = now_.utc_ms;
    made.offset_min = now_.offset_min;
    made.event = event;
    made.who = note.who;
    made.comment = note.comment;
    return made;
}

AlarmRecord AlarmDesk::entry_of(const Alarm& alarm, RecordEvent event, AlarmState before,
                                const OperatorNote& note) {
    AlarmRecord made = entry(event, note);
    made.rule = alarm.rule;
    made.of_alarm = true;
    made.before = before;
    made.after = alarm.state;
    made.value = alarm.value;
    made.occurrence = alarm.occurrence;
    made.since_utc_ms = alarm.since_utc_ms;
    made.shelf_utc_ms = alarm.shelf_utc_ms;
    return made;
}

void AlarmDesk::record(const Alarm& alarm, RecordEvent event, AlarmState before,
                       const OperatorNote& note) {
    pending_.push_back(entry_of(alarm, event, before, note));
}

std::vector<AlarmRecord> AlarmDesk::carried() {
    std::vector<AlarmRecord> records;
    for (const Alarm& alarm : alarms_)
        if (!alarm.state.idle())
            records.push_back(
                entry_of(alarm, RecordEvent::Carried, alarm.state, {{}, alarm.comment}));
    for (const auto& [id, last] : restored_) {
        AlarmRecord copy = last;
        const AlarmRecord made = entry(RecordEvent::Carried, {{}, last.comment});
        copy.number = made.number;
        copy.utc_ms = made.utc_ms;
        copy.offset_min = made.offset_min;
        copy.event = RecordEvent::Carried;
        copy.before = copy.after;
        copy.who.clear();
        records.push_back(std::move(copy));
    }
    return records;
}

// The alarm of the journal itself belongs to the call that found it out.
void AlarmDesk::write(bool durable) {
    const bool written = try_write(durable);
    if (!journal_alarm_ || alarms_[*journal_alarm_].state.active() != written) return;
    const std::size_t before = pending_.size();
    take_changes(engine_.station(*journal_alarm_, !written, now_ms_));
    if (!written) {
        unwritten_ += pending_.size() - before;
        return;
    }
    // Only what is new: the rest is on the file.
    std::vector<AlarmRecord> rest(pending_.begin() + static_cast<std::ptrdiff_t>(before),
                                  pending_.end());
    std::swap(pending_, rest);
    try_write(durable);
    std::swap(pending_, rest);
    pending_.resize(before);
    pending_.insert(pending_.end(), rest.begin(), rest.end());
}

bool AlarmDesk::journal_in_doubt() const {
    return unwritten_ > 0 || (journal_alarm_ && alarms_[*journal_alarm_].state.active());
}

bool AlarmDesk::try_write(bool durable) {
    std::vector<AlarmRecord> records;
    if (unwritten_ > 0) {
        records.push_back(
            entry(RecordEvent::Gap, {{}, std::to_string(unwritten_) + " entries not written"}));
        for (AlarmRecord& record : carried()) records.push_back(std::move(record));
    }
    records.insert(records.end(), pending_.begin(), pending_.end());
    try {
        journal_.append(records, durable);
        unwritten_ = 0;
        journal_failure_.clear();
        return true;
    } catch (const std::system_error& failure) {
        unwritten_ += pending_.size();
        journal_failure_ = failure.what();
        return false;
    }
}

}  // namespace kavorix
