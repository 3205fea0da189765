#pragma once

// One pod: reads commands, holds its configuration, scans, captures events and answers in four
// streams. It has no timers: every call first brings it up to the moment that it is made at.

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/commands.h"
#include "sim/event_capture.h"
#include "sim/front_end.h"
#include "sim/held_settings.h"
#include "sim/scanner.h"
#include "sim/scenario.h"
#include "sim/sim_clock.h"

namespace kavorix::sim {

class Pod {
  public:
    // Keeps references to the settings and the clock.
    Pod(const PodSettings& settings, SimClock& clock, const RandomSource& random);
    Pod(const Pod&) = delete;
    Pod& operator=(const Pod&) = delete;

    int channels() const { return front_.channels(); }
    const HeldSettings& held() const { return held_; }

    // Back to the state after power-up, in the midst of whatever it does.
    void reset();

    // `answers_status` false: the status request is read and left unanswered.
    void command(std::string_view bytes, bool answers_status);

    // Whether a stream (0..3) holds data that came at least `delay_ms` ago.
    bool waiting(int stream, int delay_ms = 0);

    // Each takes the oldest data of a stream, if there is any: a scan record, an answer to a
    // single-channel request, at most `size` bytes of events, a text.
    std::optional<FrontEnd::Readings> take_scan();
    struct Answer {
        std::int64_t ready_ms = 0;
        std::array<float, 2> values{};
        std::int16_t code = 0;
    };
    std::optional<Answer> take_answer();
    std::optional<std::string> take_events(std::size_t size);
    std::optional<std::string> take_text();

  private:
    struct Text {
        std::int64_t ready_ms = 0;
        std::string text;
    };

    void advance();
    void send_due_texts();
    void push_text(std::string text);

    void apply(const Statement& statement);
    Refusal apply_to_pod(const Statement& statement);
    Refusal apply_to_channel(const Statement& statement);
    void operate(const Statement& statement);
    Refusal set_mode(HeldChannel& channel, const Statement& statement);
    Refusal set_group(const Statement& statement);
    void set_default_modes();
    void refuse(const Statement& statement, Refusal refusal);
    void answer_request(const Statement& statement);
    Reading initialise_strain(int channel, double time_s, Answer& answer);
    bool has_channel(int channel) const { return channel >= 1 && channel <= channels(); }
    HeldChannel& held_channel(int channel) {
        return held_.channels.at(static_cast<std::size_t>(channel - 1));
    }

    const PodSettings& settings_;
    SimClock& clock_;
    HeldSettings held_;
    FrontEnd front_;
    Scanner scanner_;
    EventCapture events_;

    std::int64_t now_ms_ = 0;
    std::deque<Answer> answers_;
    std::int64_t busy_until_ms_ = 0;  // with single-channel measurements
    std::deque<Text> texts_;
    std::vector<std::int64_t> next_text_ms_;  // of each text of the settings, -1 = no more
    int refused_ = 0;                         // statements since the reset
};

}  // namespace kavorix::sim
