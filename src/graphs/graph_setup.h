#pragma once

// The graph set-up dialog `frmQCSetup`: type, channels, span, range and texts of the graph.

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "base/trap.h"
#include "model/runtime.h"
#include "platform/controls.h"
#include "platform/dialogs.h"

namespace kavorix {

struct GraphSetupScreen {
    std::string caption = "Graph Setup";

    OptionButton optTrend{"&Trend"};
    OptionButton optBar{"&Bar Graph"};
    CheckBox chkGridLines{"&Grid Lines"};

    Label lblZAV{"&ZAV:"};
    ListBox cboZAV;  // the pods selected in the main window; codes are pod indices
    Frame frmChan;   // its caption is the number of channels chosen
    std::array<CheckBox, MaxChannels> chkChan;

    Label lblTimeSpan{"Time Span:"};
    Label lblHours{"&Hours"};
    TextField txtHours;
    Label lblMinutes{"&Minutes"};
    TextField txtMinutes;

    Label lblTitle{"T&itle:"};
    TextField txtTitle;
    Label lblXTitle{"&X Axis:"};
    TextField txtXTitle;
    Label lblYTitle{"&Y Axis:"};
    TextField txtYTitle;

    Label lblPosVal{"&+ Val:"};
    TextField txtPosVal;
    Label lblNegVal{"&- Val:"};
    TextField txtNegVal;

    Button cmdPrinterSetup{"&Printer Setup...", "Printer and paper of the graphs"};
    Button cmdOK{"&OK", "Use these settings"};
    Button cmdCancel{"&Cancel", "Close without changing anything"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("optTrend", optTrend);
        visit("optBar", optBar);
        visit("chkGridLines", chkGridLines);
        visit("lblZAV", lblZAV);
        visit("cboZAV", cboZAV);
        visit("frmChan", frmChan);
        visit("chkChan", chkChan);
        visit("lblTimeSpan", lblTimeSpan);
        visit("lblHours", lblHours);
        visit("txtHours", txtHours);
        visit("lblMinutes", lblMinutes);
        visit("txtMinutes", txtMinutes);
        visit("lblTitle", lblTitle);
        visit("txtTitle", txtTitle);
        visit("lblXTitle", lblXTitle);
        visit("txtXTitle", txtXTitle);
        visit("lblYTitle", lblYTitle);
        visit("txtYTitle", txtYTitle);
        visit("lblPosVal", lblPosVal);
        visit("txtPosVal", txtPosVal);
        visit("lblNegVal", lblNegVal);
        visit("txtNegVal", txtNegVal);
        visit("cmdPrinterSetup", cmdPrinterSetup);
        visit("cmdOK", cmdOK);
        visit("cmdCancel", cmdCancel);
    }
};

// The value after `steps` up (negative: down) in lowest..highest, going round at the ends.
int wrapped_step(int value, int steps, int lowest, int highest);

class GraphSetup {
  public:
    // All of it outlives the dialog. `printer_setup` opens that of the drawing layer.
    struct Surroundings {
        GraphState& graph;
        const PodStatuses& status;
        const LinkState& link;
        const PodConfigs& pods;
        Dialogs& dialogs;
        FailureReporter& failures;
        std::function<void()> printer_setup;
    };
    explicit GraphSetup(const Surroundings& surroundings);

    GraphSetupScreen screen;

    // The dialog opens.
    void Form_Load();

    // A pod of the list was chosen: the index of the list entry.
    void cboZAV_Click(int list_index);
    // A channel's box was ticked or cleared: channel index 0..31.
    void chkChan_Click(int channel);
    void optTrend_Click();
    void optBar_Click();

    // The spinners beside the fields: steps up, negative ones down.
    void spinHours(int steps);
    void spinMinutes(int steps);

    // The focus leaves a field; false: it stays there. `next` names the control that it goes to.
    bool txtHours_LostFocus(std::string_view next);
    bool txtMinutes_LostFocus(std::string_view next);
    bool txtPosVal_LostFocus(std::string_view next);
    bool txtNegVal_LostFocus(std::string_view next);

    void cmdPrinterSetup_Click();

    // True when the settings were accepted and the dialog closes.
    bool cmdOK_Click();

  private:
    void show_settings();
    void show_type();
    void show_pods();
    void show_channels();
    void show_count();
    int count() const;
    int viewed_pod() const;
    void choose_type(std::int16_t type);
    bool check_whole(const TextField& field, int highest, std::string_view text,
                     std::string_view next);
    bool check_number(const TextField& field, std::string_view text, std::string_view next);
    bool refuse(std::string_view text);
    bool refuse_field(std::string_view text);
    bool accepted();
    void store();

    Surroundings with_;
    ChosenChannels chosen_{};
};

}  // namespace kavorix
