#include "Platform/DescriptorPassing.h"

#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <utility>

namespace orvane::DescriptorPassing {

namespace {

/// Room for what travels beside the bytes.
struct alignas(cmsghdr) ControlRoom {
    std::array<char, CMSG_SPACE(mostDescriptors * sizeof(int))> bytes{};
};

/// So many bytes are read one by one before others have their turn.
constexpr std::size_t singleBytes = 4096;

struct Look {
    ssize_t length = 0;
    bool meetsDescriptors = false;
};

/// What waits, as much as the room holds, and whether descriptors come with it; some systems look beyond it for them.
/// Both stay where they are, and the system says by MSG_CTRUNC that it had no room for descriptors.
Look look(int socket, std::span<char> room) {
    iovec bytes{.iov_base = room.data(), .iov_len = room.size()};
    msghdr message{};
    message.msg_iov = &bytes;
    message.msg_iovlen = 1;
    const ssize_t length = recvmsg(socket, &message, MSG_PEEK | MSG_DONTWAIT);
    return {.length = length, .meetsDescriptors = length > 0 && (message.msg_flags & MSG_CTRUNC) != 0};
}

std::vector<FileDescriptor> descriptorsIn(msghdr& message) {
    std::vector<FileDescriptor> descriptors;
    for (cmsghdr* header = CMSG_FIRSTHDR(&message); header != nullptr; header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS) continue;
        std::vector<int> numbers((header->cmsg_len - CMSG_LEN(0)) / sizeof(int));
        std::memcpy(numbers.data(), CMSG_DATA(header), numbers.size() * sizeof(int));
        for (const int number : numbers)
            descriptors.emplace_back(number);
    }
    return descriptors;
}

Received receiveByte(int socket, char& byte) {
    ControlRoom control;
    iovec bytes{.iov_base = &byte, .iov_len = 1};
    msghdr message{};
    message.msg_iov = &bytes;
    message.msg_iovlen = 1;
    message.msg_control = control.bytes.data();
    message.msg_controllen = control.bytes.size();
    Received received{.length = recvmsg(socket, &message, MSG_CMSG_CLOEXEC | MSG_DONTWAIT), .descriptors = {}};
    if (received.length <= 0) return received;
    received.descriptors = descriptorsIn(message);
    received.isRefused = (message.msg_flags & MSG_CTRUNC) != 0;
    if (received.isRefused) received.descriptors.clear();
    return received;
}

/// The system ends a read behind the write that had descriptors, and does not tell where in the read that write began.
Received receiveUpToDescriptors(int socket, std::span<char> room) {
    const std::size_t most = std::min(room.size(), singleBytes);
    std::size_t length = 0;
    Received received;
    while (length < most && received.descriptors.empty() && !received.isRefused) {
        received = receiveByte(socket, room[length]);
        if (received.length <= 0) break;
        ++length;
    }
    if (length > 0) received.length = static_cast<ssize_t>(length);
    return received;
}

}  // namespace

ssize_t send(int socket, std::string_view bytes, std::span<const int> descriptors) {
    if (descriptors.empty()) return ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    std::vector<char> control(CMSG_SPACE(descriptors.size_bytes()));
    iovec part{.iov_base = const_cast<char*>(bytes.data()), .iov_len = bytes.size()};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(descriptors.size_bytes());
    std::memcpy(CMSG_DATA(header), descriptors.data(), descriptors.size_bytes());
    return sendmsg(socket, &message, MSG_NOSIGNAL);
}

Received receive(int socket, std::span<char> room) {
    const Look found = look(socket, room);
    if (found.length <= 0) return {.length = found.length, .descriptors = {}};
    if (found.meetsDescriptors) return receiveUpToDescriptors(socket, room);
    // No more than was looked at: others may have come with what has arrived since.
    const auto length = static_cast<std::size_t>(found.length);
    return {.length = recv(socket, room.data(), length, MSG_DONTWAIT), .descriptors = {}};
}

void Waiting::add(std::uint64_t place, Received received) {
    if (received.isRefused) {
        if (refusedEnd_ == 0) refusedFrom_ = place;
        refusedEnd_ = place + 1;
    } else if (!received.descriptors.empty()) {
        arrivals_.push_back({.place = place, .descriptors = std::move(received.descriptors)});
    }
}

std::vector<FileDescriptor> Waiting::takeBefore(std::uint64_t end) {
    std::vector<FileDescriptor> taken;
    while (!arrivals_.empty() && arrivals_.front().place < end) {
        std::ranges::move(arrivals_.front().descriptors, std::back_inserter(taken));
        arrivals_.pop_front();
    }
    const bool isRefused = refusedEnd_ != 0 && refusedFrom_ < end;
    if (refusedEnd_ <= end) {
        refusedEnd_ = 0;
    } else if (isRefused) {
        refusedFrom_ = end;
    }
    if (isRefused || taken.size() > mostDescriptors) taken.clear();
    return taken;
}

std::size_t Waiting::count() const {
    std::size_t count = 0;
    for (const Arrival& arrival : arrivals_)
        count += arrival.descriptors.size();
    return count;
}

}  // namespace orvane::DescriptorPassing
