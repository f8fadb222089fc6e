// What it costs to read a long conversation from its file: as a stream of blocks, into the feed of its newest entries.
// The ratio is to a plain scan of the same file for line ends, the least that anyone who reads lines has to do. Both
// are of processor time, reading included; the file is in the page cache.

#include <fmt/format.h>
#include <stdlib.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Transcripts/TranscriptFeed.h"
#include "Support/Report.h"
#include "Support/Statistics.h"
#include "Transcripts/MadeTranscript.h"

namespace orvane::benchmark {

namespace {

constexpr std::size_t blockBytes = 1 << 18;
constexpr int limit = 200;

class TemporaryFile {
 public:
    TemporaryFile() : folder_((std::filesystem::temp_directory_path() / "orvane-feed-XXXXXX").string()) {
        if (mkdtemp(folder_.data()) == nullptr) throw std::runtime_error("no temporary folder");
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        std::error_code error;
        std::filesystem::remove_all(folder_, error);
    }
    std::string path() const { return folder_ + "/transcript.jsonl"; }

 private:
    std::string folder_;
};

double processorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// Calls `take` with each block of the file.
template <typename Take>
void forEachBlock(const std::string& path, Take take) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) throw std::runtime_error("cannot open " + path);
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    std::vector<char> block(blockBytes);
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), file.get()))
        take(std::string_view(block.data(), count));
}

template <typename Take>
void forEachLine(const std::string& path, Take take) {
    std::string begun;
    forEachBlock(path, [&](std::string_view block) {
        for (std::size_t end = block.find('\n'); end != std::string_view::npos; end = block.find('\n')) {
            const std::string_view rest = block.substr(0, end);
            block.remove_prefix(end + 1);
            if (begun.empty()) {
                take(rest);
                continue;
            }
            take(std::string_view(begun += rest));
            begun.clear();
        }
        begun += block;
    });
    if (!begun.empty()) take(std::string_view(begun));
}

std::size_t lineEnds(const std::string& path) {
    std::size_t count = 0;
    forEachBlock(path, [&](std::string_view block) {
        for (std::size_t end = block.find('\n'); end != std::string_view::npos; end = block.find('\n', end + 1))
            ++count;
    });
    return count;
}

std::vector<TranscriptFeed::Entry> fed(const std::string& path, TranscriptProvider provider) {
    TranscriptFeed::Reader reader(provider, limit);
    forEachLine(path, [&](std::string_view line) { reader.take(line); });
    return reader.finish();
}

/// The most memory that this process ever had, in MB.
double peakMegabytes() {
    std::ifstream file("/proc/self/status");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("VmHWM:")) return std::strtod(line.c_str() + std::strlen("VmHWM:"), nullptr) * 1024 / 1e6;
    }
    return 0;
}

void check(bool holds, std::string_view what) {
    if (!holds) throw std::runtime_error(std::string(what));
}

double megabytesASecond(std::string_view name, double bytes, const std::vector<double>& seconds) {
    const Summary time = summary(seconds);
    report({.name = std::string(name),
            .values = fmt::format("best {:.0f}  median {:.0f}", bytes / time.minimum / 1e6, bytes / time.median / 1e6),
            .unit = "MB/s"});
    return bytes / time.minimum / 1e6;
}

void measure(TranscriptProvider provider, std::size_t bytes, int repetitions) {
    const TemporaryFile file;
    MadeTranscript made(provider);
    std::size_t written = 0;
    {
        std::ofstream stream(file.path(), std::ios::binary);
        while (written < bytes) {
            const std::string turn = made.nextTurn();
            stream << turn;
            written += turn.size();
        }
        check(stream.flush().good(), "the disk is full");
    }
    std::vector<double> scans;
    std::vector<double> feeds;
    for (int run = 0; run < repetitions; ++run) {
        double start = processorSeconds();
        check(lineEnds(file.path()) > made.turns(), "the scan missed lines");
        scans.push_back(processorSeconds() - start);
        start = processorSeconds();
        const auto entries = fed(file.path(), provider);
        feeds.push_back(processorSeconds() - start);
        const auto wanted = fmt::format("answer {}", made.turns());
        check(!entries.empty() && entries.back().text == wanted, "the feed lacks the last answer");
    }
    const std::string name(rawValue(provider));
    const double scan = megabytesASecond(name + ": scan for line ends", static_cast<double>(written), scans);
    const double feed = megabytesASecond(name + ": feed", static_cast<double>(written), feeds);
    report({.name = name + ": feed to scan",
            .values = fmt::format("{:.2f}", feed / scan),
            .unit = "ratio",
            .value = feed / scan,
            .atLeast = 0.2});
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) try {
    using namespace orvane;
    using namespace orvane::benchmark;
    bool isQuick = false;
    std::size_t megabytes = 200;
    CLI::App app("Measures how fast a transcript becomes a feed, in MB of file a second of processor time.");
    app.add_flag("--quick", isQuick, "A small file once, to see that it works");
    app.add_option("--megabytes", megabytes, "Size of the file")->check(CLI::Range(1, 100000));
    CLI11_PARSE(app, argc, argv);
    if (isQuick) megabytes = 2;
    for (const auto& [provider, name] : RawValues<TranscriptProvider>::table)
        measure(provider, megabytes * 1000 * 1000, isQuick ? 1 : 5);
    report({.name = "peak memory",
            .values = fmt::format("{:.1f}", peakMegabytes()),
            .unit = "MB",
            .value = peakMegabytes(),
            .atMost = 64});
    return EXIT_SUCCESS;
} catch (const std::exception& exception) {
    std::fputs(exception.what(), stderr);
    std::fputs("\n", stderr);
    return EXIT_FAILURE;
}
