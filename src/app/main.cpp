#include <iostream>

#include "app/command_line.h"
#include "app/window.h"

int main(int argc, char** argv) {
    return kavorix::run_command_line(argc, argv, std::cout, std::cerr,
                                     [&](const kavorix::CommonOptions& options) {
                                         return kavorix::run_window(options, argc, argv);
                                     });
}
