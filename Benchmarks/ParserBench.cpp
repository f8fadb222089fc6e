// What the parser costs by itself: its calls go to a handler that only counts. Beside each rate stand that of a plain
// scan for control codes over the same bytes, and how many times longer ten times the input takes: 10, and
// a little more where the longer input leaves the cache and the shorter does not.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "Support/Statistics.h"
#include "TerminalEmulator/Parser/EscapeSequenceParser.h"
#include "TerminalEmulator/Parser/TextScan.h"
#include "TerminalEmulator/Unicode/UnicodeUtil.h"
#include "TerminalEmulator/Unicode/Utf8Decoder.h"

namespace orvane::benchmark {

namespace {

constexpr std::size_t chunk = 64 * 1024;

class Counter final : public ParserHandler {
 public:
    void print(std::string_view text, std::size_t /*plainCount*/) override { textBytes += text.size(); }
    void execute(std::uint8_t /*code*/) override { ++calls; }
    void csiDispatch(const CsiArguments& arguments) override {
        ++calls;
        parameters += arguments.parameters.size();
    }
    void escDispatch(char /*final*/, std::string_view /*collect*/) override { ++calls; }
    void oscDispatch(std::int32_t /*code*/, std::string_view payload, StringEnd /*end*/) override {
        ++calls;
        textBytes += payload.size();
    }
    void apcDispatch(char /*identifier*/, std::string_view /*payload*/, StringEnd /*end*/) override { ++calls; }
    DcsHandler* dcsHandler(std::string_view /*c*/, const ParserParameters& /*p*/, char /*f*/) override {
        return nullptr;
    }
    void printStateReset() override {}

    std::size_t textBytes = 0;
    std::size_t calls = 0;
    std::size_t parameters = 0;
};

struct Workload {
    std::string_view name;
    /// One of many pieces that make up the input.
    std::function<std::string(std::mt19937&)> piece;
    /// How many calls that are no text a piece makes; what is measured is checked by it.
    std::size_t callsPerPiece;
};

std::string word(std::mt19937& random, std::size_t size) {
    std::string text(size, ' ');
    for (char& letter : text)
        letter = static_cast<char>('a' + random() % 26);
    return text;
}

const std::vector<Workload> workloads = {
    {"long lines", [](auto& random) { return word(random, 400) + "\n"; }, 1},
    {"log lines", [](auto& random) { return word(random, 60 + random() % 40) + "\r\n"; }, 2},
    {"short lines", [](auto& random) { return word(random, 2) + "\n"; }, 1},
    {"CJK lines", [](auto&) { return std::string("日志输出：测试完成，没有发现任何问题。\r\n"); }, 2},
    {"dense SGR", [](auto& random) { return fmt::format("\x1B[38;5;{};1m{}", random() % 256, word(random, 1)); }, 1},
    {"true colour", [](auto& random) { return fmt::format("\x1B[48;2;{0};{0};{0}m ", random() % 256); }, 1},
    {"tiny sequences", [](auto&) { return std::string("\x1B[m"); }, 1},
    {"titles", [](auto& random) { return "\x1B]0;" + word(random, 30) + "\a"; }, 1},
    {"hyperlinks", [](auto& random) { return "\x1B]8;;https://" + word(random, 30) + "\x1B\\"; }, 2},
    {"parameters", [](auto&) { return "\x1B[" + std::string(1 << 20, ';') + "m"; }, 1},
};

struct Input {
    std::string bytes;
    std::size_t calls = 0;
};

Input inputOf(const Workload& workload, std::size_t size) {
    std::mt19937 random(1);
    Input input;
    for (; input.bytes.size() < size; input.calls += workload.callsPerPiece)
        input.bytes += workload.piece(random);
    return input;
}

double threadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

template <typename Work>
double bestSecondsOf(int repetitions, Work&& work) {
    std::vector<double> samples;
    for (; repetitions > 0; --repetitions) {
        const double start = threadSeconds();
        work();
        samples.push_back(threadSeconds() - start);
    }
    return summary(samples).minimum;
}

double parseSeconds(const Input& input, int repetitions) {
    return bestSecondsOf(repetitions, [&] {
        Counter counter;
        EscapeSequenceParser parser(counter);
        for (std::string_view rest = input.bytes; !rest.empty(); rest.remove_prefix(std::min(chunk, rest.size())))
            parser.parse(rest.substr(0, chunk));
        if (counter.calls == input.calls) return;
        fmt::print(stderr, "the parser made {} calls for {}\n", counter.calls, input.calls);
        std::exit(EXIT_FAILURE);
    });
}

double scanSeconds(const Input& input, int repetitions) {
    std::size_t controls = 0;
    const double seconds = bestSecondsOf(repetitions, [&] {
        const auto* at = reinterpret_cast<const std::uint8_t*>(input.bytes.data());
        const auto* const end = at + input.bytes.size();
        for (; at < end; ++at, ++controls)
            at += TextScan::textLength(at, static_cast<std::size_t>(end - at));
    });
    return controls == 0 ? 0 : seconds;
}

/// Of the decoder and the widths alone: what text that is no ASCII costs beside the parser.
void measureDecoder(std::string_view name, std::string_view sample, std::size_t size) {
    std::string text;
    while (text.size() < size)
        text += sample;
    std::size_t columns = 0;
    const double seconds = bestSecondsOf(5, [&] {
        Utf8Decoder decoder;
        decoder.decode(text, [&](char32_t scalar) { columns += UnicodeUtil::columnWidth(scalar); });
    });
    fmt::print("{:<16}{:>8.0f} MB/s   {} columns\n", name, static_cast<double>(text.size()) / seconds / 1e6,
               columns / 5);
}

void measure(const Workload& workload, std::size_t size, int repetitions) {
    const Input once = inputOf(workload, size);
    const Input tenfold = inputOf(workload, size * 10);
    const double seconds = parseSeconds(once, repetitions);
    const auto megabytesPerSecond = [&](double time) { return static_cast<double>(once.bytes.size()) / time / 1e6; };
    fmt::print("{:<16}{:>8.0f} MB/s   scan {:>8.0f} MB/s   10x/1x {:.2f}\n", workload.name, megabytesPerSecond(seconds),
               megabytesPerSecond(scanSeconds(once, repetitions)),
               parseSeconds(tenfold, repetitions) / seconds * static_cast<double>(once.bytes.size()) /
                   static_cast<double>(tenfold.bytes.size()) * 10);
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) try {
    using namespace orvane::benchmark;
    bool isQuick = false;
    CLI::App app("Measures the escape sequence parser, in MB of input a second of thread CPU time.");
    app.add_flag("--quick", isQuick, "A small input once, to see that it works");
    CLI11_PARSE(app, argc, argv);
    for (const Workload& workload : workloads)
        measure(workload, isQuick ? 64 * 1024 : 1 << 20, isQuick ? 1 : 9);
    measureDecoder("widths of CJK", "日志输出：测试完成，没有发现任何问题。", 1 << 20);
    measureDecoder("widths of emoji", "ok 😀👨‍👩‍👧 é ✳ ", 1 << 20);
    return 0;
} catch (const std::exception& exception) {
    std::fputs(exception.what(), stderr);
    return 1;
}
