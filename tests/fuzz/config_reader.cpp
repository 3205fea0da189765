// Any bytes as a configuration file: they load, or give messages and leave the configuration alone.
// What loads can be written, and where that text loads again it is written the same once more.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "config/config_reader.h"
#include "config/config_writer.h"

namespace {

using namespace kavorix;

void check(bool holds) {
    if (!holds) std::abort();
}

// A station with a configuration of its own, made once.
const Configuration& before() {
    static const auto made = [] {
        auto configuration = std::make_unique<Configuration>();
        for (std::int16_t type = Type7R; type <= Type7W; ++type)
            default_ZAV_config(configuration->ZavConfig[at(type)], type, 1);
        return configuration;
    }();
    return *made;
}

std::string written(const Configuration& configuration) {
    return config_text(configuration.Interface, configuration.ZavConfig, {});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    static Configuration configuration;
    configuration = before();
    std::size_t messages = 0;
    const auto count = [&](const LoadMessage& message) {
        ++messages;
        return message.line > 1;
    };
    const LoadOutcome outcome = load_on_its_own(file, configuration, count);
    check((outcome == LoadOutcome::Errors) == (messages > 0));
    if (outcome != LoadOutcome::Loaded) {
        check(configuration.ZavConfig == before().ZavConfig);
        return 0;
    }
    for (const PodConfig& pod : configuration.ZavConfig)
        check(pod.NumChannels >= 0 && pod.NumChannels <= ChannelSlots);
    const std::string text = written(configuration);
    if (load_on_its_own(text, configuration, count) == LoadOutcome::Loaded)
        check(written(configuration) == text);
    return 0;
}
