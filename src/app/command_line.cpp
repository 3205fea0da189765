#include "app/command_line.h"

#include <ostream>

#include "app/output.h"
#include "app/terminal.h"

namespace kavorix {

namespace {

int perform(const Action& action, const ProgramSurroundings& with) {
    try {
        return after_output(with.out, with.messages, action());
    } catch (const UnusableInput& input) {
        with.messages << for_terminal(input.message) << std::endl;
        return ExitUsage;
    } catch (const ProgramEnded& ended) {
        return ended.exit_code;
    } catch (const std::exception& failure) {
        with.messages << for_terminal(failure.what()) << std::endl;
        return ExitFailed;
    }
}

}  // namespace

int run_command_line(int argc, const char* const* argv, const ProgramSurroundings& with) {
    CLI::App app{
        "Operator station for a network of measurement pods. Without a command it opens its "
        "window.",
        "kavorix"};
    CommonOptions common;
    app.add_option("--network", common.network, "Simulated pod network to use (scenario file)")
        ->type_name("FILE.toml");
    app.add_option("--driver", common.driver, "Driver library of the interface card")
        ->type_name("FILE")
        ->excludes("--network");
    app.add_option("--directory", common.directory,
                   "Program directory: settings file and error log")
        ->type_name("DIR");
    app.add_option("--theme", common.theme, "Colours of the window")
        ->check(CLI::IsMember({"system", "light", "dark"}));
    app.set_version_flag("--version", "kavorix " + std::string(ProgramVersion));
    app.require_subcommand(0, 1);
    app.fallthrough();

    Action action = [&] { return with.window(common); };
    const CommandLine line{app, common, with, action};
    add_discover(line);
    add_watch(line);
    add_log(line);
    add_status(line);
    add_convert(line);
    add_info(line);
    add_repair(line);
    add_plot(line);
    add_check(line);
    add_statements(line);
    add_rewrite(line);
    add_show(line);
    add_verify(line);
    add_alarms(line);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error, with.out, with.messages) == 0 ? ExitDone : ExitUsage;
    }
    return perform(action, with);
}

}  // namespace kavorix
