#include "OrvaneShell/View/Keys/KeySequence.h"

#include <algorithm>
#include <ranges>
#include <span>

#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

constexpr std::string_view leaderName = "Leader";

bool isLeaderName(std::string_view word) {
    return Text::caseFolded(word) == Text::caseFolded(leaderName);
}

std::string joined(std::string first, const std::vector<KeyPattern>& keys) {
    for (const KeyPattern& key : keys)
        first += (first.empty() ? "" : " ") + KeyText::write(key);
    return first;
}

}  // namespace

std::expected<KeySequence, std::string> KeySequence::parse(std::string_view text) {
    KeySequence sequence;
    std::size_t count = 0;
    for (const auto part : std::views::split(text, ' ')) {
        const std::string_view word(part);
        if (word.empty()) continue;
        if (++count > longest) return std::unexpected(std::string(text));
        if (count == 1 && isLeaderName(word)) {
            sequence.beginsWithLeader = true;
            continue;
        }
        const auto key = KeyText::parse(word);
        if (!key) return std::unexpected(key.error());
        sequence.keys.push_back(*key);
    }
    if (sequence.keys.empty()) return std::unexpected(std::string(text));
    return sequence;
}

std::string KeySequence::text() const {
    return joined(std::string(beginsWithLeader ? leaderName : ""), keys);
}

std::string KeySequence::shown(const KeyPattern& leader) const {
    return joined(beginsWithLeader ? KeyText::write(leader) : std::string(), keys);
}

bool KeySequence::isStartOf(const KeySequence& other) const {
    return beginsWithLeader == other.beginsWithLeader && keys.size() <= other.keys.size() &&
           std::ranges::equal(keys, std::span(other.keys).first(keys.size()));
}

KeySequence KeySequence::beginning() const {
    KeySequence shorter = *this;
    if (!shorter.keys.empty()) shorter.keys.pop_back();
    return shorter;
}

}  // namespace orvane
