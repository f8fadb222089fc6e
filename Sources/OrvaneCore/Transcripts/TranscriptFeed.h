#pragma once

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "OrvaneCore/Chat/ChatPromptEnvelope.h"
#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Support/RawValue.h"
#include "OrvaneCore/Transcripts/TranscriptProvider.h"

namespace orvane {

/// Conversations as people read them, out of the agents' own transcript files and alike for all agents.
namespace TranscriptFeed {

using Provider = TranscriptProvider;

enum class Role {
    user,
    assistant,
    tool,
    error,  ///< with a `tool`: a call that failed
    notice,
    thinking,
};

struct Entry {
    /// Unique in a feed, and the same whenever the same beginning of a file is read.
    std::string id;
    Role role = Role::notice;
    /// Clean text; of a tool a detail of one line.
    std::string text;
    std::optional<std::string> tool;
    /// What the tool works on, one line: a path, a command, an address, a query.
    std::optional<std::string> target;
    /// Split off a prompt.
    std::vector<ChatPromptEnvelope::Attachment> attachments;
    std::optional<Date> at;

    bool operator==(const Entry&) const = default;
    JsonValue encode() const;
    /// None without an id or with a role that is not known.
    static std::optional<Entry> decode(const JsonValue& value);
};

/// What a thread shows as one thing.
struct ThreadItem {
    /// A message.
    struct Single {
        Entry entry;
        bool operator==(const Single&) const = default;
    };
    /// A run of tools and thoughts, folded. Named after its first entry.
    struct Activity {
        std::string id;
        std::vector<Entry> entries;
        bool operator==(const Activity&) const = default;
    };
    /// The launch of a subagent, never folded.
    struct Agent {
        Entry entry;
        bool operator==(const Agent&) const = default;
    };

    std::variant<Single, Activity, Agent> item;

    bool operator==(const ThreadItem&) const = default;
    const std::string& id() const;
};

/// The last `limit` entries of a file's lines, oldest first. Lines that are cut, malformed or unknown are skipped.
std::vector<Entry> entries(std::span<const std::string_view> lines, Provider provider, int limit);

/// Reads a file line by line; holds a few times `limit` entries at most, however long the file is. One thread at a
/// time.
class Reader {
 public:
    Reader(Provider provider, int limit);
    ~Reader();
    Reader(Reader&&) noexcept;
    Reader& operator=(Reader&&) noexcept;

    /// The next line of the file, with or without its line end.
    void take(std::string_view line);
    /// The last entries so far, oldest first; more lines may follow.
    std::vector<Entry> finish() const;

 private:
    struct State;
    std::unique_ptr<State> state_;
};

/// Every entry once, in order.
std::vector<ThreadItem> threadItems(const std::vector<Entry>& entries);

}  // namespace TranscriptFeed

template <>
struct RawValues<TranscriptFeed::Role> {
    static constexpr std::array table = {
        rawValueOf(TranscriptFeed::Role::user, "user"),     rawValueOf(TranscriptFeed::Role::assistant, "assistant"),
        rawValueOf(TranscriptFeed::Role::tool, "tool"),     rawValueOf(TranscriptFeed::Role::error, "error"),
        rawValueOf(TranscriptFeed::Role::notice, "notice"), rawValueOf(TranscriptFeed::Role::thinking, "thinking"),
    };
};

}  // namespace orvane
