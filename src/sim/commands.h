#pragma once

// Reads the command bytes that reach a pod. A command is a run of statements divided by ";" (the
// last one may go without). Numbers stand in them as the four bytes of a single, least significant
// byte first, so that any byte value, ";" among them, can be part of a number: where a statement
// ends follows from its form alone.

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kavorix::sim {

enum class Verb {
    Trigger,            // TR
    Halt,               // HA
    Reset,              // RE
    Status,             // ST
    Setup,              // SE
    Arm,                // AR
    Continuous,         // CO
    Measure,            // ME nn: measure one channel
    InitialiseStrain,   // IN nn: offset and initial volt of a strain gauge
    Events,             // EV0, EV1
    ClearCount,         // CL n
    ScanPeriod,         // SP number: milliseconds
    Calibration,        // KA0 on, KA1 off
    Integration,        // FR code
    Units,              // UN0 Celsius, UN1 Fahrenheit
    AmbientReference,   // AM
    ExternalReference,  // TE number
    OpenCheck,          // TC0, TC1
    UserTable,          // UT1, UT2 with 12 numbers
    Equation,           // PL1, PL2 with 6 numbers
    HardwareWatch,      // HW0, HW1
    SoftwareWatch,      // SW time
    ChannelMode,        // CH n MO mode range
    GaugeFactor,        // CH n GA number
    StrainOffset,       // CH n OF number number
    SampleRate,         // CH n RA code
    Timeout,            // CH n TI code
    ChannelEquation,    // CH n PL equation
    HighAlarm,          // CH n HL limit hysteresis
    LowAlarm,           // CH n LL limit hysteresis
    GroupOutput         // CH n GO state members
};

// Why a statement is not taken; the letter is what the pod's answer shows.
enum class Refusal : char {
    None = 0,
    Unknown = 'U',   // no such statement
    Argument = 'A',  // its argument is missing, malformed or out of range
    Channel = 'C',   // the pod has no such channel
    Mode = 'M'       // not on a channel or pod of this kind
};

// One alarm of a group output.
struct GroupMember {
    int channel = 0;  // 1..18
    bool high = false;
    bool operator==(const GroupMember&) const = default;
};

struct Statement {
    Refusal refusal = Refusal::None;  // Unknown or Argument; then only mnemonic and channel hold
    Verb verb = Verb::Status;         // also holds for Refusal::Argument
    std::string mnemonic;             // its two letters, as far as they came
    bool names_channel = false;       // CH n, ME, IN and CL
    int channel = 0;                  // the channel that it names, as it stands there
    int argument = 0;                 // digits: code, state, table, mode
    int range = 0;                    // ChannelMode
    std::array<float, 12> numbers{};
    std::vector<GroupMember> members;  // GroupOutput
};

// The statements of a command in their order; after one that is not understood reading goes on
// behind the next ";".
std::vector<Statement> read_command(std::string_view command);

// The four bytes of a single in transmission order, and back.
std::array<unsigned char, 4> bytes_of(float value);
float value_of(std::string_view four_bytes);

}  // namespace kavorix::sim
