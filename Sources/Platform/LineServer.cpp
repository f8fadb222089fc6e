#include "Platform/LineServer.h"

#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include "Platform/LineServerClient.h"
#include "Platform/UnixSocket.h"

namespace orvane {

LineServer::LineServer(MainLoop& loop, Handlers handlers, Limits limits)
    : loop_(loop), handlers_(std::move(handlers)), limits_(limits) {}

LineServer::~LineServer() {
    for (const auto& [id, client] : std::exchange(clients_, {}))
        client->detach();
}

void LineServer::serve(FileDescriptor listener) {
    acceptPause_.reset();
    acceptWatch_.reset();
    listener_ = std::move(listener);
    acceptWatch_ = loop_.watch(listener_.number(), Readiness::readable, [this] { acceptAll(); });
}

void LineServer::stopServing() {
    acceptPause_.reset();
    acceptWatch_.reset();
    listener_.close();
}

void LineServer::acceptAll() {
    while (true) {
        FileDescriptor socket(accept4(listener_.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (!socket.isOpen()) {
            if (errno == EINTR || errno == ECONNABORTED) continue;
            if (errno != EAGAIN) pauseAccepting();
            return;
        }
        if (!UnixSocket::peerIsOurUser(socket.number())) continue;
        const auto client = std::make_shared<Client>(*this, ++lastId_, std::move(socket));
        const bool isFull = clients_.size() >= limits_.connections;
        clients_.emplace(lastId_, client);
        client->start();
        if (isFull) client->refuse(Fault::tooManyConnections);
    }
}

/// Out of descriptors: the waiting connection stays ready, so without a pause the loop would spin.
void LineServer::pauseAccepting() {
    acceptWatch_.reset();
    acceptPause_ = loop_.after(std::chrono::milliseconds(100), [this] { serve(std::move(listener_)); });
}

void LineServer::remove(std::uint64_t id) {
    clients_.erase(id);
}

std::size_t LineServer::waitingDescriptors() const {
    std::size_t count = 0;
    for (const auto& [id, client] : clients_)
        count += client->waitingDescriptors();
    return count;
}

}  // namespace orvane
