#include <boost/json.hpp>
#include <filesystem>
#include <ostream>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Selection.h"
#include "OrvaneShell/CommandLine/Verbs/SessionStart.h"
#include "OrvaneShell/CommandLine/Verbs/TerminalArguments.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Terminal/OwnWindow.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane::Verbs {

namespace {

int run(ClientContext& client, const Arguments& arguments) {
    boost::json::object request;
    for (const auto& [name, value] : arguments.values)
        request[name] = value;
    if (request.contains("project")) request["project"] = client.projectText(arguments.value("project"));
    if (request.contains("cwd")) {
        request["cwd"] = (std::filesystem::path(client.workingDirectory) / arguments.value("cwd")).string();
    }
    for (const char* side : {"cols", "rows"}) {
        const auto number = TerminalArguments::number(client, arguments, side, 0, {2, largestScreenSide});
        if (!number) return number.error();
        if (*number != 0) request[side] = *number;
    }
    return client.ask("new", std::move(request),
                      [&](const JsonValue& result) { client.output << JSONObject(result).string("id") << '\n'; });
}

std::string kindNames() {
    std::string list;
    for (const auto& [kind, name] : RawValues<SessionKind>::table) {
        list += list.empty() ? "" : ", ";
        list += name;
    }
    return list;
}

std::expected<Uuid, Refusal> chosenProject(const HostContext& host, const JSONObject& arguments) {
    if (const auto named = arguments.optionalString("project")) return Selection::project(host, *named);
    if (const auto selected = host.store.workspace().selectedProjectID) return *selected;
    return std::unexpected(Refusal{.message = host.l10n.text("error.noProject")});
}

std::expected<std::optional<Uuid>, Refusal> chosenAgent(const HostContext& host, SessionKind kind,
                                                        const JSONObject& arguments) {
    const auto named = arguments.optionalString("agent");
    if (!named) return std::nullopt;
    if (kind != SessionKind::custom) {
        return std::unexpected(
            Refusal{.code = "usage", .message = host.l10n.text("error.agentIsCustom", rawValue(kind))});
    }
    const auto spec = Selection::agent(host, *named);
    if (!spec) return std::unexpected(spec.error());
    return spec->id;
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    const auto kind = fromRawValue<SessionKind>(arguments.string("kind"));
    if (!kind) {
        return Refusal{.code = "usage",
                       .message = host.l10n.text("error.notAKind", arguments.string("kind"), kindNames())};
    }
    const auto agent = chosenAgent(host, *kind, arguments);
    if (!agent) return agent.error();
    const auto project = chosenProject(host, arguments);
    if (!project) return project.error();
    const auto folder = arguments.optionalString("cwd");
    std::error_code error;
    if (folder && !std::filesystem::is_directory(*folder, error)) {
        return Refusal{.message = host.l10n.text("error.pathMissing", *folder)};
    }
    const auto started = SessionStart::start(host.store, host.l10n,
                                             {.kind = *kind,
                                              .project = *project,
                                              .command = arguments.optionalString("command"),
                                              .title = arguments.string("title"),
                                              .customAgent = *agent,
                                              .workingDirectory = folder,
                                              .targetLeaf = {}});
    if (!started) return started.error();
    SessionController* const session = *started;
    if (HeadlessTerminal* headless = session->terminal()) {
        Terminal& terminal = headless->terminal;
        const auto side = [&](const char* name, int present) {
            return static_cast<int>(std::clamp<std::int64_t>(arguments.integer(name, present), 1, largestScreenSide));
        };
        terminal.resize(side("cols", terminal.cols()), side("rows", terminal.rows()));
    }
    return JsonValue{{"id", session->id().lowerText()}};
}

}  // namespace

Verb new_() {
    using Kind = Parameter::Kind;
    return {
        .name = "new",
        .parameters =
            {{.kind = Kind::required, .name = "KIND", .textKey = "help.parameter.kind"},
             {.kind = Kind::option, .name = "--project", .valueName = "PROJECT", .textKey = "help.parameter.project"},
             {.kind = Kind::option, .name = "--agent", .valueName = "AGENT", .textKey = "help.parameter.agent"},
             {.kind = Kind::option, .name = "--command", .valueName = "C", .textKey = "help.parameter.sessionCommand"},
             {.kind = Kind::option, .name = "--cwd", .valueName = "D", .textKey = "help.parameter.cwd"},
             {.kind = Kind::option, .name = "--title", .valueName = "T", .textKey = "help.parameter.title"},
             {.kind = Kind::option, .name = "--cols", .valueName = "C", .textKey = "help.parameter.cols"},
             {.kind = Kind::option, .name = "--rows", .valueName = "R", .textKey = "help.parameter.rows"}},
        .run = run,
        .serve = serve};
}

}  // namespace orvane::Verbs
