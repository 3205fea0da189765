#include "sim/pod_types.h"

namespace kavorix::sim {

namespace {

constexpr bool is_thermocouple(int mode) {
    return mode >= 30 && mode <= 39;
}
constexpr bool is_rtd(int mode) {
    return mode >= 40 && mode <= 43;
}
constexpr bool is_strain(int mode) {
    return mode >= 60 && mode <= 67;
}

bool universal_accepts(int channel, int mode) {
    if (channel >= 19)
        return mode == 70 || mode == 74 || mode == 75 || mode == 80 || mode == 90 || mode == 91;
    // Three- and four-terminal measurements take an odd channel and the even one after it.
    if (mode == 20 || mode == 21 || is_rtd(mode)) return channel % 2 == 1;
    return mode == 10 || mode == 22 || is_thermocouple(mode) || mode == 50 || mode == 70;
}

bool digital_accepts(int mode) {
    return mode == 70 || (mode >= 74 && mode <= 76) || mode == 80 || (mode >= 90 && mode <= 92);
}

// The highest range digit of a mode.
int last_range(PodFamily family, int channel, int mode) {
    const bool universal = family == PodFamily::Universal;
    if (mode == 10 || is_thermocouple(mode)) return family == PodFamily::Bridge ? 3 : 4;
    if (mode >= 20 && mode <= 22) return universal ? 4 : 3;
    if (is_rtd(mode) || is_strain(mode)) return 3;
    if (mode == 50) return 4;
    if (mode == 70) return universal && channel <= 18 ? 2 : 0;
    if (mode >= 74 && mode <= 76) return 2;
    if (mode == 80) return universal ? 2 : 1;
    if (mode == 90 || mode == 91) return 3;
    if (mode == 92) return 1;
    return 0;
}

}  // namespace

PodFamily pod_family(std::string_view code) {
    if (code == "7R" || code == "7T" || code == "7U") return PodFamily::Voltage;
    if (code == "7S") return PodFamily::Bridge;
    if (code == "7V" || code == "7W") return PodFamily::Universal;
    if (code == "8R") return PodFamily::Digital;
    if (code == "8S") return PodFamily::Switch;
    return PodFamily::Unknown;
}

int channels_of(PodFamily family) {
    if (family == PodFamily::Bridge) return 10;
    if (family == PodFamily::Switch) return 32;
    return 20;
}

bool is_digital_channel(PodFamily family, int channel) {
    if (family == PodFamily::Universal) return channel >= 19;
    return family == PodFamily::Digital || family == PodFamily::Switch;
}

std::int16_t default_mode(PodFamily family, int channel) {
    if (family == PodFamily::Unknown) return 0;
    return is_digital_channel(family, channel) ? 70 : 10;
}

bool accepts_mode(PodFamily family, int channel, int mode) {
    if (mode == 0) return true;
    switch (family) {
        case PodFamily::Voltage:
            return mode == 10 || (mode >= 31 && mode <= 38) || mode == 50;
        case PodFamily::Bridge:
            return mode == 10 || mode == 20 || mode == 21 || mode == 40 || mode == 41 ||
                   is_strain(mode);
        case PodFamily::Digital:
            return digital_accepts(mode);
        case PodFamily::Switch:
            return mode == 70 || mode == 76 || (mode == 80 && channel >= 29);
        case PodFamily::Universal:
            return universal_accepts(channel, mode);
        case PodFamily::Unknown:
            break;
    }
    return false;
}

bool accepts_range(PodFamily family, int channel, int mode, int range) {
    if (mode == 0) return true;
    if (mode == 21 && family == PodFamily::Universal && (range == 1 || range == 2)) return false;
    return range >= 0 && range <= last_range(family, channel, mode);
}

}  // namespace kavorix::sim
