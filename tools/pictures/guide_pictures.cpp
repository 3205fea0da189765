// Makes the pictures of the guide: operates the real program on the demonstration network, without
// a screen, and saves its windows as they stand. guide_pictures FOLDER writes FOLDER/NAME.png.

#include <QApplication>
#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "app/window_station.h"
#include "ui/qt/kit/theme.h"

namespace {

using namespace kavorix;

constexpr int PollRate_ms = 250;  // readings for a trend in less time
constexpr int Settle_ms = 400;    // until a window has been laid out and painted

QWidget* open_window(const QString& name) {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->objectName() == name) return window;
    return nullptr;
}

class Photographer {
  public:
    Photographer(WindowStation& station, QString folder)
        : with_(station),
          folder_(std::move(folder)),
          answering_(station.loop.make_timer([] { answer_boxes(); })) {
        answering_->start(50);
    }

    bool all_taken() const { return all_taken_; }

    void wait(int ms) {
        bool over = false;
        with_.loop.call_later(ms, [&] { over = true; });
        with_.loop.wait_until([&] { return over; });
    }

    void select(const std::vector<int>& numbers) {
        PodSet pods;
        for (const int number : numbers) pods.add(Pod::numbered(number));
        with_.station.select_pods(pods);
    }

    void run(Command command) { with_.desk.main_window.run(command); }

    void save(QWidget& window, const QString& name) {
        const QString path = folder_ + "/" + name + ".png";
        const bool done = window.grab().save(path);
        if (!done) std::cerr << "cannot write " << path.toStdString() << "\n";
        all_taken_ = all_taken_ && done;
    }

    // Opens a window, does what `prepare` does in it, waits and takes the picture. With `button`
    // the window is left by that button, else it is closed.
    void visit(Command command, const QString& form, const QString& name, int wait_ms = Settle_ms,
               std::function<void(QWidget&)> prepare = {}, const char* button = nullptr) {
        bool done = false;
        when([form] { return open_window(form) != nullptr; },
             [&] {
                 QWidget* const window = open_window(form);
                 if (prepare) prepare(*window);
                 wait(wait_ms);
                 save(*window, name);
                 if (button)
                     window->findChild<QPushButton*>(button)->click();
                 else
                     window->close();
                 done = true;
             });
        run(command);
        with_.loop.wait_until([&] { return done; });
    }

  private:
    // Does it as soon as it can be done, and no sooner than what is open has settled.
    void when(std::function<bool()> possible, std::function<void()> action, int tries = 150) {
        if (tries == 0) throw std::runtime_error("a window did not open");
        with_.loop.call_later(Settle_ms, [this, possible, action, tries] {
            if (possible())
                action();
            else
                when(possible, action, tries - 1);
        });
    }

    // Boxes are answered with their first button: Ok or Yes.
    static void answer_boxes() {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (auto* const box = qobject_cast<QMessageBox*>(window); box && box->isVisible())
                box->buttons().front()->click();
    }

    WindowStation& with_;
    QString folder_;
    std::unique_ptr<Timer> answering_;
    bool all_taken_ = true;
};

void scan_and_log(Photographer& camera, WindowStation& with, const QString& log) {
    camera.select({1, 2, 12});
    camera.run(Command::DefaultContScan);
    LogState& state = with.station.run_time.Log;
    state.ScanFileName = log.toStdString();
    state.ScanComment = "A quarter of a minute";
    for (const std::size_t pod : {0u, 1u, 11u}) with.station.run_time.Status[pod].LogScan = 1;
    camera.run(Command::Trigger);
    camera.run(Command::StartScanLog);
}

void name_channels(WindowStation& with) {
    constexpr const char* Names[] = {"Flow 1", "Flow 2", "Flow 3", "Flow 4", "Return", "Leak"};
    PodConfig& pod = with.station.configuration.ZavConfig[0];
    for (std::size_t channel = 0; channel < std::size(Names); ++channel) {
        pod.Channel[channel].Label = Names[channel];
        pod.Channel[channel].Unit = "l/s";
    }
}

void trend(Photographer& camera) {
    camera.select({1});
    camera.visit(
        Command::GraphSetup, "frmQCSetup", "graph-setup", Settle_ms,
        [](QWidget& window) {
            for (int channel = 0; channel < 6; ++channel)
                window.findChild<QCheckBox*>("chkChan_" + QString::number(channel))->click();
            const std::pair<const char*, const char*> texts[] = {
                {"txtMinutes", "1"},      {"txtHours", "0"},  {"txtTitle", "Flows"},
                {"txtYTitle", "l/s"},     {"txtPosVal", "3"}, {"txtNegVal", "-2"},
                {"txtXTitle", "seconds"},
            };
            for (const auto& [name, text] : texts)
                window.findChild<QWidget*>(name)->setProperty("text", text);
        },
        "cmdOK");
    camera.visit(Command::ViewGraph, "frmGraph", "trend", 30000, [](QWidget& window) {
        window.resize(1000, 620);
        window.findChild<QAbstractButton*>("cmdAutoscale")->click();
    });
}

void take_pictures(Photographer& camera, WindowStation& with, const QString& directory) {
    const QString log = directory + "/first.DAT";
    camera.wait(1500);  // the search for the card
    with.station.configuration.Interface.PollRate = PollRate_ms;
    scan_and_log(camera, with, log);
    name_channels(with);
    camera.run(Command::ExpandScreen);
    camera.wait(5000);
    camera.save(with.window, "main-window");
    camera.select({1, 2});
    camera.visit(Command::ViewStream0, "frmStrm0", "stream-0", 2500);
    camera.select({1});
    trend(camera);
    camera.select({12});
    camera.visit(Command::ViewStream2, "frmStrm2", "stream-2", 8000,
                 [&](QWidget&) { camera.run(Command::EventCaptureOn); });
    camera.run(Command::StopScanLog);
    camera.select({1, 2, 12});
    camera.run(Command::Halt);
    camera.select({1});
    camera.visit(Command::ZavSetup, "frmConfigZAV", "pod-setup");
    camera.visit(Command::ViewStatus, "frmViewStat", "status");
    camera.visit(Command::ViewStream1, "frmStrm1", "stream-1");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: guide_pictures FOLDER\n";
        return EXIT_FAILURE;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    apply_theme(application, Theme::Light);
    const QTemporaryDir directory;
    CommonOptions options;
    options.directory = directory.path().toStdString();
    WindowStation station(options);
    station.show();
    Photographer camera(station, argv[1]);
    try {
        take_pictures(camera, station, directory.path());
    } catch (const ProgramEnded&) {
        std::cerr << "the program ended\n";
        return EXIT_FAILURE;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << "\n";
        return EXIT_FAILURE;
    }
    return camera.all_taken() ? EXIT_SUCCESS : EXIT_FAILURE;
}
