// The same end-to-end sequence through the built-in network and through the driver library.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>

#include "platform/driver_library.h"
#include "platform/virtual_event_loop.h"
#include "sim/bench_network.h"
#include "sim/library/zavdrvr_sim.h"

namespace kavorix::test {
namespace {

const std::string LibraryPath = KAVORIX_BINARY_DIR "/libzavdrvr-sim.so";

const std::string Scenario = R"(
[card]
handle = 1
version = "Two routes"
[[pod]]
number = 5
ident = "7VJA 0F 1.00"
noise = 0
[[pod.channel]]
number = 1
last = 18
signal = "sine"
amplitude = 2.0
phase_step = 0.05
[[pod]]
number = 9
ident = "8RCA 0F 1.00"
[[pod.channel]]
number = 3
signal = "square"
period_s = 1.0
phase = 0.25
[[pod]]
number = 11
ident = "7RAA 0F 1.00"
[[pod.fault]]
kind = "transmit_error"
)";

constexpr std::array<std::int16_t, 4> Pods = {5, 9, 11, 12};

// A driver and the means to move its time.
class Route {
  public:
    virtual ~Route() = default;
    virtual Driver& driver() = 0;
    virtual void advance(int ms) = 0;
};

class BuiltIn : public Route {
  public:
    Driver& driver() override { return network_; }
    void advance(int ms) override { loop_.advance(ms); }

  private:
    VirtualEventLoop loop_;
    sim::Network network_{scenario_of(Scenario), loop_};
};

class ThroughLibrary : public Route {
  public:
    ThroughLibrary()
        : loaded_(load_driver_library(LibraryPath)),
          library_(dlopen(LibraryPath.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        const std::string file = testing::TempDir() + "routes.toml";
        std::ofstream(file) << Scenario;
        EXPECT_EQ(function<decltype(Zav_SimNetwork)>("Zav_SimNetwork")(file.c_str()), 0);
        advance(0);
    }
    ~ThroughLibrary() override { dlclose(library_); }
    ThroughLibrary(const ThroughLibrary&) = delete;
    ThroughLibrary& operator=(const ThroughLibrary&) = delete;

    Driver& driver() override { return *loaded_.driver; }
    void advance(int ms) override { function<decltype(Zav_SimAdvance)>("Zav_SimAdvance")(ms); }

    template <class Function>
    Function* function(const char* name) {
        return reinterpret_cast<Function*>(dlsym(library_, name));
    }

  private:
    LoadedDriver loaded_;
    void* library_;
};

// Everything that a driver is asked in a day's work, as one text; times of day are left out.
std::string transcript(Route& route) {
    Driver& driver = route.driver();
    std::string seen;
    const auto say = [&](const std::string& text) { seen += text + " "; };
    const auto tell = [&](double number) { say(general(static_cast<float>(number))); };

    std::array<char, 34> version{};
    driver.Zav_DLLVersion(version);
    say(version.data());
    tell(driver.Zav_Connect(-14080));
    const std::int16_t handle = driver.Zav_Connect(-14336);
    std::array<std::int16_t, MaxZavs> present;
    present.fill(1);
    tell(handle);
    tell(driver.Zav_Init(present, handle));
    for (std::size_t i = 0; i < present.size(); ++i)
        if (present.at(i) == 1) tell(static_cast<double>(i + 1));

    for (const std::int16_t pod : Pods) {
        std::array<char, 12> ident{};
        tell(driver.Zav_Tx(pod, "RE;ST", handle));
        route.advance(100);
        tell(driver.Zav_Test(pod, TextStream, handle));
        tell(driver.Zav_String(pod, TextStream, ident, handle));
        say({ident.begin(), ident.end()});
    }
    const auto bytes = driver.Zav_ValToByte(2000.0F);
    std::string period = "SP";
    for (const std::int16_t byte : bytes) period += static_cast<char>(byte);
    for (const std::string& command :
         {period, std::string("ME02"), std::string("CO"), std::string("TR")})
        tell(driver.Zav_Tx(5, command, handle));
    for (const char* command : {"CH3MO762", "EV1", "QQ"}) driver.Zav_Tx(9, command, handle);
    for (int tick = 0; tick < 60; ++tick) {
        route.advance(80);
        driver.Zav_DLLDelay(20);
        for (const std::int16_t pod : std::span(Pods).first(2))
            for (std::int16_t stream = 0; stream < StreamCount; ++stream) {
                if (driver.Zav_Test(pod, stream, handle) != 1) continue;
                std::array<float, 32> values{};
                std::array<std::int16_t, 32> codes{};
                std::array<char, 112> text{};
                std::int16_t count = 32;
                say("\n" + std::to_string(tick));
                tell(pod);
                tell(stream);
                if (stream < EventStream) {
                    tell(driver.Zav_Numeric(pod, stream, count, values, codes, handle));
                    tell(count);
                    std::for_each(values.begin(), values.end(), tell);
                    std::for_each(codes.begin(), codes.end(), tell);
                } else {
                    tell(driver.Zav_String(pod, stream, text, handle));
                    if (stream == TextStream) say({text.data(), 12});
                    for (std::size_t i = 0; i < text.size() && stream == EventStream; i += 4)
                        tell(static_cast<unsigned char>(text.at(i)) >= 32 ? text.at(i) : 0);
                }
            }
    }
    driver.Zav_PowerOff(handle);
    tell(driver.Zav_Tx(5, "TR", handle));
    driver.Zav_Disconnect(handle);
    tell(driver.Zav_Test(5, 0, handle));
    return seen;
}

TEST(RouteTest, TheLibraryIsTheBuiltInNetwork) {
    BuiltIn built_in;
    ThroughLibrary through_library;
    const std::string expected = transcript(built_in);
    EXPECT_GT(expected.size(), 2000u);
    EXPECT_NE(expected.find("7VJA 0F 1.00"), std::string::npos);
    EXPECT_EQ(transcript(through_library), expected);
}

TEST(RouteTest, TheLibraryStartsWithTheDemonstrationNetwork) {
    ThroughLibrary route;
    EXPECT_EQ(route.function<decltype(Zav_SimNetwork)>("Zav_SimNetwork")(nullptr), 0);
    EXPECT_EQ(route.driver().Zav_Connect(-14336), 0);
    std::array<std::int16_t, MaxZavs> present;
    present.fill(1);
    EXPECT_EQ(route.driver().Zav_Init(present, 0), 0);
    EXPECT_EQ(std::count(present.begin(), present.end(), 1),
              static_cast<std::ptrdiff_t>(sim::demo_scenario().pods.size()));
}

TEST(RouteTest, AnUnusableScenarioLeavesNoCard) {
    ThroughLibrary route;
    testing::internal::CaptureStderr();
    EXPECT_EQ(route.function<decltype(Zav_SimNetwork)>("Zav_SimNetwork")("/no/such.toml"), 1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("/no/such.toml"), std::string::npos);
    EXPECT_LT(route.driver().Zav_Connect(-14336), 0);
}

}  // namespace
}  // namespace kavorix::test
