#include "Platform/WriteQueue.h"

#include <unistd.h>

#include <cerrno>

#include "Platform/Uninterrupted.h"

namespace orvane {

std::expected<void, SystemError> WriteQueue::write(std::string_view bytes) {
    if (bytes.size() > limit_ - unsentSize_) return std::unexpected(SystemError::of(ENOBUFS, "write to", "a terminal"));
    if (bytes.empty()) return {};
    unsent_.emplace_back(bytes);
    unsentSize_ += bytes.size();
    return unsent_.size() == 1 ? send() : std::expected<void, SystemError>();
}

std::expected<void, SystemError> WriteQueue::send() {
    while (!unsent_.empty()) {
        const std::string_view rest = std::string_view(unsent_.front()).substr(sentOfFirst_);
        const ssize_t written = uninterrupted([&] { return ::write(descriptor_, rest.data(), rest.size()); });
        if (written < 0 && errno == EAGAIN) {
            if (!room_) room_ = loop_.watch(descriptor_, Readiness::writable, [this] { (void)send(); });
            return {};
        }
        if (written < 0) {
            const SystemError error = SystemError::last("write to", "a terminal");
            unsent_.clear();
            unsentSize_ = sentOfFirst_ = 0;
            room_.reset();
            return std::unexpected(error);
        }
        const auto count = static_cast<std::size_t>(written);
        unsentSize_ -= count;
        sentOfFirst_ += count;
        if (sentOfFirst_ < unsent_.front().size()) continue;
        unsent_.pop_front();
        sentOfFirst_ = 0;
    }
    room_.reset();
    return {};
}

}  // namespace orvane
