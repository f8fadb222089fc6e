#include "OrvaneCore/Agents/ModelName.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace orvane::ModelName {

namespace {

constexpr std::string_view claudePrefix = "claude-";
constexpr std::size_t dateLength = 8;  // "20251101"

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

bool isNumber(std::string_view token) {
    return !token.empty() && std::ranges::all_of(token, isDigit);
}

/// The words of a name; a version is one word, and the day on which the model was made is none.
std::vector<std::string> words(std::string_view slug) {
    std::vector<std::string> all;
    bool inVersion = false;
    while (!slug.empty()) {
        const std::string_view token = slug.substr(0, slug.find('-'));
        slug.remove_prefix(std::min(token.size() + 1, slug.size()));
        const bool isVersion = isNumber(token);
        if (token.empty() || (isVersion && token.size() == dateLength)) continue;
        if (isVersion && inVersion) {
            all.back().append(".").append(token);
        } else {
            all.emplace_back(token);
        }
        inVersion = isVersion;
    }
    return all;
}

std::string joined(const std::vector<std::string>& words, std::string_view between) {
    std::string all;
    for (const std::string& word : words)
        all.append(all.empty() ? "" : between).append(word);
    return all;
}

bool dropSuffix(std::string_view& slug) {
    if (!slug.ends_with(largeWindowSuffix)) return false;
    slug.remove_suffix(largeWindowSuffix.size());
    return true;
}

std::string titled(std::string word) {
    if (word == "gpt") return "GPT";
    if (!word.empty()) word.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(word.front())));
    return word;
}

}  // namespace

bool isMeant(std::string_view slug, std::string_view byAlias) {
    dropSuffix(slug);
    dropSuffix(byAlias);
    return !byAlias.empty() && slug.contains(byAlias);
}

std::string shortened(std::string_view slug) {
    if (!slug.starts_with(claudePrefix)) return std::string(slug);
    slug.remove_prefix(claudePrefix.size());
    const bool isLarge = dropSuffix(slug);
    return joined(words(slug), "-") + std::string(isLarge ? largeWindowSuffix : "");
}

std::string display(std::string_view slug) {
    const bool isLarge = dropSuffix(slug);
    if (slug.starts_with(claudePrefix)) slug.remove_prefix(claudePrefix.size());
    std::vector<std::string> all = words(slug);
    std::ranges::transform(all, all.begin(), titled);
    if (all.size() > 1 && all[0] == "GPT" && isDigit(all[1].front())) {
        all[0] += "-" + all[1];
        all.erase(all.begin() + 1);
    }
    return joined(all, " ") + (isLarge ? " 1M" : "");
}

}  // namespace orvane::ModelName
