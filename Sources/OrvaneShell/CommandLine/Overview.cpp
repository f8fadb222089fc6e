#include "OrvaneShell/CommandLine/Overview.h"

#include <unistd.h>

#include <boost/json.hpp>
#include <ostream>

#include "OrvaneCore/Agents/LaunchPlan.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/VerbTable.h"
#include "OrvaneShell/View/ViewClient.h"

namespace orvane::Overview {

namespace {

/// Whether the view can be opened here: in a terminal, but not in a pane of a view.
bool canView(const ClientContext& client) {
    return isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0 &&
           variable(client.environment, std::string(LaunchPlan::sessionVariable)).empty();
}

}  // namespace

int show(ClientContext& client) {
    if (canView(client)) return ViewClient::run(client, {});
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
    client.output << '\n' << client.l10n.text("overview.view", "orvane");
    client.output << '\n' << client.l10n.text("help.more", "orvane help") << '\n';
    return status;
}

}  // namespace orvane::Overview
