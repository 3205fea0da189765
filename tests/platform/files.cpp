#include "platform/files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <system_error>

#include "support/memory_files.h"
#include "support/temporary_directory.h"

namespace kavorix {
namespace {

using test::MemoryFiles;

// The host's files in a directory of their own, and files in memory: both keep the same contract.
class FilesContract : public testing::TestWithParam<bool> {
  protected:
    FilesContract() {
        if (GetParam())
            files_ = make_host_files();
        else
            files_ = std::make_unique<MemoryFiles>();
    }
    std::string path(const std::string& name) const { return own_ / name; }
    void put(const std::string& name, std::string_view content) {
        files_->open(path(name), OpenMode::Create)->write(content);
    }
    std::string get(const std::string& name) { return read_all(*files_, path(name)); }
    std::error_code failure_of(const std::function<void()>& action) {
        try {
            action();
        } catch (const std::system_error& error) {
            EXPECT_NE(std::string(error.what()).find(own_.path()), std::string::npos);
            return error.code();
        }
        return {};
    }

    test::TemporaryDirectory own_;
    std::unique_ptr<Files> files_;
};

INSTANTIATE_TEST_SUITE_P(HostAndMemory, FilesContract, testing::Bool(),
                         [](const auto& of) { return of.param ? "Host" : "Memory"; });

TEST_P(FilesContract, CreatingEmptiesAFileThatIsThere) {
    put("a", "first, longer");
    put("a", "second");
    EXPECT_EQ(get("a"), "second");
}

TEST_P(FilesContract, AppendingMakesTheFileAndWritesAtItsEnd) {
    files_->open(path("a"), OpenMode::Append)->write("one");
    const auto file = files_->open(path("a"), OpenMode::Append);
    file->write(" two");
    file->write(" three");
    file->close();
    EXPECT_EQ(get("a"), "one two three");
}

TEST_P(FilesContract, ReadingNeedsTheFile) {
    EXPECT_EQ(failure_of([&] { files_->open(path("none"), OpenMode::Read); }),
              std::errc::no_such_file_or_directory);
    EXPECT_FALSE(files_->exists(path("none")));
}

TEST_P(FilesContract, ReadingTooMuchIsRefused) {
    put("a", "0123456789");
    EXPECT_EQ(read_all(*files_, path("a"), 10).size(), 10u);
    EXPECT_EQ(failure_of([&] { read_all(*files_, path("a"), 9); }), std::errc::file_too_large);
}

TEST_P(FilesContract, ReadingGoesOnToTheEnd) {
    put("a", "0123456789");
    const auto file = files_->open(path("a"), OpenMode::Read);
    std::array<char, 4> buffer{};
    std::string counts;
    for (int i = 0; i < 5; ++i) counts += std::to_string(file->read(buffer)) + " ";
    EXPECT_EQ(counts, "4 4 2 0 0 ");
    EXPECT_EQ(file->read_at(8, buffer), 2u);
    EXPECT_EQ(buffer[0], '8');
    EXPECT_EQ(file->read_at(10, buffer), 0u);
    EXPECT_EQ(file->read_at(1000, buffer), 0u);
    EXPECT_EQ(file->size(), 10u);
}

TEST_P(FilesContract, ReadWriteKeepsTheContentAndWritesInPlace) {
    put("a", "0123456789");
    const auto file = files_->open(path("a"), OpenMode::ReadWrite);
    file->write("AB");
    file->write_at(8, "XYZ");
    std::array<char, 2> buffer{};
    EXPECT_EQ(file->read(buffer), 2u);
    EXPECT_EQ(buffer[0], '2');
    file->write("C");
    file->sync();
    file->close();
    EXPECT_EQ(get("a"), "AB23C567XYZ");
}

TEST_P(FilesContract, ReadWriteMakesTheFile) {
    files_->open(path("a"), OpenMode::ReadWrite)->write_at(3, "x");
    EXPECT_EQ(get("a"), std::string(3, '\0') + "x");
}

TEST_P(FilesContract, TruncatingShortensAndLengthens) {
    put("a", "0123456789");
    const auto file = files_->open(path("a"), OpenMode::ReadWrite);
    file->truncate(4);
    EXPECT_EQ(file->size(), 4u);
    file->truncate(6);
    EXPECT_EQ(get("a"), std::string("0123\0\0", 6));
}

TEST_P(FilesContract, WhatIsWrittenIsThereBeforeTheFileIsClosed) {
    const auto file = files_->open(path("a"), OpenMode::Create);
    file->write("line");
    EXPECT_EQ(get("a"), "line");
}

TEST_P(FilesContract, NamesAreRemovedAndRenamed) {
    put("a", "1");
    put("b", "2");
    files_->rename(path("a"), path("b"));
    EXPECT_FALSE(files_->exists(path("a")));
    EXPECT_EQ(get("b"), "1");
    files_->remove(path("b"));
    EXPECT_FALSE(files_->exists(path("b")));
    EXPECT_EQ(failure_of([&] { files_->remove(path("b")); }), std::errc::no_such_file_or_directory);
    EXPECT_EQ(failure_of([&] { files_->rename(path("b"), path("c")); }),
              std::errc::no_such_file_or_directory);
}

TEST_P(FilesContract, AnOpenFileOutlivesItsName) {
    put("a", "kept");
    const auto file = files_->open(path("a"), OpenMode::Read);
    files_->remove(path("a"));
    std::array<char, 10> buffer{};
    EXPECT_EQ(file->read(buffer), 4u);
}

TEST_P(FilesContract, ReplacingPutsTheWholeContentInPlace) {
    put("a", "old");
    replace_file(*files_, path("a"), "new content");
    EXPECT_EQ(get("a"), "new content");
    EXPECT_FALSE(files_->exists(path("a.new")));
    replace_file(*files_, path("b"), "");
    EXPECT_EQ(get("b"), "");
}

// A lock holds a file under all of its names until it is given back, against everybody.
TEST_P(FilesContract, ALockIsHeldOnce) {
    put("a", "1");
    auto lock = files_->lock(path("a"));
    try {
        files_->lock(path("a"));
        ADD_FAILURE() << "locked twice";
    } catch (const FileInUse& failure) {
        EXPECT_EQ(std::string(failure.what()).find("\"" + path("a") + "\" is used by this program"),
                  0u)
            << failure.what();
    }
    EXPECT_EQ(failure_of([&] { replace_file(*files_, path("a"), "2"); }),
              std::errc::device_or_resource_busy);
    EXPECT_EQ(get("a"), "1");
    lock.reset();
    replace_file(*files_, path("a"), "2");
    EXPECT_EQ(get("a"), "2");
    EXPECT_EQ(failure_of([&] { files_->lock(path("none")); }),
              std::errc::no_such_file_or_directory);
}

// The same file is the same file on the disk, whatever it is called.
TEST(HostFiles, TheSameFileIsKnownByAllItsNames) {
    const test::TemporaryDirectory own;
    const auto files = make_host_files();
    files->make_directories(own / "real");
    std::filesystem::create_directory_symlink(own / "real", own / "folder");
    files->open(own / "real/a", OpenMode::Create);
    files->open(own / "real/b", OpenMode::Create);
    std::filesystem::create_hard_link(own / "real/a", own / "hard");
    std::filesystem::create_symlink("real/a", own / "soft");
    std::filesystem::create_symlink("real/new", own / "dangling");
    const struct {
        const char* a;
        const char* b;
        bool same;
    } rows[] = {{"real/a", "folder/a", true},     {"real/a", "real/../real/./a", true},
                {"real/a", "hard", true},         {"soft", "hard", true},
                {"real/a", "real/b", false},      {"real/a", "real/none", false},
                {"real/new", "folder/new", true}, {"dangling", "folder/new", true},
                {"real/new", "real/other", false}};
    for (const auto& row : rows)
        EXPECT_EQ(files->same_file(own / row.a, own / row.b), row.same) << row.a << " " << row.b;
    const auto lock = files->lock(own / "soft");
    EXPECT_THROW(files->lock(own / "folder/a"), FileInUse);
    const auto folder = files->lock(own / "real");
    EXPECT_THROW(files->lock(own / "folder"), FileInUse);
    EXPECT_NO_THROW(files->lock("/dev/null"));
}

TEST(HostFiles, AReplacedFileKeepsItsModeAndItsLinks) {
    using std::filesystem::perms;
    const test::TemporaryDirectory own;
    const auto files = make_host_files();
    const auto mode = [](const std::string& path) {
        return std::filesystem::status(path).permissions();
    };
    files->open(own / "a", OpenMode::Create);
    std::filesystem::create_symlink("a", own / "link");
    std::filesystem::create_symlink("later", own / "dangling");
    const auto usual = mode(own / "a");
    for (const auto wanted : {perms(0600), perms(0640), perms(0777)}) {
        std::filesystem::permissions(own / "a", wanted);
        replace_file(*files, own / "link", "text");
        EXPECT_EQ(mode(own / "a"), wanted);
        EXPECT_TRUE(std::filesystem::is_symlink(own / "link"));
        EXPECT_EQ(read_all(*files, own / "a"), "text");
    }
    replace_file(*files, own / "dangling", "new");
    EXPECT_EQ(read_all(*files, own / "later"), "new");
    EXPECT_EQ(mode(own / "later"), usual);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(own.path()), {}), 4);
}

// What a new content cannot take the place of is refused before anything is written.
TEST(HostFiles, ReadOnlyAndSpecialFilesAreNotReplaced) {
    const test::TemporaryDirectory own;
    const auto files = make_host_files();
    files->open(own / "read-only", OpenMode::Create)->write("kept");
    std::filesystem::permissions(own / "read-only", std::filesystem::perms::owner_read);
    std::filesystem::create_symlink("/dev/full", own / "device");
    files->make_directories(own / "folder");
    const std::pair<const char*, std::errc> rows[] = {
        {"read-only", std::errc::permission_denied},
        {"device", std::errc::invalid_argument},
        {"folder", std::errc::is_a_directory},
        {"none/a", std::errc::no_such_file_or_directory}};
    for (const auto& [name, reason] : rows) {
        try {
            replace_file(*files, own / name, "text");
            ADD_FAILURE() << name;
        } catch (const std::system_error& failure) {
            EXPECT_EQ(failure.code(), reason) << failure.what();
        }
    }
    EXPECT_EQ(read_all(*files, own / "read-only"), "kept");
    EXPECT_EQ(files->kind(own / "device"), FileKind::Special);
    EXPECT_EQ(files->kind(own / "folder"), FileKind::Directory);
    EXPECT_EQ(files->kind(own / "none"), FileKind::Missing);
}

TEST(HostFiles, FailuresNameTheOperationAndThePath) {
    const auto files = make_host_files();
    const auto message_of = [](const std::function<void()>& action) -> std::string {
        try {
            action();
        } catch (const std::system_error& error) {
            return error.what();
        }
        return "no failure";
    };
    EXPECT_EQ(message_of([&] { files->open("/nowhere/a", OpenMode::Read); }),
              "Opening \"/nowhere/a\": No such file or directory");
    EXPECT_EQ(message_of([&] { files->open("/nowhere/a", OpenMode::Create); }),
              "Creating \"/nowhere/a\": No such file or directory");
    EXPECT_EQ(message_of([&] { files->open("/", OpenMode::Read); }),
              "Opening \"/\": Is a directory");
    EXPECT_EQ(message_of([&] { files->open("/dev/full", OpenMode::Append)->write("x"); }),
              "Writing \"/dev/full\": No space left on device");
}

TEST(HostFiles, DirectoriesAreMadeWithTheirParents) {
    const test::TemporaryDirectory own;
    const auto files = make_host_files();
    files->make_directories(own / "a/b/c");
    files->make_directories(own / "a/b/c");
    EXPECT_TRUE(files->exists(own / "a/b/c"));
    EXPECT_NO_THROW(files->sync_directory(own / "a"));
}

TEST(ReplaceFile, SyncsBeforeItRenames) {
    MemoryFiles files;
    replace_file(files, "/d/a", "content");
    EXPECT_EQ(files.log,
              (std::vector<std::string>{"create /d/a.new", "write /d/a", "sync /d/a", "close /d/a",
                                        "rename /d/a.new /d/a", "sync directory /d"}));
    EXPECT_EQ(files.synced("/d/a"), "content");
}

TEST(ReplaceFile, TheOldFileSurvivesEveryFailure) {
    for (int failure = 0; failure < 3; ++failure) {
        SCOPED_TRACE(failure);
        MemoryFiles files;
        files.put("/d/a", "old");
        if (failure == 0) files.refuse("/d/a");
        if (failure == 1) files.space = 3;
        if (failure == 2) files.sync_failure = EIO;
        EXPECT_THROW(replace_file(files, "/d/a", "new content"), std::system_error);
        EXPECT_EQ(files.content("/d/a"), "old");
        EXPECT_EQ(files.paths(), (std::vector<std::string>{"/d/a"}));
    }
}

struct PathRow {
    const char* path;
    const char* directory;
    const char* name;
};

TEST(Paths, AreTakenApartAndJoined) {
    const PathRow rows[] = {
        {"/a/b/c.CFG", "/a/b", "c.CFG"},
        {"c.CFG", "", "c.CFG"},
        {"a/b", "a", "b"},
        {"a/", "a", ""},
        {"", "", ""},
    };
    for (const PathRow& row : rows) {
        EXPECT_EQ(directory_of(row.path), row.directory);
        EXPECT_EQ(name_of(row.path), row.name);
        EXPECT_EQ(join_path(row.directory, row.name), row.path);
    }
}

}  // namespace
}  // namespace kavorix
