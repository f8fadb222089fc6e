#include <array>
#include <ostream>

#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/Verbs/TerminalArguments.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Terminal/OwnWindow.h"

namespace orvane::Verbs {

namespace {

constexpr std::size_t chunk = 64 * 1024;

class Collector : public TerminalDelegate {
 public:
    Terminal* terminal = nullptr;
    std::string replies;

    void send(std::string_view bytes) override { replies += bytes; }

 protected:
    Terminal& shownTerminal() { return *terminal; }
};

int feed(ClientContext& client, const Arguments& arguments) {
    const auto options = TerminalArguments::optionsOf(client, arguments);
    if (!options) return options.error();
    OwnWindow<Collector> delegate;
    Terminal terminal(delegate, *options);
    delegate.terminal = &terminal;
    terminal.registerFurtherColors();
    std::array<char, chunk> bytes;
    std::size_t count = 0;
    do {
        count = client.readInput(bytes);
        terminal.feed(std::string_view(bytes.data(), count));
        if (arguments.has("replies")) client.errors << delegate.replies << std::flush;
        delegate.replies.clear();
    } while (count == bytes.size());
    TerminalArguments::printScreen(client, arguments, terminal);
    return CommandStatus::done;
}

}  // namespace

Verb terminalFeed() {
    auto parameters = TerminalArguments::parameters();
    parameters.push_back({.kind = Parameter::Kind::flag, .name = "--replies", .textKey = "help.parameter.replies"});
    return {.name = "terminal feed", .parameters = std::move(parameters), .run = feed};
}

}  // namespace orvane::Verbs
