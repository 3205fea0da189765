#pragma once

// One pod: reads commands, holds its configuration, scans, captures events and answers in four
// streams. It has no timers: every call first brings it up to the moment that it is made at.

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sim/analog_inputs.h"
#include "sim/commands.h"
#include "sim/digital_inputs.h"
#include "sim/event_queue.h"
#include "sim/held_settings.h"
#include "sim/scenario.h"
#include "sim/sim_clock.h"

namespace kavorix::sim {

class Pod {
  public:
    // Keeps references to both.
    Pod(const PodSettings& settings, SimClock& clock, const RandomSource& random);

    int number() const { return settings_.number; }
    int channels() const { return channels_; }
    const HeldSettings& held() const { return held_; }
    const PodSettings& settings() const { return settings_; }

    // Back to the state after power-up.
    void reset();

    // `answers_status` false: the status request is read and left unanswered.
    void command(std::string_view bytes, bool answers_status);

    // Whether a stream (0..3) holds data.
    bool waiting(int stream);

    // Takes the scan record: one value and code for each channel, as far as the spans reach. False
    // when there is none.
    bool take_scan(std::span<float> values, std::span<std::int16_t> codes);

    // Takes the oldest answer to a single-channel request: two values and a code.
    struct Answer {
        std::int64_t ready_ms = 0;
        std::array<float, 2> values{};
        std::int16_t code = 0;
    };
    std::optional<Answer> take_answer();

    // Takes events or a text into the buffer, leaving what they do not fill. False when there is
    // nothing.
    bool take_events(std::span<char> buffer);
    bool take_text(std::span<char> buffer);

  private:
    struct Text {
        std::int64_t ready_ms = 0;
        std::string text;
    };
    struct Scan {
        std::int64_t start_ms = 0;
        std::int64_t end_ms = 0;
        std::array<Reading, MostChannels> readings;
    };

    void advance();
    void start_scan(std::int64_t start_ms);
    void finish_scans();
    void capture_events();
    void report_levels();
    void send_due_texts();

    void apply(const Statement& statement);
    Refusal apply_channel(const Statement& statement);
    Refusal apply_pod(const Statement& statement);
    Refusal set_mode(HeldChannel& channel, const Statement& statement);
    Refusal set_group(const Statement& statement);
    void operate(const Statement& statement);
    void refuse(const Statement& statement, Refusal refusal);
    void answer_request(const Statement& statement);
    void set_default_modes();
    void push_text(std::string text);
    bool has_channel(int channel) const { return channel >= 1 && channel <= channels_; }
    Reading measure(int channel, double time_s);

    const PodSettings& settings_;
    SimClock& clock_;
    PodFamily family_;
    int channels_;
    AnalogInputs analog_;
    DigitalInputs digital_;
    HeldSettings held_;

    std::int64_t now_ms_ = 0;
    std::optional<Scan> running_;   // the scan under way
    std::optional<Scan> finished_;  // the last scan, not yet taken
    std::deque<Answer> answers_;
    EventQueue events_;
    std::int64_t captured_to_ms_ = 0;
    std::int64_t busy_until_ms_ = 0;  // with single-channel measurements
    int refused_ = 0;                 // statements since the reset
    std::deque<Text> texts_;
    std::vector<std::int64_t> next_text_ms_;  // of each text of the settings, -1 = no more
};

}  // namespace kavorix::sim
