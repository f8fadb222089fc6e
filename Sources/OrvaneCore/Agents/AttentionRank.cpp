#include "OrvaneCore/Agents/AttentionRank.h"

#include <algorithm>

namespace orvane::AttentionRank {

std::vector<AgentCard> sorted(std::vector<AgentCard> cards, Date now) {
    // A clock that was set back must not put a card behind those that wait since a moment ago.
    const auto waited = [now](const AgentCard& card) {
        return card.needsUser ? std::max(now - card.since, Seconds{}) : Seconds{-1};
    };
    std::ranges::stable_sort(cards, std::ranges::greater(), waited);
    return cards;
}

int actionCount(const std::vector<AgentCard>& cards) {
    return static_cast<int>(std::ranges::count(cards, true, &AgentCard::needsUser));
}

}  // namespace orvane::AttentionRank
