#pragma once

// The stream-1 view `frmStrm1`: single-channel measurements and strain gauge initialisations, and
// what the pods answered.

#include <array>
#include <compare>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls.h"
#include "platform/grid_source.h"
#include "ui/main/pod_commands.h"
#include "ui/streams/pod_rows.h"
#include "ui/streams/select_channels.h"

namespace kavorix {

// A request for one channel (1..32): to measure it ("ME"), or to initialise its strain gauge
// ("IN").
struct SingleRequest {
    int channel = 0;
    bool initialise = false;
    bool operator==(const SingleRequest&) const = default;
};

// The single-channel requests of a command string, in order. Other tokens, and channels that do not
// exist, are left out.
std::vector<SingleRequest> single_requests(std::string_view command_string);

struct Stream1Screen {
    std::string caption = "Stream 1";
    Label lblZAV{"ZAV"};  // the headings of the table
    Label lblChan{"Chan"};
    Label lblData{"Data"};
    Label lblLabel{"Label"};
    Label lblUnits{"Units"};
    Label lblRequest;  // the stored requests
    CheckBox chkInit{"&Initialise strain gauges instead of measuring them", true};
    CheckBox chkRequested{"&Requested channels only"};
    Button cmdSelChan{"Select &Channels...", "Choose the channels to measure, and measure them"};
    Button cmdMeasure{"&Measure", "Send the requests again"};
    Button cmdOK{"OK", "Close this view"};

    template <class Visit>
    void each(Visit&& visit) {
        visit("lblRequest", lblRequest);
        visit("chkInit", chkInit);
        visit("chkRequested", chkRequested);
        visit("cmdSelChan", cmdSelChan);
        visit("cmdMeasure", cmdMeasure);
        visit("cmdOK", cmdOK);
    }
};

// A row per channel of every pod that was selected when the view was opened or last measured.
class Stream1View : public GridSource {
  public:
    // What it works with; all of it outlives this.
    struct Surroundings {
        PodCommands& pods;
        EventLoop& loop;
        MessageLine& message_line;
        FailureReporter& failures;
        const Configuration& configuration;
        RunTime& run_time;
        ChooseChannels choose;
    };
    explicit Stream1View(const Surroundings& surroundings);

    Stream1Screen screen;

    // The window opens (its flag in ViewOpen is set) or closes.
    void load();
    void unload();

    // Channels are chosen, their requests stored and sent.
    void cmdSelChan_Click();
    // The stored requests are sent again. Measurements and initialisations go out one after the
    // other, for a pod's answers do not tell which they belong to; requests that are still to be
    // answered are waited for.
    void cmdMeasure_Click();
    void chkRequested_Click() { rebuild(); }

    // A command string was sent from elsewhere: its single-channel requests, if any, are stored.
    void note_sent(std::string_view command_string);

    // Labels or units of the configuration have changed.
    void configuration_changed() { ++layout_; }

    // At the poll boundary, when answers have come.
    void refresh();

    int row_count() const override { return static_cast<int>(rows_.size()); }
    const std::vector<std::string>& headings() const override { return headings_; }
    GridCell cell(int row, int column) const override;
    std::uint64_t layout() const override { return layout_; }
    const std::vector<int>& take_changed_rows() override { return changed_.take(); }

  private:
    struct Row {
        Pod pod;
        std::int16_t channel = 0;
        auto operator<=>(const Row&) const = default;
    };

    bool any_pod_selected();
    void store(std::vector<SingleRequest> requests);
    std::vector<SingleRequest> requests_for(const ChannelFlags& channels) const;
    bool initialises(int channel) const;
    void measure();
    void send_next();
    void follow_up();
    bool may_send() const;
    bool outstanding() const;
    void forget_outstanding();
    void rebuild();
    void mark_pending_rows();
    GridCell data_cell(const Row& row) const;

    using Answers = std::array<GridCell, MaxChannels>;

    Surroundings with_;
    RunTime& run_time_;
    std::unique_ptr<Timer> tmrFollowUp_;
    std::vector<SingleRequest> stored_;
    std::vector<std::string> queue_;      // command strings still to be sent
    std::uint32_t last_progress_ms_ = 0;  // tick count of the last request or answer
    std::vector<Pod> pods_;
    std::vector<Row> rows_;  // ascending
    std::unique_ptr<PodArray<Answers>> answers_;
    std::vector<std::string> headings_;
    std::uint64_t layout_ = 0;
    ChangedRows changed_;
};

}  // namespace kavorix
