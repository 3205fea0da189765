#include "app/window.h"
namespace kavorix {
int run_window(const CommonOptions&, int, char**) {
    return 0;
}
}  // namespace kavorix
