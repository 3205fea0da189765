#pragma once

// Reads the four data streams of a pod through the driver and stores what they carry in the pod's
// status. Pod arguments are indices 0..49. A link failure is recorded and takes the pod out of the
// poll table.

#include <cstdint>

#include "acquire/result_codes.h"
#include "link/command_link.h"

namespace kavorix {

// Magnitudes below this count as zero.
inline constexpr float SmallestReading = 2.7E-19F;

class StreamDecoder {
  public:
    StreamDecoder(const CommandLink::Surroundings& surroundings, CommandLink& link,
                  PodErrors& errors)
        : with_(surroundings), link_(link), errors_(errors) {}

    // Scan results: values cleaned and scaled, peaks and trend sampler fed; channels in error are
    // logged.
    void read_stream0(int pod);

    // One answer to the oldest request of StreamRequests. A request that is neither "ME" nor "IN"
    // ends the program.
    void read_stream1(int pod);

    // Digital events, into the pod's event table from its first entry.
    void read_stream2(int pod);

    // A text, shortened unless auto-clear is on.
    void read_stream3(int pod);

  private:
    void take_reading(int pod, std::size_t channel);
    void take_single_result(int pod, std::size_t channel, const float (&values)[2],
                            std::int16_t code);
    void take_event_record(int pod, const unsigned char* record);

    CommandLink::Surroundings with_;
    CommandLink& link_;
    PodErrors& errors_;
};

// A stream-3 text as it is shown while auto-clear is off: a text beginning "C" keeps three
// characters, one beginning "H" a single one; any other becomes its first 4 characters, a blank,
// the 6th as a decimal number, the 7th (a blank for the code 0), a blank and the 9th.
std::string shortened_stream3_text(std::string_view text);

}  // namespace kavorix
