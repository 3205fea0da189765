#pragma once

// An operator's hands on a window: every action is events of mouse and keyboard, and afterwards the
// window shows what the records say.

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <functional>
#include <string>

#include "ui/qt/kit/qt_event_loop.h"
#include "ui/qt/open_window.h"

namespace kavorix::test {

class Form {
  public:
    Form(QtEventLoop& loop, QWidget& window) : loop_(loop), window_(window) {
        QApplication::setActiveWindow(&window);
        settle();
    }

    template <class Widget>
    Widget& find(const std::string& name) const {
        auto* const found = window_.findChild<Widget*>(QString::fromStdString(name));
        if (!found) throw std::logic_error("no " + name);
        return *found;
    }

    QWidget& window() const { return window_; }
    std::string focused() const {
        const QWidget* const widget = window_.focusWidget();
        return widget ? widget->objectName().toStdString() : "";
    }
    std::string text(const std::string& field) const {
        return find<QLineEdit>(field).text().toStdString();
    }

    // At the left, where check boxes and radio buttons have their marks.
    void click(const std::string& name) {
        auto& button = find<QAbstractButton>(name);
        ASSERT_TRUE(button.isEnabled()) << name;
        QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
        settle();
    }

    void choose(const std::string& name, const char* entry) {
        auto& list = find<QComboBox>(name);
        const int index = list.findText(entry);
        ASSERT_TRUE(list.isEnabled() && index >= 0) << name << " does not offer " << entry;
        list.setFocus(Qt::MouseFocusReason);
        list.showPopup();
        settle();  // without a screen the open list becomes the active window
        list.view()->setCurrentIndex(list.model()->index(index, 0));
        QTest::keyClick(list.view(), Qt::Key_Return);
        QApplication::setActiveWindow(&window_);  // as the desktop does when the list closes
        settle();
    }

    // Replaces the text of a field; the focus stays there.
    void type(const std::string& name, const char* text) {
        auto& field = find<QLineEdit>(name);
        ASSERT_TRUE(field.isEnabled()) << name;
        field.setFocus(Qt::MouseFocusReason);
        field.selectAll();
        QTest::keyClick(&field, Qt::Key_Delete);
        QTest::keyClicks(&field, text);
        settle();
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QWidget* const focused = window_.focusWidget();
        QTest::keyClick(focused ? focused : &window_, key, modifiers);
        settle();
    }

    // Presses a key that clicks a button and lets events flow until that has done its work: the
    // button is seen going down first.
    void press_until(Qt::Key key, Qt::KeyboardModifiers modifiers,
                     const std::function<bool()>& done) {
        press(key, modifiers);
        loop_.wait_until(done);
        settle();
    }

    // Clicks a button that opens a modal dialog, and does `work` there, which closes it.
    void with(const std::string& button, const char* dialog,
              const std::function<void(Form&)>& work) {
        bool opened = false;
        loop_.call_later(0, [&] {
            QWidget* const window = open_window(dialog);
            ASSERT_NE(window, nullptr) << dialog;
            opened = true;
            Form form(loop_, *window);
            work(form);
        });
        click(button);
        EXPECT_TRUE(opened) << button << " opens no " << dialog;
        QApplication::setActiveWindow(&window_);
    }

    // Lets events flow until there are none left and the screen has followed the records.
    void settle() {
        bool idle = false;
        const auto waiting =
            QObject::connect(QAbstractEventDispatcher::instance(),
                             &QAbstractEventDispatcher::aboutToBlock, [&] { idle = true; });
        const auto wake = loop_.make_timer([] {});
        wake->start(1);
        loop_.wait_until([&] { return idle; });
        QObject::disconnect(waiting);
    }

  private:
    QtEventLoop& loop_;
    QWidget& window_;
};

}  // namespace kavorix::test
