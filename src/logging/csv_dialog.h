#pragma once

// The conversion dialog `frmCSVConv`: which pods and channels of a log become columns of a text
// file, and the conversion itself.

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/trap.h"
#include "logging/csv_file.h"
#include "logging/csv_progress.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/files.h"

namespace kavorix {

inline constexpr int ChannelBank = 16;  // check boxes of one bank

struct CsvDialogScreen {
    std::string caption = "Convert Log File to ASCII(.CSV) File";
    Button cmdOpen{"&Open Log File...", "Choose the log to convert"};
    Label lblFile;  // path of the log
    Label lblKind;  // what it holds
    Label lblOnFile{"Pods on &file:"};
    ListBox lstFile;  // pods that are not converted; codes are pod numbers
    Label lblConvert{"Pods for con&version:"};
    ListBox lstConvert;  // pods that are
    Button cmdAdd{"&Add >", "Convert the pod chosen on the left"};
    Button cmdAddAll{"Add A&ll >>", "Convert every pod"};
    Button cmdRemove{"< &Remove", "Do not convert the pod chosen on the right"};
    Button cmdRemoveAll{"<< Remove All", "Convert no pod"};
    Label lblPod;                                  // the pod whose channels are shown
    std::array<CheckBox, ChannelBank> chkChanTop;  // channels 1..16
    std::array<CheckBox, ChannelBank> chkChanBot;  // channels 17..32
    Button cmdSelectAll{"&Select All", "Tick every channel of this pod"};
    Button cmdDeSelectAll{"&DeSelect All", "Clear every tick of this pod"};
    Label lblCount;   // selected channels
    Grid grdPreview;  // the first rows of the text file
    Label lblStatus;  // what the last conversion came to
    Button cmdConvert{"&Convert", "Write the text file beside the log"};
    Button cmdClose{"Close", "Close this window"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("cmdOpen", cmdOpen);
        visit("lblFile", lblFile);
        visit("lblKind", lblKind);
        visit("lblOnFile", lblOnFile);
        visit("lstFile", lstFile);
        visit("lblConvert", lblConvert);
        visit("lstConvert", lstConvert);
        visit("cmdAdd", cmdAdd);
        visit("cmdAddAll", cmdAddAll);
        visit("cmdRemove", cmdRemove);
        visit("cmdRemoveAll", cmdRemoveAll);
        visit("lblPod", lblPod);
        visit("chkChanTop", chkChanTop);
        visit("chkChanBot", chkChanBot);
        visit("cmdSelectAll", cmdSelectAll);
        visit("cmdDeSelectAll", cmdDeSelectAll);
        visit("lblCount", lblCount);
        visit("grdPreview", grdPreview);
        visit("lblStatus", lblStatus);
        visit("cmdConvert", cmdConvert);
        visit("cmdClose", cmdClose);
    }
};

class CsvDialog : private CsvWatcher {
  public:
    // All of it outlives the dialog. `show_progress` opens (true) and closes the progress window
    // over `progress`.
    struct Surroundings {
        Files& files;
        EventLoop& loop;
        Dialogs& dialogs;
        FailureReporter& failures;
        std::function<void(bool)> show_progress;
    };
    explicit CsvDialog(const Surroundings& surroundings);

    CsvDialogScreen screen;
    CsvProgress progress_window;

    // The dialog opens, without a log.
    void Form_Load();

    void cmdOpen_Click();
    // A pod of a list was chosen: the index of the list entry.
    void lstFile_Click(int list_index);
    void lstConvert_Click(int list_index);
    void cmdAdd_Click();
    void cmdAddAll_Click();
    void cmdRemove_Click();
    void cmdRemoveAll_Click();
    // A channel's box was ticked or cleared: its index in the bank.
    void chkChanTop_Click(int index);
    void chkChanBot_Click(int index);
    void cmdSelectAll_Click();
    void cmdDeSelectAll_Click();
    void cmdConvert_Click();
    // Closes the dialog; while a log is converted it stops that first, and closes then.
    void cmdClose_Click();

    bool closed() const { return closed_ && !converting_; }

    // Opens a log as if it had been chosen.
    void open_log(const std::string& path);

    const CsvSelection& selection() const { return selection_; }

  private:
    template <class Action>
    void handler(std::string_view name, Action&& action);

    bool read_contents(const std::string& path, LogContents& contents);
    const PodOnFile* shown_pod() const;
    ChannelFlags& channels_of(const PodOnFile& pod);
    bool pod_selected(const PodOnFile& pod) const;
    int selected_count() const;

    void move_pod(std::int16_t number, bool into_conversion);
    bool add_pod(std::int16_t number);
    void chan_click(int channel);
    bool tick(const PodOnFile& pod, int channel);

    void show_all();
    void show_lists();
    void show_channels();
    void show_choice();
    void show_preview();
    std::string preview_text();

    void convert(const std::string& csv_path);
    bool may_write(const std::string& path);
    void tell_end(const CsvResult& result, const std::string& csv_path);
    void complain(std::string_view text, int flags);

    void progress(int percent) override { progress_window.Update_Progress(percent); }
    bool go_on() override;
    bool go_on_with_wrong_dates() override;

    Surroundings with_;
    std::string log_path_;
    LogContents contents_;
    CsvSelection selection_;
    std::int16_t shown_number_ = 0;  // of the pod whose channels are shown, 0 = none
    bool converting_ = false;
    bool closed_ = false;
};

}  // namespace kavorix
