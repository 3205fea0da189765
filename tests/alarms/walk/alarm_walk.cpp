// Random readings, failures, operators and restarts against a model of ten lines.
//
//     alarm_walk [--steps COUNT] [--seed SEED]
//
// After every step each alarm has the state that the model has. Exit code 0 when it always had, 1
// when not (the step is named), 2 for wrong arguments.

#include <cmath>
#include <cstdio>
#include <random>
#include <string>

#include "alarms/desk_rig.h"
#include "alarms/numbers_of.h"

namespace kavorix::test {
namespace {

// One alarm as three independent things: whether its condition holds, whether that was seen, and by
// what it is withheld; and whether it is held after it went.
struct Model {
    AlarmRule rule;
    bool active = false, seen = true, held = false;
    int withheld = 0;
    std::int64_t since = -1;  // the delay that runs
    std::int64_t shelf = 0;   // moment of its end, or OneShotShelf

    void come() { active = true, seen = held = false; }
    void go() {
        active = false, held = rule.latch;
        seen = seen || (!held && (withheld != 0 || !rule.acknowledge_return));
        if (shelf == OneShotShelf) end(Shelved);
    }
    void acknowledge() { seen = seen || withheld == 0; }
    void reset() { held = held && (active || !seen || withheld != 0); }
    void end(int kind) {
        if ((withheld & kind) == 0) return;
        withheld &= ~kind;
        if (kind == Shelved) shelf = 0;
        if (withheld == 0) seen = !active && (seen || !held);
    }
    AlarmState state() const {
        using enum AlarmLife;
        const AlarmLife life = active ? (seen ? Acknowledged : Unacknowledged)
                               : held ? (seen ? LatchedAcknowledged : Latched)
                                      : (seen ? Normal : Returned);
        return {life, static_cast<std::uint8_t>(withheld)};
    }
    // A reading; NaN says nothing.
    void read(double value, std::int64_t now) {
        const double up = rule.kind == AlarmKind::Low ? -1 : 1;
        const double x = up * value, limit = up * rule.limit;
        const bool turns = active ? x < limit - rule.hysteresis : x > limit;
        const double delay_s = active ? rule.off_delay_s : rule.on_delay_s;
        since = !turns ? -1 : since < 0 ? now : since;
        if (!turns || static_cast<double>(now - since) < 1000 * delay_s) return;
        since = -1;
        active ? go() : come();
    }
};

std::vector<AlarmRule> walked_rules() {
    const auto with = [](double hysteresis, double on, double off, bool latch, bool wait) {
        return [=](AlarmRule& of) {
            of.hysteresis = hysteresis;
            of.on_delay_s = on;
            of.off_delay_s = off;
            of.latch = latch;
            of.acknowledge_return = wait;
        };
    };
    return {rule("50/1/high", 1, with(0, 0, 0, false, true)),
            rule("50/2/high", 1, with(1, 0, 0, false, false)),
            rule("50/3/low", -1, with(0.5, 3, 0, true, true)),
            rule("50/4/high", 0, with(1, 2, 4, false, true)),
            rule("50/5/low", 0, with(0, 0, 2, true, false)),
            rule("50/6/high", 2, with(3, 1, 1, true, true))};
}

class Walk {
  public:
    explicit Walk(std::uint32_t seed) : random_(seed), rig_(walked_rules(), 20000) {
        rig_.place.files = 3;
        for (const AlarmRule& of : rig_.rules) models_.push_back({of});
    }

    bool run(int steps) {
        for (int step = 0; step < steps; ++step) {
            const std::string done = take_step();
            rig_.told.clear();
            rig_.records.clear();
            for (const Model& model : models_) {
                const Alarm* alarm = rig_.desk->find(alarm_id(model.rule));
                if (alarm->state == model.state()) continue;
                std::printf("step %d, %s: %s is %s, should be %s\n", step, done.c_str(),
                            alarm->id.c_str(), state_name(alarm->state).c_str(),
                            state_name(model.state()).c_str());
                return false;
            }
        }
        return true;
    }

  private:
    int below(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

    std::string take_step() {
        Model& model = models_[static_cast<std::size_t>(below(static_cast<int>(models_.size())))];
        const std::string id = alarm_id(model.rule);
        AlarmDesk& desk = *rig_.desk;
        const auto& now = rig_.now;
        switch (below(40)) {
            case 0:
            case 1:
            case 2:
                desk.acknowledge(id, rig_.ann, now);
                model.acknowledge();
                return "acknowledge " + id;
            case 3:
            case 4:
                desk.reset(id, rig_.ann, now);
                model.reset();
                return "reset " + id;
            case 5:
                shelve(model, id, below(2) == 0 ? OneShotShelf : now.utc_ms + 1 + below(20'000));
                return "shelve " + id;
            case 6:
                desk.unshelve(id, rig_.ann, now);
                model.end(Shelved);
                return "unshelve " + id;
            case 7:
                desk.take_out(id, rig_.ann, now);
                model.withheld |= OutOfService;
                return "take out " + id;
            case 8:
                desk.put_back(id, rig_.ann, now);
                model.end(OutOfService);
                return "put back " + id;
            case 9:
                return below(25) == 0 ? restart() : set_clock();
            default:
                return read();
        }
    }

    void shelve(Model& model, const std::string& id, std::int64_t until) {
        rig_.desk->shelve(id, until, rig_.ann, rig_.now);
        model.withheld |= Shelved;
        model.shelf = until;
    }

    // Time passes, then the pod is read; some channels have errors.
    std::string read() {
        const int passed = 100 * below(30);
        now_ += passed;
        rig_.pass(passed);
        for (Model& model : models_)
            if (model.shelf > 0 && rig_.now.utc_ms >= model.shelf) model.end(Shelved);
        std::vector<float> values(models_.size());
        std::vector<std::int16_t> codes(models_.size());
        for (std::size_t i = 0; i < values.size(); ++i) {
            values[i] = static_cast<float>(below(17) - 8) / 2;
            const int luck = below(20);
            if (luck == 0) codes[i] = static_cast<std::int16_t>(129 + below(14));
            if (luck == 1) values[i] = NAN;
            models_[i].read(codes[i] != 0 ? NAN : values[i], now_);
        }
        rig_.desk->reading(49, values, codes, rig_.now);
        return "read";
    }

    // The clock is set; shelves end by ticks, which the model does not know: not while one runs.
    std::string set_clock() {
        for (const Model& model : models_)
            if (model.shelf > 0) return "nothing";
        rig_.now.utc_ms += (below(2) == 0 ? 1 : -1) * below(10'000'000);
        return "set the clock";
    }

    std::string restart() {
        if (below(2) == 0) rig_.desk->stop(rig_.now);
        rig_.now.tick_ms = static_cast<std::uint32_t>(random_());
        rig_.start();
        for (Model& model : models_) model.since = -1;
        return "restart";
    }

    std::mt19937 random_;
    DeskRig rig_;
    std::vector<Model> models_;
    std::int64_t now_ = 0;
};

int main_of(int argc, char** argv) {
    int steps = 20000, seed = 1;
    if (!numbers_of(argc, argv, {{"--steps", &steps}, {"--seed", &seed}})) {
        std::fputs("usage: alarm_walk [--steps COUNT] [--seed SEED]\n", stderr);
        return 2;
    }
    const bool passed = Walk(static_cast<std::uint32_t>(seed)).run(steps);
    if (passed) std::printf("%d steps: every alarm as the model has it\n", steps);
    return passed ? 0 : 1;
}

}  // namespace
}  // namespace kavorix::test

int main(int argc, char** argv) {
    return kavorix::test::main_of(argc, argv);
}
