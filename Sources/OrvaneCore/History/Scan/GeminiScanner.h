#pragma once

#include <map>
#include <string>
#include <vector>

#include "OrvaneCore/History/Scan/SessionScanner.h"

namespace orvane {

class GeminiScanner final : public SessionScanner {
 public:
    /// What a person asked for in a record of type "user": without what the program adds, which is in tags.
    static std::optional<std::string> prompt(const TranscriptRecord& record);

 protected:
    void read(std::string_view line, SessionScan::Part part) override;
    void finish() override;

 private:
    struct Message {
        std::string id;
        bool isPrompt = false;
        /// Empty for one that only carries calls of tools or their results.
        std::string text;
        std::optional<std::int64_t> tokens;
        std::optional<Date> at;
        SessionScan::Part part = SessionScan::Part::head;
    };

    void readHeader(const TranscriptRecord& header, SessionScan::Part part);
    void readMessage(const TranscriptRecord& record, SessionScan::Part part);
    /// A message that is there already by its id or, under another id, by its words.
    void readCopy(const TranscriptRecord& record, SessionScan::Part part);
    void rewind(std::string_view id);

    std::vector<Message> messages_;
    std::map<std::string, std::size_t, std::less<>> places_;  ///< in `messages_`, by id
};

}  // namespace orvane
