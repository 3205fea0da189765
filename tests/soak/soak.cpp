// Drives the whole station with a random operator on networks with faults, seed by seed, and checks
// the rules of invariants.cpp after every action.
//
//     soak [--seeds COUNT] [--first SEED] [--actions COUNT] [--minutes COUNT]
//     soak --first SEED --only LIST      the actions of this list alone, for example 3,17,18
//     soak --days COUNT                  50 pods, unattended, for so many virtual days
//     soak --sabotage NAME               with a defect built in, which must be found
//
// --minutes ends the run after so many minutes of real time. Exit code 0 when every rule held, 1
// when one did not (for --sabotage: when the defect was found), 2 for wrong arguments.

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>

#include "platform/host_event_loop.h"
#include "soak/run.h"

namespace kavorix::soak {
namespace {

struct Options {
    int seeds = 100;
    int first = 1;
    int actions = 60;
    int minutes = 0;
    int days = 0;
    std::vector<int> only;
    Sabotage sabotage = Sabotage::None;
};

constexpr std::array Sabotages = {
    std::pair{std::string_view("swallowed-error"), Sabotage::SwallowedError},
    std::pair{std::string_view("changed-reading"), Sabotage::ChangedReading},
    std::pair{std::string_view("wrong-pod"), Sabotage::WrongPod},
    std::pair{std::string_view("removed-pod-polled"), Sabotage::RemovedPodPolled},
};

std::optional<int> number(std::string_view text) {
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return value;
}

bool list_of(std::string_view text, std::vector<int>& numbers) {
    while (!text.empty()) {
        const auto comma = text.find(',');
        const auto value = number(text.substr(0, comma));
        if (!value) return false;
        numbers.push_back(*value);
        text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
    }
    return !numbers.empty();
}

bool take_option(Options& options, std::string_view name, std::string_view value) {
    if (name == "--only") return list_of(value, options.only);
    if (name == "--sabotage") {
        for (const auto& [text, sabotage] : Sabotages)
            if (text == value) options.sabotage = sabotage;
        return options.sabotage != Sabotage::None;
    }
    const std::map<std::string_view, int*> counts = {{"--seeds", &options.seeds},
                                                     {"--first", &options.first},
                                                     {"--actions", &options.actions},
                                                     {"--minutes", &options.minutes},
                                                     {"--days", &options.days}};
    const auto found = counts.find(name);
    const auto count = number(value);
    if (found == counts.end() || !count || *count < 0) return false;
    *found->second = *count;
    return true;
}

// The actions of a plan that still break the same rule: ever smaller parts are left out for as long
// as it does.
std::vector<int> shortened(const Plan& plan, Rule rule) {
    constexpr int MostRuns = 600;
    std::vector<int> kept(plan.actions.size());
    for (std::size_t i = 0; i < kept.size(); ++i) kept[i] = static_cast<int>(i);
    int runs = 0;
    const auto breaks = [&](const std::vector<int>& indices) {
        Plan part = plan;
        part.actions.clear();
        for (const int index : indices)
            part.actions.push_back(plan.actions[static_cast<std::size_t>(index)]);
        const Outcome outcome = run(part);
        ++runs;
        return outcome.breach && outcome.breach->rule == rule;
    };
    for (std::size_t size = std::max<std::size_t>(kept.size() / 2, 1); runs < MostRuns;) {
        bool shorter = false;
        for (std::size_t from = 0; from < kept.size() && runs < MostRuns;) {
            std::vector<int> rest = kept;
            const auto begin = rest.begin() + static_cast<std::ptrdiff_t>(from);
            rest.erase(begin,
                       begin + static_cast<std::ptrdiff_t>(std::min(size, rest.size() - from)));
            if (!rest.empty() && breaks(rest)) {
                kept = rest;
                shorter = true;
            } else {
                from += size;
            }
        }
        if (size == 1 && !shorter) break;
        if (!shorter || size > kept.size()) size = std::max<std::size_t>(size / 2, 1);
    }
    return kept;
}

Plan plan_of(int seed, const Options& options) {
    Plan plan;
    plan.seed = static_cast<std::uint32_t>(seed);
    plan.sabotage = options.sabotage;
    plan.actions = actions_of(plan.seed, options.actions);
    return plan;
}

void tell(const Outcome& outcome) {
    for (const std::string& line : outcome.story) std::printf("    %s\n", line.c_str());
    const RuleText& rule = text_of(outcome.breach->rule);
    std::printf("  broken: %.*s\n  (%.*s)\n  %s\n", static_cast<int>(rule.name.size()),
                rule.name.data(), static_cast<int>(rule.why.size()), rule.why.data(),
                outcome.breach->what.c_str());
}

void tell_failure(int seed, const Plan& plan, const Outcome& outcome, const Options& options) {
    std::printf("seed %d fails after %zu actions: %s\n", seed, outcome.story.size() - 1,
                outcome.breach->what.c_str());
    if (outcome.breach->rule == Rule::RunsRepeat || outcome.breach->rule == Rule::MemoryComesBack)
        return tell(outcome);
    Plan reached = plan;
    reached.actions.resize(std::min(plan.actions.size(), outcome.story.size() - 1));
    const std::vector<int> kept = shortened(reached, outcome.breach->rule);
    Plan shortest = plan;
    shortest.actions.clear();
    std::string list;
    for (const int index : kept) {
        shortest.actions.push_back(plan.actions[static_cast<std::size_t>(index)]);
        list += (list.empty() ? "" : ",") + std::to_string(index);
    }
    std::printf("  shortened to %zu actions; again with --first %d --actions %d --only %s\n",
                kept.size(), seed, options.actions, list.c_str());
    tell(run(shortest));
}

// Every so many seeds one is run twice.
constexpr int Repeated = 20;

Outcome run_checked(int seed, const Plan& plan, bool measured) {
    const Memory before = memory_now();
    std::optional<Breach> breach;
    Figures figures;
    std::uint64_t digest = 0;
    {
        const Outcome outcome = run(plan);
        if (outcome.breach) return outcome;
        figures = outcome.figures;
        digest = outcome.digest;
    }
    const Memory after = memory_now();
    Outcome outcome;
    outcome.figures = figures;
    if (measured && after.blocks != before.blocks)
        outcome.breach = Breach{Rule::MemoryComesBack,
                                std::to_string(after.blocks - before.blocks) + " blocks, " +
                                    std::to_string(after.bytes - before.bytes) + " bytes are left"};
    else if (seed % Repeated == 0 && run(plan).digest != digest)
        outcome.breach = Breach{Rule::RunsRepeat, "the second run differs from the first"};
    if (outcome.breach) outcome.story.emplace_back("all actions");
    return outcome;
}

void summary(int seeds, int failed, const Figures& figures, std::uint32_t ms) {
    std::printf(
        "%d seeds, %d failed: %lld actions, %lld starts, %lld kills, %.1f virtual hours, "
        "%lld driver calls, %lld errors counted, %lld records logged, %lld disk failures; "
        "%.1f s\n",
        seeds, failed, figures.actions, figures.starts, figures.kills,
        static_cast<double>(figures.virtual_ms) / 3.6e6, figures.driver_calls, figures.link_errors,
        figures.records, figures.disk_faults, ms / 1000.0);
}

int soak_seeds(const Options& options) {
    const int most_failures = options.sabotage == Sabotage::None ? 5 : 1;
    const std::uint32_t begin = host_tick_count();
    Figures figures;
    int failed = 0;
    int done = 0;
    std::uint32_t told = begin;
    static_cast<void>(run(plan_of(0, options)));  // what is made once for all is made
    for (int seed = options.first; done < options.seeds && failed < most_failures; ++seed, ++done) {
        const Plan plan = plan_of(seed, options);
        const Outcome outcome = run_checked(seed, plan, options.sabotage == Sabotage::None);
        figures.add(outcome.figures);
        if (outcome.breach) {
            ++failed;
            tell_failure(seed, plan, outcome, options);
            std::fflush(stdout);
        }
        const std::uint32_t now = host_tick_count();
        if (options.minutes > 0 &&
            now - begin >= static_cast<std::uint32_t>(options.minutes) * 60000)
            break;
        if (now - told < 10'000) continue;
        told = now;
        std::fprintf(stderr, "%d of %d seeds, %d failed\n", done + 1, options.seeds, failed);
    }
    summary(done, failed, figures, host_tick_count() - begin);
    return failed > 0 ? 1 : 0;
}

int soak_part(const Options& options) {
    const Plan whole = plan_of(options.first, options);
    Plan plan = whole;
    plan.actions.clear();
    for (const int index : options.only)
        if (index >= 0 && index < static_cast<int>(whole.actions.size()))
            plan.actions.push_back(whole.actions[static_cast<std::size_t>(index)]);
    const Outcome outcome = run(plan);
    if (outcome.breach) {
        tell(outcome);
        return 1;
    }
    for (const std::string& line : outcome.story) std::printf("    %s\n", line.c_str());
    return 0;
}

int soak_days(const Options& options) {
    const std::uint32_t begin = host_tick_count();
    const Outcome outcome =
        run_unattended(static_cast<std::uint32_t>(options.first), options.days, [&](int day) {
            std::fprintf(stderr, "day %d after %.0f s\n", day, (host_tick_count() - begin) / 1e3);
        });
    if (outcome.breach) tell(outcome);
    summary(1, outcome.breach ? 1 : 0, outcome.figures, host_tick_count() - begin);
    return outcome.breach ? 1 : 0;
}

int main_of(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; i += 2)
        if (i + 1 >= argc || !take_option(options, argv[i], argv[i + 1])) {
            std::fputs(
                "usage: soak [--seeds COUNT] [--first SEED] [--actions COUNT] [--minutes COUNT]\n"
                "       soak --first SEED [--actions COUNT] --only INDEX,INDEX...\n"
                "       soak --days COUNT [--first SEED]\n",
                stderr);
            return 2;
        }
    if (!options.only.empty()) return soak_part(options);
    if (options.days > 0) return soak_days(options);
    return soak_seeds(options);
}

}  // namespace
}  // namespace kavorix::soak

int main(int argc, char** argv) {
    return kavorix::soak::main_of(argc, argv);
}
