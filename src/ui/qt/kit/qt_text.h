#pragma once

// Texts at the toolkit's edge: Windows-1252 inside, Unicode in widgets.

#include <QByteArray>
#include <QString>
#include <optional>
#include <string>
#include <string_view>

#include "base/text.h"

namespace kavorix {

inline QString to_qt(std::string_view cp1252) {
    return QString::fromStdString(to_utf8(cp1252));
}

// Nothing when the text holds a character without a place in Windows-1252.
inline std::optional<std::string> from_qt(const QString& text) {
    return from_utf8(text.toStdString());
}

}  // namespace kavorix
