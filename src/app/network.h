#pragma once

// What the options choose beside the work itself: the pod network and the program directory.

#include <memory>
#include <string>

#include "app/options.h"
#include "platform/driver.h"
#include "platform/event_loop.h"
#include "platform/files.h"

namespace kavorix {

// Input that cannot be used; the text is for the user.
struct UnusableInput {
    std::string message;
};

// The driver that the options name. Throws UnusableInput when its file cannot be used.
std::unique_ptr<Driver> make_driver(const CommonOptions& options, Files& files, EventLoop& loop);

// The program directory that the options name, made when it is missing. Throws UnusableInput.
std::string program_directory(const CommonOptions& options, Files& files);

}  // namespace kavorix
