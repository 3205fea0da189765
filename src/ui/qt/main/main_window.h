#pragma once

// The main window `frmMain`: the record MainScreen on the screen, the operator's clicks to the
// rules.

#include <QMainWindow>
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ui/main/main_window.h"
#include "ui/qt/kit/binder.h"
#include "ui/qt/kit/window_memory.h"
#include "ui/qt/main/recent_files.h"

class QAction;
class QMenu;
class QPushButton;

namespace Ui {
class frmMain;
}

namespace kavorix {

// Closing it only asks (unload_request): it stays until the program ends and destroys it.
class QtMainWindow : public QMainWindow, private Mirror {
  public:
    // A file was dropped on the window or chosen among the recent ones; paths are the host's bytes.
    using OpenFile = std::function<void(const std::string&)>;

    // The rules outlive the window. `memory_path`: the INI file that remembers size and place.
    QtMainWindow(MainWindow& rules, OpenFile open, Mirrors& mirrors, const QString& memory_path);
    ~QtMainWindow() override;

    // A configuration file was loaded or saved: it stands first among the recent files.
    void note_recent(const std::string& path);

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void refresh() override;
    void bind_panels();
    void bind_buttons();
    void build_menus();
    void build_recent_menu();
    void list_recent_files();
    void show_pod_menu(int pod, const QPoint& place);
    void open_later(const QString& path);
    void fill_menu(QMenu& menu, const MenuRow& row);
    void add_action(QMenu& menu, const CommandRow& row);
    void refresh_all();
    void show_commands();
    void show_expanded();
    void restore_place();

    MainWindow& rules_;
    OpenFile open_;
    MainScreen screen_;
    Mirrors& mirrors_;
    WindowMemory memory_;
    RecentFiles recent_;
    QMenu* recent_menu_ = nullptr;
    std::unique_ptr<Ui::frmMain> ui_;
    std::unique_ptr<Binder> binder_;
    std::vector<std::pair<QAction*, Command>> actions_;
    std::vector<std::pair<QPushButton*, Command>> buttons_;
    std::array<QMenu*, MenuCount> menus_{};
    bool asking_ = false;  // unload_request is under way
};

}  // namespace kavorix
