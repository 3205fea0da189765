// Kills a program with alarms at random moments and looks at what the next one has of them.
//
//     alarm_kill [--kills COUNT] [--seed SEED]
//
// A child process has conditions come and go and acknowledges, shelves and takes out as fast as it
// can; of each transition that it is told it notes number and state in shared memory. The parent
// kills it with SIGKILL: each transition that was told is on the journal, nothing else is, and the
// next program begins with the state of the last. The files turn over every few hundred entries.
// Exit code 0 when nothing was lost, 1 when something was, 2 for wrong arguments.

#include <sched.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>

#include "alarms/desk_rig.h"
#include "alarms/numbers_of.h"
#include "support/temporary_directory.h"

namespace kavorix::test {
namespace {

constexpr int Channels = 8;
constexpr std::uint64_t FileBytes = 60000;

struct Promise {
    std::atomic<int> steps{0};
    // Of the last transition told: its number, and its state in the lowest byte.
    std::array<std::atomic<std::uint64_t>, Channels> told{};
};

std::uint64_t packed(std::uint64_t number, AlarmState state) {
    return number << 8 | static_cast<std::uint64_t>(state.life) << 4 | state.withheld;
}

AlarmState state_in(std::uint64_t told) {
    return {static_cast<AlarmLife>(told >> 4 & 0xF), static_cast<std::uint8_t>(told & 0xF)};
}

std::vector<AlarmRule> killed_rules() {
    std::vector<AlarmRule> rules;
    for (int channel = 1; channel <= Channels; ++channel)
        rules.push_back(rule("1/" + std::to_string(channel) + "/high", 1,
                             [&](AlarmRule& of) { of.latch = channel % 2 == 0; }));
    return rules;
}

JournalPlace place_in(const TemporaryDirectory& directory) {
    return {directory.path(), FileBytes, 4};
}

[[noreturn]] void raise_alarms(const JournalPlace& place, std::uint32_t seed, AlarmMoment now,
                               Promise& promise) {
    const auto files = make_host_files();
    AlarmDesk desk(*files, place, now);
    desk.on_transition([&](const AlarmRecord& record) {
        if (!record.of_alarm) return;
        const auto index = static_cast<std::size_t>(record.rule.channel - 1);
        promise.told[index] = packed(record.number, record.after);
    });
    desk.set_rules(killed_rules(), now);
    std::mt19937 random(seed);
    const OperatorNote ann{"Ann", "why not"};
    std::vector<float> values(Channels);
    while (true) {
        ++now.utc_ms;
        ++now.tick_ms;
        float& value = values[random() % Channels];
        value = 2.0F - value;
        desk.reading(0, values, std::vector<std::int16_t>(Channels), now);
        const std::string id = "1/" + std::to_string(random() % Channels + 1) + "/high";
        switch (random() % 32) {
            case 0:
                desk.shelve(id, now.utc_ms + 1'000'000, ann, now);
                break;
            case 1:
                desk.take_out(id, ann, now);
                break;
            case 2:
            case 3:
                desk.unshelve(id, ann, now);
                break;
            case 4:
            case 5:
                desk.put_back(id, ann, now);
                break;
            case 6:
                desk.reset(id, ann, now);
                break;
            default:
                desk.acknowledge(id, ann, now);
        }
        ++promise.steps;
    }
}

class KillTest {
  public:
    explicit KillTest(std::uint32_t seed) : random_(seed) {
        void* memory = mmap(nullptr, sizeof(Promise), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) std::abort();
        promise_ = new (memory) Promise;
    }

    bool run(int kills) {
        for (int kill = 0; kill < kills; ++kill) {
            raise_and_kill();
            if (!check(kill)) return false;
        }
        return true;
    }
    long long promised() const { return promised_; }
    int acknowledged() const { return acknowledged_; }

  private:
    void raise_and_kill() {
        constexpr unsigned MostSteps = 40;
        promise_->steps = 0;
        const auto seed = static_cast<std::uint32_t>(random_());
        const int steps = static_cast<int>(random_() % MostSteps);
        const pid_t child = fork();
        if (child < 0) std::abort();
        if (child == 0) raise_alarms(place_in(directory_), seed, now_, *promise_);
        while (promise_->steps < steps) sched_yield();
        for (auto rest = random_() % 1000; rest > 0; --rest) sched_yield();
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        if (!WIFSIGNALED(status)) {
            std::printf("the program with the alarms ended by itself\n");
            std::exit(1);
        }
        now_.utc_ms += 1000;
    }

    bool check(int kill) {
        const JournalPlace place = place_in(directory_);
        const JournalContents contents = read_journal(*files_, place, place.files);
        for (const std::string& damage : contents.damage) return fail(kill, damage);
        std::map<int, AlarmRecord> last;
        std::map<std::uint64_t, AlarmState> states;
        for (const AlarmRecord& record : contents.records) {
            if (!record.of_alarm) continue;
            states[record.number] = record.after;
            last[record.rule.channel] = record;
        }
        AlarmDesk desk(*files_, place, now_);
        desk.set_rules(killed_rules(), now_);
        for (int channel = 1; channel <= Channels; ++channel)
            if (!check_alarm(kill, channel, last, states,
                             desk.alarms()[static_cast<std::size_t>(channel - 1)]))
                return false;
        return true;
    }

    bool check_alarm(int kill, int channel, const std::map<int, AlarmRecord>& last,
                     const std::map<std::uint64_t, AlarmState>& states, const Alarm& alarm) {
        const auto index = static_cast<std::size_t>(channel - 1);
        const std::uint64_t number = promise_->told[index] >> 8;
        if (number == 0) return true;
        ++promised_;
        const AlarmState told = state_in(promise_->told[index]);
        const AlarmRecord& found = last.at(channel);
        if (found.number < number) return fail(kill, alarm.id + ": the entry is not there");
        const auto of_number = states.find(number);
        if (of_number != states.end() && !(of_number->second == told))
            return fail(kill, alarm.id + ": the entry has another state");
        const AlarmState expected = found.after.idle() ? AlarmState{} : found.after;
        if (!(alarm.state == expected)) return fail(kill, alarm.id + ": another state after it");
        if (told.life == AlarmLife::Acknowledged || told.life == AlarmLife::LatchedAcknowledged)
            ++acknowledged_;
        return true;
    }

    static bool fail(int kill, const std::string& what) {
        std::printf("kill %d: %s\n", kill, what.c_str());
        return false;
    }

    std::mt19937 random_;
    Promise* promise_ = nullptr;
    std::unique_ptr<Files> files_ = make_host_files();
    TemporaryDirectory directory_;
    AlarmMoment now_{0, 1'800'000'000'000, 60};
    long long promised_ = 0;
    int acknowledged_ = 0;
};

int main_of(int argc, char** argv) {
    int kills = 100, seed = 1;
    if (!numbers_of(argc, argv, {{"--kills", &kills}, {"--seed", &seed}})) {
        std::fputs("usage: alarm_kill [--kills COUNT] [--seed SEED]\n", stderr);
        return 2;
    }
    KillTest test(static_cast<std::uint32_t>(seed));
    const bool passed = test.run(kills);
    std::printf("%d kills: %lld states promised, %d of them acknowledged%s\n", kills,
                test.promised(), test.acknowledged(), passed ? ", none lost" : "");
    return passed ? 0 : 1;
}

}  // namespace
}  // namespace kavorix::test

int main(int argc, char** argv) {
    return kavorix::test::main_of(argc, argv);
}
