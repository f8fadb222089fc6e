#include "Orvane/History/SubagentReader.h"

#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>

#include "Orvane/History/ConversationFile.h"
#include "Orvane/History/FileTimes.h"
#include "OrvaneCore/Support/Paths.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"
#include "Platform/Files.h"

namespace orvane {

namespace {

constexpr std::string_view ending = ".jsonl";
constexpr std::size_t longestMeta = std::size_t{1} << 20;
constexpr std::size_t longestFile = std::size_t{256} << 20;
constexpr std::size_t firstBlock = std::size_t{64} << 10;

/// What the first line that names one names.
std::optional<std::string> sessionOf(const std::string& path) {
    TranscriptParser parser;
    std::optional<std::string> session;
    const auto look = [&](ConversationFile::Lines lines) {
        for (const std::string_view line : lines) {
            const auto record = parser.parse(line);
            if (!record || !record->contains("sessionId")) continue;
            session = record->string("sessionId").value_or("");
            break;
        }
        return !session;
    };
    (void)ConversationFile::readLines(path, firstBlock, look);
    return session;
}

/// A folder that changed just now may change again without its time telling.
bool isSettled(Date modifiedAt) {
    constexpr Seconds tick(2);
    const Seconds now = std::chrono::system_clock::now().time_since_epoch();
    return modifiedAt + tick < Date{now.count()};
}

}  // namespace

std::vector<AgentRun> SubagentReader::runs(const std::string& transcriptPath) {
    filesRead_ = 0;
    if (!transcriptPath.ends_with(ending)) return {};
    const std::string stem = transcriptPath.substr(0, transcriptPath.size() - ending.size());
    list(stem + "/subagents", folders_[0]);
    list(std::filesystem::path(transcriptPath).parent_path(), folders_[1]);
    std::vector<AgentRun> all;
    const std::optional<std::string> sessions[] = {std::nullopt, lastPathComponent(stem)};
    for (std::size_t place = 0; place < folders_.size(); ++place) {
        for (const std::string& name : folders_[place].names) {
            const std::string path = folders_[place].listedDirectory + "/" + name;
            if (path == transcriptPath) continue;
            if (auto found = run(path, sessions[place])) all.push_back(*std::move(found));
        }
    }
    return all;
}

std::optional<SubagentReader::Stamp> SubagentReader::stampOf(const std::string& path) {
    struct stat status{};
    if (stat(path.c_str(), &status) != 0) return std::nullopt;
    return Stamp{.modifiedAt = modificationTime(status), .byteSize = status.st_size};
}

void SubagentReader::list(const std::string& directory, Folder& folder) {
    const auto stamp = stampOf(directory);
    if (stamp && folder.listedDirectory == directory && folder.listedStamp == stamp) return;
    folder = {.listedDirectory = directory, .listedStamp = {}, .names = {}};
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        std::string name = entry->path().filename();
        if (name.ends_with(ending) && SubagentTrace::agentID(name)) folder.names.push_back(std::move(name));
    }
    std::ranges::sort(folder.names);
    if (stamp && isSettled(stamp->modifiedAt)) folder.listedStamp = stamp;
}

SubagentTrace::Meta SubagentReader::metaOf(const std::string& path, const std::string& agentID) {
    const std::string metaPath = path.substr(0, path.size() - ending.size()) + ".meta.json";
    SubagentTrace::Meta unknown{.agentID = agentID};
    const auto stamp = stampOf(metaPath);
    if (!stamp) return unknown;
    const auto known = metas_.find(metaPath);
    if (known != metas_.end() && known->second.stamp == *stamp) return known->second.meta.value_or(unknown);
    ++filesRead_;
    const auto text = readWholeFile(metaPath, longestMeta);
    const auto meta = text ? SubagentTrace::meta(*text, agentID) : std::nullopt;
    metas_[metaPath] = {.stamp = *stamp, .meta = meta};
    return meta.value_or(unknown);
}

std::optional<AgentRun> SubagentReader::run(const std::string& path, const std::optional<std::string>& sessionID) {
    const auto stamp = stampOf(path);
    if (!stamp) return std::nullopt;
    const SubagentTrace::Meta meta = metaOf(path, *SubagentTrace::agentID(lastPathComponent(path)));
    const auto known = cache_.find(path);
    if (known != cache_.end() && known->second.stamp == *stamp && known->second.meta == meta) return known->second.run;
    ++filesRead_;
    CachedRun cached{.stamp = *stamp, .meta = meta, .run = std::nullopt};
    if (!sessionID || sessionOf(path) == sessionID) {
        const auto read = ConversationFile::readLines(path, longestFile, [&](ConversationFile::Lines lines) {
            cached.run = SubagentTrace::run(meta, lines);
            return false;
        });
        if (!read) return std::nullopt;
    }
    return (cache_[path] = std::move(cached)).run;
}

}  // namespace orvane
