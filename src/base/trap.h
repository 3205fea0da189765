#pragma once

// Unexpected failures. Every entry procedure is wrapped once in trapped(); what escapes it as an
// exception is handed to the failure reporter, which tells the operator and ends the program.

#include <cstdint>
#include <exception>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>

namespace kavorix {

// Thrown to end the program from wherever it is: passes every trap and every event loop and is
// caught by main() alone. Not derived from std::exception, so that no handler of failures takes it
// for one.
struct ProgramEnded {
    int exit_code = 0;
};

class FailureReporter {
  public:
    virtual ~FailureReporter() = default;

    // Tells the operator, writes the error log and ends the program (throws ProgramEnded). `number`
    // is the value of the std::error_code behind the failure, 0 for a failure without one;
    // `location` names module and procedure.
    [[noreturn]] virtual void ReportError(std::int16_t number, std::string_view description,
                                          std::string_view location) = 0;
};

[[noreturn]] inline void report_and_end(FailureReporter& reporter, int number,
                                        std::string_view description, std::string_view location) {
    reporter.ReportError(static_cast<std::int16_t>(number), description, location);
    throw ProgramEnded{1};  // for compilers that do not follow [[noreturn]] through a virtual call
}

// Runs `body` and returns its result; any std::exception goes to `reporter` under the trace name
// `location`, for example trapped(reporter, "TX/TXString", [&] { ... }).
template <class Body>
decltype(auto) trapped(FailureReporter& reporter, std::string_view location, Body&& body) {
    try {
        return std::forward<Body>(body)();
    } catch (const ProgramEnded&) {
        throw;
    } catch (const std::system_error& failure) {
        report_and_end(reporter, failure.code().value(), failure.what(), location);
    } catch (const std::bad_alloc& failure) {
        report_and_end(reporter, static_cast<int>(std::errc::not_enough_memory), failure.what(),
                       location);
    } catch (const std::exception& failure) {
        report_and_end(reporter, 0, failure.what(), location);
    }
}

}  // namespace kavorix
