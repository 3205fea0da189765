#include "app/network.h"

#include <system_error>

#include "platform/driver_library.h"
#include "sim/network.h"
#include "sim/scenario_file.h"

namespace kavorix {

std::unique_ptr<Driver> make_driver(const CommonOptions& options, Files& files, EventLoop& loop) {
    if (!options.driver.empty()) {
        LoadedDriver loaded = load_driver_library(options.driver);
        if (!loaded.driver) throw UnusableInput{loaded.error};
        return std::move(loaded.driver);
    }
    if (options.network.empty()) return std::make_unique<sim::Network>(sim::demo_scenario(), loop);
    std::string text;
    try {
        text = read_all(files, options.network, sim::LongestScenario);
    } catch (const std::system_error& failure) {
        throw UnusableInput{failure.what()};
    }
    auto loaded = sim::load_scenario(text, options.network);
    if (!loaded.scenario) {
        std::string message;
        for (const std::string& error : loaded.errors)
            message += (message.empty() ? "" : "\n") + error;
        throw UnusableInput{message};
    }
    return std::make_unique<sim::Network>(std::move(*loaded.scenario), loop);
}

std::string program_directory(const CommonOptions& options, Files& files) {
    const std::string directory =
        options.directory.empty() ? default_directory() : options.directory;
    try {
        files.make_directories(directory);
    } catch (const std::system_error& failure) {
        throw UnusableInput{failure.what()};
    }
    return directory;
}

}  // namespace kavorix
