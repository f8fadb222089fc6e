// What a key costs in the search of the copy mode over a long history: the next hit, all hits with their count, and
// those that show; beside one pass over the same text with the C library's search for bytes.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "Support/LogLine.h"
#include "Support/Report.h"
#include "Support/Statistics.h"
#include "TerminalEmulator/SearchService.h"
#include "TerminalEmulator/Terminal.h"
#include "TerminalEmulator/TerminalDelegate.h"

namespace orvane::benchmark {

namespace {

constexpr int cols = 200;
constexpr int rows = 50;

class SilentDelegate final : public TerminalDelegate {
 public:
    void send(std::string_view /*bytes*/) override {}
};

struct Term {
    const char* what;
    std::string_view text;
    SearchOptions options;
};

constexpr Term terms[] = {
    {"one hit, the oldest row", "worker[1]", {}},
    {"no hit", "no such text", {}},
    {"no hit, any case of é", "no such té", {}},
    {"no hit, a pattern", "w[a-n]rker\\[.*\\] *ended", {.regex = true}},
    {"a hit in every row", "worker", {.wholeWord = true}},
    {"many hits in every row", "e", {}},
};

void require(bool condition, const char* what) {
    if (condition) return;
    fmt::print(stderr, "search-bench: {}\n", what);
    std::exit(EXIT_FAILURE);
}

/// As a key in the search field does it. How many hits there are.
std::size_t typeKey(SearchService& search, const Terminal& terminal, const Term& term) {
    search.startAt({.row = terminal.buffer().count()});
    const auto found = search.findPrevious(term.text, term.options);
    require(found.has_value(), "a search failed");
    if (!*found) return 0;
    const auto all = search.findAll(term.text, term.options);
    require(all.has_value() &&
                search.findWithin(term.text, term.options, terminal.buffer().yBase(), terminal.buffer().count() - 1)
                    .has_value(),
            "a search failed");
    return all->hits.size();
}

void measure(int lines, int runs) {
    SilentDelegate delegate;
    Terminal terminal(delegate, {.cols = cols, .rows = rows, .scrollback = lines});
    for (int line = 1; line <= lines; ++line)
        terminal.feed(logLine(line, 120) + "\r\n");
    const std::string text = terminal.getBufferAsData();
    std::size_t none = 0;
    std::vector<double> passes;
    passes.reserve(static_cast<std::size_t>(runs));
    for (int run = 0; run < runs; ++run)
        passes.push_back(timeOf<std::chrono::milliseconds>([&] { none += text.contains("no such text") ? 1 : 0; }));
    require(none == 0, "the text has what it should not");
    const double pass = summary(std::move(passes)).median;
    for (const Term& term : terms) {
        SearchService search(terminal.buffer(), terminal.clusters());
        std::size_t hits = 0;
        const double first = timeOf<std::chrono::milliseconds>([&] { hits = typeKey(search, terminal, term); });
        std::vector<double> times;
        times.reserve(static_cast<std::size_t>(runs));
        for (int run = 0; run < runs; ++run)
            times.push_back(timeOf<std::chrono::milliseconds>([&] { hits = typeKey(search, terminal, term); }));
        const double usual = summary(std::move(times)).median;
        report({.name = fmt::format("{} rows, {}", lines, term.what),
                .values =
                    fmt::format("{} hits  {:.1f} passes  first {:.1f}  then {:.1f}", hits, usual / pass, first, usual),
                .unit = "ms",
                .value = usual,
                .atMost = 50});
    }
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) try {
    using namespace orvane::benchmark;
    bool isQuick = false;
    CLI::App app("Measures a key in the search of a long history.");
    app.add_flag("--quick", isQuick, "A short history, to see that it works");
    CLI11_PARSE(app, argc, argv);
    measure(isQuick ? 2000 : 50'000, isQuick ? 2 : 15);
    return 0;
} catch (const std::exception& exception) {
    std::fputs(exception.what(), stderr);
    return 1;
}
