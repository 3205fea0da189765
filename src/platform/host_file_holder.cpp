#include "platform/host_file_holder.h"

#include <sys/sysmacros.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

namespace kavorix {

namespace {

// A line of the system's list: "1: FLOCK  ADVISORY  WRITE 4711 08:01:393219 0 EOF", where device
// numbers are hexadecimal.
struct LockLine {
    std::string kind;
    long process = 0;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    explicit LockLine(const std::string& line) {
        std::istringstream fields(line);
        std::string number;
        std::string advisory;
        std::string access;
        unsigned major_number = 0;
        unsigned minor_number = 0;
        char colon = 0;
        fields >> number >> kind >> advisory >> access >> process >> std::hex >> major_number >>
            colon >> minor_number >> colon >> std::dec >> inode;
        if (!fields) kind.clear();
        device = makedev(major_number, minor_number);
    }
};

}  // namespace

std::string holder_of(std::uint64_t device, std::uint64_t inode) {
    long process = 0;
    std::ifstream locks("/proc/locks");
    for (std::string text; std::getline(locks, text);) {
        const LockLine line(text);
        if (line.kind != "FLOCK" || line.inode != inode) continue;
        process = line.process;
        // File systems made of several devices list another one than they tell of a file.
        if (line.device == device) break;
    }
    if (process <= 0) return "another program";
    if (process == ::getpid()) return "this program";
    std::string name;
    std::ifstream comm("/proc/" + std::to_string(process) + "/comm");
    std::getline(comm, name);
    return (name.empty() ? "another program" : name) + " (process " + std::to_string(process) + ")";
}

}  // namespace kavorix
