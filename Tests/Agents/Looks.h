#pragma once

#include <string>
#include <vector>

#include "OrvaneCore/Agents/SessionKind.h"

namespace orvane::testing {

/// A file below Tests/Recordings.
std::string recordingText(const std::string& name);

/// A moment of a recording, as a line of looks.tsv tells it.
struct Look {
    std::string recording, moment, bytes, title, status, question, options, keys;

    SessionKind kind() const { return *fromRawValue<SessionKind>(recording.substr(0, recording.find('-'))); }
    int cols() const { return recording.ends_with("120x40") ? 120 : 80; }
    int rows() const { return recording.ends_with("120x40") ? 40 : 25; }
    /// Of some recordings only the text of their screens is kept.
    bool hasBytes() const { return bytes != "-"; }
    std::size_t end() const { return std::stoul(bytes); }
    /// All bytes of its recording.
    std::string recorded() const;
    /// The screen as text.
    std::string screen() const { return recordingText("Agents/" + recording + "." + moment + ".txt"); }
};

/// In the order in which they were recorded.
std::vector<Look> looks();

}  // namespace orvane::testing
