// From the start of the process to the first painted window, on the offscreen platform with the
// built-in network, against a program that only opens an empty toolkit window. Each iteration is a
// process of its own; the stages are milliseconds since its start.

#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QMainWindow>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "app/window.h"

namespace {

using Clock = std::chrono::steady_clock;

long long now_us() {
    return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch())
        .count();
}

// Writes "stage microseconds" lines; the last stage ends the process without tidying up.
void report(std::string_view stage) {
    std::printf("%.*s %lld\n", static_cast<int>(stage.size()), stage.data(), now_us());
    if (stage == "painted") {
        std::fflush(stdout);
        _exit(0);
    }
}

int child(const std::string& what, int argc, char** argv) {
    report("main");
    if (what == "station") {
        kavorix::CommonOptions options;
        options.directory = std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "/tmp";
        return kavorix::run_window(options, argc, argv, report);
    }
    QApplication application(argc, argv);
    report("toolkit");
    QMainWindow window;
    window.resize(1280, 720);
    window.show();
    QTimer::singleShot(0, [] { report("painted"); });
    return QApplication::exec();
}

// Runs this program as a child; the stages in milliseconds since its start.
std::map<std::string, double> start(const char* what) {
    const std::string command = "QT_QPA_PLATFORM=offscreen exec /proc/" + std::to_string(getpid()) +
                                "/exe --child " + what + " 2>/dev/null";
    const long long begun = now_us();
    FILE* pipe = popen(command.c_str(), "r");
    std::map<std::string, double> stages;
    char stage[32];
    long long at = 0;
    while (std::fscanf(pipe, "%31s %lld", stage, &at) == 2)
        stages[stage] = static_cast<double>(at - begun) / 1000;
    pclose(pipe);
    return stages;
}

void measure(benchmark::State& state, const char* what) {
    std::map<std::string, double> sums;
    for ([[maybe_unused]] auto _ : state) {
        const auto stages = start(what);
        if (!stages.contains("painted")) {
            state.SkipWithError("the window was not painted");
            return;
        }
        for (const auto& [stage, ms] : stages) sums[stage] += ms;
        state.SetIterationTime(stages.at("painted") / 1000);
    }
    for (const auto& [stage, ms] : sums)
        state.counters[stage + "_ms"] = ms / static_cast<double>(state.iterations());
}

void BM_EmptyWindow(benchmark::State& state) {
    measure(state, "empty");
}
void BM_Station(benchmark::State& state) {
    measure(state, "station");
}

BENCHMARK(BM_EmptyWindow)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(15);
BENCHMARK(BM_Station)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(15);

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::string(argv[1]) == "--child") return child(argv[2], argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
