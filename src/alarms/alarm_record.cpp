#include "alarms/alarm_record.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "alarms/check_sum.h"
#include "base/dates.h"
#include "base/numbers.h"
#include "base/text.h"

namespace kavorix {

namespace {

constexpr std::array<std::string_view, 19> EventNames = {
    "start",        "stop",         "comes",     "goes",      "acknowledged",
    "reset",        "re-alarmed",   "shelved",   "unshelved", "shelf-ended",
    "suppressed",   "unsuppressed", "taken-out", "put-back",  "rule-changed",
    "rule-removed", "carried",      "silenced",  "gap"};
static_assert(EventNames[static_cast<std::size_t>(RecordEvent::Gap)] == "gap");

constexpr std::string_view Heading =
    "number\tutc\tlocal\tevent\talarm\tpod\tchannel\tlabel\tkind\tseverity\tbefore\tafter\tvalue\t"
    "unit\tlimit\thysteresis\ton_delay_s\toff_delay_s\tlatch\toccurrence\tsince\tshelved_"
    "until\twho\t"
    "comment\tcheck";
constexpr std::size_t Fields = 25;
constexpr std::string_view OneShot = "one-shot";

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) switch (c) {
            case '\t':
                result += "\\t";
                break;
            case '\n':
                result += "\\n";
                break;
            case '\r':
                result += "\\r";
                break;
            case '\\':
                result += "\\\\";
                break;
            default:
                result += c;
        }
    return result;
}

std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            result += text[i];
            continue;
        }
        const char c = text[++i];
        result += c == 't' ? '\t' : c == 'n' ? '\n' : c == 'r' ? '\r' : c;
    }
    return result;
}

template <class Number>
bool read_from(std::string_view text, Number& value) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

// The shortest text that gives the same single again; nothing for what is no number.
std::string single_text(float value) {
    if (!std::isfinite(value)) return {};
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

bool read_single(std::string_view text, float& value) {
    value = std::numeric_limits<float>::quiet_NaN();
    return text.empty() || read_from(text, value);
}

bool read_time(std::string_view text, std::int64_t& value) {
    const auto read = parse_time(text, 0);
    value = read.value_or(0);
    return read.has_value() || text.empty();
}

template <class Value, class Names>
bool read_name(std::string_view text, Value& value, const Names& names) {
    const auto found = std::find(names.begin(), names.end(), text);
    value = static_cast<Value>(found - names.begin());
    return found != names.end();
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (true) {
        const auto end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

std::string time_or_nothing(std::int64_t utc_ms) {
    return utc_ms == 0 ? std::string() : utc_text(utc_ms);
}

std::string shelf_text(std::int64_t shelf) {
    return shelf == OneShotShelf ? std::string(OneShot) : time_or_nothing(shelf);
}

WallTime wall_time_of(std::int64_t ms) {
    return add_milliseconds(WallTime{}, ms);
}

constexpr auto KindNames = [] {
    std::array<std::string_view, AlarmKinds.size()> names;
    for (std::size_t i = 0; i < names.size(); ++i) names[i] = AlarmKinds[i].name;
    return names;
}();

// The fields of an alarm; the rest of the entries leave them empty.
bool read_alarm(const std::vector<std::string_view>& fields, AlarmRecord& record) {
    AlarmRule& rule = record.rule;
    const auto before = state_of(fields[10]);
    const auto after = state_of(fields[11]);
    if (!before || !after) return false;
    record.before = *before;
    record.after = *after;
    rule.label = unescaped(fields[7]);
    rule.unit = unescaped(fields[13]);
    rule.latch = fields[18] == "1";
    return read_from(fields[5], rule.pod) && read_from(fields[6], rule.channel) &&
           read_name(fields[8], rule.kind, KindNames) && read_from(fields[9], rule.severity) &&
           rule.severity >= LowestSeverity && rule.severity <= HighestSeverity &&
           read_single(fields[12], record.value) && read_from(fields[14], rule.limit) &&
           read_from(fields[15], rule.hysteresis) && read_from(fields[16], rule.on_delay_s) &&
           read_from(fields[17], rule.off_delay_s) && read_from(fields[19], record.occurrence) &&
           read_time(fields[20], record.since_utc_ms) && rule.pod >= 0 && rule.pod <= MaxZavs &&
           fields[4] == alarm_id(rule);
}

std::vector<std::string> alarm_fields(const AlarmRecord& record) {
    const AlarmRule& rule = record.rule;
    return {alarm_id(rule),
            std::to_string(rule.pod),
            std::to_string(rule.channel),
            escaped(rule.label),
            std::string(alarm_kind(rule.kind).name),
            std::to_string(rule.severity),
            state_name(record.before),
            state_name(record.after),
            single_text(record.value),
            escaped(rule.unit),
            shortest(rule.limit),
            shortest(rule.hysteresis),
            shortest(rule.on_delay_s),
            shortest(rule.off_delay_s),
            rule.latch ? "1" : "0",
            std::to_string(record.occurrence),
            time_or_nothing(record.since_utc_ms),
            shelf_text(record.shelf_utc_ms)};
}

// "+01:00"; nothing when it is none.
std::optional<int> parse_offset(std::string_view text) {
    int hours = 0, minutes = 0;
    if (text.size() != 6 || text[3] != ':' || (text[0] != '+' && text[0] != '-') ||
        !read_from(text.substr(1, 2), hours) || !read_from(text.substr(4), minutes) || hours > 23 ||
        minutes > 59)
        return std::nullopt;
    return (text[0] == '-' ? -1 : 1) * (hours * 60 + minutes);
}

// Each part of a date and time that is there, in order; false when something else is.
bool parse_parts(std::string_view text, WallTime& time) {
    struct Part {
        std::string_view before;
        std::size_t digits;
        int WallTime::*value;
        int most;
    };
    static constexpr std::array<Part, 7> Parts = {{{"", 4, &WallTime::year, 9999},
                                                   {"-", 2, &WallTime::month, 12},
                                                   {"-", 2, &WallTime::day, 31},
                                                   {"T ", 2, &WallTime::hour, 23},
                                                   {":", 2, &WallTime::minute, 59},
                                                   {":", 2, &WallTime::second, 59},
                                                   {".", 3, &WallTime::millisecond, 999}}};
    for (std::size_t i = 0; i < Parts.size(); ++i) {
        const Part& part = Parts[i];
        if (text.empty()) return i == 3 || i >= 5;
        if (!part.before.empty()) {
            if (part.before.find(text.front()) == std::string_view::npos) return false;
            text.remove_prefix(1);
        }
        if (text.size() < part.digits ||
            !read_from(text.substr(0, part.digits), time.*part.value) ||
            time.*part.value > part.most || time.*part.value < 0)
            return false;
        text.remove_prefix(part.digits);
    }
    return text.empty();
}

}  // namespace

std::string_view event_name(RecordEvent event) {
    return EventNames[static_cast<std::size_t>(event)];
}

std::tuple<bool, int, std::int64_t, std::uint64_t> list_place(AlarmState state, int severity,
                                                              std::int64_t since_utc_ms,
                                                              std::uint64_t occurrence) {
    return {!state.unseen(), -severity, -since_utc_ms, UINT64_MAX - occurrence};
}

bool annunciates(const AlarmRecord& record) {
    const AlarmState unacknowledged{AlarmLife::Unacknowledged, NotWithheld};
    return record.of_alarm && record.after == unacknowledged && !(record.before == unacknowledged);
}

std::string utc_text(std::int64_t utc_ms) {
    std::string text = general_date(wall_time_of(utc_ms));
    text[10] = 'T';
    return text + "." + padded(wall_time_of(utc_ms).millisecond, 3) + "Z";
}

std::string local_text(std::int64_t utc_ms, int offset_min) {
    std::string text = utc_text(utc_ms + offset_min * 60000LL);
    text.back() = offset_min < 0 ? '-' : '+';
    const int minutes = std::abs(offset_min);
    return text + two_digits(minutes / 60) + ":" + two_digits(minutes % 60);
}

std::optional<std::int64_t> parse_time(std::string_view text, int offset_min) {
    if (text.ends_with('Z')) {
        offset_min = 0;
        text.remove_suffix(1);
    } else if (text.size() > 16) {
        if (const auto offset = parse_offset(text.substr(text.size() - 6))) {
            offset_min = *offset;
            text.remove_suffix(6);
        }
    }
    WallTime time;
    if (!parse_parts(text, time) || !is_date(time)) return std::nullopt;
    return milliseconds_between(WallTime{}, time) - offset_min * 60000LL;
}

std::string_view journal_heading() {
    return Heading;
}

std::string journal_line(const AlarmRecord& record) {
    std::string line = std::to_string(record.number) + "\t" + utc_text(record.utc_ms) + "\t" +
                       local_text(record.utc_ms, record.offset_min) + "\t" +
                       std::string(event_name(record.event));
    constexpr std::size_t AlarmFields = 18;
    if (record.of_alarm)
        for (const std::string& field : alarm_fields(record)) (line += '\t') += field;
    else
        line.append(AlarmFields, '\t');
    line += "\t" + escaped(record.who) + "\t" + escaped(record.comment) + "\t";
    return line + check_sum_text(line);
}

std::optional<AlarmRecord> parse_journal_line(std::string_view line) {
    const auto last = line.rfind('\t');
    if (last == std::string_view::npos ||
        line.substr(last + 1) != check_sum_text(line.substr(0, last + 1)))
        return std::nullopt;
    const std::vector<std::string_view> fields = split(line, '\t');
    AlarmRecord record;
    if (fields.size() != Fields || !read_from(fields[0], record.number) ||
        !read_time(fields[1], record.utc_ms) || fields[2].size() < 6 ||
        !read_name(fields[3], record.event, EventNames))
        return std::nullopt;
    const auto offset = parse_offset(fields[2].substr(fields[2].size() - 6));
    if (!offset) return std::nullopt;
    record.offset_min = static_cast<std::int16_t>(*offset);
    record.of_alarm = !fields[4].empty();
    if (record.of_alarm && !read_alarm(fields, record)) return std::nullopt;
    if (fields[21] == OneShot)
        record.shelf_utc_ms = OneShotShelf;
    else if (!read_time(fields[21], record.shelf_utc_ms))
        return std::nullopt;
    record.who = unescaped(fields[22]);
    record.comment = unescaped(fields[23]);
    return record;
}

}  // namespace kavorix
