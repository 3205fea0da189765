#pragma once

#include <QString>

class QWidget;

namespace kavorix {

// Remembers size and place of windows in an INI file, under the windows' object names. A file that
// cannot be read or written is as good as an empty one.
class WindowMemory {
  public:
    explicit WindowMemory(QString path) : path_(std::move(path)) {}

    // Gives the window its size and place of last time; false when nothing is remembered.
    bool restore(QWidget& window) const;
    void save(const QWidget& window) const;

    // Other things a window remembers, such as column widths.
    QByteArray value(const QString& key) const;
    void set_value(const QString& key, const QByteArray& value) const;

  private:
    QString path_;
};

}  // namespace kavorix
