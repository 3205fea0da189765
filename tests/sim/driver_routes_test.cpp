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

const std::string Scenario = "[card]\nhandle=1\nversion=\"Two routes\"\n" +
                             pod(5, "7V; noise=0; 1-18 sine amplitude=2 phase_step=0.05") +
                             pod(9, "8R; 3 square period_s=1 phase=0.25") +
                             pod(50, "7R; fault transmit_error");

// The driver library as a caller of its own functions has it.
class Library {
  public:
    Library()
        : loaded_(load_driver_library(LibraryPath)),
          library_(dlopen(LibraryPath.c_str(), RTLD_NOW | RTLD_LOCAL)) {}
    ~Library() { dlclose(library_); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    Driver& driver() { return *loaded_.driver; }
    int use(const char* file) { return function<decltype(Zav_SimNetwork)>("Zav_SimNetwork")(file); }
    void advance(int ms) { function<decltype(Zav_SimAdvance)>("Zav_SimAdvance")(ms); }

  private:
    template <class Function>
    Function* function(const char* name) {
        return reinterpret_cast<Function*>(dlsym(library_, name));
    }
    LoadedDriver loaded_;
    void* library_;
};

// The pods that a start-up finds.
std::vector<int> found(Driver& driver, std::int16_t handle) {
    std::array<std::int16_t, MaxZavs> present;
    present.fill(1);
    EXPECT_EQ(driver.Zav_Init(present, handle), 0);
    std::vector<int> pods;
    for (int i = 0; i < MaxZavs; ++i)
        if (present.at(static_cast<std::size_t>(i)) == 1) pods.push_back(i + 1);
    return pods;
}

// Everything that a driver is asked in a day's work, as one text; times of day are left out.
std::string transcript(Driver& driver, const std::function<void(int)>& advance) {
    std::string seen;
    const auto tell = [&](double number) { seen += general(static_cast<float>(number)) + " "; };

    std::array<char, 34> version{};
    driver.Zav_DLLVersion(version);
    seen += version.data();
    tell(driver.Zav_Connect(-14080));
    const std::int16_t handle = driver.Zav_Connect(-14336);
    tell(handle);
    for (const int pod : found(driver, handle)) tell(pod);

    for (const std::int16_t pod : std::initializer_list<std::int16_t>{5, 9, 50, 12}) {
        std::array<char, 12> ident{};
        tell(driver.Zav_Tx(pod, "RE;ST", handle));
        advance(100);
        tell(driver.Zav_Test(pod, TextStream, handle));
        tell(driver.Zav_String(pod, TextStream, ident, handle));
        seen.append(ident.begin(), ident.end());
    }
    std::string period = "SP";
    for (const std::int16_t byte : driver.Zav_ValToByte(2000.0F)) period += static_cast<char>(byte);
    tell(driver.Zav_Tx(5, period + ";ME02;CO;TR", handle));
    tell(driver.Zav_Tx(9, "CH3MO762;EV1;QQ", handle));
    for (int tick = 0; tick < 60; ++tick) {
        advance(80);
        driver.Zav_DLLDelay(20);
        for (const std::int16_t pod : std::initializer_list<std::int16_t>{5, 9})
            for (std::int16_t stream = 0; stream < StreamCount; ++stream) {
                if (driver.Zav_Test(pod, stream, handle) != 1) continue;
                std::array<float, 32> values{};
                std::array<std::int16_t, 32> codes{};
                std::array<char, 112> text{};
                std::int16_t count = 32;
                seen += "\n" + std::to_string(tick) + ":" + std::to_string(pod) + "/" +
                        std::to_string(stream) + " ";
                tell(stream < EventStream
                         ? driver.Zav_Numeric(pod, stream, count, values, codes, handle)
                         : driver.Zav_String(pod, stream, text, handle));
                tell(count);
                std::for_each(values.begin(), values.end(), tell);
                std::for_each(codes.begin(), codes.end(), tell);
                for (std::size_t i = 0; i < text.size(); i += stream == EventStream ? 4 : 1)
                    tell(stream == EventStream && static_cast<unsigned char>(text.at(i)) < 32
                             ? 0
                             : text.at(i));
            }
    }
    driver.Zav_PowerOff(handle);
    tell(driver.Zav_Tx(5, "TR", handle));
    driver.Zav_Disconnect(handle);
    tell(driver.Zav_Test(5, 0, handle));
    return seen;
}

TEST(DriverLibrary, IsTheBuiltInNetwork) {
    VirtualEventLoop loop;
    sim::Network network(scenario_of(Scenario), loop);
    const std::string expected = transcript(network, [&](int ms) { loop.advance(ms); });
    EXPECT_GT(expected.size(), 2000u);
    EXPECT_NE(expected.find("7VJA 0F 1.00"), std::string::npos);
    Library library;
    const std::string file = testing::TempDir() + "routes.toml";
    std::ofstream(file) << Scenario;
    EXPECT_EQ(library.use(file.c_str()), 0);
    library.advance(0);
    EXPECT_EQ(transcript(library.driver(), [&](int ms) { library.advance(ms); }), expected);
}

TEST(DriverLibrary, StartsWithTheDemonstrationNetworkAndHasNoCardAfterAnUnusableOne) {
    Library library;
    EXPECT_EQ(library.use(nullptr), 0);
    EXPECT_EQ(library.driver().Zav_Connect(-14336), 0);
    EXPECT_EQ(found(library.driver(), 0).size(), sim::demo_scenario().pods.size());
    testing::internal::CaptureStderr();
    EXPECT_EQ(library.use("/no/such.toml"), 1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("/no/such.toml"), std::string::npos);
    EXPECT_LT(library.driver().Zav_Connect(-14336), 0);
}

}  // namespace
}  // namespace kavorix::test
