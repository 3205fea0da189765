#pragma once

// A failure reporter that remembers what it was told, as "number location: description", and ends
// the program as the real one does.

#include <string>
#include <vector>

#include "base/trap.h"

namespace kavorix::test {

class RecordingFailures : public FailureReporter {
  public:
    [[noreturn]] void ReportError(std::int16_t number, std::string_view description,
                                  std::string_view location) override {
        reports.push_back(std::to_string(number) + " " + std::string(location) + ": " +
                          std::string(description));
        throw ProgramEnded{1};
    }

    std::vector<std::string> reports;
};

}  // namespace kavorix::test
