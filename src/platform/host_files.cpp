#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include "platform/files.h"

namespace kavorix {

namespace {

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

class HostFiles : public Files {
  public:
    std::unique_ptr<File> open(const std::string& path, OpenMode mode) override {
        const int flags = mode == OpenMode::Read     ? O_RDONLY
                          : mode == OpenMode::Create ? O_WRONLY | O_CREAT | O_TRUNC
                          : mode == OpenMode::Append ? O_WRONLY | O_CREAT | O_APPEND
                                                     : O_RDWR | O_CREAT;
        constexpr mode_t EveryoneReads = 0666;  // less what the user's mask takes away
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
};

}  // namespace

std::unique_ptr<Files> make_host_files() {
    return std::make_unique<HostFiles>();
}

}  // namespace kavorix
