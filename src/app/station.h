#pragma once

// A station without windows: every record and every part that works on pods, wired to each other.

#include <memory>
#include <string>

#include "acquire/poll_cycle.h"
#include "config/transmission.h"
#include "link/discovery.h"
#include "logging/log_file.h"
#include "ui/main/pod_commands.h"

namespace kavorix {

inline constexpr std::string_view ProgramVersion = KAVORIX_VERSION;

// Where a station keeps its settings file and its error log.
struct StationFolder {
    std::string directory;       // the program directory
    bool keep_error_log = true;  // false: a short terminal run that leaves no file behind
};

class Station {
  public:
    // All of it outlives the station.
    struct Surroundings {
        Driver& driver;
        EventLoop& loop;
        Dialogs& dialogs;
        Files& files;
        StationFolder folder;
    };
    explicit Station(const Surroundings& surroundings);

    // Card search and discovery. Throws ProgramEnded when the settings file is malformed.
    void start();

    // The end of a run without a window: the error log is closed, and deleted after a run without
    // errors.
    void finish();

    // Selects exactly these pods among those of the poll table.
    void select_pods(const PodSet& pods);

    const Surroundings with;

    Configuration configuration;
    RunTime run_time;

    MessageLine message_line;
    ErrorLog error_log;
    ErrorReporter failures;
    LinkErrors link_errors;

  private:
    std::unique_ptr<Timer> tmrPoll_;

  public:
    Polling polling;
    SentConfigurations sent;
    CommandLink link;
    Discovery discovery;
    Transmission transmission;
    PodCommands pods;
    LogFile log_file;

  private:
    PodErrors pod_errors_;
    StreamDecoder decoder_;

  public:
    PollCycle poll_cycle;

    // Pods that were found just now have nothing to be sent yet.
    void note_fresh_pods();
};

}  // namespace kavorix
