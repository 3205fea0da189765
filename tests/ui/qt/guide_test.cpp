#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include "ui/qt/kit/guide.h"
#include "ui/qt/kit/guide_window.h"
#include "ui/qt/open_window.h"

namespace kavorix::test {
namespace {

const QString Documents = KAVORIX_SOURCE_DIR "/docs";

class GuideTest : public testing::Test {
  protected:
    GuideWindow* shown() const { return static_cast<GuideWindow*>(open_window("frmGuide")); }
    // The page on the screen, within the folder of the guide.
    std::string page() const {
        if (!shown()) return "none";
        return QDir(Documents + "/guide")
            .relativeFilePath(shown()->browser().source().toLocalFile())
            .toStdString();
    }

    QTemporaryDir directory;
    WindowMemory memory{directory.filePath("windows.ini")};
    Guide guide{Documents, memory};
};

TEST_F(GuideTest, IsFoundInTheTreeOfTheProgram) {
    EXPECT_EQ(QDir(documents_folder()).canonicalPath(), QDir(Documents).canonicalPath());
}

TEST_F(GuideTest, EveryFormHasItsPage) {
    QDirIterator forms(KAVORIX_SOURCE_DIR "/src/ui/qt", {"frm*.ui"}, QDir::Files,
                       QDirIterator::Subdirectories);
    int count = 0;
    for (; forms.hasNext(); ++count) {
        forms.next();
        const QString form = forms.fileName();
        QWidget window;
        window.setObjectName(form.chopped(3));
        guide.open_about(&window);
        EXPECT_EQ(page(), "windows/" + form.chopped(3).toStdString() + ".md");
        EXPECT_GT(shown()->browser().toPlainText().size(), 150) << form.toStdString();
    }
    EXPECT_GT(count, 20);
}

TEST_F(GuideTest, F1TellsAboutTheWindowThatHasTheKeyboard) {
    QDialog window;
    window.setObjectName("frmStrm0");
    QLineEdit field(&window);
    QMessageBox box(&window);
    QDialog other;
    const std::pair<QWidget*, const char*> cases[] = {{&window, "windows/frmStrm0.md"},
                                                      {&field, "windows/frmStrm0.md"},
                                                      {&box, "messages.md"},
                                                      {&other, "index.md"}};
    for (const auto& [widget, expected] : cases) {
        QTest::keyClick(widget, Qt::Key_F1);
        EXPECT_EQ(page(), expected);
    }
}

TEST_F(GuideTest, CanBeUsedBesideAModalWindow) {
    guide.open();
    EXPECT_EQ(shown()->windowHandle()->transientParent(), nullptr);
    QDialog modal;
    modal.setObjectName("frmTxCmd");
    modal.setModal(true);
    modal.show();
    QTest::keyClick(&modal, Qt::Key_F1);
    EXPECT_EQ(page(), "windows/frmTxCmd.md");
    EXPECT_EQ(shown()->windowHandle()->transientParent(), modal.windowHandle());
    QTest::mouseClick(shown()->findChildren<QPushButton*>().last(), Qt::LeftButton);
    EXPECT_EQ(page(), "index.md");
}

TEST_F(GuideTest, ALinkScrollsToItsHeading) {
    guide.open();
    shown()->resize(500, 300);
    shown()->show_page(Documents + "/configuration-files.md");
    const QScrollBar& bar = *shown()->browser().verticalScrollBar();
    EXPECT_EQ(bar.value(), 0);
    const_cast<GuideBrowser&>(shown()->browser())
        .setSource(QUrl("configuration-files.md#a-worked-example"));
    EXPECT_GT(bar.value(), 1000);
    EXPECT_EQ(heading_anchor("Stream 0: scan results"), "stream-0-scan-results");
}

}  // namespace
}  // namespace kavorix::test
