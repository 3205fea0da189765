#include <iostream>

#include "app/command_line.h"
#include "app/window.h"
#include "platform/host_event_loop.h"

int main(int argc, char** argv) {
    using namespace kavorix;
    return run_command_line(
        argc, argv,
        {std::cout, std::cerr,
         [&](const CommonOptions& options) { return run_window(options, argc, argv); },
         [](std::function<void()> on_interrupt) -> std::unique_ptr<EventLoop> {
             return std::make_unique<HostEventLoop>(std::move(on_interrupt));
         }});
}
