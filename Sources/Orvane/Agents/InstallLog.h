#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane {

/// What installations printed, line by line; the oldest lines go when it grows too long.
class InstallLog {
 public:
    static constexpr std::size_t maximumSizeInBytes = std::size_t{1024} * 1024;

    void append(std::string_view line);
    /// What follows is of another installation.
    void beginRun() { runStart_ = text_.size(); }

    /// Each line with its end.
    const std::string& text() const { return text_; }
    std::string_view currentRun() const { return std::string_view(text_).substr(runStart_); }

 private:
    std::string text_;
    std::size_t runStart_ = 0;
};

}  // namespace orvane
