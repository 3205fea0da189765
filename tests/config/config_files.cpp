#include "config/config_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/virtual_event_loop.h"
#include "support/faulty_files.h"
#include "support/recording_failures.h"
#include "support/scripted_dialogs.h"
#include "support/temporary_directory.h"

namespace kavorix {
namespace {

using test::FileOperation;
using test::ShownBox;
using Boxes = std::vector<ShownBox>;

const std::string Header = "KAVORIX ZAV CONFIGURATION FILE CREATED: 2026-01-05 08:00:00\r\n";
const std::string SavedHead = Header + "AD0;-14336;\r\nUR1000;\r\nPO0;\r\n";
const std::string GoodFile = Header + "IM03;8S;32;\r\nSE;\r\n";
const std::string BadFile = Header + "IM04;8S;32;\r\nIM03;8S;32;\r\nXX;\r\n";
const std::string Message4 =
    "Configuration for ZAV number 4 has been found although an ZAV is not Connected.";

// A station at 2026-01-05 08:00:00 with an 8S at number 3, whose live configuration has a 7U there.
class ConfigFilesTest : public testing::Test {
  protected:
    ConfigFilesTest() {
        configuration_.Interface.CardAddress = -14336;
        default_ZAV_config(configuration_.ZavConfig[2], Type7U, 0);
        for (int pod = 1; pod <= MaxZavs; ++pod)
            set_ident(pod, pod == 3 ? "8SJA 0F 1.00" : "NC          ");
    }

    void set_ident(int pod, const std::string& ident) {
        std::copy(ident.begin(), ident.end(), status_[at(pod - 1)].Ident.begin());
    }

    std::string path(const std::string& name) const { return directory_ / name; }
    void write(const std::string& name, const std::string& content) {
        host_->open(path(name), OpenMode::Create)->write(content);
    }
    std::string content(const std::string& name) { return read_all(*host_, path(name)); }
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(directory_.path()))
            found.push_back(entry.path().filename().string());
        std::sort(found.begin(), found.end());
        return found;
    }

    void open(const std::string& name) {
        dialogs_.choose(path(name));
        config_files_.open_file();
    }

    test::TemporaryDirectory directory_;
    std::unique_ptr<Files> host_ = make_host_files();
    test::FaultyFiles files_{*host_};
    VirtualEventLoop loop_;
    Configuration configuration_;
    PodStatuses status_;
    Message message_;
    test::ScriptedDialogs dialogs_;
    test::RecordingFailures failures_;
    MessageLine message_line_{message_, dialogs_};
    ConfigFiles config_files_{
        {configuration_, status_, dialogs_, files_, loop_, message_line_, failures_, "/program"}};
};

using Names = std::vector<std::string>;

TEST_F(ConfigFilesTest, SaveWritesTheNamedFileWithoutADialog) {
    configuration_.ConfigFileName = path("A.CFG");
    configuration_.ConfigChanged = 1;
    EXPECT_EQ(config_files_.save_file(0), 0);
    EXPECT_EQ(content("A.CFG"), SavedHead + "IM03;7U;20;\r\nSP0;\r\n");
    EXPECT_EQ(names(), (Names{"A.CFG"}));
    EXPECT_EQ(configuration_.ConfigChanged, 0);
    EXPECT_EQ(message_.Text, " Configuration file Saved");
    EXPECT_EQ(message_.Severity, Severity::Progress);
    EXPECT_EQ(dialogs_.pointer, Pointer::Default);
    EXPECT_EQ(dialogs_.requests.size(), 0u);
}

TEST_F(ConfigFilesTest, FirstSaveAsksInTheProgramDirectory) {
    dialogs_.choose(path("new.cfg"));
    EXPECT_EQ(config_files_.save_file(0), 0);
    ASSERT_EQ(dialogs_.requests.size(), 1u);
    const FileRequest& asked = dialogs_.requests[0];
    EXPECT_EQ(asked.title, "Save ZAV Configuration As");
    EXPECT_EQ(asked.filter, "Config files(*.CFG)|*.CFG");
    EXPECT_EQ(asked.default_extension, "CFG");
    EXPECT_EQ(asked.directory, "/program");
    EXPECT_EQ(asked.name, "*.CFG");
    EXPECT_EQ(configuration_.ConfigFileName, path("new.cfg"));
    EXPECT_EQ(names(), (Names{"new.cfg"}));
}

TEST_F(ConfigFilesTest, SaveAsStartsAtTheCurrentFile) {
    configuration_.ConfigFileName = "/data/plant/A.CFG";
    dialogs_.choose(path("B.CFG"));
    EXPECT_EQ(config_files_.save_file(1), 0);
    ASSERT_EQ(dialogs_.requests.size(), 1u);
    EXPECT_EQ(dialogs_.requests[0].directory, "/data/plant");
    EXPECT_EQ(dialogs_.requests[0].name, "A.CFG");
    EXPECT_EQ(configuration_.ConfigFileName, path("B.CFG"));
}

TEST_F(ConfigFilesTest, CancelledSaveDialogWritesNothing) {
    configuration_.ConfigChanged = 1;
    message_.Text = "old";
    dialogs_.choose(std::nullopt);
    EXPECT_EQ(config_files_.save_file(1), 0);
    EXPECT_EQ(names(), Names{});
    EXPECT_EQ(configuration_.ConfigChanged, 1);
    EXPECT_EQ(configuration_.ConfigFileName, "");
    EXPECT_EQ(message_.Text, "");
}

TEST_F(ConfigFilesTest, AnotherExtensionIsAskedAboutUntilGivenUp) {
    dialogs_.choose(path("A.TXT"));
    dialogs_.choose(path("CFG"));
    dialogs_.answer(Answer::Ok);
    dialogs_.answer(Answer::Cancel);
    EXPECT_EQ(config_files_.save_file(1), 1);
    const ShownBox complaint = {
        "Selected File is not an ZAV Configuration File. Please Select a File with an Extension of "
        ".CFG",
        box::OkCancel | box::Exclamation, "KAVORIX"};
    EXPECT_EQ(dialogs_.boxes, (Boxes{complaint, complaint}));
    EXPECT_EQ(dialogs_.requests.size(), 2u);
    EXPECT_EQ(names(), Names{});
}

// A save that fails is told, with the reason; file, name and changes stay, and the program goes on.
TEST_F(ConfigFilesTest, AFailingSaveKeepsTheOldFileItsNameAndTheChanges) {
    const struct {
        FileOperation operation;
        std::errc reason;
        const char* words;
    } cases[] = {
        {FileOperation::Open, std::errc::permission_denied, "Permission denied"},
        {FileOperation::Lock, std::errc::device_or_resource_busy, "busy"},
        {FileOperation::Write, std::errc::no_space_on_device, "No space left on device"},
        {FileOperation::Sync, std::errc::io_error, "Input/output error"},
        {FileOperation::Close, std::errc::no_space_on_device, "No space left on device"},
        {FileOperation::Rename, std::errc::permission_denied, "Permission denied"},
    };
    for (const auto& c : cases) {
        write("A.CFG", "old content");
        configuration_.ConfigFileName = path("named.CFG");
        configuration_.ConfigChanged = 1;
        test::FaultyFiles files(*host_);
        files.fail(c.operation, c.reason);
        ConfigFiles config_files({configuration_, status_, dialogs_, files, loop_, message_line_,
                                  failures_, "/program"});
        dialogs_.choose(path("A.CFG"));
        EXPECT_EQ(config_files.save_file(1), 0);
        EXPECT_NE(config_files.save_failure().value_or("").find(c.words), std::string::npos);
        const auto boxes = dialogs_.take_boxes();
        ASSERT_EQ(boxes.size(), 1u);
        EXPECT_NE(boxes[0].text.find("could not be saved to " + path("A.CFG")), std::string::npos);
        EXPECT_NE(boxes[0].text.find(c.words), std::string::npos) << boxes[0].text;
        EXPECT_EQ(content("A.CFG"), "old content") << c.words;
        EXPECT_EQ(names(), (Names{"A.CFG"})) << c.words;
        EXPECT_EQ(configuration_.ConfigFileName, path("named.CFG"));
        EXPECT_EQ(configuration_.ConfigChanged, 1);
        EXPECT_EQ(dialogs_.pointer, Pointer::Default);
    }
}

// What cannot take a configuration is named before anything is written.
TEST_F(ConfigFilesTest, FoldersReadOnlyAndSpecialFilesAndMissingFoldersAreRefused) {
    std::filesystem::create_directory(path("folder.CFG"));
    std::filesystem::create_symlink("/dev/full", path("device.CFG"));
    write("read.CFG", "old content");
    std::filesystem::permissions(path("read.CFG"), std::filesystem::perms::owner_read);
    for (const char* name : {"folder.CFG", "device.CFG", "read.CFG", "missing/a.CFG"}) {
        configuration_.ConfigFileName = path(name);
        EXPECT_EQ(config_files_.save_file(0), 0);
        EXPECT_TRUE(config_files_.save_failure()) << name;
        EXPECT_EQ(configuration_.ConfigChanged, 1);
    }
    EXPECT_EQ(dialogs_.take_boxes().size(), 4u);
    EXPECT_EQ(content("read.CFG"), "old content");
    EXPECT_EQ(names(), (Names{"device.CFG", "folder.CFG", "read.CFG"}));
    EXPECT_TRUE(failures_.reports.empty());
}

// Changes that could not be saved are not thrown away by going on.
TEST_F(ConfigFilesTest, OpeningStopsWhenTheSaveBeforeItFails) {
    write("B.CFG", GoodFile);
    configuration_.ConfigFileName = path("missing/a.CFG");
    configuration_.ConfigChanged = 1;
    dialogs_.answer(Answer::Yes);
    dialogs_.choose(path("B.CFG"));
    config_files_.open_file();
    EXPECT_EQ(configuration_.ConfigFileName, path("missing/a.CFG"));
    EXPECT_EQ(configuration_.ConfigChanged, 1);
    EXPECT_EQ(dialogs_.take_boxes().size(), 2u);
}

TEST_F(ConfigFilesTest, FolderAsFileNameIsReported) {
    std::filesystem::create_directory(path("A.CFG"));
    EXPECT_THROW(open("A.CFG"), ProgramEnded);
    EXPECT_EQ(failures_.reports, (std::vector<std::string>{"21 confact/open_file: Opening \"" +
                                                           path("A.CFG") + "\": Is a directory"}));
    EXPECT_EQ(names(), (Names{"A.CFG"}));
}

TEST_F(ConfigFilesTest, OpenLoadsTheChosenFile) {
    write("A.CFG", GoodFile);
    const PodConfigs before = configuration_.ZavConfig;
    open("A.CFG");
    ASSERT_EQ(dialogs_.requests.size(), 1u);
    const FileRequest& asked = dialogs_.requests[0];
    EXPECT_EQ(asked.title, "Open ZAV Configuration");
    EXPECT_EQ(asked.filter, "Config files(*.CFG)|*.CFG");
    EXPECT_EQ(asked.default_extension, "CFG");
    EXPECT_EQ(asked.directory, "/program");
    EXPECT_EQ(asked.name, "*.CFG");
    EXPECT_EQ(configuration_.ZavConfig[2].TypeCode, Type8S);
    EXPECT_EQ(configuration_.ZavConfig[2].Setup, 1);
    EXPECT_TRUE(configuration_.ZavConfigCopy == before);
    EXPECT_EQ(configuration_.ConfigFileName, path("A.CFG"));
    EXPECT_EQ(configuration_.ConfigChanged, 0);
    EXPECT_EQ(message_.Text, " Configuration file Loaded - must be Transmitted to take Effect");
    EXPECT_EQ(message_.Severity, Severity::Progress);
    EXPECT_EQ(dialogs_.pointer, Pointer::Default);
    EXPECT_EQ(dialogs_.boxes, Boxes{});
    EXPECT_EQ(names(), (Names{"A.CFG"}));
}

TEST_F(ConfigFilesTest, CancelledOpenDialogChangesNothing) {
    message_.Text = "old";
    dialogs_.choose(std::nullopt);
    config_files_.open_file();
    EXPECT_EQ(configuration_.ZavConfig[2].TypeCode, Type7U);
    EXPECT_EQ(configuration_.ConfigFileName, "");
    EXPECT_EQ(message_.Text, "");
}

TEST_F(ConfigFilesTest, AFileThatIsChosenAlreadyIsOpenedWithoutTheDialog) {
    write("A.CFG", GoodFile);
    Names used;
    config_files_.on_used([&](const std::string& file) { used.push_back(file); });
    config_files_.open_file(path("A.CFG"));
    EXPECT_EQ(configuration_.ZavConfig[2].TypeCode, Type8S);
    config_files_.save_file(0);
    config_files_.open_file(path("GONE.CFG"));
    EXPECT_EQ(used, (Names{path("A.CFG"), path("A.CFG")}));
    EXPECT_EQ(dialogs_.requests.size(), 0u);
    EXPECT_EQ(dialogs_.boxes,
              (Boxes{{path("GONE.CFG") + "\n\nFile not found. Please check the name.",
                      box::Exclamation, "KAVORIX"}}));
}

TEST_F(ConfigFilesTest, OpeningAnotherExtensionIsAskedAbout) {
    write("A.CFG", GoodFile);
    dialogs_.choose(path("A.DAT"));
    dialogs_.answer(Answer::Ok);
    open("A.CFG");
    dialogs_.choose(path("A.DAT"));
    dialogs_.answer(Answer::Cancel);
    config_files_.open_file();
    const ShownBox complaint = {
        "File is not an ZAV Configuration File. Please Select a File with an Extension of .CFG",
        box::OkCancel | box::Exclamation, "KAVORIX"};
    EXPECT_EQ(dialogs_.boxes, (Boxes{complaint, complaint}));
    EXPECT_EQ(configuration_.ZavConfig[2].TypeCode, Type8S);
}

const ShownBox SaveQuestion = {
    "Configuration changes made but not saved.\n\nSave before Opening another Configuration File?",
    box::YesNoCancel | box::Question, "KAVORIX"};

TEST_F(ConfigFilesTest, UnsavedChangesCanBeSavedFirst) {
    write("B.CFG", GoodFile);
    configuration_.ConfigFileName = path("A.CFG");
    configuration_.ConfigChanged = 1;
    dialogs_.answer(Answer::Yes);
    open("B.CFG");
    EXPECT_EQ(dialogs_.boxes, (Boxes{SaveQuestion}));
    EXPECT_EQ(content("A.CFG"), SavedHead + "IM03;7U;20;\r\nSP0;\r\n");
    EXPECT_EQ(configuration_.ConfigFileName, path("B.CFG"));
}

TEST_F(ConfigFilesTest, UnsavedChangesCanBeDroppedOrKept) {
    write("B.CFG", GoodFile);
    configuration_.ConfigChanged = 1;
    dialogs_.answer(Answer::Cancel);
    config_files_.open_file();
    EXPECT_EQ(dialogs_.requests.size(), 0u);
    EXPECT_EQ(configuration_.ConfigChanged, 1);
    dialogs_.answer(Answer::No);
    open("B.CFG");
    EXPECT_EQ(dialogs_.boxes, (Boxes{SaveQuestion, SaveQuestion}));
    EXPECT_EQ(configuration_.ZavConfig[2].TypeCode, Type8S);
    EXPECT_EQ(configuration_.ConfigChanged, 0);
}

TEST_F(ConfigFilesTest, FileWithoutHeaderIsRefused) {
    write("A.CFG", "IM03;8S;32;\r\n");
    open("A.CFG");
    EXPECT_EQ(dialogs_.boxes,
              (Boxes{{"Selected File is not an ZAV Configuration File: Header Record missing\n\n"
                      "Previous Configuration not Overwritten.",
                      box::Exclamation, "KAVORIX"}}));
    EXPECT_EQ(dialogs_.beeps, 1);
    EXPECT_EQ(dialogs_.pointer, Pointer::Default);
    EXPECT_EQ(configuration_.ZavConfig[2].TypeCode, Type7U);
    EXPECT_EQ(names(), (Names{"A.CFG"}));
}

const ShownBox ErrorQuestion = {
    "Errors Occurred during the Load of the Configuration File. Original Configuration "
    "Restored.\n\nWould you like to View the Error Log now?",
    box::YesNo | box::Question, "KAVORIX"};

TEST_F(ConfigFilesTest, ErrorsGoToALogBesideTheFile) {
    write("A.CFG", BadFile);
    configuration_.ConfigFileName = "/data/old.CFG";
    dialogs_.answer(Answer::Yes);
    open("A.CFG");
    EXPECT_EQ(content("A.L00"), "KAVORIX ZAV CONFIGURATION FILE ERROR LOG FOR " + path("A.CFG") +
                                    " 2026-01-05 08:00:00\r\n\r\n" + Message4 +
                                    "\r\n\r\nUnknown command of XX\r\n\r\n");
    EXPECT_EQ(dialogs_.boxes, (Boxes{ErrorQuestion}));
    EXPECT_EQ(dialogs_.edited, (Names{path("A.L00")}));
    EXPECT_EQ(dialogs_.beeps, 1);
    EXPECT_EQ(dialogs_.pointer, Pointer::Default);
    EXPECT_EQ(configuration_.ZavConfig[2].TypeCode, Type7U);
    EXPECT_EQ(configuration_.ConfigFileName, "/data/old.CFG");
    EXPECT_EQ(message_.Text, "");
}

TEST_F(ConfigFilesTest, EveryFailedLoadTakesTheFirstFreeLog) {
    write("A.CFG", BadFile);
    for (const char* taken : {"A.L00", "A.L01", "A.L03"}) write(taken, "taken");
    dialogs_.answer(Answer::No);
    dialogs_.answer(Answer::No);
    open("A.CFG");
    open("A.CFG");
    EXPECT_EQ(names(), (Names{"A.CFG", "A.L00", "A.L01", "A.L02", "A.L03", "A.L04"}));
    EXPECT_EQ(content("A.L01"), "taken");
    EXPECT_EQ(content("A.L02"), content("A.L04"));
    EXPECT_EQ(dialogs_.edited, Names{});
}

TEST_F(ConfigFilesTest, EditorThatCannotBeStartedIsTold) {
    write("A.CFG", BadFile);
    dialogs_.editor_works = false;
    dialogs_.answer(Answer::Yes);
    open("A.CFG");
    EXPECT_EQ(
        dialogs_.boxes,
        (Boxes{ErrorQuestion,
               {"Configuration Log File could not be Displayed", box::Exclamation, "KAVORIX"}}));
    EXPECT_EQ(dialogs_.beeps, 2);
}

class HundredLogs : public ConfigFilesTest {
  protected:
    HundredLogs() {
        write("A.CFG", BadFile);
        for (int number = 0; number < 100; ++number)
            write("A.L" + std::string(number < 10 ? "0" : "") + std::to_string(number), "taken");
    }
    const ShownBox question_ = {
        "Errors in the Configuration & No Free Log Files available.\n\nCan " + path("A.L01") +
            " be Overwritten?",
        box::YesNo | box::Question, "KAVORIX"};
};

TEST_F(HundredLogs, OneCanBeOverwritten) {
    dialogs_.answer(Answer::Yes);
    dialogs_.answer(Answer::No);
    open("A.CFG");
    EXPECT_EQ(dialogs_.boxes, (Boxes{question_, ErrorQuestion}));
    EXPECT_EQ(content("A.L01"), "KAVORIX ZAV CONFIGURATION FILE ERROR LOG FOR " + path("A.CFG") +
                                    " 2026-01-05 08:00:00\r\n\r\n" + Message4 +
                                    "\r\n\r\nUnknown command of XX\r\n\r\n");
    EXPECT_EQ(content("A.L00"), "taken");
}

TEST_F(HundredLogs, TheLastNameIsTakenBeforeOneIsOverwritten) {
    std::filesystem::remove(path("A.L99"));
    dialogs_.answer(Answer::No);
    open("A.CFG");
    EXPECT_EQ(dialogs_.boxes, (Boxes{ErrorQuestion}));
    EXPECT_EQ(content("A.L99").substr(0, 7), "KAVORIX");
}

TEST_F(HundredLogs, RefusalStopsTheLoadAtTheFirstError) {
    const PodConfigs before = configuration_.ZavConfig;
    dialogs_.answer(Answer::No);
    bool restored = false;
    dialogs_.at_box([&](const ShownBox& shown) {
        if (shown.flags == box::Information) restored = configuration_.ZavConfig == before;
    });
    open("A.CFG");
    EXPECT_EQ(dialogs_.boxes, (Boxes{question_,
                                     {"Previous Configuration Restored. No Log File Available",
                                      box::Information, "KAVORIX"}}));
    EXPECT_TRUE(restored);
    EXPECT_EQ(dialogs_.pointer, Pointer::Default);
    EXPECT_EQ(content("A.L01"), "taken");
    EXPECT_EQ(dialogs_.beeps, 0);
}

TEST_F(ConfigFilesTest, ReadFailuresLeaveTheConfigurationAlone) {
    struct Case {
        FileOperation operation;
        int spared;
        std::errc reason;
        const char* report;
    };
    const Case cases[] = {
        {FileOperation::Open, 0, std::errc::permission_denied, "13 confact/open_file: \""},
        {FileOperation::Open, 0, std::errc::no_such_file_or_directory, "2 confact/open_file: \""},
        {FileOperation::Read, 0, std::errc::io_error, "5 confact/open_file: \""},
        {FileOperation::Read, 1, std::errc::io_error, "5 confact/open_file: \""},
        // The log cannot be made, or not be added to.
        {FileOperation::Open, 1, std::errc::read_only_file_system, "30 confact/open_file: \""},
        {FileOperation::Open, 2, std::errc::permission_denied, "13 confact/open_file: \""},
        {FileOperation::Write, 1, std::errc::no_space_on_device, "28 confact/open_file: \""},
        {FileOperation::Close, 0, std::errc::no_space_on_device, "28 confact/open_file: \""},
    };
    const PodConfigs before = configuration_.ZavConfig;
    for (const Case& c : cases) {
        write("A.CFG", BadFile);
        test::FaultyFiles files(*host_);
        files.fail_after(c.operation, c.spared, c.reason);
        ConfigFiles config_files({configuration_, status_, dialogs_, files, loop_, message_line_,
                                  failures_, "/program"});
        failures_.reports.clear();
        dialogs_.choose(path("A.CFG"));
        EXPECT_THROW(config_files.open_file(), ProgramEnded);
        ASSERT_EQ(failures_.reports.size(), 1u);
        EXPECT_EQ(failures_.reports[0].substr(0, std::string(c.report).size()), c.report);
        EXPECT_TRUE(configuration_.ZavConfig == before) << c.report;
    }
}

TEST_F(ConfigFilesTest, FileThatVanishesBeforeItIsOpenedIsReported) {
    write("A.CFG", GoodFile);
    files_.before(FileOperation::Open, [&] { std::filesystem::remove(path("A.CFG")); });
    EXPECT_THROW(open("A.CFG"), ProgramEnded);
    EXPECT_EQ(failures_.reports,
              (std::vector<std::string>{"2 confact/open_file: Opening \"" + path("A.CFG") +
                                        "\": No such file or directory"}));
    EXPECT_EQ(configuration_.ZavConfig[2].TypeCode, Type7U);
}

TEST_F(ConfigFilesTest, FileThatVanishesWhileItIsReadLoadsAsItWas) {
    write("A.CFG", GoodFile);
    files_.before(FileOperation::Read, [&] { std::filesystem::remove(path("A.CFG")); });
    open("A.CFG");
    EXPECT_EQ(configuration_.ZavConfig[2].TypeCode, Type8S);
}

}  // namespace
}  // namespace kavorix
