#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <ostream>
#include <utility>

#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/Verbs/TerminalArguments.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Terminal/CastText.h"
#include "OrvaneShell/Terminal/OwnWindow.h"
#include "Platform/AsioMainLoop.h"
#include "Platform/HostName.h"
#include "Platform/LoopThread.h"
#include "Platform/ProcessGroup.h"
#include "Platform/ProgramLookup.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane::Verbs {

namespace {

constexpr int longestTimeout = 7 * 24 * 3600;  // seconds

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

/// A headless terminal that keeps what its program wrote.
class Recorder : public HeadlessTerminal {
 public:
    Recorder(MainLoop& loop, MainLoop& reader, TerminalOptions options,
             std::function<void(std::optional<int> exitCode)> atEnd)
        : HeadlessTerminal(loop, reader, std::move(options), std::move(atEnd)), loop_(loop), start_(loop.now()) {}

    enum class Form : std::uint8_t { bytes, cast };

    /// Both must be called at most once, before anything is written and after it.
    void beginRecord(File file, Form form) {
        record_ = std::move(file);
        if (form != Form::cast) return;
        cast_.emplace();
        keep(CastText::header(terminal.cols(), terminal.rows()));
    }
    /// Whether everything was written.
    bool finishRecord() {
        if (cast_) keep(cast_->finish(time()));
        return !record_ || (std::fflush(record_.get()) == 0 && std::ferror(record_.get()) == 0);
    }

    void sizeChanged(int cols, int rows) override {
        if (cast_) keep(CastText::resize(time(), cols, rows));
        HeadlessTerminal::sizeChanged(cols, rows);
    }

 protected:
    Terminal& shownTerminal() { return terminal; }

    void dataReceived(std::string_view slice) override {
        if (cast_) {
            keep(cast_->output(time(), slice));
        } else {
            keep(slice);
        }
        HeadlessTerminal::dataReceived(slice);
    }

 private:
    CastText::Time time() const { return loop_.now() - start_; }
    void keep(std::string_view bytes) {
        if (record_) std::fwrite(bytes.data(), 1, bytes.size(), record_.get());
    }

    MainLoop& loop_;
    Instant start_;
    File record_;  ///< null when nothing is kept
    std::optional<CastText> cast_;
};

std::vector<std::string> environmentOf(const ClientContext& client) {
    Environment variables = client.environment;
    variables["TERM"] = "xterm-256color";
    variables["COLORTERM"] = "truecolor";
    // They tell the size of another terminal.
    variables.erase("COLUMNS");
    variables.erase("LINES");
    std::vector<std::string> list;
    for (const auto& [name, value] : variables)
        list.push_back(name + '=' + value);
    return list;
}

/// Where the program is; the error is told.
std::expected<std::string, int> programOf(ClientContext& client, const std::string& name) {
    const auto program = findProgram(name, variable(client.environment, "PATH"), client.workingDirectory);
    if (program && access(program->c_str(), X_OK) == 0) return *program;
    client.errors << (program ? SystemError::last("start", name) : program.error()).message() << '\n';
    return std::unexpected(CommandStatus::runFailed);
}

std::expected<File, int> recordOf(ClientContext& client, const Arguments& arguments) {
    if (!arguments.values.contains("record")) return File();
    const std::string path = arguments.value("record");
    if (File file(std::fopen(path.c_str(), "we")); file) return file;
    client.errors << SystemError::last("write", path).message() << '\n';
    return std::unexpected(CommandStatus::runFailed);
}

/// As a shell has it in `$?`.
int shellStatus(std::optional<int> waitStatus) {
    if (!waitStatus) return CommandStatus::runFailed;
    return WIFSIGNALED(*waitStatus) ? 128 + WTERMSIG(*waitStatus) : WEXITSTATUS(*waitStatus);
}

/// Everything that the program has started is in its session; its own group and the one in the foreground go.
void killAll(const LocalProcess& process) {
    for (const pid_t group :
         {ProcessGroup::of(process.shellPid()), PseudoTerminalHelpers::foregroundProcessGroup(process.childfd())}) {
        if (group != 0) ProcessGroup::signal(group, SIGKILL);
    }
}

int run(ClientContext& client, const Arguments& arguments) {
    auto options = TerminalArguments::optionsOf(client, arguments);
    if (!options) return options.error();
    options->hostName = hostName();
    const auto timeout = TerminalArguments::number(client, arguments, "timeout", 0, {0, longestTimeout});
    if (!timeout) return timeout.error();
    const auto program = programOf(client, arguments.rest.front());
    if (!program) return program.error();
    auto record = recordOf(client, arguments);
    if (!record) return record.error();

    AsioMainLoop loop;
    LoopThread reader;
    int status = CommandStatus::runFailed;
    OwnWindow<Recorder> headless(loop, reader.loop(), *options, [&](std::optional<int> exitCode) {
        status = shellStatus(exitCode);
        loop.stop();
    });
    headless.beginRecord(std::move(*record),
                         arguments.value("record").ends_with(".cast") ? Recorder::Form::cast : Recorder::Form::bytes);
    headless.terminal.registerFurtherColors();
    const auto started = headless.process.startProcess({.executable = *program,
                                                        .args = {arguments.rest.begin() + 1, arguments.rest.end()},
                                                        .environment = environmentOf(client),
                                                        .execName = arguments.rest.front(),
                                                        .currentDirectory = {}});
    if (!started) {
        client.errors << client.l10n.text("error.notStartedBecause", arguments.rest.front(), started.error().message())
                      << '\n';
        return CommandStatus::runFailed;
    }
    Registration limit;
    if (*timeout > 0) {
        limit = loop.after(std::chrono::seconds(*timeout), [&] {
            status = CommandStatus::timedOut;
            killAll(headless.process);
            loop.stop();
        });
    }
    loop.run();
    TerminalArguments::printScreen(client, arguments, headless.terminal);
    const bool isRecorded = headless.finishRecord();
    if (!isRecorded) client.errors << client.l10n.text("error.outputFailed") << '\n';
    return isRecorded ? status : CommandStatus::runFailed;
}

}  // namespace

Verb terminalRun() {
    using Kind = Parameter::Kind;
    auto parameters = TerminalArguments::parameters();
    parameters.push_back(
        {.kind = Kind::option, .name = "--timeout", .valueName = "S", .textKey = "help.parameter.timeout"});
    parameters.push_back(
        {.kind = Kind::option, .name = "--record", .valueName = "FILE", .textKey = "help.parameter.record"});
    parameters.push_back({.kind = Kind::rest, .name = "COMMAND", .textKey = "help.parameter.command"});
    return {.name = "terminal run", .parameters = std::move(parameters), .run = run};
}

}  // namespace orvane::Verbs
