#include "ui/streams/select_channels.h"

#include <algorithm>
#include <utility>

#include "base/program_name.h"
#include "base/text.h"

namespace kavorix {

namespace {

constexpr int AllSets = -1;

bool any_chosen(const std::vector<ChannelChoice::Set>& sets) {
    return std::any_of(sets.begin(), sets.end(),
                       [](const ChannelChoice::Set& set) { return set.chosen != ChannelFlags{}; });
}

}  // namespace

SelectChannelsDialog::SelectChannelsDialog(ChannelChoice choice, Dialogs& dialogs,
                                           FailureReporter& failures)
    : choice_(std::move(choice)), dialogs_(dialogs), failures_(failures) {
    for (ChannelChoice::Set& set : choice_.sets)
        std::fill(set.chosen.begin() + set.channels, set.chosen.end(), std::int16_t{0});
    screen.caption = choice_.caption;
    screen.lblPrompt.caption = choice_.prompt;
    screen.cboZav.entries.push_back({"All ZAVs", AllSets});
    for (std::size_t i = 0; i < choice_.sets.size(); ++i)
        screen.cboZav.entries.push_back({choice_.sets[i].name, static_cast<int>(i)});
    screen.cboZav.index = 0;
    screen.cboZav.visible = choice_.sets.size() > 1;
    for (int channel = 0; channel < MaxChannels; ++channel)
        screen.chkChan[at(channel)].caption = two_digits(channel + 1);
    show();
}

template <class Change>
void SelectChannelsDialog::each_shown_set(Change&& change) {
    const int chosen = screen.cboZav.code(AllSets);
    for (std::size_t i = 0; i < choice_.sets.size(); ++i)
        if (chosen == AllSets || chosen == static_cast<int>(i)) change(choice_.sets[i]);
}

// A box stands for the channel of all sets shown that have it, and is checked when all of them are.
void SelectChannelsDialog::show() {
    for (int channel = 0; channel < MaxChannels; ++channel) {
        bool exists = false;
        bool checked = true;
        each_shown_set([&](const ChannelChoice::Set& set) {
            if (channel >= set.channels) return;
            exists = true;
            checked = checked && set.chosen[at(channel)] == 1;
        });
        screen.chkChan[at(channel)].visible = exists;
        screen.chkChan[at(channel)].checked = exists && checked;
    }
    screen.cmdOK.enabled = any_chosen(choice_.sets);
}

void SelectChannelsDialog::cboZav_Click(int list_index) {
    screen.cboZav.index = list_index;
    show();
}

void SelectChannelsDialog::chkChan_Click(int channel) {
    const bool flag = screen.chkChan[at(channel)].checked;
    each_shown_set([&](ChannelChoice::Set& set) {
        if (channel < set.channels) set.chosen[at(channel)] = flag;
    });
    show();
}

void SelectChannelsDialog::check_all(bool checked) {
    each_shown_set([&](ChannelChoice::Set& set) {
        set.chosen.fill(0);
        if (checked) std::fill_n(set.chosen.begin(), set.channels, std::int16_t{1});
    });
    show();
}

void SelectChannelsDialog::cmdOK_Click() {
    trapped(failures_, "frmSelChan/cmdOK_Click", [&] {
        const std::string complaint = choice_.complaint ? choice_.complaint(choice_.sets) : "";
        if (!complaint.empty()) {
            dialogs_.beep();
            dialogs_.message_box(complaint, box::Exclamation, ProgramName);
            return;
        }
        accepted_ = true;
        closed_ = true;
    });
}

ChooseChannels choose_in_window(Windows& windows, Dialogs& dialogs, FailureReporter& failures) {
    return [&](ChannelChoice& choice) {
        SelectChannelsDialog dialog(choice, dialogs, failures);
        windows.show_select_channels(dialog);
        if (dialog.accepted()) choice.sets = dialog.sets();
        return dialog.accepted();
    };
}

std::string tokens_for(std::string_view mnemonic, const ChannelFlags& chosen) {
    std::string tokens;
    for (int channel = 0; channel < MaxChannels; ++channel)
        if (chosen[at(channel)] == 1)
            tokens += std::string(mnemonic) + std::to_string(channel + 1) + ";";
    return tokens;
}

}  // namespace kavorix
