#pragma once

#include <unordered_set>

#include "OrvaneCore/Support/Uuid.h"

namespace orvane {

/// Hands out each id once while a file is read: whatever is found by its id must be the only one that has it.
class UniqueIDs {
 public:
    /// The id itself, or a fresh one when it was handed out before or is the id of nothing.
    Uuid claim(const Uuid& id) { return taken_.insert(id).second ? id : Uuid::random(); }

 private:
    std::unordered_set<Uuid> taken_ = {Uuid()};
};

}  // namespace orvane
