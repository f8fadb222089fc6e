#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "Platform/FileDescriptor.h"
#include "Platform/MainLoop.h"

namespace orvane {

/// Lines for whoever looks into a fault. It is on only if its file exists when the log is made and is a regular file
/// of our own user with no second name: anybody may put files, links and pipes into the temporary folder.
class DiagnosticLog {
 public:
    using Clock = std::function<WallTime()>;

    /// Without a clock the system's is used. The clock is asked from whichever thread logs.
    explicit DiagnosticLog(const std::string& path = "/tmp/orvane-chat.log", Clock clock = {});

    bool isOn() const { return file_.isOpen(); }

    /// Appends "HH:mm:ss.SSS message" in local time, whole lines only. Control characters of the message become
    /// blanks: a line stays a line and reading the log in a terminal is safe. From any thread.
    void log(std::string_view message) const;

 private:
    FileDescriptor file_;
    Clock clock_;
};

}  // namespace orvane
