#pragma once

// What the check sums beside a log say about it.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "logging/dat_reader.h"
#include "logging/log_sums.h"

namespace kavorix {

struct LogCheck {
    bool Present = false;             // there are sums; without, nothing is known
    std::uint64_t Records = 0;        // on the file, and named by the sums beside that
    std::uint64_t Verified = 0;       // of them
    std::uint64_t Uncovered = 0;      // on the file without a sum
    std::vector<std::string> Faults;  // the first ones, as sentences without their full stop
    std::uint64_t FaultCount = 0;

    bool good() const { return FaultCount == 0; }
    // "612 of 612 records verified", then each fault; lines ended by a line feed. Empty without
    // sums.
    std::string text() const;
};

// Follows a reader from item to item and compares.
class LogVerifier {
  public:
    // Null: there are no sums. The file outlives the verifier.
    explicit LogVerifier(File* sums);

    // An item that the reader has just come to, the last one included.
    void take(DatItem item, const DatReader& reader);

    const LogCheck& result() const { return check_; }
    // Of the record that came last: the sum that it should have, where that is another one.
    std::optional<std::uint32_t> expected() const { return expected_; }

  private:
    void take_record(const DatReader& reader);
    void end_run();
    void add_fault(const std::string& text);
    std::string run_name() const { return "run " + std::to_string(run_); }

    std::optional<SumReader> sums_;
    LogCheck check_;
    std::uint64_t header_at_ = 0;
    std::uint64_t run_ = 0;     // number
    std::uint64_t record_ = 0;  // number in the run
    bool covered_ = false;      // the sums tell of the run
    std::optional<std::uint32_t> expected_;
};

}  // namespace kavorix
