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

PodSet configured_pods(const Station& station) {
    PodSet pods;
    for (const Pod pod : all_pods())
        if (station.configuration.ZavConfig[pod].TypeCode != NoDevice) pods.add(pod);
    return pods;
}

PodSet start_measurement(TerminalStation& terminal, const MeasurementOptions& options) {
    Station& station = terminal.station;
    PodSet pods;
    if (options.config_file.empty()) {
        pods = terminal.pods(options.pods);
        station.select_pods(pods);
        station.pods.default_cont_scan();
    } else {
        load_configuration_file(terminal, options.config_file);
        pods = options.pods.empty() ? configured_pods(station) : terminal.pods(options.pods);
        if (pods.empty()) throw UnusableInput{options.config_file + " configures no pod"};
        for (const Pod pod : pods) station.configuration.ZavConfig[pod].ContScan = 1;
        station.select_pods(pods);
        station.pods.transmit_config();
    }
    if (station.run_time.Link.NumSelected() > 0) station.pods.trigger();
    return pods;
}

void halt_measurement(Station& station) {
    if (station.run_time.Link.NumSelected() > 0) station.pods.halt();
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
