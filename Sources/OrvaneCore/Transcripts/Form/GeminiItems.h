#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "OrvaneCore/Transcripts/TranscriptRecord.h"

namespace orvane::TranscriptForm {

/// The lines of a Gemini file with its messages in their places: a record with an id that was there before replaces the
/// earlier one, and what `$set.messages` names stands once.
///
/// After a request was cancelled the CLI writes the conversation again. Each message gets a new id and all of them one
/// time, and `$set.messages` names them. The first writing stays, for it alone tells which tools ran and how.
class GeminiItems {
 public:
    struct Item {
        std::string_view line;
        std::string id;                         // empty for what is no message
        std::vector<std::string> unseenBefore;  // messages that only `$set.messages` holds, as lines
        std::string written;                    // in the line's stead
        std::optional<std::size_t> copyOf;      // the place of the message that was written again
        std::string likeness;                   // of a message, once it was asked for
    };

    /// The next line of the file, which its owner keeps.
    void take(std::string_view line);

    const std::vector<Item>& items() const { return items_; }

 private:
    struct Named;
    std::string identifier(std::string_view line);
    void takeUpdate(std::string_view line);
    static std::vector<Named> named(const TranscriptRecord& messages);
    void index();
    void place(const std::vector<Named>& messages);
    bool isCopy(const std::vector<Named>& messages, std::size_t at, std::size_t place);
    std::optional<std::size_t> original(const Named& message);

    TranscriptParser parser_;
    std::vector<Item> items_;
    std::unordered_map<std::string, std::size_t> places_;                 // of each id
    std::unordered_map<std::string, std::vector<std::size_t>> likeThis_;  // places of each likeness, rising
    std::vector<std::size_t> unindexed_;                                  // places with a line that has no likeness yet
    std::size_t rewoundAt_ = 0;                                           // a record behind it replaces none before it
    std::size_t update_ = 0;                                              // how many updates named messages
    std::unordered_map<std::string, std::size_t> namedBy_;                // of each id: the newest such update
    std::size_t searchFrom_ = 0;                                          // within one update: behind the last original
};

}  // namespace orvane::TranscriptForm
