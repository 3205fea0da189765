#pragma once

// The contract of the interface card driver: the one way to the pods. Everything above talks to
// this interface; the simulated network, the loader of driver libraries and the scripted driver of
// the tests implement it.

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace kavorix {

// Pod numbers run from 1 to MaxZavs in every call; arrays over pods have the index pod number - 1.
inline constexpr int MaxZavs = 50;

// Longest list of channel values that a pod answers with.
inline constexpr int MaxChannels = 32;

// Streams that a pod answers in.
inline constexpr std::int16_t ReadingStream = 0;
inline constexpr std::int16_t RequestStream = 1;
inline constexpr std::int16_t EventStream = 2;
inline constexpr std::int16_t TextStream = 3;
inline constexpr int StreamCount = 4;

// Calls of one driver come from one thread. None of them throws, none keeps a reference to an
// argument, and none may block longer than the link needs (a few milliseconds a call), but for
// Zav_Connect, Zav_Init and Zav_DLLDelay. A driver never writes beyond the span it is given; apart
// from that its answers are not to be trusted: counts, codes, handles and status values can be any
// number, texts any bytes without a terminator.
class Driver {
  public:
    virtual ~Driver() = default;

    // Opens the card at `address` (C800 hexadecimal is -14336). Returns its handle, below 0 when no
    // card is there.
    virtual std::int16_t Zav_Connect(std::int16_t address) = 0;

    // Starts the pod network of an opened card. `present` holds 1 for each pod number to probe and
    // keeps 1 where a pod answered; what stands at the others is not defined. Returns 0 for
    // success, any other value for failure.
    virtual std::int16_t Zav_Init(std::span<std::int16_t, MaxZavs> present,
                                  std::int16_t handle) = 0;

    // Closes the card.
    virtual void Zav_Disconnect(std::int16_t handle) = 0;

    // Sends one command (bytes, no terminator) to one pod. Returns 0 = sent, 1 = transmit error;
    // callers take any other value for sent.
    virtual std::int16_t Zav_Tx(std::int16_t pod, std::string_view command,
                                std::int16_t handle) = 0;

    // Asks whether a stream of a pod holds data: 1 = data waiting, 0 = nothing, -1 = the pod does
    // not answer. Callers take any other value for nothing.
    virtual std::int16_t Zav_Test(std::int16_t pod, std::int16_t stream, std::int16_t handle) = 0;

    // Reads a text reply into `buffer`, at most its size; bytes that the reply does not fill are
    // left as they are. Returns 0 = a reply was read, any other value = nothing yet.
    virtual std::int16_t Zav_String(std::int16_t pod, std::int16_t stream, std::span<char> buffer,
                                    std::int16_t handle) = 0;

    // Reads numeric results. `count`: in, how many are asked for; out, how many the pod had to give
    // (not limited by the spans). Stream 0 fills a value and a result code per channel, stream 1
    // two values and one code. Returns 0 = read, 1 = receive error.
    virtual std::int16_t Zav_Numeric(std::int16_t pod, std::int16_t stream, std::int16_t& count,
                                     std::span<float> values, std::span<std::int16_t> codes,
                                     std::int16_t handle) = 0;

    // The four byte values (0..255) of a number in transmission order.
    virtual std::array<std::int16_t, 4> Zav_ValToByte(float value) = 0;

    // Writes the driver's version text.
    virtual void Zav_DLLVersion(std::span<char, 34> text) = 0;

    // Switches the pod network's power off.
    virtual void Zav_PowerOff(std::int16_t handle) = 0;

    // Blocks for the given time.
    virtual void Zav_DLLDelay(std::int16_t milliseconds) = 0;
};

}  // namespace kavorix
