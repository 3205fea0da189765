#pragma once

namespace kavorix {

// Lets screen readers see the pods of a PodDisplay as the items of a list. Installed once.
void install_pod_accessibility();

}  // namespace kavorix
