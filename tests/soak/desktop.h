#pragma once

// The desktop and the windows of the random operator: boxes are answered, files chosen and dialogs
// filled in by chance, sensibly most of the time.

#include <string>
#include <vector>

#include "soak/dice.h"
#include "soak/witness.h"
#include "support/faulty_files.h"
#include "ui/pods/pod_setup.h"

namespace kavorix::soak {

// What the parts of the operator have in common.
struct Hands {
    Invariants& rules;
    WitnessDriver& witness;
    test::FaultyFiles& disk;
    Dice* dice = nullptr;         // of the action under way
    std::string* told = nullptr;  // where it is told
    int modal = 0;                // open boxes and modal windows: nothing else can be clicked
    bool may_pass_time = true;    // boxes may stay open for a while
    bool leaving = false;         // the operator wants to leave
    std::string pointer_stuck;    // why the pointer should be busy; empty: it should not
    Pointer pointer = Pointer::Default;
    std::string wait_message;
    int boxes = 0;          // shown so far
    std::string open_next;  // the file that is chosen next; empty: any

    Station& station() { return *rules.world.station; }
    Desk& desk() { return *rules.world.desk; }
    void tell(const std::string& what) { *told += " " + what; }
};

class Desktop : public Dialogs {
  public:
    explicit Desktop(Hands& hands) : hands_(hands) {}

    Answer message_box(std::string_view text, int flags, std::string_view title) override;
    Answer Msg_Box(std::string_view text, int flags, std::string_view title) override;
    void Unload_Msg_Box() override {}
    std::optional<std::string> choose_file_to_open(const FileRequest& request) override;
    std::optional<std::string> choose_file_to_save(const FileRequest& request) override;
    void show_wait_message(std::string_view text) override { hands_.wait_message = text; }
    void set_pointer(Pointer pointer) override { hands_.pointer = pointer; }
    void beep() override {}
    void repaint() override {}
    bool open_in_editor(const std::string&) override { return hands_.dice->chance(80); }

  private:
    Answer answer(std::string_view text, int flags);
    std::vector<std::string> files_like(const std::string& extension) const;

    Hands& hands_;
};

class OperatorWindows : public Windows, public PodSetupWindows {
  public:
    explicit OperatorWindows(Hands& hands) : hands_(hands) {}

    void show_about(const AboutBox&) override {}
    void show_guide(std::string_view) override {}
    void show_graph() override {}
    void close_graph() override {}
    void show_csv_progress(CsvProgress&, bool) override {}
    void show_stream0(Stream0View& view) override { view.load(); }
    void show_stream1(Stream1View& view) override { view.load(); }
    void show_stream2(Stream2View& view) override { view.load(); }
    void show_stream3(Stream3View& view) override { view.load(); }
    void show_interface_settings(InterfaceSettingsDialog& dialog) override;
    void show_status(StatusView& view) override;
    void show_tx_command(TxCommandDialog& dialog) override;
    void show_select_channels(SelectChannelsDialog& dialog) override;
    void show_log_setup(LogSetup& rules) override;
    void show_csv_conversion(CsvDialog& rules) override;
    void show_graph_setup(GraphSetup& rules) override;

    void show_pod_setup(PodSetup& dialog) override;
    void show_copy_channel(CopyChannel& dialog) override;
    void show_channel_view(ChannelView&) override {}
    void show_unit_conversion(UnitConversion& dialog) override;
    void show_post_linearisation(PostLinearisation& dialog) override;
    void show_user_thermocouple(UserThermocouple& dialog) override;
    void show_alarm_limits(AlarmLimits& dialog) override;
    void show_alarm_groups(AlarmGroups& dialog) override;

  private:
    // A modal window is open as long as one lives.
    class Modal {
      public:
        explicit Modal(Hands& hands) : hands_(hands) { ++hands_.modal; }
        ~Modal() { --hands_.modal; }
        Modal(const Modal&) = delete;
        Modal& operator=(const Modal&) = delete;

      private:
        Hands& hands_;
    };

    Dice& dice() { return *hands_.dice; }
    std::string number();
    void choose(ListBox& list, const std::function<void()>& handler);
    void type(TextField& field, const std::string& text, const std::function<bool()>& leave);
    void change_pod(PodSetup& dialog);

    Hands& hands_;
};

}  // namespace kavorix::soak
