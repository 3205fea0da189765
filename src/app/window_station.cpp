#include "app/window_station.h"

#include "app/verify.h"

namespace kavorix {

namespace {

QString memory_path(const std::string& directory) {
    return QString::fromLocal8Bit(join_path(directory, "windows.ini"));
}

}  // namespace

WindowStation::WindowStation(const CommonOptions& options)
    : mirrors_(loop),
      dialogs_(mirrors_),
      files_(make_host_files()),
      directory_(program_directory(options, *files_)),
      driver(make_driver(options, *files_, loop)),
      system_info_(make_host_system_info()),
      station({*driver, loop, dialogs_, *files_, {directory_, true}}),
      memory_(memory_path(directory_)),
      windows_(mirrors_, memory_path(directory_)),
      pod_setup_windows_(mirrors_, dialogs_, memory_),
      desk({station, windows_, pod_setup_windows_, *system_info_, compare_held()}),
      window(
          desk.main_window, [this](const std::string& path) { desk.open(path); }, mirrors_,
          memory_path(directory_)) {
    dialogs_.set_main_window(&window);
    dialogs_.set_memory(memory_);
    desk.config_files.on_used([this](const std::string& path) { window.note_recent(path); });
    windows_.set_main_window(&window);
    pod_setup_windows_.set_main_window(&window);
    windows_.set_graph(desk.graph, dialogs_, *files_);
}

// Only a simulated network can tell what its pods hold.
CompareHeld WindowStation::compare_held() {
    const auto* simulated = dynamic_cast<const sim::Network*>(driver.get());
    if (simulated == nullptr) return {};
    return [this, simulated](const PodSet& pods) {
        return verify_pods(station.configuration.ZavConfig, *simulated, pods);
    };
}

void WindowStation::show() {
    window.show();
    loop.call_later(0, [this] { station.start(); });
}

}  // namespace kavorix
