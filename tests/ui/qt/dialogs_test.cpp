#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <stdexcept>

#include "ui/qt/kit/file_dialog.h"
#include "ui/qt/kit/qt_dialogs.h"

namespace kavorix::test {
namespace {

QList<QMessageBox*> open_boxes() {
    QList<QMessageBox*> boxes;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* box = qobject_cast<QMessageBox*>(window); box && box->isVisible()) boxes << box;
    return boxes;
}

class QtDialogsTest : public testing::Test {
  protected:
    // Does `action` with the first open box as soon as events flow.
    void at_box(std::function<void(QMessageBox&)> action) {
        loop.call_later(0, [action = std::move(action)] {
            ASSERT_EQ(open_boxes().size(), 1);
            action(*open_boxes().front());
        });
    }
    void press(QMessageBox::StandardButton button) {
        at_box([button](QMessageBox& box) { box.button(button)->click(); });
    }

    QtEventLoop loop;
    Mirrors mirrors{loop};
    QtDialogs dialogs{mirrors};
};

TEST_F(QtDialogsTest, BoxShowsTextTitleIconAndButtons) {
    at_box([](QMessageBox& box) {
        EXPECT_EQ(box.text(), "A serious error\n\nKAVORIX will stop 20\u20ac");
        EXPECT_EQ(box.windowTitle(), "KAVORIX");
        EXPECT_EQ(box.icon(), QMessageBox::Critical);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
        box.button(QMessageBox::Ok)->click();
    });
    EXPECT_EQ(
        dialogs.message_box("A serious error\n\r\nKAVORIX will stop 20\x80", box::Stop, "KAVORIX"),
        Answer::Ok);
}

struct Choice {
    int flags;
    QMessageBox::StandardButton button;
    Answer answer;
};

class BoxAnswers : public QtDialogsTest, public testing::WithParamInterface<Choice> {};

TEST_P(BoxAnswers, AreThoseOfTheButton) {
    press(GetParam().button);
    EXPECT_EQ(dialogs.message_box("Well?", GetParam().flags, "KAVORIX"), GetParam().answer);
    press(GetParam().button);
    EXPECT_EQ(dialogs.Msg_Box("Well?", GetParam().flags, "KAVORIX"), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(All, BoxAnswers,
                         testing::Values(Choice{33, QMessageBox::Ok, Answer::Ok},
                                         Choice{33, QMessageBox::Cancel, Answer::Cancel},
                                         Choice{36, QMessageBox::Yes, Answer::Yes},
                                         Choice{36, QMessageBox::No, Answer::No},
                                         Choice{35, QMessageBox::Cancel, Answer::Cancel}));

TEST_F(QtDialogsTest, ClosingABoxIsTheCautiousAnswer) {
    for (const auto& [flags, answer] : {std::pair{box::Ok, Answer::Ok},
                                        {box::OkCancel, Answer::Cancel},
                                        {box::YesNoCancel, Answer::Cancel},
                                        {box::YesNo, Answer::No}}) {
        at_box([](QMessageBox& box) { box.close(); });
        EXPECT_EQ(dialogs.message_box("Well?", flags, "KAVORIX"), answer);
    }
}

TEST_F(QtDialogsTest, TimersRunWhileABoxWaits) {
    int ticks = 0;
    const auto timer = loop.make_timer([&] {
        if (++ticks == 3) open_boxes().front()->button(QMessageBox::Ok)->click();
    });
    timer->start(1);
    dialogs.message_box("Connected", box::Information, "KAVORIX");
    EXPECT_EQ(ticks, 3);
}

TEST_F(QtDialogsTest, ExceptionLeavesTheBoxAndClosesIt) {
    loop.call_later(0, [] { throw std::runtime_error("tick"); });
    EXPECT_THROW(dialogs.message_box("Connected", box::Information, "KAVORIX"), std::runtime_error);
    EXPECT_TRUE(open_boxes().isEmpty());
}

TEST_F(QtDialogsTest, NoticeReturnsAtOnceAndStaysOpenBesideTheWindows) {
    EXPECT_EQ(dialogs.Msg_Box("More than 1 ZAV Icon", 48, "KAVORIX"), Answer::Ok);
    ASSERT_EQ(open_boxes().size(), 1);
    EXPECT_FALSE(open_boxes().front()->isModal());
    open_boxes().front()->button(QMessageBox::Ok)->click();
    EXPECT_TRUE(open_boxes().isEmpty());
}

TEST_F(QtDialogsTest, SameNoticeIsOpenedOnce) {
    dialogs.Msg_Box("Pod 3 fails", 48, "KAVORIX");
    dialogs.Msg_Box("Pod 4 fails", 48, "KAVORIX");
    dialogs.Msg_Box("Pod 3 fails", 48, "KAVORIX");
    EXPECT_EQ(open_boxes().size(), 2);
}

TEST_F(QtDialogsTest, ClosedNoticeIsOpenedAgain) {
    dialogs.Msg_Box("Pod 3 fails", 48, "KAVORIX");
    open_boxes().front()->close();
    dialogs.Msg_Box("Pod 3 fails", 48, "KAVORIX");
    EXPECT_EQ(open_boxes().size(), 1);
}

TEST_F(QtDialogsTest, NoticesDoNotCoverEachOther) {
    for (int i = 0; i < 3; ++i)
        dialogs.Msg_Box("Pod " + std::to_string(i) + " fails", 48, "KAVORIX");
    QList<QPoint> places;
    for (const QMessageBox* box : open_boxes()) places << box->pos();
    ASSERT_EQ(places.size(), 3);
    EXPECT_NE(places[0], places[1]);
    EXPECT_NE(places[1], places[2]);
    EXPECT_NE(places[0], places[2]);
}

TEST_F(QtDialogsTest, UnloadClosesNoticesAndOpenQuestions) {
    dialogs.Msg_Box("Pod 3 fails", 48, "KAVORIX");
    loop.call_later(0, [&] { dialogs.Unload_Msg_Box(); });
    EXPECT_EQ(dialogs.Msg_Box("Delete?", 33, "KAVORIX"), Answer::Cancel);
    EXPECT_TRUE(open_boxes().isEmpty());
}

TEST_F(QtDialogsTest, WaitMessageStandsUntilTheEmptyText) {
    const auto shown = [] {
        QStringList texts;
        for (const QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible())
                for (const QLabel* label : window->findChildren<QLabel*>()) texts << label->text();
        return texts;
    };
    dialogs.show_wait_message(" Searching for Interface Card.   Please wait...");
    EXPECT_EQ(shown(), QStringList{"Searching for Interface Card.   Please wait..."});
    dialogs.show_wait_message("");
    EXPECT_EQ(shown(), QStringList{});
}

TEST_F(QtDialogsTest, BusyPointerIsSetOnce) {
    dialogs.set_pointer(Pointer::Busy);
    dialogs.set_pointer(Pointer::Busy);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    dialogs.set_pointer(Pointer::Default);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

class CountingMirror : public Mirror {
  public:
    void refresh() override { ++refreshed; }
    int refreshed = 0;
};

TEST_F(QtDialogsTest, RepaintRefreshesTheMirrorsWithoutLettingEventsFlow) {
    CountingMirror mirror;
    mirrors.add(mirror);
    bool ran = false;
    loop.call_later(0, [&] { ran = true; });
    dialogs.repaint();
    EXPECT_EQ(mirror.refreshed, 1);
    EXPECT_FALSE(ran);
    mirrors.remove(mirror);
    dialogs.repaint();
    EXPECT_EQ(mirror.refreshed, 1);
}

TEST_F(QtDialogsTest, MirrorsAreRefreshedBeforeTheProgramWaits) {
    CountingMirror mirror;
    mirrors.add(mirror);
    bool later = false;
    loop.call_later(5, [&] { later = true; });
    loop.wait_until([&] { return later; });
    EXPECT_GT(mirror.refreshed, 0);
    mirrors.remove(mirror);
}

TEST_F(QtDialogsTest, EditorThatCannotBeStartedIsReported) {
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", "/nowhere");
    EXPECT_FALSE(dialogs.open_in_editor("/tmp/ERR_LOG.TXT"));
    qputenv("PATH", path);
}

TEST(NameFilters, AreConverted) {
    EXPECT_EQ(to_name_filters("Config files(*.CFG)|*.CFG"),
              QStringList{"Config files (*.CFG *.cfg)"});
    EXPECT_EQ(to_name_filters("Logs|*.DAT;*.D00|All files (*.*)|*"),
              (QStringList{"Logs (*.DAT *.dat *.D00 *.d00)", "All files (*)"}));
    EXPECT_EQ(to_name_filters(""), QStringList{});
}

class FileDialogs : public QtDialogsTest {
  protected:
    FileDialogs() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    FileRequest request() const {
        return {"Open", "Config files(*.CFG)|*.CFG", "CFG", directory.path().toStdString(), ""};
    }
    void make(const QString& name) const {
        QFile file(directory.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    // Types `name` and accepts, once the dialog is open.
    void type(const QString& name) {
        loop.call_later(0, [name] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            dialog->selectFile(name);
            QMetaObject::invokeMethod(dialog, "accept");
        });
    }
    void cancel() {
        loop.call_later(
            0, [] { qobject_cast<QFileDialog*>(QApplication::activeModalWidget())->reject(); });
    }
    std::string path(const QString& name) const { return directory.filePath(name).toStdString(); }

    QTemporaryDir directory;
};

TEST_F(FileDialogs, ExistingFileIsChosen) {
    make("plant.CFG");
    type("plant.CFG");
    EXPECT_EQ(dialogs.choose_file_to_open(request()), path("plant.CFG"));
}

TEST_F(FileDialogs, BeginWhereTheLastFileOfTheKindWas) {
    const QTemporaryDir program;
    const auto begins = [&](const std::string& extension, const std::string& name) {
        std::string begun;
        loop.call_later(0, [&] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            begun = dialog->directory().path().toStdString();
            dialog->reject();
        });
        dialogs.choose_file_to_open(
            {"Open", "Files|*", extension, program.path().toStdString(), name});
        return begun;
    };
    dialogs.set_memory(WindowMemory(program.filePath("windows.ini")));
    EXPECT_EQ(begins("CFG", "*.CFG"), program.path().toStdString());
    make("plant.CFG");
    type("plant.CFG");
    dialogs.choose_file_to_open(request());
    EXPECT_EQ(begins("CFG", "*.CFG"), directory.path().toStdString());
    EXPECT_EQ(begins("DAT", ""), program.path().toStdString());
    EXPECT_EQ(begins("CFG", "kiln.CFG"), program.path().toStdString())
        << "the request names a file";
}

TEST_F(FileDialogs, CancelledIsNothing) {
    cancel();
    EXPECT_EQ(dialogs.choose_file_to_open(request()), std::nullopt);
}

TEST_F(FileDialogs, MissingFileIsRefusedAndTheDialogStaysOpen) {
    type("missing.CFG");
    loop.call_later(0, [&] {
        ASSERT_EQ(open_boxes().size(), 1);
        EXPECT_EQ(open_boxes().front()->text().toStdString(),
                  path("missing.CFG") + "\n\nFile not found. Please check the name.");
        cancel();
        open_boxes().front()->close();
    });
    EXPECT_EQ(dialogs.choose_file_to_open(request()), std::nullopt);
}

TEST_F(FileDialogs, NewNameGetsTheExtension) {
    type("fresh");
    EXPECT_EQ(dialogs.choose_file_to_save(request()), path("fresh.CFG"));
}

TEST_F(FileDialogs, ExistingFileIsReplacedOnlyAfterAYes) {
    make("plant.CFG");
    for (const bool yes : {true, false}) {
        type("plant.CFG");
        loop.call_later(0, [&, yes] {
            ASSERT_EQ(open_boxes().size(), 1);
            if (!yes) cancel();
            open_boxes().front()->button(yes ? QMessageBox::Yes : QMessageBox::No)->click();
        });
        EXPECT_EQ(dialogs.choose_file_to_save(request()),
                  yes ? std::optional(path("plant.CFG")) : std::nullopt);
    }
}

TEST_F(FileDialogs, ExceptionLeavesTheDialog) {
    loop.call_later(0, [] { throw std::runtime_error("tick"); });
    EXPECT_THROW(dialogs.choose_file_to_open(request()), std::runtime_error);
}

}  // namespace
}  // namespace kavorix::test
