#include "ui/qt/kit/icons.h"

#include <QDir>

// Resources of a static library are registered by name, outside of any namespace.
static void register_icons() {
    Q_INIT_RESOURCE(icons);
}

namespace kavorix {

QIcon program_icon() {
    register_icons();
    return QIcon(":/kavorix.svg");
}

}  // namespace kavorix
