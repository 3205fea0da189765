// The general format against the standard library's fastest correct call with 7 significant digits,
// over the same readings: a random walk as a pod delivers it, values of all magnitudes, and small
// whole numbers.

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cmath>
#include <random>
#include <vector>

#include "base/numbers.h"

namespace {

using namespace kavorix;

constexpr std::size_t Count = 16384;

std::vector<float> random_walk() {
    std::mt19937 random(7);
    std::normal_distribution<double> step(0, 0.01);
    std::vector<float> values;
    double value = 2;
    for (std::size_t i = 0; i < Count; ++i) {
        value += step(random);
        values.push_back(static_cast<float>(std::round(value * 1E6) / 1E6));
    }
    return values;
}

std::vector<float> all_magnitudes() {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> exponent(-30, 30);
    std::vector<float> values;
    for (std::size_t i = 0; i < Count; ++i)
        values.push_back(static_cast<float>(std::pow(10, exponent(random))));
    return values;
}

std::vector<float> whole_numbers() {
    std::mt19937 random(7);
    std::vector<float> values;
    for (std::size_t i = 0; i < Count; ++i) values.push_back(static_cast<float>(random() % 1000));
    return values;
}

template <class Write>
void run(benchmark::State& state, const std::vector<float>& values, Write write) {
    std::vector<char> out(Count * GeneralBufferSize);
    for (auto _ : state) {
        char* at = out.data();
        for (const float value : values) {
            at = write(value, at);
            *at++ = ',';
        }
        benchmark::DoNotOptimize(at);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * Count));
}

char* standard_library(float value, char* out) {
    return std::to_chars(out, out + GeneralBufferSize, value, std::chars_format::general, 7).ptr;
}

void register_all() {
    const std::pair<const char*, std::vector<float> (*)()> inputs[] = {
        {"random_walk", random_walk},
        {"all_magnitudes", all_magnitudes},
        {"whole_numbers", whole_numbers}};
    const std::pair<const char*, char* (*)(float, char*)> writers[] = {
        {"to_chars_general_7", standard_library},
        {"write_general_plain", write_general_plain},
        {"write_general", write_general}};
    for (const auto& [input, make] : inputs)
        for (const auto& [name, write] : writers)
            benchmark::RegisterBenchmark((std::string(input) + "/" + name).c_str(),
                                         [values = make(), write = write](benchmark::State& state) {
                                             run(state, values, write);
                                         });
}

}  // namespace

int main(int argc, char** argv) {
    register_all();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
}
