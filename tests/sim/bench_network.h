#pragma once

// A simulated network on a virtual clock, used as a driver's caller would. send() takes a command
// with numbers in single quotes and sends the bytes; scan(), answer(), events(), text() read what
// is waiting on a stream.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/numbers.h"
#include "platform/virtual_event_loop.h"
#include "sim/network.h"
#include "sim/scenario_file.h"

namespace kavorix::test {

inline sim::Scenario scenario_of(std::string_view text) {
    const auto loaded = sim::load_scenario(text, "test.toml");
    for (const std::string& error : loaded.errors) ADD_FAILURE() << error;
    return loaded.scenario.value_or(sim::Scenario());
}

struct ScanRecord {
    std::vector<float> values;
    std::vector<std::int16_t> codes;
    bool operator==(const ScanRecord&) const = default;
};

class BenchNetwork {
  public:
    explicit BenchNetwork(const sim::Scenario& scenario) : network(scenario, loop) { connect(); }
    explicit BenchNetwork(std::string_view text) : BenchNetwork(scenario_of(text)) {}

    VirtualEventLoop loop;
    sim::Network network;
    std::array<std::int16_t, MaxZavs> present{};
    std::int16_t handle = 0;

    void connect() {
        handle = network.Zav_Connect(-14336);
        present.fill(1);
        network.Zav_Init(present, handle);
    }

    std::int16_t send(std::int16_t pod, std::string_view command) {
        return network.Zav_Tx(pod, bytes_of(command), handle);
    }

    // The command with each quoted number replaced by its four bytes.
    std::string bytes_of(std::string_view command) {
        std::string bytes;
        while (!command.empty()) {
            const auto quote = command.find('\'');
            bytes += command.substr(0, quote);
            if (quote == std::string_view::npos) break;
            const auto end = command.find('\'', quote + 1);
            const float value = leading_single(command.substr(quote + 1, end - quote - 1));
            for (const std::int16_t byte : network.Zav_ValToByte(value))
                bytes += static_cast<char>(byte);
            command.remove_prefix(end + 1);
        }
        return bytes;
    }

    bool waiting(std::int16_t pod, std::int16_t stream) {
        return network.Zav_Test(pod, stream, handle) == 1;
    }

    std::optional<ScanRecord> scan(std::int16_t pod) {
        ScanRecord record{std::vector<float>(32), std::vector<std::int16_t>(32)};
        std::int16_t count = 32;
        if (network.Zav_Numeric(pod, ReadingStream, count, record.values, record.codes, handle) !=
            0)
            return std::nullopt;
        record.values.resize(static_cast<std::size_t>(count));
        record.codes.resize(static_cast<std::size_t>(count));
        return record;
    }

    // Triggers and waits until the scan is there.
    ScanRecord triggered_scan(std::int16_t pod) {
        send(pod, "TR");
        for (int waited_ms = 0; waited_ms < 200000; waited_ms += 10) {
            if (waiting(pod, ReadingStream)) return scan(pod).value();
            loop.advance(10);
        }
        ADD_FAILURE() << "no scan";
        return {std::vector<float>(32), std::vector<std::int16_t>(32)};
    }

    struct Answer {
        float first = 0;
        float second = 0;
        std::int16_t code = 0;
        bool operator==(const Answer&) const = default;
    };
    std::optional<Answer> answer(std::int16_t pod) {
        std::array<float, 2> values{};
        std::array<std::int16_t, 1> code{};
        std::int16_t count = 2;
        if (network.Zav_Numeric(pod, RequestStream, count, values, code, handle) != 0)
            return std::nullopt;
        return Answer{values[0], values[1], code[0]};
    }

    // The bytes that a read of a stream writes into a buffer of `size` marks ("~").
    std::optional<std::string> text(std::int16_t pod, std::int16_t stream, std::size_t size = 12) {
        std::string buffer(size, '~');
        if (network.Zav_String(pod, stream, buffer, handle) != 0) return std::nullopt;
        return buffer;
    }
};

}  // namespace kavorix::test
