#pragma once

// Turns a log file into comma-separated text, record by record, in constant memory however long the
// log is.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/dates.h"
#include "logging/csv_columns.h"
#include "logging/csv_pool.h"
#include "logging/event_years.h"
#include "logging/log_check.h"

namespace kavorix {

struct CsvPlan {
    std::string CsvPath;          // named in the first line
    std::vector<PodOnFile> Pods;  // of the log
    CsvSelection Selection;
    // How the work is done; the text does not depend on it.
    int Helpers = 0;  // threads that format beside the caller's
    std::size_t BufferSize = DatReader::DefaultBufferSize;
    bool Salvage = false;  // reads on behind damage
};

// Who follows a conversion. Every call comes in the converter's thread.
class CsvWatcher {
  public:
    virtual ~CsvWatcher() = default;

    // Whole percent of the log that is read; 0 at first, then each time it has risen.
    virtual void progress(int percent) = 0;

    // Asked between records, at every new percent and at least every megabyte: lets events flow;
    // false stops the conversion.
    virtual bool go_on() = 0;

    // A log went past midnight on a day that is none. True: goes on with the old date and does not
    // ask again; false stops the conversion.
    virtual bool go_on_with_wrong_dates() = 0;
};

enum class CsvEnd {
    Done,
    Stopped,   // by the watcher; the rows so far are written
    Corrupt,   // a scan record does not add up: the text is worthless
    CutShort,  // the log ends inside a record; the rows before it are written
    Damaged    // a record holds what none can hold; the rows before it are written
};

struct CsvResult {
    CsvEnd End = CsvEnd::Done;
    std::uint64_t Position = 0;      // of the record that it ended at, in bytes
    std::uint64_t Rows = 0;          // written
    std::uint64_t DamagedParts = 0;  // of the log that were passed over
    std::uint64_t Skipped = 0;       // bytes in them
    LogCheck Check;                  // of the part that was read

    // Everything is written that was logged.
    bool whole() const { return End == CsvEnd::Done && DamagedParts == 0 && Check.good(); }
};

class CsvConverter {
  public:
    // Reads `log` from its beginning, and its check sums with it if there are any; `write` gets the
    // text, piece by piece. Failures of all are thrown.
    CsvConverter(File& log, std::function<void(std::string_view)> write, const CsvPlan& plan,
                 CsvWatcher& watcher, File* sums = nullptr);

    CsvResult convert();

  private:
    CsvResult ended(CsvEnd end);
    std::optional<CsvEnd> take_item(DatItem item);
    void begin_run();
    void begin_records();
    bool add_scan();
    bool pass_midnight();
    void add_events();
    void add_event(const char* event, float pod);
    void hand_on();
    bool watch();

    CsvPlan plan_;
    std::vector<CsvColumn> columns_;
    CsvWatcher& watcher_;
    DatReader reader_;
    LogVerifier verifier_;
    std::uint64_t length_;
    CsvPool pool_;
    std::unique_ptr<CsvChunk> chunk_;
    std::shared_ptr<const CsvLayout> layout_;

    WallTime date_;
    ScanRow row_;  // its date is the current date text
    EventYears years_;
    float last_time_ = -1;  // of the last scan of the run
    bool wrong_dates_ = false;
    int percent_ = 0;
    std::uint64_t watched_ = 0;  // position that the watcher last looked on at
    CsvResult result_;
};

}  // namespace kavorix
