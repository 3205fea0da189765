#pragma once

// A station without a window, for the terminal commands.

#include <iosfwd>
#include <memory>
#include <string>

#include "app/network.h"
#include "app/station.h"

namespace kavorix {

namespace sim {
class Network;
}

// A desktop of two text streams: boxes are lines on `messages`, questions are answered with what
// changes nothing (No, else Ok), nothing is edited or chosen.
class TerminalDialogs : public Dialogs {
  public:
    explicit TerminalDialogs(std::ostream& messages) : messages_(messages) {}

    Answer message_box(std::string_view text, int flags, std::string_view title) override;
    Answer Msg_Box(std::string_view text, int flags, std::string_view title) override;
    void Unload_Msg_Box() override {}
    std::optional<std::string> choose_file_to_open(const FileRequest&) override { return {}; }
    std::optional<std::string> choose_file_to_save(const FileRequest&) override { return {}; }
    void show_wait_message(std::string_view) override {}
    void set_pointer(Pointer) override {}
    void beep() override {}
    void repaint() override {}
    bool open_in_editor(const std::string&) override { return false; }

  private:
    std::ostream& messages_;
};

class TerminalStation {
  public:
    // Throws UnusableInput.
    TerminalStation(const CommonOptions& options, EventLoop& loop, std::ostream& messages,
                    bool keep_error_log);

    // Starts the station; false when there is no card or no pod.
    bool start();

    Files& files() { return *files_; }
    const Driver& driver() const { return *driver_; }

    // The pods of the poll table that are asked for; all of them for an empty list. Throws
    // UnusableInput when one that is asked for does not answer.
    PodSet pods(const std::string& list) const;

    // The simulated network that it works with; nothing when a driver library is in its place.
    const sim::Network* simulated_network() const;

  private:
    std::unique_ptr<Files> files_;
    std::unique_ptr<Driver> driver_;
    TerminalDialogs dialogs_;

  public:
    Station station;
};

}  // namespace kavorix
