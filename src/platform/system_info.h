#pragma once

// What the program asks about the machine that it runs on.

#include <cstdint>
#include <memory>

namespace kavorix {

class SystemInfo {
  public:
    virtual ~SystemInfo() = default;

    // Physical memory that programs can still get, in bytes; 0 when the system does not say.
    virtual std::uint64_t available_memory() const = 0;
};

// The host's.
std::unique_ptr<SystemInfo> make_host_system_info();

}  // namespace kavorix
