#include "Fuzzing.h"
#include "OrvaneShell/View/FrameWriter.h"
#include "Support/CanvasEdits.h"

using namespace orvane;
using fuzzing::require;

/// The first three bytes are the size and what the terminal can do, the rest picks changes of two canvases that take
/// turns.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    const int cols = 2 + data[0] % 60;
    const int rows = 1 + data[1] % 20;
    const OuterTerminal outer{.colors = static_cast<OuterTerminal::Colors>(data[2] % 3),
                              .synchronizedOutput = (data[2] & 4) != 0,
                              .styledUnderlines = (data[2] & 8) != 0,
                              .hyperlinks = (data[2] & 16) != 0,
                              .cursorStyles = (data[2] & 32) != 0,
                              .eraseCharacters = (data[2] & 64) != 0,
                              .wideAmbiguous = (data[2] & 128) != 0};
    std::string_view input = fuzzing::asText(data + 3, size - 3);
    const testing::BelowLimit below = [&](std::size_t limit) {
        const std::size_t pick = input.empty() || limit == 0 ? 0 : static_cast<unsigned char>(input.front()) % limit;
        input.remove_prefix(input.empty() ? 0 : 1);
        return pick;
    };
    Canvas canvases[] = {{cols, rows}, {cols, rows}};
    testing::OuterScreen screen(cols, rows);
    FrameWriter writer(outer);
    for (int frame = 0; frame < 50 && !input.empty(); ++frame) {
        Canvas& canvas = canvases[below(4) / 3];
        for (std::size_t edits = 1 + below(4); edits > 0; --edits)
            testing::edit(canvas, below);
        const std::string bytes = writer.frame(canvas);
        screen.terminal.feed(std::string_view(bytes).substr(0, bytes.size() / 2));
        screen.terminal.feed(std::string_view(bytes).substr(bytes.size() / 2));
        require(screen.difference(canvas, outer).empty(), "the screen shows the canvas");
        require(writer.frame(canvas).empty(), "nothing is sent for what is shown");
    }
    return 0;
}
