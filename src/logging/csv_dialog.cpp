#include "logging/csv_dialog.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "base/program_name.h"
#include "base/text.h"
#include "logging/csv_preview.h"

namespace kavorix {

namespace {

constexpr std::string_view Extension = ".DAT";
constexpr std::string_view WrongDatesQuestion =
    "Conversion cannot process correctly past midnight because the file MSAFINX.DLL could not be "
    "found. Please insure this file is present in the windows/system directory. Do you wish to "
    "continue with incorrect dates in your CSV file?";

std::string limit_text(std::string_view file) {
    return "Maximum of " + std::to_string(ColumnLimit) + " channels exceeded for " +
           std::string(file) + " file.";
}

std::string pod_text(const PodOnFile& pod) {
    return "ZAV " + std::to_string(pod.Number) + "  " + pod.TypeCode;
}

// A caption that shows the text as it is, whatever "&" it holds.
std::string caption_of(std::string_view text) {
    std::string caption;
    for (const char c : text) caption += c == '&' ? std::string("&&") : std::string(1, c);
    return caption;
}

std::string kind_text(const LogContents& contents) {
    const std::string date = padded(contents.Date, 8);
    std::string text = contents.Kind == ScanLog ? "Scan log" : "Event log";
    text += contents.Runs == 1 ? ", 1 run" : ", " + std::to_string(contents.Runs) + " runs";
    text += ", begun " + date.substr(0, 4) + "-" + date.substr(4, 2) + "-" + date.substr(6);
    const std::string_view comment = trim(contents.Comment);
    return comment.empty() ? text : text + ": " + std::string(comment);
}

}  // namespace

CsvDialog::CsvDialog(const Surroundings& surroundings) : with_(surroundings) {
    for (int i = 0; i < ChannelBank; ++i) {
        screen.chkChanTop[at(i)].visible = false;
        screen.chkChanBot[at(i)].visible = false;
    }
}

template <class Action>
void CsvDialog::handler(std::string_view name, Action&& action) {
    trapped(with_.failures, "frmCSVConv/" + std::string(name), [&] {
        if (!converting_) action();
    });
}

void CsvDialog::Form_Load() {
    handler("Form_Load", [&] {
        closed_ = false;
        log_path_.clear();
        contents_ = {};
        selection_ = {};
        shown_number_ = 0;
        screen.lblStatus.caption.clear();
        show_all();
    });
}

void CsvDialog::cmdOpen_Click() {
    handler("cmdOpen_Click", [&] {
        FileRequest request;
        request.title = "Open ZAV Log File";
        request.filter = "Log files(*.DAT)|*.DAT";
        request.default_extension = "DAT";
        request.directory = directory_of(log_path_);
        if (const auto path = with_.dialogs.choose_file_to_open(request)) open_log(*path);
    });
}

void CsvDialog::open_log(const std::string& path) {
    LogContents contents;
    if (!read_contents(path, contents)) return;
    log_path_ = path;
    contents_ = std::move(contents);
    selection_ = select_all(contents_.Pods);
    if (selected_count() >= ColumnLimit) selection_.PodSelected.clear();
    shown_number_ = contents_.Pods.empty() ? std::int16_t{0} : contents_.Pods.front().Number;
    screen.lblStatus.caption.clear();
    show_all();
}

// False, the operator told why, when there is nothing to convert.
bool CsvDialog::read_contents(const std::string& path, LogContents& contents) {
    const std::string shown = from_utf8_lossy(path);
    if (path.size() < Extension.size() ||
        upper(std::string_view(path).substr(path.size() - Extension.size())) != Extension) {
        complain("Selected file is not a Log file. Please select a file with an extension of .DAT",
                 box::Exclamation);
        return false;
    }
    try {
        contents = read_log_contents(*with_.files.open(path, OpenMode::Read));
    } catch (const std::system_error& failure) {
        complain("The log file " + shown +
                     " cannot be read: " + from_utf8_lossy(failure.code().message()),
                 box::Exclamation);
        return false;
    }
    if (contents.Runs == 0)
        complain("The file " + shown + " does not begin as a log file does.", box::Exclamation);
    return contents.Runs > 0;
}

void CsvDialog::complain(std::string_view text, int flags) {
    with_.dialogs.message_box(text, box::Ok | flags, ProgramName);
}

const PodOnFile* CsvDialog::shown_pod() const {
    for (const PodOnFile& pod : contents_.Pods)
        if (pod.Number == shown_number_) return &pod;
    return nullptr;
}

ChannelFlags& CsvDialog::channels_of(const PodOnFile& pod) {
    return selection_.ChannelSelected[Pod::numbered(pod.Number)];
}

bool CsvDialog::pod_selected(const PodOnFile& pod) const {
    return selection_.PodSelected.has(Pod::numbered(pod.Number));
}

int CsvDialog::selected_count() const {
    return static_cast<int>(csv_columns(contents_.Pods, selection_).size());
}

void CsvDialog::lstFile_Click(int list_index) {
    handler("lstFile_Click", [&] {
        screen.lstFile.index = list_index;
        shown_number_ = static_cast<std::int16_t>(screen.lstFile.code(shown_number_));
        show_channels();
    });
}

void CsvDialog::lstConvert_Click(int list_index) {
    handler("lstConvert_Click", [&] {
        screen.lstConvert.index = list_index;
        shown_number_ = static_cast<std::int16_t>(screen.lstConvert.code(shown_number_));
        show_channels();
    });
}

void CsvDialog::cmdAdd_Click() {
    handler("cmdAdd_Click",
            [&] { move_pod(static_cast<std::int16_t>(screen.lstFile.code()), true); });
}

void CsvDialog::cmdRemove_Click() {
    handler("cmdRemove_Click",
            [&] { move_pod(static_cast<std::int16_t>(screen.lstConvert.code()), false); });
}

void CsvDialog::cmdAddAll_Click() {
    handler("cmdAddAll_Click", [&] {
        for (const PodOnFile& pod : contents_.Pods)
            if (!pod_selected(pod) && !add_pod(pod.Number)) break;
        show_all();
    });
}

void CsvDialog::cmdRemoveAll_Click() {
    handler("cmdRemoveAll_Click", [&] {
        selection_.PodSelected.clear();
        show_all();
    });
}

void CsvDialog::move_pod(std::int16_t number, bool into_conversion) {
    if (number == 0) return;
    if (into_conversion) {
        add_pod(number);
    } else {
        selection_.PodSelected.remove(Pod::numbered(number));
    }
    shown_number_ = number;
    show_all();
}

// False, the operator told, when its channels are too many.
bool CsvDialog::add_pod(std::int16_t number) {
    selection_.PodSelected.add(Pod::numbered(number));
    if (selected_count() < ColumnLimit) return true;
    selection_.PodSelected.remove(Pod::numbered(number));
    complain(limit_text("the .CSV"), box::Exclamation);
    return false;
}

void CsvDialog::chkChanTop_Click(int index) {
    handler("chkChanTop_Click", [&] { chan_click(index); });
}

void CsvDialog::chkChanBot_Click(int index) {
    handler("chkChanBot_Click", [&] { chan_click(index + ChannelBank); });
}

void CsvDialog::chan_click(int channel) {
    const PodOnFile* pod = shown_pod();
    if (!pod || channel >= pod->Channels) return;
    const CheckBox& box = channel < ChannelBank ? screen.chkChanTop[at(channel)]
                                                : screen.chkChanBot[at(channel - ChannelBank)];
    if (box.checked) {
        tick(*pod, channel);
    } else {
        channels_of(*pod)[at(channel)] = 0;
    }
    show_channels();
    show_choice();
}

// False, the operator told, when it is one channel too many.
bool CsvDialog::tick(const PodOnFile& pod, int channel) {
    channels_of(pod)[at(channel)] = 1;
    if (selected_count() < ColumnLimit) return true;
    channels_of(pod)[at(channel)] = 0;
    complain(limit_text(".CSV"), box::Exclamation);
    return false;
}

void CsvDialog::cmdSelectAll_Click() {
    handler("cmdSelectAll_Click", [&] {
        const PodOnFile* pod = shown_pod();
        if (!pod) return;
        for (int channel = 0; channel < pod->Channels; ++channel)
            if (channels_of(*pod)[at(channel)] != 1 && !tick(*pod, channel)) break;
        show_channels();
        show_choice();
    });
}

void CsvDialog::cmdDeSelectAll_Click() {
    handler("cmdDeSelectAll_Click", [&] {
        if (const PodOnFile* pod = shown_pod()) channels_of(*pod) = {};
        show_channels();
        show_choice();
    });
}

void CsvDialog::show_all() {
    screen.lblFile.caption = from_utf8_lossy(log_path_);
    screen.lblKind.caption = contents_.Runs > 0 ? kind_text(contents_) : "";
    show_lists();
    show_channels();
    show_choice();
}

void CsvDialog::show_lists() {
    for (ListBox* list : {&screen.lstFile, &screen.lstConvert}) {
        list->entries.clear();
        list->index = -1;
    }
    for (const PodOnFile& pod : contents_.Pods)
        (pod_selected(pod) ? screen.lstConvert : screen.lstFile)
            .entries.push_back({pod_text(pod), pod.Number});
    for (ListBox* list : {&screen.lstFile, &screen.lstConvert})
        if (!list->select_code(shown_number_) && !list->entries.empty()) list->index = 0;
    const bool some_left = !screen.lstFile.entries.empty();
    const bool some_chosen = !screen.lstConvert.entries.empty();
    screen.cmdAdd.enabled = some_left;
    screen.cmdAddAll.enabled = some_left;
    screen.cmdRemove.enabled = some_chosen;
    screen.cmdRemoveAll.enabled = some_chosen;
}

void CsvDialog::show_channels() {
    const PodOnFile* pod = shown_pod();
    screen.lblPod.caption = pod ? "Channels of " + pod_text(*pod) : "";
    screen.cmdSelectAll.enabled = pod != nullptr;
    screen.cmdDeSelectAll.enabled = pod != nullptr;
    for (int channel = 0; channel < MaxChannels; ++channel) {
        CheckBox& box = channel < ChannelBank ? screen.chkChanTop[at(channel)]
                                              : screen.chkChanBot[at(channel - ChannelBank)];
        box.visible = pod && channel < pod->Channels;
        if (!box.visible) continue;
        box.checked = channels_of(*pod)[at(channel)] == 1;
        box.caption = std::to_string(channel + 1);
        const std::string& label = pod->Labels[at(channel)];
        if (!label.empty()) box.caption += " " + caption_of(label);
    }
}

// Whatever follows from the choice of columns.
void CsvDialog::show_choice() {
    const int count = selected_count();
    screen.lblCount.caption =
        std::to_string(count) + " of at most " + std::to_string(ColumnLimit - 1) + " channels";
    screen.cmdConvert.enabled = count > 0;
    screen.grdPreview = {};
    if (count == 0) return;
    try {
        const auto log = with_.files.open(log_path_, OpenMode::Read);
        screen.grdPreview = csv_preview(*log, {log_path_, contents_.Pods, selection_});
    } catch (const std::system_error&) {
        // A log that cannot be read any more has no preview; converting it will tell.
    }
}

void CsvDialog::cmdConvert_Click() {
    handler("cmdConvert_Click", [&] {
        if (selected_count() == 0) return;
        try {
            convert(csv_path_of(log_path_));
        } catch (const std::system_error& failure) {
            complain("Conversion has stopped: " + from_utf8_lossy(failure.what()),
                     box::Exclamation);
        }
    });
}

void CsvDialog::convert(const std::string& csv_path) {
    if (!may_write(csv_path)) return;
    // However the conversion ends, its window closes.
    struct Window {
        CsvDialog& dialog;
        explicit Window(CsvDialog& of) : dialog(of) {
            dialog.converting_ = true;
            dialog.progress_window.restart();
            dialog.with_.show_progress(true);
        }
        ~Window() {
            dialog.with_.show_progress(false);
            dialog.converting_ = false;
        }
    };
    CsvResult result;
    {
        const Window window(*this);
        const CsvPlan plan{csv_path, contents_.Pods, selection_, usual_csv_helpers()};
        result = write_csv_file(with_.files, log_path_, plan, *this);
    }
    tell_end(result, csv_path);
}

// Asks about a file that is there; it is deleted when it may go.
bool CsvDialog::may_write(const std::string& path) {
    if (!with_.files.exists(path)) return true;
    with_.dialogs.beep();
    const std::string question = "The file " + from_utf8_lossy(path) + " exists.\n\nOverwrite?";
    if (with_.dialogs.message_box(question, box::OkCancel | box::Question, ProgramName) !=
        Answer::Ok)
        return false;
    with_.files.remove(path);
    return true;
}

void CsvDialog::tell_end(const CsvResult& result, const std::string& csv_path) {
    const std::string log = from_utf8_lossy(log_path_);
    const std::string place = " at byte " + std::to_string(result.Position);
    screen.lblStatus.caption =
        std::to_string(result.Rows) + " rows written to " + from_utf8_lossy(csv_path);
    switch (result.End) {
        case CsvEnd::Done:
            break;
        case CsvEnd::Stopped:
            screen.lblStatus.caption += ", then cancelled";
            break;
        case CsvEnd::Corrupt:
            screen.lblStatus.caption.clear();
            complain("The log file " + log + " is corrupt. Conversion has stopped.", box::Stop);
            break;
        case CsvEnd::CutShort:
            complain("The log file " + log + " ends inside the record" + place +
                         ". The rows before it have been kept.",
                     box::Exclamation);
            break;
        case CsvEnd::Damaged:
            complain("The log file " + log + " is damaged" + place +
                         ". The rows before it have been kept.",
                     box::Exclamation);
            break;
    }
}

bool CsvDialog::go_on() {
    with_.loop.process_events(0);
    return !progress_window.cancelled();
}

bool CsvDialog::go_on_with_wrong_dates() {
    with_.dialogs.beep();
    return with_.dialogs.message_box(WrongDatesQuestion, box::YesNo | box::Stop,
                                     "Conversion Error") == Answer::Yes;
}

void CsvDialog::cmdClose_Click() {
    closed_ = true;
    if (converting_) progress_window.cmdCancel_Click();
}

}  // namespace kavorix
