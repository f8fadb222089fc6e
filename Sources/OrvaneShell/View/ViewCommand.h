#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneShell/View/Input/InputEvent.h"

namespace orvane {

class ViewContext;

/// What a key behind the leader does.
struct ViewCommand {
    enum class Group { panes, sessions, tabs, projects, view };

    Group group = Group::panes;
    /// As `KeyPattern` writes them; the first is the one that is shown.
    std::vector<std::string_view> keys;
    /// What the help calls them when they are not just the first: "1-9".
    std::string_view shownKeys = {};
    /// Key of the text that says what it does, in a few words.
    std::string_view textKey;
    void (*run)(ViewContext& view, const KeyEvent& key) = nullptr;

    std::string_view shown() const { return shownKeys.empty() ? keys.front() : shownKeys; }

    /// In the order of the help.
    static std::span<const ViewCommand> all();
    /// Null for a key that means nothing.
    static const ViewCommand* of(const KeyEvent& key);
};

}  // namespace orvane
