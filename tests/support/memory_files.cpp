#include "support/memory_files.h"

#include <algorithm>
#include <system_error>

namespace kavorix::test {

namespace {

[[noreturn]] void fail(int reason, const std::string& operation, const std::string& path) {
    throw std::system_error(reason, std::generic_category(), operation + " \"" + path + "\"");
}

}  // namespace

// So few bytes in place need no room and are not noted: marks of logs, which follow from another
// thread at any time.
constexpr std::size_t MarkSize = 4;

class MemoryFiles::MemoryFile : public File {
  public:
    MemoryFile(MemoryFiles& files, std::shared_ptr<Node> node, std::string path, OpenMode mode)
        : files_(files), node_(std::move(node)), path_(std::move(path)), mode_(mode) {}

    std::size_t read(std::span<char> buffer) override {
        const std::size_t count = read_at(position_, buffer);
        position_ += count;
        return count;
    }
    std::size_t read_at(std::uint64_t offset, std::span<char> buffer) override {
        if (mode_ != OpenMode::Read && mode_ != OpenMode::ReadWrite) fail(EBADF, "Reading", path_);
        const std::lock_guard lock(files_.mutex_);
        if (offset >= node_->content.size()) return 0;
        return node_->content.copy(buffer.data(), buffer.size(), offset);
    }
    void write(std::string_view bytes) override {
        if (mode_ == OpenMode::Append) position_ = node_->content.size();
        write_at(position_, bytes);
        position_ += bytes.size();
    }
    void write_at(std::uint64_t offset, std::string_view bytes) override {
        if (mode_ == OpenMode::Read) fail(EBADF, "Writing", path_);
        const std::lock_guard lock(files_.mutex_);
        std::string& content = node_->content;
        if (bytes.size() <= MarkSize && offset + bytes.size() <= content.size()) {
            content.replace(offset, bytes.size(), bytes);
            return;
        }
        if (files_.write_failure) fail(*files_.write_failure, "Writing", path_);
        const std::string_view wanted = bytes;
        if (files_.space) bytes = bytes.substr(0, *files_.space);
        if (content.size() < offset + bytes.size()) content.resize(offset + bytes.size());
        content.replace(offset, bytes.size(), bytes);
        if (files_.space) *files_.space -= bytes.size();
        files_.note("write " + path_);
        if (bytes.size() < wanted.size()) fail(ENOSPC, "Writing", path_);
    }
    std::uint64_t size() override { return node_->content.size(); }
    bool deleted() override {
        for (const auto& [path, node] : files_.files_)
            if (node == node_) return false;
        return true;
    }
    void truncate(std::uint64_t size) override {
        const std::lock_guard lock(files_.mutex_);
        node_->content.resize(size);
    }
    void sync() override {
        const std::lock_guard lock(files_.mutex_);
        if (files_.sync_failure) fail(*files_.sync_failure, "Syncing", path_);
        files_.note("sync " + path_);
        node_->synced = node_->content;
    }
    void close() override {
        const std::lock_guard lock(files_.mutex_);
        files_.note("close " + path_);
    }

  private:
    MemoryFiles& files_;
    std::shared_ptr<Node> node_;
    std::string path_;
    OpenMode mode_;
    std::uint64_t position_ = 0;
};

void MemoryFiles::put(const std::string& path, std::string content) {
    auto node = std::make_shared<Node>();
    node->synced = content;
    node->content = std::move(content);
    files_[path] = std::move(node);
}

std::vector<std::string> MemoryFiles::paths() const {
    std::vector<std::string> names;
    for (const auto& [path, node] : files_) names.push_back(path);
    return names;
}

void MemoryFiles::check(const std::string& operation, const std::string& path) const {
    if (const auto found = refused_.find(path); found != refused_.end())
        fail(found->second, operation, path);
}

std::unique_ptr<File> MemoryFiles::open(const std::string& path, OpenMode mode) {
    const std::lock_guard lock(mutex_);
    check(mode == OpenMode::Create ? "Creating" : "Opening", path);
    if (mode == OpenMode::Read && !has(path)) fail(ENOENT, "Opening", path);
    std::shared_ptr<Node>& node = files_[path];
    if (!node) node = std::make_shared<Node>();
    if (mode == OpenMode::Create) {
        note("create " + path);
        node->content.clear();
    }
    return std::make_unique<MemoryFile>(*this, node, path, mode);
}

void MemoryFiles::remove(const std::string& path) {
    const std::lock_guard lock(mutex_);
    check("Deleting", path);
    if (files_.erase(path) == 0) fail(ENOENT, "Deleting", path);
    note("remove " + path);
}

void MemoryFiles::rename(const std::string& from, const std::string& to) {
    const std::lock_guard lock(mutex_);
    check("Renaming to", to);
    const auto found = files_.find(from);
    if (found == files_.end()) fail(ENOENT, "Renaming to", to);
    files_[to] = found->second;
    files_.erase(from);
    note("rename " + from + " " + to);
}

void MemoryFiles::make_directories(const std::string& path) {
    const std::lock_guard lock(mutex_);
    check("Creating", path);
    note("directory " + path);
}

void MemoryFiles::sync_directory(const std::string& directory) {
    const std::lock_guard lock(mutex_);
    note("sync directory " + directory);
}

std::unique_ptr<File> MemoryFiles::create_beside(const std::string& path, std::string& name) {
    const std::lock_guard lock(mutex_);
    check("Creating", path);
    name = path + ".new";
    note("create " + name);
    return std::make_unique<MemoryFile>(*this, files_[name] = std::make_shared<Node>(), path,
                                        OpenMode::Create);
}

class MemoryFiles::MemoryLock : public FileLock {
  public:
    explicit MemoryLock(std::shared_ptr<Node> node) : node_(std::move(node)) {
        node_->locked = true;
    }
    ~MemoryLock() override { node_->locked = false; }

  private:
    std::shared_ptr<Node> node_;
};

bool MemoryFiles::same_file(const std::string& a, const std::string& b) {
    return a == b || (has(a) && has(b) && files_.at(a) == files_.at(b));
}

std::unique_ptr<FileLock> MemoryFiles::lock(const std::string& path) {
    const auto found = files_.find(path);
    if (found == files_.end()) fail(ENOENT, "Opening", path);
    if (found->second->locked) throw FileInUse("\"" + path + "\" is used by this program");
    return std::make_unique<MemoryLock>(found->second);
}

}  // namespace kavorix::test
