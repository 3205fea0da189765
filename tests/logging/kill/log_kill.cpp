// Kills a program that logs, at random moments, and looks at what is left.
//
//     log_kill [--kills COUNT] [--seed SEED]
//
// A child process logs as fast as it can and notes in shared memory how many calls of
// Write_Log_File have returned; the parent kills it with SIGKILL and reads the file: every record
// promised is there with every value, at most one more, nothing else, and the file converts, a row
// for each. The next child appends its run to the same file. Every few kills a run is finished in
// order and the next file begun. Exit code 0 when nothing was lost, 1 when something was, 2 for
// wrong arguments.

#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "logging/csv_converter.h"
#include "support/log_rig.h"
#include "support/temporary_directory.h"

namespace kavorix::test {
namespace {

struct Promise {
    std::atomic<std::int32_t> started{0};
    std::atomic<std::int32_t> records{0};
};

// What one run logs: so many pods of 32 channels, values that follow from run and record. Small
// whole numbers are among them, which a reader that is out of step would take for markers.
struct Plan {
    int run = 0;
    int pods = 1;

    float value(int record, int pod, int channel) const {
        return static_cast<float>((run * 7 + record * 5 + pod * 3 + channel) % 2048) / 2;
    }
    RecordRead record(int number) const {
        RecordRead expected;
        for (int pod = 1; pod <= pods; ++pod) {
            expected.values.push_back(static_cast<float>(pod));
            for (int channel = 0; channel < MaxChannels; ++channel)
                expected.values.push_back(value(number, pod, channel));
        }
        return expected;
    }
};

class Logger {
  public:
    Logger(Files& files, const std::string& path, const Plan& plan) : plan_(plan), rig_(files) {
        rig_.run_time.Log.ScanFileName = path;
        for (int pod = 1; pod <= plan.pods; ++pod) rig_.add_pod(pod, "8S");
        rig_.log.Start_Log_File(ScanLog);
    }
    void write(int record) {
        std::vector<float> values(MaxChannels);
        for (int pod = 1; pod <= plan_.pods; ++pod) {
            for (int channel = 0; channel < MaxChannels; ++channel)
                values[at(channel)] = plan_.value(record, pod, channel);
            rig_.give(pod, values);
        }
        rig_.write(ScanLog);
    }
    void stop() { rig_.log.Stop_Log_File(ScanLog); }

  private:
    Plan plan_;
    LogRig rig_;
};

[[noreturn]] void log_until_killed(const std::string& path, const Plan& plan, Promise& promise) {
    const auto files = make_host_files();
    promise.started = 1;
    Logger logger(*files, path, plan);
    for (int record = 0;; ++record) {
        logger.write(record);
        promise.records = record + 1;
    }
}

void wait_for(long microseconds) {
    timespec rest{microseconds / 1000000, microseconds % 1000000 * 1000};
    while (nanosleep(&rest, &rest) != 0 && errno == EINTR) {
    }
}

class Unwatched : public CsvWatcher {
  public:
    void progress(int) override {}
    bool go_on() override { return true; }
    bool go_on_with_wrong_dates() override { return true; }
};

CsvResult convert(Files& files, const std::string& path) {
    const auto log = files.open(path, OpenMode::Read);
    CsvPlan plan;
    plan.Pods = read_log_contents(*log).Pods;
    plan.Selection = select_all(plan.Pods);
    Unwatched watcher;
    return CsvConverter(
               *log, [](std::string_view) {}, plan, watcher)
        .convert();
}

class KillTest {
  public:
    explicit KillTest(std::uint32_t seed) : random_(seed) {
        void* shared = mmap(nullptr, sizeof(Promise), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (shared == MAP_FAILED) std::abort();
        promise_ = new (shared) Promise;
    }

    bool run(int kills) {
        constexpr int RunsPerFile = 6;
        for (int kill = 0; kill < kills; ++kill) {
            if (kill % RunsPerFile == 0 && !begin_file()) return false;
            const Plan plan = make_plan(kill);
            const int promised = log_and_kill(plan);
            promised_ += promised;
            if (!check(plan, promised)) return false;
        }
        return begin_file();
    }

    long long promised() const { return promised_; }
    long long found() const { return found_; }

  private:
    Plan make_plan(int run) {
        const int pods[] = {1, 7, 50};
        return {run, pods[random_() % 3]};
    }

    // Finishes the file so far with a run that is not killed, and begins the next.
    bool begin_file() {
        if (!expected_.empty()) {
            const Plan plan = make_plan(-1);
            Logger logger(*files_, path_, plan);
            logger.write(0);
            logger.stop();
            if (!check(plan, 1)) return false;
            files_->remove(path_);
        }
        expected_.clear();
        return true;
    }

    int log_and_kill(const Plan& plan) {
        constexpr long Longest_us = 4000;
        promise_->started = 0;
        promise_->records = 0;
        const pid_t child = fork();
        if (child < 0) std::abort();
        if (child == 0) log_until_killed(path_, plan, *promise_);
        while (promise_->started == 0) wait_for(20);
        wait_for(static_cast<long>(random_() % Longest_us));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        if (!WIFSIGNALED(status)) {
            std::printf("the logging program ended by itself\n");
            std::exit(1);
        }
        return promise_->records;
    }

    bool check(const Plan& plan, int promised) {
        const LogRead read = files_->exists(path_) ? read_log(*files_, path_) : LogRead{};
        const auto before = expected_.size();
        const auto records = static_cast<int>(read.records.size()) - static_cast<int>(before);
        if (records < promised || records > promised + 1)
            return fail(plan, promised, records, "records lost");
        for (int record = 0; record < records; ++record) expected_.push_back(plan.record(record));
        for (std::size_t i = 0; i < expected_.size(); ++i)
            if (read.records[i].values != expected_[i].values)
                return fail(plan, promised, static_cast<int>(i), "wrong values in record");
        if (!expected_.empty()) {
            const CsvResult csv = convert(*files_, path_);
            // Killed while it wrote its header, a run has no record and its start is cut short.
            const bool torn_start = promised == 0 && csv.End == CsvEnd::CutShort;
            if ((csv.End != CsvEnd::Done && !torn_start) || csv.Rows != expected_.size())
                return fail(plan, promised, static_cast<int>(csv.Rows), "converted rows");
        }
        found_ += records;
        return true;
    }

    static bool fail(const Plan& plan, int promised, int found, const char* what) {
        std::printf("run %d, %d pods: promised %d: %s %d\n", plan.run, plan.pods, promised, what,
                    found);
        return false;
    }

    std::mt19937 random_;
    Promise* promise_ = nullptr;
    std::unique_ptr<Files> files_ = make_host_files();
    TemporaryDirectory directory_;
    std::string path_ = directory_ / "killed.DAT";
    std::vector<RecordRead> expected_;  // of all runs in the file
    long long promised_ = 0;
    long long found_ = 0;
};

std::optional<int> number(std::string_view text) {
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return value;
}

int main_of(int argc, char** argv) {
    int kills = 300;
    int seed = 1;
    for (int i = 1; i < argc; i += 2) {
        const std::string_view option = argv[i];
        const auto value = i + 1 < argc ? number(argv[i + 1]) : std::nullopt;
        if (!value || (option != "--kills" && option != "--seed")) {
            std::fputs("usage: log_kill [--kills COUNT] [--seed SEED]\n", stderr);
            return 2;
        }
        (option == "--kills" ? kills : seed) = *value;
    }
    KillTest test(static_cast<std::uint32_t>(seed));
    const bool passed = test.run(kills);
    std::printf("%d kills: %lld records promised, %lld found\n", kills, test.promised(),
                test.found());
    return passed ? 0 : 1;
}

}  // namespace
}  // namespace kavorix::test

int main(int argc, char** argv) {
    return kavorix::test::main_of(argc, argv);
}
