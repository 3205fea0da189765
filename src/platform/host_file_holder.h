#pragma once

// Who holds a lock.

#include <cstdint>
#include <string>

namespace kavorix {

// The program that has locked the file with this device and inode, for example "kavorix (process
// 4711)"; "this program" for the calling one, "another program" when the system does not tell.
std::string holder_of(std::uint64_t device, std::uint64_t inode);

}  // namespace kavorix
