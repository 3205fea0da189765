// The commands that work on configuration files: check, statements, rewrite.

#include <memory>
#include <ostream>
#include <vector>

#include "app/command_line.h"
#include "app/config_loading.h"
#include "app/network.h"
#include "base/text.h"
#include "config/config_files.h"
#include "config/load_log.h"
#include "config/statements.h"
#include "platform/host_event_loop.h"
#include "platform/virtual_event_loop.h"

namespace kavorix {

namespace {

struct CheckOptions {
    std::string file;
    bool locate = false;
    bool log = false;
};

// The same file that a failed load in the window leaves behind.
void write_log(Files& files, const std::string& path, const std::vector<LoadMessage>& messages) {
    if (messages.empty()) return;
    const VirtualEventLoop now(host_wall_time());
    LoadLog log(files, now, path);
    if (!log.take_free_name())
        throw UnusableInput{"All of the error logs L00 to L99 of " + path + " exist already"};
    for (const LoadMessage& message : messages) log.append(message.text);
}

int check(const CommandLine& line, const CheckOptions& options) {
    const auto files = make_host_files();
    const LoadedConfig loaded = load_config(line, *files, options.file);
    for (const LoadMessage& message : loaded.messages) {
        if (options.locate) line.with.out << options.file << ":" << message.line << ": ";
        line.with.out << to_utf8(message.text) << "\n";
    }
    if (options.log) write_log(*files, options.file, loaded.messages);
    return loaded.outcome == LoadOutcome::Loaded ? ExitDone : ExitFailed;
}

int print_statements(const CommandLine& line, const std::string& path) {
    const auto files = make_host_files();
    const LoadedConfig loaded = load_config_or_explain(line, *files, path);
    if (loaded.outcome != LoadOutcome::Loaded) return ExitFailed;
    for (int pod = 0; pod < MaxZavs; ++pod) {
        const PodConfig& config = loaded.configuration->ZavConfig[at(pod)];
        if (config.TypeCode != NoDevice)
            line.with.out << two_digits(pod + 1) << "\t" << configuration_statements(config)
                          << "\n";
    }
    return ExitDone;
}

int rewrite(const CommandLine& line, const std::string& from, const std::string& to) {
    const auto files = make_host_files();
    const LoadedConfig loaded = load_config_or_explain(line, *files, from);
    if (loaded.outcome != LoadOutcome::Loaded) return ExitFailed;
    write_config_file(*files, to, *loaded.configuration, host_wall_time());
    return ExitDone;
}

constexpr const char* AgainstWhat =
    " With --network or --driver the file is checked against the pods that answer there, otherwise"
    " against pods of the types that it names itself.";

}  // namespace

void add_check(const CommandLine& line) {
    CLI::App* command = line.app.add_subcommand(
        "check", std::string("Load a configuration file and list every problem.") + AgainstWhat);
    const auto options = std::make_shared<CheckOptions>();
    command->add_option("file", options->file, "Configuration file")
        ->type_name("FILE.CFG")
        ->required();
    command->add_flag("--locate", options->locate, "Print FILE:LINE: before each message");
    command->add_flag("--log", options->log, "Write the error log (L00 to L99) beside the file");
    command->callback([=] { line.action = [=] { return check(line, *options); }; });
}

void add_statements(const CommandLine& line) {
    CLI::App* command = line.app.add_subcommand(
        "statements", "Print the command string that each pod of a configuration file is sent");
    const auto file = std::make_shared<std::string>();
    command->add_option("file", *file, "Configuration file")->type_name("FILE.CFG")->required();
    command->callback([=] { line.action = [=] { return print_statements(line, *file); }; });
}

void add_rewrite(const CommandLine& line) {
    CLI::App* command = line.app.add_subcommand(
        "rewrite", "Load a configuration file and write it anew in its canonical form");
    const auto from = std::make_shared<std::string>();
    const auto to = std::make_shared<std::string>();
    command->add_option("in", *from, "Configuration file")->type_name("IN.CFG")->required();
    command->add_option("out", *to, "File to write")->type_name("OUT.CFG")->required();
    command->callback([=] { line.action = [=] { return rewrite(line, *from, *to); }; });
}

}  // namespace kavorix
