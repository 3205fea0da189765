#include "support/random_config.h"

#include <bit>
#include <cmath>
#include <vector>

#include "base/numbers.h"
#include "base/text.h"
#include "model/catalogue.h"

namespace kavorix::test {

namespace {

// Of the cards that a station looks for: C800 and DF00 hexadecimal.
constexpr int FirstAddress = -14336;
constexpr int LastAddress = -8448;

// The modes of a type's channels taken together.
std::vector<std::int16_t> modes_of(std::int16_t type) {
    std::vector<std::int16_t> found;
    for (const Option& mode : all_modes())
        if (is_legal_mode_of_type(mode.code, type)) found.push_back(mode.code);
    return found;
}

std::vector<std::int16_t> ranges_of(std::int16_t mode, std::int16_t type) {
    std::vector<std::int16_t> found;
    for (std::int16_t range = 0; range <= 9; ++range)
        if (is_legal_range_of_type(range, mode, type)) found.push_back(range);
    return found;
}

}  // namespace

int RandomConfig::number(int low, int high) {
    // Not by std::uniform_int_distribution, which differs from library to library.
    return low + static_cast<int>(random_() % static_cast<unsigned>(high - low + 1));
}

float RandomConfig::single() {
    float value = 0;
    switch (number(0, 3)) {
        case 0:
            value = static_cast<float>(number(-1000, 1000));
            break;
        case 1:
            value = static_cast<float>(number(-9999999, 9999999)) / 10000.0F;
            break;
        default:
            do value = std::bit_cast<float>(static_cast<std::uint32_t>(random_()));
            while (!std::isfinite(value));
    }
    return leading_single(general(value));
}

Polynomial6 RandomConfig::polynomial() {
    Polynomial6 coefficients;
    for (float& c : coefficients) c = single();
    return coefficients;
}

std::string RandomConfig::text(std::size_t longest) {
    std::string characters(static_cast<std::size_t>(number(0, static_cast<int>(longest))), ' ');
    for (char& c : characters) {
        do c = static_cast<char>(number(0x20, 0xFF));
        while (c == '\'' || c == ';');
    }
    return std::string(trim(characters));
}

InterfaceSettings RandomConfig::interface_settings() {
    const std::int16_t rate = pick(poll_rates());
    return {whole(0, 9), whole(FirstAddress, LastAddress), rate, flag()};
}

PodConfigs RandomConfig::configs() {
    PodConfigs pods;
    for (PodConfig& p : pods) p = pod(whole(0, 8));
    return pods;
}

PodConfig RandomConfig::pod(std::int16_t type) {
    PodConfig p;
    default_ZAV_config(p, type, 0);
    p.CalOn = 0;
    if (type == NoDevice) return p;
    if (chance(10)) p.NumChannels = whole(0, ChannelSlots);
    pod_settings(p);
    if (is_universal_type(type)) universal_settings(p);
    for (int slot = 0; slot < p.NumChannels; ++slot) channel(p, slot);
    return p;
}

void RandomConfig::pod_settings(PodConfig& p) {
    p.ScanPeriod = pick(scan_periods()).code;
    for (auto setting : {&PodConfig::Setup, &PodConfig::Arm, &PodConfig::ContScan})
        p.*setting = flag();
    if (supports_calibration(p.TypeCode)) {
        p.CalOn = flag();
        p.Integration = whole(0, 5);
        p.DegF = flag();
    }
    if (supports_temperature_reference(p.TypeCode)) {
        p.OpenTC = flag();
        p.AmbTemp = flag();
        if (p.AmbTemp == 0)
            p.ExtTemp =
                static_cast<float>(p.DegF == 1 ? number(-220, 1770) : number(-300, 800)) / 10.0F;
    }
    if (supports_watchdogs(p.TypeCode)) {
        p.HWWatch = flag();
        p.SWWatch = flag();
        if (p.SWWatch == 1) p.SWWatchTime = whole(1, 255);
    }
}

AlarmGroup RandomConfig::group() {
    AlarmGroup g;
    g.OutputState = whole(0, 2);
    if (g.OutputState == GroupOff) return g;
    g.High[at(number(0, AlarmGroupChannels - 1))] = 1;
    for (auto& member : g.Low) member = flag();
    return g;
}

void RandomConfig::universal_settings(PodConfig& p) {
    for (auto& table : p.UserTherm)
        if (chance(50)) table = {TableOn, polynomial(), polynomial()};
    for (auto& equation : p.PostLinEquation)
        if (chance(50)) equation = {TableOn, polynomial()};
    if (p.NumChannels >= 20) {
        p.AlarmGroup[0] = group();
        p.AlarmGroup[1] = group();
    }
}

void RandomConfig::channel(PodConfig& p, int slot) {
    ChannelConfig& c = p.Channel[at(slot)];
    c.Mode = pick(modes_of(p.TypeCode));
    if (c.Mode == 0) return;
    c.Range = pick(ranges_of(c.Mode, p.TypeCode));
    c.Label = text(MaxLabel);
    c.Unit = text(MaxUnit);
    if (chance(50)) {
        c.MValue = single();
        c.CValue = single();
    }
    if (supports_sampling(p.TypeCode, slot)) {
        p.SampleRate[at(slot)] = whole(0, 4);
        p.Timeout[at(slot)] = pick(timeouts(is_universal_type(p.TypeCode))).code;
    }
    if (p.TypeCode == Type7S && is_strain_mode(c.Mode))
        p.Strain[at(slot)] = {single(), single(), single()};
    if (is_universal_type(p.TypeCode)) universal_channel(p, slot);
}

void RandomConfig::universal_channel(PodConfig& p, int slot) {
    ChannelConfig& c = p.Channel[at(slot)];
    if (supports_linearisation(p.TypeCode, slot)) c.PostLin = whole(0, 2);
    if (c.Mode == DigitalStatus) return;
    if (chance(50)) c.LowAlarm = alarm();
    if (chance(50)) c.HighAlarm = alarm();
}

PodConfigs full_network() {
    constexpr std::uint32_t Seed = 50;
    RandomConfig random(Seed);
    PodConfigs pods;
    const Polynomial6 polynomial = {0.1F, -2.5E-07F, 1.401764E-02F, 1234.5F, 3, -0.00001F};
    for (PodConfig& p : pods) {
        p = random.pod(Type7V);
        p.NumChannels = MaxChannels;
        p.UserTherm.fill({TableOn, polynomial, polynomial});
        p.PostLinEquation.fill({TableOn, polynomial});
        for (int slot = 0; slot < MaxChannels; ++slot) {
            ChannelConfig& c = p.Channel[at(slot)];
            const std::int16_t mode = slot < 18 ? 10 : 90;
            const AlarmLimit low = {1, -12.5F, 0.5F}, high = {1, 99.75F, 0.5F};
            c = {mode, 1, "Channel " + two_digits(slot + 1), "l/s", 1.5F, -0.25F, 0, low, high};
            if (slot < 18) c.PostLin = 1;
            p.SampleRate[at(slot)] = slot < 18 ? 0 : 3;
        }
    }
    return pods;
}

Connected station_for(const InterfaceSettings& settings, const PodConfigs& configs) {
    Connected connected{settings.CardHandle, settings.CardAddress, {}};
    for (std::size_t pod = 0; pod < configs.size(); ++pod) {
        const std::string_view code = pod_type(configs[pod].TypeCode).code;
        connected.Ident[pod] = code.empty() ? "NC          " : std::string(code) + "JA 0F 1.00";
    }
    return connected;
}

}  // namespace kavorix::test
