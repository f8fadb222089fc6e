#include <boost/json.hpp>
#include <ostream>
#include <utility>
#include <vector>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Columns.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/HostContext.h"
#include "OrvaneShell/View/Keys/KeySettings.h"

namespace orvane::Verbs {

namespace {

using Kind = Parameter::Kind;
using Conflict = KeyBindings::Conflict;

constexpr Parameter keysParameter{.kind = Kind::required, .name = "KEYS", .textKey = "help.parameter.keys"};

JsonValue rowOf(const L10n& l10n, const ViewCommand& command, const KeyBindings::Binding* binding) {
    boost::json::object row{{"command", command.name}, {"meaning", command.label(l10n)}};
    row["keys"] = binding == nullptr ? std::string() : binding->keys.text();
    row["own"] = binding != nullptr && binding->isOwn;
    return row;
}

Outcome serveKeys(HostContext& host, const JSONObject& arguments) {
    const KeyBindings bindings = KeySettings::load(host.preferences);
    boost::json::array rows;
    const auto all = bindings.all();
    for (const ViewCommand& command : ViewCommand::all()) {
        bool hasKeys = false;
        for (const KeyBindings::Binding& binding : all) {
            if (binding.command != &command) continue;
            rows.push_back(rowOf(host.l10n, command, &binding));
            hasKeys = true;
        }
        if (!hasKeys) rows.push_back(rowOf(host.l10n, command, nullptr));
    }
    boost::json::array unusable;
    for (const auto& [keys, command] : bindings.unusable())
        unusable.push_back({{"keys", keys}, {"command", command}});
    return JsonValue{{"preset", rawValue(bindings.preset())},
                     {"leader", KeyText::write(KeySettings::leader(host.preferences, arguments.boolean("insideTmux")))},
                     {"bindings", std::move(rows)},
                     {"unusable", std::move(unusable)}};
}

/// One row a command, with all its keys.
void printKeys(ClientContext& client, const JSONObject& result) {
    Columns columns;
    columns.add(
        {client.l10n.text("column.command"), client.l10n.text("column.keys"), client.l10n.text("column.meaning")});
    std::vector<std::string> row;
    const auto flush = [&] {
        if (!row.empty()) columns.add(std::exchange(row, {}));
    };
    for (const JsonValue& value : result.array("bindings")) {
        const JSONObject binding(value);
        std::string keys = binding.string("keys", "-");
        if (keys.empty()) keys = "-";
        if (binding.boolean("own")) keys += " (" + client.l10n.text("keys.own") + ")";
        if (!row.empty() && row.front() == binding.string("command")) {
            row[1] += ", " + keys;
            continue;
        }
        flush();
        row = {binding.string("command"), std::move(keys), binding.string("meaning")};
    }
    flush();
    client.output << columns.text() << '\n'
                  << client.l10n.text("keys.leader", result.string("leader"), result.string("preset")) << '\n';
}

int runKeys(ClientContext& client, const Arguments& arguments) {
    return client.ask(
        "keys", {{"insideTmux", !variable(client.environment, "TMUX").empty()}},
        [&](const JsonValue& value) {
            const JSONObject result(value);
            if (arguments.has("json")) {
                client.printJson(result.array("bindings"));
            } else {
                printKeys(client, result);
            }
            for (const JsonValue& each : result.array("unusable")) {
                const JSONObject row(each);
                client.errors << client.l10n.text("keys.unusable", row.string("keys"), row.string("command")) << '\n';
            }
        },
        HostStart::ifNeeded);
}

Refusal refusal(const L10n& l10n, const KeySequence& keys, const Conflict& conflict) {
    const std::string text = keys.text();
    const std::string other = conflict.with ? conflict.with->keys.text() : std::string();
    const auto command = conflict.with ? conflict.with->command->name : std::string_view();
    switch (conflict.kind) {
        case Conflict::Kind::taken:
            return {.message = l10n.text("error.keyTaken", other, command)};
        case Conflict::Kind::isStart:
            return {.message = l10n.text("error.keyIsStart", text, other, command)};
        case Conflict::Kind::hasStart:
            return {.message = l10n.text("error.keyHasStart", text, other, command)};
        case Conflict::Kind::typesText:
            return {.message = l10n.text("error.keyTypesText", KeyText::write(keys.keys.front()))};
        case Conflict::Kind::isLeader:
            return {.message = l10n.text("error.keyIsLeader", text)};
    }
    return {};
}

std::expected<KeySequence, Refusal> keysOf(const HostContext& host, const JSONObject& arguments) {
    const auto keys = KeySequence::parse(arguments.string("keys"));
    if (!keys) {
        const std::string part = Text::oneLine(keys.error());
        return std::unexpected(Refusal{.code = "usage", .message = host.l10n.text("error.notAKey", part)});
    }
    return KeySettings::withLeader(*keys, KeySettings::leaders(host.preferences));
}

Outcome serveSet(HostContext& host, const JSONObject& arguments) {
    const auto keys = keysOf(host, arguments);
    if (!keys) return keys.error();
    const std::string name = arguments.string("command");
    const ViewCommand* command = ViewCommand::named(name);
    if (command == nullptr)
        return Refusal{.code = "usage", .message = host.l10n.text("error.noSuchCommand", Text::oneLine(name))};
    KeyBindings bindings = KeySettings::load(host.preferences);
    const auto done = bindings.bind(*keys, *command, KeySettings::leaders(host.preferences));
    if (!done) return refusal(host.l10n, *keys, done.error());
    KeySettings::save(bindings, host.preferences);
    return JsonValue();
}

Outcome serveRemove(HostContext& host, const JSONObject& arguments) {
    const auto keys = keysOf(host, arguments);
    if (!keys) return keys.error();
    KeyBindings bindings = KeySettings::load(host.preferences);
    if (!bindings.unbind(*keys)) return Refusal{.message = host.l10n.text("error.keyUnbound", keys->text())};
    KeySettings::save(bindings, host.preferences);
    return JsonValue();
}

Outcome serveReset(HostContext& host, const JSONObject& arguments) {
    if (arguments.string("keys").empty()) {
        host.preferences.remove(KeySettings::changesKey);
        return JsonValue();
    }
    const auto keys = keysOf(host, arguments);
    if (!keys) return keys.error();
    KeyBindings bindings = KeySettings::load(host.preferences);
    const auto done = bindings.reset(*keys);
    if (!done) return refusal(host.l10n, *keys, done.error());
    if (!*done) return Refusal{.message = host.l10n.text("error.keyUnchanged", keys->text())};
    KeySettings::save(bindings, host.preferences);
    return JsonValue();
}

int ask(ClientContext& client, std::string_view verb, const Arguments& arguments) {
    auto request = client.requestOf(arguments);
    if (!request) return request.error();
    return client.ask(verb, *std::move(request), [](const JsonValue&) {}, HostStart::ifNeeded);
}

}  // namespace

Verb keys() {
    return {.name = "keys",
            .parameters = {{.kind = Kind::flag, .name = "--json", .textKey = "help.parameter.json"}},
            .run = runKeys,
            .serve = serveKeys};
}

Verb keysSet() {
    return {.name = "keys set",
            .parameters = {keysParameter,
                           {.kind = Kind::required, .name = "COMMAND", .textKey = "help.parameter.viewCommand"}},
            .run = [](ClientContext& client, const Arguments& arguments) { return ask(client, "keys set", arguments); },
            .serve = serveSet};
}

Verb keysRemove() {
    return {
        .name = "keys remove",
        .parameters = {keysParameter},
        .run = [](ClientContext& client, const Arguments& arguments) { return ask(client, "keys remove", arguments); },
        .serve = serveRemove};
}

Verb keysReset() {
    return {
        .name = "keys reset",
        .parameters = {{.kind = Kind::optional, .name = "KEYS", .textKey = "help.parameter.keysReset"}},
        .run = [](ClientContext& client, const Arguments& arguments) { return ask(client, "keys reset", arguments); },
        .serve = serveReset};
}

}  // namespace orvane::Verbs
