#pragma once

// Between the station and its surroundings: a driver and a disk that tell the invariants what
// crosses them.

#include <memory>
#include <optional>
#include <string>

#include "soak/invariants.h"

namespace kavorix::soak {

// A defect built in on purpose, to see that it is found.
enum class Sabotage {
    None,
    SwallowedError,   // a failed test is taken for "nothing there"
    ChangedReading,   // a reading reaches the station other than the pod gave it
    WrongPod,         // a command goes to the next pod as well
    RemovedPodPolled  // a pod that was removed is asked for data
};

class WitnessDriver : public Driver {
  public:
    WitnessDriver(Driver& network, Invariants& rules, Sabotage sabotage)
        : network_(network), rules_(rules), sabotage_(sabotage) {}

    // A text stands on the message line.
    void message_shown(std::string_view text);
    // A status query begins and ends: its pods are commanded directly.
    void begin_query() { querying_ = true; }
    void end_query();
    // A strain gauge is initialised: its dialog tells of failures itself.
    void direct(bool on) { direct_ = on; }
    // A new program.
    void restart();

    void action_done() {
        calls_of_all += calls;
        calls = 0;
    }

    long long calls = 0;                           // of the action under way
    long long calls_of_all = 0;                    // of those before
    std::uint64_t digest = 14695981039346656037U;  // of everything that crossed

    std::int16_t Zav_Connect(std::int16_t address) override;
    std::int16_t Zav_Init(std::span<std::int16_t, MaxZavs> present, std::int16_t handle) override;
    void Zav_Disconnect(std::int16_t handle) override { network_.Zav_Disconnect(handle); }
    std::int16_t Zav_Tx(std::int16_t pod, std::string_view command, std::int16_t handle) override;
    std::int16_t Zav_Test(std::int16_t pod, std::int16_t stream, std::int16_t handle) override;
    std::int16_t Zav_String(std::int16_t pod, std::int16_t stream, std::span<char> buffer,
                            std::int16_t handle) override;
    std::int16_t Zav_Numeric(std::int16_t pod, std::int16_t stream, std::int16_t& count,
                             std::span<float> values, std::span<std::int16_t> codes,
                             std::int16_t handle) override;
    std::array<std::int16_t, 4> Zav_ValToByte(float value) override {
        return network_.Zav_ValToByte(value);
    }
    void Zav_DLLVersion(std::span<char, 34> text) override { network_.Zav_DLLVersion(text); }
    void Zav_PowerOff(std::int16_t handle) override { network_.Zav_PowerOff(handle); }
    void Zav_DLLDelay(std::int16_t milliseconds) override { network_.Zav_DLLDelay(milliseconds); }

  private:
    bool count_call(std::int16_t pod);
    bool is_preamble(std::int16_t pod, std::string_view command);
    void note(std::uint64_t value) { digest = (digest ^ value) * 1099511628211U; }

    Driver& network_;
    Invariants& rules_;
    Sabotage sabotage_;
    // The pod that was last sent the "CO" that a beginning transmission may start with, 0 before
    // the first; nothing once it has sent something else.
    std::optional<int> preamble_;
    bool querying_ = false;
    bool direct_ = false;
    PodSet awaited_;
};

class WitnessFiles : public Files {
  public:
    WitnessFiles(Files& behind, Invariants& rules) : behind_(behind), rules_(rules) {}

    std::unique_ptr<File> open(const std::string& path, OpenMode mode) override;
    bool exists(const std::string& path) override { return behind_.exists(path); }
    void remove(const std::string& path) override { behind_.remove(path); }
    void rename(const std::string& from, const std::string& to) override {
        behind_.rename(from, to);
    }
    void make_directories(const std::string& path) override { behind_.make_directories(path); }
    void sync_directory(const std::string& directory) override {
        behind_.sync_directory(directory);
    }
    FileKind kind(const std::string& path) override { return behind_.kind(path); }
    bool same_file(const std::string& a, const std::string& b) override {
        return behind_.same_file(a, b);
    }
    std::unique_ptr<FileLock> lock(const std::string& path) override { return behind_.lock(path); }
    void check_writable(const std::string& path) override { behind_.check_writable(path); }

  private:
    Files& behind_;
    Invariants& rules_;
};

}  // namespace kavorix::soak
