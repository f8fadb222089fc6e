#include "OrvaneCore/Agents/Signals/AsyncTaskLedger.h"

#include <optional>

#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

/// What stands between the first `opening` and the `closing` that follows it.
std::optional<std::string_view> between(std::string_view text, std::string_view opening, std::string_view closing) {
    const std::size_t found = text.find(opening);
    if (found == std::string_view::npos) return std::nullopt;
    const std::size_t begin = found + opening.size();
    const std::size_t end = text.find(closing, begin);
    if (end == std::string_view::npos) return std::nullopt;
    return text.substr(begin, end - begin);
}

constexpr std::string_view notificationBegin = "<task-notification>";
constexpr std::string_view notificationEnd = "</task-notification>";

}  // namespace

void AsyncTaskLedger::ingest(std::string_view line) {
    if (line.contains(R"("status":"async_launched")")) {
        const auto id = between(line, R"("tool_use_id":")", "\"");
        if (id && !id->empty()) open_.emplace(*id);
    }
    // One line may tell of several tasks.
    for (std::size_t at = line.find(notificationBegin); at != std::string_view::npos;
         at = line.find(notificationBegin, at + 1)) {
        const std::string_view rest = line.substr(at);
        const std::string_view notification = rest.substr(0, rest.find(notificationEnd));
        const auto id = between(notification, "<tool-use-id>", "</tool-use-id>");
        const auto status = between(notification, "<status>", "</status>");
        if (!id || !status || Text::trimmed(*status) == "running") continue;
        if (const auto task = open_.find(Text::trimmed(*id)); task != open_.end()) open_.erase(task);
    }
}

}  // namespace orvane
