#pragma once

// The error codes of readings and their texts, and the number format of the views. An error code is
// a result code above HighestValidCode less HighestValidCode.

#include <cstdint>
#include <string>
#include <string_view>

#include "link/error_log.h"
#include "model/runtime.h"

namespace kavorix {

inline constexpr std::int16_t PendingResult = 13;
inline constexpr std::int16_t NotMeasured = 127;

// The text shown in the stream views; "Unknown error number: " and the code for a code without one.
std::string ZAVError(std::int16_t code);

// The short name shown in the table of scan results; empty for a code without one.
std::string_view DispZAVErr(std::int16_t code);

// The line that the error log gets: text, pod number, channel number (both 1-based) and card
// address. Empty for the codes that are not logged (PendingResult and NotMeasured).
std::string error_log_line(std::int16_t podNumber, std::int16_t channelNumber, std::int16_t code,
                           std::int16_t card_address);

// `value` with 0..6 decimals; any other number of decimals gives 6.
std::string FormatValue(float value, std::int16_t decimals);

// The decimals that a view shows of a channel's values: 0 for digital data (every channel of an 8R
// or 8S pod, channels 19 and 20 of a 7V or 7W pod), else 6. Channel number 1-based.
std::int16_t decimals_of(std::string_view type_code, int channel);

// Writes pod-reported channel errors to the error log, counts them and reports them.
class PodErrors {
  public:
    // All of it outlives this.
    PodErrors(ErrorLog& log, const InterfaceSettings& card, RunTime& run_time)
        : log_(log), card_(card), link_(run_time.Link), reports_(run_time.Reports) {}

    // Channel number 1-based; `code` is the error code.
    void LogZAVErr(Pod pod, std::int16_t channelNumber, std::int16_t code);

  private:
    ErrorLog& log_;
    const InterfaceSettings& card_;
    LinkState& link_;
    Reports& reports_;
};

}  // namespace kavorix
