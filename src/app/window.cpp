#include "app/window.h"

#include <QApplication>
#include <QEvent>
#include <utility>

#include "app/network.h"
#include "app/station.h"
#include "app/verify.h"
#include "ui/qt/icons.h"
#include "ui/qt/main_window.h"
#include "ui/qt/pod_setup_windows.h"
#include "ui/qt/qt_dialogs.h"
#include "ui/qt/qt_event_loop.h"
#include "ui/qt/qt_windows.h"
#include "ui/qt/theme.h"
#include "ui/qt/window_memory.h"

namespace kavorix {

namespace {

QString memory_path(const std::string& directory) {
    return QString::fromLocal8Bit(join_path(directory, "windows.ini"));
}

// Tells once that the window it watches has been painted.
class FirstPaint : public QObject {
  public:
    FirstPaint(EventLoop& loop, const StartWatcher& reached) : loop_(loop), reached_(reached) {}

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint && !std::exchange(painted_, true))
            // Behind the events that the painting itself consists of.
            loop_.call_later(0, [this] { reached_("painted"); });
        return false;
    }

  private:
    EventLoop& loop_;
    const StartWatcher& reached_;
    bool painted_ = false;
};

// Everything between the toolkit and the records, in the order in which it has to come and go.
class WindowStation {
  public:
    explicit WindowStation(const CommonOptions& options)
        : mirrors_(loop_),
          dialogs_(mirrors_),
          files_(make_host_files()),
          directory_(program_directory(options, *files_)),
          driver_(make_driver(options, *files_, loop_)),
          system_info_(make_host_system_info()),
          station_(
              {*driver_, loop_, dialogs_, *files_, windows_, {directory_, true}, *system_info_}),
          windows_(mirrors_, station_.stream0, memory_path(directory_)),
          memory_(memory_path(directory_)),
          pod_setup_windows_(mirrors_, dialogs_, memory_),
          window_(station_.screen, handlers_of(station_.operations), mirrors_,
                  memory_path(directory_)) {
        dialogs_.set_main_window(&window_);
        windows_.set_main_window(&window_);
        pod_setup_windows_.set_main_window(&window_);
        station_.set_up_pods_in(pod_setup_windows_);
        windows_.set_graph(station_.graph, dialogs_, *files_);
        if (const auto* simulated = dynamic_cast<const sim::Network*>(driver_.get()))
            station_.compare_with([this, simulated](const std::vector<int>& pods) {
                return verify_pods(station_.configuration.ZavConfig, *simulated, pods);
            });
    }

    int run(const StartWatcher& reached) {
        FirstPaint first_paint(loop_, reached);
        window_.installEventFilter(&first_paint);
        window_.show();
        reached("window");
        loop_.call_later(0, [this] { station_.start(); });
        try {
            loop_.run();
        } catch (const ProgramEnded& ended) {
            return ended.exit_code;
        }
        return ExitDone;
    }

  private:
    QtEventLoop loop_;
    Mirrors mirrors_;
    QtDialogs dialogs_;
    std::unique_ptr<Files> files_;
    std::string directory_;
    std::unique_ptr<Driver> driver_;
    std::unique_ptr<SystemInfo> system_info_;
    Station station_;
    QtWindows windows_;
    WindowMemory memory_;
    QtPodSetupWindows pod_setup_windows_;
    QtMainWindow window_;
};

}  // namespace

int run_window(const CommonOptions& options, int argc, char** argv, const StartWatcher& reached) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("kavorix");
    QApplication::setApplicationVersion(
        QString::fromLatin1(ProgramVersion.data(), ProgramVersion.size()));
    QApplication::setWindowIcon(program_icon());
    // Only the station's own exit ends the program.
    QApplication::setQuitOnLastWindowClosed(false);
    apply_theme(application, options.theme == "dark"    ? Theme::Dark
                             : options.theme == "light" ? Theme::Light
                                                        : Theme::System);
    reached("toolkit");
    WindowStation station(options);
    reached("station");
    return station.run(reached);
}

}  // namespace kavorix
