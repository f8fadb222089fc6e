// Feeds its standard input to a terminal and prints the screen that it makes: ls --color=always -C | feed

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

#include "TerminalEmulator/Terminal.h"

namespace {

/// Answers to queries of the program go nowhere: it is not there any more.
class Nobody final : public orvane::TerminalDelegate {
 public:
    void send(std::string_view /*bytes*/) override {}
};

}  // namespace

int main() {
    Nobody nobody;
    // What did not go through a pseudo-terminal has no carriage returns.
    orvane::Terminal terminal(nobody, {.cols = 80, .rows = 25, .convertEol = true});
    std::array<char, 4096> bytes;
    while (const std::size_t count = std::fread(bytes.data(), 1, bytes.size(), stdin))
        terminal.feed(std::string_view(bytes.data(), count));
    if (std::ferror(stdin) != 0) {
        std::perror("feed: standard input");
        return 1;
    }
    for (int row = 0; row < terminal.rows(); ++row) {
        const std::string text = terminal.getLine(row).translateToString(
            terminal.clusters(), {.trimsRight = true, .skipsNullCellsFollowingWide = true});
        std::puts(text.c_str());
    }
}
