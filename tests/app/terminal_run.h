#pragma once

// Runs the program as a terminal would, in virtual time (unless told otherwise) and in a folder of
// its own.

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "platform/host_event_loop.h"
#include "platform/virtual_event_loop.h"

namespace kavorix::test {

struct Outcome {
    int exit_code = 0;
    std::string out;
    std::string messages;
};

class TerminalRun {
  public:
    TerminalRun() : folder_(std::filesystem::temp_directory_path() / unique_name()) {
        std::filesystem::create_directories(folder_);
    }
    ~TerminalRun() { std::filesystem::remove_all(folder_); }

    // The path of a file in the folder, holding `content`.
    std::string file(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }
    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    std::string read(const std::string& name) const {
        std::ostringstream content;
        content << std::ifstream(path(name), std::ios::binary).rdbuf();
        return content.str();
    }
    bool exists(const std::string& name) const { return std::filesystem::exists(path(name)); }

    Outcome operator()(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"kavorix", "--directory", folder_.string()});
        std::vector<const char*> argv;
        for (const std::string& argument : arguments) argv.push_back(argument.c_str());
        std::ostringstream out;
        std::ostringstream messages;
        const int code = run_command_line(static_cast<int>(argv.size()), argv.data(),
                                          {out, messages, [](const CommonOptions&) { return -1; },
                                           [this](const std::function<void()>& on_interrupt) {
                                               return make_loop(on_interrupt);
                                           }});
        return {code, out.str(), messages.str()};
    }

    // True for what keeps a clock of its own: a driver library, for instance.
    bool real_time = false;

  private:
    std::unique_ptr<EventLoop> make_loop(const std::function<void()>& on_interrupt) const {
        if (real_time) return std::make_unique<HostEventLoop>(on_interrupt);
        return std::make_unique<VirtualEventLoop>();
    }
    static std::string unique_name() {
        static int count = 0;
        return "kavorix-test-" + std::to_string(::getpid()) + "-" + std::to_string(++count);
    }

    std::filesystem::path folder_;
};

// Two pods: a universal one at 3 with two signals, a digital one at 7.
inline constexpr const char* TwoPods = R"(
[card]
address = "CA00"
handle = 2
version = "Test network"
[[pod]]
number = 3
ident = "7VJA 0F 1.00"
[[pod.channel]]
number = 1
signal = "constant"
offset = 1.5
[[pod]]
number = 7
ident = "8RCA 0F 1.00"
)";

}  // namespace kavorix::test
