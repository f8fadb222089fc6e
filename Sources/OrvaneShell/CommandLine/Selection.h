#pragma once

#include <expected>
#include <string>

#include "OrvaneShell/CommandLine/Verb.h"
#include "OrvaneShell/Host/HostContext.h"

namespace orvane::Selection {

/// The project that a person means: the start of its id, its path, or its name.
std::expected<Uuid, Refusal> project(const HostContext& host, const std::string& text);

/// A session, by the start of its id.
std::expected<SessionController*, Refusal> session(const HostContext& host, const std::string& text);
/// The terminal of such a session; refused for one that has none.
std::expected<HeadlessTerminal*, Refusal> terminal(const HostContext& host, const std::string& text);

/// An agent that the user added, by its name or the start of its id. The name goes first: an agent called "ace" is
/// never another one whose id begins so. A refusal tells which agents there are.
std::expected<AgentSpec, Refusal> agent(const HostContext& host, const std::string& text);

/// A past conversation, by the start of its id, among those that the last walk found.
std::expected<SessionRecord, Refusal> conversation(const HostContext& host, const std::string& text);

/// What an id stands for.
struct Item {
    enum class Kind { session, pane, surface };
    Kind kind = Kind::session;
    Uuid id;
};
/// A session, pane or tab, by the start of its id.
std::expected<Item, Refusal> item(const HostContext& host, const std::string& text);

/// One of these ids, by its start.
std::expected<Uuid, Refusal> among(const HostContext& host, const std::string& text, const std::vector<Uuid>& ids);

}  // namespace orvane::Selection
