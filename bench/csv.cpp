// Conversion of a 200 MB scan log and of an event log, alone and with a helper thread, beside what
// else could do parts of it in the same run: the bare loop that only formats the same singles with
// the standard library's fastest correct call, a straightforward reader with stream output, sqlite3
// exporting the same table (a tenth of it), and cat piped to wc, which only moves the bytes. The
// rate is bytes of the log per second. Files stand in the temporary directory, so in memory.

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <memory>
#include <thread>

#include "logging/csv_file.h"
#include "support/sample_logs.h"
#include "support/temporary_directory.h"

namespace {

using namespace kavorix;
using namespace kavorix::test;

constexpr std::uint64_t Megabyte = 1000 * 1000;
constexpr std::uint64_t ScanSize = 200 * Megabyte;
constexpr std::uint64_t EventSize = 50 * Megabyte;
constexpr std::uint64_t TableSize = 20 * Megabyte;

// The logs and the table, made when the first benchmark asks for them.
class Samples {
  public:
    std::string scans(std::uint64_t size) {
        const std::string path = directory_ / ("scan" + std::to_string(size) + ".DAT");
        if (!files_->exists(path)) write_sample_scans(*files_, path, size);
        return path;
    }
    std::string events() {
        const std::string path = directory_ / "event.DAT";
        if (!files_->exists(path)) write_sample_events(*files_, path, EventSize);
        return path;
    }
    std::string table();
    Files& files() { return *files_; }
    std::string output() const { return directory_ / "out.CSV"; }

  private:
    std::unique_ptr<Files> files_ = make_host_files();
    TemporaryDirectory directory_;
};

Samples& samples() {
    static Samples all;
    return all;
}

class NoWatcher : public CsvWatcher {
  public:
    void progress(int) override {}
    bool go_on() override { return true; }
    bool go_on_with_wrong_dates() override { return true; }
};

CsvResult convert(const std::string& log, const std::string& csv, int helpers) {
    Files& files = samples().files();
    CsvPlan plan;
    plan.CsvPath = csv;
    plan.Pods = read_log_contents(*files.open(log, OpenMode::Read)).Pods;
    plan.Selection = select_all(plan.Pods);
    plan.Helpers = helpers;
    NoWatcher watcher;
    return write_csv_file(files, log, plan, watcher);
}

std::string Samples::table() {
    const std::string database = directory_ / "table.db";
    if (!files_->exists(database)) {
        const std::string csv = directory_ / "table.csv";
        convert(scans(TableSize), csv, 0);
        std::string columns = "d, t, m";
        for (int i = 0; i < SampleColumns; ++i) columns += ", c" + std::to_string(i) + " real";
        const std::string rows = csv + ".rows";  // without the lines in front of them
        const std::string command = "tail -n +6 " + csv + " > " + rows + " && sqlite3 " + database +
                                    " 'create table t(" + columns + ")' '.mode csv' '.import " +
                                    rows + " t'";
        if (std::system(command.c_str()) != 0) std::abort();
    }
    return database;
}

void count(benchmark::State& state, std::uint64_t size, std::uint64_t rows) {
    const auto runs = static_cast<std::uint64_t>(state.iterations());
    state.SetBytesProcessed(static_cast<std::int64_t>(size * runs));
    if (rows > 0)
        state.counters["rows/s"] =
            benchmark::Counter(static_cast<double>(rows * runs), benchmark::Counter::kIsRate);
}

void convert_scans(benchmark::State& state, const std::string& output) {
    const std::string log = samples().scans(ScanSize);
    CsvResult result;
    for (auto _ : state) result = convert(log, output, static_cast<int>(state.range(0)));
    count(state, ScanSize, result.Rows);
}
void scans_to_nowhere(benchmark::State& state) {
    convert_scans(state, "/dev/null");
}
void scans_to_file(benchmark::State& state) {
    convert_scans(state, samples().output());
}

void events_to_nowhere(benchmark::State& state) {
    const std::string log = samples().events();
    CsvResult result;
    for (auto _ : state) result = convert(log, "/dev/null", static_cast<int>(state.range(0)));
    count(state, EventSize, result.Rows);
}

// Every single of the log, in memory already.
void format_only(benchmark::State& state) {
    const std::string log = read_all(samples().files(), samples().scans(ScanSize));
    for (auto _ : state) {
        std::array<char, 4096> text{};
        char* at = text.data();
        for (std::size_t i = 0; i + 4 <= log.size(); i += 4) {
            if (at > text.data() + 4000) at = text.data();
            at = std::to_chars(at, at + 32, read_field<float>(log.data() + i),
                               std::chars_format::general, 7)
                     .ptr;
            *at++ = ',';
        }
        benchmark::DoNotOptimize(text);
    }
    count(state, ScanSize, 0);
}

// One field after the other, as one would write it down first.
void with_streams(benchmark::State& state) {
    const std::string log = samples().scans(TableSize);
    for (auto _ : state) {
        const auto in = samples().files().open(log, OpenMode::Read);
        std::ofstream out(samples().output());
        DatReader reader(*in);
        while (true) {
            const DatItem item = reader.next();
            if (item == DatItem::End) break;
            if (item != DatItem::Data) continue;
            out << '"' << "05-01-26" << '"' << ',' << static_cast<long>(reader.time());
            out << std::setprecision(7);
            for (int i = 0; i < reader.count(); ++i)
                out << ',' << read_field<float>(reader.values() + i * 4);
            out << "\r\n";
        }
    }
    count(state, TableSize, 0);
}

void run_command(benchmark::State& state, const std::string& command, std::uint64_t size) {
    for (auto _ : state)
        if (std::system(command.c_str()) != 0) state.SkipWithError("the command failed");
    count(state, size, 0);
}
void sqlite3_export(benchmark::State& state) {
    run_command(state, "sqlite3 -csv " + samples().table() + " 'select * from t' > /dev/null",
                TableSize);
}
void cat_to_wc(benchmark::State& state) {
    run_command(state, "cat " + samples().scans(ScanSize) + " | wc -c > /dev/null", ScanSize);
}

const int OtherCores = std::max(1, static_cast<int>(std::thread::hardware_concurrency()) - 1);

BENCHMARK(cat_to_wc)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(format_only)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(with_streams)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(sqlite3_export)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(scans_to_nowhere)
    ->ArgName("helpers")
    ->Arg(0)
    ->Arg(OtherCores)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(scans_to_file)
    ->ArgName("helpers")
    ->Arg(0)
    ->Arg(OtherCores)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(events_to_nowhere)
    ->ArgName("helpers")
    ->Arg(0)
    ->Arg(OtherCores)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
