#include "logging/log_check.h"

#include <algorithm>
#include <limits>

namespace kavorix {

namespace {

constexpr std::size_t FaultsListed = 20;

// How far a record is looked for when those before it are missing.
constexpr std::size_t LookAhead = 4096;

std::string counted(std::uint64_t count, const std::string& thing, const char* one,
                    const char* more) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s") + " " +
           (count == 1 ? one : more);
}

}  // namespace

LogVerifier::LogVerifier(File* sums) {
    if (sums) sums_.emplace(*sums);
    check_.Present = sums != nullptr;
}

void LogVerifier::add_fault(const std::string& text) {
    if (check_.Faults.size() < FaultsListed) check_.Faults.push_back(text);
    ++check_.FaultCount;
}

void LogVerifier::take(DatItem item, const DatReader& reader) {
    expected_.reset();
    if (!sums_) return;
    if (item == DatItem::Header) {
        end_run();
        header_at_ = reader.item_position();
    } else if (item == DatItem::Configuration) {
        end_run();
        ++run_;
        record_ = 0;
        const auto sum = sums_->begin_run(header_at_);
        covered_ = sum.has_value();
        if (sum && *sum != reader.sum())
            add_fault("The header of " + run_name() + ", at byte " + std::to_string(header_at_) +
                      ", differs from its check sum");
    } else if (item == DatItem::Data) {
        take_record(reader);
    } else if (item == DatItem::End) {
        end_run();
        sums_->begin_run(std::numeric_limits<std::uint64_t>::max());
        if (const std::uint64_t runs = sums_->runs_passed_over(); runs > 0)
            add_fault(counted(runs, "run", "is", "are") + " missing that the check sums tell of");
    }
}

void LogVerifier::take_record(const DatReader& reader) {
    ++check_.Records;
    ++record_;
    if (!covered_ || sums_->ahead(1).empty()) {
        ++check_.Uncovered;
        return;
    }
    const std::uint32_t sum = reader.sum();
    auto* ahead = &sums_->ahead(1);
    if (ahead->front() != sum) ahead = &sums_->ahead(LookAhead);
    const auto found = std::find(ahead->begin(), ahead->end(), sum);
    const std::string place = " before byte " + std::to_string(reader.item_position());
    // Behind a block that was not finished, sums may be missing, too.
    if (found == ahead->end() && reader.saw_unfinished()) {
        ++check_.Uncovered;
        return;
    }
    if (found == ahead->end()) {
        expected_ = ahead->front();
        add_fault("Record " + std::to_string(record_) + " of " + run_name() + ", at byte " +
                  std::to_string(reader.item_position()) + ", differs from its check sum");
        ahead->pop_front();
        return;
    }
    if (const auto missing = static_cast<std::uint64_t>(found - ahead->begin()); missing > 0) {
        add_fault(counted(missing, "record", "is", "are") + " missing in " + run_name() + place);
        check_.Records += missing;
        record_ += missing;
    }
    ahead->erase(ahead->begin(), found + 1);
    ++check_.Verified;
}

void LogVerifier::end_run() {
    if (!covered_) return;
    covered_ = false;
    std::uint64_t missing = 0;
    while (!sums_->ahead(1).empty()) {
        ++missing;
        sums_->ahead(1).pop_front();
    }
    check_.Records += missing;
    if (missing > 0)
        add_fault(counted(missing, "record", "is", "are") + " missing at the end of " + run_name());
    if (const auto records = sums_->unsynced())
        add_fault("The disk failed while " + run_name() + " was written, at record " +
                  std::to_string(*records) + " or before");
}

std::string LogCheck::text() const {
    if (!Present) return {};
    std::string text = std::to_string(Verified) + " of " +
                       counted(Records, "record", "verified", "verified") + "\n";
    if (Uncovered > 0) text += counted(Uncovered, "record", "has", "have") + " no check sum\n";
    for (const std::string& fault : Faults) text += fault + ".\n";
    if (FaultCount > Faults.size()) text += "...\n";
    return text;
}

}  // namespace kavorix
