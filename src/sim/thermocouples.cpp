#include "sim/thermocouples.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>

namespace kavorix::sim {

namespace {

// One piece of a reference function: millivolts as a polynomial of the temperature, coefficients
// from the constant upwards.
struct Piece {
    double up_to;  // degrees
    std::span<const double> coefficients;
};

constexpr double EBelow[] = {0.0,
                             0.586655087080e-1,
                             0.454109771240e-4,
                             -0.779980486860e-6,
                             -0.258001608430e-7,
                             -0.594525830570e-9,
                             -0.932140586670e-11,
                             -0.102876055340e-12,
                             -0.803701236210e-15,
                             -0.439794973910e-17,
                             -0.164147763550e-19,
                             -0.396736195160e-22,
                             -0.558273287210e-25,
                             -0.346578420130e-28};
constexpr double EAbove[] = {0.0,
                             0.586655087100e-1,
                             0.450322755820e-4,
                             0.289084072120e-7,
                             -0.330568966520e-9,
                             0.650244032700e-12,
                             -0.191974955040e-15,
                             -0.125366004970e-17,
                             0.214892175690e-20,
                             -0.143880417820e-23,
                             0.359608994810e-27};
constexpr double JBelow[] = {0.0,
                             0.503811878150e-1,
                             0.304758369300e-4,
                             -0.856810657200e-7,
                             0.132281952950e-9,
                             -0.170529583370e-12,
                             0.209480906970e-15,
                             -0.125383953360e-18,
                             0.156317256970e-22};
constexpr double JAbove[] = {0.296456256810e3,   -0.149761277860e1, 0.317871039240e-2,
                             -0.318476867010e-5, 0.157208190040e-8, -0.306913690560e-12};
constexpr double KBelow[] = {0.0,
                             0.394501280250e-1,
                             0.236223735980e-4,
                             -0.328589067840e-6,
                             -0.499048287770e-8,
                             -0.675090591730e-10,
                             -0.574103274280e-12,
                             -0.310888728940e-14,
                             -0.104516093650e-16,
                             -0.198892668780e-19,
                             -0.163226974860e-22};
constexpr double KAbove[] = {-0.176004136860e-1, 0.389212049750e-1,   0.185587700320e-4,
                             -0.994575928740e-7, 0.318409457190e-9,   -0.560728448890e-12,
                             0.560750590590e-15, -0.320207200030e-18, 0.971511471520e-22,
                             -0.121047212750e-25};
constexpr double RBelow[] = {0.0,
                             0.528961729765e-2,
                             0.139166589782e-4,
                             -0.238855693017e-7,
                             0.356916001063e-10,
                             -0.462347666298e-13,
                             0.500777441034e-16,
                             -0.373105886191e-19,
                             0.157716482367e-22,
                             -0.281038625251e-26};
constexpr double RMiddle[] = {0.295157925316e1,   -0.252061251332e-2, 0.159564501865e-4,
                              -0.764085947576e-8, 0.205305291024e-11, -0.293359668173e-15};
constexpr double RAbove[] = {0.152232118209e3, -0.268819888545, 0.171280280471e-3,
                             -0.345895706453e-7, -0.934633971046e-14};
constexpr double SBelow[] = {0.0,
                             0.540313308631e-2,
                             0.125934289740e-4,
                             -0.232477968689e-7,
                             0.322028823036e-10,
                             -0.331465196389e-13,
                             0.255744251786e-16,
                             -0.125068871393e-19,
                             0.271443176145e-23};
constexpr double SMiddle[] = {0.132900444085e1, 0.334509311344e-2, 0.654805192818e-5,
                              -0.164856259209e-8, 0.129989605174e-13};
constexpr double SAbove[] = {0.146628232636e3, -0.258430516752, 0.163693574641e-3,
                             -0.330439046987e-7, -0.943223690612e-14};
constexpr double TBelow[] = {0.0,
                             0.387481063640e-1,
                             0.441944343470e-4,
                             0.118443231050e-6,
                             0.200329735540e-7,
                             0.901380195590e-9,
                             0.226511565930e-10,
                             0.360711542050e-12,
                             0.384939398830e-14,
                             0.282135219250e-16,
                             0.142515947790e-18,
                             0.487686622860e-21,
                             0.107955392700e-23,
                             0.139450270620e-26,
                             0.797951539270e-30};
constexpr double TAbove[] = {0.0,
                             0.387481063640e-1,
                             0.332922278800e-4,
                             0.206182434040e-6,
                             -0.218822568460e-8,
                             0.109968809280e-10,
                             -0.308157587720e-13,
                             0.454791352900e-16,
                             -0.275129016730e-19};
constexpr double BBelow[] = {0.0,
                             -0.246508183460e-3,
                             0.590404211710e-5,
                             -0.132579316360e-8,
                             0.156682919010e-11,
                             -0.169445292400e-14,
                             0.629903470940e-18};
constexpr double BAbove[] = {-0.389381686210e1,   0.285717474700e-1,  -0.848851047850e-4,
                             0.157852801640e-6,   -0.168353448640e-9, 0.111097940130e-12,
                             -0.445154310330e-16, 0.989756408210e-20, -0.937913302890e-24};
constexpr double NBelow[] = {0.0,
                             0.261591059620e-1,
                             0.109574842280e-4,
                             -0.938411115540e-7,
                             -0.464120397590e-10,
                             -0.263033577160e-11,
                             -0.226534380030e-13,
                             -0.760893007910e-16,
                             -0.934196678350e-19};
constexpr double NAbove[] = {0.0,
                             0.259293946010e-1,
                             0.157101418800e-4,
                             0.438256272370e-7,
                             -0.252611697940e-9,
                             0.643118193390e-12,
                             -0.100634715190e-14,
                             0.997453389920e-18,
                             -0.608632456070e-21,
                             0.208492293390e-24,
                             -0.306821961510e-28};

constexpr Piece EPieces[] = {{0.0, EBelow}, {1000.0, EAbove}};
constexpr Piece JPieces[] = {{760.0, JBelow}, {1200.0, JAbove}};
constexpr Piece KPieces[] = {{0.0, KBelow}, {1372.0, KAbove}};
constexpr Piece RPieces[] = {{1064.18, RBelow}, {1664.5, RMiddle}, {1768.1, RAbove}};
constexpr Piece SPieces[] = {{1064.18, SBelow}, {1664.5, SMiddle}, {1768.1, SAbove}};
constexpr Piece TPieces[] = {{0.0, TBelow}, {400.0, TAbove}};
constexpr Piece BPieces[] = {{630.615, BBelow}, {1820.0, BAbove}};
constexpr Piece NPieces[] = {{0.0, NBelow}, {1300.0, NAbove}};

struct Curve {
    double lowest;       // degrees, of the reference function
    double linear_from;  // degrees, of the linearisation
    std::span<const Piece> pieces;
};

// In the order of the enumeration.
constexpr std::array<Curve, 8> Curves = {{
    {-270.0, -250.0, EPieces},
    {-210.0, -210.0, JPieces},
    {-270.0, -250.0, KPieces},
    {-50.0, -50.0, RPieces},
    {-50.0, -50.0, SPieces},
    {-270.0, -250.0, TPieces},
    {0.0, 50.0, BPieces},
    {-270.0, -250.0, NPieces},
}};

double polynomial(std::span<const double> coefficients, double x) {
    double sum = 0.0;
    for (std::size_t i = coefficients.size(); i-- > 0;) sum = sum * x + coefficients[i];
    return sum;
}

// The place between `low` and `high` where a smooth rising function has the wanted value: by
// secants, and by halving whenever one leads out of what is left.
template <class Function>
double find_rising(Function&& function, double wanted, double low, double high) {
    constexpr double CloseEnough = 1e-6;
    double before = low;
    double value_before = function(low) - wanted;
    double place = low + (high - low) * -value_before / (function(high) - wanted - value_before);
    for (int i = 0; i < 60; ++i) {
        const double value = function(place) - wanted;
        (value < 0.0 ? low : high) = place;
        double next = place - value * (place - before) / (value - value_before);
        if (!(next >= low && next <= high)) next = (low + high) / 2.0;
        before = place;
        value_before = value;
        place = next;
        if (std::fabs(place - before) < CloseEnough) break;
    }
    return place;
}

constexpr double PlatinumA = 3.9083e-3;
constexpr double PlatinumB = -5.775e-7;
constexpr double PlatinumC = -4.183e-12;
constexpr double PlatinumLowest = -200.0;
constexpr double PlatinumHighest = 850.0;

}  // namespace

double thermocouple_volts(Thermocouple type, double celsius) {
    const Curve& curve = Curves.at(static_cast<std::size_t>(type));
    celsius = std::clamp(celsius, curve.lowest, curve.pieces.back().up_to);
    const auto piece = std::find_if(curve.pieces.begin(), curve.pieces.end(),
                                    [&](const Piece& p) { return celsius <= p.up_to; });
    double millivolts = polynomial(piece->coefficients, celsius);
    // Nickel's magnetic transition bends the curve of type K.
    if (type == Thermocouple::K && celsius > 0.0) {
        const double away = celsius - 126.9686;
        millivolts += 0.1185976 * std::exp(-0.1183432e-3 * away * away);
    }
    return millivolts / 1000.0;
}

std::optional<double> thermocouple_celsius(Thermocouple type, double volts) {
    const Curve& curve = Curves.at(static_cast<std::size_t>(type));
    const double highest = curve.pieces.back().up_to;
    const auto at = [&](double celsius) { return thermocouple_volts(type, celsius); };
    if (!(volts >= at(curve.linear_from) && volts <= at(highest))) return std::nullopt;
    return find_rising(at, volts, curve.linear_from, highest);
}

double platinum_ratio(double celsius) {
    celsius = std::clamp(celsius, PlatinumLowest, PlatinumHighest);
    double ratio = 1.0 + PlatinumA * celsius + PlatinumB * celsius * celsius;
    if (celsius < 0.0) ratio += PlatinumC * (celsius - 100.0) * celsius * celsius * celsius;
    return ratio;
}

std::optional<double> platinum_celsius(double ratio) {
    if (!(ratio >= platinum_ratio(PlatinumLowest) && ratio <= platinum_ratio(PlatinumHighest)))
        return std::nullopt;
    return find_rising(platinum_ratio, ratio, PlatinumLowest, PlatinumHighest);
}

}  // namespace kavorix::sim
