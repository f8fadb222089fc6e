#include "Orvane/History/TranscriptLocator.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

#include "Orvane/History/FileTimes.h"
#include "Orvane/History/TranscriptEnds.h"
#include "OrvaneCore/Support/Paths.h"
#include "OrvaneCore/Transcripts/ClaudeTranscript.h"
#include "OrvaneCore/Transcripts/CodexTranscript.h"
#include "OrvaneCore/Transcripts/ConversationID.h"
#include "OrvaneCore/Transcripts/Form/TranscriptForm.h"
#include "OrvaneCore/Transcripts/GeminiTranscript.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"
#include "Platform/Files.h"

namespace orvane::TranscriptLocator {

namespace {

namespace fs = std::filesystem;

/// File systems and agents round their times.
constexpr Seconds clockSlack{2};
constexpr std::size_t registryLimit = std::size_t{4} << 20;

struct Candidate {
    std::string path;
    Date modifiedAt;
    /// As the file tells it.
    Date startedAt;
};

using Filter = std::function<bool(const std::string& name)>;

/// The files of a folder that were written to since then.
void collect(const std::string& folder, Date since, const Filter& isMeant, std::vector<Candidate>& into) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const std::string path = entry->path();
        if (!isMeant(entry->path().filename())) continue;
        struct stat status{};
        if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
        const Date modifiedAt = modificationTime(status);
        if (modifiedAt + clockSlack >= since) into.push_back({.path = path, .modifiedAt = modifiedAt, .startedAt = {}});
    }
}

/// The time in the first line that has one: Codex and Claude write it into each, Gemini into the header.
Date startOf(const std::vector<std::string_view>& head, Date fallback) {
    TranscriptParser parser;
    for (const std::string_view line : head) {
        const auto record = parser.parse(line);
        if (!record) continue;
        const TranscriptRecord payload = (*record)["payload"];
        // Codex tells the time of its start in the payload, and writes the file with the first prompt.
        for (const auto& text : {record->string("timestamp"), payload.string("timestamp"), record->string("startTime")})
            if (const auto date = text ? Date::parseIso8601(*text) : std::nullopt) return *date;
    }
    return fallback;
}

/// Claude makes the name of a project's folder of its path, older versions of the slashes alone.
std::vector<std::string> claudeFolders(const SessionTelemetry& telemetry, const std::string& home) {
    std::error_code error;
    const std::string real = fs::canonical(telemetry.projectPath, error);
    std::vector<std::string> folders;
    for (std::string path : {telemetry.projectPath, real}) {
        if (path.empty()) continue;
        std::ranges::replace(path, '/', '-');
        folders.push_back(joinedPath(home, ".claude/projects/" + path));
        constexpr auto isKept = [](unsigned char c) { return std::isalnum(c) != 0 || c == '-'; };
        std::ranges::replace_if(path, std::not_fn(isKept), '-');
        folders.push_back(joinedPath(home, ".claude/projects/" + path));
    }
    std::ranges::sort(folders);
    const auto repeated = std::ranges::unique(folders);
    folders.erase(repeated.begin(), repeated.end());
    return folders;
}

/// `~/.codex/sessions/YYYY/MM/DD`, the newest first. A conversation that is taken up goes on in a file of any day; a
/// new one's is of the day on which it began, wherever on earth that was.
std::vector<std::string> codexFolders(const SessionTelemetry& telemetry, const std::string& home) {
    constexpr Seconds day{24 * 60 * 60};
    const bool isNew = !telemetry.resumeID && !telemetry.mayContinueOlder;
    std::string first = isNew ? (telemetry.beginning() - day).iso8601().substr(0, 10) : std::string();
    std::ranges::replace(first, '-', '/');
    const std::string root = joinedPath(home, ".codex/sessions");
    std::vector<std::string> folders;
    std::error_code error;
    fs::recursive_directory_iterator entry(root, fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (!entry->is_directory(error)) continue;
        if (entry.depth() == 2) entry.disable_recursion_pending();
        const std::string path = entry->path();
        if (entry.depth() != 2 || path.substr(root.size() + 1) >= first) folders.push_back(path);
    }
    std::ranges::sort(folders, std::greater());
    return folders;
}

std::string realPath(const std::string& path) {
    std::error_code error;
    const fs::path real = fs::canonical(path, error);
    return error ? path : real.string();
}

std::vector<std::string> geminiFolders(const SessionTelemetry& telemetry, const std::string& home) {
    std::vector<std::string> folders;
    if (const auto registry = readWholeFile(joinedPath(home, ".gemini/projects.json"), registryLimit)) {
        const auto registered = GeminiTranscript::transcriptDirectory(telemetry.projectPath, *registry, home, realPath);
        if (registered) folders.push_back(*registered);
    }
    for (std::string& folder : GeminiTranscript::candidateTranscriptDirectories(telemetry.projectPath, home))
        if (std::ranges::find(folders, folder) == folders.end()) folders.push_back(std::move(folder));
    return folders;
}

std::vector<std::string> foldersOf(const SessionTelemetry& telemetry, const std::string& home) {
    switch (telemetry.kind) {
        case TranscriptProvider::claude:
            return claudeFolders(telemetry, home);
        case TranscriptProvider::codex:
            return codexFolders(telemetry, home);
        case TranscriptProvider::gemini:
            return geminiFolders(telemetry, home);
    }
    return {};
}

bool isTranscriptName(TranscriptProvider kind, const std::string& name) {
    if (kind == TranscriptProvider::gemini) return GeminiTranscript::isSessionFile(name);
    // "agent-….jsonl" are the side files of subagents.
    return name.ends_with(".jsonl") && !name.starts_with("agent-");
}

/// Whether the session may have written the file by what its first lines tell.
bool belongs(const SessionTelemetry& telemetry, const std::vector<std::string_view>& head) {
    switch (telemetry.kind) {
        case TranscriptProvider::claude:
            // Its folder is the project's already.
            return !telemetry.expectsSuccessor ||
                   ClaudeTranscript::isClearSuccessor(TranscriptForm::normalized(telemetry.kind, head));
        case TranscriptProvider::codex:
            return CodexTranscript::belongsToProject(head, telemetry.projectPath) ||
                   CodexTranscript::belongsToProject(head, realPath(telemetry.projectPath));
        case TranscriptProvider::gemini:
            return GeminiTranscript::belongsToProject(head, telemetry.projectPath, realPath) &&
                   !GeminiTranscript::isSubagent(head);
    }
    return false;
}

/// Begun since the session was: the one whose beginning is nearest to what the session was last asked. Else, when the
/// session goes on with an older conversation, the one that was written to last.
std::optional<std::string> best(std::vector<Candidate> candidates, const SessionTelemetry& telemetry) {
    const auto isNew = [&](const Candidate& each) { return each.startedAt + clockSlack >= telemetry.beginning(); };
    const Date asked = telemetry.promptedAt.value_or(telemetry.beginning());
    const auto distance = [&](const Candidate& each) { return std::abs((each.startedAt - asked).count()); };
    const auto old = std::ranges::partition(candidates, isNew);
    const auto nearest = std::ranges::min_element(candidates.begin(), old.begin(), {}, distance);
    if (nearest != old.begin()) return nearest->path;
    const auto newest = std::ranges::max_element(old, {}, &Candidate::modifiedAt);
    const bool isOlderMeant = telemetry.mayContinueOlder && !telemetry.expectsSuccessor;
    return newest == old.end() || !isOlderMeant ? std::nullopt : std::optional(newest->path);
}

/// By the name of the file, which for Claude is the id, and for Codex ends in it; Gemini's has eight characters of it.
std::optional<std::string> named(const SessionTelemetry& telemetry, const std::string& home, const std::string& id) {
    constexpr std::size_t shownByGemini = 8;
    const Filter isMeant = [&](const std::string& name) {
        if (telemetry.kind == TranscriptProvider::claude) return name == id + ".jsonl";
        if (telemetry.kind == TranscriptProvider::codex) return name.ends_with("-" + id + ".jsonl");
        return GeminiTranscript::isSessionFile(name) && name.contains(id.substr(0, shownByGemini));
    };
    std::vector<Candidate> candidates;
    for (const std::string& folder : foldersOf(telemetry, home))
        collect(folder, Date{}, isMeant, candidates);
    TranscriptEnds ends;
    std::erase_if(candidates, [&](const Candidate& each) {
        return telemetry.kind == TranscriptProvider::gemini &&
               (!ends.read(each.path) || conversationID(telemetry.kind, each.path, ends.head()) != id);
    });
    const auto newest = std::ranges::max_element(candidates, {}, &Candidate::modifiedAt);
    return newest == candidates.end() ? std::nullopt : std::optional(newest->path);
}

}  // namespace

std::optional<std::string> find(const SessionTelemetry& telemetry, const std::string& home,
                                const std::set<std::string>& taken) {
    if (telemetry.resumeID && !telemetry.expectsSuccessor) {
        auto path = named(telemetry, home, *telemetry.resumeID);
        if (path && taken.contains(*path)) return std::nullopt;
        if (path || !telemetry.mayContinueOlder) return path;
    }
    const auto isMeant = [&](const std::string& name) { return isTranscriptName(telemetry.kind, name); };
    std::vector<Candidate> found;
    for (const std::string& folder : foldersOf(telemetry, home))
        collect(folder, telemetry.beginning(), isMeant, found);
    TranscriptEnds ends;
    std::vector<Candidate> candidates;
    for (Candidate& each : found) {
        if (taken.contains(each.path) || each.path == telemetry.abandonedURL || !ends.read(each.path)) continue;
        if (!belongs(telemetry, ends.head())) continue;
        each.startedAt = startOf(ends.head(), each.modifiedAt);
        candidates.push_back(std::move(each));
    }
    return best(std::move(candidates), telemetry);
}

}  // namespace orvane::TranscriptLocator
