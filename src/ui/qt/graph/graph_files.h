#pragma once

// Pictures of a graph: files, the clipboard, the printer.

#include <QPrinter>
#include <optional>
#include <string>

#include "platform/dialogs.h"
#include "platform/files.h"
#include "ui/qt/kit/qt_event_loop.h"

class QMimeData;
class QWidget;

namespace kavorix {

class GraphCanvas;

// Writes what the canvas shows into a file, as the path's extension says: PNG (twice the widget's
// resolution), SVG, PDF, or `csv`, the text of the visible rows. Nothing when it was written, else
// the reason.
std::optional<std::string> save_graph(GraphCanvas& canvas, Files& files, const std::string& path,
                                      const std::string& csv);

// Whether a path's extension is that of a picture that save_graph() writes.
bool is_graph_picture(const std::string& path);

// The file that the operator is asked for.
FileRequest graph_file_request();

// Picture and values for the clipboard; the caller owns them.
QMimeData* graph_mime_data(GraphCanvas& canvas, const std::string& csv);

// The printer and paper chosen last.
class GraphPrinter {
  public:
    // Opens the system's page dialog.
    void set_up(QtEventLoop& loop, QWidget* over);

    // Opens the system's print dialog; false when it is cancelled.
    bool choose(QtEventLoop& loop, QWidget* over);

    // Prints what the canvas shows, as large as the paper allows. False when the printer does not
    // take it.
    bool print(GraphCanvas& canvas);

  private:
    QPrinter& printer();

    // Made when it is needed: finding the system's printers takes time.
    std::optional<QPrinter> printer_;
};

}  // namespace kavorix
