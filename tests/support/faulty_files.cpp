#include "support/faulty_files.h"

#include <utility>

namespace kavorix::test {

namespace {

class FaultyFile : public File {
  public:
    FaultyFile(FaultyFiles& files, std::unique_ptr<File> behind, std::string path)
        : files_(files), behind_(std::move(behind)), path_(std::move(path)) {}

    std::size_t read(std::span<char> buffer) override {
        files_.pass(FileOperation::Read, path_);
        return behind_->read(buffer);
    }
    std::size_t read_at(std::uint64_t offset, std::span<char> buffer) override {
        files_.pass(FileOperation::Read, path_);
        return behind_->read_at(offset, buffer);
    }
    void write(std::string_view bytes) override {
        try {
            files_.pass(FileOperation::Write, path_);
        } catch (const std::system_error&) {
            if (files_.short_writes) behind_->write(bytes.substr(0, bytes.size() / 2));
            throw;
        }
        behind_->write(bytes);
    }
    void write_at(std::uint64_t offset, std::string_view bytes) override {
        try {
            files_.pass(FileOperation::Write, path_);
        } catch (const std::system_error&) {
            if (files_.short_writes) behind_->write_at(offset, bytes.substr(0, bytes.size() / 2));
            throw;
        }
        behind_->write_at(offset, bytes);
    }
    std::uint64_t size() override {
        files_.pass(FileOperation::Size, path_);
        return behind_->size();
    }
    bool deleted() override { return behind_->deleted(); }
    void truncate(std::uint64_t size) override {
        files_.pass(FileOperation::Truncate, path_);
        behind_->truncate(size);
    }
    void sync() override {
        files_.pass(FileOperation::Sync, path_);
        behind_->sync();
    }
    void close() override {
        files_.pass(FileOperation::Close, path_);
        behind_->close();
    }

  private:
    FaultyFiles& files_;
    std::unique_ptr<File> behind_;
    std::string path_;
};

}  // namespace

void FaultyFiles::strike(const std::string& path) {
    if (std::this_thread::get_id() != thread_) return;
    ++operations_;
    if (!any_fault_ || any_fault_->fault.spared-- > 0) return;
    const std::errc reason = any_fault_->fault.reason;
    struck_ = true;
    if (any_fault_->for_ever)
        any_fault_->fault.spared = 0;
    else
        any_fault_.reset();
    throw std::system_error(std::make_error_code(reason), "\"" + path + "\"");
}

void FaultyFiles::pass(FileOperation kind, const std::string& path) {
    const std::lock_guard lock(mutex_);
    strike(path);
    ++counts_[kind];
    if (const auto action = actions_.find(kind); action != actions_.end()) action->second();
    const auto fault = faults_.find(kind);
    if (fault == faults_.end() || fault->second.spared-- > 0) return;
    fault->second.spared = 0;
    throw std::system_error(std::make_error_code(fault->second.reason), "\"" + path + "\"");
}

std::unique_ptr<File> FaultyFiles::open(const std::string& path, OpenMode mode) {
    pass(FileOperation::Open, path);
    return std::make_unique<FaultyFile>(*this, behind_.open(path, mode), path);
}
std::unique_ptr<File> FaultyFiles::create_beside(const std::string& path, std::string& name) {
    pass(FileOperation::Open, path);
    return std::make_unique<FaultyFile>(*this, behind_.create_beside(path, name), path);
}
std::unique_ptr<FileLock> FaultyFiles::lock(const std::string& path) {
    pass(FileOperation::Lock, path);
    return behind_.lock(path);
}
bool FaultyFiles::exists(const std::string& path) {
    pass(FileOperation::Exists, path);
    return behind_.exists(path);
}
void FaultyFiles::remove(const std::string& path) {
    pass(FileOperation::Remove, path);
    behind_.remove(path);
}
void FaultyFiles::rename(const std::string& from, const std::string& to) {
    pass(FileOperation::Rename, to);
    behind_.rename(from, to);
}
void FaultyFiles::make_directories(const std::string& path) {
    pass(FileOperation::MakeDirectories, path);
    behind_.make_directories(path);
}
void FaultyFiles::sync_directory(const std::string& directory) {
    pass(FileOperation::SyncDirectory, directory);
    behind_.sync_directory(directory);
}

}  // namespace kavorix::test
