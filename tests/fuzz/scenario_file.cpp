// Any bytes as a scenario file: a network that can be run, or errors that name file, line and
// column.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/virtual_event_loop.h"
#include "sim/network.h"
#include "sim/scenario_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kavorix;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    sim::LoadedScenario loaded = sim::load_scenario(text, "net.toml");
    if (loaded.scenario.has_value() != loaded.errors.empty()) std::abort();
    for (const std::string& error : loaded.errors)
        if (!error.starts_with("net.toml:")) std::abort();
    if (!loaded.scenario) return 0;
    VirtualEventLoop loop;
    sim::Network network(std::move(*loaded.scenario), loop);
    for (std::int16_t pod = 1; pod <= MaxZavs; ++pod) network.Zav_Test(pod, 3, 0);
    return 0;
}
