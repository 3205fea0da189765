#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <string>
#include <string_view>

#include "platform/dialogs.h"
#include "ui/qt/kit/qt_event_loop.h"

class QWidget;

namespace kavorix {

// "Config files(*.CFG)|*.CFG" as the toolkit wants it: "Config files (*.CFG *.cfg)". Several
// choices follow one another, a choice can have several patterns with ";" between them.
QStringList to_name_filters(std::string_view filter);

enum class FileChoice { Open, Save };

// Asks for a file over the window `over`, events flowing. Questions of its own (file missing, file
// exists) go through `dialogs`.
std::optional<std::string> choose_file(QtEventLoop& loop, Dialogs& dialogs, QWidget* over,
                                       const FileRequest& request, FileChoice choice);

}  // namespace kavorix
