// The examples of docs/configuration-files.md do what the page says.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "config/config_reader.h"
#include "config/config_writer.h"
#include "platform/files.h"

namespace kavorix {
namespace {

// The page's block fenced under a name.
std::string block(const std::string& name) {
    const auto files = make_host_files();
    const std::string page = read_all(*files, KAVORIX_SOURCE_DIR "/docs/configuration-files.md");
    const std::string fence = "\n```" + name + "\n";
    const std::size_t start = page.find(fence);
    if (start == std::string::npos) return "no block " + name;
    const std::size_t first = start + fence.size();
    return page.substr(first, page.find("```", first) - first);
}

TEST(Documentation, WorkedExampleLoadsAndIsWhatTheWriterWrites) {
    const std::string example = block("cfg");
    const auto configuration = std::make_unique<Configuration>();
    std::string messages;
    load_on_its_own(example, *configuration, [&](const LoadMessage& message) {
        messages += message.text + "\n";
        return true;
    });
    EXPECT_EQ(messages, "");
    std::string written =
        config_text(configuration->Interface, configuration->ZavConfig, {2026, 3, 1, 12, 30, 0, 0});
    std::erase(written, '\r');
    EXPECT_EQ(written, example);
}

TEST(Documentation, FileWithMistakesGivesTheMessagesShown) {
    const auto configuration = std::make_unique<Configuration>();
    Connected connected{0, -14336, {}};
    connected.Ident.fill("NC          ");
    connected.Ident[2] = "7VJA 0F 1.00";
    std::string messages;
    EXPECT_EQ(load_configuration(block("cfg-with-mistakes"), connected, *configuration,
                                 [&](const LoadMessage& message) {
                                     messages += message.text + "\n";
                                     return true;
                                 }),
              LoadOutcome::Errors);
    EXPECT_EQ(messages, block("messages"));
}

}  // namespace
}  // namespace kavorix
