#pragma once

// Start-up of the link: settings file, card search, pod discovery and the pod display.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/trap.h"
#include "link/link_errors.h"
#include "link/polling.h"
#include "platform/driver.h"
#include "platform/event_loop.h"
#include "platform/files.h"

namespace kavorix {

inline constexpr std::int16_t FirstCardAddress = static_cast<std::int16_t>(0xC800);
inline constexpr std::int16_t LastCardAddress = static_cast<std::int16_t>(0xDF00);
inline constexpr std::int16_t CardAddressStep = 0x100;

// The text of a key in a settings file ("[section]" and "key=value" lines, names without regard to
// case, ";" starts a comment line), blanks trimmed; with an empty key the names of all keys, each
// ended by a NUL, cut at the first NUL as a private-profile reader returns it. Missing file,
// section or key: empty.
std::string GetINIData(Files& files, const std::string& path, std::string_view section,
                       std::string_view key);

// The card addresses of a comma-separated list of four-digit hexadecimal numbers. Nothing when an
// item is not four characters long; items that are not hexadecimal are skipped.
std::optional<std::vector<std::int16_t>> parse_exclude_addresses(std::string_view text);

class Discovery {
  public:
    // What it works with; all of it outlives this. The configuration is written: every pod starts
    // anew with a connection.
    struct Surroundings {
        Driver& driver;
        EventLoop& loop;
        Dialogs& dialogs;
        ErrorLog& error_log;
        LinkErrors& errors;
        FailureReporter& failures;
        Polling& polling;
        Configuration& configuration;
        RunTime& run_time;
    };
    explicit Discovery(const Surroundings& surroundings);

    // What happens when the main window loads: settings file `ini_path`, error log, driver version,
    // card search, discovery. Ends the program when the settings file is malformed.
    void Form_Load(Files& files, const std::string& ini_path);

    // Searches for a card from `address` on (single 0) or tries that one (single 1); `address`
    // returns where the search stopped. Returns 1 when connected, the pods that answer then being
    // in the poll table.
    std::int16_t ConnectToCard(std::int16_t& address, std::int16_t pollRate, std::int16_t single);
    std::int16_t LocateCard(std::int16_t address);

    // Resets the run-time state after a connection.
    void Initialise();

    // Sends "RE;ST" (mode 0) or "ST" (mode 1) to the pods and collects the replies into Ident,
    // waiting 500 ms a pod at the most. Returns the pods that replied.
    PodSet GetStatus(std::int16_t mode, const PodSet& pods);

    // Gives each pod of the poll table its place on the screen and its default configuration.
    void DispZAVS();

    // Asks all pods of a new network for their status and shows them; none is selected then.
    void identify_pods();

  private:
    bool ask_for_status(Pod pod, std::string_view command);
    bool read_status(Pod pod);
    void report_no_card(std::int16_t address);

    Surroundings with_;
    LinkState& link_;
    PodStatuses& status_;
    std::unique_ptr<Timer> tmrTimeOut_;
};

}  // namespace kavorix
