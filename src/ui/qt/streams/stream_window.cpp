#include "ui/qt/streams/stream_window.h"

#include <utility>

#include "ui/qt/kit/qt_text.h"

namespace kavorix {

StreamWindow::StreamWindow(std::function<void()> load, std::function<void()> unload,
                           const std::string& caption, Mirrors& mirrors, const WindowMemory& memory)
    : QDialog(nullptr, Qt::Window),
      load_view_(std::move(load)),
      unload_view_(std::move(unload)),
      caption_(caption),
      mirrors_(mirrors),
      memory_(memory) {
    connect(this, &QDialog::finished, this, [this] { StreamWindow::unload(); });
}

QString StreamWindow::columns_key() const {
    return objectName() + "/columns";
}

void StreamWindow::set_up(GridView& grid) {
    grid_ = &grid;
    memory_.restore(*this);
    grid.restore_column_widths(memory_.value(columns_key()));
}

void StreamWindow::open_view() {
    load_view_();
    loaded_ = true;
    setWindowTitle(to_qt(caption_));
    mirrors_.refresh();
    show();
    raise();
    activateWindow();
}

void StreamWindow::unload() {
    if (!std::exchange(loaded_, false)) return;
    memory_.save(*this);
    memory_.set_value(columns_key(), grid_->column_widths());
    mirrors_.loop().dispatch(unload_view_);
}

}  // namespace kavorix
