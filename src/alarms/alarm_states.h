#pragma once

// The life of an alarm as one table: nine states of the alarm standards of process industry, of
// which six are the life of the alarm itself, and three ways in which it is withheld from the
// operator, which may hold together. Beneath them the condition goes on being evaluated.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavorix {

enum class AlarmLife : std::uint8_t {
    Normal,               // A
    Unacknowledged,       // B: active, nobody has seen it
    Acknowledged,         // C: active, seen
    Returned,             // D: no longer active, nobody has seen it
    Latched,              // E: no longer active, held, nobody has seen it
    LatchedAcknowledged,  // F: no longer active, held until it is reset
};
inline constexpr int AlarmLives = 6;

// Ways of being withheld, as bits.
enum Withheld : std::uint8_t {
    NotWithheld = 0,
    Shelved = 1,       // G: by the operator, for a time
    Suppressed = 2,    // H: by design, because another alarm says it all
    OutOfService = 4,  // I: by the operator, until it is put back
};

struct AlarmState {
    AlarmLife life = AlarmLife::Normal;
    std::uint8_t withheld = NotWithheld;

    bool active() const {
        return life == AlarmLife::Unacknowledged || life == AlarmLife::Acknowledged;
    }
    // Calls for the operator: acknowledging is what it waits for.
    bool unseen() const {
        return withheld == NotWithheld &&
               (life == AlarmLife::Unacknowledged || life == AlarmLife::Returned ||
                life == AlarmLife::Latched);
    }
    // Sounds, as long as it is not silenced.
    bool loud() const {
        return withheld == NotWithheld &&
               (life == AlarmLife::Unacknowledged || life == AlarmLife::Latched);
    }
    // Nothing to show and nothing to keep: normal, at most suppressed, which the alarm that does it
    // tells.
    bool idle() const {
        return life == AlarmLife::Normal && (withheld & ~unsigned{Suppressed}) == NotWithheld;
    }
    bool operator==(const AlarmState&) const = default;
};

enum class AlarmEvent : std::uint8_t {
    Comes,        // the condition, delays and hysteresis included
    Goes,         // likewise
    Acknowledge,  // by the operator, as the next
    Reset,
    ReAlarm,  // acknowledged and still active after the time that the rule sets
    Shelve,
    Unshelve,
    Suppress,
    Unsuppress,
    TakeOut,
    PutBack,
};

// What becomes of an unacknowledged alarm whose condition goes, and of a latching one.
enum class OnReturn : std::uint8_t {
    WaitForAcknowledge,
    BackToNormal,
    Latch,
};

struct AlarmStep {
    AlarmState next;
    bool changed = false;      // something to record; beneath a shelf this is the occurrence alone
    bool horn = false;         // sounds from now on, even if it was silenced
    std::string_view refused;  // why the operator cannot do this now; empty otherwise
};

AlarmStep alarm_step(AlarmState state, AlarmEvent event, OnReturn on_return);

// "unacknowledged", "acknowledged+shelved", ...; the state of such a text, nothing for any other.
std::string state_name(AlarmState state);
std::optional<AlarmState> state_of(std::string_view name);

}  // namespace kavorix
