// What it costs to look at agents' screens: every session is looked at each 1.5 seconds. The ratios are of the time of
// a look to that of drawing the same screen once, and of all looks of 50 sessions to the time of one processor.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "Orvane/Agents/AgentScreenCapture.h"
#include "Support/Report.h"
#include "Support/Statistics.h"

namespace orvane::benchmark {

namespace {

constexpr int cols = 120;
constexpr int rows = 40;
constexpr int sessions = 50;
constexpr double secondsBetweenLooks = 1.5;

class SilentDelegate final : public TerminalDelegate {
 public:
    void send(std::string_view /*bytes*/) override {}
};

struct Scene {
    std::string name;
    SessionKind kind;
    SilenceVerdict verdict;
    std::string bottom;  ///< rows below the conversation
};

std::string across(std::string_view glyph) {
    std::string line;
    for (int col = 0; col < cols; ++col)
        line += glyph;
    return line + "\r\n";
}

std::vector<Scene> scenes() {
    const std::string line = across("─");
    return {{"a composer of Claude Code", SessionKind::claude, SilenceVerdict::finished,
             line + "❯\u00A0a draft\r\n" + line + "  ? for shortcuts"},
            {"a dialog of Claude Code", SessionKind::claude, SilenceVerdict::needsUser,
             line + " Bash command\r\n\r\n   make test\r\n\r\n Do you want to proceed?\r\n ❯ 1. Yes\r\n"
                    "   2. Yes, and don't ask again\r\n   3. No\r\n\r\n Esc to cancel · Tab to amend"},
            {"a dialog of Codex", SessionKind::codex, SilenceVerdict::needsUser,
             "\r\n  Would you like to run the following command?\r\n\r\n  $ make test\r\n\r\n› 1. Yes, proceed (y)\r\n"
             "  2. No (esc)\r\n\r\n  Press enter to confirm or esc to cancel"},
            {"a turn of Gemini CLI", SessionKind::gemini, SilenceVerdict::working,
             " ⠴ Thinking... (esc to cancel, 5s)\r\n" + line + across("▄") + " >   Type your message\r\n" +
                 across("▀") + " ~/site"}};
}

/// A screen full of words, in colours, and what stands below.
std::string drawn(const Scene& scene) {
    std::string text = "\x1b[H\x1b[2J";
    for (int row = 0; row < 2 * rows; ++row)
        text += fmt::format("\x1b[38;5;{}m{} {}. a row of the answer that tells about what was done\x1b[0m\r\n",
                            row % 256, row % 7 == 0 ? "●" : " ", row);
    return text + scene.bottom;
}

void measure(const Scene& scene, int looks) {
    SilentDelegate delegate;
    Terminal terminal(delegate, {.cols = cols, .rows = rows, .scrollback = 1000});
    const std::string text = drawn(scene);
    std::vector<double> drawing;
    std::vector<double> looking;
    for (int look = 0; look < looks; ++look) {
        drawing.push_back(timeOf<std::chrono::microseconds>([&] { terminal.feed(text); }));
        AgentScreenReading reading;
        looking.push_back(
            timeOf<std::chrono::microseconds>([&] { reading = captureAgentScreen(terminal, scene.kind).read(); }));
        if (reading.verdict == scene.verdict) continue;
        fmt::print(stderr, "agent-screen-bench: {} was not recognised\n", scene.name);
        std::exit(EXIT_FAILURE);
    }
    const Summary look = summary(looking);
    report({.name = scene.name + ", a look",
            .values = fmt::format("min {:.0f}  median {:.0f}", look.minimum, look.median),
            .unit = "µs"});
    const double toDrawing = look.median / summary(drawing).median;
    report({.name = scene.name + ", to drawing it", .values = fmt::format("{:.2f}", toDrawing), .unit = "times"});
    const double share = 100 * sessions * look.median / 1e6 / secondsBetweenLooks;
    report({.name = fmt::format("{}, {} sessions", scene.name, sessions),
            .values = fmt::format("{:.2f}", share),
            .unit = "% of one processor",
            .value = share,
            .atMost = 2});
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) try {
    using namespace orvane::benchmark;
    bool isQuick = false;
    CLI::App app("Measures what it costs to look at agents' screens.");
    app.add_flag("--quick", isQuick, "A few looks, to see that it works");
    CLI11_PARSE(app, argc, argv);
    for (const Scene& scene : scenes())
        measure(scene, isQuick ? 3 : 500);
    return 0;
} catch (const std::exception& exception) {
    std::fputs(exception.what(), stderr);
    return 1;
}
