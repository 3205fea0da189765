// No two controls of a window answer to the same accelerator.

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <map>

#include "graphs/graph_controls.h"
#include "graphs/graph_setup.h"
#include "logging/csv_dialog.h"
#include "logging/log_setup.h"
#include "support/ui_rig.h"
#include "ui/card/interface_settings.h"
#include "ui/card/status_view.h"
#include "ui/card/tx_command.h"
#include "ui/qt/graph/graph_spin_field.h"
#include "ui/qt/kit/modal_form.h"
#include "ui/qt/main/main_window.h"
#include "ui/streams/select_channels.h"
#include "ui/streams/stream0_view.h"
#include "ui/streams/stream1_view.h"
#include "ui/streams/stream2_view.h"
#include "ui/streams/stream3_view.h"
#include "ui_frmAbout.h"
#include "ui_frmCSVConv.h"
#include "ui_frmCSVProg.h"
#include "ui_frmConfigAdap.h"
#include "ui_frmGraph.h"
#include "ui_frmLogFile.h"
#include "ui_frmQCSetup.h"
#include "ui_frmSelChan.h"
#include "ui_frmStrm0.h"
#include "ui_frmStrm1.h"
#include "ui_frmStrm2.h"
#include "ui_frmStrm3.h"
#include "ui_frmTxCmd.h"
#include "ui_frmViewStat.h"

namespace kavorix::test {
namespace {

using Names = std::vector<std::string>;

// Accelerators that are given twice: "Alt+H: cmdHalt mnuHelp".
class Clashes {
  public:
    void add(const QObject& control, const QString& text) {
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (!key.isEmpty())
            controls_[key.toString().toStdString()].push_back(control.objectName().toStdString());
    }
    Names found() const {
        Names clashes;
        for (const auto& [key, names] : controls_) {
            if (names.size() < 2) continue;
            clashes.push_back(key + ":");
            for (const std::string& name : names) clashes.back() += ' ' + name;
        }
        return clashes;
    }

  private:
    std::map<std::string, Names> controls_;
};

// Whatever the record shows counts, also while it is not enabled: its time will come.
Names clashes_of(const QWidget& window) {
    Clashes clashes;
    const auto shown = [&](const QWidget& widget) { return widget.isVisibleTo(&window); };
    for (const auto* button : window.findChildren<QAbstractButton*>())
        if (shown(*button)) clashes.add(*button, button->text());
    for (const auto* label : window.findChildren<QLabel*>())
        if (label->buddy() && shown(*label)) clashes.add(*label, label->text());
    for (const auto* box : window.findChildren<QGroupBox*>())
        if (shown(*box)) clashes.add(*box, box->title());
    for (const auto* bar : window.findChildren<QMenuBar*>())
        for (const QAction* menu : bar->actions()) clashes.add(*menu->menu(), menu->text());
    return clashes.found();
}

struct NoRecord {
    template <class Visit>
    void each(Visit&&) {}
};

template <class UiForm, class Record>
Names clashes_in(Mirrors& mirrors) {
    Record record;
    QDialog dialog;
    UiForm ui;
    ui.setupUi(&dialog);
    if constexpr (std::is_same_v<UiForm, Ui::frmQCSetup>) {
        ui.spinHours->set_up("txtHours", {});
        ui.spinMinutes->set_up("txtMinutes", {});
    }
    Binder binder(mirrors, dialog);
    binder.bind(record);
    return clashes_of(dialog);
}

struct Form {
    const char* name;
    Names (*clashes)(Mirrors&);
};

constexpr Form Forms[] = {
    {"frmAbout", clashes_in<Ui::frmAbout, NoRecord>},
    {"frmCSVConv", clashes_in<Ui::frmCSVConv, CsvDialogScreen>},
    {"frmCSVProg", clashes_in<Ui::frmCSVProg, CsvProgressScreen>},
    {"frmConfigAdap", clashes_in<Ui::frmConfigAdap, InterfaceSettingsScreen>},
    {"frmGraph", clashes_in<Ui::frmGraph, GraphScreen>},
    {"frmLogFile", clashes_in<Ui::frmLogFile, LogSetupScreen>},
    {"frmQCSetup", clashes_in<Ui::frmQCSetup, GraphSetupScreen>},
    {"frmSelChan", clashes_in<Ui::frmSelChan, SelectChannelsScreen>},
    {"frmStrm0", clashes_in<Ui::frmStrm0, Stream0Screen>},
    {"frmStrm1", clashes_in<Ui::frmStrm1, Stream1Screen>},
    {"frmStrm2", clashes_in<Ui::frmStrm2, Stream2Screen>},
    {"frmStrm3", clashes_in<Ui::frmStrm3, Stream3Screen>},
    {"frmTxCmd", clashes_in<Ui::frmTxCmd, TxCommandScreen>},
    {"frmViewStat", clashes_in<Ui::frmViewStat, StatusScreen>},
};

// Forms whose controls come and go with the pod and channel that they show, and the main window.
const QStringList TestedElsewhere = {"frmMain",      "frmAlarm",    "frmCoeff",
                                     "frmConfigZAV", "frmGroup",    "frmMx_c",
                                     "frmPost",      "frmCopyChan", "frmViewChan"};

TEST(Mnemonics, EveryFormIsLookedAt) {
    QStringList known = TestedElsewhere;
    for (const Form& form : Forms) known << form.name;
    known.sort();
    QStringList forms;
    QDirIterator all(KAVORIX_SOURCE_DIR "/src/ui/qt", {"*.ui"}, QDir::Files,
                     QDirIterator::Subdirectories);
    while (all.hasNext()) forms << QFileInfo(all.next()).baseName();
    forms.sort();
    EXPECT_EQ(known, forms);
}

TEST(Mnemonics, AreGivenOnceInEveryForm) {
    QtEventLoop loop;
    Mirrors mirrors(loop);
    for (const Form& form : Forms) EXPECT_EQ(form.clashes(mirrors), Names{}) << form.name;
}

TEST(Mnemonics, OfTheMainWindowClashAsSpecifiedAndNowhereElse) {
    QtEventLoop loop;
    Mirrors mirrors(loop);
    QTemporaryDir directory;
    UiRig rig;
    const QtMainWindow window(rig.main_window, {}, mirrors, directory.filePath("windows.ini"));
    // The captions are given; the button is served first.
    EXPECT_EQ(clashes_of(window), Names{"Alt+H: cmdHalt mnuHelp"});
    for (const auto* menu : window.findChildren<QMenu*>()) {
        Clashes clashes;
        for (const QAction* action : menu->actions()) clashes.add(*action, action->text());
        EXPECT_EQ(clashes.found(), Names{}) << menu->objectName().toStdString();
    }
}

}  // namespace
}  // namespace kavorix::test
