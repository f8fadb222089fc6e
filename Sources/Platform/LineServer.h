#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/FileDescriptor.h"
#include "Platform/MainLoop.h"

namespace orvane {

/// Serves requests of one line each on a Unix socket, to processes of our own user. Replies are lines too. A client
/// may send several requests at once; they are handed out one by one, each after the reply to the one before. Clients
/// are not trusted to be quick or well-behaved: every length and every wait has a limit.
class LineServer {
 public:
    struct Limits {
        std::size_t requestSizeInBytes = 1 << 20;          ///< a longer line is swallowed and told as `requestTooLong`
        std::size_t swallowedBytes = 64 << 20;             ///< a line that is longer still ends the connection
        std::size_t unsentBytes = 8 << 20;                 ///< a client that lets more pile up is dropped
        std::size_t connections = 128;                     ///< one more is told `tooManyConnections` and closed
        std::size_t descriptors = 64;                      ///< that came with requests not yet handled, of all clients
        Duration firstRequest = std::chrono::seconds(10);  ///< from connecting to the first whole request
        Duration wholeRequest = std::chrono::seconds(10);  ///< from the first to the last byte of a request
        Duration betweenRequests = std::chrono::minutes(10);
    };

    enum class Fault { requestTooLong, requestTooSlow, tooManyConnections };

    /// One client. A handler may keep it (weakly) and answer later; calls after the client has gone do nothing.
    class Connection {
     public:
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;
        virtual ~Connection() = default;

        /// Answers the current request with one line (the line end is added). The last line of one that streams.
        virtual void reply(std::string_view line) = 0;
        /// Leaves the current request open until `reply`, or until the client leaves; `stream` sends lines from then
        /// on. What the client sends meanwhile is dropped, unless somebody takes it.
        virtual void beginStream() = 0;
        virtual void stream(std::string_view line) = 0;
        /// Takes what the client sends while its stream is open, line by line and without their ends; too long ones
        /// are dropped. Set right after `beginStream` it misses none, and is never called within this call. It may end
        /// the stream, with which it goes.
        virtual void onInput(std::function<void(std::string_view line)> callback) = 0;
        /// The descriptors that came with the line of the current request, close-on-exec; the second time none. Those
        /// that nobody has taken are closed when it is answered. A request that brought more than
        /// `DescriptorPassing::mostDescriptors` has none.
        virtual std::vector<FileDescriptor> takeDescriptors() = 0;
        /// Runs once: when the client has left or was dropped, or when its stream has ended.
        virtual void onClose(std::function<void()> callback) = 0;

     protected:
        Connection() = default;
    };

    struct Handlers {
        /// A whole line, without its end. Must lead to one `reply`, now or later, or to `beginStream`.
        std::function<void(const std::shared_ptr<Connection>&, std::string_view line)> onRequest;
        /// The line to send to a client that broke a limit; it is closed afterwards unless its request was too long.
        std::function<std::string(Fault)> faultReply;
    };

    LineServer(MainLoop& loop, Handlers handlers, Limits limits);
    ~LineServer();
    LineServer(const LineServer&) = delete;
    LineServer& operator=(const LineServer&) = delete;

    /// Takes connections from this non-blocking listening socket from now on, in place of an earlier one. Those that
    /// are open stay open.
    void serve(FileDescriptor listener);

    /// Takes no more connections. Those that are open stay open; those nobody took yet are reset.
    void stopServing();

    std::size_t connectionCount() const { return clients_.size(); }

 private:
    class Client;

    void acceptAll();
    void pauseAccepting();
    void remove(std::uint64_t id);
    /// Of all clients, in requests that are not handled yet.
    std::size_t waitingDescriptors() const;

    MainLoop& loop_;
    Handlers handlers_;
    Limits limits_;
    FileDescriptor listener_;
    Registration acceptWatch_;
    Registration acceptPause_;
    std::map<std::uint64_t, std::shared_ptr<Client>> clients_;
    std::uint64_t lastId_ = 0;
};

}  // namespace orvane
