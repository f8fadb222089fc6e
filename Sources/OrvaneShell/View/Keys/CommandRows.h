#pragma once

#include <string>
#include <vector>

#include "OrvaneShell/View/ViewContext.h"

namespace orvane {

/// A command, or a family of them, as the help tells it.
struct CommandRow {
    ViewCommand::Group group = ViewCommand::Group::panes;
    std::string keys;
    std::string text;
    std::string_view textKey;

    /// What can be typed behind the keys that are typed already; with none of them everything that has keys, those
    /// behind the leader without it where there are no others.
    static std::vector<CommandRow> of(const ViewContext& view, const KeySequence& typed);
};

/// A key sequence in few columns, with arrows for their names.
std::string shortKeys(const std::string& keys);

}  // namespace orvane
