#include "Orvane/History/HistoryFiles.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <functional>
#include <span>
#include <utility>

#include "Orvane/History/FileTimes.h"
#include "Orvane/History/GeminiDocument.h"
#include "Orvane/History/TranscriptEnds.h"
#include "OrvaneCore/History/SessionHistory.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/GeminiTranscript.h"
#include "Platform/Files.h"

namespace orvane::HistoryFiles {

namespace {

/// Deeper folders than an agent makes.
constexpr int deepestFolder = 8;

enum class EntryKind {
    file,
    folder,
    linkedFolder,  ///< which may be one above it
};
using Visit = std::function<void(EntryKind kind, const std::string& name, const struct stat& status)>;

bool look(DIR* folder, const std::string& name, struct stat& status, int flags) {
    return fstatat(dirfd(folder), name.c_str(), &status, flags) == 0;
}

/// Calls `visit` for the files and folders in a folder; none in one that cannot be read.
void visitFolder(const std::string& path, const Visit& visit) {
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(path.c_str()), &closedir);
    if (!folder) return;
    while (const dirent* entry = readdir(folder.get())) {
        const std::string name = entry->d_name;
        struct stat status{};
        if (name == "." || name == ".." || !look(folder.get(), name, status, AT_SYMLINK_NOFOLLOW)) continue;
        const bool isLink = S_ISLNK(status.st_mode);
        if (isLink && !look(folder.get(), name, status, 0)) continue;
        if (S_ISREG(status.st_mode)) visit(EntryKind::file, name, status);
        if (S_ISDIR(status.st_mode)) visit(isLink ? EntryKind::linkedFolder : EntryKind::folder, name, status);
    }
}

class Listing {
 public:
    void addClaude(const std::string& projects) {
        visitFolder(projects, [&](EntryKind kind, const std::string& name, const struct stat&) {
            if (kind == EntryKind::file) return;
            File prototype{.provider = TranscriptProvider::claude};
            if (name.starts_with('-')) {
                prototype.pathHint = name;
                std::ranges::replace(prototype.pathHint, '-', '/');
            }
            addFolder(projects + "/" + name, 0, prototype, isJsonLines);
        });
    }

    void addCodex(const std::string& sessions) {
        addFolder(sessions, deepestFolder, {.provider = TranscriptProvider::codex}, isJsonLines);
    }

    void addGemini(const std::string& temporary) {
        visitFolder(temporary, [&](EntryKind kind, const std::string& name, const struct stat&) {
            if (kind == EntryKind::file) return;
            const std::string folder = temporary + "/" + name;
            addFolder(folder + "/chats", 0,
                      {.provider = TranscriptProvider::gemini,
                       .markerPath = folder + "/" + std::string(GeminiTranscript::projectRootMarkerName)},
                      isGeminiFile);
        });
    }

    std::vector<File> files;

 private:
    static bool isJsonLines(const std::string& name) { return name.ends_with(".jsonl"); }

    static bool isGeminiFile(const std::string& name) { return GeminiTranscript::isSessionFile(name); }

    void addFolder(const std::string& path, int depth, const File& prototype,
                   bool (*isTranscript)(const std::string&)) {
        visitFolder(path, [&](EntryKind kind, const std::string& name, const struct stat& status) {
            if (kind == EntryKind::folder && depth > 0)
                addFolder(path + "/" + name, depth - 1, prototype, isTranscript);
            if (kind != EntryKind::file || !isTranscript(name)) return;
            File& file = files.emplace_back(prototype);
            file.path = path + "/" + name;
            file.modifiedAt = modificationTime(status);
            file.byteSize = status.st_size;
        });
    }
};

std::optional<std::string> projectPathHint(const File& file) {
    constexpr std::size_t longestMarker = 64 << 10;
    if (file.markerPath.empty()) return file.pathHint;
    const auto marker = readWholeFile(file.markerPath, longestMarker);
    return marker ? std::optional<std::string>(Text::trimmed(*marker)) : std::nullopt;
}

using Lines = std::span<const std::string_view>;

std::optional<SessionRecord> recordOf(const File& file, Lines head, Lines tail) {
    return SessionHistory::record({.path = file.path,
                                   .provider = file.provider,
                                   .modifiedAt = file.modifiedAt,
                                   .byteSize = static_cast<std::size_t>(file.byteSize),
                                   .projectPathHint = projectPathHint(file)},
                                  head, tail);
}

/// It has no lines, so it is read whole.
std::optional<Reading> readDocument(const File& file) {
    const auto text = GeminiDocument::lines(file.path);
    if (!text) return std::nullopt;
    const std::vector<std::string_view> lines(text->begin(), text->end());
    return Reading{.file = file, .record = recordOf(file, lines, {})};
}

}  // namespace

std::vector<File> list(const std::string& home) {
    Listing listing;
    listing.addClaude(home + "/.claude/projects");
    listing.addCodex(home + "/.codex/sessions");
    listing.addGemini(home + "/.gemini/tmp");
    return std::move(listing.files);
}

std::optional<Reading> read(const File& file, TranscriptEnds& ends) {
    if (GeminiDocument::isOne(file.path)) return readDocument(file);
    const auto now = ends.read(file.path);
    if (!now) return std::nullopt;
    Reading reading{.file = file, .record = std::nullopt};
    reading.file.modifiedAt = now->modifiedAt;
    reading.file.byteSize = now->byteSize;
    reading.record = recordOf(reading.file, ends.head(), ends.tail());
    return reading;
}

}  // namespace orvane::HistoryFiles
