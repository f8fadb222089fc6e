#include <ostream>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/HelpText.h"
#include "OrvaneShell/CommandLine/VerbTable.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"

namespace orvane::Verbs {

namespace {

int run(ClientContext& client, const Arguments& arguments) {
    if (arguments.has("man")) {
        client.output << HelpText::manualPage(client.l10n);
        return CommandStatus::done;
    }
    std::vector<std::string> words = {arguments.value("verb")};
    if (words.front().empty()) {
        client.output << HelpText::overview(client.l10n);
        return CommandStatus::done;
    }
    if (const std::string second = arguments.value("second"); !second.empty()) words.push_back(second);
    const Verb* verb = verbOf(words);
    if (verb == nullptr || verb->isHidden) {
        client.errors << HelpText::unknownVerb(words, client.l10n) << '\n';
        return CommandStatus::wrongUsage;
    }
    client.output << HelpText::of(*verb, client.l10n);
    return CommandStatus::done;
}

}  // namespace

Verb help() {
    return {.name = "help",
            .parameters = {{.kind = Parameter::Kind::optional, .name = "VERB", .textKey = "help.parameter.verb"},
                           // of a verb that has two words
                           {.kind = Parameter::Kind::optional, .name = "SECOND"},
                           {.kind = Parameter::Kind::flag, .name = "--man", .textKey = "help.parameter.man"}},
            .run = run};
}

}  // namespace orvane::Verbs
