#include <fstream>
#include <string>

#include "platform/system_info.h"

namespace kavorix {

namespace {

// Read anew at every call: the figure changes.
class HostSystemInfo : public SystemInfo {
  public:
    std::uint64_t available_memory() const override {
        std::ifstream table("/proc/meminfo");
        std::string name;
        std::uint64_t kibibytes = 0;
        std::string rest;
        while (table >> name >> kibibytes && std::getline(table, rest))
            if (name == "MemAvailable:") return kibibytes * 1024;
        return 0;
    }
};

}  // namespace

std::unique_ptr<SystemInfo> make_host_system_info() {
    return std::make_unique<HostSystemInfo>();
}

}  // namespace kavorix
