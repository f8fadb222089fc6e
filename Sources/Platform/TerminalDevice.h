#pragma once

#include <termios.h>

#include <cstddef>
#include <expected>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "Platform/FileDescriptor.h"
#include "Platform/PseudoTerminalHelpers.h"
#include "Platform/SystemError.h"

namespace orvane {

/// A terminal that another process has handed over, to be drawn on and read from. No call ever waits for it.
class TerminalDevice {
 public:
    /// Opens the terminal anew, so that this process can have it without blocking while the other one does not know;
    /// where that is not permitted (after su) a duplicate is used, which stops blocking for both. Remembers the
    /// settings that it finds. ENOTTY for what is no terminal, EACCES for one that cannot be both read and written.
    static std::expected<TerminalDevice, SystemError> open(const FileDescriptor& handed);

    /// Every key comes at once, unchanged and without an echo; output goes out unchanged.
    std::expected<void, SystemError> makeRaw() const;
    /// The settings as they were when it was opened.
    std::expected<void, SystemError> restore() const;

    /// Nothing when the terminal does not know it.
    std::optional<WindowSize> size() const;
    int descriptor() const { return file_.number(); }

    /// How many bytes were read or written; 0 when it would have to wait. An error tells that the terminal is gone: EIO
    /// when it was closed.
    std::expected<std::size_t, SystemError> read(std::span<char> room) const;
    std::expected<std::size_t, SystemError> write(std::string_view bytes) const;

 private:
    TerminalDevice(FileDescriptor file, const termios& settings) : file_(std::move(file)), settings_(settings) {}

    FileDescriptor file_;
    termios settings_;
};

}  // namespace orvane
