#include "Platform/LineServerClient.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace orvane {

namespace {

constexpr std::size_t readSizeInBytes = 64 << 10;
constexpr int requestsPerTurn = 64;
/// Deadlines are limits of patience, not appointments; the loop may join them with other timers.
constexpr Duration clockTolerance = std::chrono::milliseconds(500);

}  // namespace

LineServer::Client::Client(LineServer& server, std::uint64_t id, FileDescriptor socket)
    : server_(&server), id_(id), socket_(std::move(socket)) {}

void LineServer::Client::start() {
    restartClock(server_->limits_.firstRequest);
    listen();
}

void LineServer::Client::listen() {
    readWatch_ = server_->loop_.watch(socket_.number(), Readiness::readable, [this] {
        const auto self = shared_from_this();
        self->readAvailable();
    });
}

void LineServer::Client::readAvailable() {
    std::array<char, readSizeInBytes> buffer;
    auto received = DescriptorPassing::receive(socket_.number(), buffer);
    const ssize_t length = received.length;
    if (length < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (length > 0) {
        if (phase_ == Phase::closing) return;
        keep({buffer.data(), static_cast<std::size_t>(length)}, std::move(received));
        return handOut();
    }
    // A client that has only closed its writing side still gets the answer to what it asked.
    if (length < 0 || phase_ == Phase::streaming || (phase_ == Phase::reading && unsent_.empty())) return close();
    peerFinished_ = true;
    readWatch_.reset();
    if (phase_ == Phase::reading) phase_ = Phase::closing;
}

void LineServer::Client::keep(std::string_view bytes, DescriptorPassing::Received received) {
    if (phase_ == Phase::reading && waiting().empty() && !swallowing_) restartClock(server_->limits_.wholeRequest);
    if (received.descriptors.size() > server_->limits_.descriptors - server_->waitingDescriptors()) {
        received.descriptors.clear();
        received.isRefused = true;
    }
    received_.append(bytes);
    descriptors_.add(place_ + waiting().size() - 1, std::move(received));
}

/// Gives whole lines to the handler, one after the reply to the other, or to whoever reads the stream.
void LineServer::Client::handOut() {
    if (handingOut_) return;
    handingOut_ = true;
    int handedOut = 0;
    while (takesLines() && handedOut < requestsPerTurn && handOutOne())
        ++handedOut;
    handingOut_ = false;
    if (server_ == nullptr) return;
    if (handedOut == requestsPerTurn && takesLines()) return goOnLater();
    if (phase_ == Phase::streaming && !onInput_) dropInput();
    if (phase_ == Phase::answering || phase_ == Phase::closing) {
        // Enough is waiting; the rest may wait in the socket.
        if (waiting().size() > server_->limits_.requestSizeInBytes) readWatch_.reset();
    } else if (!peerFinished_) {
        if (!readWatch_) listen();
    } else if (phase_ == Phase::reading) {
        phase_ = Phase::closing;
        if (unsent_.empty()) close();
    }
}

/// A client that sends thousands of lines at once must not hold up everybody else, nor fill the memory with what it
/// sends meanwhile.
void LineServer::Client::goOnLater() {
    readWatch_.reset();
    server_->loop_.post([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->handOut();
    });
}

/// Nothing is expected any more but the end. A line that has begun is not taken for a request when the stream has
/// ended before it.
void LineServer::Client::dropInput() {
    if (waiting().empty()) return;
    swallowing_ = swallowsInput_ = !waiting().ends_with('\n');
    consume(waiting().size());
}

/// Whether the next line was handed out or dropped; false when there is no whole line yet.
bool LineServer::Client::handOutOne() {
    const auto end = waiting().find('\n', searched_);
    if (swallowing_ || std::min(end, waiting().size()) > server_->limits_.requestSizeInBytes) {
        swallow();
        return !swallowing_;
    }
    if (end == std::string_view::npos) {
        searched_ = waiting().size();
        return false;
    }
    std::string line(waiting().substr(0, end));
    if (line.ends_with('\r')) line.pop_back();
    auto descriptors = consume(end + 1);
    if (phase_ == Phase::reading) {
        handOutRequest(line, std::move(descriptors));
    } else {
        const auto takeInput = onInput_;  // which may end the stream, and so itself
        takeInput(line);
    }
    return true;
}

void LineServer::Client::handOutRequest(std::string_view line, std::vector<FileDescriptor> descriptors) {
    phase_ = Phase::answering;
    requestDescriptors_ = std::move(descriptors);
    clock_.reset();
    server_->handlers_.onRequest(shared_from_this(), line);
}

/// Drops a line that is too long up to its end, so that a client which first writes all and then reads gets the word.
void LineServer::Client::swallow() {
    if (!swallowing_) swallowsInput_ = phase_ == Phase::streaming;
    const auto end = waiting().find('\n');
    const std::size_t length = end == std::string_view::npos ? waiting().size() : end + 1;
    swallowed_ += length;
    consume(length);
    swallowing_ = end == std::string_view::npos;
    if (swallowed_ > server_->limits_.swallowedBytes) return refuse(Fault::requestTooLong);
    if (swallowing_) return;
    swallowed_ = 0;
    if (swallowsInput_) return;
    send(server_->handlers_.faultReply(Fault::requestTooLong));
    if (phase_ == Phase::reading) restartClock(server_->limits_.betweenRequests);
}

/// Goes on behind so many of the bytes that wait, and returns the descriptors that came with them.
std::vector<FileDescriptor> LineServer::Client::consume(std::size_t length) {
    place_ += length;
    consumed_ += length;
    searched_ = 0;
    if (consumed_ >= received_.size() / 2) {  // moving the rest each time would cost its square
        received_.erase(0, consumed_);
        consumed_ = 0;
    }
    return descriptors_.takeBefore(place_);
}

void LineServer::Client::reply(std::string_view line) {
    if (phase_ != Phase::answering && phase_ != Phase::streaming) return;
    const auto endOfStream = phase_ == Phase::streaming ? std::exchange(onClose_, nullptr) : nullptr;
    if (std::exchange(onInput_, nullptr)) dropInput();
    requestDescriptors_.clear();
    phase_ = peerFinished_ && waiting().empty() ? Phase::closing : Phase::reading;
    send(line);
    if (endOfStream) endOfStream();
    if (phase_ != Phase::reading) return;
    restartClock(waiting().empty() ? server_->limits_.betweenRequests : server_->limits_.wholeRequest);
    handOut();
}

void LineServer::Client::beginStream() {
    if (phase_ != Phase::answering) return;
    phase_ = Phase::streaming;
    if (!handingOut_) goOnLater();  // with what came while the request waited
}

void LineServer::Client::onInput(std::function<void(std::string_view line)> callback) {
    if (phase_ == Phase::streaming) onInput_ = std::move(callback);
}

std::vector<FileDescriptor> LineServer::Client::takeDescriptors() {
    return std::exchange(requestDescriptors_, {});
}

void LineServer::Client::stream(std::string_view line) {
    if (phase_ == Phase::streaming) send(line);
}

void LineServer::Client::onClose(std::function<void()> callback) {
    onClose_ = std::move(callback);
}

void LineServer::Client::refuse(Fault fault) {
    if (server_ == nullptr || phase_ == Phase::closing || phase_ == Phase::closed) return;
    phase_ = Phase::closing;
    restartClock(server_->limits_.wholeRequest);
    send(server_->handlers_.faultReply(fault));
}

void LineServer::Client::send(std::string_view line) {
    if (phase_ == Phase::closed || server_ == nullptr) return;
    unsent_ += line;
    unsent_ += '\n';
    if (!writeWatch_) flush();
    if (server_ != nullptr && unsent_.size() > server_->limits_.unsentBytes) drop();
}

/// Gives up a client that does not read. It closes in a later turn, since the sender may be in the middle of a list of
/// clients.
void LineServer::Client::drop() {
    phase_ = Phase::closing;
    unsent_.clear();
    server_->loop_.post([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->close();
    });
}

void LineServer::Client::flush() {
    std::size_t sent = 0;
    while (sent < unsent_.size()) {
        const ssize_t length = ::send(socket_.number(), unsent_.data() + sent, unsent_.size() - sent, MSG_NOSIGNAL);
        if (length >= 0) {
            sent += static_cast<std::size_t>(length);
        } else if (errno == EAGAIN) {
            break;
        } else if (errno != EINTR) {
            return drop();
        }
    }
    unsent_.erase(0, sent);
    if (unsent_.empty()) {
        writeWatch_.reset();
        if (phase_ == Phase::closing) close();
    } else if (!writeWatch_) {
        writeWatch_ = server_->loop_.watch(socket_.number(), Readiness::writable, [this] {
            const auto self = shared_from_this();
            self->flush();
        });
    }
}

void LineServer::Client::close() {
    if (phase_ == Phase::closed) return;
    LineServer* server = server_;
    detach();
    if (server != nullptr) server->remove(id_);
}

void LineServer::Client::detach() {
    phase_ = Phase::closed;
    server_ = nullptr;
    readWatch_.reset();
    writeWatch_.reset();
    clock_.reset();
    onInput_ = nullptr;
    requestDescriptors_.clear();
    descriptors_ = {};
    socket_.close();
    if (const auto callback = std::exchange(onClose_, nullptr)) callback();
}

void LineServer::Client::restartClock(Duration limit) {
    clock_ = server_->loop_.after(limit, [this] { runOut(); }, clockTolerance);
}

void LineServer::Client::runOut() {
    const auto self = shared_from_this();
    if (phase_ == Phase::closing) return close();
    refuse(Fault::requestTooSlow);
}

}  // namespace orvane
