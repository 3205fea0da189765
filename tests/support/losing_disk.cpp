#include "support/losing_disk.h"

#include <algorithm>

namespace kavorix::test {

class LosingDisk::LosingFile : public File {
  public:
    LosingFile(LosingDisk& disk, std::unique_ptr<File> behind, std::string path)
        : disk_(disk), behind_(std::move(behind)), path_(std::move(path)) {}

    std::size_t read(std::span<char> buffer) override { return behind_->read(buffer); }
    std::size_t read_at(std::uint64_t offset, std::span<char> buffer) override {
        return behind_->read_at(offset, buffer);
    }
    void write(std::string_view bytes) override { behind_->write(bytes); }
    void write_at(std::uint64_t offset, std::string_view bytes) override {
        const std::lock_guard lock(disk_.disk_mutex_);
        behind_->write_at(offset, bytes);
        disk_.note_write(path_, offset, bytes.size());
    }
    std::uint64_t size() override { return behind_->size(); }
    void truncate(std::uint64_t size) override {
        const std::lock_guard lock(disk_.disk_mutex_);
        behind_->truncate(size);
        disk_.note_sync(path_);  // taken to be on the disk at once: what is behind it is gone
    }
    void sync() override {
        std::unique_lock lock(disk_.disk_mutex_);
        if (std::this_thread::get_id() != disk_.thread_) {
            ++disk_.waiting_;
            disk_.changed_.notify_all();
            disk_.changed_.wait(lock, [this] { return !disk_.held_ || disk_.allowed_ > 0; });
            if (disk_.allowed_ > 0) --disk_.allowed_;
            --disk_.waiting_;
        }
        disk_.note_sync(path_);
        disk_.changed_.notify_all();
    }
    void close() override { behind_->close(); }

  private:
    LosingDisk& disk_;
    std::unique_ptr<File> behind_;
    std::string path_;
};

std::unique_ptr<File> LosingDisk::open(const std::string& path, OpenMode mode) {
    const std::lock_guard lock(disk_mutex_);
    const bool known = has(path);
    auto file = MemoryFiles::open(path, mode);
    if (!known) note_sync(path);
    return std::make_unique<LosingFile>(*this, std::move(file), path);
}

void LosingDisk::note_write(const std::string& path, std::uint64_t offset, std::size_t size) {
    Unsynced& file = unsynced_[path];
    const std::string& now = content(path);
    for (std::uint64_t page = offset / Page; page * Page < offset + size; ++page) {
        std::vector<std::string>& states = file.pages[page];
        if (states.empty() && page * Page < file.synced.size())
            states.push_back(file.synced.substr(page * Page, Page));
        else if (states.empty())
            states.emplace_back();  // never on the disk
        states.push_back(now.substr(page * Page, Page));
    }
}

void LosingDisk::note_sync(const std::string& path) {
    unsynced_[path] = {content(path), {}};
}

void LosingDisk::hold_syncs(bool held) {
    const std::lock_guard lock(disk_mutex_);
    held_ = held;
    changed_.notify_all();
}

void LosingDisk::wait_for_sync() {
    std::unique_lock lock(disk_mutex_);
    changed_.wait(lock, [this] { return waiting_ > 0; });
}

void LosingDisk::let_sync() {
    std::unique_lock lock(disk_mutex_);
    ++allowed_;
    changed_.notify_all();
    changed_.wait(lock, [this] { return allowed_ == 0; });
}

std::size_t LosingDisk::unsynced_pages() {
    const std::lock_guard lock(disk_mutex_);
    std::size_t pages = 0;
    for (const auto& [path, file] : unsynced_) pages += file.pages.size();
    return pages;
}

// A page that is lost reads as zeros where a later one is there; the file ends behind the last one.
std::map<std::string, std::string> LosingDisk::cut(const Choice& choose) {
    const std::lock_guard lock(disk_mutex_);
    std::map<std::string, std::string> found;
    for (const auto& [path, file] : unsynced_) {
        std::string& content_found = found[path] = file.synced;
        for (const auto& [page, states] : file.pages) {
            const std::string& state = states[choose(states.size())];
            const std::size_t begin = page * Page;
            if (state.empty()) continue;
            if (content_found.size() < begin + state.size())
                content_found.resize(begin + state.size());
            content_found.replace(begin, state.size(), state);
        }
    }
    return found;
}

}  // namespace kavorix::test
