#include "OrvaneCore/Transcripts/CallTarget.h"

#include <algorithm>
#include <array>
#include <utility>

#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane::CallTarget {

namespace {

constexpr std::array<std::string_view, 12> keys = {"file_path", "notebook_path", "pattern",     "url",
                                                   "query",     "command",       "cmd",         "path",
                                                   "skill",     "subject",       "description", "prompt"};

std::optional<std::string> unlessBlank(std::string_view text) {
    std::string line = TranscriptText::oneLine(text);
    return line.empty() ? std::nullopt : std::optional(std::move(line));
}

std::string joinedStrings(const TranscriptRecord& array) {
    std::string all;
    for (const TranscriptRecord& element : array.elements()) {
        if (const auto text = element.string()) all.append(all.empty() ? "" : " ").append(*text);
    }
    return all;
}

std::optional<std::string> ofValue(const TranscriptRecord& value) {
    return value.isArray() ? unlessBlank(joinedStrings(value)) : unlessBlank(value.string().value_or(""));
}

std::optional<std::string> ofCodexInput(const TranscriptRecord& input, TranscriptParser& inner) {
    const auto text = input.string();
    if (!text) return of(input);
    const auto parsed = inner.parse(*text);
    return parsed && parsed->isObject() ? of(*parsed) : unlessBlank(*text);
}

}  // namespace

std::optional<std::string> of(const TranscriptRecord& input) {
    for (const std::string_view key : keys) {
        if (auto target = ofValue(input[key])) return target;
    }
    return std::nullopt;
}

std::optional<std::string> ofCodexCall(const TranscriptRecord& payload, TranscriptParser& inner) {
    const TranscriptRecord arguments = payload["arguments"];
    const TranscriptRecord input = arguments.string() || arguments.isObject() ? arguments : payload["input"];
    if (payload.string("name") == "apply_patch") {
        if (auto path = patched(input.string().value_or(input.string("input").value_or("")))) return path;
    }
    auto target = ofCodexInput(input, inner);
    return target ? target : of(payload["action"]);
}

std::optional<std::string> patched(std::string_view patch) {
    constexpr std::array<std::string_view, 3> markers = {"*** Update File: ", "*** Delete File: ", "*** Add File: "};
    std::size_t first = std::string_view::npos;
    for (const std::string_view marker : markers) {
        const std::size_t at = patch.find(marker);
        if (at != std::string_view::npos) first = std::min(first, at + marker.size());
    }
    if (first == std::string_view::npos) return std::nullopt;
    const std::string_view rest = patch.substr(first);
    return unlessBlank(rest.substr(0, rest.find_first_of("\n\r\\\"")));
}

std::optional<std::string> of(const OversizedLine& line) {
    for (const std::string_view key : keys) {
        if (auto target = unlessBlank(line.value(key).value_or(""))) return target;
    }
    return std::nullopt;
}

std::optional<std::string> ofCodexCall(const OversizedLine& line, std::string_view tool) {
    if (tool == "apply_patch") return patched(line.head());
    auto command = unlessBlank(line.value("cmd").value_or(""));
    return command ? command : unlessBlank(line.value("input").value_or(""));
}

}  // namespace orvane::CallTarget
