#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// Which conversation an agent goes on with by its command line.
struct ResumeIntent {
    /// The one that is named, mostly by its id.
    std::optional<std::string> id;
    /// Perhaps one that the agent or the person in front of it chooses: the last, one of a list, one by its number,
    /// which looks like an id.
    bool continuesOlder = false;

    bool operator==(const ResumeIntent&) const = default;

    static ResumeIntent of(std::string_view command);
};

}  // namespace orvane
