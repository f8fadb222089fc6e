#pragma once

#include <vector>

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/Uuid.h"

namespace orvane {

/// A session as lists show it.
struct AgentCard {
    Uuid session;
    bool needsUser = false;
    Date since;  ///< when its status last changed

    bool operator==(const AgentCard&) const = default;
};

/// In which order sessions ask for their user's eye.
namespace AttentionRank {

/// Those that need the user come first, who has waited longest before the others; else the order stays.
std::vector<AgentCard> sorted(std::vector<AgentCard> cards, Date now);

/// How many need the user.
int actionCount(const std::vector<AgentCard>& cards);

}  // namespace AttentionRank

}  // namespace orvane
