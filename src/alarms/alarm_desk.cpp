#include "alarms/alarm_desk.h"

#include <algorithm>
#include <utility>

namespace kavorix {

AlarmDesk::AlarmDesk(Files& files, JournalPlace place, AlarmMoment now)
    : journal_(files, place, [this] { return carried(); }), now_(now) {
    restore(files, place);
    pending_.push_back(entry(RecordEvent::Start, {}));
    for (AlarmRecord& record : carried()) pending_.push_back(std::move(record));
    end_call(true);
}

void AlarmDesk::begin_call(AlarmMoment now) {
    now_ms_ += static_cast<std::uint32_t>(now.tick_ms - now_.tick_ms);
    now_ = now;
}

void AlarmDesk::end_call(bool durable) {
    if (pending_.empty()) return;
    ++version_;
    write(durable);
    sound();
    const std::vector<AlarmRecord> told = std::exchange(pending_, {});
    for (const AlarmRecord& record : told)
        for (const auto& listener : listeners_) listener(record);
}

// Rules

void AlarmDesk::set_rules(std::vector<AlarmRule> rules, AlarmMoment now) {
    begin_call(now);
    std::map<std::string, Alarm> before;
    for (Alarm& alarm : alarms_) before.emplace(alarm.id, std::move(alarm));
    alarms_.clear();
    for (AlarmRule& rule : rules) alarms_.push_back(take_over(std::move(rule), before));
    for (auto& [id, alarm] : before) {
        if (alarm.state.idle()) continue;
        const AlarmState was = std::exchange(alarm.state, AlarmState{});
        record(alarm, RecordEvent::RuleRemoved, was, {});
    }
    end_orphans();
    ++version_;
    index_alarms();
    end_call();
}

// The alarm of a rule with the state that its predecessor, or the journal, leaves it.
Alarm AlarmDesk::take_over(AlarmRule rule, std::map<std::string, Alarm>& before) {
    Alarm alarm;
    alarm.id = alarm_id(rule);
    alarm.rule = std::move(rule);
    const auto found = before.find(alarm.id);
    if (found == before.end()) {
        restore_into(alarm);
        return alarm;
    }
    Alarm old = std::move(found->second);
    before.erase(found);
    const bool same = same_condition(old.rule, alarm.rule);
    old.rule = std::move(alarm.rule);
    const AlarmState was = old.state;
    if (!same) old.state.life = AlarmLife::Normal;
    if (!(was == old.state)) record(old, RecordEvent::RuleChanged, was, {});
    return old;
}

void AlarmDesk::index_alarms() {
    by_id_.clear();
    journal_alarm_.reset();
    for (PodState& pod : pods_) {
        pod.alarms.clear();
        pod.lost.reset();
        pod.suppressed = false;
    }
    std::vector<AlarmRule> rules;
    std::vector<bool> active;
    next_deadline_ms_ = INT64_MAX;
    for (std::size_t i = 0; i < alarms_.size(); ++i) {
        const Alarm& alarm = alarms_[i];
        by_id_.emplace(alarm.id, i);
        rules.push_back(alarm.rule);
        active.push_back(alarm.state.active());
        if (alarm.shelf_utc_ms > 0) add_deadline(alarm.shelf_end_ms);
        if (alarm.realarm_ms > 0) add_deadline(alarm.realarm_ms);
        if (alarm.rule.kind == AlarmKind::JournalUnwritable) journal_alarm_ = i;
        if (alarm.rule.pod == 0) continue;
        PodState& pod = pods_[static_cast<std::size_t>(alarm.rule.pod - 1)];
        if (alarm.rule.kind == AlarmKind::Lost)
            pod.lost = i;
        else
            pod.alarms.push_back(i);
        if ((alarm.state.withheld & Suppressed) != 0) pod.suppressed = true;
    }
    engine_.set_rules(rules, active);
    for (PodState& pod : pods_) align_suppression(pod);
    sound();
}

// What happens at the station

void AlarmDesk::reading(int pod, std::span<const float> values, std::span<const std::int16_t> codes,
                        AlarmMoment now) {
    begin_call(now);
    take_changes(engine_.reading(pod, values, codes, now_ms_));
    PodState& of = pods_[static_cast<std::size_t>(pod)];
    of.answered = true;
    if (of.suppressed) align_suppression(of);
    end_call();
}

void AlarmDesk::pod_lost(int pod, AlarmMoment now) {
    begin_call(now);
    pods_[static_cast<std::size_t>(pod)].answered = false;
    take_changes(engine_.pod_lost(pod, now_ms_));
    end_call();
}

void AlarmDesk::pod_back(int pod, AlarmMoment now) {
    begin_call(now);
    take_changes(engine_.pod_back(pod, now_ms_));
    end_call();
}

void AlarmDesk::pod_idle(int pod, AlarmMoment now) {
    begin_call(now);
    engine_.pod_idle(pod);
    PodState& of = pods_[static_cast<std::size_t>(pod)];
    of.answered = !engine_.is_lost(pod);
    if (of.suppressed) align_suppression(of);
    end_call();
}

void AlarmDesk::tick(AlarmMoment now) {
    constexpr std::int64_t Pause_ms = 10000;
    begin_call(now);
    take_changes(engine_.tick(now_ms_));
    if (now_ms_ >= next_deadline_ms_) pass_deadlines();
    if (journal_in_doubt() && pending_.empty() && now_ms_ >= next_try_ms_) {
        next_try_ms_ = now_ms_ + Pause_ms;
        write(false);
    }
    end_call();
}

void AlarmDesk::station(AlarmKind kind, bool holds, AlarmMoment now) {
    begin_call(now);
    if (const auto found = by_id_.find(alarm_kind(kind).name); found != by_id_.end())
        take_changes(engine_.station(found->second, holds, now_ms_));
    end_call();
}

void AlarmDesk::stop(AlarmMoment now) {
    begin_call(now);
    pending_.push_back(entry(RecordEvent::Stop, {}));
    end_call(true);
}

// A lost pod suppresses its other alarms: their own changes of the same call come first.
void AlarmDesk::take_changes(std::span<const ConditionChange> changes) {
    for (const ConditionChange& change : changes) {
        Alarm& alarm = alarms_[change.alarm];
        alarm.value = change.value;
        if (change.active) {
            suppress_with_its_pod(change.alarm);
            alarm.occurrence = next_number_;
            alarm.since_utc_ms = now_.utc_ms;
        }
        apply(change.alarm, change.active ? AlarmEvent::Comes : AlarmEvent::Goes,
              change.active ? RecordEvent::Comes : RecordEvent::Goes, {});
        if (!change.active) end_one_shot(change.alarm);
        if (alarm.rule.kind == AlarmKind::Lost)
            align_suppression(pods_[static_cast<std::size_t>(alarm.rule.pod - 1)]);
    }
}

// Once suppressed, a pod's alarms wait for its first reading, so that none comes from what was true
// before it was lost. Those that have returned and wait to be seen stay: they tell what was, and
// the end of suppressing would make them normal.
void AlarmDesk::align_suppression(PodState& pod) {
    const bool lost = pod.lost && alarms_[*pod.lost].state.active();
    pod.suppressed = lost || (pod.suppressed && !pod.answered);
    for (const std::size_t index : pod.alarms) {
        const AlarmState state = alarms_[index].state;
        if (pod.suppressed && state.life != AlarmLife::Returned)
            suppress_with_its_pod(index);
        else if (!pod.suppressed && (state.withheld & Suppressed) != 0)
            apply(index, AlarmEvent::Unsuppress, RecordEvent::Unsuppressed, {});
    }
}

void AlarmDesk::suppress_with_its_pod(std::size_t index) {
    const Alarm& alarm = alarms_[index];
    if (alarm.rule.pod == 0 || alarm.rule.kind == AlarmKind::Lost) return;
    const PodState& pod = pods_[static_cast<std::size_t>(alarm.rule.pod - 1)];
    if (pod.suppressed && (alarm.state.withheld & Suppressed) == 0)
        apply(index, AlarmEvent::Suppress, RecordEvent::Suppressed, {});
}

void AlarmDesk::add_deadline(std::int64_t at_ms) {
    next_deadline_ms_ = std::min(next_deadline_ms_, at_ms);
}

void AlarmDesk::pass_deadlines() {
    next_deadline_ms_ = INT64_MAX;
    for (std::size_t i = 0; i < alarms_.size(); ++i) {
        Alarm& alarm = alarms_[i];
        if (alarm.shelf_utc_ms > 0) {
            if (now_ms_ >= alarm.shelf_end_ms)
                apply(i, AlarmEvent::Unshelve, RecordEvent::ShelfEnded, {});
            else
                add_deadline(alarm.shelf_end_ms);
        }
        if (alarm.realarm_ms > 0) {
            if (now_ms_ >= alarm.realarm_ms) {
                alarm.realarm_ms = 0;
                apply(i, AlarmEvent::ReAlarm, RecordEvent::ReAlarmed, {});
            } else {
                add_deadline(alarm.realarm_ms);
            }
        }
    }
}

void AlarmDesk::end_one_shot(std::size_t index) {
    if (alarms_[index].shelf_utc_ms == OneShotShelf)
        apply(index, AlarmEvent::Unshelve, RecordEvent::ShelfEnded, {});
}

// One step of one alarm. Alarms that are normal are suppressed with their pod without a word.
AlarmStep AlarmDesk::apply(std::size_t index, AlarmEvent event, RecordEvent as,
                           const OperatorNote& note) {
    Alarm& alarm = alarms_[index];
    const AlarmStep step = alarm_step(alarm.state, event, alarm.rule.on_return());
    if (!step.changed) return step;
    const AlarmState before = std::exchange(alarm.state, step.next);
    after(alarm, event);
    if (step.horn) alarm.silenced = false;
    if (!note.who.empty() || !note.comment.empty()) alarm.comment = note.comment;
    const bool by_design = event == AlarmEvent::Suppress || event == AlarmEvent::Unsuppress;
    if (by_design && before.life == AlarmLife::Normal)
        ++version_;
    else
        record(alarm, as, before, note);
    return step;
}

void AlarmDesk::after(Alarm& alarm, AlarmEvent event) {
    if (event == AlarmEvent::Unshelve) alarm.shelf_utc_ms = NotShelved;
    if (event == AlarmEvent::Acknowledge && alarm.rule.realarm_s > 0 && alarm.state.active()) {
        alarm.realarm_ms = now_ms_ + rule_ms(alarm.rule.realarm_s);
        add_deadline(alarm.realarm_ms);
    }
    if (alarm.state.life != AlarmLife::Acknowledged) alarm.realarm_ms = 0;
}

// The operator

AlarmAnswer AlarmDesk::act_on(std::string_view id, AlarmEvent event, RecordEvent as,
                              const OperatorNote& note) {
    const auto found = by_id_.find(id);
    if (found == by_id_.end()) return {false, "there is no alarm \"" + std::string(id) + "\""};
    const AlarmStep step = apply(found->second, event, as, note);
    return {step.refused.empty(), std::string(step.refused)};
}

AlarmAnswer AlarmDesk::act(std::string_view id, AlarmEvent event, RecordEvent as,
                           const OperatorNote& note, AlarmMoment now) {
    begin_call(now);
    AlarmAnswer answer = act_on(id, event, as, note);
    end_call(true);
    return answer;
}

AlarmAnswer AlarmDesk::acknowledge_page(const std::vector<std::string>& ids,
                                        const OperatorNote& note, AlarmMoment now) {
    begin_call(now);
    AlarmAnswer answer;
    for (const std::string& id : ids)
        if (AlarmAnswer one = act_on(id, AlarmEvent::Acknowledge, RecordEvent::Acknowledged, note);
            answer.done)
            answer = std::move(one);
    end_call(true);
    return answer;
}

AlarmAnswer AlarmDesk::acknowledge(std::string_view id, const OperatorNote& note, AlarmMoment now) {
    return act(id, AlarmEvent::Acknowledge, RecordEvent::Acknowledged, note, now);
}

AlarmAnswer AlarmDesk::reset(std::string_view id, const OperatorNote& note, AlarmMoment now) {
    return act(id, AlarmEvent::Reset, RecordEvent::Reset, note, now);
}

AlarmAnswer AlarmDesk::shelve(std::string_view id, std::int64_t until_utc_ms,
                              const OperatorNote& note, AlarmMoment now) {
    if (note.comment.empty()) return {false, "shelving needs a reason"};
    const bool one_shot = until_utc_ms == OneShotShelf;
    const std::int64_t length = until_utc_ms - now.utc_ms;
    if (!one_shot && (length <= 0 || length > LongestShelf_ms))
        return {false, "an alarm is shelved until a moment within the next 7 days"};
    if (const auto found = by_id_.find(id); found != by_id_.end()) {
        begin_call(now);
        Alarm& alarm = alarms_[found->second];
        alarm.shelf_utc_ms = until_utc_ms;
        alarm.shelf_end_ms = now_ms_ + length;
        if (!one_shot) add_deadline(alarm.shelf_end_ms);
    }
    return act(id, AlarmEvent::Shelve, RecordEvent::Shelved, note, now);
}

AlarmAnswer AlarmDesk::unshelve(std::string_view id, const OperatorNote& note, AlarmMoment now) {
    return act(id, AlarmEvent::Unshelve, RecordEvent::Unshelved, note, now);
}

AlarmAnswer AlarmDesk::take_out(std::string_view id, const OperatorNote& note, AlarmMoment now) {
    if (note.comment.empty()) return {false, "taking an alarm out of service needs a reason"};
    return act(id, AlarmEvent::TakeOut, RecordEvent::TakenOut, note, now);
}

AlarmAnswer AlarmDesk::put_back(std::string_view id, const OperatorNote& note, AlarmMoment now) {
    return act(id, AlarmEvent::PutBack, RecordEvent::PutBack, note, now);
}

void AlarmDesk::silence(const OperatorNote& note, AlarmMoment now) {
    if (horn_ == 0) return;
    begin_call(now);
    for (Alarm& alarm : alarms_) alarm.silenced = true;
    pending_.push_back(entry(RecordEvent::Silenced, note));
    end_call(true);
}

void AlarmDesk::sound() {
    horn_ = 0;
    for (const Alarm& alarm : alarms_)
        if (alarm.state.loud() && !alarm.silenced) horn_ = std::max(horn_, alarm.rule.severity);
}

// What there is

void AlarmDesk::on_transition(std::function<void(const AlarmRecord&)> listener) {
    listeners_.push_back(std::move(listener));
}

const Alarm* AlarmDesk::find(std::string_view id) const {
    const auto found = by_id_.find(id);
    return found == by_id_.end() ? nullptr : &alarms_[found->second];
}

std::vector<const Alarm*> AlarmDesk::list(AlarmList which) const {
    const auto belongs = [which](const AlarmState& state) {
        switch (which) {
            case AlarmList::Shelved:
                return (state.withheld & Shelved) != 0;
            case AlarmList::Suppressed:
                return (state.withheld & Suppressed) != 0;
            case AlarmList::OutOfService:
                return (state.withheld & OutOfService) != 0;
            default:
                return state.withheld == NotWithheld && state.life != AlarmLife::Normal;
        }
    };
    std::vector<const Alarm*> listed;
    for (const Alarm& alarm : alarms_)
        if (belongs(alarm.state)) listed.push_back(&alarm);
    const auto place = [](const Alarm* of) {
        return list_place(of->state, of->rule.severity, of->since_utc_ms, of->occurrence);
    };
    std::sort(listed.begin(), listed.end(),
              [&](const Alarm* a, const Alarm* b) { return place(a) < place(b); });
    return listed;
}

std::int64_t AlarmDesk::shelf_left_ms(const Alarm& alarm) const {
    return alarm.shelf_utc_ms > 0 ? std::max<std::int64_t>(alarm.shelf_end_ms - now_ms_, 0) : 0;
}

float AlarmDesk::value_now(const Alarm& alarm) const {
    return alarm.rule.channel == 0 ? std::numeric_limits<float>::quiet_NaN()
                                   : engine_.last_value(alarm.rule.pod, alarm.rule.channel);
}

bool AlarmDesk::unknown(const Alarm& alarm) const {
    return alarm.rule.channel != 0 && engine_.unknown(alarm.rule.pod, alarm.rule.channel);
}

}  // namespace kavorix
