#pragma once

// Files in memory. Levers:
//
//   put(path, content)     a file that is there
//   link(path, name)       another name of a file that is there
//   refuse(path, reason)   every open, removal and renaming of this path fails with the reason
//   space                  bytes that can still be written; a write beyond writes what fits and
//                          fails with "no space left on device"
//   write_failure,         the reason that every write or sync fails with from now on, doing
//   sync_failure           nothing
//
// and to look at: content(path), synced(path) = the content that a power cut would leave, log =
// what was done to files, in order ("create A", "write A", "sync A", "close A", "rename A B",
// "remove A", "sync directory D"). What is written to A.new, the
// file beside A, is noted as written to A.

#include <cerrno>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"

namespace kavorix::test {

class MemoryFiles : public Files {
  public:
    void put(const std::string& path, std::string content);
    void link(const std::string& path, const std::string& name) { files_[name] = files_.at(path); }
    void refuse(const std::string& path, int reason = EACCES) { refused_[path] = reason; }
    void allow(const std::string& path) { refused_.erase(path); }
    std::optional<std::size_t> space;
    std::optional<int> write_failure;
    std::optional<int> sync_failure;

    bool has(const std::string& path) const { return files_.contains(path); }
    // The content of a file that is there.
    const std::string& content(const std::string& path) const { return files_.at(path)->content; }
    const std::string& synced(const std::string& path) const { return files_.at(path)->synced; }
    std::vector<std::string> paths() const;
    std::vector<std::string> log;
    bool keep_log = true;  // false: a long run notes nothing in it

    std::unique_ptr<File> open(const std::string& path, OpenMode mode) override;
    bool exists(const std::string& path) override { return has(path); }
    void remove(const std::string& path) override;
    void rename(const std::string& from, const std::string& to) override;
    void make_directories(const std::string& path) override;
    void sync_directory(const std::string& directory) override;
    bool same_file(const std::string& a, const std::string& b) override;
    std::unique_ptr<File> create_beside(const std::string& path, std::string& name) override;
    std::unique_ptr<FileLock> lock(const std::string& path) override;
    void check_writable(const std::string& path) override { check("Opening", path); }

  private:
    struct Node {
        std::string content;
        std::string synced;
        bool locked = false;
    };
    class MemoryFile;
    class MemoryLock;

    void note(const std::string& what) {
        if (keep_log) log.push_back(what);
    }
    void check(const std::string& operation, const std::string& path) const;

    // An open file keeps its node when the name goes, as on a disk.
    std::map<std::string, std::shared_ptr<Node>> files_;
    std::map<std::string, int> refused_;
    std::mutex mutex_;  // files are synced from another thread
};

}  // namespace kavorix::test
