#include "History/Following.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Orvane/History/TranscriptTail.h"
#include "OrvaneCore/Transcripts/TranscriptReader.h"
#include "Support/Report.h"
#include "Support/Statistics.h"
#include "Support/TemporaryEnvironment.h"
#include "Transcripts/MadeTranscript.h"

namespace orvane::benchmark {

namespace {

/// Bytes in front of the end that nobody reads may be a hole.
std::string makeTranscript(const std::string& folder, std::size_t size, MadeTranscript& made) {
    std::string path = folder + "/long.jsonl";
    std::string end = "\n";
    while (end.size() < 2 * TranscriptTail::keptBytes)
        end += made.nextTurn();
    std::ofstream(path).close();
    if (truncate(path.c_str(), static_cast<off_t>(size - std::min(size, end.size()))) != 0)
        throw std::runtime_error("cannot make " + path);
    std::ofstream(path, std::ios::app | std::ios::binary) << end;
    return path;
}

}  // namespace

void measureFollowing(std::size_t fileSize, int checks) {
    using Milliseconds = std::chrono::milliseconds;
    const TemporaryEnvironment environment;
    MadeTranscript made(TranscriptProvider::claude);
    TranscriptTail tail(makeTranscript(environment.folder(), fileSize, made));
    tail.check();
    const std::uint64_t first = tail.bytesRead();
    std::size_t added = 0;
    std::vector<double> times;
    for (int check = 0; check < checks; ++check) {
        const std::string turn = made.nextTurn();
        std::ofstream(tail.path(), std::ios::app | std::ios::binary) << turn;
        added += turn.size();
        bool isRead = false;
        times.push_back(timeOf<Milliseconds>([&] {
            isRead = tail.check() == TranscriptTail::Change::grown &&
                     TranscriptReader::read(TranscriptProvider::claude, tail.lines()).has_value();
        }));
        if (!isRead) throw std::runtime_error("a check did not see that the transcript has grown");
    }
    std::ranges::sort(times);
    const double perByte = static_cast<double>(tail.bytesRead() - first) / static_cast<double>(added);
    report({.name = fmt::format("following {} MB, first check", fileSize >> 20U),
            .values = fmt::format("{}", first >> 10U),
            .unit = "KB read"});
    report({.name = "  each later check, read to added",
            .values = fmt::format("{:.2f}", perByte),
            .unit = "times",
            .value = perByte,
            .atMost = 1});
    report({.name = "  its time",
            .values = fmt::format("median {:.2f}  p99 {:.2f}", times[times.size() / 2], times[times.size() * 99 / 100]),
            .unit = "ms"});
}

}  // namespace orvane::benchmark
