#include "alarms/alarm_journal.h"

#include <array>
#include <system_error>

namespace kavorix {

namespace {

constexpr std::string_view Signature = "KAVORIX ALARM JOURNAL 1";
constexpr int SyncInterval_ms = 1000;
// Beyond what is ever written, with room for a carried set that does not fit the size.
constexpr std::uint64_t MostToRead = 256ULL * 1024 * 1024;

// The lines of one file, added to what stands before.
class FileReader {
  public:
    FileReader(std::string path, JournalContents& contents)
        : path_(std::move(path)), contents_(contents) {}

    void read(std::string_view text) {
        int number = 0;
        while (!text.empty()) {
            const auto end = text.find('\n');
            ++number;
            line(text.substr(0, end), number, end != std::string_view::npos);
            text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        }
        take_bad_for_torn();
    }

  private:
    void line(std::string_view text, int number, bool whole) {
        if (text == Signature) take_bad_for_torn();  // a head that was torn and written again
        if (text == Signature || text == journal_heading() || (text.empty() && whole)) return;
        auto record = whole ? parse_journal_line(text) : std::nullopt;
        if (!record) {
            bad_.push_back(number);
            return;
        }
        if (record->event == RecordEvent::Start || record->event == RecordEvent::Gap)
            take_bad_for_torn();
        else
            for (const int bad : bad_)
                contents_.damage.push_back(path_ + ":" + std::to_string(bad) + ": no whole entry");
        bad_.clear();
        contents_.records.push_back(std::move(*record));
    }

    void take_bad_for_torn() {
        contents_.torn += static_cast<int>(bad_.size());
        bad_.clear();
    }

    std::string path_;
    JournalContents& contents_;
    std::vector<int> bad_;  // lines just before that are no entries
};

}  // namespace

std::string JournalPlace::path(int file) const {
    return join_path(directory,
                     file == 0 ? "ALARMS.LOG" : "ALARMS." + std::to_string(file) + ".LOG");
}

JournalContents read_journal(Files& files, const JournalPlace& place, int newest) {
    JournalContents contents;
    for (int file = newest - 1; file >= 0; --file) {
        const std::string path = place.path(file);
        if (files.exists(path)) FileReader(path, contents).read(read_all(files, path, MostToRead));
    }
    return contents;
}

AlarmJournal::AlarmJournal(Files& files, JournalPlace place,
                           std::function<std::vector<AlarmRecord>()> carried)
    : files_(files), place_(std::move(place)), carried_(std::move(carried)) {}

AlarmJournal::~AlarmJournal() = default;

void AlarmJournal::open() {
    syncer_.reset();
    file_ = files_.open(place_.path(0), OpenMode::Append);
    size_ = file_->size();
    if (size_ != 0) {
        const auto reader = files_.open(place_.path(0), OpenMode::Read);
        std::array<char, 1> last{};
        torn_ = reader->read_at(size_ - 1, last) != 1 || last[0] != '\n';
    } else {
        torn_ = false;
        files_.sync_directory(place_.directory);
    }
    syncer_ = std::make_unique<FileSyncer>(*file_, SyncInterval_ms);
}

// From the oldest on, so that a kill in between leaves no file without its place. Where the files
// cannot be renamed, the one that there is gets longer: better than no entry.
void AlarmJournal::rotate() {
    syncer_.reset();
    file_.reset();
    try {
        for (int file = place_.files - 2; file >= 0; --file)
            if (files_.exists(place_.path(file)))
                files_.rename(place_.path(file), place_.path(file + 1));
    } catch (const std::system_error&) {
    }
    open();
}

std::string AlarmJournal::head() {
    std::string text = std::string(Signature) + "\n" + std::string(journal_heading()) + "\n";
    for (const AlarmRecord& record : carried_()) text += journal_line(record) + "\n";
    return text;
}

void AlarmJournal::append(const std::vector<AlarmRecord>& records, bool durable) {
    std::string lines;
    for (const AlarmRecord& record : records) lines += journal_line(record) + "\n";
    if (!file_ || file_->deleted()) open();
    if (size_ != 0 && size_ + lines.size() > place_.most_bytes) rotate();
    std::string text = torn_ ? "\n" : "";
    if (size_ == 0) text += head();
    text += lines;
    torn_ = true;
    file_->write(text);
    torn_ = false;
    size_ += text.size();
    if (durable)
        file_->sync();
    else
        syncer_->written();
}

}  // namespace kavorix
