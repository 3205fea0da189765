#pragma once

// Drivers that come as a shared library with the functions of platform/zavdrvr.h.

#include <memory>
#include <string>

#include "platform/driver.h"

namespace kavorix {

struct LoadedDriver {
    std::unique_ptr<Driver> driver;  // keeps the library loaded; nothing when there is an error
    std::string error;               // a sentence that names the file, and every missing function
};

// Loads the library at `path`. The driver copies what it hands to the library into memory of its
// own, with room behind it, so that a library that writes some entries too many does no harm.
LoadedDriver load_driver_library(const std::string& path);

}  // namespace kavorix
