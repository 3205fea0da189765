#include "ui/qt/streams/stream_windows.h"

#include <QScrollBar>

#include "ui_frmStrm0.h"
#include "ui_frmStrm1.h"
#include "ui_frmStrm2.h"
#include "ui_frmStrm3.h"

namespace kavorix {

namespace {

// Least widths of columns in pixels.
constexpr int NumberColumn = 72;   // of a pod or a channel
constexpr int AnswerColumn = 260;  // an error in words
constexpr int DateColumn = 96;
constexpr int TimeColumn = 132;

// New rows at the end come into sight while the end is in sight; who looks at older ones is not
// disturbed.
void follow_new_rows(QTableView& table) {
    auto* const at_end = new bool(true);
    QObject::connect(&table, &QObject::destroyed, [at_end] { delete at_end; });
    QObject::connect(table.model(), &QAbstractItemModel::rowsAboutToBeInserted, &table,
                     [&table, at_end] {
                         const QScrollBar& bar = *table.verticalScrollBar();
                         *at_end = bar.value() == bar.maximum();
                     });
    QObject::connect(table.model(), &QAbstractItemModel::rowsInserted, &table, [&table, at_end] {
        if (*at_end) table.scrollToBottom();
    });
    QObject::connect(table.model(), &QAbstractItemModel::modelReset, &table,
                     &QTableView::scrollToBottom);
}

}  // namespace

std::unique_ptr<StreamWindow> make_stream_window(Stream0View& view, Mirrors& mirrors,
                                                 const WindowMemory& memory) {
    auto form = std::make_unique<StreamForm<Ui::frmStrm0>>(view, mirrors, memory);
    form->show_table(view, *form->ui.grdStrm0);
    Binder& binder = form->binder;
    binder.on_choose("cboView", [&view](int index) { view.cboView_Click(index); });
    binder.on_click("cmdToggle", [&view] { view.cmdToggle_Click(); });
    binder.on_click("cmdMin", [&view] { view.cmdMin_Click(); });
    binder.on_click("cmdMax", [&view] { view.cmdMax_Click(); });
    binder.on_click("cmdSelChan", [&view] { view.cmdSelChan_Click(); });
    binder.on_click("cmdExit", [window = form.get()] { window->close(); });
    return form;
}

std::unique_ptr<StreamWindow> make_stream_window(Stream1View& view, Mirrors& mirrors,
                                                 const WindowMemory& memory) {
    auto form = std::make_unique<StreamForm<Ui::frmStrm1>>(view, mirrors, memory);
    form->ui.grdMeasure->set_least_widths({NumberColumn, NumberColumn, AnswerColumn});
    form->show_table(view, *form->ui.grdMeasure);
    Binder& binder = form->binder;
    binder.on_click("chkRequested", [&view] { view.chkRequested_Click(); });
    binder.on_click("cmdSelChan", [&view] { view.cmdSelChan_Click(); });
    binder.on_click("cmdMeasure", [&view] { view.cmdMeasure_Click(); });
    binder.on_click("cmdOK", [window = form.get()] { window->close(); });
    return form;
}

std::unique_ptr<StreamWindow> make_stream_window(Stream2View& view, Mirrors& mirrors,
                                                 const WindowMemory& memory) {
    auto form = std::make_unique<StreamForm<Ui::frmStrm2>>(view, mirrors, memory);
    form->ui.grdStrm2->set_least_widths({DateColumn, TimeColumn, NumberColumn});
    form->show_table(view, *form->ui.grdStrm2);
    follow_new_rows(*form->ui.grdStrm2);
    form->binder.on_choose("cboView", [&view](int index) { view.cboView_Click(index); });
    form->binder.on_click("cmdOK", [window = form.get()] { window->close(); });
    return form;
}

std::unique_ptr<StreamWindow> make_stream_window(Stream3View& view, Mirrors& mirrors,
                                                 const WindowMemory& memory) {
    auto form = std::make_unique<StreamForm<Ui::frmStrm3>>(view, mirrors, memory);
    form->show_table(view, *form->ui.grdStrm3);
    form->binder.on_click("cmdOK", [window = form.get()] { window->close(); });
    return form;
}

}  // namespace kavorix
