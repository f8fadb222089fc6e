#include "OrvaneShell/CommandLine/Overview.h"

#include <boost/json.hpp>
#include <ostream>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/VerbTable.h"

namespace orvane::Overview {

int show(ClientContext& client) {
    JsonValue projects;
    int status = client.ask("projects", {}, [&](const JsonValue& result) { projects = result; }, HostStart::ifNeeded);
    if (status != CommandStatus::done) return status;
    if (projects.is_array() && projects.get_array().empty() && !client.workingDirectory.empty()) {
        status = client.ask("open", {{"path", client.workingDirectory}}, [](const JsonValue&) {});
        if (status != CommandStatus::done) return status;
    }
    client.output << client.l10n.text("overview.running") << "\n\n";
    status = verbNamed("projects")->run(client, {});
    if (status != CommandStatus::done) return status;
    client.output << '\n';
    status = verbNamed("list")->run(client, {});
    client.output << '\n' << client.l10n.text("help.more", "orvane help") << '\n';
    return status;
}

}  // namespace orvane::Overview
