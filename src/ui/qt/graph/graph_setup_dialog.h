#pragma once

#include "graphs/graph_setup.h"
#include "ui/qt/kit/mirrors.h"

class QWidget;

namespace kavorix {

// Shows the set-up dialog `frmQCSetup`, loaded, over a window until it is accepted or cancelled.
void show_graph_setup_dialog(GraphSetup& setup, Mirrors& mirrors, QWidget* over);

}  // namespace kavorix
