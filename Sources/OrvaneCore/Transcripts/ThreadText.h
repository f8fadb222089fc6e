#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/L10n.h"
#include "OrvaneCore/Transcripts/TranscriptFeed.h"
#include "OrvaneCore/Transcripts/TranscriptProvider.h"

namespace orvane {

/// A conversation as a person reads it: who spoke and when, what was said, what was done in between.
namespace ThreadText {

/// What stands above it. What is empty is left out.
struct Heading {
    std::string title;
    TranscriptProvider provider = TranscriptProvider::claude;
    std::string projectPath;
    /// The agent's own id of it.
    std::string id;
    Date from;
    Date to;
};

enum class Form {
    plain,     ///< for a terminal
    markdown,  ///< a document
};

enum class Tools {
    folded,    ///< a run of them is one line
    unfolded,  ///< one line each, and one for each thought
};

struct Look {
    Form form = Form::plain;
    Tools tools = Tools::folded;
    L10n l10n;
    std::string timeZone = "UTC";
};

/// Ends with a line end. Whatever the entries hold, none of it can steer a terminal.
std::string text(const Heading& heading, const std::vector<TranscriptFeed::Entry>& entries, const Look& look);

/// The newest of the entries that as JSON take at most so many bytes together.
std::vector<TranscriptFeed::Entry> newestWithin(std::vector<TranscriptFeed::Entry> entries, std::size_t sizeInBytes);

}  // namespace ThreadText

}  // namespace orvane
