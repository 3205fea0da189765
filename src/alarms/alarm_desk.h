#pragma once

// The alarms of a station: readings go in, transitions come out, the operator acts in between, and
// the journal has each transition before anyone is told of it. Asks no clock; every call says when
// it happens.

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "alarms/alarm_engine.h"
#include "alarms/alarm_journal.h"
#include "alarms/alarm_record.h"

namespace kavorix {

struct Alarm {
    AlarmRule rule;
    std::string id;
    AlarmState state;
    float value = std::numeric_limits<float>::quiet_NaN();  // that made its condition come or go
    std::uint64_t occurrence = 0;                           // see AlarmRecord
    std::int64_t since_utc_ms = 0;  // when its condition last came; 0: never
    std::int64_t shelf_utc_ms = NotShelved;
    std::string comment;  // of the last who acted on it

    // Ends of its shelf and of its rest after it was acknowledged, on the desk's own count.
    std::int64_t shelf_end_ms = 0;
    std::int64_t realarm_ms = 0;
    bool silenced = false;
};

enum class AlarmList { Active, Shelved, Suppressed, OutOfService };

struct OperatorNote {
    std::string who;
    std::string comment;  // the reason where one is needed
};

// Whether an operator's wish was carried out; `reason` says why not.
struct AlarmAnswer {
    bool done = true;
    std::string reason;
};

inline constexpr std::int64_t LongestShelf_ms = 7LL * 24 * 60 * 60 * 1000;

class AlarmDesk {
  public:
    // Reads the journal; what it restores waits for the rules. A journal that cannot be read or
    // written is an alarm, no exception. `files` outlives this.
    AlarmDesk(Files& files, JournalPlace place, AlarmMoment now);

    // The rules of the station from now on (station_rules()). Alarms whose condition is the same
    // keep their state; others end, with the reason in the journal.
    void set_rules(std::vector<AlarmRule> rules, AlarmMoment now);

    // Called with each transition once it is on the journal (or the journal has failed), in order.
    void on_transition(std::function<void(const AlarmRecord&)> listener);

    // What happens at the station; pods are indices. See AlarmEngine. A call that leads to no
    // transition does not allocate. tick() is to come at least once a second.
    void reading(int pod, std::span<const float> values, std::span<const std::int16_t> codes,
                 AlarmMoment now);
    void pod_lost(int pod, AlarmMoment now);
    void pod_back(int pod, AlarmMoment now);
    void pod_idle(int pod, AlarmMoment now);
    void tick(AlarmMoment now);
    // LogFailing or DiskFilling.
    void station(AlarmKind kind, bool holds, AlarmMoment now);
    void stop(AlarmMoment now);

    // What the operator does; alarms are named by their id.
    AlarmAnswer acknowledge(std::string_view id, const OperatorNote& note, AlarmMoment now);
    // Those of a page: every one that can be is acknowledged, with one entry to wait for; the
    // answer is the first refusal.
    AlarmAnswer acknowledge_page(const std::vector<std::string>& ids, const OperatorNote& note,
                                 AlarmMoment now);
    AlarmAnswer reset(std::string_view id, const OperatorNote& note, AlarmMoment now);
    // Until a moment at most LongestShelf_ms ahead, or OneShotShelf. The end counts on ticks: a
    // clock that is set does not move it. A reason is needed.
    AlarmAnswer shelve(std::string_view id, std::int64_t until_utc_ms, const OperatorNote& note,
                       AlarmMoment now);
    AlarmAnswer unshelve(std::string_view id, const OperatorNote& note, AlarmMoment now);
    AlarmAnswer take_out(std::string_view id, const OperatorNote& note, AlarmMoment now);
    AlarmAnswer put_back(std::string_view id, const OperatorNote& note, AlarmMoment now);

    // The severity that sounds, 0 for silence; ends the sound without acknowledging anything.
    int horn() const { return horn_; }
    void silence(const OperatorNote& note, AlarmMoment now);

    const std::vector<Alarm>& alarms() const { return alarms_; }
    const Alarm* find(std::string_view id) const;
    // Unseen ones first, then the highest severity, then the newest. Valid until the next call that
    // is no const.
    std::vector<const Alarm*> list(AlarmList which) const;
    // Rises with everything that changes what the lists show.
    std::uint64_t version() const { return version_; }
    // What is left of a shelf with an end.
    std::int64_t shelf_left_ms(const Alarm& alarm) const;
    // The last valid reading of the alarm's channel (NaN without), and whether that is not what the
    // pod said last.
    float value_now(const Alarm& alarm) const;
    bool unknown(const Alarm& alarm) const;
    // Why the journal cannot be written; empty when it can.
    const std::string& journal_failure() const { return journal_failure_; }
    // What the journal had that was damaged when it was read.
    const std::vector<std::string>& journal_damage() const { return journal_damage_; }

  private:
    struct PodState {
        std::vector<std::size_t> alarms;  // but "lost"
        std::optional<std::size_t> lost;
        bool suppressed = false;
        bool answered = false;  // since it was lost
    };

    void begin_call(AlarmMoment now);
    void end_call(bool durable = false);
    void restore(Files& files, const JournalPlace& place);
    Alarm take_over(AlarmRule rule, std::map<std::string, Alarm>& before);
    void restore_into(Alarm& alarm);
    void end_orphans();
    void index_alarms();
    void take_changes(std::span<const ConditionChange> changes);
    AlarmStep apply(std::size_t index, AlarmEvent event, RecordEvent as, const OperatorNote& note);
    AlarmAnswer act(std::string_view id, AlarmEvent event, RecordEvent as, const OperatorNote& note,
                    AlarmMoment now);
    AlarmAnswer act_on(std::string_view id, AlarmEvent event, RecordEvent as,
                       const OperatorNote& note);
    void after(Alarm& alarm, AlarmEvent event);
    void end_one_shot(std::size_t index);
    void align_suppression(PodState& pod);
    void suppress_with_its_pod(std::size_t index);
    void pass_deadlines();
    void add_deadline(std::int64_t at_ms);
    void record(const Alarm& alarm, RecordEvent event, AlarmState before, const OperatorNote& note);
    AlarmRecord entry(RecordEvent event, const OperatorNote& note);
    AlarmRecord entry_of(const Alarm& alarm, RecordEvent event, AlarmState before,
                         const OperatorNote& note);
    std::vector<AlarmRecord> carried();
    void write(bool durable);
    bool try_write(bool durable);
    bool journal_in_doubt() const;
    void sound();

    AlarmEngine engine_;
    AlarmJournal journal_;
    std::vector<Alarm> alarms_;
    std::map<std::string, std::size_t, std::less<>> by_id_;
    std::array<PodState, MaxZavs> pods_;
    std::optional<std::size_t> journal_alarm_;     // index of "journal-unwritable"
    std::map<std::string, AlarmRecord> restored_;  // that no rule has asked for yet
    std::vector<std::function<void(const AlarmRecord&)>> listeners_;
    std::vector<AlarmRecord> pending_;  // to be written and told

    AlarmMoment now_;
    std::int64_t now_ms_ = 0;  // ticks without their wrapping
    std::int64_t next_deadline_ms_ = INT64_MAX;
    std::int64_t next_try_ms_ = 0;
    std::uint64_t next_number_ = 1;
    std::uint64_t unwritten_ = 0;
    std::uint64_t version_ = 0;
    int horn_ = 0;
    std::string journal_failure_;
    std::vector<std::string> journal_damage_;
};

}  // namespace kavorix
