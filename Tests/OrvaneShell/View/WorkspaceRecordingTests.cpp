// The recording that the README names, made by Scripts/record-view, played in our own terminal.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/Json.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane {
namespace {

class Nobody final : public TerminalDelegate {
 public:
    void send(std::string_view /*bytes*/) override {}
};

std::ifstream source(const std::string& name) {
    return std::ifstream(std::string(ORVANE_SOURCE_DIR "/") + name, std::ios::binary);
}

/// As the README has it: indented, nothing at the ends of rows.
std::string sample(const Terminal& terminal) {
    std::string text;
    for (int y = 0; y < terminal.rows(); ++y) {
        std::string row = terminal.getLine(y).translateToString(terminal.clusters());
        row.erase(row.find_last_not_of(' ') + 1);
        text += (row.empty() ? "" : "    " + row) + "\n";
    }
    return text;
}

TEST(WorkspaceRecordingTest, PlaysAndShowsWhatTheReadmeShows) {
    auto file = source("Resources/Recordings/workspace.cast");
    std::string line;
    ASSERT_TRUE(std::getline(file, line));
    const JsonValue json = Json::parse(line).value();
    const JSONObject header(json);
    EXPECT_EQ(header.integer("version"), 2);
    Nobody nobody;
    Terminal terminal(nobody, {.cols = static_cast<int>(header.integer("width")),
                               .rows = static_cast<int>(header.integer("height"))});
    terminal.setSilentLog(false);
    std::vector<std::string> notifications;
    terminal.registerOscHandler(9, [&](std::string_view text, StringEnd) { notifications.emplace_back(text); });
    testing::internal::CaptureStderr();
    std::string tellingScreen;
    double last = 0;
    while (std::getline(file, line)) {
        const JsonArray event = Json::parse(line).value().as_array();
        ASSERT_EQ(event.size(), 3U) << line;
        EXPECT_GE(event[0].to_number<double>(), last) << line;
        last = event[0].to_number<double>();
        if (event[1].as_string() == "o") terminal.feed(std::string_view(event[2].as_string()));
        if (event[1].as_string() == "m") tellingScreen = sample(terminal);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "sequences that are not understood";
    EXPECT_EQ(notifications, std::vector<std::string>{"checks needs you"});
    EXPECT_FALSE(terminal.isAlternateBufferActive());
    EXPECT_TRUE(terminal.getBufferAsData().contains("Agents go on"));
    EXPECT_EQ(terminal.terminalTitle(), "");
    EXPECT_GT(last, 20) << "seconds";

    ASSERT_TRUE(tellingScreen.contains("[C-b a]")) << tellingScreen;
    auto readme = source("README.md");
    const std::string text{std::istreambuf_iterator<char>(readme), {}};
    EXPECT_TRUE(text.contains(tellingScreen)) << "Scripts/record-view makes both anew; the recording has\n"
                                              << tellingScreen;
}

}  // namespace
}  // namespace orvane
