#include "app/window.h"

#include <QApplication>
#include <QEvent>
#include <utility>

#include "app/window_station.h"
#include "ui/qt/kit/icons.h"
#include "ui/qt/kit/theme.h"

namespace kavorix {

namespace {

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

}  // namespace

int run_window(const CommonOptions& options, int argc, char** argv, const StartWatcher& reached) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("kavorix");
    QApplication::setApplicationVersion(
        QString::fromLatin1(ProgramVersion.data(), ProgramVersion.size()));
    QApplication::setDesktopFileName("kavorix");
    QApplication::setWindowIcon(program_icon());
    // Only the station's own exit ends the program.
    QApplication::setQuitOnLastWindowClosed(false);
    apply_theme(application, options.theme == "dark"    ? Theme::Dark
                             : options.theme == "light" ? Theme::Light
                                                        : Theme::System);
    reached("toolkit");
    WindowStation station(options);
    reached("station");
    FirstPaint first_paint(station.loop, reached);
    station.window.installEventFilter(&first_paint);
    station.show();
    reached("window");
    try {
        station.loop.run();
    } catch (const ProgramEnded& ended) {
        return ended.exit_code;
    }
    return ExitDone;
}

}  // namespace kavorix
