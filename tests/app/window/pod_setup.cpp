// The pod configuration dialog in the whole program: main window, pod, dialogs, transmission, and
// what the simulated pod then holds.

#include <gtest/gtest.h>

#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <fstream>

#include "app/verify.h"
#include "app/window_station.h"
#include "config/statements.h"
#include "ui/qt/main/pod_display.h"
#include "ui/qt/operator.h"

namespace kavorix::test {
namespace {

constexpr int PodIndex = 2;  // ZAV 3

class PodSetupStationTest : public testing::Test {
  protected:
    PodSetupStationTest() {
        const std::string network = directory.filePath("one.toml").toStdString();
        std::ofstream(network) << "[card]\n[[pod]]\nnumber = 3\nident = \"7VJA 0F 1.00\"\n";
        options.network = network;
        options.directory = directory.path().toStdString();
        program = std::make_unique<WindowStation>(options);
        answer_boxes();
        program->show();
        program->loop.wait_until([&] { return program->window.isVisible() && started(); });
        QApplication::setActiveWindow(&program->window);
    }

    bool started() const {
        return program->station.run_time.Link.PollTable.InPollTable.has(Pod::at_index(PodIndex));
    }

    // Presses Ok in every box that comes up; their texts are kept.
    void answer_boxes() {
        clerk = program->loop.make_timer([this] {
            for (QWidget* const window : QApplication::topLevelWidgets()) {
                auto* const box = qobject_cast<QMessageBox*>(window);
                if (!box || !box->isVisible()) continue;
                texts << box->text();
                box->button(QMessageBox::Ok)->click();
            }
        });
        clerk->start(5);
    }

    void select_pod() {
        auto& pods = *program->window.findChild<PodDisplay*>("podDisplay");
        QTest::mouseClick(&pods, Qt::LeftButton, {},
                          pods.geometry_now().tile(PodIndex).center().toPoint());
    }

    QTemporaryDir directory;
    CommonOptions options;
    std::unique_ptr<WindowStation> program;
    std::unique_ptr<Timer> clerk;
    QStringList texts;
};

// What the operator enters below.
PodConfig wanted() {
    PodConfig pod;
    default_ZAV_config(pod, Type7V, 0);
    pod.Arm = 1;
    pod.ScanPeriod = 1000;
    pod.Channel[0] = {10, 3, "Flow", "l/s", 2.0F, 0.5F, 0, {}, {}};
    pod.Channel[0].HighAlarm = {1, 80.0F, 2.5F};
    pod.Channel[2] = {20, 2, "Level", "Ohm", 1.0F, 0.0F, 0, {}, {}};
    pod.SixPole[2] = 1;
    pod.Channel[18] = {90, 1, "Fan", "Hz", 1.0F, 0.0F, 0, {}, {}};
    pod.SampleRate[18] = 3;
    pod.AlarmGroup[1].OutputState = 1;
    pod.AlarmGroup[1].High[0] = 1;
    return pod;
}

void enter_channel(Form& form, const char* number, const char* mode, const char* range,
                   const char* label, const char* unit) {
    form.choose("cboChannel", number);
    form.choose("cboChanMode", mode);
    form.choose("cboRange", range);
    form.type("txtLabel", label);
    form.type("txtUnit", unit);
}

void enter_first_channel(Form& form) {
    enter_channel(form, "1", "Volts DC", "2V", "Flow", "l/s");
    form.with("cmdMx_c", "frmMx_c", [](Form& conversion) {
        conversion.type("txtMValue", "2");
        conversion.type("txtCValue", "0.5");
        conversion.click("cmdOK");
    });
    form.with("cmdAlarm", "frmAlarm", [](Form& alarm) {
        alarm.click("chkEnableAlarm_0");
        alarm.type("txtAlarmLimit_0", "80");
        alarm.type("txtHisteresisLimit_0", "2.5");
        alarm.click("cmdOK");
    });
    form.with("cmdGroup", "frmGroup", [](Form& group) {
        group.click("optchan20");
        group.click("optAss");
        group.click("chkHi_0");
        group.click("cmdOK");
    });
}

TEST_F(PodSetupStationTest, ThePodHoldsWhatWasEnteredAndTransmitted) {
    select_pod();
    Form main(program->loop, program->window);
    main.with("cmdConfig", "frmConfigZAV", [](Form& form) {
        form.choose("cboScanPeriod", "1000ms");
        enter_first_channel(form);
        enter_channel(form, "3", "Resistance 4 Term", "250 Ohm", "Level", "Ohm");
        enter_channel(form, "19", "Frequency", "100ms", "Fan", "Hz");
        form.choose("cboSampleRate", "10KHz (RA3)");
        form.click("cmdOK");
    });
    const Configuration& configuration = program->station.configuration;
    EXPECT_EQ(configuration_statements(configuration.ZavConfig[PodIndex]),
              configuration_statements(wanted()));
    EXPECT_TRUE(configuration.ZavConfig[PodIndex] == wanted()) << "what is not sent differs";
    EXPECT_EQ(configuration.ConfigChanged, 1);

    main.click("cmdTransmit");
    const auto& network = dynamic_cast<const sim::Network&>(*program->driver);
    EXPECT_EQ(verify_pods(configuration.ZavConfig, network, PodSet{Pod::at_index(PodIndex)}),
              std::vector<std::string>());
    const sim::HeldSettings& held = *network.held(PodIndex + 1);
    EXPECT_EQ(held.channels[0].high_alarm, (sim::HeldAlarm{true, 80.0F, 2.5F}));
    EXPECT_EQ(held.channels[2].mode, 20);
    EXPECT_EQ(held.channels[18].sample_rate, 3);
    EXPECT_TRUE(held.groups[1].high[0]);
}

}  // namespace
}  // namespace kavorix::test
