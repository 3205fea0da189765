#include "model/catalogue.h"

#include <algorithm>
#include <array>

namespace kavorix {

namespace {

constexpr std::array<PodTypeRow, 9> PodTypes = {{
    {NoDevice, "", "No Device", 0},
    {Type7R, "7R", "7R Solid State 3 Pole", 20},
    {Type7S, "7S", "7S Solid State 6 Pole", 10},
    {Type7T, "7T", "7T Reed Relay 3 Pole", 20},
    {Type7U, "7U", "7U Reed Relay 500V", 20},
    {Type7V, "7V", "7V Universal ZAV", 20},
    {Type7W, "7W", "7W Universal ZAV 500V", 20},
    {Type8R, "8R", "8R Digital I/O", 20},
    {Type8S, "8S", "8S Switch I/O", 32},
}};

constexpr std::array<Option, 36> AllModes = {{
    {0, "Skip"},
    {10, "Volts DC"},
    {20, "Resistance 4 Term"},
    {21, "Resistance 3 Term"},
    {22, "Resistance 2 Term"},
    {30, "User Thermocouple 2"},
    {31, "Thermocouple Type E"},
    {32, "Thermocouple Type J"},
    {33, "Thermocouple Type K"},
    {34, "Thermocouple Type R"},
    {35, "Thermocouple Type S"},
    {36, "Thermocouple Type T"},
    {37, "Thermocouple Type B"},
    {38, "Thermocouple Type N"},
    {39, "User Thermocouple 1"},
    {40, "RTD/PRT 100 Ohm 4 Term"},
    {41, "RTD/PRT 100 Ohm 3 Term"},
    {42, "RTD/PRT 10 Ohm 4 Term"},
    {43, "RTD/PRT 10 Ohm 3 Term"},
    {50, "Current DC"},
    {60, "Strain 1/2 Bridge 4mA"},
    {61, "Strain 1/2 Bridge 0.8mA"},
    {62, "Strain 1/4 Bridge 4mA"},
    {63, "Strain 1/4 Bridge 0.8mA"},
    {64, "Strain Full Bridge 8mA"},
    {65, "Strain Full Bridge 1.6mA"},
    {66, "Strain 3 Wire Bridge 4mA"},
    {67, "Strain 3 Wire Bridge 0.8mA"},
    {70, "Digital Status"},
    {74, "Event Totalise"},
    {75, "Event Increment"},
    {76, "Event Capture"},
    {80, "Switch Output"},
    {90, "Frequency"},
    {91, "Multiple Periods"},
    {92, "'One Shot' Time"},
}};

constexpr const Option* find_code(std::span<const Option> list, std::int16_t code) {
    for (const Option& option : list)
        if (option.code == code) return &option;
    return nullptr;
}

// The pod types that a row of a table is for, as bits.
using TypeSet = unsigned;

constexpr TypeSet types() {
    return 0;
}
template <class... Rest>
constexpr TypeSet types(PodType first, Rest... rest) {
    return (1u << static_cast<unsigned>(first)) | types(rest...);
}
constexpr bool holds(TypeSet set, std::int16_t type) {
    return type >= NoDevice && type <= Type7W && ((set >> static_cast<unsigned>(type)) & 1u) != 0;
}
constexpr TypeSet Universal = types(Type7V, Type7W);
constexpr TypeSet AllTypes = types(Type7R, Type7S, Type7T, Type7U, Type8R, Type8S) | Universal;
constexpr int LastChannel = ChannelSlots;

// A mode list of the given codes with their texts.
template <std::int16_t... Codes>
constexpr std::array<Option, sizeof...(Codes)> ModeList = {*find_code(AllModes, Codes)...};

// What channels of a type offer: those from `first` to `last` in steps of `step`.
struct ModeRow {
    TypeSet for_types;
    int first;
    int last;
    int step;
    std::span<const Option> list;

    constexpr bool covers(std::int16_t type, int channel) const {
        return holds(for_types, type) && channel >= first && channel <= last &&
               (channel - first) % step == 0;
    }
};

constexpr std::array<ModeRow, 8> ModeRows = {{
    {types(Type7R, Type7T, Type7U), 1, LastChannel, 1,
     ModeList<0, 10, 31, 32, 33, 34, 35, 36, 37, 38, 50>},
    {types(Type7S), 1, LastChannel, 1,
     ModeList<0, 10, 20, 21, 40, 41, 60, 61, 62, 63, 64, 65, 66, 67>},
    {types(Type8R), 1, LastChannel, 1, ModeList<0, 70, 74, 75, 76, 80, 90, 91, 92>},
    {types(Type8S), 1, 28, 1, ModeList<0, 70, 76>},
    {types(Type8S), 29, LastChannel, 1, ModeList<0, 70, 76, 80>},
    {Universal, 1, 17, 2,
     ModeList<0, 10, 20, 21, 22, 31, 32, 33, 34, 35, 36, 37, 38, 39, 30, 40, 41, 42, 43, 50, 70>},
    {Universal, 2, 18, 2, ModeList<0, 10, 22, 31, 32, 33, 34, 35, 36, 37, 38, 39, 30, 50, 70>},
    {Universal, 19, LastChannel, 1, ModeList<0, 70, 74, 75, 80, 90, 91>},
}};

template <std::size_t N>
using Options = std::array<Option, N>;

constexpr Options<5> Volts = {{{0, "Autorange"}, {1, "20mV"}, {2, "200mV"}, {3, "2V"}, {4, "10V"}}};
constexpr Options<5> Ohms = {
    {{0, "Autorange"}, {1, "25 Ohm"}, {2, "250 Ohm"}, {3, "2k5 Ohm"}, {4, "25k Ohm"}}};
constexpr Options<3> HighOhms = {{{0, "Autorange"}, {3, "2k5 Ohm"}, {4, "25k Ohm"}}};
constexpr Options<5> Amperes = {
    {{0, "Autorange"}, {1, "200uA"}, {2, "2mA"}, {3, "20mA"}, {4, "100mA"}}};
constexpr Options<1> HardwareLevel = {{{0, "(Hardware Sel.)"}}};
constexpr Options<3> InputLevels = {
    {{0, "TTL Logic"}, {1, "3V/9V Logic"}, {2, "Volt Free Contact"}}};
constexpr Options<3> Edges = {
    {{0, "-ve going edge"}, {1, "+ve going edge"}, {2, "+/-ve going edge"}}};
constexpr Options<3> Outputs = {{{0, "Off (high)"}, {1, "On (low)"}, {2, "Trip Output"}}};
constexpr Options<4> Gates = {{{0, "10ms"}, {1, "100ms"}, {2, "1s"}, {3, "10s"}}};
constexpr Options<4> Periods = {
    {{0, "1 period"}, {1, "10 periods"}, {2, "100 periods"}, {3, "1000 periods"}}};
constexpr Options<2> Starts = {{{0, "-ve going start"}, {1, "+ve going start"}}};

constexpr std::span<const Option> first_of(std::span<const Option> list, std::size_t count) {
    return list.first(count);
}

// The ranges of the modes `first_mode` to `last_mode` on channels `first` to `last` of some types.
struct RangeRow {
    std::int16_t first_mode;
    std::int16_t last_mode;
    TypeSet for_types;
    int first;
    int last;
    std::span<const Option> list;

    constexpr bool covers(std::int16_t mode, std::int16_t type) const {
        return mode >= first_mode && mode <= last_mode && holds(for_types, type);
    }
};

constexpr TypeSet AllButSixPole = AllTypes & ~types(Type7S);
constexpr TypeSet AllButUniversal = AllTypes & ~Universal;

// No two rows cover the same mode on the same channel of a type.
constexpr std::array<RangeRow, 22> RangeRows = {{
    {10, 10, types(Type7S), 1, LastChannel, first_of(Volts, 4)},
    {10, 10, AllButSixPole, 1, LastChannel, Volts},
    {20, 20, AllButUniversal, 1, LastChannel, first_of(Ohms, 4)},
    {20, 20, Universal, 1, LastChannel, Ohms},
    {21, 21, AllButUniversal, 1, LastChannel, first_of(Ohms, 4)},
    {21, 21, Universal, 1, LastChannel, HighOhms},
    {22, 22, AllButUniversal, 1, LastChannel, first_of(Ohms, 4)},
    {22, 22, Universal, 1, LastChannel, Ohms},
    {30, 39, types(Type7S), 1, LastChannel, first_of(Volts, 4)},
    {30, 39, AllButSixPole, 1, LastChannel, Volts},
    {40, 43, AllTypes, 1, LastChannel, first_of(Volts, 4)},
    {50, 50, AllTypes, 1, LastChannel, Amperes},
    {60, 67, AllTypes, 1, LastChannel, first_of(Volts, 4)},
    {70, 70, AllButUniversal, 1, LastChannel, first_of(InputLevels, 1)},
    {70, 70, Universal, 1, 18, InputLevels},
    {70, 70, Universal, 19, LastChannel, HardwareLevel},
    {74, 76, AllTypes, 1, LastChannel, Edges},
    {80, 80, AllButUniversal, 1, LastChannel, first_of(Outputs, 2)},
    {80, 80, Universal, 1, LastChannel, Outputs},
    {90, 90, AllTypes, 1, LastChannel, Gates},
    {91, 91, AllTypes, 1, LastChannel, Periods},
    {92, 92, AllTypes, 1, LastChannel, Starts},
}};

constexpr Options<6> IntegrationTimes = {{{0, "20ms 50Hz (FR0)"},
                                          {1, "16.67ms 60Hz (FR1)"},
                                          {2, "5ms (FR2)"},
                                          {3, "4.17ms (FR3)"},
                                          {4, "1.25ms (FR4)"},
                                          {5, "1.04ms (FR5)"}}};
constexpr Options<5> SampleRates = {{{0, "Default (RA0)"},
                                     {1, "20Hz (RA1)"},
                                     {2, "1KHz (RA2)"},
                                     {3, "10KHz (RA3)"},
                                     {4, "100KHz (RA4)"}}};
// The last two are for universal pods only.
constexpr Options<7> Timeouts = {{{DefaultTimeout, "Default (TI1)"},
                                  {0, "200ms (TI0)"},
                                  {1, "2s (TI1)"},
                                  {2, "20s (TI2)"},
                                  {3, "50s (TI3)"},
                                  {4, "70s (TI4)"},
                                  {5, "130s (TI5)"}}};
constexpr std::size_t ShortTimeouts = 5;
constexpr Options<12> ScanPeriods = {{{0, "Off"},
                                      {250, "250ms"},
                                      {500, "500ms"},
                                      {750, "750ms"},
                                      {1000, "1000ms"},
                                      {1500, "1500ms"},
                                      {2000, "2000ms"},
                                      {2500, "2500ms"},
                                      {3000, "3000ms"},
                                      {4000, "4000ms"},
                                      {5000, "5000ms"},
                                      {10000, "10000ms"}}};
constexpr std::array<std::int16_t, 10> PollRates = {100,  250,  500,  750,  1000,
                                                    1500, 2000, 3000, 5000, 10000};

template <std::size_t N>
constexpr bool codes_are_unique(const Options<N>& list) {
    for (std::size_t i = 0; i < N; ++i)
        if (find_code(list, list[i].code) != &list[i]) return false;
    return true;
}
template <std::size_t N>
constexpr bool codes_ascend(const Options<N>& list) {
    for (std::size_t i = 1; i < N; ++i)
        if (list[i - 1].code >= list[i].code) return false;
    return true;
}
constexpr bool every_type_once() {
    TypeSet seen = 0;
    for (const PodTypeRow& row : PodTypes) seen |= types(static_cast<PodType>(row.type));
    return PodTypes.size() == 9 && seen == (1u << PodTypes.size()) - 1;
}

static_assert(every_type_once());
static_assert(codes_ascend(AllModes) && codes_ascend(ScanPeriods));
static_assert(codes_ascend(IntegrationTimes) && codes_ascend(SampleRates));
static_assert(codes_are_unique(Timeouts));

// What the letter at a place of the identification of a pod of the type says; a pod of another type
// does not matter.
bool letter_allows(std::string_view ident, std::int16_t type, std::size_t place, char letter) {
    const std::string_view code = pod_type(type).code;
    if (code.empty() || ident.substr(0, 2) != code) return true;
    return ident.size() > place && ident[place] == letter;
}

}  // namespace

std::span<const PodTypeRow> pod_types() {
    return PodTypes;
}

const PodTypeRow& pod_type(std::int16_t type) {
    const auto* row = std::find_if(PodTypes.begin(), PodTypes.end(),
                                   [&](const PodTypeRow& r) { return r.type == type; });
    return row == PodTypes.end() ? PodTypes.front() : *row;
}

std::span<const Option> all_modes() {
    return AllModes;
}

std::span<const Option> modes(std::int16_t type, int channel) {
    for (const ModeRow& row : ModeRows)
        if (row.covers(type, channel)) return row.list;
    return {};
}

std::span<const Option> ranges(std::int16_t mode, std::int16_t type, int channel) {
    for (const RangeRow& row : RangeRows)
        if (row.covers(mode, type) && channel >= row.first && channel <= row.last) return row.list;
    return {};
}

std::string_view mode_text(std::int16_t mode) {
    const Option* option = find_code(AllModes, mode);
    return option ? option->text : std::string_view{};
}

std::string_view range_text(std::int16_t mode, std::int16_t type, int channel, std::int16_t range) {
    const Option* option = find_code(ranges(mode, type, channel), range);
    return option ? option->text : std::string_view{};
}

bool is_known_mode(std::int16_t mode) {
    return find_code(AllModes, mode) != nullptr;
}

bool is_legal_mode(std::int16_t mode, std::int16_t type, int channel) {
    return find_code(modes(type, channel), mode) != nullptr;
}

bool is_legal_range(std::int16_t range, std::int16_t mode, std::int16_t type, int channel) {
    return find_code(ranges(mode, type, channel), range) != nullptr;
}

bool is_legal_mode_of_type(std::int16_t mode, std::int16_t type) {
    return std::any_of(ModeRows.begin(), ModeRows.end(), [&](const ModeRow& row) {
        return holds(row.for_types, type) && find_code(row.list, mode);
    });
}

bool is_legal_range_of_type(std::int16_t range, std::int16_t mode, std::int16_t type) {
    return std::any_of(RangeRows.begin(), RangeRows.end(), [&](const RangeRow& row) {
        return row.covers(mode, type) && find_code(row.list, range);
    });
}

std::span<const Option> integration_times() {
    return IntegrationTimes;
}

std::span<const Option> sample_rates() {
    return SampleRates;
}

std::span<const Option> timeouts(bool with_long_ones) {
    return std::span<const Option>(Timeouts).first(with_long_ones ? Timeouts.size()
                                                                  : ShortTimeouts);
}

std::span<const Option> scan_periods() {
    return ScanPeriods;
}

std::span<const std::int16_t> poll_rates() {
    return PollRates;
}

bool offers_scan_period(std::string_view ident, std::int16_t type) {
    return letter_allows(ident, type, 3, 'A');
}

bool offers_integration(std::string_view ident, std::int16_t type) {
    return letter_allows(ident, type, 6, 'F');
}

}  // namespace kavorix
