#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Paths.h"
#include "OrvaneCore/Transcripts/TranscriptReading.h"

namespace orvane {

/// The transcripts of Gemini CLI: JSON lines, in older versions one JSON document, in
/// `~/.gemini/tmp/IDENTIFIER/chats`.
namespace GeminiTranscript {

/// The words of the file.
namespace Schema {

inline constexpr std::string_view identifier = "id";
inline constexpr std::string_view kind = "type";
inline constexpr std::string_view content = "content";
inline constexpr std::string_view toolCalls = "toolCalls";
inline constexpr std::string_view toolCallStatus = "status";
inline constexpr std::string_view tokens = "tokens";
inline constexpr std::string_view promptTokens = "input";
inline constexpr std::string_view model = "model";
inline constexpr std::string_view sessionIdentifier = "sessionId";
inline constexpr std::string_view projectHash = "projectHash";
inline constexpr std::string_view conversationKind = "kind";
inline constexpr std::string_view summary = "summary";
inline constexpr std::string_view messages = "messages";
inline constexpr std::string_view metadataUpdate = "$set";
inline constexpr std::string_view rewind = "$rewindTo";
inline constexpr std::string_view userMessage = "user";
inline constexpr std::string_view geminiMessage = "gemini";
inline constexpr std::string_view errorMessage = "error";
inline constexpr std::string_view subagentConversation = "subagent";
inline constexpr std::string_view awaitingApproval = "awaiting_approval";
inline constexpr std::array<std::string_view, 3> pendingToolStatuses = {"validating", "scheduled", "executing"};
inline constexpr std::string_view sessionFilePrefix = "session-";
inline constexpr std::int64_t defaultContextWindow = 1048576;  ///< tokens
inline constexpr std::int64_t gemmaContextWindow = 256000;     ///< tokens

}  // namespace Schema

/// The file in a project's folder of the agent that names the project.
inline constexpr std::string_view projectRootMarkerName = ".project_root";

/// What the lines tell, which stand in the order of the file. A message that was taken back tells nothing, nor does
/// anything before it.
std::optional<TranscriptReading> parse(std::span<const std::string_view> lines);

/// The same of the older form; none when it is malformed or a subagent's.
std::optional<TranscriptReading> parseLegacyDocument(std::string_view text);

/// The messages of the older form as lines of the newer one; none when it is malformed.
std::vector<std::string> legacyLines(std::string_view text);

/// Tokens; none for an empty name.
std::optional<std::int64_t> contextWindow(std::string_view forModel);

/// Whether the session was held in that folder, which the file names by its hash alone.
bool belongsToProject(std::span<const std::string_view> headLines, std::string_view projectPath,
                      const PathResolution& resolved = {});

bool isSubagent(std::span<const std::string_view> headLines);

/// By its name, such as "session-2026-11-21T01-52-cef1366d.jsonl".
bool isSessionFile(std::string_view name);

/// SHA-256 of the path in hexadecimal digits, by which the agent names a project.
std::string projectHash(std::string_view forProject);

/// The folder's name in lower case with a dash for all but letters and digits, by which newer versions name it. Two
/// folders may share it.
std::string projectSlug(std::string_view forProject);

/// Where the transcripts of a project are, named by its slug, by its hash, and both in the order in which to look.
std::string transcriptDirectory(std::string_view forProject, std::string_view home);
std::string legacyTranscriptDirectory(std::string_view forProject, std::string_view home);
std::vector<std::string> candidateTranscriptDirectories(std::string_view forProject, std::string_view home);

/// Where they are by the agent's registry of projects; none when the project is not in it.
std::optional<std::string> transcriptDirectory(std::string_view forProject, std::string_view registryJSON,
                                               std::string_view home, const PathResolution& resolved = {});
std::optional<std::string> registeredIdentifier(std::string_view forProject, std::string_view registryJSON,
                                                const PathResolution& resolved = {});

/// Whether the marker file in a folder, of which this is the content, names the project.
bool directoryOwnsProject(std::string_view projectRootMarker, std::string_view projectPath,
                          const PathResolution& resolved = {});

}  // namespace GeminiTranscript

}  // namespace orvane
