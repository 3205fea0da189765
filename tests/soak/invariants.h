#pragma once

// What must hold whatever the operator does and whatever goes wrong: every rule with the reason why
// it matters, and the checks. They compare the station with a model that is kept from outside, from
// what crosses the driver, the disk and the desktop.

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/desk.h"
#include "platform/virtual_event_loop.h"
#include "soak/networks.h"
#include "support/memory_files.h"

namespace kavorix::soak {

enum class Rule {
    OnlySelectedPodsAreCommanded,
    RemovedPodsAreNotPolled,
    PollTableAgrees,
    SelectionAgrees,
    ErrorsAddUp,
    ErrorLogTellsEveryError,
    LoggedValuesAreTheTwins,
    LogTimesGoOn,
    LogsStayWhole,
    LoggingGoesOn,
    PollingGoesOn,
    FilesConvert,
    FailedLoadChangesNothing,
    SavedFilesLoadBack,
    FailedSaveKeepsTheOldFile,
    PodsHoldWhatWasSent,
    NothingSeriousHappens,
    ScreenShowsTheState,
    NothingStaysBusy,
    RecordsStayInRange,
    AStartIsFresh,
    CallsComeToAnEnd,
    MemoryStaysBounded,
    MemoryComesBack,
    RunsRepeat
};

struct RuleText {
    Rule rule;
    std::string_view name;
    std::string_view why;
};
const RuleText& text_of(Rule rule);

struct Breach {
    Rule rule;
    std::string what;
};

// What is known from outside of a pod.
struct KnownPod {
    bool polled = false;    // answered, and has not failed since
    bool selected = false;  // as the operator chose
    bool in_error = false;
    bool log_scans = false;
    bool log_events = false;
    bool new_scan = false;  // data was waiting since the last record
    bool new_events = false;
    int count = 0;  // of the last scan
    ChannelValues values{};
    ChannelCodes codes{};
    std::vector<EventEntry> events;  // of the last reading of stream 2
    EventTimeBase base;
};

// A log file as it has been promised.
struct KnownLog {
    int runs = 0;
    int records = 0;
    int events = 0;
    int kind = ScanLog;
    std::uint64_t digest = 14695981039346656037U;  // of the singles of all records
    std::uint64_t block_at = 0;                    // the run's first block
    std::uint64_t next_at = 0;                     // behind the last record
    bool begun = false;                            // the run has its header
    bool mixed = false;                            // runs of both kinds
    std::array<std::int16_t, MaxZavs> channels{};  // of the pods of the run, by its header
};

struct Known {
    std::array<KnownPod, MaxZavs> pods;
    bool all_selected = false;
    std::int32_t session_errors = 0;
    std::int32_t errors = 0;       // since the last connection
    std::string new_log_lines;     // of the error log, not yet compared
    std::size_t log_compared = 0;  // bytes
    WallTime started;
    bool polling = false;  // a transmission has started the timer
    long long last_test_ms = 0;
    std::map<std::string, KnownLog> logs;
    std::array<std::string, 2> log_path;
    std::array<bool, 2> logging{};
    std::int32_t interval_choice_ms = 0;
    std::int32_t interval_ms = 0;
    long long last_record_ms = 0;  // of the scan log, or its start
    bool clock_started = false;
    long long day_ms = 0;          // time of day of the last record
    std::uint32_t clock_tick = 0;  // its tick count
    bool disk_failed = false;      // an operation of the disk failed in this run of the program
    bool serious = false;          // the program said that it will stop
};

class Invariants {
  public:
    struct World {
        Station* station = nullptr;  // nothing while no program runs
        Desk* desk = nullptr;        // likewise
        VirtualEventLoop* loop = nullptr;
        test::MemoryFiles* files = nullptr;
        const Cards* cards = nullptr;
    };

    World world;
    Known known;
    std::optional<Breach> breach;  // the first

    void expect(bool holds, Rule rule, const std::string& what) {
        if (!holds) broken(rule, what);
    }
    void broken(Rule rule, const std::string& what);

    // What happens, as the driver, the disk and the desktop see it.
    void connected(std::span<const std::int16_t, MaxZavs> present);
    void transmission_begins();
    // The operator sends something to the selected pods, in one transmission or in several.
    void work_begins();
    void command_sent(int pod, std::string_view command);
    void status_asked(int pod);
    void tested(int pod);
    void link_error(int pod, bool receive, bool removed);
    void scan_read(int pod, int count, std::span<const float> values,
                   std::span<const std::int16_t> codes);
    void events_read(int pod, std::string_view bytes);
    void log_opened(const std::string& path);
    void log_written(const std::string& path, std::uint64_t offset, std::string_view bytes);
    void errors_cleared();
    void click(int pod);
    void select_all();

    // The pods that were selected when the work under way began, less those that failed or were
    // cleared since.
    std::array<bool, MaxZavs> addressed{};
    bool several = false;  // the work consists of several transmissions

    // The configuration files before a save or load.
    void remember_files(std::map<std::string, std::string> contents) {
        files_before_ = std::move(contents);
    }
    void check_saved_files();
    void check_loaded_file();
    void transmitted(const PodSet& pods);

    void after_start();
    void after_action();
    void after_end(bool exited);  // the program has ended; `exited`: by the operator
    void check_log(const std::string& path);
    void check_conversion(const std::string& path, bool all_columns);

  private:
    Configuration& configuration() const { return world.station->configuration; }
    RunTime& run_time() const { return world.station->run_time; }
    void error_line(const std::string& line);
    void compare_error_log();
    void compare_link();
    void compare_screen();
    void compare_ranges();
    void check_times();
    void record_completed(const std::string& path, std::uint64_t offset);
    std::string configuration_as_written() const;

    std::map<std::string, std::string> files_before_;
    std::vector<float> expected_scan(const KnownLog& log);
    std::vector<float> expected_events(KnownLog& log);
    float expected_time();
};

}  // namespace kavorix::soak
