#include "ui/qt/kit/window_memory.h"

#include <QSettings>
#include <QWidget>

namespace kavorix {

bool WindowMemory::restore(QWidget& window) const {
    return window.restoreGeometry(value(window.objectName() + "/geometry"));
}

void WindowMemory::save(const QWidget& window) const {
    set_value(window.objectName() + "/geometry", window.saveGeometry());
}

QByteArray WindowMemory::value(const QString& key) const {
    return QSettings(path_, QSettings::IniFormat).value(key).toByteArray();
}

void WindowMemory::set_value(const QString& key, const QByteArray& value) const {
    QSettings(path_, QSettings::IniFormat).setValue(key, value);
}

}  // namespace kavorix
