#include "model/records.h"

#include "model/catalogue.h"

namespace kavorix {

namespace {

// The mode that a set-up gives the channels of a type.
std::int16_t default_mode(std::int16_t type, int slot) {
    switch (type) {
        case Type7R:
        case Type7S:
        case Type7T:
        case Type7U:
            return 10;
        case Type8R:
        case Type8S:
            return 70;
        case Type7V:
        case Type7W:
            return slot < 18 ? 10 : 70;
        default:
            return 0;
    }
}

}  // namespace

std::int16_t GetZAVTypeCode(std::string_view code) {
    for (const PodTypeRow& row : pod_types())
        if (!row.code.empty() && row.code == code) return row.type;
    return NoDevice;
}

void default_ZAV_config(PodConfig& pod, std::int16_t typeNumber, std::int16_t setModes) {
    constexpr int DefaultedChannels = 32;
    constexpr int DefaultedDigital = 20;
    constexpr int DefaultedStrain = 10;

    pod.TypeCode = typeNumber;
    pod.NumChannels = channel_count(typeNumber);
    pod.ScanPeriod = 0;
    pod.Setup = 0;
    pod.Arm = 0;
    pod.CalOn = is_analog_type(typeNumber) ? 1 : 0;
    pod.ContScan = 0;
    for (int slot = 0; slot < DefaultedChannels; ++slot) {
        const auto s = static_cast<std::size_t>(slot);
        ChannelConfig& channel = pod.Channel[s];
        channel.Mode = setModes != 0 ? default_mode(typeNumber, slot) : std::int16_t{0};
        if (setModes == 0) pod.SixPole[s] = 0;
        channel.Range = 0;
        channel.Label.clear();
        channel.Unit.clear();
        channel.MValue = 1.0F;
        channel.CValue = 0.0F;
        channel.PostLin = 0;
        channel.HighAlarm.Enabled = 0;
        channel.LowAlarm.Enabled = 0;
    }
    pod.Integration = 0;
    pod.DegF = 0;
    pod.AmbTemp = 1;
    pod.ExtTemp = 0;
    pod.OpenTC = 0;
    for (std::size_t slot = 0; slot < DefaultedDigital; ++slot) {
        pod.SampleRate[slot] = 0;
        pod.Timeout[slot] = DefaultTimeout;
    }
    pod.HWWatch = 0;
    pod.SWWatch = 0;
    pod.SWWatchTime = 1;
    for (std::size_t slot = 0; slot < DefaultedStrain; ++slot) pod.Strain[slot] = {};
    for (auto& table : pod.UserTherm) table = {};
    for (auto& equation : pod.PostLinEquation) equation = {};
    for (std::size_t slot = 0; slot < 2; ++slot) {
        pod.AlarmGroup[slot] = {};
        pod.AlarmGroup[slot].OutputState = GroupOff;
    }
}

}  // namespace kavorix
