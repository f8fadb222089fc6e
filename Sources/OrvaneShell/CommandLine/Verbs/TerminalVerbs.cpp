#include <algorithm>
#include <array>
#include <charconv>
#include <expected>
#include <ostream>

#include "OrvaneShell/CommandLine/ClientContext.h"
#include "OrvaneShell/CommandLine/CommandStatus.h"
#include "OrvaneShell/CommandLine/Verbs/Verbs.h"
#include "OrvaneShell/Terminal/ScreenJson.h"
#include "TerminalEmulator/Terminal.h"

namespace orvane::Verbs {

namespace {

/// Columns and rows, whoever asks for them: nobody may have gigabytes of screen.
constexpr int largestSide = 4096;
constexpr int largestScrollback = 10'000'000;
constexpr std::size_t chunk = 64 * 1024;

/// Takes what a terminal answers and asks of its window, which here is nothing but its size.
class FeedDelegate final : public TerminalDelegate {
 public:
    Terminal* terminal = nullptr;
    std::string replies;

    void send(std::string_view bytes) override { replies += bytes; }

    std::optional<std::string> windowCommand(const WindowManipulationCommand& command) override {
        if (const auto* size = std::get_if<WindowManipulationCommand::ResizeTerminal>(&command.value)) {
            terminal->resize(std::min(size->cols, largestSide), std::min(size->rows, largestSide));
        } else if (const auto* lines = std::get_if<WindowManipulationCommand::ResizeToLines>(&command.value)) {
            terminal->resize(terminal->cols(), std::min(lines->lines, largestSide));
        }
        return {};
    }

    /// A nominal cell, for those who ask for pixels.
    std::optional<CellSize> cellSizeInPixels() override { return CellSize{.width = 8, .height = 16}; }

    // A clipboard of its own, empty at first: bytes that are fed may set it and read it back.
    void clipboardCopy(std::string_view content) override { clipboard_ = content; }
    std::optional<std::string> clipboardRead() override { return clipboard_; }

 private:
    std::string clipboard_;
};

struct Range {
    int least = 0;
    int most = 0;
};

/// The number that was typed for an option, or what it is without one. The error is told.
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
    const auto cols = number(client, arguments, "cols", options.cols, {Terminal::MINIMUM_COLS, largestSide});
    const auto rows = number(client, arguments, "rows", options.rows, {Terminal::MINIMUM_ROWS, largestSide});
    const auto lines = number(client, arguments, "scrollback", *options.scrollback, {0, largestScrollback});
    for (const auto* each : {&cols, &rows, &lines}) {
        if (!*each) return std::unexpected(each->error());
    }
    options.cols = *cols;
    options.rows = *rows;
    options.scrollback = *lines;
    return options;
}

void printScreen(std::ostream& output, const Terminal& terminal) {
    const Buffer& buffer = terminal.buffer();
    for (int row = buffer.yBase(); row < buffer.count(); ++row) {
        output << buffer.row(row).translateToString(terminal.clusters(),
                                                    {.trimsRight = true, .skipsNullCellsFollowingWide = true})
               << '\n';
    }
}

int feed(ClientContext& client, const Arguments& arguments) {
    const auto options = optionsOf(client, arguments);
    if (!options) return options.error();
    FeedDelegate delegate;
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
    if (arguments.has("json")) {
        client.printJson(screenJson(terminal));
    } else {
        printScreen(client.output, terminal);
    }
    return CommandStatus::done;
}

}  // namespace

Verb terminalFeed() {
    using Kind = Parameter::Kind;
    return {.name = "terminal feed",
            .parameters = {{.kind = Kind::option, .name = "--cols", .valueName = "C", .textKey = "help.parameter.cols"},
                           {.kind = Kind::option, .name = "--rows", .valueName = "R", .textKey = "help.parameter.rows"},
                           {.kind = Kind::option,
                            .name = "--scrollback",
                            .valueName = "N",
                            .textKey = "help.parameter.scrollback"},
                           {.kind = Kind::flag, .name = "--replies", .textKey = "help.parameter.replies"},
                           {.kind = Kind::flag, .name = "--json", .textKey = "help.parameter.jsonScreen"}},
            .run = feed};
}

}  // namespace orvane::Verbs
