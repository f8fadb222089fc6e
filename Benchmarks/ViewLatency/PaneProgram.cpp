#include "ViewLatency/PaneProgram.h"

#include <fmt/format.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <filesystem>

namespace orvane::benchmark::PaneProgram {

namespace {

/// The block Unified Canadian Aboriginal Syllabics.
constexpr unsigned firstMark = 0x1400;
constexpr std::size_t markCount = 600;
constexpr std::size_t marksOnLine = 30;

std::string encoded(unsigned code) {
    return {static_cast<char>(0xE0U | (code >> 12U)), static_cast<char>(0x80U | ((code >> 6U) & 0x3FU)),
            static_cast<char>(0x80U | (code & 0x3FU))};
}

bool put(std::string_view text) {
    return write(STDOUT_FILENO, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

int echoKeys() {
    termios settings{};
    if (tcgetattr(STDIN_FILENO, &settings) != 0) return 1;
    cfmakeraw(&settings);
    if (tcsetattr(STDIN_FILENO, TCSANOW, &settings) != 0 || !put(readyMark())) return 1;
    std::array<char, 64> keys{};
    for (std::size_t key = 0;;) {
        const ssize_t count = read(STDIN_FILENO, keys.data(), keys.size());
        if (count <= 0) return 0;
        std::string answer;
        for (ssize_t index = 0; index < count; ++index, ++key) {
            if (key % marksOnLine == 0) answer += "\r\x1b[K";
            answer += mark(key);
        }
        if (!put(answer)) return 0;
    }
}

int writeLines() {
    for (unsigned number = 0;;) {
        std::string lines;
        for (const unsigned end = number + 32; number != end; ++number) {
            lines += fmt::format("\x1b[3{}m{:08}\x1b[0m \x1b[38;5;{}mtest {}\x1b[0m: \x1b[1;3{}m{} ms\x1b[0m\n",
                                 1 + number % 7, number, 16 + number * 7 % 216, number * 31 % 9973, 1 + number / 5 % 6,
                                 number * 17 % 997);
        }
        if (!put(lines)) return 0;
    }
}

}  // namespace

std::string command(std::string_view name) {
    std::error_code error;
    return fmt::format("exec '{}' {} {}", std::filesystem::read_symlink("/proc/self/exe", error).string(), option,
                       name);
}

int run(std::string_view name) {
    return name == echo ? echoKeys() : writeLines();
}

std::string readyMark() {
    return encoded(firstMark);
}

std::string mark(std::size_t key) {
    return encoded(firstMark + 1 + static_cast<unsigned>(key % markCount));
}

}  // namespace orvane::benchmark::PaneProgram
