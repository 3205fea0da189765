// Any text as a command string: the link cuts it into tokens for a pod, and simulated pods of every
// type read the same bytes. Whatever comes, both go on, and what a pod holds stays in its ranges.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "sim/network.h"
#include "sim/scenario_file.h"
#include "support/rig.h"

namespace {

using namespace kavorix;

void check(bool holds) {
    if (!holds) std::abort();
}

// The link sends nothing but tokens, none of them empty or longer than the string.
void through_the_link(const std::string& text) {
    test::Rig rig;
    rig.station({{3, "7VJA 0F 1.00"}});
    rig.select({3});
    rig.send(text);
    check(!rig.link.transmitting());
    check(rig.driver.sends <= static_cast<long long>(text.size()) + 2);
}

void to_the_pods(const std::string& text) {
    static const sim::Scenario demo = sim::demo_scenario();
    VirtualEventLoop loop;
    sim::Network network(demo, loop);
    const std::int16_t handle = network.Zav_Connect(static_cast<std::int16_t>(0xC800));
    std::array<std::int16_t, MaxZavs> present{};
    present.fill(1);
    network.Zav_Init(present, handle);
    for (std::int16_t pod = 1; pod <= MaxZavs; ++pod) {
        const sim::HeldSettings* const held = network.held(pod);
        if (held == nullptr) continue;
        network.Zav_Tx(pod, text, handle);
        loop.run_for(200);
        std::array<char, 255> bytes{};
        std::array<float, MaxChannels> values{};
        std::array<std::int16_t, MaxChannels> codes{};
        std::int16_t count = 0;
        for (std::int16_t stream = 0; stream < 2; ++stream) {
            network.Zav_Numeric(pod, stream, count, values, codes, handle);
            check(count >= 0 && count <= MaxChannels);
        }
        for (std::int16_t stream = 2; stream < StreamCount; ++stream)
            network.Zav_String(pod, stream, bytes, handle);
        for (const auto& group : held->groups) check(group.state >= 0 && group.state <= 2);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    through_the_link(text);
    to_the_pods(text);
    return 0;
}
