#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include "platform/files.h"
#include "platform/host_file_holder.h"

namespace kavorix {

namespace {

constexpr mode_t EveryoneReads = 0666;  // less what the user's mask takes away

[[noreturn]] void fail(const std::string& operation, const std::string& path) {
    throw std::system_error(errno, std::generic_category(), operation + " \"" + path + "\"");
}

class HostFile : public File {
  public:
    HostFile(int descriptor, std::string path) : descriptor_(descriptor), path_(std::move(path)) {}
    ~HostFile() override {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    HostFile(const HostFile&) = delete;
    HostFile& operator=(const HostFile&) = delete;

    std::size_t read(std::span<char> buffer) override {
        return retry("Reading", [&] { return ::read(descriptor_, buffer.data(), buffer.size()); });
    }
    std::size_t read_at(std::uint64_t offset, std::span<char> buffer) override {
        return retry("Reading", [&] {
            return ::pread(descriptor_, buffer.data(), buffer.size(), static_cast<off_t>(offset));
        });
    }
    void write(std::string_view bytes) override {
        while (!bytes.empty())
            bytes.remove_prefix(
                retry("Writing", [&] { return ::write(descriptor_, bytes.data(), bytes.size()); }));
    }
    void write_at(std::uint64_t offset, std::string_view bytes) override {
        while (!bytes.empty()) {
            const std::size_t count = retry("Writing", [&] {
                return ::pwrite(descriptor_, bytes.data(), bytes.size(),
                                static_cast<off_t>(offset));
            });
            bytes.remove_prefix(count);
            offset += count;
        }
    }
    std::uint64_t size() override {
        struct stat status {};
        if (::fstat(descriptor_, &status) != 0) fail("Looking at", path_);
        return static_cast<std::uint64_t>(status.st_size);
    }
    bool deleted() override {
        struct stat status {};
        if (::fstat(descriptor_, &status) != 0) fail("Looking at", path_);
        return status.st_nlink == 0;
    }
    void truncate(std::uint64_t size) override {
        if (::ftruncate(descriptor_, static_cast<off_t>(size)) != 0) fail("Truncating", path_);
    }
    void sync() override {
        if (::fdatasync(descriptor_) != 0) fail("Syncing", path_);
    }
    void close() override {
        const int descriptor = descriptor_;
        descriptor_ = -1;
        if (::close(descriptor) != 0) fail("Closing", path_);
    }

  private:
    template <class Call>
    std::size_t retry(const char* operation, Call call) {
        ssize_t count = 0;
        do {
            count = call();
        } while (count < 0 && errno == EINTR);
        if (count < 0) fail(operation, path_);
        return static_cast<std::size_t>(count);
    }

    int descriptor_;
    std::string path_;
};

// A lock goes with the description that it was taken through.
class HostLock : public FileLock {
  public:
    explicit HostLock(int descriptor) : descriptor_(descriptor) {}
    ~HostLock() override { ::close(descriptor_); }
    HostLock(const HostLock&) = delete;
    HostLock& operator=(const HostLock&) = delete;

  private:
    int descriptor_;
};

FileKind kind_of(const struct stat& status) {
    if (S_ISREG(status.st_mode)) return FileKind::Regular;
    return S_ISDIR(status.st_mode) ? FileKind::Directory : FileKind::Special;
}

// A descriptor that locks can be taken through, even on file systems that want it writable.
int open_for_lock(const std::string& path) {
    constexpr int Flags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    const int descriptor = ::open(path.c_str(), O_RDWR | Flags);
    return descriptor >= 0 ? descriptor : ::open(path.c_str(), O_RDONLY | Flags);
}

// Gives a new file the mode and, where it may, the owner of the one that it is to replace.
void take_rights_of(const struct stat& old, int descriptor, const std::string& path) {
    if (::fchown(descriptor, old.st_uid, old.st_gid) != 0 &&
        ::fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) != 0) {
        // Only an administrator gives files away: the new file is the user's own.
    }
    constexpr mode_t Rights = 07777;
    if (::fchmod(descriptor, old.st_mode & Rights) != 0) fail("Creating", path);
}

class HostFiles : public Files {
  public:
    std::unique_ptr<File> open(const std::string& path, OpenMode mode) override {
        const int flags = mode == OpenMode::Read     ? O_RDONLY
                          : mode == OpenMode::Create ? O_WRONLY | O_CREAT | O_TRUNC
                          : mode == OpenMode::Append ? O_WRONLY | O_CREAT | O_APPEND
                                                     : O_RDWR | O_CREAT;
        const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC, EveryoneReads);
        if (descriptor < 0) fail(mode == OpenMode::Create ? "Creating" : "Opening", path);
        struct stat status {};
        if (::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
            ::close(descriptor);
            errno = EISDIR;
            fail("Opening", path);
        }
        return std::make_unique<HostFile>(descriptor, path);
    }
    bool exists(const std::string& path) override {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0;
    }
    void remove(const std::string& path) override {
        if (::unlink(path.c_str()) != 0) fail("Deleting", path);
    }
    void rename(const std::string& from, const std::string& to) override {
        if (std::rename(from.c_str(), to.c_str()) != 0) fail("Renaming to", to);
    }
    void make_directories(const std::string& path) override {
        std::filesystem::create_directories(path);
    }
    void sync_directory(const std::string& directory) override {
        const int descriptor =
            ::open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0) fail("Opening", directory);
        const bool synced = ::fsync(descriptor) == 0;
        ::close(descriptor);
        if (!synced) fail("Syncing", directory);
    }
    FileKind kind(const std::string& path) override {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0 ? kind_of(status) : FileKind::Missing;
    }
    bool same_file(const std::string& a, const std::string& b) override {
        struct stat of_a {};
        struct stat of_b {};
        const bool a_there = ::stat(a.c_str(), &of_a) == 0;
        const bool b_there = ::stat(b.c_str(), &of_b) == 0;
        if (a_there && b_there) return of_a.st_dev == of_b.st_dev && of_a.st_ino == of_b.st_ino;
        return !a_there && !b_there && target_of(a) == target_of(b);
    }
    std::string target_of(const std::string& path) override {
        constexpr int MostLinks = 40;  // as many as the system follows
        std::filesystem::path target(path);
        std::error_code error;
        for (int link = 0; link < MostLinks && std::filesystem::is_symlink(target, error); ++link) {
            const auto next = std::filesystem::read_symlink(target, error);
            if (error) return path;
            target = next.is_absolute() ? next : target.parent_path() / next;
        }
        const auto plain =
            std::filesystem::weakly_canonical(std::filesystem::absolute(target), error);
        return error ? path : plain.string();
    }
    std::unique_ptr<File> create_beside(const std::string& path, std::string& name) override {
        constexpr std::size_t Kept = 200;  // of a name that may have 255 bytes
        std::string pattern =
            join_path(directory_of(path), "." + name_of(path).substr(0, Kept) + ".XXXXXX");
        const int descriptor = ::mkostemp(pattern.data(), O_CLOEXEC);
        if (descriptor < 0) fail("Creating", path);
        name = pattern;
        auto file = std::make_unique<HostFile>(descriptor, path);
        try {
            struct stat old {};
            if (::stat(path.c_str(), &old) == 0) {
                take_rights_of(old, descriptor, path);
            } else if (::fchmod(descriptor, EveryoneReads & ~mask()) != 0) {
                fail("Creating", path);
            }
        } catch (...) {
            ::unlink(name.c_str());
            throw;
        }
        return file;
    }
    std::unique_ptr<FileLock> lock(const std::string& path) override {
        const int descriptor = open_for_lock(path);
        if (descriptor < 0) fail("Opening", path);
        auto lock = std::make_unique<HostLock>(descriptor);
        if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) return lock;
        // A file system without locks has nothing that could be respected.
        if (errno != EWOULDBLOCK) return lock;
        struct stat status {};
        if (::fstat(descriptor, &status) != 0) fail("Looking at", path);
        throw FileInUse("\"" + path + "\" is used by " +
                        holder_of(static_cast<std::uint64_t>(status.st_dev), status.st_ino));
    }
    void check_writable(const std::string& path) override {
        struct stat status {};
        if (::stat(path.c_str(), &status) != 0) {
            const std::string directory = directory_of(path);
            if (::access(
                    directory.empty() ? (path.starts_with('/') ? "/" : ".") : directory.c_str(),
                    W_OK | X_OK) != 0)
                fail("Creating", path);
            return;
        }
        errno = EISDIR;
        if (S_ISDIR(status.st_mode)) fail("Writing", path);
        errno = EINVAL;
        if (!S_ISREG(status.st_mode)) fail("Writing (it is no regular file)", path);
        // An administrator may write read-only files, too, but hardly means to.
        errno = EACCES;
        if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 ||
            ::access(path.c_str(), W_OK) != 0)
            fail("Writing", path);
    }

  private:
    static mode_t mask() {
        const mode_t old = ::umask(0);
        ::umask(old);
        return old;
    }
};

}  // namespace

std::unique_ptr<Files> make_host_files() {
    return std::make_unique<HostFiles>();
}

}  // namespace kavorix
