#include "ui/qt/kit/modal_form.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <stdexcept>

namespace kavorix::test {
namespace {

// As the toolkit's generator would make it.
struct UiForm {
    QLineEdit* txtName = nullptr;
    QPushButton* cmdOK = nullptr;

    void setupUi(QDialog* dialog) {
        dialog->setObjectName("frmTest");
        auto* const rows = new QVBoxLayout(dialog);
        txtName = new QLineEdit(dialog);
        txtName->setObjectName("txtName");
        cmdOK = new QPushButton(dialog);
        cmdOK->setObjectName("cmdOK");
        rows->addWidget(txtName);
        rows->addWidget(cmdOK);
    }
};

struct Record {
    TextField txtName{"pod"};
    Button cmdOK{"OK", ""};

    template <class Visit>
    void each(Visit&& visit) {
        visit("txtName", txtName);
        visit("cmdOK", cmdOK);
    }
};

class ModalFormTest : public testing::Test {
  protected:
    ModalFormTest() {
        form.binder.on_click("cmdOK", [this] { closed = true; });
    }
    void run() {
        form.run(
            nullptr, [this] { return closed; }, [this] { ++requests; });
    }

    QtEventLoop loop;
    Mirrors mirrors{loop};
    Record record;
    ModalForm<UiForm> form{mirrors, record};
    bool closed = false;
    int requests = 0;
};

TEST_F(ModalFormTest, RunsUntilTheRulesSayClosed) {
    loop.call_later(0, [&] {
        EXPECT_TRUE(form.isVisible());
        EXPECT_TRUE(form.isModal());
        form.ui.txtName->setText("boiler");
        form.ui.cmdOK->click();
    });
    run();
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(record.txtName.text, "boiler");
}

TEST_F(ModalFormTest, ClosingOtherwiseOnlyAsks) {
    loop.call_later(0, [&] {
        QTest::keyClick(&form, Qt::Key_Escape);
        form.close();
        EXPECT_TRUE(form.isVisible());
        closed = true;
    });
    run();
    EXPECT_EQ(requests, 2);
}

TEST_F(ModalFormTest, ExceptionLeavesTheDialog) {
    loop.call_later(0, [] { throw std::runtime_error("tick"); });
    EXPECT_THROW(run(), std::runtime_error);
}

}  // namespace
}  // namespace kavorix::test
