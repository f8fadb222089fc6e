#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Support/Uuid.h"
#include "OrvaneCore/Workspace/ChatRecord.h"
#include "OrvaneCore/Workspace/SurfaceKind.h"

namespace orvane {

/// A tab of a project.
struct SurfaceMeta {
    /// What a chat surface keeps of its past; the oldest entries go first.
    static constexpr std::size_t maximumChatHistory = 12;
    static constexpr std::size_t maximumChatModelMarks = 40;
    static constexpr std::size_t maximumChatNotes = 40;

    Uuid id;
    SurfaceKind kind = SurfaceKind::terminal;
    std::string title;
    /// A session id for a chat, a path for a file, a key for a Maestro task or a plan.
    std::optional<std::string> payload;
    /// A passing tab that the next preview replaces.
    bool isPreview = false;
    /// The title follows the content until the user gives one.
    bool isAutoTitle = false;
    /// The isolated worktree that the surface works in.
    std::optional<std::string> worktreePath;
    std::optional<std::string> worktreeBranch;
    std::vector<ChatHistorySegment> chatHistory;
    std::vector<ChatModelMark> chatModelMarks;
    std::vector<ChatNote> chatNotes;

    bool operator==(const SurfaceMeta&) const = default;

    /// A new workspace with a fresh id.
    static SurfaceMeta workspace(std::string title);

    /// A transcript that the history has already is not added again.
    [[nodiscard]] SurfaceMeta appendingHistory(ChatHistorySegment segment) const;
    /// A change to the model that the last mark names is not added.
    [[nodiscard]] SurfaceMeta appendingModelMark(ChatModelMark mark) const;
    [[nodiscard]] SurfaceMeta appendingNote(ChatNote note) const;
    /// With the title that the user typed, which no longer follows the content. A blank one changes nothing.
    [[nodiscard]] SurfaceMeta renamed(const std::string& title) const;

    JsonValue encode() const;
    /// None when the kind is unknown. A missing id is replaced by a fresh one.
    static std::optional<SurfaceMeta> decode(const JsonValue& json);
};

/// A tab whose closing waits for the user's word.
struct SurfaceCloseRequest {
    Uuid surfaceID;
    Uuid projectID;
    std::string title;
    SurfaceKind kind = SurfaceKind::terminal;
    std::optional<std::string> worktreePath;
    std::optional<std::string> worktreeBranch;

    bool operator==(const SurfaceCloseRequest&) const = default;
};

}  // namespace orvane
