#pragma once

// Reads the text of a configuration file, with full validation and without asking anybody.
// docs/configuration-files.md describes the format and the checks.

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "model/runtime.h"
#include "platform/files.h"

namespace kavorix {

// What a file must fit to.
struct Connected {
    std::int16_t CardHandle = 0;
    std::int16_t CardAddress = 0;
    std::array<std::string, MaxZavs> Ident;  // of each pod number; "NC" when no pod answers
};

Connected connected_now(const InterfaceSettings& settings, const PodStatuses& status);

// A station that a file fits to as far as the file itself says: the card that its first "AD"
// statement names and, for each "IM" statement, a pod of the type named there that takes scan
// period and integration time. For checking a file on its own.
Connected assume_connected(std::string_view file);

// What is wrong with a line. Lines count from 1, the header being the first.
struct LoadMessage {
    std::size_t line = 0;
    std::string text;
};

// Is handed each message in the order of the file; false stops the load.
using MessageSink = std::function<bool(const LoadMessage&)>;

enum class LoadOutcome {
    Loaded,
    NoHeader,  // not a configuration file; nothing changed
    Errors,    // messages were given
    Stopped    // the sink stopped the load
};

// Loads the bytes of a file, lines ending in CR LF, CR or LF. ZavConfig is copied to ZavConfigCopy
// first and is what it was unless the file is free of errors, also when `sink` throws. PollRate and
// PowerOn are taken as they are read and stay. ConfigFileName and ConfigChanged are left to the
// caller.
LoadOutcome load_configuration(std::string_view file, const Connected& connected,
                               Configuration& configuration, const MessageSink& sink);

// The same for a file on its own: checked against the station that it assumes, whose card becomes
// that of `configuration`.
LoadOutcome load_on_its_own(std::string_view file, Configuration& configuration,
                            const MessageSink& sink);

// The content of a configuration file. What does not start with the header is not read to its end.
// Throws std::system_error.
std::string read_config_file(Files& files, const std::string& path);

}  // namespace kavorix
