#pragma once

#include "Platform/DescriptorPassing.h"
#include "Platform/LineServer.h"

namespace orvane {

/// The server's side of one connection.
class LineServer::Client final : public LineServer::Connection,
                                 public std::enable_shared_from_this<LineServer::Client> {
 public:
    Client(LineServer& server, std::uint64_t id, FileDescriptor socket);

    void start();
    void reply(std::string_view line) override;
    void beginStream() override;
    void stream(std::string_view line) override;
    void onInput(std::function<void(std::string_view line)> callback) override;
    std::vector<FileDescriptor> takeDescriptors() override;
    void onClose(std::function<void()> callback) override;

    /// Sends a last line and closes when it is out.
    void refuse(Fault fault);
    /// Forgets the server, which is going away or has dropped this client.
    void detach();
    std::size_t waitingDescriptors() const { return descriptors_.count() + requestDescriptors_.size(); }

 private:
    enum class Phase {
        reading,    ///< waiting for a request, or for the rest of one
        answering,  ///< the handler has a request and owes a reply
        streaming,
        closing,  ///< only what is unsent keeps it open
        closed,
    };

    void listen();
    void readAvailable();
    void keep(std::string_view bytes, DescriptorPassing::Received received);
    void handOut();
    void goOnLater();
    void dropInput();
    /// Whether somebody waits for the next line.
    bool takesLines() const { return phase_ == Phase::reading || (phase_ == Phase::streaming && onInput_); }
    bool handOutOne();
    void handOutRequest(std::string_view line, std::vector<FileDescriptor> descriptors);
    void swallow();
    std::string_view waiting() const { return std::string_view(received_).substr(consumed_); }
    std::vector<FileDescriptor> consume(std::size_t length);
    void send(std::string_view line);
    void flush();
    void drop();
    void close();
    void restartClock(Duration limit);
    void runOut();

    LineServer* server_;
    std::uint64_t id_;
    FileDescriptor socket_;
    Phase phase_ = Phase::reading;
    bool peerFinished_ = false;  ///< the client will send nothing more
    bool handingOut_ = false;
    bool swallowing_ = false;     ///< the current line is over the limit, or belongs to a stream that nobody reads
    bool swallowsInput_ = false;  ///< it belongs to a stream, and is not answered
    std::size_t swallowed_ = 0;
    std::string received_;
    std::size_t consumed_ = 0;  ///< bytes of `received_` that are done with
    std::size_t searched_ = 0;  ///< bytes after those that hold no line end
    std::uint64_t place_ = 0;   ///< of those in all that the client has sent
    DescriptorPassing::Waiting descriptors_;
    std::vector<FileDescriptor> requestDescriptors_;
    std::string unsent_;
    Registration readWatch_;
    Registration writeWatch_;
    Registration clock_;
    std::function<void(std::string_view line)> onInput_;
    std::function<void()> onClose_;
};

}  // namespace orvane
