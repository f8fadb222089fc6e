#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Transcripts/SubagentTrace.h"

namespace orvane {

/// Reads the files that Claude Code keeps for the subagents of a conversation, and again only those that have changed
/// since: newer versions have them in "subagents" in a folder named after the transcript, older ones beside it, where
/// those of other conversations lie too. Blocks on the disk, so it is for background threads; one at a time.
class SubagentReader {
 public:
    /// By the agents' files, in the order of their names. What cannot be read is left out.
    std::vector<AgentRun> runs(const std::string& transcriptPath);
    /// How many files the last call read.
    std::size_t filesRead() const { return filesRead_; }

 private:
    /// By which a change of a file is seen.
    struct Stamp {
        Date modifiedAt;
        std::int64_t byteSize = 0;
        bool operator==(const Stamp&) const = default;
    };
    struct Folder {
        std::string listedDirectory;
        std::optional<Stamp> listedStamp;  ///< none for one that is to be listed anew
        std::vector<std::string> names;    ///< of the agents' files, sorted
    };
    struct CachedMeta {
        Stamp stamp;
        std::optional<SubagentTrace::Meta> meta;
    };
    struct CachedRun {
        Stamp stamp;
        SubagentTrace::Meta meta;
        std::optional<AgentRun> run;  ///< none for a file of another conversation
    };

    static std::optional<Stamp> stampOf(const std::string& path);
    static void list(const std::string& directory, Folder& folder);
    SubagentTrace::Meta metaOf(const std::string& path, const std::string& agentID);
    /// A session's id limits it to the agents of that conversation.
    std::optional<AgentRun> run(const std::string& path, const std::optional<std::string>& sessionID);

    std::array<Folder, 2> folders_;
    std::map<std::string, CachedMeta> metas_;
    std::map<std::string, CachedRun> cache_;
    std::size_t filesRead_ = 0;
};

}  // namespace orvane
