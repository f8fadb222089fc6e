#pragma once

#include <sys/types.h>

#include <expected>
#include <optional>
#include <string>

#include "Platform/FileDescriptor.h"
#include "Platform/SystemError.h"

namespace orvane {

/// What the lock file tells about the host that holds it.
struct InstanceRecord {
    pid_t processId = 0;
    std::string socketPath;

    bool operator==(const InstanceRecord&) const = default;
};

/// Lets one process at a time be the host. The system drops the lock with the process, so a killed host leaves nothing
/// behind but a file whose record is out of date.
class InstanceLock {
 public:
    /// Takes the lock, making the file (mode 0600) if it is missing and emptying it. No value when another process
    /// has it.
    static std::expected<std::optional<InstanceLock>, SystemError> acquire(const std::string& path);

    /// Whether the file is still there: once it was deleted or replaced, another process can take a lock of its own.
    bool isInPlace() const;

    /// Tells others where this host is. The record is replaced whole.
    std::expected<void, SystemError> publish(const InstanceRecord& record) const;

    enum class State {
        free,      ///< no host runs
        starting,  ///< a host has the lock and has not said yet where it listens
        running,
    };
    struct Observation {
        State state = State::free;
        InstanceRecord record;  ///< while `running`
    };
    /// Looks without touching: a look never makes a starting host fail.
    static Observation observe(const std::string& path);

 private:
    InstanceLock(std::string path, FileDescriptor file) : path_(std::move(path)), file_(std::move(file)) {}

    std::string path_;
    FileDescriptor file_;
};

}  // namespace orvane
