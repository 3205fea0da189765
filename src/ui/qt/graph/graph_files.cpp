#include "ui/qt/graph/graph_files.h"

#include <QBuffer>
#include <QFileInfo>
#include <QMimeData>
#include <QPageSetupDialog>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QSvgGenerator>
#include <system_error>

#include "ui/qt/graph/graph_canvas.h"
#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/window_placing.h"

namespace kavorix {

namespace {

constexpr double PictureScale = 2;

QString extension_of(const std::string& path) {
    return QFileInfo(QString::fromLocal8Bit(path)).suffix().toLower();
}

QByteArray png_of(GraphCanvas& canvas) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    canvas.picture(PictureScale).save(&buffer, "PNG");
    return bytes;
}

QByteArray svg_of(GraphCanvas& canvas) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(canvas.size());
    generator.setViewBox(QRect({}, canvas.size()));
    generator.setTitle(canvas.page_title());
    QCPPainter painter;
    painter.begin(&generator);
    painter.setMode(QCPPainter::pmVectorized);
    canvas.draw_page(painter);
    painter.end();
    return bytes;
}

QByteArray pdf_of(GraphCanvas& canvas) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setTitle(canvas.page_title());
    writer.setCreator("KAVORIX");
    // A page as large as the widget, at a unit per pixel.
    writer.setPageSize(QPageSize(QSizeF(canvas.size()) * 72 / canvas.logicalDpiX(),
                                 QPageSize::Point, {}, QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    writer.setResolution(canvas.logicalDpiX());
    QCPPainter painter;
    painter.begin(&writer);
    painter.setMode(QCPPainter::pmVectorized);
    canvas.draw_page(painter);
    painter.end();
    return bytes;
}

}  // namespace

FileRequest graph_file_request() {
    return {"Export Graph",
            "PNG picture(*.png)|*.png|SVG drawing(*.svg)|*.svg|PDF document(*.pdf)|*.pdf|"
            "CSV values(*.csv)|*.csv",
            "png", "", ""};
}

bool is_graph_picture(const std::string& path) {
    return QStringList({"png", "svg", "pdf"}).contains(extension_of(path));
}

std::optional<std::string> save_graph(GraphCanvas& canvas, Files& files, const std::string& path,
                                      const std::string& csv) {
    const QString extension = extension_of(path);
    std::string content;
    if (extension == "png")
        content = png_of(canvas).toStdString();
    else if (extension == "svg")
        content = svg_of(canvas).toStdString();
    else if (extension == "pdf")
        content = pdf_of(canvas).toStdString();
    else if (extension == "csv")
        content = csv;
    else
        return "A graph is saved as .png, .svg, .pdf or .csv.";
    try {
        replace_file(files, path, content);
    } catch (const std::system_error& failure) {
        return std::string(failure.what());
    }
    return std::nullopt;
}

QMimeData* graph_mime_data(GraphCanvas& canvas, const std::string& csv) {
    auto* const data = new QMimeData;
    data->setImageData(canvas.picture(PictureScale));
    data->setText(to_qt(csv));
    data->setData("text/csv", to_qt(csv).toUtf8());
    return data;
}

QPrinter& GraphPrinter::printer() {
    if (!printer_) {
        printer_.emplace(QPrinter::HighResolution);
        printer_->setPageOrientation(QPageLayout::Landscape);
        printer_->setDocName("KAVORIX graph");
    }
    return *printer_;
}

void GraphPrinter::set_up(QtEventLoop& loop, QWidget* over) {
    QPageSetupDialog dialog(&printer());
    dialog.setWindowTitle("Printer Setup");
    run_modal(loop, dialog, over);
}

bool GraphPrinter::choose(QtEventLoop& loop, QWidget* over) {
    QPrintDialog dialog(&printer());
    return run_modal(loop, dialog, over) == QDialog::Accepted;
}

bool GraphPrinter::print(GraphCanvas& canvas) {
    QCPPainter painter;
    if (!painter.begin(&printer())) return false;
    const QRectF paper = printer().pageRect(QPrinter::DevicePixel);
    const double scale = std::min(paper.width() / canvas.width(), paper.height() / canvas.height());
    painter.translate((paper.width() - canvas.width() * scale) / 2, 0);
    painter.scale(scale, scale);
    painter.setMode(QCPPainter::pmVectorized);
    canvas.draw_page(painter);
    return painter.end();
}

}  // namespace kavorix
