// Loads a configuration with the n-th allocation failing, for every n: the load is reported, the
// configuration is the one before, and nothing is lost.
//
// Exit code 0 when that held for each, 1 when it did not.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include "config/config_files.h"
#include "config/config_writer.h"
#include "link/discovery.h"
#include "link/error_log.h"
#include "platform/virtual_event_loop.h"
#include "support/memory_files.h"
#include "support/random_config.h"

namespace {

// Allocations until the next one that fails; below 0: none does. `failing_on`: all that follow too.
long long until_failure = -1;
bool failing_on = false;
long long asked = 0;
long long live = 0;

void* take(std::size_t size) {
    ++asked;
    if (until_failure >= 0 && until_failure-- == 0) {
        if (failing_on) until_failure = 0;
        throw std::bad_alloc();
    }
    void* block = std::malloc(size > 0 ? size : 1);
    if (!block) throw std::bad_alloc();
    ++live;
    return block;
}

void give_back(void* block) {
    if (block) --live;
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    return take(size);
}
void* operator new[](std::size_t size) {
    return take(size);
}
void operator delete(void* block) noexcept {
    give_back(block);
}
void operator delete[](void* block) noexcept {
    give_back(block);
}
void operator delete(void* block, std::size_t) noexcept {
    give_back(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    give_back(block);
}

namespace kavorix::test {
namespace {

// A desktop that remembers the last box.
class LastBox : public Dialogs {
  public:
    char text[400] = {};

    Answer message_box(std::string_view shown, int, std::string_view) override {
        text[shown.copy(text, sizeof text - 1)] = '\0';
        return Answer::No;
    }
    Answer Msg_Box(std::string_view shown, int flags, std::string_view title) override {
        return message_box(shown, flags, title);
    }
    void Unload_Msg_Box() override {}
    std::optional<std::string> choose_file_to_open(const FileRequest&) override { return "/a.CFG"; }
    std::optional<std::string> choose_file_to_save(const FileRequest&) override { return {}; }
    void show_wait_message(std::string_view) override {}
    void set_pointer(Pointer) override {}
    void beep() override {}
    void repaint() override {}
    bool open_in_editor(const std::string&) override { return true; }
};

// What a load came to.
enum class End { Loaded, Reported, OutOfMemory };

struct Station {
    Station() {
        configuration.Interface.CardAddress = FirstCardAddress;
        status[0].Ident = {'7', 'V', 'J', 'A', ' ', '0', 'F', ' ', '1', '.', '0', '0'};
        default_ZAV_config(configuration.ZavConfig[0], Type7V, 1);
        configuration.ZavConfig[0].Channel[3].Label = "not this one";
        before = std::make_unique<PodConfigs>(configuration.ZavConfig);
    }
    End load() {
        try {
            config_files.open_file();
            return End::Loaded;
        } catch (const ProgramEnded&) {
            return End::Reported;
        } catch (const std::bad_alloc&) {
            return End::OutOfMemory;
        }
    }
    std::unique_ptr<Configuration> configuration_owner = std::make_unique<Configuration>();
    Configuration& configuration = *configuration_owner;
    std::unique_ptr<PodStatuses> status_owner = std::make_unique<PodStatuses>();
    PodStatuses& status = *status_owner;
    std::unique_ptr<PodConfigs> before;
    MemoryFiles files;
    VirtualEventLoop loop;
    LastBox dialogs;
    Message line;
    MessageLine message_line{line, dialogs};
    ErrorLog error_log{files, loop, "/station"};
    ErrorReporter failures{error_log, dialogs};
    ConfigFiles config_files{
        {configuration, status, dialogs, files, loop, message_line, failures, "/station"}};
};

std::string file(bool good) {
    auto wanted = std::make_unique<Configuration>();
    RandomConfig random(3);
    wanted->ZavConfig[0] = random.pod(Type7V);
    wanted->Interface.CardAddress = FirstCardAddress;
    std::string text = config_text(wanted->Interface, wanted->ZavConfig, {});
    if (!good) text += "XX1;\r\nCH01ZZ;\r\n";
    return text;
}

// What the good file holds, once it was loaded without a failure.
std::unique_ptr<PodConfigs> loaded;

// The load with the n-th allocation failing; the allocations that it asked for.
long long check(const std::string& text, bool good, long long n, bool for_ever, int& failed) {
    const long long live_before = live;
    long long asked_for = 0;
    {
        Station station;
        station.files.put("/a.CFG", text);
        asked = 0;
        until_failure = n;
        failing_on = for_ever;
        const End end = station.load();
        until_failure = -1;
        failing_on = false;
        asked_for = asked;
        const bool changed = !(station.configuration.ZavConfig == *station.before);
        if (n < 0 && good) *loaded = station.configuration.ZavConfig;
        // A failure behind the load finds all of it there.
        bool held = !changed ? !good || end != End::Loaded
                             : good && station.configuration.ZavConfig == *loaded;
        const bool told = std::string_view(station.dialogs.text).find(" at confact/open_file") !=
                          std::string_view::npos;
        // Without any memory left there is no text to tell it with.
        if (end == End::Reported) held = held && told;
        if (end == End::OutOfMemory) held = held && for_ever;
        if (n < 0) held = held && end == End::Loaded;
        if (!held) {
            std::printf("%s file, allocation %lld%s: %s, %s, \"%s\"\n", good ? "good" : "bad", n,
                        for_ever ? " and all that follow" : "",
                        end == End::Loaded     ? "loaded"
                        : end == End::Reported ? "reported"
                                               : "out of memory",
                        changed ? "another configuration" : "the old configuration",
                        station.dialogs.text);
            ++failed;
        }
    }
    if (live != live_before) {
        std::printf("allocation %lld: %lld blocks are lost\n", n, live - live_before);
        ++failed;
    }
    return asked_for;
}

int main_of() {
    int failed = 0;
    long long loads = 0;
    loaded = std::make_unique<PodConfigs>();
    for (const bool good : {true, false}) {
        const std::string text = file(good);
        check(text, good, -1, false, failed);
        const long long allocations = check(text, good, -1, false, failed);
        for (const bool for_ever : {false, true})
            for (long long n = 0; n < allocations && failed < 10; ++n, ++loads)
                check(text, good, n, for_ever, failed);
    }
    std::printf("%lld loads with a failing allocation, %d failed\n", loads, failed);
    return failed > 0 ? 1 : 0;
}

}  // namespace
}  // namespace kavorix::test

int main() {
    return kavorix::test::main_of();
}
