// The table of states against the facts of the alarm standards, state by event.

#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "alarms/alarm_states.h"

namespace kavorix::test {
namespace {

// As the standards print it: where the alarm goes ("-" nowhere, "!" refused). Three letters are for
// rules that wait for an acknowledgement after return, that do not, and that latch.
constexpr const char* Facts = R"(
state comes goes acknowledge reset realarm
A     B     -    !           -     -
B     -     DAE  C           !     -
C     -     AAF  -           -     B
D     B     -    A           -     -
E     B     -    F           !     -
F     B     -    -           A     -
)";

constexpr AlarmEvent Columns[] = {AlarmEvent::Comes, AlarmEvent::Goes, AlarmEvent::Acknowledge,
                                  AlarmEvent::Reset, AlarmEvent::ReAlarm};

AlarmLife life_of(char letter) {
    return static_cast<AlarmLife>(letter - 'A');
}

TEST(AlarmStates, EveryStateAndEventAsTheStandardsPrintThem) {
    std::istringstream lines(Facts);
    std::string line;
    std::getline(lines, line);
    std::getline(lines, line);
    int cells = 0;
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string state, cell;
        words >> state;
        for (const AlarmEvent event : Columns) {
            words >> cell;
            for (int rules = 0; rules < 3; ++rules, ++cells) {
                const AlarmState from{life_of(state[0]), NotWithheld};
                const char to = cell[cell.size() == 3 ? static_cast<std::size_t>(rules) : 0];
                const AlarmStep step = alarm_step(from, event, static_cast<OnReturn>(rules));
                const bool moves = to >= 'A';
                EXPECT_EQ(step.next.life, moves ? life_of(to) : from.life) << line;
                EXPECT_EQ(step.changed, moves) << line;
                EXPECT_EQ(!step.refused.empty(), to == '!') << line;
                EXPECT_EQ(step.horn, to == 'B') << line;
            }
        }
    }
    EXPECT_EQ(cells, 6 * 5 * 3);
}

constexpr std::pair<AlarmEvent, AlarmEvent> Kinds[] = {
    {AlarmEvent::Shelve, AlarmEvent::Unshelve},
    {AlarmEvent::Suppress, AlarmEvent::Unsuppress},
    {AlarmEvent::TakeOut, AlarmEvent::PutBack}};

// Withheld in any of the seven ways: nothing sounds, nothing can be acknowledged, further kinds are
// added; at the end of the last the condition decides, whatever was acknowledged before.
TEST(AlarmStates, WithheldInEveryWayAndForEveryLife) {
    for (int mask = 1; mask < 8; ++mask)
        for (int life = 0; life < AlarmLives; ++life)
            for (int rules = 0; rules < 3; ++rules) {
                const auto on_return = static_cast<OnReturn>(rules);
                const AlarmState from{static_cast<AlarmLife>(life),
                                      static_cast<std::uint8_t>(mask)};
                const auto step = [&](AlarmEvent event) {
                    return alarm_step(from, event, on_return);
                };
                EXPECT_FALSE(step(AlarmEvent::Acknowledge).refused.empty());
                EXPECT_FALSE(step(AlarmEvent::Reset).refused.empty());
                EXPECT_FALSE(step(AlarmEvent::ReAlarm).changed);
                for (const AlarmEvent event : {AlarmEvent::Comes, AlarmEvent::Goes}) {
                    EXPECT_EQ(step(event).next.withheld, mask);
                    EXPECT_FALSE(step(event).horn);
                    EXPECT_EQ(step(event).changed, from.active() == (event == AlarmEvent::Goes) &&
                                                       step(event).next.active() != from.active());
                }
                for (int kind = 0; kind < 3; ++kind) {
                    const bool has = (mask >> kind & 1) != 0;
                    const AlarmStep more = step(Kinds[kind].first);
                    EXPECT_EQ(more.next,
                              (AlarmState{from.life, static_cast<std::uint8_t>(mask | 1 << kind)}));
                    EXPECT_EQ(more.changed, !has || kind == 0);  // a shelf gets another end
                    const AlarmStep end = step(Kinds[kind].second);
                    EXPECT_EQ(end.refused.empty(), has);
                    EXPECT_TRUE(has || !end.horn);
                    if (!has) continue;
                    const int left = mask & ~(1 << kind);
                    EXPECT_EQ(end.next.withheld, left);
                    if (left != 0) {
                        EXPECT_EQ(end.next.life, from.life);
                        EXPECT_FALSE(end.horn);
                        continue;
                    }
                    const std::map<char, char> ends = {{'A', 'A'}, {'B', 'B'}, {'C', 'B'},
                                                       {'D', 'A'}, {'E', 'E'}, {'F', 'F'}};
                    const char to = ends.at(static_cast<char>('A' + life));
                    EXPECT_EQ(end.next.life, life_of(to));
                    EXPECT_EQ(end.horn, to == 'B' || to == 'E');
                }
            }
}

// What goes on beneath, told by what is there when it ends.
TEST(AlarmStates, OccurrencesBeneathDecideTheEnd) {
    const auto after = [](char life, std::vector<AlarmEvent> events, OnReturn on_return) {
        AlarmState state{life_of(life), Shelved};
        for (const AlarmEvent event : events) state = alarm_step(state, event, on_return).next;
        state = alarm_step(state, AlarmEvent::Unshelve, on_return).next;
        return static_cast<char>('A' + static_cast<int>(state.life));
    };
    using enum AlarmEvent;
    using enum OnReturn;
    EXPECT_EQ(after('A', {Comes}, WaitForAcknowledge), 'B');
    EXPECT_EQ(after('A', {Comes, Goes}, WaitForAcknowledge), 'A');
    EXPECT_EQ(after('B', {Goes}, WaitForAcknowledge), 'A');
    EXPECT_EQ(after('A', {Comes, Goes}, Latch), 'E');
    EXPECT_EQ(after('C', {Goes}, Latch), 'F');
    EXPECT_EQ(after('F', {Comes, Goes}, Latch), 'E');
    EXPECT_EQ(after('C', {Goes, Comes}, BackToNormal), 'B');
}

TEST(AlarmStates, NamesAreReadBack) {
    for (int life = 0; life < AlarmLives; ++life)
        for (std::uint8_t withheld = 0; withheld < 8; ++withheld) {
            const AlarmState state{static_cast<AlarmLife>(life), withheld};
            EXPECT_EQ(state_of(state_name(state)), state);
        }
    EXPECT_EQ(state_name({AlarmLife::Acknowledged, Shelved | OutOfService}),
              "acknowledged+shelved+out-of-service");
    EXPECT_EQ(state_of("normal+"), std::nullopt);
}

}  // namespace
}  // namespace kavorix::test
