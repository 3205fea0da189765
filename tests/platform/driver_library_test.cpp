#include "platform/driver_library.h"

#include <gtest/gtest.h>

#include <fstream>

namespace kavorix::test {
namespace {

const std::string Built = KAVORIX_BINARY_DIR "/";

LoadedDriver load(const std::string& name) {
    return load_driver_library(Built + "lib" + name + ".so");
}

TEST(DriverLibraryTest, AMissingFileIsNamed) {
    const LoadedDriver loaded = load("no-such-driver");
    EXPECT_EQ(loaded.driver, nullptr);
    const std::string path = Built + "libno-such-driver.so";
    EXPECT_EQ(loaded.error.find("Cannot load driver library " + path + ": "), 0u) << loaded.error;
    EXPECT_NE(loaded.error.find("No such file"), std::string::npos) << loaded.error;
}

TEST(DriverLibraryTest, AFileThatIsNoLibrary) {
    const std::string path = testing::TempDir() + "driver.so";
    std::ofstream(path) << "not a library";
    const LoadedDriver loaded = load_driver_library(path);
    EXPECT_EQ(loaded.driver, nullptr);
    EXPECT_EQ(loaded.error.find("Cannot load driver library " + path + ": "), 0u) << loaded.error;
}

TEST(DriverLibraryTest, EveryMissingFunctionIsNamed) {
    const LoadedDriver loaded = load("incomplete_driver");
    EXPECT_EQ(loaded.driver, nullptr);
    EXPECT_EQ(loaded.error, "Driver library " + Built +
                                "libincomplete_driver.so lacks Zav_Numeric, Zav_PowerOff");
}

class CarelessDriverTest : public testing::Test {
  protected:
    LoadedDriver loaded = load("careless_driver");
    Driver& driver = *loaded.driver;
};

TEST_F(CarelessDriverTest, BuffersEndWhereTheCallersEnd) {
    struct Frame {
        std::array<std::int16_t, MaxZavs> present{};
        std::array<std::int16_t, 30> behind{};
    } frame;
    driver.Zav_Init(frame.present, 0);
    EXPECT_EQ(frame.present[49], 7);
    EXPECT_EQ(frame.behind, (std::array<std::int16_t, 30>{}));

    std::array<char, 60> text{};
    text.fill('~');
    driver.Zav_String(1, 3, std::span(text).first(12), 0);
    EXPECT_EQ(std::string(text.begin(), text.end()),
              "~" + std::string(11, '!') + std::string(48, '~'));

    std::array<float, 60> values{};
    std::array<std::int16_t, 60> codes{};
    std::int16_t count = 32;
    EXPECT_EQ(
        driver.Zav_Numeric(1, 0, count, std::span(values).first(32), std::span(codes).first(32), 0),
        0);
    EXPECT_EQ(count, 72) << "callers do not trust it";
    EXPECT_EQ(values[31], 31.0F);
    EXPECT_EQ(values[32], 0.0F);
    EXPECT_EQ(codes[32], 0);

    EXPECT_EQ(driver.Zav_ValToByte(1.0F), (std::array<std::int16_t, 4>{300, 301, 302, 303}));

    std::array<char, 50> version{};
    driver.Zav_DLLVersion(std::span(version).first<34>());
    EXPECT_EQ(version[33], 'V');
    EXPECT_EQ(version[34], '\0');
}

TEST_F(CarelessDriverTest, ACommandIsSafeFromTheLibrary) {
    const std::string command = "RE;ST";
    driver.Zav_Tx(1, command, 0);
    EXPECT_EQ(command, "RE;ST");
}

TEST_F(CarelessDriverTest, ResultsThatAreNotSetMeanFailure) {
    std::array<std::int16_t, MaxZavs> present{};
    std::array<char, 12> text{};
    EXPECT_EQ(driver.Zav_Connect(-14336), -1);
    EXPECT_NE(driver.Zav_Init(present, 0), 0);
    EXPECT_EQ(driver.Zav_Tx(1, "TR", 0), 1);
    EXPECT_EQ(driver.Zav_Test(1, 0, 0), 0);
    EXPECT_EQ(driver.Zav_String(1, 3, text, 0), 1);
}

TEST(ExampleDriverTest, MeasuresWithItsOnePod) {
    const LoadedDriver loaded = load("example-driver");
    ASSERT_NE(loaded.driver, nullptr) << loaded.error;
    Driver& driver = *loaded.driver;
    EXPECT_LT(driver.Zav_Connect(-14080), 0);
    const std::int16_t handle = driver.Zav_Connect(-14336);
    std::array<std::int16_t, MaxZavs> present;
    present.fill(1);
    EXPECT_EQ(driver.Zav_Init(present, handle), 0);
    EXPECT_EQ(present[0], 1);
    EXPECT_EQ(present[1], 0);

    EXPECT_EQ(driver.Zav_Tx(1, "RE;ST", handle), 0);
    std::array<char, 12> ident{};
    EXPECT_EQ(driver.Zav_String(1, 3, ident, handle), 0);
    EXPECT_EQ(std::string(ident.begin(), ident.end()), "7RAA 0F 1.00");

    EXPECT_EQ(driver.Zav_Test(1, 0, handle), 0);
    EXPECT_EQ(driver.Zav_Tx(1, "TR", handle), 0);
    EXPECT_EQ(driver.Zav_Test(1, 0, handle), 1);
    std::array<float, 32> values{};
    std::array<std::int16_t, 32> codes{};
    std::int16_t count = 20;
    EXPECT_EQ(driver.Zav_Numeric(1, 0, count, values, codes, handle), 0);
    EXPECT_EQ(count, 20);
    EXPECT_EQ(values[19], 10.0F);
}

}  // namespace
}  // namespace kavorix::test
