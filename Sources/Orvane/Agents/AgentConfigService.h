#pragma once

#include <cstddef>
#include <string>

#include "OrvaneCore/Agents/AgentConfig.h"

namespace orvane {

/// Reads with what model and mode an agent starts from its settings on disk, anew each time, for the user edits them.
/// What cannot be read, is too large or is no regular file counts as missing; nothing waits for it.
class AgentConfigService {
 public:
    static constexpr std::size_t sizeLimit = std::size_t{4} << 20;  ///< bytes of one file

    /// Without a home only the settings of projects are read.
    explicit AgentConfigService(std::string home);

    AgentConfig::CodexDefaults codexDefaults() const;
    AgentConfig::ClaudeDefaults claudeDefaults(const std::string& project) const;
    /// Whether the user has given Claude a status line.
    bool hasStatusLine() const;

 private:
    std::string home_;
};

}  // namespace orvane
