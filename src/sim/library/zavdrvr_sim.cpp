#include "sim/library/zavdrvr_sim.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <system_error>

#include "platform/files.h"
#include "platform/host_event_loop.h"
#include "sim/network.h"
#include "sim/scenario_file.h"

namespace {

using namespace kavorix;

// The host's time until it is moved by hand; from the moment that was last asked for it then goes
// on in the steps that it is told.
class LibraryClock : public Clock {
  public:
    std::uint32_t tick_count() const override {
        if (!by_hand_) tick_ = host_tick_count();
        return tick_;
    }
    WallTime wall_time() const override { return by_hand_ ? wall_ : host_wall_time(); }
    void block(int ms) override { by_hand_ ? advance(ms) : Clock::block(ms); }

    void advance(int ms) {
        if (!by_hand_) wall_ = host_wall_time();
        by_hand_ = true;
        tick_ += static_cast<std::uint32_t>(std::max(ms, 0));
        wall_ = add_milliseconds(wall_, std::max(ms, 0));
    }

  private:
    bool by_hand_ = false;
    mutable std::uint32_t tick_ = 0;  // last given
    WallTime wall_;
};

// A library has but one network at a time.
struct Station {
    LibraryClock clock;
    std::unique_ptr<sim::Network> network;
    bool usable = true;

    explicit Station(const char* file) {
        sim::Scenario scenario;
        if (file == nullptr) {
            scenario = sim::demo_scenario();
        } else {
            usable = read(file, scenario);
        }
        network = std::make_unique<sim::Network>(std::move(scenario), clock);
    }

  private:
    static bool read(const char* file, sim::Scenario& scenario) {
        try {
            auto loaded = sim::load_scenario(read_all(*make_host_files(), file), file);
            for (const std::string& error : loaded.errors) std::cerr << error << '\n';
            if (loaded.scenario) scenario = std::move(*loaded.scenario);
            return loaded.errors.empty();
        } catch (const std::system_error& failure) {
            std::cerr << failure.what() << '\n';
            return false;
        }
    }
};

std::unique_ptr<Station>& station() {
    static std::unique_ptr<Station> the_station;
    return the_station;
}

Station& running() {
    if (!station()) station() = std::make_unique<Station>(std::getenv("KAVORIX_NETWORK"));
    return *station();
}

sim::Network& network() {
    return *running().network;
}

}  // namespace

void Zav_Connect(int16_t* address, int16_t* handle) {
    *handle = network().Zav_Connect(*address);
}

void Zav_Init(int16_t* present, int16_t* status, int16_t* handle) {
    *status = network().Zav_Init(std::span<std::int16_t, MaxZavs>(present, MaxZavs), *handle);
}

void Zav_Disconnect(int16_t* handle) {
    network().Zav_Disconnect(*handle);
}

void Zav_Tx(int16_t* pod, char* command, int16_t* status, int16_t* length, int16_t* handle) {
    const auto size = static_cast<std::size_t>(std::max<int16_t>(*length, 0));
    *status = network().Zav_Tx(*pod, {command, size}, *handle);
}

void Zav_Test(int16_t* pod, int16_t* stream, int16_t* result, int16_t* handle) {
    *result = network().Zav_Test(*pod, *stream, *handle);
}

void Zav_String(int16_t* pod, int16_t* stream, char* buffer, int16_t* length, int16_t* status,
                int16_t* handle) {
    const auto size = static_cast<std::size_t>(std::max<int16_t>(*length, 0));
    *status = network().Zav_String(*pod, *stream, {buffer, size}, *handle);
}

void Zav_Numeric(int16_t* pod, int16_t* stream, int16_t* count, int16_t* status, float* values,
                 int16_t* codes, int16_t* handle) {
    // A record of stream 1 has two values and one code.
    const bool single = *stream == RequestStream;
    *status = network().Zav_Numeric(*pod, *stream, *count, {values, single ? 2u : MaxChannels},
                                    {codes, single ? 1u : MaxChannels}, *handle);
}

void Zav_ValToByte(float* value, int16_t* bytes) {
    const auto result = network().Zav_ValToByte(*value);
    std::copy(result.begin(), result.end(), bytes);
}

void Zav_DLLVersion(char* text) {
    network().Zav_DLLVersion(std::span<char, 34>(text, 34));
}

void Zav_PowerOff(int16_t* handle) {
    network().Zav_PowerOff(*handle);
}

void Zav_DLLDelay(int16_t milliseconds) {
    network().Zav_DLLDelay(milliseconds);
}

int16_t Zav_SimNetwork(const char* file) {
    station() = std::make_unique<Station>(file);
    return station()->usable ? 0 : 1;
}

void Zav_SimAdvance(int32_t milliseconds) {
    running().clock.advance(milliseconds);
}
