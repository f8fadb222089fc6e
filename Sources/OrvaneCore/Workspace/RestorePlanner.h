#pragma once

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <vector>

#include "OrvaneCore/Support/Uuid.h"

/// The order in which sessions come back: what the user sees at once, the rest one at a time.
namespace orvane::RestorePlanner {

template <typename Item>
struct Entry {
    Uuid projectID;
    Item item;

    bool operator==(const Entry&) const = default;
};

template <typename Item>
struct Plan {
    /// The visible ones of the selected project.
    std::vector<Entry<Item>> immediate;
    /// All others, those of the selected project first.
    std::vector<Entry<Item>> deferred;

    bool operator==(const Plan&) const = default;
};

/// A stable partition with the entries of the project in front.
template <typename Item>
std::vector<Entry<Item>> prioritizing(const Uuid& project, const std::vector<Entry<Item>>& in) {
    const auto isOfProject = [&](const Entry<Item>& entry) { return entry.projectID == project; };
    std::vector<Entry<Item>> result;
    result.reserve(in.size());
    std::ranges::copy_if(in, std::back_inserter(result), isOfProject);
    std::ranges::copy_if(in, std::back_inserter(result), std::not_fn(isOfProject));
    return result;
}

/// Both lists are in the order of the projects and of the sessions in each; sessions of a project that is not in
/// `projectOrder` are left out.
template <typename Item, typename IsVisible>
Plan<Item> plan(const std::vector<Uuid>& projectOrder, const std::map<Uuid, std::vector<Item>>& sessions,
                const std::optional<Uuid>& selectedProjectID, const IsVisible& isVisible) {
    Plan<Item> result;
    for (const Uuid& project : projectOrder) {
        const auto found = sessions.find(project);
        if (found == sessions.end()) continue;
        for (const Item& item : found->second) {
            const bool isSeen = project == selectedProjectID && isVisible(item);
            (isSeen ? result.immediate : result.deferred).push_back({.projectID = project, .item = item});
        }
    }
    if (selectedProjectID) result.deferred = prioritizing(*selectedProjectID, result.deferred);
    return result;
}

}  // namespace orvane::RestorePlanner
