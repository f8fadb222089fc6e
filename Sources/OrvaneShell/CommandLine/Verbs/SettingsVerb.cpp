#include <boost/json.hpp>
#include <ostream>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/Columns.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Host/HostContext.h"
#include "OrvaneShell/Settings/SettingTable.h"

namespace orvane::Verbs {

namespace {

using Kind = Parameter::Kind;

JsonValue describe(const HostContext& host, const Setting& setting) {
    return {{"key", setting.key},
            {"value", SettingTable::value(setting, host.preferences)},
            {"default", setting.fallback},
            {"values", SettingTable::valuesText(setting, host.l10n)},
            {"meaning", setting.meaning(host.l10n)}};
}

Outcome serve(HostContext& host, const JSONObject& arguments) {
    const auto key = arguments.optionalString("key");
    if (!key) {
        boost::json::array rows;
        for (const Setting& setting : SettingTable::all())
            rows.push_back(describe(host, setting));
        return JsonValue(std::move(rows));
    }
    const Setting* setting = SettingTable::named(*key);
    if (setting == nullptr)
        return Refusal{.code = "usage", .message = host.l10n.text("error.noSuchSetting", Text::oneLine(*key))};
    if (arguments.boolean("reset")) {
        const auto done = SettingTable::set(*setting, setting->fallback, host.l10n, host.preferences);
        if (!done) return Refusal{.message = done.error()};
    } else if (const auto value = arguments.optionalString("value")) {
        const auto done = SettingTable::set(*setting, *value, host.l10n, host.preferences);
        if (!done) return Refusal{.message = done.error()};
    }
    return JsonValue(boost::json::array{describe(host, *setting)});
}

/// One setting is told in full, several in a table.
void print(const ClientContext& client, const JsonArray& rows, bool isOne) {
    Columns columns;
    if (!isOne) {
        columns.add({client.l10n.text("column.setting"), client.l10n.text("column.value"),
                     client.l10n.text("column.default"), client.l10n.text("column.meaning")});
    }
    for (const JsonValue& value : rows) {
        const JSONObject row(value);
        if (isOne) {
            columns.add({client.l10n.text("column.setting"), row.string("key")});
            columns.add({client.l10n.text("column.meaning"), row.string("meaning")});
            columns.add({client.l10n.text("column.value"), row.string("value")});
            columns.add({client.l10n.text("column.default"), row.string("default")});
            columns.add({client.l10n.text("column.values"), row.string("values")});
        } else {
            columns.add({row.string("key"), row.string("value"), row.string("default"), row.string("meaning")});
        }
    }
    client.output << columns.text();
}

int run(ClientContext& client, const Arguments& arguments) {
    auto request = client.requestOf(arguments);
    if (!request) return request.error();
    const bool isReset = arguments.has("reset");
    if (isReset && (!request->contains("key") || request->contains("value"))) {
        client.errors << client.l10n.text("usage.resetNeedsKey") << '\n';
        return CommandStatus::wrongUsage;
    }
    if (isReset) (*request)["reset"] = true;
    const bool isOne = request->contains("key");
    const bool isChange = isReset || request->contains("value");
    return client.ask(
        "settings", *std::move(request),
        [&](const JsonValue& result) {
            if (arguments.has("json")) return client.printJson(result);
            if (!isChange && result.is_array()) print(client, result.as_array(), isOne);
        },
        HostStart::ifNeeded);
}

}  // namespace

Verb settings() {
    return {.name = "settings",
            .parameters = {{.kind = Kind::optional, .name = "KEY", .textKey = "help.parameter.settingKey"},
                           {.kind = Kind::optional, .name = "VALUE", .textKey = "help.parameter.settingValue"},
                           {.kind = Kind::flag, .name = "--reset", .textKey = "help.parameter.settingReset"},
                           {.kind = Kind::flag, .name = "--json", .textKey = "help.parameter.json"}},
            .run = run,
            .serve = serve};
}

}  // namespace orvane::Verbs
