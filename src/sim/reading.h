#pragma once

// One measured value as a pod reports it, and the codes that say what is wrong with it.

#include <cstdint>

namespace kavorix::sim {

enum class Fail : std::int16_t {
    None = 0,
    Overload = 1,
    UndefinedThermocouple = 2,
    OutOfLinearisation = 3,
    AmbientRange = 4,
    Transducer = 5,
    OpenThermocouple = 6,
    UnknownMode = 7,
    ChannelRange = 9,
    SystemZero = 10,
    CalibrationCorrupt = 11,
    StrainNotInitialised = 12,
    Pending = 13,
    TimeOut = 14,
    NotMeasured = 127
};

struct Reading {
    float value = 0.0F;
    std::int16_t code = 0;    // 0, or 128 + error
    double duration_s = 0.0;  // that the measurement takes
};

constexpr std::int16_t code_of(Fail fail) {
    return fail == Fail::None ? std::int16_t{0}
                              : static_cast<std::int16_t>(128 + static_cast<int>(fail));
}

inline Reading failed(Fail fail, double duration_s = 0.0, double value = 0.0) {
    return {static_cast<float>(value), code_of(fail), duration_s};
}

}  // namespace kavorix::sim
