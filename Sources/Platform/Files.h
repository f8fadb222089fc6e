#pragma once

#include <sys/types.h>

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

#include "Platform/FileDescriptor.h"
#include "Platform/SystemError.h"

namespace orvane {

/// The content of a regular file of at most `sizeLimit` bytes; EFBIG beyond. Folders, devices and pipes are refused
/// without waiting on them.
[[nodiscard]] std::expected<std::string, SystemError> readWholeFile(const std::string& path, std::size_t sizeLimit);

/// Replaces the file at once: whoever reads it sees the old content or the new, also after a crash or a loss of power.
/// A symbolic link is followed, so its target is what is replaced. On an error the old file is as it was, except when
/// only the last step failed, "sync the folder of": the new content is there but a loss of power may take it back.
///
/// Writers in several processes do not disturb each other, the last wins. What a writer left that was killed in the
/// middle is removed by the next write in the same folder.
[[nodiscard]] std::expected<void, SystemError> writeWholeFile(const std::string& path, std::string_view bytes,
                                                              mode_t mode = 0600);

/// Makes the folder and those above it as needed; `mode` is for what is made. One that exists is left alone.
[[nodiscard]] std::expected<void, SystemError> createFolders(const std::string& path, mode_t mode = 0700);

/// A folder that a program of ours may work in, for fchdir(2) and the like: "enter folder /x: Permission denied".
[[nodiscard]] std::expected<FileDescriptor, SystemError> openFolder(const std::string& path);

/// Gives a regular file that is about to be replaced a second name beside it, `path + suffix`, or with "-2", "-3" …
/// after it when that is taken, so that its content survives; returns that name. A symbolic link is followed. Where
/// the file system has no hard links the file is renamed instead.
[[nodiscard]] std::expected<std::string, SystemError> keepAside(const std::string& path, std::string_view suffix);

}  // namespace orvane
