#include "OrvaneCore/Workspace/SurfaceMeta.h"

#include <algorithm>
#include <boost/json.hpp>
#include <string_view>
#include <utility>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneCore/Support/Text.h"

namespace orvane {

namespace {

template <typename Entry>
std::vector<Entry> newest(std::vector<Entry> entries, std::size_t limit) {
    if (entries.size() > limit) entries.erase(entries.begin(), entries.end() - static_cast<std::ptrdiff_t>(limit));
    return entries;
}

template <typename Entry>
void append(std::vector<Entry>& entries, Entry entry, std::size_t limit) {
    entries.push_back(std::move(entry));
    entries = newest(std::move(entries), limit);
}

void put(boost::json::object& object, std::string_view key, const std::optional<std::string>& text) {
    if (text) object[key] = *text;
}

template <typename Entry>
void put(boost::json::object& object, std::string_view key, const std::vector<Entry>& entries) {
    if (entries.empty()) return;
    JsonArray array;
    for (const Entry& entry : entries)
        array.push_back(entry.encode());
    object[key] = std::move(array);
}

}  // namespace

SurfaceMeta SurfaceMeta::workspace(std::string title) {
    return {.id = Uuid::random(), .kind = SurfaceKind::terminal, .title = std::move(title)};
}

SurfaceMeta SurfaceMeta::appendingHistory(ChatHistorySegment segment) const {
    SurfaceMeta meta = *this;
    const bool known = std::ranges::any_of(
        chatHistory, [&](const ChatHistorySegment& kept) { return kept.transcriptPath == segment.transcriptPath; });
    if (!known) append(meta.chatHistory, std::move(segment), maximumChatHistory);
    return meta;
}

SurfaceMeta SurfaceMeta::appendingModelMark(ChatModelMark mark) const {
    SurfaceMeta meta = *this;
    const bool repeated = !chatModelMarks.empty() && chatModelMarks.back().to == mark.to;
    if (!repeated) append(meta.chatModelMarks, std::move(mark), maximumChatModelMarks);
    return meta;
}

SurfaceMeta SurfaceMeta::appendingNote(ChatNote note) const {
    SurfaceMeta meta = *this;
    append(meta.chatNotes, std::move(note), maximumChatNotes);
    return meta;
}

SurfaceMeta SurfaceMeta::renamed(const std::string& newTitle) const {
    SurfaceMeta meta = *this;
    const std::string_view given = Text::trimmed(newTitle);
    if (given.empty()) return meta;
    meta.title = given;
    meta.isAutoTitle = false;
    return meta;
}

JsonValue SurfaceMeta::encode() const {
    boost::json::object object{{"id", id.upperText()},
                               {"kind", rawValue(kind)},
                               {"title", title},
                               {"isPreview", isPreview},
                               {"isAutoTitle", isAutoTitle}};
    put(object, "payload", payload);
    put(object, "worktreePath", worktreePath);
    put(object, "worktreeBranch", worktreeBranch);
    put(object, "chatHistory", chatHistory);
    put(object, "chatModelMarks", chatModelMarks);
    put(object, "chatNotes", chatNotes);
    return object;
}

std::optional<SurfaceMeta> SurfaceMeta::decode(const JsonValue& json) {
    const JSONObject object(json);
    const std::optional<SurfaceKind> kind = object.raw<SurfaceKind>("kind");
    if (!kind) return std::nullopt;
    return SurfaceMeta{
        .id = object.uuid("id").value_or(Uuid::random()),
        .kind = *kind,
        .title = object.string("title"),
        .payload = object.optionalString("payload"),
        .isPreview = object.boolean("isPreview"),
        .isAutoTitle = object.boolean("isAutoTitle"),
        .worktreePath = object.optionalString("worktreePath"),
        .worktreeBranch = object.optionalString("worktreeBranch"),
        .chatHistory = newest(object.list("chatHistory", ChatHistorySegment::decode), maximumChatHistory),
        .chatModelMarks = newest(object.list("chatModelMarks", ChatModelMark::decode), maximumChatModelMarks),
        .chatNotes = newest(object.list("chatNotes", ChatNote::decode), maximumChatNotes)};
}

}  // namespace orvane
