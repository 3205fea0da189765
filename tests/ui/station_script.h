#pragma once

// Scenes at the main window of a station in virtual time: what the operator and the pods do, told
// in one line, and what comes of it, told in another.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/ui_rig.h"

namespace kavorix::test {

// A script is a row of steps set apart by "; ":
//     click 3 8            on the icons of pods, or "click card"
//     press Halt           a button by its caption; "choose Trigger" a menu item
//     menu of 8            the menu of a pod opens
//     answer ok cancel     to the next questions
//     pod 3 ...            from now on it: fails (every command), is silent, heals, scans (is
//                          configured for continuous scan), is long (32 channels to transmit), is
//                          another type (than configured), is edited, is relabelled
//     after 500 ms ...     the rest of the step, that much later
//     polling              the poll timer runs
//     wait 2000 ms
//     now                  what was told so far is left out
//     tell ...             selected, polled, triggered, scanning, icons, buttons, message, panel,
//                          marked, title
// Told are, as they come: what is sent ("3 TR", with the time where it is not 0), boxes in quotes,
// dialogs that open ("pod setup"), the end of the program, and what "tell" asks for.
class StationScript : public UiRig {
  public:
    // Pods 1 (7R), 5 (8S) and 50 (7V).
    StationScript() {
        main_window.on(Command::ZavSetup, [this] { add("pod setup"); });
        main_window.on(Command::InterfaceCard, [this] { add("interface settings"); });
        main_window.on(Command::ViewStream0, [this] { add("stream 0"); });
        dialogs.at_box([this](const ShownBox& box) { add("\"" + box.text + "\""); });
        station({{1, "7RJA 0F 1.00"}, {5, "8SFN 0F 1.00"}, {50, "7VJA 0F 1.00"}});
        for (const int pod : {1, 5, 50}) {
            config(pod).NumChannels = 1;
            sent.note(Pod::numbered(pod));
        }
        play("now");
    }

    std::string play(const std::string& steps) {
        std::istringstream text(steps);
        for (std::string step; std::getline(text >> std::ws, step, ';');) perform(step);
        take_sent();
        return told_;
    }

  private:
    using Words = std::istringstream;

    void add(const std::string& text) {
        take_sent();
        told_ += (told_.empty() ? "" : "; ") + text;
    }
    void take_sent() {
        const Lines lines = driver.timed("Tx");
        driver.calls.clear();
        for (const std::string& line : lines) {
            const auto tx = line.find(" Tx ");
            const std::string time = line.substr(0, tx) == "0" ? "" : line.substr(0, tx) + " ms: ";
            told_ += (told_.empty() ? "" : "; ") + time + line.substr(tx + 4);
        }
    }

    void perform(const std::string& step) {
        Words words(step);
        std::string verb;
        words >> verb;
        if (verb == "click") return click_on(words);
        if (verb == "press") return press(rest(words));
        if (verb == "choose") return choose(rest(words));
        if (verb == "menu") return main_window.select_for_menu(pod(words));
        if (verb == "answer") return answer(words);
        if (verb == "pod") {
            const Pod which = pod(words);
            return change(which, rest(words));
        }
        if (verb == "polling") return start_polling();
        if (verb == "wait") return loop.run_for(number(words));
        if (verb == "tell") return tell(words);
        if (verb == "now") return forget();
        if (verb == "after") {
            const int ms = number(words);
            words >> verb;  // "ms"
            loop.call_later(ms, [this, then = rest(words)] { perform(then); });
            return;
        }
        ADD_FAILURE() << "no such step: " << step;
    }

    static int number(Words& words) {
        int value = 0;
        words >> value;
        return value;
    }
    static Pod pod(Words& words) {
        std::string word;
        words >> word;
        if (word == "of") words >> word;
        return Pod::numbered(std::stoi(word));
    }
    static std::string rest(Words& words) {
        std::string text;
        std::getline(words >> std::ws, text);
        return text;
    }
    static std::string plain(std::string_view caption) {
        std::string text;
        for (const char c : caption)
            if (c != '&' && c != '.') text += c;
        return text;
    }

    void forget() {
        take_sent();
        told_.clear();
    }
    void click_on(Words& words) {
        for (std::string what; words >> what;)
            what == "card" ? main_window.img_4A_Click() : click({std::stoi(what)});
    }
    // The end of the program comes out of whatever waits.
    template <class Action>
    void until_the_end(Action&& action) {
        try {
            action();
        } catch (const ProgramEnded&) {
            add("the program ends");
        }
    }
    void press(const std::string& caption) {
        for (const ButtonRow& row : buttons())
            if (plain(row.caption) == caption)
                return until_the_end([&] { main_window.press(row); });
        if (caption == "the window's cross")
            return until_the_end([&] { main_window.unload_request(); });
        if (caption == "the error panel") return main_window.pnlErr_DblClick();
        if (caption == "the panel Stream 0") return main_window.pnlButton_DblClick(0);
        ADD_FAILURE() << "no such button: " << caption;
    }
    void choose(const std::string& caption) {
        for (const CommandRow& row : command_rows())
            if (plain(row.caption) == caption) {
                // Inside a wait the end has to pass through it.
                if (run_time.Link.Sending > 0) return main_window.run(row.id);
                return until_the_end([&] { main_window.run(row.id); });
            }
        ADD_FAILURE() << "no such menu item: " << caption;
    }
    void answer(Words& words) {
        for (std::string what; words >> what;)
            dialogs.answer(what == "ok"    ? Answer::Ok
                           : what == "no"  ? Answer::No
                           : what == "yes" ? Answer::Yes
                                           : Answer::Cancel);
    }
    void change(Pod which, const std::string& how) {
        ScriptedPod& scripted = driver.pod(which.number());
        PodConfig& own = configuration.ZavConfig[which];
        if (how == "fails")
            scripted.tx_status = 1;
        else if (how == "is silent")
            scripted.test.fill(std::int16_t{-1});
        else if (how == "heals")
            scripted.tx_status = 0, scripted.test.fill(std::nullopt);
        else if (how == "scans")
            own.ContScan = 1;
        else if (how == "does not scan")
            own.ContScan = 0;
        else if (how == "is long")
            own.NumChannels = 32;
        else if (how == "is another type")
            own.TypeCode = Type7W;
        else if (how == "is edited")
            own.ScanPeriod = 100;
        else if (how == "is relabelled")
            own.Channel[0].Label = "Oven";
        else if (how == "is out of order")
            run_time.Status[which].OutOfOrder = true;
        else
            ADD_FAILURE() << "no such pod: " << how;
    }

    static std::string listed(const PodSet& pods) {
        std::string text;
        for (const Pod each : pods) text += " " + std::to_string(each.number());
        return text.empty() ? " none" : text;
    }
    void tell(Words& words) {
        const LinkState& state = run_time.Link;
        const MainScreen shown = screen();
        for (std::string what; words >> what;) {
            if (what == "selected")
                add(what + listed(state.ZavSelected));
            else if (what == "polled")
                add(what + listed(state.PollTable.InPollTable));
            else if (what == "triggered")
                add(what + listed(state.Triggered));
            else if (what == "marked")
                add(what + listed(marked(shown)));
            else if (what == "scanning")
                add(shown.pnlContScan.caption);
            else if (what == "message")
                add(shown.lblMsg.caption);
            else if (what == "panel")
                add("panel " + shown.pnlErr.caption);
            else if (what == "title")
                add(shown.caption);
            else if (what == "buttons")
                add("buttons" + buttons_of(shown));
            else if (what == "icons")
                add("icons" + icons_of(shown));
            else
                ADD_FAILURE() << "nothing to tell: " << what;
        }
    }
    static PodSet marked(const MainScreen& shown) {
        PodSet pods;
        for (const Pod each : all_pods()) pods.set(each, shown.img_ZAV[each].differs);
        return pods;
    }
    static std::string buttons_of(const MainScreen& shown) {
        std::string text;
        for (const ButtonRow& row : buttons())
            if (shown.command(row.id).enabled) text += " " + std::string(row.name.substr(3));
        return text;
    }
    static std::string icons_of(const MainScreen& shown) {
        std::string text;
        for (const Icon& icon : shown.img_ZAV) {
            if (!icon.visible) continue;
            constexpr std::array Names = {"resting",       "selected", "data",
                                          "selected+data", "error",    "log",
                                          "selected+log",  "log+data", "selected+log+data"};
            text += std::string(" ") + Names.at(static_cast<std::size_t>(icon.picture));
        }
        return text;
    }

    std::string told_;
};

}  // namespace kavorix::test
