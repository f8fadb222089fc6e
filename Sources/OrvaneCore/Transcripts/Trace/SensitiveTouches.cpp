#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"
#include "OrvaneCore/Transcripts/ToolTrace.h"

namespace orvane::ToolTrace {

namespace {

/// Calls `visit` with each piece between the separators until it gives true.
template <typename Visit>
bool anyPiece(std::string_view text, std::string_view separators, Visit visit) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(separators), text.size());
        if (visit(text.substr(0, end))) return true;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return false;
}

bool isSecretPart(std::string_view part) {
    const std::string_view stem = part.substr(0, part.find('.', 1));
    return stem == "secrets" || stem == "credentials" || stem == ".env";
}

bool isSensitivePath(std::string_view path) {
    const std::string rooted = "/" + normalize(path, std::nullopt);
    if (rooted.find("/.github/workflows/") != std::string::npos) return true;
    if (rooted.find("/.ssh/") != std::string::npos && !rooted.ends_with(".pub")) return true;
    return rooted.ends_with("/.ssh") || anyPiece(rooted, "/", isSecretPart);
}

bool isSensitiveCommand(std::string_view command) {
    constexpr std::array<std::string_view, 3> words = {"curl ", "wget ", "sudo "};
    const auto isIn = [&](std::string_view word) { return command.find(word) != std::string_view::npos; };
    return std::ranges::any_of(words, isIn) || isDestructiveCommand(command) ||
           anyPiece(command, " \t\n\"'`=<>|;&(){},:", isSensitivePath);
}

bool isSensitive(const ToolEvent& event) {
    if (!event.target) return false;
    switch (event.category) {
        case ToolCategory::execute:
            return isSensitiveCommand(*event.target) || (event.inputDetail && isSensitiveCommand(*event.inputDetail));
        case ToolCategory::web:
        case ToolCategory::task:
        case ToolCategory::todo:
            return false;
        case ToolCategory::read:
        case ToolCategory::edit:
        case ToolCategory::write:
        case ToolCategory::search:
        case ToolCategory::other:
            return isSensitivePath(*event.target);
    }
    return false;
}

}  // namespace

std::vector<ToolEvent> sensitiveTouches(const std::vector<ToolEvent>& events) {
    std::vector<ToolEvent> kept;
    std::ranges::copy_if(events, std::back_inserter(kept), isSensitive);
    return kept;
}

bool isDestructiveCommand(std::string_view command) {
    constexpr std::array<std::string_view, 37> marks = {
        "rm -r",
        "rm -f",
        "--no-preserve-root",
        "rmdir ",
        "shred ",
        "truncate -s",
        "mkfs",
        "dd if=",
        "dd of=",
        "of=/dev/",
        "> /dev/sd",
        "> /dev/nvme",
        "wipefs",
        " -delete",
        "-exec rm",
        "xargs rm",
        "chmod -r 777",
        "chown -r ",
        ":(){",
        "git reset --hard",
        "git clean -",
        "git push -f",
        "git push --force",
        "git checkout -- ",
        "git checkout .",
        "git restore ",
        "git branch -d",
        "git stash drop",
        "git stash clear",
        "git filter-branch",
        "drop table",
        "drop database",
        "drop schema",
        "truncate table",
        "delete from ",
        "terraform destroy",
        "docker system prune",
    };
    const std::string line = Text::caseFolded(TranscriptText::oneLine(command));
    return std::ranges::any_of(marks, [&](std::string_view mark) { return line.find(mark) != std::string::npos; });
}

}  // namespace orvane::ToolTrace
