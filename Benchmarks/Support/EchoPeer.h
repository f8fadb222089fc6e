#pragma once

#include <sys/types.h>

#include <memory>
#include <string>

#include "Platform/LineClient.h"
#include "Support/Failure.h"

namespace orvane::benchmark {

/// The least that a question to another process can cost: a child that answers every line on a Unix socket with one
/// and the same line, by blocking calls and with nothing in between. It ends with its connection.
class EchoPeer {
 public:
    /// To be called while this process has one thread. The socket is made at `path`.
    [[nodiscard]] static Measured<std::unique_ptr<EchoPeer>> start(const std::string& path, const std::string& reply);
    EchoPeer(const EchoPeer&) = delete;
    EchoPeer& operator=(const EchoPeer&) = delete;
    ~EchoPeer();

    pid_t pid() const { return pid_; }
    LineClient& client() { return *client_; }

 private:
    EchoPeer(pid_t pid, LineClient client) : pid_(pid), client_(std::make_unique<LineClient>(std::move(client))) {}

    pid_t pid_;
    std::unique_ptr<LineClient> client_;
};

}  // namespace orvane::benchmark
