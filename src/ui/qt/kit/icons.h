#pragma once

#include <QIcon>

namespace kavorix {

// The program's icon, a vector picture: windows, task bar, About box.
QIcon program_icon();

}  // namespace kavorix
