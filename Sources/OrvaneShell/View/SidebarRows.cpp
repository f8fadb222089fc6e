#include "OrvaneShell/View/SidebarRows.h"

#include <algorithm>
#include <utility>

#include "OrvaneCore/Agents/AttentionRank.h"

namespace orvane {

bool SidebarRow::needsUser(const SessionController& session) {
    return session.needsAttention() || std::holds_alternative<SessionStatus::Waiting>(session.status().value);
}

std::vector<SidebarRow> SidebarRow::of(const AppStore& store, Date now, Folded folded) {
    std::vector<SidebarRow> rows;
    for (const Project& project : store.workspace().projects) {
        std::vector<AgentCard> cards;
        for (const auto& session : store.sessions()) {
            if (session->identity().projectID != project.id) continue;
            cards.push_back(
                {.session = session->id(), .needsUser = needsUser(*session), .since = session->evidence().since});
        }
        const bool isFolded = folded == Folded::hidden && store.workspace().collapsedProjects.contains(project.id);
        rows.push_back({.project = project.id, .foldedCalls = isFolded ? AttentionRank::actionCount(cards) : 0});
        if (isFolded) continue;
        for (const AgentCard& card : AttentionRank::sorted(std::move(cards), now))
            rows.push_back({.project = project.id, .session = card.session});
        for (AppStore::ComingBack& each : store.comingBack(project.id))
            rows.push_back({.project = project.id, .comingBack = std::move(each.title)});
    }
    return rows;
}

}  // namespace orvane
