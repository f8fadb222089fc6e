#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "OrvaneCore/Transcripts/Form/NormalizedLines.h"
#include "OrvaneCore/Transcripts/TranscriptProvider.h"

namespace orvane {

/// What an agent's CLI writes changes with its versions, and it writes more than was said: copies, running totals,
/// notes of its own in the person's name. The readers of transcripts take lines in one form; this brings them into it.
namespace TranscriptForm {

/// The lines, which stand in the order of the file, in the form that the readers expect. Lines that are in that form,
/// that are malformed or of an unknown kind stay as they are, but blank ones go. The lines may be the tail of a file.
///
/// Claude:
/// - an interruption is no prompt but an answer without text, which ends the turn
/// - a command that ran inside the CLI is a record of type `user`
/// - of the records of one answer (`message.id`) the last alone has the usage
/// - a text that comes before a tool of the same answer is followed by the note that the agent goes on
///
/// Codex:
/// - a `token_count` tells the usage of one response (`last_token_usage`), not the total; each response has one
/// - what Codex wrote in the person's name is left out
/// - a message is one text; the item `ContextCompaction` is the event `context_compacted`
///
/// Gemini:
/// - of the records with one id the last stands in the place of the first
/// - a message that was written again under a new id, which `$set.messages` then names, stands once
/// - content is a text, without what the CLI tells about the session; a person's record without text is left out,
///   unless nothing was said since: it tells that the agent goes on
/// - a request that was cancelled is an `error`
NormalizedLines normalized(TranscriptProvider provider, std::span<const std::string_view> lines);

/// The kinds of records that no reader knows, and how many there are of each; "malformed" counts lines that are no JSON
/// object. A kind is the `type`, with Codex also that of the payload behind a slash.
std::map<std::string, std::size_t> notUnderstood(TranscriptProvider provider, std::span<const std::string_view> lines);

}  // namespace TranscriptForm

}  // namespace orvane
