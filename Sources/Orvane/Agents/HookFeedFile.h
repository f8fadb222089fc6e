#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/SystemError.h"

namespace orvane {

/// The file to which the hooks of one agent append a word for each event. It goes with the session.
class HookFeedFile {
 public:
    /// What one look reads at most; the rest is read the next time.
    static constexpr std::size_t readLimit = std::size_t{256} * 1024;

    /// Makes the file in `folder`, which is made too, both for the user alone.
    static std::expected<HookFeedFile, SystemError> create(const std::string& folder, const std::string& name);
    HookFeedFile(HookFeedFile&& other) noexcept;
    HookFeedFile& operator=(HookFeedFile&& other) noexcept;
    /// Removes the file.
    ~HookFeedFile();

    const std::string& path() const { return path_; }

    /// The whole lines that came since the last look; none when the file cannot be read. A line that is not ended yet
    /// waits. A file that has become shorter is read from its start.
    std::string readNew();

 private:
    explicit HookFeedFile(std::string path) : path_(std::move(path)) {}

    std::string path_;
    std::uint64_t offset_ = 0;
};

}  // namespace orvane
