#pragma once

#include <cstdint>

#include "platform/files.h"

namespace kavorix {

// Where a new run is appended to `file`. What a run that was killed left unfinished at the end is
// put in order first, so that everything before stays readable as it was: a header without its end
// is cut off, a block is filled up to its whole size, a record that was not finished is blanked.
// Complete records are never touched, nor is anything in a file that is no log. Throws
// std::system_error.
std::uint64_t repair_log_end(File& file);

}  // namespace kavorix
