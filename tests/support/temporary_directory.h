#pragma once

// A directory of its own for one test, gone with everything in it when the test ends.

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace kavorix::test {

class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        const std::string filled_in(6, 'X');
        std::string name =
            (std::filesystem::temp_directory_path() / ("kavorix-" + filled_in)).string();
        if (!mkdtemp(name.data())) throw std::runtime_error("No temporary directory " + name);
        path_ = name;
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::string& path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

}  // namespace kavorix::test
