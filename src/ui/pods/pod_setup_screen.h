#pragma once

// The control record of the pod configuration dialog `frmConfigZAV`.

#include <string>

#include "platform/controls.h"

namespace kavorix {

struct PodSetupScreen {
    std::string caption = "Configure ZAV";

    Label lblZAVNo{"&ZAV Number:"};
    ListBox cboZAVNo;  // codes are pod indices
    Label lblZAVType{"ZA&V Type:"};
    ListBox cboZAVType;  // codes are type numbers
    Label lblScanPeriod{"Scan &Period:"};
    ListBox cboScanPeriod;  // codes are ms
    CheckBox chkSetup{"&Set-up (SE)"};
    CheckBox chkArm{"A&rm (AR)"};
    CheckBox chkCalOn{"Calibration (&KA)"};
    CheckBox chkContScan{"&Continuous Scan (CO)"};
    Button cmdDefault{"&Default", "Start this ZAV anew with the defaults of the type connected"};

    Frame fmeChannels{"Channel"};
    Label lblChannel{"C&hannel:"};
    ListBox cboChannel;  // codes are channel slots
    Label lblChanMode{"&Mode:"};
    ListBox cboChanMode;
    Label lblRange{"Ra&nge:"};
    ListBox cboRange;
    Label lblLabel{"La&bel:"};
    TextField txtLabel;
    Label lblUnit{"&Unit:"};
    TextField txtUnit;
    Button cmdCopyChan{"Cop&y Channel...", "Give this channel's settings to other channels"};
    Button cmdViewChans{"Vie&w Channels...", "List the settings of all channels"};
    Button cmdMx_c{"Unit Conversion M&x+c...", "Scale the readings of this channel"};
    Button cmdPostLin{"Post-Lin E&quations...", "Coefficients of the two equations of this ZAV"};
    Button cmdCoeff{"User Coefficien&ts...", "Coefficients of this user thermocouple"};
    Button cmdAlarm{"Alarm &Limits...", "High and low alarm of this channel"};
    Button cmdGroup{"Alarm &Groups...", "Alarms that drive the outputs of channels 19 and 20"};

    Frame fmeAnalogZAVs{"Analog"};
    Label lblIntegration{"&Integration Time:"};
    ListBox cboIntegration;
    CheckBox chkDegF{"&Fahrenheit"};

    Frame fmeThermoZAVs{"Thermocouple Reference"};
    OptionButton optAmbTemp{"Ambi&ent Temperature"};
    OptionButton optExtTemp{"Extern&al Temperature:"};
    TextField txtExtTemp;
    CheckBox chkOpenTC{"&Open Thermocouple Check"};

    Frame fmeDigitalZAVs{"Digital"};
    Label lblSampleRate{"S&ample Rate:"};
    ListBox cboSampleRate;
    Label lblTimeout{"&Time-out:"};
    ListBox cboTimeout;
    CheckBox chkHWWatch{"Hardwar&e Watchdog"};
    CheckBox chkSWWatch{"S&oftware Watchdog:"};
    TextField txtSWWatchTime;

    Frame fmeStrain{"Strain Gauge"};
    Label lblGaugeFactor{"&Gauge Factor:"};
    TextField txtGaugeFactor;
    Label lblOffset{"&Offset:"};
    TextField txtOffset;
    Label lblInitialVolt{"Initia&l Volt:"};
    TextField txtInitialVolt;
    Button cmdInitialise{"Initi&alise", "Read offset and initial volt from the gauge"};

    Button cmdUndo{"Undo", "Take back the last change (Ctrl+Z)"};
    Button cmdRedo{"Redo", "Make the change again (Ctrl+Y)"};
    Button cmdOK{"OK", "Accept the configuration of all ZAVs"};
    Button cmdCancel{"Cancel", "Close without changing the configuration"};

    // Names the control that the rules give the focus to; empty when they do not.
    std::string focus;

    // The controls of the dialog but those that end it.
    template <class Visit>
    void each_setting(Visit&& visit) {
        visit("lblZAVNo", lblZAVNo);
        visit("cboZAVNo", cboZAVNo);
        visit("lblZAVType", lblZAVType);
        visit("cboZAVType", cboZAVType);
        visit("lblScanPeriod", lblScanPeriod);
        visit("cboScanPeriod", cboScanPeriod);
        visit("chkSetup", chkSetup);
        visit("chkArm", chkArm);
        visit("chkCalOn", chkCalOn);
        visit("chkContScan", chkContScan);
        visit("cmdDefault", cmdDefault);
        visit("fmeChannels", fmeChannels);
        visit("lblChannel", lblChannel);
        visit("cboChannel", cboChannel);
        visit("lblChanMode", lblChanMode);
        visit("cboChanMode", cboChanMode);
        visit("lblRange", lblRange);
        visit("cboRange", cboRange);
        visit("lblLabel", lblLabel);
        visit("txtLabel", txtLabel);
        visit("lblUnit", lblUnit);
        visit("txtUnit", txtUnit);
        visit("cmdCopyChan", cmdCopyChan);
        visit("cmdViewChans", cmdViewChans);
        visit("cmdMx_c", cmdMx_c);
        visit("cmdPostLin", cmdPostLin);
        visit("cmdCoeff", cmdCoeff);
        visit("cmdAlarm", cmdAlarm);
        visit("cmdGroup", cmdGroup);
        visit("fmeAnalogZAVs", fmeAnalogZAVs);
        visit("lblIntegration", lblIntegration);
        visit("cboIntegration", cboIntegration);
        visit("chkDegF", chkDegF);
        visit("fmeThermoZAVs", fmeThermoZAVs);
        visit("optAmbTemp", optAmbTemp);
        visit("optExtTemp", optExtTemp);
        visit("txtExtTemp", txtExtTemp);
        visit("chkOpenTC", chkOpenTC);
        visit("fmeDigitalZAVs", fmeDigitalZAVs);
        visit("lblSampleRate", lblSampleRate);
        visit("cboSampleRate", cboSampleRate);
        visit("lblTimeout", lblTimeout);
        visit("cboTimeout", cboTimeout);
        visit("chkHWWatch", chkHWWatch);
        visit("chkSWWatch", chkSWWatch);
        visit("txtSWWatchTime", txtSWWatchTime);
        visit("fmeStrain", fmeStrain);
        visit("lblGaugeFactor", lblGaugeFactor);
        visit("txtGaugeFactor", txtGaugeFactor);
        visit("lblOffset", lblOffset);
        visit("txtOffset", txtOffset);
        visit("lblInitialVolt", lblInitialVolt);
        visit("txtInitialVolt", txtInitialVolt);
        visit("cmdInitialise", cmdInitialise);
    }

    template <class Visit>
    void each(Visit&& visit) {
        each_setting(visit);
        visit("cmdUndo", cmdUndo);
        visit("cmdRedo", cmdRedo);
        visit("cmdOK", cmdOK);
        visit("cmdCancel", cmdCancel);
    }
};

}  // namespace kavorix
