// Renders the program's vector icon in the sizes that desktops ask for: render_icon ICON.svg FOLDER
// writes FOLDER/16.png and so on, one for each size that follows.

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdlib>
#include <iostream>

namespace {

bool render(QSvgRenderer& icon, const QString& folder, int size) {
    QImage picture(size, size, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    icon.render(&painter);
    painter.end();
    return picture.save(QString("%1/%2.png").arg(folder).arg(size));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::cerr << "usage: render_icon ICON.svg FOLDER SIZE...\n";
        return EXIT_FAILURE;
    }
    QSvgRenderer icon(QString::fromLocal8Bit(argv[1]));
    bool done = icon.isValid();
    for (int i = 3; i < argc; ++i) done = done && render(icon, argv[2], std::atoi(argv[i]));
    if (!done) std::cerr << "render_icon: cannot render " << argv[1] << " into " << argv[2] << "\n";
    return done ? EXIT_SUCCESS : EXIT_FAILURE;
}
