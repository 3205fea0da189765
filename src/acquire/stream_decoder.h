#pragma once

// Reads the four data streams of a pod through the driver and stores what they carry in the pod's
// status. What a failure of the link means for the pod is up to who asked.

#include <cstdint>

#include "acquire/result_codes.h"
#include "platform/dialogs.h"
#include "platform/driver.h"

namespace kavorix {

// Magnitudes below this count as zero.
inline constexpr float SmallestReading = 2.7E-19F;

// What came of a reading of a stream.
enum class Decoded { Done, Nothing, Failed };

class StreamDecoder {
  public:
    // What it works with; all of it outlives this.
    struct Surroundings {
        Driver& driver;
        Dialogs& dialogs;
        PodErrors& errors;
        const Configuration& configuration;
        RunTime& run_time;
    };
    explicit StreamDecoder(const Surroundings& surroundings)
        : with_(surroundings), status_(with_.run_time.Status) {}

    // The stream of this number by the function below.
    Decoded read(Pod pod, std::int16_t stream, const Moment& now);

    // Scan results: values cleaned and scaled, peaks and trend sampler fed; channels in error are
    // logged. Failed and Nothing leave the last record as it was.
    Decoded read_stream0(Pod pod, const Moment& now);

    // One answer to the oldest request of StreamRequests, decoded even when it came with a failure.
    // A request that is neither "ME" nor "IN" ends the program.
    Decoded read_stream1(Pod pod);

    // Digital events, into the pod's event table from its first entry.
    Decoded read_stream2(Pod pod);

    // A text, shortened unless auto-clear is on, taken even when it came with a failure.
    Decoded read_stream3(Pod pod);

  private:
    void take_reading(Pod pod, std::size_t channel);
    void feed_trend(Pod pod, std::size_t channel, float value);
    void take_answer(Pod pod, const float (&values)[2], std::int16_t code);
    void take_single_result(Pod pod, std::size_t channel, const float (&values)[2],
                            std::int16_t code);
    void take_event_record(Pod pod, const unsigned char* record);
    std::int16_t card_handle() const { return with_.configuration.Interface.CardHandle; }

    Surroundings with_;
    PodStatuses& status_;
};

// A stream-3 text as it is shown while auto-clear is off: a text beginning "C" keeps three
// characters, one beginning "H" a single one; any other becomes its first 4 characters, a blank,
// the 6th as a decimal number, the 7th (a blank for the code 0), a blank and the 9th.
std::string shortened_stream3_text(std::string_view text);

}  // namespace kavorix
