#include "ui/qt/main/recent_files.h"

#include <QFileInfo>

namespace kavorix {

namespace {

constexpr const char* Key = "recent/files";

QStringList stored(const WindowMemory& memory) {
    return QString::fromUtf8(memory.value(Key)).split(u'\n', Qt::SkipEmptyParts);
}

}  // namespace

QStringList RecentFiles::paths() const {
    QStringList paths = stored(memory_);
    paths.removeIf([](const QString& path) { return !QFileInfo(path).isFile(); });
    return paths;
}

void RecentFiles::add(const QString& path) {
    const QString whole = QFileInfo(path).absoluteFilePath();
    QStringList paths = stored(memory_);
    paths.removeAll(whole);
    paths.prepend(whole);
    memory_.set_value(Key, paths.mid(0, Most).join(u'\n').toUtf8());
}

}  // namespace kavorix
