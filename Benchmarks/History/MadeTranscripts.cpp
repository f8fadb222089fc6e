#include "History/MadeTranscripts.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <stdexcept>

#include "OrvaneCore/History/SessionHistory.h"

namespace orvane::benchmark {

namespace {

constexpr std::array vocabulary = {"the",  "parser", "login",  "mend",   "test", "build",  "a",     "of",
                                   "form", "screen", "change", "reads",  "why",  "does",   "fail",  "value",
                                   "line", "file",   "return", "string", "über", "naïve",  "index", "cache",
                                   "slow", "queue",  "thread", "memory", "with", "result", "table", "row"};

void writeAll(int file, const std::string& bytes, std::size_t offset) {
    if (pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(offset)) != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("there is no room for the transcripts");
}

}  // namespace

MadeTranscripts::MadeTranscripts(std::string home, std::size_t count, std::size_t fileSize) : home_(std::move(home)) {
    constexpr std::size_t perProject = 50;
    for (std::size_t number = 0; number < count; ++number) {
        const std::string folder = fmt::format("{}/.claude/projects/-work-project-{}", home_, number / perProject);
        std::filesystem::create_directories(folder);
        paths_.push_back(fmt::format("{}/{}.jsonl", folder, identifier()));
        make(paths_.back(), number, fileSize);
    }
}

std::string MadeTranscripts::words(std::size_t count) {
    std::string text;
    for (std::size_t word = 0; word < count; ++word)
        text.append(text.empty() ? "" : " ").append(vocabulary[random_() % vocabulary.size()]);
    return text;
}

std::string MadeTranscripts::identifier() {
    return fmt::format("{:016x}-{:08x}", random_(), random_() & 0xFFFFFFFF);
}

/// One in ten is a prompt; the others are an answer with a call and what the tool gave back.
std::string MadeTranscripts::line() {
    const std::string common = fmt::format(
        R"("uuid":"{}","timestamp":"2026-11-{:02}T10:00:00.000Z","cwd":"/home/demo/project","sessionId":"s","version":"2")",
        identifier(), random_() % 28 + 1);
    switch (random_() % 10) {
        case 0:
            return fmt::format(
                R"({{"parentUuid":null,"isSidechain":false,"type":"user","message":{{"role":"user","content":"{}"}},{}}})",
                words(random_() % 30 + 3), common);
        case 1:
        case 2:
        case 3:
        case 4: {
            const std::string result = words(random_() % 500 + 20);
            return fmt::format(
                R"({{"parentUuid":"{}","isSidechain":false,"type":"user","message":{{"role":"user","content":[{{"tool_use_id":"t","type":"tool_result","content":"{}"}}]}},{},"toolUseResult":{{"stdout":"{}"}}}})",
                identifier(), result, common, result);
        }
        default:
            return fmt::format(
                R"({{"parentUuid":"{}","isSidechain":false,"message":{{"id":"msg_{}","type":"message","role":"assistant","content":[{{"type":"text","text":"{}"}}],"usage":{{"input_tokens":12,"cache_read_input_tokens":5000,"output_tokens":57}}}},"type":"assistant",{}}})",
                identifier(), identifier(), words(random_() % 150 + 5), common);
    }
}

std::string MadeTranscripts::lines(std::size_t size) {
    std::string text;
    while (text.size() < size)
        text += line() + "\n";
    return text;
}

void MadeTranscripts::make(const std::string& path, std::size_t number, std::size_t fileSize) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0) throw std::runtime_error("cannot write " + path);
    const std::string id = std::filesystem::path(path).stem().string();
    const std::string first = fmt::format(
        R"({{"type":"user","sessionId":"{}","cwd":"/home/demo/project-{}","uuid":"first","message":{{"content":"{}"}}}})",
        id, number % 200, words(12));
    writeAll(file, first + "\n" + lines(SessionHistory::headByteCap), 0);
    const std::string tail = "\n" + lines(SessionHistory::tailByteCap);
    writeAll(file, tail, std::max(fileSize, SessionHistory::headByteCap * 3 / 2) - tail.size());
    close(file);
}

void MadeTranscripts::dropFromCache() const {
    sync();  // what is not on the disk yet stays in memory
    for (const std::string& path : paths_) {
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED);
        close(file);
    }
}

void MadeTranscripts::growOne() {
    const std::string& path = paths_[paths_.size() / 2];
    const int file = open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    const std::string more = line() + "\n";
    if (write(file, more.data(), more.size()) < 0) throw std::runtime_error("cannot write " + path);
    close(file);
}

}  // namespace orvane::benchmark
