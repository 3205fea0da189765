#pragma once

#include <string>
#include <string_view>

#include "graphs/live_graph.h"

namespace kavorix {

// The About box `frmAbout`.
struct AboutBox {
    std::string title;  // "About KAVORIX"
    std::string program;
    std::string model;
    std::string version;
    std::string lblDLLVers;
};

class CsvDialog;
class CsvProgress;
class GraphSetup;
class InterfaceSettingsDialog;
class LogSetup;
class SelectChannelsDialog;
class StatusView;
class Stream0View;
class Stream1View;
class Stream2View;
class Stream3View;
class TxCommandDialog;

// The windows that commands open. Each call returns when a modal window is closed, at once for a
// view.
class Windows : public GraphWindow {
  public:
    virtual void show_about(const AboutBox& about) = 0;

    // A page of the guide, "index" the first.
    virtual void show_guide(std::string_view page) = 0;

    // The stream views: opened, or brought to the front, on the pods that are selected now.
    virtual void show_stream0(Stream0View& view) = 0;
    virtual void show_stream1(Stream1View& view) = 0;
    virtual void show_stream2(Stream2View& view) = 0;
    virtual void show_stream3(Stream3View& view) = 0;

    // Modal; loaded by the caller, closed when their rules say so.
    virtual void show_interface_settings(InterfaceSettingsDialog& dialog) = 0;
    virtual void show_status(StatusView& view) = 0;
    virtual void show_tx_command(TxCommandDialog& dialog) = 0;
    virtual void show_select_channels(SelectChannelsDialog& dialog) = 0;
    virtual void show_log_setup(LogSetup& rules) = 0;
    virtual void show_csv_conversion(CsvDialog& rules) = 0;
    virtual void show_graph_setup(GraphSetup& rules) = 0;

    // The progress window of a conversion under way: opened, true, and closed; returns at once.
    virtual void show_csv_progress(CsvProgress& rules, bool open) = 0;
};

}  // namespace kavorix
