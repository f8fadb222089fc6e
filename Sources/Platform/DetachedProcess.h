#pragma once

#include <chrono>
#include <expected>
#include <string>
#include <vector>

#include "Platform/Environment.h"
#include "Platform/FileDescriptor.h"
#include "Platform/SystemError.h"

namespace orvane::DetachedProcess {

/// Starts a program that outlives its starter: in a session of its own, in the root folder, with the null device as
/// its three standard streams. Blocks until the program has told its word, and returns that; an empty text means that
/// it ended without one, ETIMEDOUT that it is still there and has not told any within the limit.
std::expected<std::string, SystemError> start(const std::string& executable, const std::vector<std::string>& arguments,
                                              const Environment& environment, std::chrono::milliseconds limit);

/// The started program's side.
class Starter {
 public:
    /// Whoever started this program and waits; nobody when it was started by other means. To be called before the
    /// program opens anything.
    static Starter find();

    /// Tells the word, once. Does nothing when nobody waits.
    void tell(const std::string& word);

 private:
    explicit Starter(FileDescriptor pipe) : pipe_(std::move(pipe)) {}

    FileDescriptor pipe_;
};

}  // namespace orvane::DetachedProcess
