#include "alarms/alarm_rules.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <tuple>

#include "model/catalogue.h"
#include "platform/driver.h"

namespace kavorix {

namespace {

const ChannelConfig& channel_of(const PodConfigs& configuration, int pod, int channel) {
    return configuration[static_cast<std::size_t>(pod - 1)]
        .Channel[static_cast<std::size_t>(channel - 1)];
}

// The readings that the limits are for are scaled in single precision, too.
AlarmRule adopt(const AlarmLimit& from, bool high, const ChannelConfig& channel) {
    const float m = channel.MValue;
    AlarmRule rule;
    rule.kind = high == (m > 0) ? AlarmKind::High : AlarmKind::Low;
    rule.limit = from.Limit * m + channel.CValue;
    rule.hysteresis = std::fabs(from.Hysteresis * m);
    return rule;
}

AlarmRule of_kind(AlarmKind kind, int pod, int channel) {
    AlarmRule rule;
    rule.pod = pod;
    rule.channel = channel;
    rule.kind = kind;
    rule.severity = alarm_kind(kind).severity;
    return rule;
}

// What stands in the file comes first, and one rule an alarm stays.
void keep_first_of_each(std::vector<AlarmRule>& rules) {
    std::set<std::tuple<int, int, AlarmKind>> seen;
    std::erase_if(rules, [&](const AlarmRule& rule) {
        return !seen.insert({rule.pod, rule.channel, rule.kind}).second;
    });
}

std::string name_of_channel(const AlarmRule& rule) {
    return "channel " + std::to_string(rule.channel) + " of pod " + std::to_string(rule.pod);
}

// Why the rule has nothing to watch; empty when it has.
std::string out_of_place(const PodConfigs& configuration, const AlarmRule& rule) {
    const PodConfig& pod = configuration[static_cast<std::size_t>(rule.pod - 1)];
    if (pod.TypeCode == NoDevice) return "pod " + std::to_string(rule.pod) + " is not configured";
    if (rule.channel == 0) return {};
    if (rule.channel > pod.NumChannels)
        return "pod " + std::to_string(rule.pod) + " has " + std::to_string(pod.NumChannels) +
               " channels";
    const std::int16_t mode = channel_of(configuration, rule.pod, rule.channel).Mode;
    if (mode == 0) return name_of_channel(rule) + " is not in use";
    if (rule.kind == AlarmKind::Digital && mode != DigitalStatus)
        return name_of_channel(rule) + " is no digital status channel";
    return {};
}

// Limits of one channel, from the highest kind to the lowest, must fall; two of the configuration
// are no business of the file.
void check_order(const std::vector<AlarmRule>& rules, std::vector<RuleProblem>& problems) {
    std::map<std::pair<int, int>, std::array<const AlarmRule*, 4>> channels;
    for (const AlarmRule& rule : rules)
        if (rule.kind <= AlarmKind::LowLow)
            channels[{rule.pod, rule.channel}][static_cast<std::size_t>(rule.kind)] = &rule;
    for (const auto& [of, limits] : channels) {
        const AlarmRule* above = nullptr;
        for (const AlarmRule* rule : limits) {
            if (rule == nullptr) continue;
            const int line = above != nullptr ? std::max(above->line, rule->line) : 0;
            if (line != 0 && !(above->limit > rule->limit))
                problems.push_back({line, "the limit of \"" + alarm_id(*above) +
                                              "\" must be above that of \"" + alarm_id(*rule) +
                                              "\""});
            above = rule;
        }
    }
}

}  // namespace

std::string alarm_id(const AlarmRule& rule) {
    std::string id;
    if (rule.pod != 0) id += std::to_string(rule.pod) + "/";
    if (rule.channel != 0) id += std::to_string(rule.channel) + "/";
    return id += alarm_kind(rule.kind).name;
}

bool same_condition(const AlarmRule& a, const AlarmRule& b) {
    const auto of = [](const AlarmRule& rule) {
        return std::tuple(rule.limit, rule.hysteresis, rule.on_delay_s, rule.off_delay_s,
                          rule.latch);
    };
    return of(a) == of(b);
}

std::vector<AlarmRule> adopted_rules(const PodConfigs& configuration) {
    std::vector<AlarmRule> rules;
    for (int pod = 1; pod <= MaxZavs; ++pod) {
        const PodConfig& config = configuration[static_cast<std::size_t>(pod - 1)];
        if (config.TypeCode == NoDevice) continue;
        for (int number = 1; number <= std::min<int>(config.NumChannels, MaxChannels); ++number) {
            const ChannelConfig& channel = channel_of(configuration, pod, number);
            if (channel.Mode == 0 || channel.Mode == DigitalStatus || channel.MValue == 0) continue;
            for (const bool high : {true, false}) {
                const AlarmLimit& limit = high ? channel.HighAlarm : channel.LowAlarm;
                if (limit.Enabled != 1) continue;
                AlarmRule rule = adopt(limit, high, channel);
                rule.pod = pod;
                rule.channel = number;
                if (std::isfinite(rule.limit) && std::isfinite(rule.hysteresis))
                    rules.push_back(rule);
            }
        }
    }
    return rules;
}

std::vector<AlarmRule> station_rules(const PodConfigs& configuration,
                                     const std::vector<AlarmRule>& from_file) {
    std::vector<AlarmRule> rules = from_file;
    const std::vector<AlarmRule> adopted = adopted_rules(configuration);
    rules.insert(rules.end(), adopted.begin(), adopted.end());
    const std::size_t given = rules.size();
    for (std::size_t i = 0; i < given; ++i) {
        const auto [pod, channel] = std::pair(rules[i].pod, rules[i].channel);
        if (channel != 0) rules.push_back(of_kind(AlarmKind::Invalid, pod, channel));
        rules.push_back(of_kind(AlarmKind::Lost, pod, 0));
    }
    for (const AlarmKind own :
         {AlarmKind::LogFailing, AlarmKind::DiskFilling, AlarmKind::JournalUnwritable})
        rules.push_back(of_kind(own, 0, 0));
    keep_first_of_each(rules);
    for (AlarmRule& rule : rules)
        if (rule.channel != 0) {
            const ChannelConfig& channel = channel_of(configuration, rule.pod, rule.channel);
            rule.label = channel.Label;
            rule.unit = channel.Unit;
        }
    return rules;
}

std::vector<RuleProblem> check_rules(const PodConfigs& configuration,
                                     const std::vector<AlarmRule>& from_file) {
    std::vector<RuleProblem> problems;
    for (const AlarmRule& rule : from_file)
        if (std::string message = out_of_place(configuration, rule); !message.empty())
            problems.push_back({rule.line, std::move(message)});
    std::vector<AlarmRule> rules = from_file;
    for (const AlarmRule& rule : adopted_rules(configuration)) rules.push_back(rule);
    keep_first_of_each(rules);
    check_order(rules, problems);
    std::stable_sort(problems.begin(), problems.end(),
                     [](const auto& a, const auto& b) { return a.line < b.line; });
    return problems;
}

}  // namespace kavorix
