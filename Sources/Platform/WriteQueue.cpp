#include "Platform/WriteQueue.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "Platform/Uninterrupted.h"

namespace orvane {

void WriteQueue::write(std::string_view bytes, Callback onDone) {
    if (bytes.size() > limit_ - unsentSize_) {
        return onDone({.written = 0, .error = SystemError::of(ENOBUFS, "write to", "a terminal")});
    }
    unsent_.push_back({.bytes = std::string(bytes), .sent = 0, .onDone = std::move(onDone)});
    unsentSize_ += bytes.size();
    if (unsent_.size() == 1) send();
}

void WriteQueue::send() {
    while (!unsent_.empty()) {
        Unsent& first = unsent_.front();
        const std::string_view rest = std::string_view(first.bytes).substr(first.sent);
        const ssize_t written =
            rest.empty() ? 0 : uninterrupted([&] { return ::write(descriptor_, rest.data(), rest.size()); });
        if (written < 0 && errno == EAGAIN) {
            if (!room_) room_ = loop_.watch(descriptor_, Readiness::writable, [this] { send(); });
            return;
        }
        if (written < 0) {
            const SystemError error = SystemError::last("write to", "a terminal");
            while (!unsent_.empty())
                complete(error);
            break;
        }
        first.sent += static_cast<std::size_t>(written);
        unsentSize_ -= static_cast<std::size_t>(written);
        if (first.sent == first.bytes.size()) complete({});
    }
    room_.reset();
}

void WriteQueue::complete(std::optional<SystemError> error) {
    Unsent first = std::move(unsent_.front());
    unsent_.pop_front();
    unsentSize_ -= first.bytes.size() - first.sent;
    first.onDone({.written = first.sent, .error = std::move(error)});
}

}  // namespace orvane
