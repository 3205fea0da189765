#include "alarms/rules_file.h"

#include <map>

#include "base/text.h"
#include "platform/driver.h"
#include "toml/toml_reader.h"
#include "toml/toml_writer.h"

namespace kavorix {

namespace {

constexpr double Largest = 3e38;  // what a reading can be
constexpr std::size_t MaxText = 80;
constexpr std::size_t MaxGuidance = 500;

constexpr TomlBounds AnyLimit = {-Largest, Largest, "a number"};
constexpr TomlBounds ChangeLimit = {1e-30, Largest, "a change per second, above 0"};
constexpr TomlBounds AgeLimit = {0.1, 1e6, "a time in seconds, from 0.1 to 1000000"};
constexpr TomlBounds LevelLimit = {0, 1, "a level, 0 or 1"};
constexpr TomlBounds NotNegative = {0, Largest, "a number, 0 or more"};
constexpr TomlBounds Delay = {0, 86400, "a time in seconds, from 0 to 86400"};
constexpr TomlBounds PodNumber = {1, MaxZavs, "a pod number from 1 to 50"};
constexpr TomlBounds ChannelNumber = {1, MaxChannels, "a channel number from 1 to 32"};
constexpr TomlBounds SeverityRange = {LowestSeverity, HighestSeverity,
                                      "a severity from 1 (lowest) to 4 (highest)"};

// The kinds that a file can have: all but the station's own.
constexpr auto FileKinds = [] {
    std::array<AlarmKindRow, 9> kinds{};
    for (std::size_t i = 0; i < kinds.size(); ++i) kinds[i] = AlarmKinds[i];
    return kinds;
}();

// One [[alarm]].
class RuleReader {
  public:
    RuleReader(const TomlTable& table, TomlErrors& errors) : reader_(table, "alarm", errors) {
        rule_.line = static_cast<int>(table.at.line);
    }

    AlarmRule read() {
        if (reader_.require("pod")) reader_.whole("pod", rule_.pod, PodNumber);
        reader_.whole("channel", rule_.channel, ChannelNumber);
        const AlarmKindRow* kind =
            reader_.require("kind") ? reader_.choice("kind", FileKinds) : nullptr;
        if (kind != nullptr) {
            rule_.kind = kind->kind;
            rule_.severity = kind->severity;
            check_place(*kind);
            read_limit(*kind);
        }
        reader_.number("on_delay_s", rule_.on_delay_s, Delay);
        reader_.number("off_delay_s", rule_.off_delay_s, Delay);
        reader_.number("realarm_s", rule_.realarm_s, Delay);
        reader_.boolean("latch", rule_.latch);
        reader_.boolean("acknowledge_return", rule_.acknowledge_return);
        reader_.whole("severity", rule_.severity, SeverityRange);
        reader_.text("text", rule_.text, 0, MaxText);
        reader_.text("guidance", rule_.guidance, 0, MaxGuidance);
        // Asked for so that they are known keys even where the kind is not.
        double unused = 0;
        if (kind == nullptr) {
            reader_.number("limit", unused, AnyLimit);
            reader_.number("hysteresis", unused, NotNegative);
        }
        reader_.finish();
        return rule_;
    }

    void names_again(int line) {
        reader_.fail("kind", "names the alarm \"" + alarm_id(rule_) + "\" of line " +
                                 std::to_string(line) + " again");
    }

  private:
    void check_place(const AlarmKindRow& kind) {
        if (rule_.channel != 0 && !kind.of_channel)
            reader_.fail("channel", "must be left out: \"" + std::string(kind.name) +
                                        "\" is an alarm of the whole pod");
        if (!reader_.has("channel") && !kind.of_pod) reader_.require("channel");
    }

    void read_limit(const AlarmKindRow& kind) {
        double unused = 0;
        const bool has_limit = kind.limit != LimitOf::Nothing;
        const bool has_hysteresis = kind.limit == LimitOf::Value || kind.limit == LimitOf::Change;
        if (has_limit) {
            if (reader_.require("limit")) reader_.number("limit", rule_.limit, bounds(kind.limit));
        } else if (reader_.number("limit", unused, AnyLimit)) {
            not_of(kind, "limit");
        }
        if (has_hysteresis)
            reader_.number("hysteresis", rule_.hysteresis, NotNegative);
        else if (reader_.number("hysteresis", unused, NotNegative))
            not_of(kind, "hysteresis");
        if (kind.limit == LimitOf::Level && rule_.limit != 0 && rule_.limit != 1)
            reader_.fail("limit", "must be " + std::string(LevelLimit.expected));
        if (kind.limit == LimitOf::Change && rule_.hysteresis >= rule_.limit &&
            rule_.hysteresis > 0)
            reader_.fail("hysteresis", "must be below \"alarm.limit\", or the alarm never goes");
    }

    void not_of(const AlarmKindRow& kind, std::string_view key) {
        reader_.fail(key, "must be left out: \"" + std::string(kind.name) + "\" has none");
    }

    static const TomlBounds& bounds(LimitOf limit) {
        return limit == LimitOf::Change    ? ChangeLimit
               : limit == LimitOf::Seconds ? AgeLimit
               : limit == LimitOf::Level   ? LevelLimit
                                           : AnyLimit;
    }

    TomlReader reader_;
    AlarmRule rule_;
};

void add_text(std::string& text, std::string_view key, const std::string& value) {
    if (!value.empty()) text += std::string(key) + " = " + toml_text(value) + "\n";
}

void add_number(std::string& text, std::string_view key, double value) {
    if (value != 0) text += std::string(key) + " = " + toml_number(value) + "\n";
}

}  // namespace

LoadedRules parse_rules(std::string_view text, std::string_view file_name) {
    TomlErrors errors(file_name);
    LoadedRules loaded;
    if (const auto document = parse_toml(text, errors)) {
        TomlReader root(*document, "", errors);
        std::map<std::string, int> lines;
        root.tables("alarm", [&](const TomlTable& table) {
            RuleReader reader(table, errors);
            const std::size_t before = errors.size();
            loaded.rules.push_back(reader.read());
            if (errors.size() != before) return;
            const AlarmRule& rule = loaded.rules.back();
            const auto [found, first] = lines.insert({alarm_id(rule), rule.line});
            if (!first) reader.names_again(found->second);
        });
        root.finish();
    }
    loaded.errors = errors.texts();
    return loaded;
}

LoadedRules load_rules(Files& files, const std::string& path) {
    return parse_rules(read_all(files, path, TomlLimits::Bytes), path);
}

std::string rules_text(const std::vector<AlarmRule>& rules) {
    std::string text;
    for (const AlarmRule& rule : rules) {
        const AlarmKindRow& kind = alarm_kind(rule.kind);
        if (!text.empty()) text += "\n";
        text += "[[alarm]]\npod = " + std::to_string(rule.pod) + "\n";
        if (rule.channel != 0) text += "channel = " + std::to_string(rule.channel) + "\n";
        text += "kind = " + toml_text(kind.name) + "\n";
        if (kind.limit != LimitOf::Nothing) text += "limit = " + toml_number(rule.limit) + "\n";
        add_number(text, "hysteresis", rule.hysteresis);
        add_number(text, "on_delay_s", rule.on_delay_s);
        add_number(text, "off_delay_s", rule.off_delay_s);
        add_number(text, "realarm_s", rule.realarm_s);
        if (rule.latch) text += "latch = true\n";
        if (!rule.acknowledge_return) text += "acknowledge_return = false\n";
        text += "severity = " + std::to_string(rule.severity) + "\n";
        add_text(text, "text", rule.text);
        add_text(text, "guidance", rule.guidance);
    }
    return text;
}

void save_rules(Files& files, const std::string& path, const std::vector<AlarmRule>& rules) {
    replace_file(files, path, rules_text(rules));
}

std::string rules_path(const std::string& config_path) {
    const std::string name = name_of(config_path);
    const auto point = name.rfind('.');
    const auto cut = point == std::string::npos || point == 0 ? 0 : name.size() - point;
    return config_path.substr(0, config_path.size() - cut) + ".alarms.toml";
}

}  // namespace kavorix
