#pragma once

// The configuration of the whole system in memory. Records are plain values: assigning one copies
// its tables and texts. Flags hold 1 for on and 0 for off, but for the two `Enabled` that say
// otherwise.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "model/pods.h"

namespace kavorix {

inline constexpr int ChannelSlots = 33;  // index = channel number - 1; the last one is never used
inline constexpr int AlarmGroupChannels = 18;  // alarms of channels 1..18 can belong to a group
inline constexpr int AlarmGroupSlots = 3;  // 0: output of channel 19, 1: of channel 20, 2: unused
inline constexpr int Coefficients = 6;     // 0..5 of a 5th-order polynomial
inline constexpr std::size_t MaxLabel = 15;
inline constexpr std::size_t MaxUnit = 5;
inline constexpr std::int16_t TableOn = -1;  // `Enabled` of UserTherm and PostLinEquation when on
inline constexpr std::int16_t GroupOff = 2;  // `OutputState` of an alarm group that is disabled

// Pod type numbers.
enum PodType : std::int16_t {
    NoDevice = 0,
    Type7R = 1,
    Type7S = 2,
    Type7T = 3,
    Type7U = 4,
    Type8R = 5,
    Type8S = 6,
    Type7V = 7,
    Type7W = 8
};

using Polynomial6 = std::array<float, Coefficients>;  // coefficient i multiplies x^i

struct InterfaceSettings {
    std::int16_t CardHandle = 0;
    std::int16_t CardAddress = 0;  // C800 hexadecimal is held as -14336
    std::int16_t PollRate = 1000;  // ms
    std::int16_t PowerOn = 0;
    bool operator==(const InterfaceSettings&) const = default;
};

struct AlarmLimit {
    std::int16_t Enabled = 0;
    float Limit = 0;
    float Hysteresis = 0;
    bool operator==(const AlarmLimit&) const = default;
};

struct ChannelConfig {
    std::int16_t Mode = 0;   // mode code, 0 = not in use, 70 = digital status
    std::int16_t Range = 0;  // range code within the mode
    std::string Label;       // at most MaxLabel characters
    std::string Unit;        // at most MaxUnit characters
    float MValue = 1.0F;     // y = Mx + c
    float CValue = 0.0F;
    std::int16_t PostLin = 0;  // 0 = none, 1 or 2 = post-linearisation equation
    AlarmLimit LowAlarm;
    AlarmLimit HighAlarm;
    bool operator==(const ChannelConfig&) const = default;
};

struct StrainSettings {
    float GaugeFactor = 0;
    float Offset = 0;
    float InitialVolt = 0;
    bool operator==(const StrainSettings&) const = default;
};

struct UserTherm {
    std::int16_t Enabled = 0;  // -1 = on
    Polynomial6 Polynomial{};
    Polynomial6 InversePoly{};
    bool operator==(const UserTherm&) const = default;
};

struct PostLinEquation {
    std::int16_t Enabled = 0;  // -1 = on
    Polynomial6 Coeff{};
    bool operator==(const PostLinEquation&) const = default;
};

struct AlarmGroup {
    std::int16_t OutputState = 0;  // 0 = disassert output, 1 = assert output, 2 = GroupOff
    std::array<std::int16_t, AlarmGroupChannels> High{};
    std::array<std::int16_t, AlarmGroupChannels> Low{};
    bool operator==(const AlarmGroup&) const = default;
};

// One pod number. Times in ms unless said.
struct PodConfig {
    std::int16_t TypeCode = 0;  // PodType; 0 = no configuration for this pod number
    std::int16_t NumChannels = 0;
    std::int16_t ScanPeriod = 0;
    std::int16_t Setup = 0;
    std::int16_t Arm = 0;
    std::int16_t CalOn = 0;
    std::int16_t ContScan = 0;
    std::array<ChannelConfig, ChannelSlots> Channel;
    std::int16_t Integration = 0;
    std::int16_t DegF = 0;
    std::int16_t AmbTemp = 1;
    float ExtTemp = 0;  // in the pod's temperature units
    std::int16_t OpenTC = 0;
    std::array<std::int16_t, ChannelSlots> SampleRate{};
    std::array<std::int16_t, ChannelSlots> Timeout{};
    std::int16_t HWWatch = 0;
    std::int16_t SWWatch = 0;
    std::int16_t SWWatchTime = 1;
    std::array<StrainSettings, ChannelSlots> Strain;
    std::array<std::int16_t, ChannelSlots> SixPole{};
    std::array<kavorix::UserTherm, 2> UserTherm;  // tables 1 and 2 at indices 0 and 1
    std::array<kavorix::PostLinEquation, 2> PostLinEquation;
    std::array<kavorix::AlarmGroup, AlarmGroupSlots> AlarmGroup;
    bool operator==(const PodConfig&) const = default;
};

using PodConfigs = PodArray<PodConfig>;

// The configuration of the station.
struct Configuration {
    InterfaceSettings Interface;
    PodConfigs ZavConfig;            // live; index = pod number - 1
    PodConfigs ZavConfigCopy;        // working copy of the dialogs, backup while a file loads
    std::string ConfigFileName;      // full path of the file last loaded or saved, empty until then
    std::int16_t ConfigChanged = 0;  // 1 = accepted in a dialog and not yet saved
};

// The type number of a two-character pod type code; 0 for anything else, lower case included.
std::int16_t GetZAVTypeCode(std::string_view code);

// Puts a record into the default state of type `typeNumber`. setModes 0: every channel unused;
// otherwise the type's default channel modes. Left alone: channel slot 32, alarm limits and
// hysteresis, the slots behind 19 of SampleRate and Timeout, behind 9 of Strain, alarm group
// slot 2.
void default_ZAV_config(PodConfig& pod, std::int16_t typeNumber, std::int16_t setModes);

}  // namespace kavorix
