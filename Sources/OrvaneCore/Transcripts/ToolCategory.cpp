#include "OrvaneCore/Transcripts/ToolCategory.h"

#include <algorithm>
#include <utility>

namespace orvane::ToolTrace {

namespace {

using enum ToolCategory;

constexpr std::pair<std::string_view, ToolCategory> categories[] = {
    {"Read", read},
    {"NotebookRead", read},
    {"read_file", read},
    {"read_many_files", read},
    {"view_image", read},
    {"read_thread_terminal", read},
    {"Edit", edit},
    {"MultiEdit", edit},
    {"apply_patch", edit},
    {"str_replace_editor", edit},
    {"replace", edit},
    {"edit", edit},
    {"Write", write},
    {"create_file", write},
    {"write_file", write},
    {"Bash", execute},
    {"BashOutput", execute},
    {"KillShell", execute},
    {"Monitor", execute},
    {"exec_command", execute},
    {"exec", execute},
    {"shell", execute},
    {"local_shell", execute},
    {"write_stdin", execute},
    {"wait", execute},
    {"run_terminal_cmd", execute},
    {"run_shell_command", execute},
    {"Grep", search},
    {"Glob", search},
    {"ToolSearch", search},
    {"codebase_search", search},
    {"list_dir", search},
    {"grep", search},
    {"glob", search},
    {"search_file_content", search},
    {"search", search},
    {"WebFetch", web},
    {"WebSearch", web},
    {"web_search", web},
    {"fetch", web},
    {"google_web_search", web},
    {"web_fetch", web},
    {"Task", task},
    {"Agent", task},
    {"TodoWrite", todo},
    {"TaskCreate", todo},
    {"TaskUpdate", todo},
    {"TaskList", todo},
    {"update_plan", todo},
};

}  // namespace

ToolCategory category(std::string_view tool) {
    const auto* const found = std::ranges::find(categories, tool, [](const auto& row) { return row.first; });
    return found == std::end(categories) ? other : found->second;
}

}  // namespace orvane::ToolTrace
