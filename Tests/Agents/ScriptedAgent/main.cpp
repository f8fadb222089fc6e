// Plays an agent's command line on its terminal; see Tests/Agents/README.md.

#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "ScriptedAgent/CommandLine.h"
#include "ScriptedAgent/Keys.h"
#include "ScriptedAgent/Player.h"
#include "ScriptedAgent/ScenarioParser.h"
#include "ScriptedAgent/TerminalGuard.h"

namespace orvane::scripted {
namespace {

/// How long an escape byte may be the beginning of a sequence before it is a key.
constexpr Milliseconds escapeDelay{30};
constexpr int usageStatus = 2;

const std::pair<int, const char*> signals[] = {{SIGINT, "INT"},   {SIGTERM, "TERM"}, {SIGHUP, "HUP"}, {SIGQUIT, "QUIT"},
                                               {SIGUSR1, "USR1"}, {SIGUSR2, "USR2"}, {SIGWINCH, ""}};

TimePoint now() {
    return std::chrono::steady_clock::now();
}

int complain(const std::string& text) {
    std::fprintf(stderr, "scripted-agent: %s\n", text.c_str());
    return usageStatus;
}

std::optional<std::string> environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

/// A descriptor that gets the signals instead of the process.
int signalDescriptor() {
    sigset_t all;
    sigemptyset(&all);
    for (const auto& [number, name] : signals)
        sigaddset(&all, number);
    sigprocmask(SIG_BLOCK, &all, nullptr);
    return signalfd(-1, &all, SFD_CLOEXEC);
}

class Loop {
 public:
    Loop(Player& player, const TerminalGuard& terminal) : player_(player), terminal_(terminal) {}

    int run(const std::string& prompt) {
        pollfd waiting[] = {{STDIN_FILENO, POLLIN, 0}, {signalDescriptor(), POLLIN, 0}};
        player_.start(prompt, now());
        while (!player_.exitStatus()) {
            const int count = poll(waiting, 2, timeout());
            if (count == 0 && keys_.isWaiting()) press(keys_.giveUp());
            if (waiting[1].revents != 0) readSignal(waiting[1].fd);
            if (count > 0 && waiting[0].revents != 0) readKeys();
            player_.advance(now());
        }
        return *player_.exitStatus();
    }

 private:
    int timeout() const {
        if (keys_.isWaiting()) return static_cast<int>(escapeDelay.count());
        const auto wake = player_.nextWake();
        if (!wake) return -1;
        const auto rest = std::chrono::ceil<Milliseconds>(*wake - now());
        return static_cast<int>(std::clamp<Milliseconds::rep>(rest.count(), 0, 60'000));
    }

    void press(const std::vector<Key>& keys) {
        for (const Key& key : keys)
            player_.press(key, now());
    }

    void readKeys() {
        char bytes[4096];
        const ssize_t size = read(STDIN_FILENO, bytes, sizeof bytes);
        if (size > 0) return press(keys_.feed({bytes, static_cast<std::size_t>(size)}));
        player_.signal("HUP", SIGHUP, now());  // the terminal is gone
    }

    void readSignal(int descriptor) {
        signalfd_siginfo info{};
        if (read(descriptor, &info, sizeof info) != sizeof info) return;
        const int number = static_cast<int>(info.ssi_signo);
        if (number == SIGWINCH) return player_.resize(terminal_.size(), now());
        const auto known = std::ranges::find(signals, number, &std::pair<int, const char*>::first);
        player_.signal(known->second, number, now());
    }

    Player& player_;
    const TerminalGuard& terminal_;
    KeyReader keys_;
};

int play(const std::vector<std::string>& words) {
    const auto invocation =
        readInvocation(words, environmentValue("ORVANE_TEST_SCENARIO"), environmentValue("ORVANE_TEST_SCENARIO_SET"));
    if (!invocation) return complain(invocation.error());
    auto scenario = parseScenario(invocation->scenario);
    if (!scenario) return complain(scenario.error().message());
    const auto start = applyInvocation(*scenario, *invocation);
    if (!start) return complain(start.error());
    if (start->answer) {
        std::puts(start->answer->text.c_str());
        return start->answer->status;
    }
    std::string failure;
    int status = usageStatus;
    {
        const TerminalGuard terminal;
        if (!terminal.isTerminal()) return complain("the standard input is no terminal");
        Player player(*scenario, terminal.size(), TerminalGuard::write);
        status = Loop(player, terminal).run(start->prompt);
        failure = player.failure();
    }
    return failure.empty() ? status : complain(failure);
}

}  // namespace
}  // namespace orvane::scripted

int main(int count, char** words) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
    return orvane::scripted::play({words + 1, words + count});
}
