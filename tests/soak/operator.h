#pragma once

// Does what an action says, with the station's own operations.

#include <string>

#include "soak/actions.h"
#include "soak/desktop.h"

namespace kavorix::soak {

// The program is killed: nothing of it runs any more.
struct Killed {};

class Operator {
  public:
    explicit Operator(Hands& hands) : hands_(hands) {}

    // Throws ProgramEnded and Killed. What was done stands in `told` afterwards, and then too.
    void perform(const Action& action, std::string& told);

  private:
    void act(ActionKind kind);
    void run(Command command);
    bool available(Command command) { return hands_.desk().main_window.available(command); }

    void wait();
    void click_pods();
    void select_all();
    void transmit();
    void save();
    void open();
    void prepare_file();
    void set_up_card();
    void view_status();
    void close_view();
    void work_in_view();
    void start_log();
    void stop_log();
    void graph();
    void clear_errors();
    void events();
    void options();
    void set_wall_clock();
    void trouble_disk();
    void leave();
    void look_at_views();

    Dice& dice() { return *hands_.dice; }
    RunTime& run_time() { return hands_.station().run_time; }

    Hands& hands_;
    bool disturbed_ = false;  // something else is done meanwhile
};

}  // namespace kavorix::soak
