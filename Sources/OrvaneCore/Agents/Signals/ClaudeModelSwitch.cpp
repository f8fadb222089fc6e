#include "OrvaneCore/Agents/Signals/ClaudeModelSwitch.h"

#include <algorithm>
#include <array>
#include <vector>

#include "OrvaneCore/Support/Regex.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane::ClaudeModelSwitch {

namespace {

constexpr std::array<std::string_view, 6> aliases = {"default", "fable", "haiku", "opus", "opusplan", "sonnet"};
constexpr std::string_view longContextSuffix = "[1m]";

std::string lowered(std::string_view text) {
    return Text::caseFolded(text);
}

std::string group(const Regex::Match& match, std::size_t index) {
    return match.groups[index] ? std::string(match.groups[index]->text) : std::string();
}

/// "Opus 5.5" is "claude-opus-5-5"; a family alone is the alias that stands for its newest model.
std::optional<std::string> nameOf(const std::string& label) {
    static const Regex whole = *Regex::compile(R"(\bclaude-[a-z0-9][a-z0-9.-]*[a-z0-9])");
    static const Regex family = *Regex::compile(R"((?:^|\bcurrently )(?:claude )?([a-z]+)(?: (\d+)(?:\.(\d+))?)?)");
    if (const auto found = whole.firstMatch(label)) return std::string(found->whole().text);
    if (label.starts_with("opus plan")) return "opusplan";
    const std::vector<Regex::Match> names = family.allMatches(label).found;
    if (names.empty()) return std::nullopt;
    const Regex::Match& last = names.back();  // "Default (currently Opus 5.5)" is what stands behind the default
    const std::string name = group(last, 1);
    const std::string major = group(last, 2);
    const std::string minor = group(last, 3);
    if (major.empty()) return std::ranges::find(aliases, name) == aliases.end() ? std::nullopt : std::optional(name);
    return "claude-" + name + "-" + major + (minor.empty() ? "" : "-" + minor);
}

}  // namespace

std::optional<std::string> detect(std::string_view inLine) {
    static const Regex said = *Regex::compile(R"(set model to (.*?)(?: and |$))", {.ignoresCase = true});
    const auto match = said.firstMatch(inLine);
    if (!match) return std::nullopt;
    std::string label(Text::trimmed(match->groups[1]->text));
    return label.empty() ? std::nullopt : std::optional(std::move(label));
}

std::optional<std::string> detectInTerminalText(std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = text.rfind('\n');
        const std::size_t begin = end == std::string_view::npos ? 0 : end + 1;
        if (auto label = detect(text.substr(begin))) return label;
        text = text.substr(0, begin == 0 ? 0 : end);
    }
    return std::nullopt;
}

std::optional<std::string> identifier(std::string_view forLabel) {
    const std::string label = lowered(Text::trimmed(forLabel));
    auto name = nameOf(label);
    const bool isLong = label.contains("1m context") || label.contains(longContextSuffix);
    if (name && isLong) *name += longContextSuffix;
    return name;
}

}  // namespace orvane::ClaudeModelSwitch
