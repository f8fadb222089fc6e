#pragma once

#include <string>

namespace orvane {

/// The machine channel of a chat session: what the session asks of an engine. Main thread only.
class ChatTransport {
 public:
    ChatTransport() = default;
    ChatTransport(const ChatTransport&) = delete;
    ChatTransport& operator=(const ChatTransport&) = delete;
    virtual ~ChatTransport() = default;

    /// Whether the prompt reached the channel.
    virtual bool send(const std::string& prompt) = 0;
    virtual void setModel(const std::string& model) = 0;
    virtual void interrupt() = 0;
    /// Closes the channel and asks the process to end.
    virtual void stop() = 0;
    /// Ends the process and its group at once.
    virtual void kill() = 0;
    /// Whether the process, or what it started, is still there after `stop`.
    virtual bool isAlive() const = 0;
    virtual bool streamsLiveText() const = 0;
};

}  // namespace orvane
