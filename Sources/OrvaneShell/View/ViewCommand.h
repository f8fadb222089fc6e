#pragma once

#include <span>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/L10n.h"

namespace orvane {

class ViewContext;

/// Something that the view does when it is asked for by a key or in the palette.
struct ViewCommand {
    enum class Group { panes, sessions, tabs, projects, view };

    Group group = Group::panes;
    /// What people bind keys to: "split-right". Never changes, for it stands in their preferences.
    std::string_view name;
    /// Key of the text that says what it does, in a few words.
    std::string_view textKey;
    void (*run)(ViewContext& view) = nullptr;
    /// Of commands that the help tells in one row, such as those of the four directions: key of that row's text.
    std::string_view familyKey = {};
    /// What stands in the text, for those that are counted; 0 for the others.
    int number = 0;
    /// One wants it several times in a row: the keys before the last one need not be typed again.
    bool repeats = false;

    std::string label(const L10n& l10n) const;
    std::string_view rowKey() const { return familyKey.empty() ? textKey : familyKey; }

    /// In the order of the help.
    static std::span<const ViewCommand> all();
    /// Null when there is none.
    static const ViewCommand* named(std::string_view name);
};

}  // namespace orvane
