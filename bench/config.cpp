// Loading and saving the configuration file of a full network (50 pods of 32 channels, every option
// set), against baselines over the same file: reading its lines and only splitting them at ";",
// replacing the file by bytes that are there already, and QSettings keeping as many keys as the
// file has statements (which it does not bring onto the disk). Prints medians and ratios. The cost
// of flushing is the disk's: TMPDIR chooses another one.

#include <benchmark/benchmark.h>

#include <QSettings>
#include <QString>
#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "config/config_files.h"
#include "config/config_reader.h"
#include "config/config_writer.h"
#include "support/random_config.h"
#include "support/temporary_directory.h"

namespace {

using namespace kavorix;

// The network, its file and a settings file with the same statements.
class Fixture {
  public:
    Fixture() {
        configuration_->Interface.CardAddress = -14336;
        configuration_->ZavConfig = test::full_network();
        connected_ = test::station_for(configuration_->Interface, configuration_->ZavConfig);
        save();
        text_ = read_all(*files_, path_);
        for (std::size_t at = 0; at < text_.size();) {
            const std::size_t end = text_.find('\r', at);
            statements_.push_back(
                QString::fromLatin1(text_.data() + at, static_cast<int>(end - at)));
            at = end + 2;
        }
        save_settings();
        load();
    }

    void save() { write_config_file(*files_, path_, *configuration_, {2026, 3, 1, 12, 30, 0, 0}); }

    void replace() { replace_file(*files_, path_, text_); }

    std::size_t format() const {
        return config_text(configuration_->Interface, configuration_->ZavConfig, {}).size();
    }

    void load() {
        const std::string content = read_config_file(*files_, path_);
        const auto keep_on = [](const LoadMessage& message) -> bool {
            throw std::runtime_error(message.text);
        };
        if (load_configuration(content, connected_, *configuration_, keep_on) !=
            LoadOutcome::Loaded)
            throw std::runtime_error("The file of the benchmark does not load");
    }

    std::size_t split() {
        const std::string content = read_all(*files_, path_);
        std::vector<std::string_view> fields;
        std::size_t count = 0;
        for (std::size_t at = 0; at < content.size();) {
            const std::size_t end = std::min(content.find('\n', at), content.size());
            fields.clear();
            for (std::size_t field = at; field < end;) {
                const std::size_t separator = std::min(content.find(';', field), end);
                fields.emplace_back(content.data() + field, separator - field);
                field = separator + 1;
            }
            count += fields.size();
            benchmark::DoNotOptimize(fields.data());
            at = end + 1;
        }
        return count;
    }

    void save_settings() {
        QSettings settings(settings_path(), QSettings::IniFormat);
        settings.clear();
        for (std::size_t i = 0; i < statements_.size(); ++i)
            settings.setValue(key(i), statements_[i]);
        settings.sync();
    }

    int load_settings() {
        const QSettings settings(settings_path(), QSettings::IniFormat);
        int length = 0;
        for (std::size_t i = 0; i < statements_.size(); ++i)
            length += static_cast<int>(settings.value(key(i)).toString().size());
        return length;
    }

    std::size_t statements() const { return statements_.size(); }
    std::size_t bytes() const { return text_.size(); }

  private:
    QString settings_path() const { return QString::fromStdString(directory_ / "settings.ini"); }
    static QString key(std::size_t i) { return QStringLiteral("statement%1").arg(i); }

    test::TemporaryDirectory directory_;
    std::string path_ = directory_ / "NETWORK.CFG";
    std::unique_ptr<Files> files_ = make_host_files();
    std::unique_ptr<Configuration> configuration_ = std::make_unique<Configuration>();
    Connected connected_;
    std::string text_;
    std::vector<QString> statements_;
};

// Keeps the medians for the ratios at the end.
class Medians : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.aggregate_name == "median")
                of_[run.run_name.function_name] = {run.GetAdjustedCPUTime(),
                                                   run.GetAdjustedRealTime()};
        ConsoleReporter::ReportRuns(runs);
    }
    void print_ratio(const char* measured, const char* baseline) const {
        const auto a = of_.find(measured);
        const auto b = of_.find(baseline);
        if (a != of_.end() && b != of_.end())
            std::printf("%s: %.2f times the processor time and %.2f times the time of %s\n",
                        measured, a->second.processor / b->second.processor,
                        a->second.elapsed / b->second.elapsed, baseline);
    }

  private:
    struct Times {
        double processor = 0;
        double elapsed = 0;
    };
    std::map<std::string, Times> of_;
};

template <class Work>
void measure(const char* name, Work work) {
    benchmark::RegisterBenchmark(name,
                                 [work](benchmark::State& state) {
                                     for (auto _ : state) work();
                                 })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->Repetitions(9)
        ->ReportAggregatesOnly();
}

}  // namespace

int main(int argc, char** argv) {
    Fixture fixture;
    measure("load", [&] { fixture.load(); });
    measure("split", [&] { benchmark::DoNotOptimize(fixture.split()); });
    measure("QSettings_load", [&] { benchmark::DoNotOptimize(fixture.load_settings()); });
    measure("format", [&] { benchmark::DoNotOptimize(fixture.format()); });
    measure("replace", [&] { fixture.replace(); });
    measure("save", [&] { fixture.save(); });
    measure("QSettings_save", [&] { fixture.save_settings(); });
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    std::printf("%zu statements, %zu bytes\n", fixture.statements(), fixture.bytes());
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    medians.print_ratio("load", "split");
    medians.print_ratio("load", "QSettings_load");
    medians.print_ratio("save", "replace");
    medians.print_ratio("save", "QSettings_save");
}
