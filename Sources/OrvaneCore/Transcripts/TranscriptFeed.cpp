#include "OrvaneCore/Transcripts/TranscriptFeed.h"

#include <boost/json/object.hpp>
#include <utility>
#include <variant>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/JsonList.h"
#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneCore/Transcripts/Feed/ClaudeFeed.h"
#include "OrvaneCore/Transcripts/Feed/CodexFeed.h"
#include "OrvaneCore/Transcripts/Feed/FeedState.h"
#include "OrvaneCore/Transcripts/Feed/GeminiFeed.h"
#include "OrvaneCore/Transcripts/ToolCategory.h"

namespace orvane::TranscriptFeed {

namespace {

using LineFeed = std::variant<ClaudeFeed, CodexFeed, GeminiFeed>;

bool isTool(const Entry& entry) {
    return entry.role == Role::tool || (entry.role == Role::error && !entry.tool.value_or("").empty());
}

bool isAgentLaunch(const Entry& entry) {
    return isTool(entry) && ToolTrace::category(entry.tool.value_or("")) == ToolCategory::task;
}

void closeRun(std::vector<Entry>& run, std::vector<ThreadItem>& items) {
    if (run.empty()) return;
    std::string id = run.front().id;
    items.push_back({ThreadItem::Activity{.id = std::move(id), .entries = std::exchange(run, {})}});
}

}  // namespace

struct Reader::State {
    State(Provider provider, int limit) : entries(limit) {
        if (provider == Provider::codex) feed.emplace<CodexFeed>();
        if (provider == Provider::gemini) feed.emplace<GeminiFeed>();
    }

    FeedState entries;
    LineFeed feed;
};

Reader::Reader(Provider provider, int limit) : state_(std::make_unique<State>(provider, limit)) {}

Reader::~Reader() = default;
Reader::Reader(Reader&&) noexcept = default;
Reader& Reader::operator=(Reader&&) noexcept = default;

void Reader::take(std::string_view line) {
    if (!line.starts_with('{') || state_->entries.limit() == 0) return;
    std::visit([&](auto& feed) { feed.take(line, state_->entries); }, state_->feed);
}

std::vector<Entry> Reader::finish() const {
    return state_->entries.last();
}

std::vector<Entry> entries(std::span<const std::string_view> lines, Provider provider, int limit) {
    Reader reader(provider, limit);
    for (const std::string_view line : lines)
        reader.take(line);
    return reader.finish();
}

std::vector<ThreadItem> threadItems(const std::vector<Entry>& entries) {
    std::vector<ThreadItem> items;
    std::vector<Entry> run;
    for (const Entry& entry : entries) {
        const bool isLaunch = isAgentLaunch(entry);
        if (!isLaunch && (isTool(entry) || entry.role == Role::thinking)) {
            run.push_back(entry);
            continue;
        }
        closeRun(run, items);
        if (isLaunch) {
            items.push_back({ThreadItem::Agent{entry}});
        } else {
            items.push_back({ThreadItem::Single{entry}});
        }
    }
    closeRun(run, items);
    return items;
}

const std::string& ThreadItem::id() const {
    return std::visit(Overloaded{[](const Activity& activity) -> const std::string& { return activity.id; },
                                 [](const auto& other) -> const std::string& { return other.entry.id; }},
                      item);
}

JsonValue Entry::encode() const {
    boost::json::object object{
        {"id", id}, {"role", rawValue(role)}, {"text", text}, {"attachments", encodedList(attachments)}};
    if (tool) object["tool"] = *tool;
    if (target) object["target"] = *target;
    if (at) object["at"] = at->iso8601();
    return object;
}

std::optional<Entry> Entry::decode(const JsonValue& value) {
    const JSONObject object(value);
    auto id = object.optionalString("id");
    const auto role = object.raw<Role>("role");
    if (!id || !role) return std::nullopt;
    return Entry{.id = std::move(*id),
                 .role = *role,
                 .text = object.string("text"),
                 .tool = object.optionalString("tool"),
                 .target = object.optionalString("target"),
                 .attachments = object.list("attachments", ChatPromptEnvelope::Attachment::decode),
                 .at = object.date("at")};
}

}  // namespace orvane::TranscriptFeed
