#pragma once

// Start-up of the link: settings file, card search, pod discovery and the pod display.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "link/command_link.h"

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
    // The configuration is written here (every pod reset), elsewhere the link only reads it.
    Discovery(const CommandLink::Surroundings& surroundings, CommandLink& link,
              Configuration& configuration);

    // What happens when the main window loads: settings file `ini_path`, error log, driver version,
    // window layout, card search, discovery. Ends the program when the settings file is malformed.
    void Form_Load(Files& files, const std::string& ini_path);

    // Searches for a card from `address` on (single 0) or tries that one (single 1); `address`
    // returns where the search stopped. Returns 1 when connected, the pods that answer then being
    // in the poll table.
    std::int16_t ConnectToCard(std::int16_t& address, std::int16_t pollRate, std::int16_t single);
    std::int16_t LocateCard(std::int16_t address);

    // Resets the run-time state after a connection.
    void Initialise();

    // Sends "RE;ST" (mode 0) or "ST" (mode 1) to every selected pod and collects the replies into
    // Ident, waiting 500 ms a pod at the most.
    void GetStatus(std::int16_t mode);

    // Draws the pods of the poll table, each with its default configuration.
    void DispZAVS();

  private:
    bool ask_for_status(int pod, std::string_view command);
    bool read_status(int pod);
    void show_pod(int pod);
    void show_number_strips();
    void enable_operations(bool enabled);
    void report_no_card(std::int16_t address);

    CommandLink::Surroundings with_;
    CommandLink& link_;
    Configuration& configuration_;
    std::unique_ptr<Timer> tmrTimeOut_;
};

}  // namespace kavorix
