#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>

#include "OrvaneCore/Support/Uuid.h"

namespace orvane {

/// Which session writes which transcript, so that of two in one folder neither takes the other's. Main thread only.
class TranscriptBindings {
 public:
    /// Whether the file is the session's now, which gives up the one it had; false when it is another one's.
    bool claim(const Uuid& session, const std::string& path) {
        const auto owner = owners_.find(path);
        if (owner != owners_.end() && owner->second != session) return false;
        release(session);
        owners_.emplace(path, session);
        return true;
    }

    void release(const Uuid& session) {
        std::erase_if(owners_, [&](const auto& owner) { return owner.second == session; });
    }

    std::set<std::string> ofOthers(const Uuid& session) const {
        std::set<std::string> paths;
        for (const auto& [path, owner] : owners_)
            if (owner != session) paths.insert(path);
        return paths;
    }

 private:
    std::map<std::string, Uuid> owners_;
};

}  // namespace orvane
