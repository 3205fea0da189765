#include "model/catalogue.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kavorix {
namespace {

using Codes = std::vector<int>;

Codes codes_of(std::span<const Option> list) {
    Codes codes;
    for (const Option& option : list) codes.push_back(option.code);
    return codes;
}

// "code text" per entry, a bar between two.
std::string entries_of(std::span<const Option> list) {
    std::string entries;
    for (const Option& option : list)
        entries += (entries.empty() ? "" : "|") + std::to_string(option.code) + " " +
                   std::string(option.text);
    return entries;
}

const std::vector<std::int16_t> AllTypes = {Type7R, Type7S, Type7T, Type7U,
                                            Type8R, Type8S, Type7V, Type7W};

TEST(PodTypes, SelectorListsUniversalPodsBeforeDigitalOnes) {
    std::string rows;
    for (const PodTypeRow& row : pod_types())
        rows += std::to_string(row.type) + "," + std::string(row.code) + "," +
                std::string(row.description) + "," + std::to_string(row.channels) + "|";
    EXPECT_EQ(rows,
              "0,,No Device,0|1,7R,7R Solid State 3 Pole,20|2,7S,7S Solid State 6 Pole,10|3,7T,7T "
              "Reed Relay 3 Pole,20|"
              "4,7U,7U Reed Relay 500V,20|7,7V,7V Universal ZAV,20|8,7W,7W Universal ZAV "
              "500V,20|5,8R,8R Digital I/O,20|"
              "6,8S,8S Switch I/O,32|");
}

TEST(PodTypes, UnknownNumberIsNoDevice) {
    for (const int type : {-1, 9, 32767})
        EXPECT_EQ(pod_type(static_cast<std::int16_t>(type)).description, "No Device") << type;
}

struct ModeCase {
    std::vector<std::int16_t> types;
    std::vector<int> channels;
    Codes codes;
};

TEST(Modes, OfferedPerTypeAndChannel) {
    const Codes odd_universal = {0,  10, 20, 21, 22, 31, 32, 33, 34, 35, 36,
                                 37, 38, 39, 30, 40, 41, 42, 43, 50, 70};
    const Codes even_universal = {0, 10, 22, 31, 32, 33, 34, 35, 36, 37, 38, 39, 30, 50, 70};
    const std::vector<ModeCase> cases = {
        {{Type7R, Type7T, Type7U}, {1, 2, 20}, {0, 10, 31, 32, 33, 34, 35, 36, 37, 38, 50}},
        {{Type7S}, {1, 2, 10}, {0, 10, 20, 21, 40, 41, 60, 61, 62, 63, 64, 65, 66, 67}},
        {{Type8R}, {1, 2, 20}, {0, 70, 74, 75, 76, 80, 90, 91, 92}},
        {{Type8S}, {1, 2, 28}, {0, 70, 76}},
        {{Type8S}, {29, 30, 31, 32}, {0, 70, 76, 80}},
        {{Type7V, Type7W}, {1, 3, 17}, odd_universal},
        {{Type7V, Type7W}, {2, 4, 18}, even_universal},
        {{Type7V, Type7W}, {19, 20}, {0, 70, 74, 75, 80, 90, 91}},
        {{NoDevice, 9, -1}, {1, 19}, {}},
        {{Type7R, Type7S, Type7V, Type8S}, {0, -1, 34}, {}}};
    for (const ModeCase& c : cases)
        for (const std::int16_t type : c.types)
            for (const int channel : c.channels)
                EXPECT_EQ(codes_of(modes(type, channel)), c.codes)
                    << "type " << type << " channel " << channel;
}

TEST(Modes, TextsInOrderOfCodes) {
    EXPECT_EQ(entries_of(all_modes()),
              "0 Skip|10 Volts DC|20 Resistance 4 Term|21 Resistance 3 Term|22 Resistance 2 "
              "Term|30 User Thermocouple 2|31 Thermocouple Type E|32 Thermocouple Type J|33 "
              "Thermocouple Type K|34 Thermocouple Type R|35 Thermocouple Type S|36 Thermocouple "
              "Type T|37 Thermocouple Type B|38 Thermocouple Type N|39 User Thermocouple 1|40 "
              "RTD/PRT 100 Ohm 4 Term|41 RTD/PRT 100 Ohm 3 Term|42 RTD/PRT 10 Ohm 4 Term|43 "
              "RTD/PRT 10 Ohm 3 Term|50 Current DC|60 Strain 1/2 Bridge 4mA|61 Strain 1/2 Bridge "
              "0.8mA|62 Strain 1/4 Bridge 4mA|63 Strain 1/4 Bridge 0.8mA|64 Strain Full Bridge "
              "8mA|65 Strain Full Bridge 1.6mA|66 Strain 3 Wire Bridge 4mA|67 Strain 3 Wire Bridge "
              "0.8mA|70 Digital Status|74 Event Totalise|75 Event Increment|76 Event Capture|80 "
              "Switch Output|90 Frequency|91 Multiple Periods|92 'One Shot' Time");
    EXPECT_EQ(mode_text(30), "User Thermocouple 2");
    EXPECT_EQ(mode_text(11), "");
}

TEST(Modes, OfTypeTakesAllChannelsTogether) {
    EXPECT_TRUE(is_legal_mode_of_type(80, Type8S));
    EXPECT_FALSE(is_legal_mode(80, Type8S, 28));
    EXPECT_TRUE(is_legal_mode_of_type(90, Type7V));
    EXPECT_FALSE(is_legal_mode(90, Type7V, 18));
    EXPECT_FALSE(is_legal_mode_of_type(60, Type7V));
    EXPECT_FALSE(is_legal_mode_of_type(10, NoDevice));
    for (const std::int16_t type : AllTypes)
        for (const Option& mode : all_modes()) {
            bool anywhere = false;
            for (int channel = 1; channel <= channel_count(type); ++channel)
                anywhere = anywhere || is_legal_mode(mode.code, type, channel);
            EXPECT_EQ(is_legal_mode_of_type(mode.code, type), anywhere)
                << "mode " << mode.code << " type " << type;
        }
}

// The list of a mode, whether or not the type offers it on the channel.
std::string range_list(int mode, std::int16_t type, int channel) {
    const bool universal = type == Type7V || type == Type7W;
    const bool between = channel < 1 || channel > 33;
    const std::string volts = "0 Autorange|1 20mV|2 200mV|3 2V";
    const std::string ohms = "0 Autorange|1 25 Ohm|2 250 Ohm|3 2k5 Ohm";
    const std::string outputs = "0 Off (high)|1 On (low)";
    if (between) return "";
    if (mode == 10 || (mode >= 30 && mode <= 39)) return type == Type7S ? volts : volts + "|4 10V";
    if (mode == 21 && universal) return "0 Autorange|3 2k5 Ohm|4 25k Ohm";
    if (mode >= 20 && mode <= 22) return universal ? ohms + "|4 25k Ohm" : ohms;
    if ((mode >= 40 && mode <= 43) || (mode >= 60 && mode <= 67)) return volts;
    if (mode == 50) return "0 Autorange|1 200uA|2 2mA|3 20mA|4 100mA";
    if (mode == 70 && universal && channel > 18) return "0 (Hardware Sel.)";
    if (mode == 70)
        return universal ? "0 TTL Logic|1 3V/9V Logic|2 Volt Free Contact" : "0 TTL Logic";
    if (mode >= 74 && mode <= 76) return "0 -ve going edge|1 +ve going edge|2 +/-ve going edge";
    if (mode == 80) return universal ? outputs + "|2 Trip Output" : outputs;
    if (mode == 90) return "0 10ms|1 100ms|2 1s|3 10s";
    if (mode == 91) return "0 1 period|1 10 periods|2 100 periods|3 1000 periods";
    return mode == 92 ? "0 -ve going start|1 +ve going start" : "";
}

TEST(Ranges, ListsPerModeTypeAndChannel) {
    for (std::int16_t mode = -1; mode < 100; ++mode)
        for (const std::int16_t type : AllTypes)
            for (int channel = -1; channel <= 34; ++channel)
                ASSERT_EQ(entries_of(ranges(mode, type, channel)), range_list(mode, type, channel))
                    << "mode " << mode << " type " << type << " channel " << channel;
}

TEST(Ranges, TextOfACodeIsThatOfItsList) {
    EXPECT_EQ(range_text(21, Type7W, 1, 3), "2k5 Ohm");
    EXPECT_EQ(range_text(21, Type7W, 1, 1), "");
    EXPECT_EQ(range_text(70, Type7V, 19, 0), "(Hardware Sel.)");
    EXPECT_EQ(range_text(70, Type7V, 5, 0), "TTL Logic");
    EXPECT_EQ(range_text(0, Type7V, 5, 0), "");
}

TEST(Ranges, LegalityFollowsTheList) {
    EXPECT_TRUE(is_legal_range(4, 10, Type7R, 1));
    EXPECT_FALSE(is_legal_range(4, 10, Type7S, 1));
    EXPECT_FALSE(is_legal_range(1, 21, Type7V, 1));
    EXPECT_FALSE(is_legal_range(1, 70, Type7V, 19));
    EXPECT_TRUE(is_legal_range_of_type(1, 70, Type7V));
    EXPECT_FALSE(is_legal_range_of_type(3, 70, Type7V));
    EXPECT_FALSE(is_legal_range_of_type(0, 10, NoDevice));
    EXPECT_FALSE(is_legal_range_of_type(-1, 10, Type7R));
}

TEST(Options, CodesAndTexts) {
    EXPECT_EQ(entries_of(integration_times()),
              "0 20ms 50Hz (FR0)|1 16.67ms 60Hz (FR1)|2 5ms (FR2)|3 4.17ms (FR3)|4 1.25ms (FR4)|5 "
              "1.04ms (FR5)");
    EXPECT_EQ(entries_of(sample_rates()),
              "0 Default (RA0)|1 20Hz (RA1)|2 1KHz (RA2)|3 10KHz (RA3)|4 100KHz (RA4)");
    EXPECT_EQ(entries_of(scan_periods()),
              "0 Off|250 250ms|500 500ms|750 750ms|1000 1000ms|1500 1500ms|2000 2000ms|2500 "
              "2500ms|3000 3000ms|4000 4000ms|5000 5000ms|10000 10000ms");
    const auto rates = poll_rates();
    EXPECT_EQ(std::vector<int>(rates.begin(), rates.end()),
              (std::vector<int>{100, 250, 500, 750, 1000, 1500, 2000, 3000, 5000, 10000}));
}

TEST(Options, TimeoutsStartWithTheDefaultCode) {
    const std::string of_8r = "6 Default (TI1)|0 200ms (TI0)|1 2s (TI1)|2 20s (TI2)|3 50s (TI3)";
    EXPECT_EQ(entries_of(timeouts(false)), of_8r);
    EXPECT_EQ(entries_of(timeouts(true)), of_8r + "|4 70s (TI4)|5 130s (TI5)");
}

struct LetterCase {
    const char* ident;
    std::int16_t type;
    bool scan_period;
    bool integration;
};

TEST(CapabilityLetters, DecideForAPodOfTheSelectedType) {
    const LetterCase cases[] = {
        {"7VJA 0F 1.00", Type7V, true, true},
        {"7VJ A0 F1.00", Type7V, false, false},  // A and F one place too far

        {"7V A  F 1.00", Type7V, true, true},
        {"7V A  X 1.00", Type7V, true, false},
        {"7V B  F 1.00", Type7V, false, true},
        {"7V a  f 1.00", Type7V, false, false},
        {"7V B  X 1.00", Type7W, true, true},  // another type is connected
        {"NC", Type7V, true, true},            // none is
        {"NC          ", NoDevice, true, true},
        {"7V", Type7V, false, false},  // letters missing
        {"7V A", Type7V, true, false},
        {"", Type7V, true, true}};
    for (const LetterCase& c : cases) {
        EXPECT_EQ(offers_scan_period(c.ident, c.type), c.scan_period) << c.ident;
        EXPECT_EQ(offers_integration(c.ident, c.type), c.integration) << c.ident;
    }
}

TEST(Capabilities, SettingsOfEachType) {
    const auto types_with = [](bool (*supports)(std::int16_t)) {
        std::vector<int> found;
        for (std::int16_t type = 0; type <= 9; ++type)
            if (supports(type)) found.push_back(type);
        return found;
    };
    using Types = std::vector<int>;
    EXPECT_EQ(types_with(supports_calibration), (Types{1, 2, 3, 7, 8}));
    EXPECT_EQ(types_with(supports_integration), (Types{1, 2, 3, 7, 8}));
    EXPECT_EQ(types_with(supports_temperature_reference), (Types{1, 3, 7, 8}));
    EXPECT_EQ(types_with(supports_watchdogs), (Types{6, 7, 8}));
    EXPECT_EQ(types_with(is_analog_type), (Types{1, 2, 3, 4, 7, 8}));
    EXPECT_TRUE(supports_sampling(Type8R, 0));
    EXPECT_FALSE(supports_sampling(Type8S, 31));
    EXPECT_FALSE(supports_sampling(Type7V, 17));
    EXPECT_TRUE(supports_sampling(Type7W, 18));
    EXPECT_TRUE(supports_linearisation(Type7V, 17));
    EXPECT_FALSE(supports_linearisation(Type7V, 18));
    EXPECT_FALSE(supports_linearisation(Type7R, 0));
}

}  // namespace
}  // namespace kavorix
