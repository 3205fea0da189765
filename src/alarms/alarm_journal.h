#pragma once

// The journal of the alarms: text files in the program directory that are only ever appended to,
// from which states, acknowledgements, shelves and latches are there again after any end of the
// program.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "alarms/alarm_record.h"
#include "platform/file_syncer.h"
#include "platform/files.h"

namespace kavorix {

// Where the files are and how large they get: ALARMS.LOG, and the older ones ALARMS.1.LOG (the
// newest of them) up to the number of files less one.
struct JournalPlace {
    std::string directory;
    std::uint64_t most_bytes = 4 * 1024 * 1024;  // of a file
    int files = 10;

    // 0: the file that is written.
    std::string path(int file) const;
};

// What stands on the files, oldest first.
struct JournalContents {
    std::vector<AlarmRecord> records;
    // "FILE:LINE: ..." of lines that are no entries or damaged, without those next.
    std::vector<std::string> damage;
    int torn = 0;  // lines that a start found cut off behind, by a kill or a full disk
};

// Reads the `newest` files; those that are not there have nothing. Throws std::system_error when
// one cannot be read.
JournalContents read_journal(Files& files, const JournalPlace& place, int newest);

class AlarmJournal {
  public:
    // All of it outlives this. `carried` makes the entries that are to stand at the head of a file.
    AlarmJournal(Files& files, JournalPlace place,
                 std::function<std::vector<AlarmRecord>()> carried);
    ~AlarmJournal();
    AlarmJournal(const AlarmJournal&) = delete;
    AlarmJournal& operator=(const AlarmJournal&) = delete;

    // Writes the entries in one piece; they survive the end of this process, and at least a second
    // later or with `durable` at once, that of the machine. When the file is full they begin the
    // next one. Throws std::system_error: some of them may then have been written.
    void append(const std::vector<AlarmRecord>& records, bool durable);

  private:
    void open();
    void rotate();
    std::string head();

    Files& files_;
    JournalPlace place_;
    std::function<std::vector<AlarmRecord>()> carried_;
    std::unique_ptr<File> file_;
    std::unique_ptr<FileSyncer> syncer_;  // of file_
    std::uint64_t size_ = 0;
    bool torn_ = false;  // the last line of the file is not whole
};

}  // namespace kavorix
