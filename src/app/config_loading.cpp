#include "app/config_loading.h"

#include <ostream>
#include <system_error>

#include "app/terminal.h"
#include "base/text.h"
#include "platform/host_event_loop.h"
#include "platform/virtual_event_loop.h"

namespace kavorix {

namespace {

// What a file is checked against: the network that the options name, otherwise a station that the
// file itself describes.
Connected connected_for(const CommandLine& line, std::string_view file) {
    if (line.common.network.empty() && line.common.driver.empty()) return assume_connected(file);
    // A simulated network answers at once; a card needs its time.
    const std::unique_ptr<EventLoop> loop =
        line.common.driver.empty()
            ? std::unique_ptr<EventLoop>(std::make_unique<VirtualEventLoop>(host_wall_time()))
            : line.with.make_loop([] { throw ProgramEnded{ExitFailed}; });
    TerminalStation terminal(line.common, *loop, line.with.messages, false);
    terminal.start();
    return connected_now(terminal.station.configuration.Interface,
                         terminal.station.run_time.Status);
}

}  // namespace

LoadedConfig load_config(const CommandLine& line, Files& files, const std::string& path) {
    LoadedConfig loaded;
    std::string text;
    try {
        text = read_config_file(files, path);
    } catch (const std::system_error& failure) {
        throw UnusableInput{failure.what()};
    }
    const Connected connected = connected_for(line, text);
    loaded.configuration->Interface.CardHandle = connected.CardHandle;
    loaded.configuration->Interface.CardAddress = connected.CardAddress;
    for (PodConfig& pod : loaded.configuration->ZavConfig) default_ZAV_config(pod, NoDevice, 0);
    loaded.outcome =
        load_configuration(text, connected, *loaded.configuration, [&](const LoadMessage& message) {
            loaded.messages.push_back(message);
            return true;
        });
    if (loaded.outcome == LoadOutcome::NoHeader)
        throw UnusableInput{
            path + ": Selected File is not an ZAV Configuration File: Header Record missing"};
    return loaded;
}

LoadedConfig load_config_or_explain(const CommandLine& line, Files& files,
                                    const std::string& path) {
    LoadedConfig loaded = load_config(line, files, path);
    for (const LoadMessage& message : loaded.messages)
        line.with.messages << path << ":" << message.line << ": " << to_utf8(message.text) << "\n";
    return loaded;
}

}  // namespace kavorix
