#pragma once

#include <array>
#include <string_view>

#include "OrvaneCore/Support/RawValue.h"

namespace orvane {

/// What kind of work a tool does.
enum class ToolCategory { read, edit, write, execute, search, web, task, todo, other };

template <>
struct RawValues<ToolCategory> {
    static constexpr std::array table = {
        rawValueOf(ToolCategory::read, "read"),     rawValueOf(ToolCategory::edit, "edit"),
        rawValueOf(ToolCategory::write, "write"),   rawValueOf(ToolCategory::execute, "execute"),
        rawValueOf(ToolCategory::search, "search"), rawValueOf(ToolCategory::web, "web"),
        rawValueOf(ToolCategory::task, "task"),     rawValueOf(ToolCategory::todo, "todo"),
        rawValueOf(ToolCategory::other, "other"),
    };
};

namespace ToolTrace {

/// By the exact name of the tool, of any agent.
ToolCategory category(std::string_view tool);

}  // namespace ToolTrace

}  // namespace orvane
