// What the scripted agents show and switch on, against what the real ones were recorded to show at the same moments.

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>

#include "Agents/AgentOnTerminal.h"
#include "Support/TemporaryFolder.h"

namespace orvane::testing {
namespace {

/// A recorded moment, as a line of NAME.moments.tsv tells it.
struct Moment {
    std::string name, title, screen, mouse, cursor, position, keys;
};

std::string recordings(const std::string& name) {
    return std::string(ORVANE_SOURCE_DIR) + "/Tests/Recordings/Agents/" + name;
}

std::vector<std::string> linesOf(const std::string& path) {
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(line);
    }
    while (!lines.empty() && lines.back().empty())
        lines.pop_back();
    return lines;
}

std::vector<Moment> momentsOf(const std::string& recording) {
    std::ifstream file(recordings(recording + ".moments.tsv"));
    EXPECT_TRUE(file) << recording;
    std::vector<Moment> moments;
    for (std::string line; std::getline(file, line);) {
        Moment moment;
        std::istringstream cells(line);
        for (std::string* cell : {&moment.name, &moment.title, &moment.screen, &moment.mouse, &moment.cursor,
                                  &moment.position, &moment.keys})
            std::getline(cells, *cell, '\t');
        moments.push_back(moment);
    }
    return moments;
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, to.find(from) == 0 ? at + to.size() : at))
        text.replace(at, from.size(), to);
}

/// Numbers and the phase of a spinner are another run's.
std::string masked(std::string row) {
    for (const char* phase : {"✢ ", "✶ ", "✻ ", "✽ ", "· "}) {
        if (row.starts_with(phase)) row.replace(0, std::string_view(phase).size(), "* ");
    }
    for (const char* phase : {"⠋", "⠙", "⠹", "⠸", "⠼", "⠴", "⠦", "⠧", "⠇", "⠏"})
        replaceAll(row, phase, "⠿");
    replaceAll(row, "◑", "◐");
    std::string result;
    for (const char byte : row) {
        const bool isDigit = byte >= '0' && byte <= '9';
        if (!isDigit) result += byte;
        if (isDigit && !result.ends_with('#')) result += '#';
    }
    replaceAll(result, "<#s", "#s");
    // A number of another length moves what is aligned at the right edge.
    if (result.find("esc to cancel, #s)") != std::string::npos) replaceAll(result, "  ", " ");
    return result;
}

std::vector<std::string> masked(std::vector<std::string> rows) {
    for (std::string& row : rows)
        row = masked(row);
    return rows;
}

/// What differs between a moment and what the agent shows now; empty when nothing does.
class Comparison {
 public:
    enum class History : std::uint8_t { none, scrolled };

    Comparison(const std::string& recording, const Moment& moment, History history)
        : rows_(masked(linesOf(recordings(recording + "." + moment.name + ".txt")))),
          moment_(moment),
          history_(history) {}

    std::string difference(const AgentOnTerminal& agent) const {
        std::string told;
        const auto tell = [&](const std::string& what, const std::string& is, const std::string& should) {
            if (is != should) told += what + " is “" + is + "”, recorded “" + should + "”\n";
        };
        const std::vector<std::string> shown = visibleRows(agent);
        // Claude Code leaves the top row blank now and then when the conversation is longer than the screen.
        for (std::size_t row = rows_.empty() || !rows_[0].empty() ? 0 : 1; row < std::max(rows_.size(), shown.size());
             ++row)
            tell("row " + std::to_string(row), row < shown.size() ? shown[row] : "",
                 row < rows_.size() ? rows_[row] : "");
        const TerminalModes& modes = agent.terminal().modes();
        tell("title", masked(agent.terminal().terminalTitle()), masked(moment_.title));
        tell("screen", agent.terminal().isAlternateBufferActive() ? "alternate" : "main", moment_.screen);
        tell("mouse", modes.mouseMode == MouseMode::off ? "-" : "mouse", moment_.mouse);
        tell("cursor", modes.cursorHidden ? "hidden" : "shown", moment_.cursor);
        const auto [x, y] = agent.terminal().getCursorLocation();
        if (comparesPosition()) tell("position", std::to_string(x) + "," + std::to_string(y), moment_.position);
        return told;
    }

 private:
    /// Only Claude Code puts a hidden cursor where it means something.
    bool comparesPosition() const { return moment_.cursor == "shown" || moment_.title.ends_with("Claude Code"); }

    /// Where earlier menus had scrolled the recorded screen, its rows are looked for at the end of all.
    std::vector<std::string> visibleRows(const AgentOnTerminal& agent) const {
        if (history_ == History::none) return masked(agent.screen());
        std::vector<std::string> rows = masked(agent.all());
        if (rows.size() > rows_.size())
            rows.erase(rows.begin(), rows.end() - static_cast<std::ptrdiff_t>(rows_.size()));
        return rows;
    }

    std::vector<std::string> rows_;
    const Moment& moment_;
    History history_;
};

struct Replay {
    std::string recording, scenario;
    Comparison::History history = Comparison::History::none;
    /// Keys that replace a moment's, where the recorded ones lead through menus that are not played. "!" sends SIGUSR1,
    /// and text in brackets is waited for.
    std::map<std::string, std::string> keys;
};

void PrintTo(const Replay& replay, std::ostream* stream) {
    *stream << replay.recording;
}

/// "claude-main-80x25" is Main.
std::string nameOf(const ::testing::TestParamInfo<Replay>& each) {
    const std::size_t begin = each.param.recording.find('-') + 1;
    std::string name = each.param.recording.substr(begin, each.param.recording.find('-', begin) - begin);
    name[0] = static_cast<char>(std::toupper(name[0]));
    return name;
}

class ScriptedScreens : public ::testing::TestWithParam<Replay> {};

bool lead(AgentOnTerminal& agent, std::string keys) {
    while (!keys.empty()) {
        if (keys[0] == '!') {
            agent.signal(SIGUSR1);
            keys.erase(0, 1);
        } else if (keys[0] == '[') {
            const std::size_t end = keys.find(']');
            if (!agent.shows(keys.substr(1, end - 1))) return false;
            keys.erase(0, end + 1);
        } else {
            const std::size_t end = keys.find_first_of("![");
            agent.type(typed(keys.substr(0, end)));
            keys.erase(0, end);
        }
    }
    return true;
}

TEST_P(ScriptedScreens, AreWhatWasRecorded) {
    const Replay& replay = GetParam();
    const TemporaryFolder folder;
    const bool isLarge = replay.recording.ends_with("120x40");
    AgentOnTerminal agent({.scenario = scenarioPath(replay.scenario),
                           .home = folder.path(),
                           .settings = "guard=0",
                           .cols = isLarge ? 120 : 80,
                           .rows = isLarge ? 40 : 25});
    for (const Moment& moment : momentsOf(replay.recording)) {
        const auto replaced = replay.keys.find(moment.name);
        ASSERT_TRUE(lead(agent, replaced == replay.keys.end() ? moment.keys : replaced->second))
            << moment.name << agent.text();
        const Comparison comparison(replay.recording, moment, replay.history);
        EXPECT_TRUE(agent.until([&] { return comparison.difference(agent).empty(); }))
            << replay.recording << " " << moment.name << "\n"
            << comparison.difference(agent) << agent.text();
        if (HasFailure()) return;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Claude, ScriptedScreens,
    ::testing::Values(Replay{"claude-main-80x25",
                             "claude.agent",
                             {},
                             {{"empty", "[for agents]"},
                              {"busy1", "<C-u><C-u><C-u>fake:slow start a long job<Enter>"},
                              {"answered", "!"},
                              {"cleared", "/clear<Enter>"}}},
                      Replay{"claude-perm-80x25",
                             "claude.agent",
                             {},
                             {{"bash", "[for agents]fake:bash run it<Enter>"},
                              {"bash_running", "fake:bashlong tick<Enter>[Do you want]<Down><Up><Enter>"}}},
                      Replay{"claude-ask-80x25", "claude.agent", {}, {{"question1", "[for agents]fake:ask me<Enter>"}}},
                      Replay{"claude-trust-80x25", "claude-trust.agent", {}, {}},
                      Replay{"claude-inline-120x40", "claude-inline.agent", {}, {}},
                      Replay{
                          "claude-errors-120x40", "claude.agent", {}, {{"e429", "[for agents]fake:429 now<Enter>"}}}),
    nameOf);
INSTANTIATE_TEST_SUITE_P(Codex, ScriptedScreens,
                         ::testing::Values(Replay{"codex-main-80x25",
                                                  "codex.agent",
                                                  {},
                                                  {{"empty", "[for agents]"},
                                                   {"busy2", "<C-u><C-u><C-u>fake:slow start a long job<Enter>"},
                                                   {"busy_silent", "<C-u>fake:quiet wait without output<Enter>"},
                                                   {"answered", "!"}}},
                                           Replay{"codex-perm-120x40",
                                                  "codex.agent",
                                                  {},
                                                  {{"command", "[for agents]fake:esc run it<Enter>"},
                                                   {"command_denied", "fake:esc run it<Enter>[Would you]<Escape>"}}},
                                           Replay{"codex-errors-80x25",
                                                  "codex.agent",
                                                  {},
                                                  {{"e429", "[for agents]fake:429 now<Enter>"},
                                                   {"e500", "<Down><Enter>[for agents]fake:500 now<Enter>"}}},
                                           Replay{"codex-trust-80x25", "codex-trust.agent", {}, {}}),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(
    Gemini, ScriptedScreens,
    ::testing::Values(
        Replay{"gemini-main-80x25",
               "gemini.agent",
               Comparison::History::scrolled,
               {{"empty", "[for shortcuts]"}, {"busy2", "<C-u>fake:slow start a long job<Enter>"}, {"answered", "!"}}},
        Replay{"gemini-perm-80x25", "gemini.agent", {}, {{"bash", "[for shortcuts]fake:bash run it<Enter>"}}}),
    nameOf);

}  // namespace
}  // namespace orvane::testing
