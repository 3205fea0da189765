#include "soak/run.h"

#include <functional>

#include "soak/operator.h"

namespace kavorix::soak {

namespace {

constexpr long long MostBytes = 64LL * 1024 * 1024;
constexpr int Pause_ms = 30'000;  // between the end of a program and the next start

// The clock of the pods, which goes on from program to program.
class PodClock : public Clock {
  public:
    VirtualEventLoop* loop = nullptr;
    std::uint32_t tick_count() const override { return loop->tick_count(); }
    WallTime wall_time() const override { return loop->wall_time(); }
    void block(int ms) override { loop->block(ms); }
};

class FixedMemory : public SystemInfo {
  public:
    std::uint64_t available_memory() const override { return 8'000'000'000; }
};

// Everything that a seed needs, in the order of its making.
class World {
  public:
    World(const Plan& plan, bool full)
        : dice_(plan.seed),
          loop_(first_loop(plan.seed)),
          cards_((clock_.loop = loop_.get(), full ? Cards::full(plan.seed, clock_)
                                                  : std::make_unique<Cards>(dice_.bits(), clock_))),
          witness_(*cards_, rules_, plan.sabotage) {
        files_.keep_log = false;
        files_.put("/station/KAVORIX.INI", "[Exclude Addresses]\r\nAddress=D100,D200\r\n");
        rules_.world = {nullptr, nullptr, loop_.get(), &files_, cards_.get()};
        hands_.dice = &dice_;
    }

    Invariants& rules() { return rules_; }
    Hands& hands() { return hands_; }
    WitnessDriver& witness() { return witness_; }
    VirtualEventLoop& loop() { return *loop_; }
    Figures& figures() { return figures_; }
    Operator& hand() { return operator_; }

    // False when the program ended on the way.
    bool start(std::string& told) {
        ++figures_.starts;
        hands_.told = &told;
        station_ = std::make_unique<Station>(
            Station::Surroundings{witness_, *loop_, desktop_, watched_files_, {"/station"}});
        desk_ =
            std::make_unique<Desk>(Desk::Surroundings{*station_, windows_, windows_, memory_, {}});
        station_->message_line.told.always(
            [this](const Message& message) { witness_.message_shown(message.Text); });
        rules_.world.station = station_.get();
        rules_.world.desk = desk_.get();
        rules_.known.started = loop_->wall_time();
        hands_.may_pass_time = false;  // the log's first line has the time of the start
        witness_.begin_query();
        try {
            station_->start();
        } catch (const ProgramEnded&) {
            end(told, false);
            return false;
        }
        witness_.end_query();
        hands_.may_pass_time = true;
        rules_.known.disk_failed = disk_.struck();
        rules_.after_start();
        return true;
    }

    // The program is gone, by itself or by the operator, or killed.
    void end(std::string& told, bool exited) {
        told += exited ? " - the end." : " - ended!";
        figures_.link_errors += rules_.known.session_errors;
        figures_.disk_faults += disk_.struck() ? 1 : 0;
        rules_.known.disk_failed = disk_.struck();
        rules_.world.station = nullptr;
        rules_.world.desk = nullptr;
        desk_.reset();
        station_.reset();
        disk_.heal();
        rules_.after_end(exited);
        hands_.modal = 0;
        hands_.may_pass_time = true;
        hands_.leaving = false;
        witness_.restart();
        figures_.virtual_ms += loop_->elapsed_ms();
        auto next = std::make_unique<VirtualEventLoop>(
            add_milliseconds(loop_->wall_time(), Pause_ms),
            loop_->tick_count() + static_cast<std::uint32_t>(Pause_ms));
        rules_.world.loop = clock_.loop = next.get();
        loop_ = std::move(next);
    }

    void check_memory() {
        long long files = 0;
        for (const std::string& path : files_.paths())
            files += 2 * static_cast<long long>(files_.content(path).capacity());
        const long long used = memory_now().bytes - files;
        rules_.expect(used < MostBytes, Rule::MemoryStaysBounded,
                      std::to_string(used / 1024) + " kB beside the files");
    }

    // Old files go, or a long run would fill the memory with them.
    void tidy_up() {
        constexpr std::size_t MostBytesOfFile = 4'000'000;
        for (const std::string& path : files_.paths()) {
            const bool log = path.ends_with(".DAT");
            if (!log && !path.ends_with(".CSV")) continue;
            if (files_.content(path).size() < MostBytesOfFile || in_use(path)) continue;
            remove_log(path);
        }
    }

    void remove_log(const std::string& path) {
        files_.remove(path);
        if (files_.has(path + ".sum")) files_.remove(path + ".sum");
        if (!rules_.known.logs.contains(path)) return;
        figures_.records += rules_.known.logs[path].records;
        rules_.known.logs.erase(path);
    }

    // The end of everything, and what came of it.
    void close(Outcome& outcome) {
        figures_.driver_calls = witness_.calls_of_all;
        figures_.virtual_ms += loop_->elapsed_ms();
        figures_.link_errors += rules_.known.session_errors;
        for (const auto& [path, log] : rules_.known.logs) figures_.records += log.records;
        std::uint64_t digest = witness_.digest;
        const auto add = [&digest](std::uint64_t value) {
            digest = (digest ^ value) * 1099511628211U;
        };
        for (const std::string& path : files_.paths()) {
            const std::string& content = files_.content(path);
            const auto log = rules_.known.logs.find(path);
            // Of a log what it holds: how far its records are marked is up to a thread of real
            // time.
            if (log != rules_.known.logs.end())
                add(log->second.digest + content.size());
            else
                for (const char c : content) add(static_cast<unsigned char>(c));
        }
        outcome.digest = digest;
        outcome.breach = rules_.breach;
        outcome.figures = figures_;
    }

    bool running() const { return station_ != nullptr; }

  private:
    bool in_use(const std::string& path) const {
        if (!station_) return false;
        const LogState& log = station_->run_time.Log;
        return (log.ScanLogging && path == log.ScanFileName) ||
               (log.EventLogging && path == log.EventFileName);
    }
    static std::unique_ptr<VirtualEventLoop> first_loop(std::uint32_t seed) {
        Dice dice(seed + 77);
        constexpr std::uint32_t Minutes = 60'000;
        const std::uint32_t tick =
            dice.chance(30) ? 0U - static_cast<std::uint32_t>(dice.number(1, 20)) * Minutes
                            : dice.bits();
        return std::make_unique<VirtualEventLoop>(
            WallTime{2026, dice.number(1, 12), dice.number(1, 28), dice.below(24), dice.below(60),
                     dice.below(60), dice.below(1000)},
            tick);
    }

    Dice dice_;
    test::MemoryFiles files_;
    test::FaultyFiles disk_{files_};
    Invariants rules_;
    WitnessFiles watched_files_{disk_, rules_};
    std::unique_ptr<VirtualEventLoop> loop_;
    PodClock clock_;
    std::unique_ptr<Cards> cards_;
    WitnessDriver witness_;
    Hands hands_{rules_, witness_,         disk_, nullptr, nullptr, 0, true, false,
                 {},     Pointer::Default, {},    0,       {}};
    Desktop desktop_{hands_};
    OperatorWindows windows_{hands_};
    FixedMemory memory_;
    Operator operator_{hands_};
    Figures figures_;
    std::unique_ptr<Station> station_;
    std::unique_ptr<Desk> desk_;
};

void run_actions(World& world, const Plan& plan, std::vector<std::string>& story) {
    std::string first;
    while (!world.rules().breach && !world.running()) world.start(first);
    story.push_back("start " + first);
    if (world.rules().breach) return;
    for (const Action& action : plan.actions) {
        story.emplace_back();
        std::string& told = story.back();
        bool exited = false;
        bool ended = false;
        try {
            world.hand().perform(action, told);
        } catch (const ProgramEnded& end) {
            ended = true;
            exited = end.exit_code == 0;
        } catch (const Killed&) {
            ended = true;
            ++world.figures().kills;
        }
        ++world.figures().actions;
        world.witness().action_done();
        Invariants& rules = world.rules();
        rules.known.disk_failed = world.hands().disk.struck();
        if (ended) {
            world.end(told, exited);
            while (!rules.breach && !world.running()) world.start(told);
        } else {
            rules.after_action();
            rules.expect(
                world.hands().pointer == Pointer::Default && world.hands().wait_message.empty(),
                Rule::NothingStaysBusy, "the pointer or the message window");
        }
        world.check_memory();
        world.tidy_up();
        if (rules.breach) return;
    }
}

}  // namespace

void Figures::add(const Figures& other) {
    actions += other.actions;
    starts += other.starts;
    driver_calls += other.driver_calls;
    virtual_ms += other.virtual_ms;
    link_errors += other.link_errors;
    records += other.records;
    disk_faults += other.disk_faults;
    kills += other.kills;
}

Outcome run(const Plan& plan) {
    Outcome outcome;
    World world(plan, false);
    run_actions(world, plan, outcome.story);
    world.close(outcome);
    return outcome;
}

Outcome run_unattended(std::uint32_t seed, int days, const std::function<void(int)>& on_day) {
    constexpr long long Day_ms = 24LL * 3600 * 1000;
    const std::string path = "/data/day.DAT";
    Outcome outcome;
    Plan plan;
    plan.seed = seed;
    World world(plan, true);
    Invariants& rules = world.rules();
    std::string told;
    world.start(told);
    Station& station = *rules.world.station;
    MainWindow& desk = rules.world.desk->main_window;
    rules.select_all();
    desk.run(Command::SelectAll);
    for (PodConfig& pod : station.configuration.ZavConfig) pod.ContScan = 1;
    desk.run(Command::Trigger);
    for (KnownPod& pod : rules.known.pods) pod.log_scans = pod.selected;
    for (PodStatus& status : station.run_time.Status) status.LogScan = status.connected();
    for (int day = 1; day <= days && !rules.breach; ++day) {
        station.run_time.Log.ScanFileName = path;
        station.run_time.Log.ScanIntervalChoice = rules.known.interval_ms = 60'000;
        rules.known.last_record_ms = world.loop().elapsed_ms();
        rules.known.logging[ScanLog] = true;
        desk.run(Command::StartScanLog);
        world.loop().run_for(Day_ms);
        world.witness().action_done();
        rules.after_action();
        rules.known.logging[ScanLog] = false;
        desk.run(Command::StopScanLog);
        rules.check_log(path);
        world.check_memory();
        world.remove_log(path);
        on_day(day);
    }
    world.close(outcome);
    return outcome;
}

}  // namespace kavorix::soak
