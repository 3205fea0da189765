#include "app/window_station.h"

#include "app/verify.h"

namespace kavorix {

namespace {

QString memory_path(const std::string& directory) {
    return QString::fromLocal8Bit(join_path(directory, "windows.ini"));
}

MainWindowHandlers handlers_of(Station& station) {
    MainWindowHandlers handlers = handlers_of(station.operations);
    handlers.open = [&station](const std::string& path) { station.open(path); };
    return handlers;
}

}  // namespace

WindowStation::WindowStation(const CommonOptions& options)
    : mirrors_(loop),
      dialogs_(mirrors_),
      files_(make_host_files()),
      directory_(program_directory(options, *files_)),
      driver(make_driver(options, *files_, loop)),
      system_info_(make_host_system_info()),
      station({*driver, loop, dialogs_, *files_, windows_, {directory_, true}, *system_info_}),
      windows_(mirrors_, station.stream0, memory_path(directory_)),
      memory_(memory_path(directory_)),
      pod_setup_windows_(mirrors_, dialogs_, memory_),
      window(station.screen, handlers_of(station), mirrors_, memory_path(directory_)) {
    dialogs_.set_main_window(&window);
    dialogs_.set_memory(memory_);
    station.config_files.on_used([this](const std::string& path) { window.note_recent(path); });
    windows_.set_main_window(&window);
    pod_setup_windows_.set_main_window(&window);
    station.set_up_pods_in(pod_setup_windows_);
    windows_.set_graph(station.graph, dialogs_, *files_);
    if (const auto* simulated = dynamic_cast<const sim::Network*>(driver.get()))
        station.compare_with([this, simulated](const std::vector<int>& pods) {
            return verify_pods(station.configuration.ZavConfig, *simulated, pods);
        });
}

void WindowStation::show() {
    window.show();
    loop.call_later(0, [this] { station.start(); });
}

}  // namespace kavorix
