#pragma once

#include "OrvaneCore/History/Scan/SessionScanner.h"

namespace orvane {

class ClaudeScanner final : public SessionScanner {
 public:
    /// What a person asked for in a record of type "user"; none for tool results, notes of the program's own, commands
    /// that it carries out itself and interruptions. A sidechain's is what its agent was asked.
    static std::optional<std::string> prompt(const TranscriptRecord& record);

 protected:
    void read(std::string_view line, SessionScan::Part part) override;

 private:
    void readMessage(std::string_view line, SessionScan::Part part);
    void readCut(std::string_view line, SessionScan::Part part);
    void addUsage(const TranscriptRecord& message);
};

}  // namespace orvane
