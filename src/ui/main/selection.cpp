#include "ui/main/selection.h"

namespace kavorix {

void toggle_selected(LinkState& link, Pod pod) {
    if (link.PollTable.InPollTable.has(pod)) link.ZavSelected.set(pod, !link.ZavSelected.has(pod));
}

void select_alone(LinkState& link, Pod pod) {
    if (link.PollTable.InPollTable.has(pod) && !link.ZavSelected.has(pod)) link.ZavSelected = {pod};
}

void select_all_or_none(LinkState& link) {
    link.AllSelected = !link.AllSelected;
    link.ZavSelected = link.AllSelected ? link.PollTable.InPollTable
                                        : link.ZavSelected - link.PollTable.InPollTable;
}

}  // namespace kavorix
