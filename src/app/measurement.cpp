#include "app/measurement.h"

#include <limits>
#include <system_error>

#include "base/text.h"
#include "config/config_reader.h"

namespace kavorix {

void load_configuration_file(TerminalStation& terminal, const std::string& path) {
    Station& station = terminal.station;
    std::string text;
    try {
        text = read_config_file(terminal.files(), path);
    } catch (const std::system_error& failure) {
        throw UnusableInput{failure.what()};
    }
    std::string problems;
    const auto outcome = load_configuration(
        text, connected_now(station.configuration.Interface, station.run_time.Status),
        station.configuration, [&](const LoadMessage& message) {
            problems +=
                "\n" + path + ":" + std::to_string(message.line) + ": " + to_utf8(message.text);
            return true;
        });
    if (outcome == LoadOutcome::NoHeader)
        throw UnusableInput{path + " is no configuration file: the header line is missing"};
    if (outcome != LoadOutcome::Loaded)
        throw UnusableInput{path + " does not fit the connected pods:" + problems};
}

std::vector<int> configured_pods(const Station& station) {
    std::vector<int> pods;
    for (int pod = 0; pod < MaxZavs; ++pod)
        if (station.configuration.ZavConfig[at(pod)].TypeCode != NoDevice) pods.push_back(pod);
    return pods;
}

std::vector<int> start_measurement(TerminalStation& terminal, const MeasurementOptions& options) {
    Station& station = terminal.station;
    std::vector<int> pods;
    if (options.config_file.empty()) {
        pods = terminal.pods(options.pods);
        station.select_pods(pods);
        station.operations.run(Command::DefaultContScan);
    } else {
        load_configuration_file(terminal, options.config_file);
        pods = options.pods.empty() ? configured_pods(station) : terminal.pods(options.pods);
        if (pods.empty()) throw UnusableInput{options.config_file + " configures no pod"};
        for (const int pod : pods) station.configuration.ZavConfig[at(pod)].ContScan = 1;
        station.select_pods(pods);
        station.operations.run(Command::TransmitConfig);
    }
    station.operations.run(Command::Trigger);
    return pods;
}

int duration_ms(const std::string& text) {
    if (text.empty()) return 0;
    const auto duration = parse_duration(text);
    if (!duration || duration->count() > std::numeric_limits<int>::max())
        throw UnusableInput{"\"" + text +
                            "\" is not a duration such as 90, 15m or 2h (24d at most)"};
    return static_cast<int>(duration->count());
}

}  // namespace kavorix
