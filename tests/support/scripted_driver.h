#pragma once

// A card driver that answers from a script and remembers every call. Levers:
//
//   cards              address -> handle that Zav_Connect gives; no card elsewhere
//   init_status        what Zav_Init returns
//   present_mark       what Zav_Init leaves for a pod that is not there (its contents are
//   undefined) version            what Zav_DLLVersion writes, cut at 34 bytes and never terminated
//   pod(n).present     the pod answers Zav_Init; all calls fail for one that is not there
//   pod(n).ident       status reply to "ST", offered on stream 3; empty: "ST" is never answered
//   pod(n).reply_ms    time that the status reply takes
//   pod(n).tx_status   what Zav_Tx returns (1 = transmit error; any number)
//   pod(n).test[s]     what Zav_Test answers whatever is waiting (-1 = no answer; any number)
//   pod(n).idle_status what a read returns while nothing waits
//   pod(n).waiting[s]  replies queued on a stream, each with its status, count, values, codes, text
//                      and the time from which it waits
//   pod(n).feed[s]     a reply that comes again and again (every 0 ms: endless data)
//   at_call()          code that runs inside every call, after it was recorded
//   recording          false: calls are only counted, for long runs

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/driver.h"
#include "platform/event_loop.h"

namespace kavorix::test {

struct Reply {
    std::int16_t status = 0;
    std::int16_t count = 0;           // what the driver says the pod had to give
    std::vector<float> values;        // written as far as the caller has room
    std::vector<std::int16_t> codes;  // likewise
    std::string text;                 // likewise
    long long ready_ms = 0;           // waits from this virtual time on
};

// Scan results with a code per value, 0 where none is given.
Reply scan(std::vector<float> values, std::vector<std::int16_t> codes = {});
// An answer on stream 1.
Reply single(float first, float second, std::int16_t code = 0);
// A text or a block of event bytes.
Reply text(std::string bytes);
// A read that fails with a status; 1 = receive error.
Reply failure(std::int16_t status = 1);

struct Feed {
    int period_ms = 1000;
    Reply reply;
    long long next_ms = 0;
};

struct ScriptedPod {
    bool present = false;
    std::string ident;
    int reply_ms = 0;
    std::int16_t tx_status = 0;
    std::int16_t idle_status = 2;
    std::array<std::optional<std::int16_t>, StreamCount> test;
    std::array<std::deque<Reply>, StreamCount> waiting;
    std::array<std::optional<Feed>, StreamCount> feed;
};

// "Tx 3 TR", "Test 3/0", "String 3/3", "Numeric 3/0", "Connect C800", "Init 0", "Disconnect 0",
// "PowerOff 0", "DLLVersion", "DLLDelay 100"; bytes that are no printable ASCII as <40>.
struct DriverCall {
    long long time_ms = 0;
    std::string text;
};

class ScriptedDriver : public Driver {
  public:
    explicit ScriptedDriver(const EventLoop& loop) : loop_(loop), first_tick_(loop.tick_count()) {}

    std::map<std::int16_t, std::int16_t> cards;
    std::int16_t init_status = 0;
    std::int16_t present_mark = 0;
    std::string version = "Scripted driver 1.0";
    bool recording = true;

    ScriptedPod& pod(int number) { return pods_[static_cast<std::size_t>(number - 1)]; }
    // Puts a pod on the network.
    ScriptedPod& add_pod(int number, std::string ident);
    void at_call(std::function<void(const DriverCall&)> action) { at_call_ = std::move(action); }

    std::vector<DriverCall> calls;
    long long tests = 0;  // Zav_Test calls
    long long reads = 0;  // Zav_Numeric and Zav_String calls
    long long sends = 0;  // Zav_Tx calls

    // The recorded calls whose text begins so, without and with their times ("1010 Tx 3 HA");
    // forgetting nothing.
    std::vector<std::string> recorded(const std::string& beginning = "") const;
    std::vector<std::string> timed(const std::string& beginning) const;

    std::int16_t Zav_Connect(std::int16_t address) override;
    std::int16_t Zav_Init(std::span<std::int16_t, MaxZavs> present, std::int16_t handle) override;
    void Zav_Disconnect(std::int16_t handle) override;
    std::int16_t Zav_Tx(std::int16_t pod, std::string_view command, std::int16_t handle) override;
    std::int16_t Zav_Test(std::int16_t pod, std::int16_t stream, std::int16_t handle) override;
    std::int16_t Zav_String(std::int16_t pod, std::int16_t stream, std::span<char> buffer,
                            std::int16_t handle) override;
    std::int16_t Zav_Numeric(std::int16_t pod, std::int16_t stream, std::int16_t& count,
                             std::span<float> values, std::span<std::int16_t> codes,
                             std::int16_t handle) override;
    // Most significant byte first.
    std::array<std::int16_t, 4> Zav_ValToByte(float value) override;
    void Zav_DLLVersion(std::span<char, 34> text) override;
    void Zav_PowerOff(std::int16_t handle) override;
    void Zav_DLLDelay(std::int16_t milliseconds) override;

  private:
    long long now() const { return static_cast<std::uint32_t>(loop_.tick_count() - first_tick_); }
    template <class Describe>
    void record(Describe&& describe);
    const Reply* next(std::int16_t pod, std::int16_t stream);
    void taken(std::int16_t pod, std::int16_t stream);

    const EventLoop& loop_;
    std::uint32_t first_tick_;
    std::array<ScriptedPod, MaxZavs> pods_;
    std::function<void(const DriverCall&)> at_call_;
};

}  // namespace kavorix::test
