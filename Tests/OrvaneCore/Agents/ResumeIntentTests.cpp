#include "OrvaneCore/Agents/ResumeIntent.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(ResumeIntentTest, TellsAConversationFromOneThatIsChosenLater) {
    const std::string id = "8e8d1a93-5a40-4e0e-9a6b-7d1f0c9b2e11";
    const struct {
        std::string command;
        ResumeIntent intent;
    } cases[] = {{"", {}},
                 {"claude --model opus", {}},
                 {"claude --resume '" + id + "'", {.id = id}},
                 {"codex resume " + id, {.id = id}},
                 {"claude --resume " + id + " --fork-session", {.continuesOlder = true}},
                 {"claude --resume", {.continuesOlder = true}},
                 {"claude -c", {.continuesOlder = true}},
                 {"codex resume --last", {.continuesOlder = true}},
                 {"gemini --resume latest", {.id = "latest", .continuesOlder = true}},
                 {"gemini --resume 1", {.id = "1", .continuesOlder = true}}};
    for (const auto& [command, intent] : cases)
        EXPECT_EQ(ResumeIntent::of(command), intent) << command;
}

}  // namespace
}  // namespace orvane
