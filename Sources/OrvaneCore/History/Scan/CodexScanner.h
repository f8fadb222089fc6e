#pragma once

#include <map>
#include <string>

#include "OrvaneCore/History/Scan/SessionScanner.h"

namespace orvane {

class CodexScanner final : public SessionScanner {
 public:
    /// What a person asked for, in one of the forms in which it is written down.
    struct Prompt {
        enum class Form { event, item };
        Form form = Form::event;
        /// Empty for a picture alone.
        std::string text;
    };
    static std::optional<Prompt> prompt(const TranscriptRecord& record);

 protected:
    void read(std::string_view line, SessionScan::Part part) override;
    void finish() override;

 private:
    /// How often a prompt is there in each of its forms; versions write the first, the second, or both.
    struct Written {
        std::int64_t events = 0;
        std::int64_t items = 0;
    };

    void readMeta(std::string_view line);
    void readUsage(const TranscriptRecord& record);
    void readMessage(const TranscriptRecord& record, std::string_view line, SessionScan::Part part);

    std::map<std::string, Written> prompts_;
    std::optional<std::int64_t> lastTotal_;
};

}  // namespace orvane
