#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Support/Uuid.h"

namespace orvane {

/// A command-line agent that the user added.
struct AgentSpec {
    enum class ValidationError { emptyName, emptyCommand, duplicateName };

    Uuid id;
    std::string name;
    /// The shell command line that starts it.
    std::string command;
    /// Name of its icon.
    std::string symbol;
    /// In the form of `ProjectPalette::colorHex`; empty when none was chosen.
    std::string colorHex;
    /// Regular expressions over the screen that mean "working" and "needs the user".
    std::vector<std::string> busyPatterns;
    std::vector<std::string> waitingPatterns;

    bool operator==(const AgentSpec&) const = default;

    /// The first thing that keeps an agent from being added, or none. Blanks and tabs at the ends of either text do not
    /// count, nor does the case of a name. Whoever edits an agent leaves it out of `existing`.
    static std::optional<ValidationError> validate(std::string_view name, std::string_view command,
                                                   const std::vector<AgentSpec>& existing);

    JsonValue encode() const;
    /// None without a name or a command. A missing id is replaced by a fresh one; a colour that is none is left out.
    static std::optional<AgentSpec> decode(const JsonValue& json);
};

}  // namespace orvane
