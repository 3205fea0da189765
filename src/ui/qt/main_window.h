#pragma once

// The main window `frmMain`: the record MainScreen on the screen, the operator's clicks to the
// handlers.

#include <QMainWindow>
#include <functional>
#include <memory>
#include <span>

#include "ui/commands.h"
#include "ui/qt/binder.h"
#include "ui/qt/recent_files.h"
#include "ui/qt/window_memory.h"

class QMenu;

namespace Ui {
class frmMain;
}

namespace kavorix {

class Operations;

// What the window calls. Pods by index 0..49, streams 0..3. All but the last two are set.
struct MainWindowHandlers {
    std::function<void(Command)> run;  // a menu item
    std::function<void()> cmdTrig_Click;
    std::function<void()> cmdHalt_Click;
    std::function<void()> cmdTransmit_Click;
    std::function<void()> cmdConfig_Click;
    std::function<void()> cmdDefault_Click;
    std::function<void()> cmdSelectAll_Click;
    std::function<void()> cmdClear_Click;
    std::function<void(int)> img_ZAV_Click;
    std::function<void(int)> select_for_menu;  // the menu of a pod is about to open
    std::function<void()> img_4A_Click;
    std::function<void()> pnlErr_DblClick;
    std::function<void(int)> pnlButton_DblClick;
    std::function<void()> unload_request;
    std::function<void()> mnuOperate_Click;  // the menu is about to open

    // A file was dropped on the window or chosen among the recent ones; paths are the host's bytes.
    std::function<void(const std::string&)> open;
};
MainWindowHandlers handlers_of(Operations& operations);

// Closing it only asks (unload_request): it stays until the program ends and destroys it.
class QtMainWindow : public QMainWindow, private Mirror {
  public:
    // `memory_path`: the INI file that remembers size and place.
    QtMainWindow(MainScreen& screen, MainWindowHandlers handlers, Mirrors& mirrors,
                 const QString& memory_path);
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
    void fill_menu(QMenu& menu, std::span<const MenuEntry> entries);
    void show_expanded();
    void restore_place();

    MainScreen& screen_;
    MainWindowHandlers handlers_;
    Mirrors& mirrors_;
    WindowMemory memory_;
    RecentFiles recent_;
    QMenu* recent_menu_ = nullptr;
    std::unique_ptr<Ui::frmMain> ui_;
    std::unique_ptr<Binder> binder_;
    bool asking_ = false;  // unload_request is under way
};

}  // namespace kavorix
