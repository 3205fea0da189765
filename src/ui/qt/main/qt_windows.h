#pragma once

// The windows that the main window's operations open.

#include <QPointer>
#include <QWidget>
#include <array>
#include <memory>

#include "ui/main/windows.h"
#include "ui/qt/kit/guide.h"
#include "ui/qt/kit/mirrors.h"
#include "ui/qt/kit/window_memory.h"

namespace kavorix {

class CsvProgressWindow;
class Files;
class QtGraph;
class StationGraph;
class StreamWindow;

class QtWindows : public Windows {
  public:
    // `memory_path`: the INI file that remembers sizes and places.
    QtWindows(Mirrors& mirrors, const QString& memory_path);
    ~QtWindows() override;

    void set_main_window(QWidget* window);

    // Gives the station's graph its windows; without, it has none. All outlive these windows.
    void set_graph(StationGraph& graph, Dialogs& dialogs, Files& files);

    void show_about(const AboutBox& about) override;
    void show_guide(std::string_view page) override { guide_.open(page); }
    void show_stream0(Stream0View& view) override;
    void show_stream1(Stream1View& view) override;
    void show_stream2(Stream2View& view) override;
    void show_stream3(Stream3View& view) override;
    void show_interface_settings(InterfaceSettingsDialog& dialog) override;
    void show_status(StatusView& view) override;
    void show_tx_command(TxCommandDialog& dialog) override;
    void show_select_channels(SelectChannelsDialog& dialog) override;
    void show_log_setup(LogSetup& rules) override;
    void show_csv_conversion(CsvDialog& rules) override;
    void show_graph_setup(GraphSetup& rules) override;
    void show_graph() override;
    void close_graph() override;
    void show_csv_progress(CsvProgress& rules, bool open) override;

  private:
    template <class View>
    void open_view(std::int16_t stream, View& view);
    // The window that is in use: where a modal one belongs.
    QWidget* in_use() const;

    Mirrors& mirrors_;
    WindowMemory memory_;
    Guide guide_;
    QPointer<QWidget> main_window_;
    std::array<std::unique_ptr<StreamWindow>, StreamCount> stream_windows_;
    std::unique_ptr<CsvProgressWindow> csv_progress_;
    std::unique_ptr<QtGraph> graph_;
};

}  // namespace kavorix
