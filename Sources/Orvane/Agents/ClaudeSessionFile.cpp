#include "Orvane/Agents/ClaudeSessionFile.h"

#include <unistd.h>

#include <charconv>
#include <filesystem>

#include "Platform/Files.h"

namespace orvane {

namespace {

/// It has less than a kilobyte.
constexpr std::size_t sizeLimit = std::size_t{64} * 1024;

std::optional<pid_t> processOf(const std::filesystem::path& file) {
    if (file.extension() != ".json") return std::nullopt;
    const std::string name = file.stem().string();
    pid_t process = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
    return error == std::errc() && end == name.data() + name.size() ? std::optional(process) : std::nullopt;
}

}  // namespace

std::optional<ClaudeSessionStatus> ClaudeSessionFile::read(pid_t leader) {
    if (leader < 2) return std::nullopt;
    if (process_ && getsid(*process_) != leader) process_.reset();
    if (!process_) process_ = findProcess(leader);
    if (!process_) return std::nullopt;
    const auto text = readWholeFile(folder_ + "/" + std::to_string(*process_) + ".json", sizeLimit);
    if (!text) {
        process_.reset();
        return std::nullopt;
    }
    return ClaudeSessionStatus::parse(*text);
}

/// A process keeps the session of its terminal for life, unless it leaves it on purpose.
std::optional<pid_t> ClaudeSessionFile::findProcess(pid_t leader) const {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder_, error)) {
        const auto process = processOf(entry.path());
        if (process && getsid(*process) == leader) return process;
    }
    return std::nullopt;
}

}  // namespace orvane
