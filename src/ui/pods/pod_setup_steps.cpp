// Undo and redo in the pod configuration dialog: a step is the record of one pod.

#include "ui/pods/pod_setup.h"

namespace kavorix {

namespace {

constexpr std::size_t MostSteps = 200;

}  // namespace

void PodSetup::mark_changed() {
    rules_.state.dialog_changed = 1;
    changed_by_handler_ = true;
}

PodSetup::Step PodSetup::now() const {
    return {rules_.state.selected_pod, rules_.state.selected_channel, rules_.state.dialog_changed,
            rules_.pod()};
}

PodSetup::Step PodSetup::begin_step() {
    changed_by_handler_ = false;
    return now();
}

void PodSetup::end_step(Step before) {
    if (!changed_by_handler_ || rules_.pod() == before.record) return;
    undo_.push_back(std::move(before));
    if (undo_.size() > MostSteps) undo_.pop_front();
    redo_.clear();
    show_steps();
}

void PodSetup::show_steps() {
    screen.cmdUndo.enabled = !undo_.empty();
    screen.cmdRedo.enabled = !redo_.empty();
}

// Showing a record applies its type, which arms the pod and clears unused channels; what holds is
// the record as it was.
void PodSetup::show_step(const Step& step) {
    rules_.state.selected_pod = step.pod;
    screen.cboZAVNo.index = step.pod;
    rules_.pod() = step.record;
    select_type(step.record.TypeCode);
    rules_.state.forget_groups();
    rules_.set_ZAV_type();
    if (step.record.TypeCode != NoDevice) rules_.select_channel(step.channel);
    rules_.pod() = step.record;
    screen.chkArm.checked = screen.chkArm.enabled && step.record.Arm == 1;
    rules_.state.dialog_changed = step.dialog_changed;
}

void PodSetup::travel(std::deque<Step>& from, std::deque<Step>& to) {
    if (from.empty()) return;
    const Step step = std::move(from.back());
    from.pop_back();
    Step back = now();
    if (back.pod != step.pod) {
        back.pod = step.pod;
        back.record = with_.configuration.ZavConfigCopy[at(step.pod)];
        back.channel = step.channel;
    }
    to.push_back(std::move(back));
    show_step(step);
    show_steps();
}

void PodSetup::cmdUndo_Click() {
    trapped(with_.failures, "frmConfigZAV/cmdUndo_Click", [&] { travel(undo_, redo_); });
}

void PodSetup::cmdRedo_Click() {
    trapped(with_.failures, "frmConfigZAV/cmdRedo_Click", [&] { travel(redo_, undo_); });
}

}  // namespace kavorix
