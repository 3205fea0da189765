#pragma once

// Files as the program needs them. Every failure is thrown as std::system_error with the system's
// reason and a text that names the operation and the path.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

namespace kavorix {

enum class OpenMode {
    Read,      // must exist
    Create,    // made empty when it exists
    Append,    // made when missing; write() goes to its end
    ReadWrite  // made when missing, kept as it is otherwise; position 0
};

class File {
  public:
    virtual ~File() = default;  // closes; a failure then goes unnoticed

    // Up to `buffer.size()` bytes from the current position, which moves on; 0 at the end of the
    // file.
    virtual std::size_t read(std::span<char> buffer) = 0;

    // The same from `offset`, leaving the current position alone.
    virtual std::size_t read_at(std::uint64_t offset, std::span<char> buffer) = 0;

    // All of `bytes`, at the current position or at `offset`. On failure some of them may have been
    // written.
    virtual void write(std::string_view bytes) = 0;
    virtual void write_at(std::uint64_t offset, std::string_view bytes) = 0;

    virtual std::uint64_t size() = 0;

    // Whether its last name is gone: what is written now is lost when it is closed.
    virtual bool deleted() { return false; }

    virtual void truncate(std::uint64_t size) = 0;

    // Has the system bring what was written onto the disk. This and write_at() may be called from
    // another thread than the rest, as long as both threads write different bytes.
    virtual void sync() = 0;

    virtual void close() = 0;
};

enum class FileKind {
    Missing,
    Regular,
    Directory,
    Special  // a device, a pipe, a socket
};

// Holds a file or a folder for this program until it is destroyed. Other programs can still read
// and write it: a lock is a convention among those that ask for it.
class FileLock {
  public:
    virtual ~FileLock() = default;
};

// What lock() throws when somebody else holds the file. The text names path and holder.
class FileInUse : public std::system_error {
  public:
    explicit FileInUse(const std::string& text)
        : std::system_error(std::make_error_code(std::errc::device_or_resource_busy), text) {}
};

class Files {
  public:
    virtual ~Files() = default;

    virtual std::unique_ptr<File> open(const std::string& path, OpenMode mode) = 0;
    virtual bool exists(const std::string& path) = 0;
    virtual void remove(const std::string& path) = 0;
    virtual void rename(const std::string& from, const std::string& to) = 0;

    // The directory and its parents, where missing.
    virtual void make_directories(const std::string& path) = 0;

    // Brings a rename inside `directory` onto the disk.
    virtual void sync_directory(const std::string& directory) = 0;

    // What stands at the path, or where a link at it leads.
    virtual FileKind kind(const std::string& path) {
        return exists(path) ? FileKind::Regular : FileKind::Missing;
    }

    // Whether both paths are the same file, however they are spelled and whatever links lead there.
    // Of files that are not there yet: whether they would be.
    virtual bool same_file(const std::string& a, const std::string& b) { return a == b; }

    // The path that links at `path` lead to, whether a file is there or not.
    virtual std::string target_of(const std::string& path) { return path; }

    // A new, empty file in the folder of `path`, under a name that nobody can foresee and that did
    // not exist; `name` becomes its path. It has the mode, and as far as this user may give files
    // away the owner and the group, of the file at `path`.
    virtual std::unique_ptr<File> create_beside(const std::string& path, std::string& name) {
        name = path + ".new";
        return open(name, OpenMode::Create);
    }

    // Takes a file or folder that is there for this program. Throws FileInUse when another program,
    // or another lock of this one, has it. Never waits.
    virtual std::unique_ptr<FileLock> lock(const std::string& path) {
        static_cast<void>(path);
        return std::make_unique<FileLock>();
    }

    // Throws what writing the file, or making it, would fail with. Changes nothing.
    virtual void check_writable(const std::string& path) { static_cast<void>(path); }
};

// The whole content of a file. One of more than `most` bytes is refused (std::errc::file_too_large)
// before it fills the memory.
std::string read_all(Files& files, const std::string& path, std::uint64_t most = UINT64_MAX);

// A new content for `path` that takes its place in one step: written beside it under a temporary
// name, which no failure leaves behind, then synced and renamed. Until then the old file stays as
// it is. Links stay links: what they lead to is replaced. A file that is read-only, and what is no
// regular file, is refused; so is one that another program holds.
class Replacement {
  public:
    Replacement(Files& files, const std::string& path);
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    File& file() { return *file_; }
    // Puts the new content in place.
    void commit();

  private:
    Files& files_;
    std::string path_;
    std::string temporary_;
    std::unique_ptr<FileLock> lock_;
    std::unique_ptr<File> file_;
};

// Replaces the whole content of `path` so.
void replace_file(Files& files, const std::string& path, std::string_view content);

// The part of a path before its last separator (empty without one), and the part after it.
std::string directory_of(const std::string& path);
std::string name_of(const std::string& path);

// `directory` and `name` joined by the host's separator; `name` alone when the directory is empty.
std::string join_path(const std::string& directory, const std::string& name);

// The host's files.
std::unique_ptr<Files> make_host_files();

}  // namespace kavorix
