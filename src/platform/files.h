#pragma once

// Files as the program needs them. Every failure is thrown as std::system_error with the system's
// reason and a text that names the operation and the path.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

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

    // Has the system bring what was written onto the disk. May be called from another thread than
    // the rest.
    virtual void sync() = 0;

    virtual void close() = 0;
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
};

// The whole content of a file. One of more than `most` bytes is refused (std::errc::file_too_large)
// before it fills the memory.
std::string read_all(Files& files, const std::string& path, std::uint64_t most = UINT64_MAX);

// Replaces the content of `path` in one step: written beside it under a temporary name, synced and
// renamed, so that the old file survives every failure on the way. The temporary file does not stay
// behind.
void replace_file(Files& files, const std::string& path, std::string_view content);

// The part of a path before its last separator (empty without one), and the part after it.
std::string directory_of(const std::string& path);
std::string name_of(const std::string& path);

// `directory` and `name` joined by the host's separator; `name` alone when the directory is empty.
std::string join_path(const std::string& directory, const std::string& name);

// The host's files.
std::unique_ptr<Files> make_host_files();

}  // namespace kavorix
