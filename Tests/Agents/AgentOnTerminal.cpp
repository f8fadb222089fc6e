#include "Agents/AgentOnTerminal.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <map>
#include <utility>

namespace orvane::testing {
namespace {

[[noreturn]] void becomeAgent(const AgentOnTerminal::Start& start) {
    setenv("ORVANE_TEST_SCENARIO", start.scenario.c_str(), 1);
    setenv("ORVANE_TEST_SCENARIO_SET", start.settings.c_str(), 1);
    setenv("HOME", start.home.c_str(), 1);
    if (!start.home.empty() && chdir(start.home.c_str()) != 0) _exit(126);
    std::vector<char*> words = {const_cast<char*>(ORVANE_SCRIPTED_AGENT)};
    for (const std::string& argument : start.arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    execv(words[0], words.data());
    _exit(127);
}

winsize sizeOf(int cols, int rows) {
    return {.ws_row = static_cast<unsigned short>(rows),
            .ws_col = static_cast<unsigned short>(cols),
            .ws_xpixel = 0,
            .ws_ypixel = 0};
}

}  // namespace

AgentOnTerminal::AgentOnTerminal(const Start& start)
    : terminal_(delegate_, {.cols = start.cols, .rows = start.rows, .scrollback = 1000}) {
    winsize size = sizeOf(start.cols, start.rows);
    pid_ = forkpty(&pty_, nullptr, nullptr, &size);
    if (pid_ == 0) becomeAgent(start);
    fcntl(pty_, F_SETFD, FD_CLOEXEC);
}

AgentOnTerminal::~AgentOnTerminal() {
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    if (pty_ >= 0) close(pty_);
}

void AgentOnTerminal::type(const std::string& bytes) {
    if (write(pty_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
}

void AgentOnTerminal::signal(int number) const {
    kill(pid_, number);
}

void AgentOnTerminal::resize(int cols, int rows) {
    const winsize size = sizeOf(cols, rows);
    terminal_.resize(cols, rows);
    ioctl(pty_, TIOCSWINSZ, &size);
}

bool AgentOnTerminal::feedSome(const Deadline& deadline) {
    if (std::chrono::steady_clock::now() > deadline.at) return false;
    pollfd waiting{.fd = pty_, .events = POLLIN, .revents = 0};
    // What is waited for may be a file: it is looked for even while the agent writes nothing.
    if (poll(&waiting, 1, 20) <= 0) return true;
    char bytes[1 << 16];
    const ssize_t size = read(pty_, bytes, sizeof bytes);
    if (size <= 0) return false;
    const std::string_view text(bytes, static_cast<std::size_t>(size));
    bytes_ += text;
    terminal_.feed(text);
    if (const std::string answers = delegate_.takeSent(); !answers.empty()) type(answers);
    return true;
}

bool AgentOnTerminal::shows(const std::string& wanted) {
    return until([&] { return text().find(wanted) != std::string::npos; });
}

int AgentOnTerminal::end() {
    const Deadline deadline;
    while (feedSome(deadline)) {
    }
    int status = 0;
    while (waitpid(pid_, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline.at) return -1;
        poll(nullptr, 0, 1);
    }
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::vector<std::string> AgentOnTerminal::rowsFrom(int first) const {
    std::vector<std::string> rows;
    for (int row = first; row < terminal_.buffer().count(); ++row) {
        rows.push_back(terminal_.buffer().row(row).translateToString(
            terminal_.clusters(), {.trimsRight = true, .skipsNullCellsFollowingWide = true}));
        rows.back().erase(rows.back().find_last_not_of(' ') + 1);
    }
    while (!rows.empty() && rows.back().empty())
        rows.pop_back();
    return rows;
}

std::string AgentOnTerminal::text() const {
    std::string text;
    for (const std::string& row : screen())
        text += row + "\n";
    return text;
}

std::string scenarioPath(const std::string& name) {
    return std::string(ORVANE_SOURCE_DIR) + "/Tests/Agents/Scenarios/" + name;
}

std::string typed(const std::string& keys) {
    static const std::map<std::string, std::string> names = {
        {"<Enter>", "\r"},    {"<Escape>", "\x1b"},  {"<Tab>", "\t"},      {"<BTab>", "\x1b[Z"}, {"<Up>", "\x1b[A"},
        {"<Down>", "\x1b[B"}, {"<Right>", "\x1b[C"}, {"<Left>", "\x1b[D"}, {"<BSpace>", "\x7f"}, {"<Space>", " "},
        {"<C-u>", "\x15"},    {"<C-j>", "\n"},       {"<C-c>", "\x03"}};
    std::string bytes;
    for (std::size_t at = 0; at < keys.size();) {
        const std::size_t end = keys[at] == '<' ? keys.find('>', at) : std::string::npos;
        const auto known = end == std::string::npos ? names.end() : names.find(keys.substr(at, end - at + 1));
        bytes += known == names.end() ? std::string(1, keys[at]) : known->second;
        at = known == names.end() ? at + 1 : end + 1;
    }
    return bytes;
}

}  // namespace orvane::testing
