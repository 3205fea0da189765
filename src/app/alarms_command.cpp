// The commands alarms check, alarms list and alarms history.

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <ostream>
#include <system_error>

#include "alarms/alarm_journal.h"
#include "alarms/alarm_measures.h"
#include "alarms/rules_file.h"
#include "app/command_line.h"
#include "app/config_loading.h"
#include "app/network.h"
#include "app/text_table.h"
#include "base/numbers.h"
#include "base/text.h"

namespace kavorix {

namespace {

using Row = std::vector<std::string>;

struct CheckOptions {
    std::string file;
    std::string config;
};

struct HistoryOptions {
    std::string from;
    std::string to;
    bool measures = false;
    bool csv = false;
};

int check(const CommandLine& line, const CheckOptions& options) {
    const auto files = make_host_files();
    LoadedRules loaded;
    try {
        loaded = load_rules(*files, options.file);
    } catch (const std::system_error& failure) {
        throw UnusableInput{failure.what()};
    }
    for (const std::string& error : loaded.errors) line.with.out << error << "\n";
    if (!loaded.errors.empty()) return ExitFailed;
    if (options.config.empty()) return ExitDone;
    const LoadedConfig config = load_config_or_explain(line, *files, options.config);
    if (config.outcome != LoadOutcome::Loaded) return ExitFailed;
    const auto problems = check_rules(config.configuration->ZavConfig, loaded.rules);
    for (const RuleProblem& problem : problems)
        line.with.out << options.file << ":" << problem.line << ": " << problem.message << "\n";
    return problems.empty() ? ExitDone : ExitFailed;
}

// The journal of the program directory. Throws UnusableInput without one.
JournalContents load_journal(const CommandLine& line) {
    const auto files = make_host_files();
    JournalPlace place;
    place.directory = line.common.directory.empty() ? default_directory() : line.common.directory;
    JournalContents contents;
    try {
        contents = read_journal(*files, place, place.files);
    } catch (const std::system_error& failure) {
        throw UnusableInput{failure.what()};
    }
    if (contents.records.empty() && contents.damage.empty())
        throw UnusableInput{"There is no alarm journal in " + place.directory};
    for (const std::string& damage : contents.damage) line.with.messages << damage << "\n";
    return contents;
}

int finished(const CommandLine& line, const JournalContents& contents) {
    line.with.out.flush();
    return contents.damage.empty() && line.with.out ? ExitDone : ExitFailed;
}

std::string time_of(std::int64_t utc_ms, int offset_min) {
    constexpr std::size_t ToSeconds = 19;
    std::string text = local_text(utc_ms, offset_min).substr(0, ToSeconds);
    text[10] = ' ';
    return text;
}

std::string value_of(const AlarmRecord& record) {
    const LimitOf limit = alarm_kind(record.rule.kind).limit;
    if (limit == LimitOf::Nothing || std::isnan(record.value)) return {};
    const std::string value = general(record.value);
    return limit == LimitOf::Value ? value + " " + record.rule.unit : value;
}

std::string limit_of(const AlarmRecord& record) {
    return alarm_kind(record.rule.kind).limit == LimitOf::Nothing
               ? std::string()
               : general(static_cast<float>(record.rule.limit));
}

std::string shelf_of(const AlarmRecord& record) {
    if (record.shelf_utc_ms == NotShelved) return {};
    return record.shelf_utc_ms == OneShotShelf ? "one occurrence"
                                               : time_of(record.shelf_utc_ms, record.offset_min);
}

int list(const CommandLine& line) {
    const JournalContents contents = load_journal(line);
    std::map<std::string, const AlarmRecord*> last;
    for (const AlarmRecord& record : contents.records)
        if (record.of_alarm) last[alarm_id(record.rule)] = &record;
    std::vector<const AlarmRecord*> listed;
    for (const auto& [id, record] : last)
        if (!record->after.idle()) listed.push_back(record);
    const auto place = [](const AlarmRecord* of) {
        return list_place(of->after, of->rule.severity, of->since_utc_ms, of->occurrence);
    };
    std::sort(listed.begin(), listed.end(),
              [&](const auto* a, const auto* b) { return place(a) < place(b); });
    std::vector<Row> rows = {{"Severity", "State", "Since", "Alarm", "Label", "Value", "Limit",
                              "Shelved until", "Comment"}};
    for (const AlarmRecord* of : listed)
        rows.push_back({std::to_string(of->rule.severity), state_name(of->after),
                        of->since_utc_ms == 0 ? "" : time_of(of->since_utc_ms, of->offset_min),
                        alarm_id(of->rule), of->rule.label, value_of(*of), limit_of(*of),
                        shelf_of(*of), of->comment});
    if (!listed.empty()) print_table(rows, line.with.out);
    return finished(line, contents);
}

// Local times are those of the journal: the offset is that of the first entry not before them.
std::optional<std::int64_t> moment(const std::string& text,
                                   const std::vector<AlarmRecord>& records) {
    if (text.empty()) return std::nullopt;
    const auto as_local = parse_time(text, 0);
    if (!as_local)
        throw UnusableInput{"\"" + text +
                            "\" is no moment such as 2026-11-23 or \"2026-11-23 22:00\""};
    const auto offset_ms = [](const AlarmRecord& record) { return record.offset_min * 60000LL; };
    const auto found = std::find_if(records.begin(), records.end(), [&](const AlarmRecord& record) {
        return record.utc_ms + offset_ms(record) >= *as_local;
    });
    const int offset = records.empty()          ? 0
                       : found == records.end() ? records.back().offset_min
                                                : found->offset_min;
    return parse_time(text, offset);
}

std::string quoted(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
    std::string result = "\"";
    for (const char c : text) (c == '"' ? result += "\"\"" : result += c);
    return result + "\"";
}

// The fields of the journal, set apart by commas.
void print_csv(const std::vector<const AlarmRecord*>& records, std::ostream& out) {
    const auto print = [&out](std::string_view fields) {
        fields.remove_suffix(fields.size() - fields.rfind('\t'));  // the check sum
        std::string text;
        while (true) {
            const auto end = fields.find('\t');
            text += quoted(fields.substr(0, end));
            if (end == std::string_view::npos) break;
            text += ',';
            fields.remove_prefix(end + 1);
        }
        out << to_utf8(text) << "\n";
    };
    print(journal_heading());
    for (const AlarmRecord* record : records) print(journal_line(*record));
}

void print_history(const std::vector<const AlarmRecord*>& records, std::ostream& out) {
    std::vector<Row> rows = {
        {"Time", "Event", "Alarm", "Label", "Severity", "State", "Value", "Who", "Comment"}};
    for (const AlarmRecord* of : records) {
        Row row = {time_of(of->utc_ms, of->offset_min), std::string(event_name(of->event))};
        if (of->of_alarm)
            row.insert(row.end(),
                       {alarm_id(of->rule), of->rule.label, std::to_string(of->rule.severity),
                        state_name(of->after), value_of(*of)});
        else
            row.resize(7);
        row.push_back(of->who);
        row.push_back(of->comment);
        rows.push_back(std::move(row));
    }
    if (!records.empty()) print_table(rows, out);
}

std::string percent(double share) {
    return fixed(share * 100, 1) + " %";
}

void print_frequent(const char* title, const std::vector<AlarmMeasures::Frequent>& list,
                    std::ostream& out) {
    if (list.empty()) return;
    out << "\n" << title << "\n";
    std::vector<Row> rows;
    for (const auto& of : list) rows.push_back({std::to_string(of.count), of.id, of.label});
    print_table(rows, out);
}

void print_measures(const AlarmMeasures& of, int offset_min, std::ostream& out) {
    const auto time = [&](std::int64_t utc_ms) { return time_of(utc_ms, offset_min); };
    std::size_t of_ten = 0;
    for (const auto& frequent : of.most_frequent) of_ten += frequent.count;
    std::vector<Row> rows = {
        {"From", time(of.from_utc_ms)},
        {"To", time(of.to_utc_ms)},
        {"Alarms", std::to_string(of.annunciated)},
        {"Alarms a day", fixed(of.per_day(), 1)},
        {"Alarms an hour", fixed(of.per_hour(), 2)},
        {"Alarms in 10 minutes", fixed(of.per_10_min(), 2)},
        {"Most in an hour", std::to_string(of.most_in_an_hour)},
        {"Most in 10 minutes", std::to_string(of.most_in_10_min)},
        {"Hours with more than 30", percent(of.hours_above_30)},
        {"10-minute periods with more than 10", percent(of.periods_above_10)},
        {"Time in flood", percent(of.time_in_flood)},
        {"Share of the ten most frequent",
         percent(of.annunciated == 0
                     ? 0
                     : static_cast<double>(of_ten) / static_cast<double>(of.annunciated))}};
    for (int severity = HighestSeverity; severity >= LowestSeverity; --severity)
        rows.push_back({"Severity " + std::to_string(severity),
                        std::to_string(of.by_severity[static_cast<std::size_t>(severity)])});
    print_table(rows, out);
    if (!of.floods.empty()) out << "\nFloods\n";
    rows.clear();
    for (const AlarmFlood& flood : of.floods)
        rows.push_back({time(flood.begin_utc_ms), "to " + time(flood.end_utc_ms),
                        std::to_string(flood.count) + " alarms",
                        "at most " + std::to_string(flood.peak) + " in 10 minutes"});
    print_table(rows, out);
    print_frequent("Most frequent", of.most_frequent, out);
    print_frequent("Chattering", of.chattering, out);
    if (!of.stale.empty()) out << "\nActive for more than a day\n";
    rows.clear();
    for (const auto& standing : of.stale)
        rows.push_back(
            {standing.id, time(standing.since_utc_ms), "to " + time(standing.until_utc_ms)});
    print_table(rows, out);
}

int history(const CommandLine& line, const HistoryOptions& options) {
    const JournalContents contents = load_journal(line);
    const auto from = moment(options.from, contents.records);
    const auto to = moment(options.to, contents.records);
    if (options.measures) {
        const int offset = contents.records.empty() ? 0 : contents.records.back().offset_min;
        print_measures(measure_alarms(contents.records, from, to), offset, line.with.out);
        return finished(line, contents);
    }
    std::vector<const AlarmRecord*> records;
    for (const AlarmRecord& record : contents.records)
        if (record.event != RecordEvent::Carried && record.utc_ms >= from.value_or(record.utc_ms) &&
            record.utc_ms < to.value_or(record.utc_ms + 1))
            records.push_back(&record);
    if (options.csv)
        print_csv(records, line.with.out);
    else
        print_history(records, line.with.out);
    return finished(line, contents);
}

void add_check_rules(const CommandLine& line, CLI::App& alarms) {
    CLI::App* command = alarms.add_subcommand("check", "Check an alarm file");
    const auto options = std::make_shared<CheckOptions>();
    command->add_option("file", options->file, "Alarm file")
        ->type_name("FILE.alarms.toml")
        ->required();
    command
        ->add_option("--config", options->config,
                     "Check it against the channels and limits of this configuration, too")
        ->type_name("FILE.CFG");
    command->callback([=] { line.action = [=] { return check(line, *options); }; });
}

void add_history(const CommandLine& line, CLI::App& alarms) {
    CLI::App* command = alarms.add_subcommand("history", "Print what happened to the alarms");
    const auto options = std::make_shared<HistoryOptions>();
    command->add_option("--from", options->from, "From this day or moment on")->type_name("T");
    command->add_option("--to", options->to, "Up to before this day or moment")->type_name("T");
    CLI::Option* measures =
        command->add_flag("--measures", options->measures, "How many, how dense, and which ones");
    command->add_flag("--csv", options->csv, "All fields of the journal, set apart by commas")
        ->excludes(measures);
    command->callback([=] { line.action = [=] { return history(line, *options); }; });
}

}  // namespace

void add_alarms(const CommandLine& line) {
    CLI::App* alarms =
        line.app.add_subcommand("alarms", "Check alarm files; print alarms and their history");
    alarms->require_subcommand(1);
    alarms->fallthrough();
    add_check_rules(line, *alarms);
    CLI::App* command = alarms->add_subcommand(
        "list", "Print the alarms that are in a state, as the journal has them");
    command->callback([=] { line.action = [=] { return list(line); }; });
    add_history(line, *alarms);
}

}  // namespace kavorix
