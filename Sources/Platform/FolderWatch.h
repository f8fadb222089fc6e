#pragma once

#include <chrono>
#include <expected>
#include <functional>
#include <memory>
#include <string>

#include "Platform/MainLoop.h"
#include "Platform/SystemError.h"

namespace orvane {

/// Tells that something in a folder changed: entries made, removed, renamed, written to. Folders below are not looked
/// into. Destroying it, also inside its callback, ends the watch.
class FolderWatch {
 public:
    enum class Change {
        contents,
        /// The folder was removed or moved away, or its file system unmounted. Nothing more is told; to go on, make a
        /// new watch.
        folderGone,
    };
    using Callback = std::move_only_function<void(Change)>;

    /// The callback comes `coalesce` after the first of the changes it stands for, and so at most once in each such
    /// span, however many they are. The loop must outlive the watch. ENOSPC: the system's limit of watches is reached.
    [[nodiscard]] static std::expected<std::unique_ptr<FolderWatch>, SystemError> create(
        MainLoop& loop, const std::string& path, Callback callback, Duration coalesce = std::chrono::milliseconds(100));

 private:
    struct State;
    explicit FolderWatch(std::shared_ptr<State> state) : state_(std::move(state)) {}

    std::shared_ptr<State> state_;
};

}  // namespace orvane
