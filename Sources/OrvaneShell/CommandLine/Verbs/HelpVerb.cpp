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
    const std::string name = arguments.value("verb");
    if (name.empty()) {
        client.output << HelpText::overview(client.l10n);
        return CommandStatus::done;
    }
    const Verb* verb = verbNamed(name);
    if (verb == nullptr || verb->isHidden) {
        client.errors << client.l10n.text("usage.unknownVerb", name) << '\n';
        return CommandStatus::wrongUsage;
    }
    client.output << HelpText::of(*verb, client.l10n);
    return CommandStatus::done;
}

}  // namespace

Verb help() {
    return {.name = "help",
            .parameters = {{.kind = Parameter::Kind::optional, .name = "VERB", .textKey = "help.parameter.verb"},
                           {.kind = Parameter::Kind::flag, .name = "--man", .textKey = "help.parameter.man"}},
            .run = run};
}

}  // namespace orvane::Verbs
