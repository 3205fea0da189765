#pragma once

// The guide on the screen: F1 opens its page about the window in front, in every window.

#include <QObject>
#include <QPointer>
#include <QString>
#include <string_view>

#include "ui/qt/kit/window_memory.h"

class QWidget;

namespace kavorix {

class GuideWindow;

// The folder of the guide and the pages it links to: beside an installed program, or in the tree
// that the program was built in. Empty when there is none.
QString documents_folder();

class Guide : public QObject {
  public:
    // `documents`: the folder that holds guide/. The window's size is kept in `memory`, which
    // outlives the guide.
    Guide(QString documents, const WindowMemory& memory);
    ~Guide() override;

    // Shows a page of the folder guide/, "index" the first.
    void open(std::string_view page = "index");

    // Shows the page about a window: the one that has the object name of it or of the nearest
    // window that it belongs to; the first page when there is none.
    void open_about(const QWidget* window);

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    QString page_about(const QWidget* window) const;
    void show_page(const QString& path);
    void place_above(const QWidget* modal);

    QString documents_;
    const WindowMemory& memory_;
    QPointer<GuideWindow> window_;
};

}  // namespace kavorix
