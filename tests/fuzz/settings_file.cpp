// Any bytes as a settings file: values and key lists stay within their buffers, and the list of
// excluded addresses is taken or refused.

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <system_error>

#include "link/discovery.h"

namespace {

using namespace kavorix;

void check(bool holds) {
    if (!holds) std::abort();
}

class OneFile : public Files {
  public:
    std::string bytes;

    std::unique_ptr<File> open(const std::string&, OpenMode) override {
        return std::make_unique<Reading>(bytes);
    }
    bool exists(const std::string&) override { return true; }
    void remove(const std::string&) override {}
    void rename(const std::string&, const std::string&) override {}
    void make_directories(const std::string&) override {}
    void sync_directory(const std::string&) override {}

  private:
    class Reading : public File {
      public:
        explicit Reading(const std::string& bytes) : bytes_(bytes) {}
        std::size_t read(std::span<char> buffer) override {
            const std::size_t count = bytes_.copy(buffer.data(), buffer.size(), position_);
            position_ += count;
            return count;
        }
        std::size_t read_at(std::uint64_t, std::span<char>) override { return 0; }
        void write(std::string_view) override {}
        void write_at(std::uint64_t, std::string_view) override {}
        std::uint64_t size() override { return bytes_.size(); }
        void truncate(std::uint64_t) override {}
        void sync() override {}
        void close() override {}

      private:
        const std::string& bytes_;
        std::size_t position_ = 0;
    };
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t LongestValue = 254;
    constexpr std::size_t LongestKeyList = 9999;
    OneFile files;
    files.bytes.assign(reinterpret_cast<const char*>(data), size);
    const std::string value = GetINIData(files, "/KAVORIX.INI", "Exclude Addresses", "Address");
    check(value.size() <= LongestValue && value.find('\0') == std::string::npos);
    check(GetINIData(files, "/KAVORIX.INI", "Exclude Addresses", "").size() <= LongestKeyList);
    for (const std::string& text : {value, files.bytes}) {
        const auto addresses = parse_exclude_addresses(text);
        check(!addresses || addresses->size() <= text.size() / 4);
    }
    return 0;
}
