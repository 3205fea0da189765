#include "ui/qt/logs/logging_windows.h"

#include "ui/qt/kit/modal_form.h"
#include "ui/qt/kit/qt_text.h"
#include "ui_frmCSVConv.h"
#include "ui_frmCSVProg.h"
#include "ui_frmLogFile.h"

namespace kavorix {

namespace {

constexpr int ScreenInterval_ms = 40;

}  // namespace

void run_log_setup(Mirrors& mirrors, LogSetup& rules, QWidget* over) {
    ModalForm<Ui::frmLogFile> form(mirrors, rules.screen);
    form.setWindowTitle(to_qt(rules.screen.caption));
    form.binder.on_click("cmdFile", [&] { rules.cmdFile_Click(); });
    form.binder.on_click("cmdClear", [&] { rules.cmdClear_Click(); });
    form.binder.on_click("cmdOK", [&] { rules.cmdOK_Click(); });
    form.binder.on_click("cmdCancel", [&] { rules.cmdCancel_Click(); });
    form.run(
        over, [&] { return rules.closed(); }, [&] { rules.cmdCancel_Click(); });
}

void run_csv_conversion(Mirrors& mirrors, CsvDialog& rules, QWidget* over) {
    ModalForm<Ui::frmCSVConv> form(mirrors, rules.screen);
    Binder& binder = form.binder;
    form.setWindowTitle(to_qt(rules.screen.caption));
    binder.on_click("cmdOpen", [&] { rules.cmdOpen_Click(); });
    binder.on_choose("lstFile", [&](int index) { rules.lstFile_Click(index); });
    binder.on_choose("lstConvert", [&](int index) { rules.lstConvert_Click(index); });
    binder.on_double_click("lstFile", [&] { rules.cmdAdd_Click(); });
    binder.on_double_click("lstConvert", [&] { rules.cmdRemove_Click(); });
    binder.on_click("cmdAdd", [&] { rules.cmdAdd_Click(); });
    binder.on_click("cmdAddAll", [&] { rules.cmdAddAll_Click(); });
    binder.on_click("cmdRemove", [&] { rules.cmdRemove_Click(); });
    binder.on_click("cmdRemoveAll", [&] { rules.cmdRemoveAll_Click(); });
    for (int i = 0; i < ChannelBank; ++i) {
        const std::string index = std::to_string(i);
        binder.on_click("chkChanTop_" + index, [&rules, i] { rules.chkChanTop_Click(i); });
        binder.on_click("chkChanBot_" + index, [&rules, i] { rules.chkChanBot_Click(i); });
    }
    binder.on_click("cmdSelectAll", [&] { rules.cmdSelectAll_Click(); });
    binder.on_click("cmdDeSelectAll", [&] { rules.cmdDeSelectAll_Click(); });
    binder.on_click("cmdConvert", [&] { rules.cmdConvert_Click(); });
    binder.on_click("cmdClose", [&] { rules.cmdClose_Click(); });
    form.run(
        over, [&] { return rules.closed(); }, [&] { rules.cmdClose_Click(); });
}

class CsvProgressWindow::Form : public ModalForm<Ui::frmCSVProg>, private Mirror {
  public:
    Form(Mirrors& mirrors, CsvProgress& rules)
        : ModalForm(mirrors, rules.screen), mirrors_(mirrors), rules_(rules) {
        setWindowTitle(to_qt(rules.screen.caption));
        binder.on_click("cmdCancel", [this] { rules_.cmdCancel_Click(); });
        mirrors_.add(*this);
    }
    ~Form() override { mirrors_.remove(*this); }

  private:
    void refresh() override { ui.picProgress->setValue(rules_.percent()); }

    Mirrors& mirrors_;
    CsvProgress& rules_;
};

CsvProgressWindow::CsvProgressWindow(Mirrors& mirrors, CsvProgress& rules, QWidget* over)
    : form_(std::make_unique<Form>(mirrors, rules)),
      screen_timer_(mirrors.loop().make_timer([&mirrors] { mirrors.refresh(); })) {
    form_->open_over(over, [&rules] { rules.cmdCancel_Click(); });
    screen_timer_->start(ScreenInterval_ms);
}

CsvProgressWindow::~CsvProgressWindow() = default;

}  // namespace kavorix
