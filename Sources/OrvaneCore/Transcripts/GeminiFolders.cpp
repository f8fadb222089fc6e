#include "OrvaneCore/Support/Sha256.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/GeminiTranscript.h"
#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane::GeminiTranscript {

namespace {

std::string chats(std::string_view home, std::string_view identifier) {
    return joinedPath(home, ".gemini/tmp/" + std::string(identifier) + "/chats");
}

std::string resolvedBy(const PathResolution& resolved, std::string_view path) {
    return resolved ? resolved(std::string(path)) : std::string(path);
}

/// The identifier becomes part of a path: one that leads elsewhere is none.
bool isFolderName(std::string_view identifier) {
    return !identifier.empty() && identifier != "." && identifier != ".." && !identifier.contains('/') &&
           !identifier.contains('\0');
}

}  // namespace

std::string projectHash(std::string_view forProject) {
    return sha256Hex(forProject);
}

std::string projectSlug(std::string_view forProject) {
    std::string slug;
    for (const char byte : lastPathComponent(forProject)) {
        const bool isUpper = byte >= 'A' && byte <= 'Z';
        const char letter = isUpper ? static_cast<char>(byte - 'A' + 'a') : byte;
        if ((letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9')) {
            slug += letter;
        } else if (!slug.empty() && !slug.ends_with('-')) {
            slug += '-';
        }
    }
    if (slug.ends_with('-')) slug.pop_back();
    return slug.empty() ? "project" : slug;
}

std::string transcriptDirectory(std::string_view forProject, std::string_view home) {
    return chats(home, projectSlug(forProject));
}

std::string legacyTranscriptDirectory(std::string_view forProject, std::string_view home) {
    return chats(home, projectHash(forProject));
}

std::vector<std::string> candidateTranscriptDirectories(std::string_view forProject, std::string_view home) {
    return {transcriptDirectory(forProject, home), legacyTranscriptDirectory(forProject, home)};
}

std::optional<std::string> transcriptDirectory(std::string_view forProject, std::string_view registryJSON,
                                               std::string_view home, const PathResolution& resolved) {
    const auto identifier = registeredIdentifier(forProject, registryJSON, resolved);
    return identifier ? std::optional(chats(home, *identifier)) : std::nullopt;
}

std::optional<std::string> registeredIdentifier(std::string_view forProject, std::string_view registryJSON,
                                                const PathResolution& resolved) {
    TranscriptParser parser;
    const auto registry = parser.parse(registryJSON);
    if (!registry) return std::nullopt;
    const TranscriptRecord projects = (*registry)["projects"];
    for (const std::string& path : {std::string(forProject), resolvedBy(resolved, forProject)}) {
        const auto identifier = projects.string(path);
        if (identifier && isFolderName(*identifier)) return std::string(*identifier);
    }
    return std::nullopt;
}

bool directoryOwnsProject(std::string_view projectRootMarker, std::string_view projectPath,
                          const PathResolution& resolved) {
    const std::string_view marked = Text::trimmed(projectRootMarker);
    return !marked.empty() && resolvedBy(resolved, marked) == resolvedBy(resolved, projectPath);
}

}  // namespace orvane::GeminiTranscript
