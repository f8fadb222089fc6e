#include "OrvaneShell/CommandLine/Verbs/TerminalArguments.h"

#include <charconv>
#include <ostream>

#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/Terminal/OwnWindow.h"
#include "OrvaneShell/Terminal/ScreenJson.h"

namespace orvane::TerminalArguments {

namespace {

constexpr int largestScrollback = 10'000'000;

}  // namespace

std::vector<Parameter> parameters() {
    using Kind = Parameter::Kind;
    return {{.kind = Kind::option, .name = "--cols", .valueName = "C", .textKey = "help.parameter.cols"},
            {.kind = Kind::option, .name = "--rows", .valueName = "R", .textKey = "help.parameter.rows"},
            {.kind = Kind::option, .name = "--scrollback", .valueName = "N", .textKey = "help.parameter.scrollback"},
            {.kind = Kind::flag, .name = "--json", .textKey = "help.parameter.jsonScreen"}};
}

std::expected<int, int> number(ClientContext& client, const Arguments& arguments, const std::string& name, int without,
                               Range range) {
    const std::string typed = arguments.value(name);
    if (!arguments.values.contains(name)) return without;
    int value = 0;
    const auto [end, error] = std::from_chars(typed.data(), typed.data() + typed.size(), value);
    const bool isWhole = error == std::errc() && end == typed.data() + typed.size();
    if (isWhole && value >= range.least && value <= range.most) return value;
    client.errors << client.l10n.text("usage.notANumber", typed, range.least, range.most) << '\n';
    return std::unexpected(CommandStatus::wrongUsage);
}

std::expected<TerminalOptions, int> optionsOf(ClientContext& client, const Arguments& arguments) {
    TerminalOptions options;
    const auto cols = number(client, arguments, "cols", options.cols, {Terminal::MINIMUM_COLS, largestScreenSide});
    const auto rows = number(client, arguments, "rows", options.rows, {Terminal::MINIMUM_ROWS, largestScreenSide});
    const auto lines = number(client, arguments, "scrollback", *options.scrollback, {0, largestScrollback});
    for (const auto* each : {&cols, &rows, &lines}) {
        if (!*each) return std::unexpected(each->error());
    }
    options.cols = *cols;
    options.rows = *rows;
    options.scrollback = *lines;
    return options;
}

void printScreen(ClientContext& client, const Arguments& arguments, const Terminal& terminal) {
    if (arguments.has("json")) {
        client.printJson(screenJson(terminal));
        return;
    }
    client.output << screenText(terminal);
}

}  // namespace orvane::TerminalArguments
