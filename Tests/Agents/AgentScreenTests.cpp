// What one look at the screens of the real agents tells, against what was so when they were recorded.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <sstream>

#include "Agents/Looks.h"
#include "Orvane/Agents/AgentScreenCapture.h"
#include "TerminalEmulator/Engine/RecordingDelegate.h"

namespace orvane {
namespace {

using testing::Look;

/// Feeds recordings to terminals, each as far as its moments are asked for.
class Replay {
 public:
    AgentScreen at(const Look& look) {
        if (!look.hasBytes()) return printed(look);
        Recording& recording = open(look);
        const std::size_t end = look.end();
        recording.terminal.feed(std::string_view(recording.text).substr(recording.fed, end - recording.fed));
        recording.fed = end;
        return captureAgentScreen(recording.terminal, look.kind());
    }

 private:
    struct Recording {
        explicit Recording(const Look& look)
            : terminal(delegate, {.cols = look.cols(), .rows = look.rows(), .scrollback = 1000}) {}
        RecordingDelegate delegate;
        Terminal terminal;
        std::string text;
        std::size_t fed = 0;
    };

    Recording& open(const Look& look) {
        std::unique_ptr<Recording>& recording = recordings_[look.recording];
        if (!recording) {
            recording = std::make_unique<Recording>(look);
            recording->text = look.recorded();
        }
        return *recording;
    }

    /// Gemini CLI draws so much that only the text of its screens is kept.
    static AgentScreen printed(const Look& look) {
        AgentScreen screen{.kind = look.kind(), .rows = {}, .dimmed = {}, .title = look.title, .columns = look.cols()};
        std::istringstream text(look.screen());
        for (std::string row; std::getline(text, row);)
            screen.rows.push_back(row);
        return screen;
    }

    std::map<std::string, std::unique_ptr<Recording>> recordings_;
};

std::string statusOf(const AgentScreenReading& reading) {
    switch (reading.verdict) {
        case SilenceVerdict::needsUser:
            return "waiting";
        case SilenceVerdict::working:
            return "working";
        case SilenceVerdict::finished:
            return "idle";
        case SilenceVerdict::unknown:
            return "unknown";
    }
    return {};
}

std::string described(const AgentScreenReading& reading) {
    std::string text = statusOf(reading) + " [" + reading.question + "] selected " +
                       std::to_string(reading.selectedChoice) + " draft <" + reading.draft.value_or("-") + ">";
    if (reading.request) {
        text += " {" + std::string(rawValue(reading.request->kind)) + "|" + reading.request->toolName + "|" +
                std::to_string(reading.request->questionIndex.value_or(0)) + "/" +
                std::to_string(reading.request->questionCount.value_or(0)) + "|" +
                std::to_string(reading.request->options.size()) + "}";
    }
    for (const PrintedOption& option : reading.options)
        text += "\n    " + std::to_string(option.number) + " " + option.label + (option.freeText ? " (words)" : "") +
                (option.isTicked ? *option.isTicked ? " [x]" : " [ ]" : "") + " -- " + option.detail;
    return text;
}

TEST(AgentScreenTest, readsWhatRealAgentsDrew) {
    Replay replay;
    int asked = 0;
    for (const Look& look : testing::looks()) {
        const AgentScreenReading reading = replay.at(look).read();
        SCOPED_TRACE(look.recording + " " + look.moment + ": " + described(reading));
        EXPECT_TRUE(look.status == "any" || look.status.contains(statusOf(reading)));
        if (look.question.empty()) continue;
        ++asked;
        EXPECT_EQ(reading.question, look.question);
        ASSERT_TRUE(reading.request);
        EXPECT_EQ(std::to_string(reading.request->options.size()), look.options);
    }
    EXPECT_EQ(asked, 6);
}

}  // namespace
}  // namespace orvane
