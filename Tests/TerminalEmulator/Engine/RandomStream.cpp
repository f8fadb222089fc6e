#include "TerminalEmulator/Engine/RandomStream.h"

#include <array>
#include <string_view>

namespace orvane::testing {

namespace {

constexpr auto texts = std::to_array<std::string_view>({
    "hello world ", "0123456789", "漢字かな", "e\u0301", "👩\u200D👩\u200D👧",
    "🇩🇪",           "❤\uFE0F",    "⌚\uFE0E", "é",       "\xC3",
    "\xF0\x9F",     "\xFF",       "\x7F",     "\u0085",  "\r\n",
    "\r",           "\n",         "\t",       "\b",      "\x0E",
    "\x0F",         "\a",         "\x84",     "\x05",
});

constexpr auto escapes = std::to_array<std::string_view>({
    "\x1b"
    "7",
    "\x1b"
    "8",
    "\x1b"
    "D",
    "\x1b"
    "E",
    "\x1b"
    "M",
    "\x1b"
    "H",
    "\x1b"
    "6",
    "\x1b"
    "9",
    "\x1b"
    "c",
    "\x1b(0",
    "\x1b)A",
    "\x1b(B",
    "\x1bN",
    "\x1bn",
    "\x1b#8",
    "\x1b#6",
    "\x1b#5",
    "\x1b=",
    "\x1bV",
    "\x1bW",
    "\x1b G",
    "\x1b F",
    "\x1b[!p",
    "\x1b[?69h",
    "\x1b[?6h",
    "\x1b[?7l",
    "\x1b[?7h",
    "\x1b[4h",
    "\x1b[4l",
    "\x1b[?45h",
    "\x1b[?1049h",
    "\x1b[?1049l",
    "\x1b[?1047h",
    "\x1b[?47l",
    "\x1b[?2026h",
    "\x1b[?2026l",
    "\x1b[1\"q",
    "\x1b[0\"q",
    "\x1b[2*x",
    "\x1b]0;title\a",
    "\x1b]8;id=1;https://a.example\x1b\\",
    "\x1b]8;;\x1b\\",
    "\x1b]2;cut",
    "\x1bP$qm\x1b\\",
    "\x1b_Gabc\x1b\\",
    "\x1bXsos\x1b\\",
    "\x1b[>4;1m",
    "\x1b[?u",
    "\x1b[>1u",
    "\x1b[6n",
    "\x1b[c",
    "\x1b[?1$p",
    "\x1b]4;1;?\a",
    "\x1b]10;?\x1b\\",
    "\x1b[18t",
    "\x18",
    "\x1a",
    "\x1b[1;2",
    "\x1b]52;c;?\a",
    "\x1b[3J",
});

constexpr std::string_view finals = "ABCDEFGHIJKLMPSTXZ@`abdefgmrsu";

}  // namespace

std::string randomStream(std::mt19937& random, int tokens) {
    const auto below = [&](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    const auto number = [&] {
        const std::size_t kind = below(10);
        return kind == 0 ? std::string()
                         : std::to_string(kind == 1 ? below(1'000'000'000) : below(kind < 4 ? 120 : 12));
    };
    std::string stream;
    for (int token = 0; token < tokens; ++token) {
        const std::size_t kind = below(10);
        if (kind < 4) {
            stream += texts[below(texts.size())];
        } else if (kind < 6) {
            stream += escapes[below(escapes.size())];
        } else {
            stream += "\x1b[" + number();
            for (std::size_t more = below(6); more > 2; --more)
                stream += (below(8) == 0 ? ':' : ';') + number();
            if (below(8) == 0) stream += "$'* \"?>"[below(7)];
            stream += finals[below(finals.size())];
        }
    }
    return stream;
}

}  // namespace orvane::testing
