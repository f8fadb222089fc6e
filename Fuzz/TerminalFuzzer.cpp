#include "Fuzzing.h"
#include "TerminalEmulator/Engine/TestTerminal.h"

namespace {

using namespace orvane;

/// What a terminal may keep at this size, whatever it is fed: the history's and the clusters' own bounds, and slack.
constexpr std::size_t mostBytes = std::size_t{96} << 20;

}  // namespace

/// The first two bytes are the size, the next two say where the input is cut and whether the size changes there.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) return 0;
    const int cols = data[0] % 100;
    const int rows = data[1] % 40;
    const std::string_view input = fuzzing::asText(data + 4, size - 4);
    const std::size_t cut = input.size() * data[2] / 256;
    const bool isResized = data[3] != 0;
    const auto resize = [&](testing::TestTerminal& screen) {
        if (isResized) screen.terminal.resize(data[3] % 100, data[3] / 5);
    };
    testing::TestTerminal inPieces(cols, rows, 50);
    inPieces.terminal.registerFurtherColors();
    for (const char byte : input.substr(0, cut))
        inPieces.feed({&byte, 1});
    resize(inPieces);
    inPieces.feed(input.substr(cut));
    testing::TestTerminal whole(cols, rows, 50);
    whole.terminal.registerFurtherColors();
    whole.feed(input.substr(0, cut));
    resize(whole);
    whole.feed(input.substr(cut));
    fuzzing::require(inPieces.snapshot() == whole.snapshot(), "any cut gives the same screen, modes and answers");
    fuzzing::require(whole.terminal.bytesInUse() < mostBytes, "memory stays bounded");
    const auto [x, y] = whole.terminal.getCursorLocation();
    const bool isInside = x >= 0 && y >= 0 && x < whole.terminal.cols() && y < whole.terminal.rows();
    fuzzing::require(isInside, "the cursor is on the screen");
    return 0;
}
