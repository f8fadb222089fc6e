#include <algorithm>
#include <array>

#include "Terminal/Pieces.h"

namespace orvane::benchmark::Pieces {

void cursorMotion(Script& script) {
    static constexpr std::array<char, 8> finals = {'A', 'B', 'C', 'D', 'E', 'F', 'G', 'd'};
    script.moveTo(script.below(script.rows()), script.below(script.cols()));
    script.put("{:c}", 'a' + script.below(26));
    for (int step = 0; step < 3; ++step) {
        const auto final = finals[static_cast<std::size_t>(script.below(finals.size()))];
        script.put("\x1B[{}{}{:c}", 1 + script.below(20), final, 'a' + script.below(26));
    }
    script.put("\b\t\r");
}

void scrollRegion(Script& script) {
    const int top = script.below(script.rows() / 2);
    const int bottom = script.rows() / 2 + script.below(script.rows() / 2);
    script.put("\x1B[{};{}r\x1B[{};1H", top + 1, bottom + 1, bottom + 1);
    for (int line = 0; line < 20; ++line) {
        script.put("\r\n");
        script.letters(script.below(script.cols()));
    }
    script.moveTo(top, 0);
    for (int line = 0; line < 5; ++line) {
        script.put("\x1BM\r");
        script.letters(script.below(script.cols()));
    }
    script.put("\x1B[{}S\x1B[{}T\x1B[r", 1 + script.below(3), 1 + script.below(3));
}

/// As an editor does them. Where the cursor is after lines were inserted, terminals differ: xterm returns it.
void edits(Script& script) {
    script.moveTo(script.below(script.rows()), script.below(script.cols()));
    switch (script.below(6)) {
        case 0:
            script.put("\x1B[{}@", 1 + script.below(10));
            break;
        case 1:
            script.put("\x1B[{}P", 1 + script.below(10));
            break;
        case 2:
            script.put("\x1B[{}L\r", 1 + script.below(3));
            break;
        case 3:
            script.put("\x1B[{}M\r", 1 + script.below(3));
            break;
        case 4:
            script.put("\x1B[{}X", 1 + script.below(10));
            break;
        default:
            script.put("\x1B[K");
            break;
    }
    script.letters(1 + script.below(10));
    if (script.below(4) != 0) return;
    script.put("\x1B[4h");
    script.letters(6);
    script.put("\x1B[4l");
}

}  // namespace orvane::benchmark::Pieces
