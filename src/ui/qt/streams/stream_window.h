#pragma once

// What the windows of the stream views have in common. A window is its .ui file and its handlers:
//
//     auto window = std::make_unique<StreamForm<Ui::frmStrm3>>(view, mirrors, memory);
//     window->show_table(view, *window->ui.grdStrm3);
//     window->binder.on_click("cmdOK", [form = window.get()] { form->close(); });

#include <QDialog>
#include <functional>
#include <string>

#include "ui/qt/kit/binder.h"
#include "ui/qt/kit/grid_view.h"
#include "ui/qt/kit/window_memory.h"

namespace kavorix {

// Loads its view when it is shown and unloads it when it is closed; remembers its place and the
// widths of its columns.
class StreamWindow : public QDialog {
  public:
    // All of it outlives the window.
    template <class View>
    StreamWindow(View& view, Mirrors& mirrors, const WindowMemory& memory)
        : StreamWindow([&view] { view.load(); }, [&view] { view.unload(); }, view.screen.caption,
                       mirrors, memory) {}
    ~StreamWindow() override = default;

    // Opens the window, or brings it to the front, on the pods that are selected now.
    void open_view();

  protected:
    void set_up(GridView& grid);
    // Called by the destructor of the form, while its table still stands.
    void unload();

  private:
    StreamWindow(std::function<void()> load, std::function<void()> unload,
                 const std::string& caption, Mirrors& mirrors, const WindowMemory& memory);

    QString columns_key() const;

    std::function<void()> load_view_;
    std::function<void()> unload_view_;
    const std::string& caption_;
    Mirrors& mirrors_;
    const WindowMemory& memory_;
    GridView* grid_ = nullptr;
    bool loaded_ = false;
};

// `UiForm`: the class made of the .ui file.
template <class UiForm>
class StreamForm : public StreamWindow {
  public:
    template <class View>
    StreamForm(View& view, Mirrors& mirrors, const WindowMemory& memory)
        : StreamWindow(view, mirrors, memory), binder(mirrors, *this) {
        ui.setupUi(this);
        binder.bind(view.screen);
    }

    ~StreamForm() override { unload(); }

    // Ties the view's table to its widget and gives the window its place of last time.
    template <class View>
    void show_table(View& view, GridView& grid) {
        binder.add(grid.objectName().toStdString(), static_cast<GridSource&>(view));
        set_up(grid);
    }

    UiForm ui;
    Binder binder;
};

}  // namespace kavorix
