// Power is lost while a log is written: of what was not yet synced, each page of the disk is found
// in any of the states that it has been in. Every record is there as a whole or not at all, what
// was synced is there, and a new run finds its place behind it. KAVORIX_EXHAUST=1 in the
// environment makes ten times as many cuts.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "logging/log_info.h"
#include "support/log_rig.h"
#include "support/losing_disk.h"

namespace kavorix::test {
namespace {

const std::string Path = "/logs/scan.DAT";
constexpr int AtOnce = 0;  // ms between two syncs

// A log of so many pods, whose readings are the numbers that a reader out of step would take for
// markers. Its syncs happen when step() lets them.
class Logger {
  public:
    Logger(LosingDisk& disk, int pods, const std::string& comment)
        : disk_(disk), pods_(pods), rig_(disk, {2026, 1, 5, 8, 0, 0, 0}, AtOnce) {
        for (int pod = 1; pod <= pods; ++pod) rig_.add_pod(pod, "8S");
        rig_.run_time.Log.ScanComment = comment;
        rig_.log.Start_Log_File(ScanLog);
        disk.hold_syncs(true);
    }
    ~Logger() { disk_.hold_syncs(false); }
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    void write(std::mt19937& random) {
        RecordRead record;
        for (int pod = 1; pod <= pods_; ++pod) {
            std::vector<float> values(32);
            for (float& value : values) value = static_cast<float>(random() % 5) - 1;
            rig_.give(pod, values);
            record.values.push_back(static_cast<float>(pod));
            record.values.insert(record.values.end(), values.begin(), values.end());
        }
        rig_.write(ScanLog);
        written.push_back(record);
        if (stage_ > 0) {
            more_ = true;
        } else {
            begin_cycle();
        }
    }

    // One sync happens: of the sums, of the log, and again of the log with its marks.
    void step() {
        if (stage_ == 0) return;
        disk_.let_sync();
        if (stage_ == 2) synced = in_cycle_;
        if (stage_ < 3) {
            ++stage_;
            disk_.wait_for_sync();
        } else {
            stage_ = 0;
            if (more_) begin_cycle();
        }
    }
    void stop() {
        disk_.hold_syncs(false);
        rig_.log.Stop_Log_File(ScanLog);
    }

    std::vector<RecordRead> written;
    std::size_t synced = 0;  // records of them

  private:
    void begin_cycle() {
        disk_.wait_for_sync();
        in_cycle_ = written.size();
        more_ = false;
        stage_ = 1;
    }

    LosingDisk& disk_;
    int pods_;
    LogRig rig_;
    int stage_ = 0;      // the sync that waits to happen
    bool more_ = false;  // was written behind the beginning of the cycle
    std::size_t in_cycle_ = 0;
};

std::vector<float> values_of(const RecordRead& record) {
    return record.values;
}

// Whether `found` are some of `written`, in order, the first `synced` of them without a gap.
bool are_whole(const std::vector<RecordRead>& found, const std::vector<RecordRead>& written,
               std::size_t synced) {
    std::size_t next = 0;
    for (std::size_t i = 0; i < found.size(); ++i, ++next) {
        while (next < written.size() && values_of(written[next]) != values_of(found[i])) ++next;
        if (next == written.size() || (i < synced && next != i)) return false;
    }
    return found.size() >= synced;
}

LosingDisk& put(LosingDisk& disk, const std::map<std::string, std::string>& files) {
    for (const auto& [path, bytes] : files) {
        disk.put(path, bytes);
        disk.open(path, OpenMode::ReadWrite)->sync();
    }
    return disk;
}

class Cuts {
  public:
    explicit Cuts(std::uint32_t seed) : random_(seed) {}

    // The log of one program, cut now and then; each cut is looked at and goes on as a file of its
    // own with a second run.
    void run(int pods, int cuts) {
        LosingDisk disk;
        Logger logger(disk, pods, std::string(random_() % 9, 'c'));
        const std::size_t per_block = BlockLimit / (DataHeadEntries + at(pods) * 33);
        for (int cut = 0; cut < cuts; ++cut) {
            const std::size_t steps = random_() % (per_block < 20 ? 4 : 2 * per_block / 10);
            for (std::size_t i = 0; i < steps; ++i) logger.write(random_);
            for (std::size_t i = random_() % 6; i > 0; --i) logger.step();
            look(logger, disk.cut([&](std::size_t states) { return pick(states); }), pods);
            if (testing::Test::HasFailure()) return;
        }
        logger.stop();
        EXPECT_EQ(read_log(disk, Path).pending, 0u);
        EXPECT_TRUE(are_whole(read_log(disk, Path).records, logger.written, logger.written.size()));
    }

    // Every subset of the pages that a few records, or marks, have left unsynced: old or new.
    std::size_t run_all_subsets(int pods, int records, int steps, std::size_t comment) {
        LosingDisk disk;
        Logger logger(disk, pods, std::string(comment, 'x'));
        logger.write(random_);
        for (int i = 0; i < 3; ++i) logger.step();
        for (int i = 0; i < records; ++i) logger.write(random_);
        for (int i = 0; i < steps; ++i) logger.step();
        const std::size_t subsets = std::size_t{1} << disk.unsynced_pages();
        for (std::size_t subset = 0; subset < subsets; ++subset) {
            std::size_t rest = subset;
            look(logger, disk.cut([&](std::size_t states) {
                const bool newest = rest % 2 == 1;
                rest /= 2;
                return newest ? states - 1 : 0;
            }),
                 pods);
            if (testing::Test::HasFailure()) break;
        }
        return subsets;
    }

    std::size_t lost() const { return lost_; }

  private:
    std::size_t pick(std::size_t states) {
        return random_() % 3 == 0 ? random_() % states : random_() % 2 == 0 ? 0 : states - 1;
    }

    void look(const Logger& logger, const std::map<std::string, std::string>& files, int pods) {
        LosingDisk disk;
        put(disk, files);
        const LogRead read = read_log(disk, Path);
        ASSERT_EQ(read.end, DatItem::End);
        ASSERT_TRUE(are_whole(read.records, logger.written, logger.synced))
            << read.records.size() << " of " << logger.written.size() << ", synced "
            << logger.synced;
        const LogInfo info = read_log_info(*disk.open(Path, OpenMode::Read),
                                           disk.open(Path + ".sum", OpenMode::Read).get());
        ASSERT_EQ(info.DamageCount, 0u);
        for (const std::string& fault : info.Check.Faults)
            ASSERT_NE(fault.find("missing"), std::string::npos) << fault;
        // What is gone of what the sums tell of is told.
        if (info.Check.Verified < info.Check.Records - info.Check.Uncovered) {
            ASSERT_FALSE(info.Check.good());
        }
        lost_ += logger.written.size() - read.records.size();

        Logger next(disk, pods, "next");
        next.write(random_);
        next.stop();
        const LogRead after = read_log(disk, Path);
        ASSERT_EQ(after.end, DatItem::End);
        ASSERT_EQ(after.pending, 0u);
        ASSERT_EQ(after.records.size(), read.records.size() + 1);
        ASSERT_TRUE(std::equal(read.records.begin(), read.records.end(), after.records.begin()));
        ASSERT_EQ(values_of(after.records.back()), values_of(next.written.back()));
    }

    std::mt19937 random_;
    std::size_t lost_ = 0;
};

TEST(PageLoss, LeavesEveryRecordWholeOrNotThere) {
    const int rounds = std::getenv("KAVORIX_EXHAUST") ? 100 : 10;
    std::size_t lost = 0;
    for (int round = 0; round < rounds; ++round)
        for (const int pods : {1, 5, 50}) {
            SCOPED_TRACE(std::to_string(round) + ", " + std::to_string(pods) + " pods");
            Cuts cuts(static_cast<std::uint32_t>(round * 100 + pods));
            cuts.run(pods, 40);
            lost += cuts.lost();
            if (HasFailure()) return;
        }
    EXPECT_GT(lost, 100u);  // the disk does lose something
}

TEST(PageLoss, OfEverySubsetOfPages) {
    std::size_t subsets = 0;
    for (const int steps : {0, 1, 2})
        for (std::size_t comment = 0; comment < 4; ++comment)
            for (const int pods : {5, 50})
                subsets += Cuts(7).run_all_subsets(pods, 2, steps, comment);
    EXPECT_GT(subsets, 200u);
}

}  // namespace
}  // namespace kavorix::test
