#include <boost/json.hpp>
#include <charconv>
#include <ostream>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/Selection.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Terminal/OwnWindow.h"
#include "OrvaneShell/Terminal/ScreenJson.h"
#include "OrvaneShell/Terminal/TypedBytes.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane::Verbs {

namespace {

/// Of one request, which may be 1 MiB with everything written as "\xHH".
constexpr std::size_t bytesOfOneRequest = 128 * 1024;

int runScreen(ClientContext& client, const Arguments& arguments) {
    boost::json::object request{{"session", arguments.value("session")},
                                {"json", arguments.has("json")},
                                {"scrollback", arguments.has("scrollback")}};
    return client.ask("screen", std::move(request), [&](const JsonValue& result) {
        if (arguments.has("json")) return client.printJson(result);
        client.output << JSONObject(result).string("text");
    });
}

Outcome serveScreen(HostContext& host, const JSONObject& arguments) {
    const auto headless = Selection::terminal(host, arguments.string("session"));
    if (!headless) return headless.error();
    const Terminal& terminal = (*headless)->terminal;
    const HistoryPart history = arguments.boolean("scrollback") ? HistoryPart::shown : HistoryPart::left;
    if (arguments.boolean("json")) return screenJson(terminal, history);
    return JsonValue{{"text", screenText(terminal, history)}};
}

int runType(ClientContext& client, const Arguments& arguments) {
    std::string bytes;
    if (arguments.value("bytes") == "-") {
        bytes = client.allInput();
    } else if (auto parsed = TypedBytes::parse(arguments.value("bytes"))) {
        bytes = *std::move(parsed);
    } else {
        client.errors << client.l10n.text("usage.badBytes", parsed.error()) << '\n';
        return CommandStatus::wrongUsage;
    }
    int status = CommandStatus::done;
    for (std::size_t at = 0; at < bytes.size() && status == CommandStatus::done; at += bytesOfOneRequest) {
        const std::string_view part = std::string_view(bytes).substr(at, bytesOfOneRequest);
        status = client.ask("type", {{"session", arguments.value("session")}, {"bytes", TypedBytes::write(part)}},
                            [](const JsonValue&) {});
    }
    return status;
}

Outcome serveType(HostContext& host, const JSONObject& arguments) {
    const auto session = Selection::session(host, arguments.string("session"));
    if (!session) return session.error();
    const HeadlessTerminal* headless = (*session)->terminal();
    if (headless == nullptr) return Refusal{.message = host.l10n.text("error.noTerminal", (*session)->title())};
    const auto bytes = TypedBytes::parse(arguments.string("bytes"));
    if (!bytes) return Refusal{.code = "usage", .message = host.l10n.text("usage.badBytes", bytes.error())};
    if (!headless->process.running()) return Refusal{.message = host.l10n.text("error.hasEnded")};
    (*session)->type(*bytes);
    return JsonValue();
}

struct Size {
    int cols = 0;
    int rows = 0;
};

/// "80x25"
std::optional<Size> sizeOf(const std::string& text) {
    Size size;
    const char* const end = text.data() + text.size();
    const auto cols = std::from_chars(text.data(), end, size.cols);
    if (cols.ec != std::errc() || cols.ptr == end || *cols.ptr != 'x') return {};
    const auto rows = std::from_chars(cols.ptr + 1, end, size.rows);
    const bool isWhole = rows.ec == std::errc() && rows.ptr == end;
    const bool isPossible = size.cols >= Terminal::MINIMUM_COLS && size.rows >= Terminal::MINIMUM_ROWS &&
                            size.cols <= largestScreenSide && size.rows <= largestScreenSide;
    return isWhole && isPossible ? std::optional(size) : std::nullopt;
}

int runResize(ClientContext& client, const Arguments& arguments) {
    return client.ask("resize", {{"session", arguments.value("session")}, {"size", arguments.value("size")}},
                      [](const JsonValue&) {});
}

Outcome serveResize(HostContext& host, const JSONObject& arguments) {
    const auto headless = Selection::terminal(host, arguments.string("session"));
    if (!headless) return headless.error();
    const auto size = sizeOf(arguments.string("size"));
    if (!size) return Refusal{.code = "usage", .message = host.l10n.text("usage.notASize", arguments.string("size"))};
    (*headless)->terminal.resize(size->cols, size->rows);
    return JsonValue();
}

constexpr Parameter sessionParameter{
    .kind = Parameter::Kind::required, .name = "SESSION", .textKey = "help.parameter.session"};

}  // namespace

Verb screen() {
    return {.name = "screen",
            .parameters = {sessionParameter,
                           {.kind = Parameter::Kind::flag, .name = "--scrollback", .textKey = "help.parameter.history"},
                           {.kind = Parameter::Kind::flag, .name = "--json", .textKey = "help.parameter.jsonScreen"}},
            .run = runScreen,
            .serve = serveScreen};
}

Verb type() {
    return {.name = "type",
            .parameters = {sessionParameter,
                           {.kind = Parameter::Kind::required, .name = "BYTES", .textKey = "help.parameter.bytes"}},
            .run = runType,
            .serve = serveType};
}

Verb resize() {
    return {.name = "resize",
            .parameters = {sessionParameter,
                           {.kind = Parameter::Kind::required, .name = "SIZE", .textKey = "help.parameter.size"}},
            .run = runResize,
            .serve = serveResize};
}

}  // namespace orvane::Verbs
