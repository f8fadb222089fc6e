#include "Terminal/PathologicalInput.h"

#include <fmt/format.h>

namespace orvane::benchmark {

namespace {

std::string repeated(std::string_view text, int count) {
    std::string all;
    all.reserve(text.size() * static_cast<std::size_t>(count));
    for (; count > 0; --count)
        all += text;
    return all;
}

std::string links(int count) {
    std::string all;
    for (int number = 0; number < count; ++number)
        all += fmt::format("\x1B]8;id={0};https://example.org/{0}\x1B\\{0}\x1B]8;;\x1B\\\r\n", number);
    return all;
}

/// Different clusters each time, so that a table of them fills.
std::string clusters(int count) {
    std::string all;
    for (int number = 0; number < count; ++number) {
        const auto mark = [&](int bits) {
            return std::string{'\xCC', static_cast<char>(0x80 + (number >> bits) % 48)};
        };
        all += static_cast<char>('a' + number % 26) + mark(0) + mark(5) + mark(10);
    }
    return all;
}

constexpr PathologicalInput inputs[] = {
    {"parameters in one CSI", [](int count) { return "\x1B[" + repeated("31;", 4 * count) + "m"; }},
    {"subparameters in one CSI", [](int count) { return "\x1B[" + repeated("4:", 4 * count) + "m"; }},
    {"digits in one parameter", [](int count) { return "\x1B[" + repeated("9", 10 * count) + "C"; }},
    {"tiny sequences", [](int count) { return repeated("\x1B[m", count); }},
    {"unknown sequences", [](int count) { return repeated("\x1B[?9$~", count); }},
    {"combining marks on one cell", [](int count) { return "e" + repeated("\u0301", count); }},
    {"different clusters", clusters},
    {"one OSC title", [](int count) { return "\x1B]0;" + repeated("title ", 2 * count) + "\a"; }},
    {"OSC titles", [](int count) { return repeated("\x1B]2;title\a", count); }},
    {"pushed titles", [](int count) { return repeated("\x1B[22t", count); }},
    {"a DCS without end", [](int count) { return "\x1BP+q" + repeated("544e;", 2 * count); }},
    {"DECSC and DECRC",
     [](int count) {
         return repeated(
             "\x1B"
             "7\x1B"
             "8",
             count);
     }},
    {"REP with huge counts", [](int count) { return "x" + repeated("\x1B[2147483647b", count); }, 100},
    {"ICH with huge counts", [](int count) { return repeated("\x1B[2147483647@", count); }},
    {"SU with huge counts", [](int count) { return repeated("\x1B[2147483647S", count); }, 100},
    {"hyperlinks", links},
    {"alternate screen in and out", [](int count) { return repeated("\x1B[?1049h\x1B[?1049l", count); }, 10},
    {"erased screens", [](int count) { return repeated("\x1B[2Jx", count); }, 10},
    {"keyboard modes pushed", [](int count) { return repeated("\x1B[>1u", count); }},
};

}  // namespace

std::span<const PathologicalInput> allPathologicalInputs() {
    return inputs;
}

}  // namespace orvane::benchmark
