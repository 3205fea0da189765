#pragma once

// A simulated network on a virtual clock, used as a driver's caller would, and scenes that it
// plays.
//
// pod(5, "7V; noise=0; 1 at 2.5; 2-18 sine; fault dead from_s=10") is the scenario of pod 5: its
// type, its own keys, what its channels are wired to, a fault. A scene is a row of steps between
// bars, each question with what it finds behind it:
//
//     send TR;CO               commands to the pod; the number of '2.5' goes as its four bytes
//     send TR? sent            or: not sent
//     wait 5 ms | wait 3 s     lets time pass
//     connect? 1 5 50          the pods that a start-up finds
//     waiting 0? yes           whether stream 0 holds data, or that this failed: error
//     scan 1 19? 2.5 error9    channels 1 and 19 of a scan, as reading() tells them
//     scans in 10 s? 26        how many scans come
//     answers? 2.5 nothing     all answers to single-channel requests
//     text? 7VJA 0F 1.00       what stream 3 holds, in a buffer of 12 marks ("~"); "text 14", of 14
//     texts in 8 s? 1:H 3:C12  the texts that come, each with the second that it comes in
//     events 20? 01050800      the bytes of stream 2 in a buffer of 20

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
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

inline std::vector<std::string> split(const std::string& text, char mark) {
    std::vector<std::string> parts;
    std::istringstream all(text);
    for (std::string part; std::getline(all >> std::ws, part, mark);) {
        parts.push_back(part.substr(0, part.find_last_not_of(' ') + 1));
    }
    return parts;
}

inline std::string pod(int number, const std::string& items) {
    const auto parts = split(items, ';');
    std::string text =
        "[[pod]]\nnumber=" + std::to_string(number) + "\nident=\"" + parts.at(0) + "JA 0F 1.00\"\n";
    for (std::size_t i = 1; i < parts.size(); ++i) {
        std::istringstream words(parts[i]);
        for (std::string word; words >> word;) {
            const auto equals = word.find('=');
            const auto dash = word.find('-');
            if (equals != std::string::npos)
                text += std::isalpha(word[equals + 1])
                            ? word.substr(0, equals) + "=\"" + word.substr(equals + 1) + "\"\n"
                            : word + "\n";
            else if (word == "fault" && words >> word)
                text += "[[pod.fault]]\nkind=\"" + word + "\"\n";
            else if (word == "text")
                text += "[[pod.text]]\n";
            else {
                text += "[[pod.channel]]\nnumber=" + word.substr(0, dash) + "\n";
                if (dash != std::string::npos) text += "last=" + word.substr(dash + 1) + "\n";
                words >> word;
                text += "signal=\"" + (word == "at" ? "constant" : word) + "\"\n";
                if (word == "at" && words >> word) text += "offset=" + word + "\n";
            }
        }
    }
    return text;
}

struct ScanRecord {
    std::vector<float> values;
    std::vector<std::int16_t> codes;
    bool operator==(const ScanRecord&) const = default;
};

// The value to five digits, or its error with the value that stands beside it.
inline std::string reading(float value, int code) {
    std::ostringstream text;
    text.precision(5);
    if (code > 128) text << "error" << code - 128;
    if (code > 0 && code <= 128) text << "code" << code;
    if (code > 0 && value != 0) text << ":";
    if (code <= 128 || value != 0) text << (std::fabs(value) < 1e-8F ? 0.0F : value);
    return text.str();
}

class BenchNetwork {
  public:
    explicit BenchNetwork(const sim::Scenario& scenario) : network(scenario, loop) { connect(); }
    explicit BenchNetwork(const std::string& pods, const std::string& card = "[card]\n")
        : BenchNetwork(scenario_of(card + pods)) {}

    VirtualEventLoop loop;
    sim::Network network;
    std::array<std::int16_t, MaxZavs> present{};
    std::int16_t handle = 0;

    void connect() {
        handle = network.Zav_Connect(-14336);
        present.fill(1);
        network.Zav_Init(present, handle);
    }

    // The numbers of the pods that the start-up found.
    std::string found() const {
        std::string numbers;
        for (std::size_t i = 0; i < present.size(); ++i)
            if (present.at(i) == 1) numbers += (numbers.empty() ? "" : " ") + std::to_string(i + 1);
        return numbers;
    }

    std::int16_t send(std::int16_t pod, std::string_view command) {
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
        return network.Zav_Tx(pod, bytes, handle);
    }

    bool waiting(std::int16_t pod, std::int16_t stream) {
        return network.Zav_Test(pod, stream, handle) == 1;
    }

    // What a read of numbers gives: a scan (stream 0) or the answer to a request (stream 1).
    std::optional<ScanRecord> scan(std::int16_t pod, std::int16_t stream = ReadingStream) {
        ScanRecord record{std::vector<float>(32), std::vector<std::int16_t>(32)};
        std::int16_t count = 32;
        if (network.Zav_Numeric(pod, stream, count, record.values, record.codes, handle) != 0)
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

    // The bytes that a read of a stream writes into a buffer of `size` marks ("~").
    std::optional<std::string> text(std::int16_t pod, std::int16_t stream, std::size_t size = 12) {
        std::string buffer(size, '~');
        if (network.Zav_String(pod, stream, buffer, handle) != 0) return std::nullopt;
        return buffer;
    }

    // Plays the scene with a pod; returns it with what its questions found behind them.
    std::string play(std::int16_t pod, const std::string& scene) {
        std::string told;
        for (const std::string& each : split(scene, '|')) {
            const auto question = each.find('?');
            const std::string step = each.substr(0, question);
            std::istringstream words(step);
            std::string verb;
            words >> verb;
            const std::string found = perform(pod, verb, words);
            told += (told.empty() ? "" : " | ") + step +
                    (question == step.npos ? ""
                     : found.empty()       ? "?"
                                           : "? " + found);
        }
        return told;
    }

  private:
    static std::int64_t time_ms(std::istringstream& words) {
        std::int64_t number = 0;
        std::string unit;
        words >> number >> unit;
        return unit == "s" ? number * 1000 : number;
    }
    static std::string hex(const std::string& bytes) {
        constexpr std::string_view Digits = "0123456789ABCDEF";
        std::string text;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const auto byte = static_cast<unsigned char>(bytes[i]);
            text += i > 0 && i % 4 == 0 ? " " : "";
            text += {Digits[byte / 16], Digits[byte % 16]};
        }
        return text;
    }

    std::string perform(std::int16_t pod, const std::string& verb, std::istringstream& words) {
        std::string rest;
        std::size_t number = 12;
        if (verb == "send" && words >> rest) return send(pod, rest) == 0 ? "sent" : "not sent";
        if (verb == "wait") return loop.advance(time_ms(words)), "";
        if (verb == "waiting" && words >> number) {
            const int is = network.Zav_Test(pod, static_cast<std::int16_t>(number), handle);
            return is == 1 ? "yes" : is == 0 ? "no" : "error";
        }
        if (verb == "connect") return connect(), found();
        if (verb == "scan") {
            const auto record = scan(pod);
            if (!record) return "nothing";
            while (words >> number)
                rest += (rest.empty() ? "" : " ") +
                        reading(record->values.at(number - 1), record->codes.at(number - 1));
            return rest;
        }
        if (verb == "answers") {
            while (const auto answer = scan(pod, RequestStream))
                rest += (rest.empty() ? "" : " ") + reading(answer->values[0], answer->codes[0]);
            return rest.empty() ? "nothing" : rest;
        }
        if (verb == "text")
            return words >> number, text(pod, TextStream, number).value_or("nothing");
        if (verb == "events" && words >> number) {
            const auto read = text(pod, EventStream, number);
            return read ? hex(*read) : "nothing";
        }
        words >> rest;  // "in"
        int scans = 0;
        for (std::int64_t left_ms = time_ms(words), ms = 1; ms <= left_ms; ++ms) {
            loop.advance(1);
            if (verb == "scans" && scan(pod)) ++scans;
            if (const auto text = verb == "texts" ? this->text(pod, TextStream) : std::nullopt)
                told_at(rest, ms / 1000, *text);
        }
        return verb == "scans" ? std::to_string(scans) : rest.substr(3);
    }
    static void told_at(std::string& all, std::int64_t second, const std::string& text) {
        all += " " + std::to_string(second) + ":" + text.substr(0, text.find('~'));
    }
};

// The scenes of pod 5, each on a network of its own.
struct Scene {
    const char* what;
    std::string pod;
    std::string steps;
};

inline void expect_told(const std::vector<Scene>& scenes) {
    for (const Scene& scene : scenes)
        EXPECT_EQ(BenchNetwork(pod(5, scene.pod)).play(5, scene.steps), scene.steps) << scene.what;
}

}  // namespace kavorix::test
