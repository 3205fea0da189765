#include "app/station.h"

namespace kavorix {

Station::Station(const Surroundings& surroundings)
    : with(surroundings),
      message_line(run_time.Reports.Message, with.dialogs),
      error_log(with.files, with.loop, with.folder.directory, with.folder.keep_error_log),
      failures(error_log, with.dialogs),
      link_errors(message_line, error_log, configuration.Interface, run_time),
      tmrPoll_(with.loop.make_timer([this] { poll_cycle.tmrPoll_Timer(); })),
      polling(*tmrPoll_, run_time.Poll, run_time.Link),
      sent(configuration.ZavConfig),
      link({with.driver, with.loop, with.dialogs, message_line, link_errors, failures, polling,
            configuration, run_time}),
      discovery({with.driver, with.loop, with.dialogs, error_log, link_errors, failures, polling,
                 configuration, run_time}),
      transmission(
          {configuration, run_time.Status, run_time.Link, link, with.dialogs, failures, sent}),
      pods({link, transmission, sent, with.driver, with.dialogs, message_line, configuration,
            run_time}),
      log_file({with.files, with.loop, failures, configuration, run_time}),
      pod_errors_(error_log, configuration.Interface, run_time),
      decoder_({with.driver, with.dialogs, pod_errors_, configuration, run_time}),
      poll_cycle({with.driver, with.loop, *tmrPoll_, link_errors, failures, decoder_, configuration,
                  run_time}) {
    for (PodConfig& pod : configuration.ZavConfig) default_ZAV_config(pod, NoDevice, 0);
    log_file.on_notice(
        [this](const std::string& text) { message_line.DispMsg(" " + text, Severity::Error); });
    poll_cycle.boundary.always([this](const Moment& now) { log_file.log_scans(now); });
    poll_cycle.events.always([this](const Moment& now) {
        if (log_file.log_events(now)) poll_cycle.take_events();
    });
}

void Station::start() {
    discovery.Form_Load(with.files, join_path(with.folder.directory, "KAVORIX.INI"));
    note_fresh_pods();
}

void Station::note_fresh_pods() {
    for (const Pod pod : all_pods()) sent.note(pod);
    pods.look_for_changes();
}

void Station::finish() {
    polling.stop();
    error_log.close();
    if (run_time.Link.SessionErrorCount == 0) error_log.remove();
    with.driver.Zav_Disconnect(configuration.Interface.CardHandle);
}

void Station::select_pods(const PodSet& chosen) {
    run_time.Link.ZavSelected = chosen & run_time.Link.PollTable.InPollTable;
}

}  // namespace kavorix
