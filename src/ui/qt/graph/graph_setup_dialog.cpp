#include "ui/qt/graph/graph_setup_dialog.h"

#include <QDialog>

#include "ui/qt/kit/binder.h"
#include "ui/qt/kit/window_placing.h"
#include "ui_frmQCSetup.h"

namespace kavorix {

namespace {

void set_up_spinners(Ui::frmQCSetup& ui, GraphSetup& setup, Mirrors& mirrors) {
    const auto stepping = [&](void (GraphSetup::*spin)(int)) {
        return [&setup, &mirrors, spin](int steps) {
            mirrors.loop().dispatch([&] {
                (setup.*spin)(steps);
                mirrors.refresh();
            });
        };
    };
    ui.spinHours->set_up("txtHours", stepping(&GraphSetup::spinHours));
    ui.spinMinutes->set_up("txtMinutes", stepping(&GraphSetup::spinMinutes));
}

void bind(Binder& binder, GraphSetup& setup, QDialog& dialog) {
    binder.bind(setup.screen);
    binder.on_choose("cboZAV", [&](int index) { setup.cboZAV_Click(index); });
    for (int channel = 0; channel < MaxChannels; ++channel)
        binder.on_click("chkChan_" + std::to_string(channel),
                        [&setup, channel] { setup.chkChan_Click(channel); });
    binder.on_click("optTrend", [&] { setup.optTrend_Click(); });
    binder.on_click("optBar", [&] { setup.optBar_Click(); });
    const auto checked = [&](const char* name, bool (GraphSetup::*check)(std::string_view)) {
        binder.on_leave(name,
                        [&setup, check](std::string_view next) { return (setup.*check)(next); });
    };
    checked("spinHours", &GraphSetup::txtHours_LostFocus);
    checked("spinMinutes", &GraphSetup::txtMinutes_LostFocus);
    checked("txtPosVal", &GraphSetup::txtPosVal_LostFocus);
    checked("txtNegVal", &GraphSetup::txtNegVal_LostFocus);
    binder.on_click("cmdPrinterSetup", [&] { setup.cmdPrinterSetup_Click(); });
    binder.on_click("cmdOK", [&] {
        if (setup.cmdOK_Click()) dialog.accept();
    });
    binder.on_click("cmdCancel", [&] { dialog.reject(); });
}

}  // namespace

void show_graph_setup_dialog(GraphSetup& setup, Mirrors& mirrors, QWidget* over) {
    QDialog dialog;
    Ui::frmQCSetup ui;
    ui.setupUi(&dialog);
    set_up_spinners(ui, setup, mirrors);
    Binder binder(mirrors, dialog);
    bind(binder, setup, dialog);
    run_modal(mirrors.loop(), dialog, over);
}

}  // namespace kavorix
