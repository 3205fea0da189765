#pragma once

// What the main window does: every button, menu item, icon click and panel double-click, as far as
// no toolkit is needed.

#include <cstdint>
#include <functional>
#include <string>

#include "link/command_link.h"
#include "link/discovery.h"
#include "ui/commands.h"

namespace kavorix {

// The About box `frmAbout`.
struct AboutBox {
    std::string title;  // "About KAVORIX"
    std::string program;
    std::string model;
    std::string version;
    std::string lblDLLVers;
};

// The windows that operations open. Each call returns when a modal window is closed, at once for a
// view.
class Windows {
  public:
    virtual ~Windows() = default;
    virtual void show_about(const AboutBox& about) = 0;
    virtual void show_stream0() = 0;
};

}  // namespace kavorix
